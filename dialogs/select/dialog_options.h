#pragma once

#include <cstdint>
#include <string>

namespace QvRefSystem {

/// What a host decides for one database.
struct TQvGeoRefFrameDialogOptions {
  /// 1 simple, 2 full. In simple mode dialogs hide New, Edit and Remove on selection, and objects
  /// that one system uses alone come and go with it.
  std::int8_t DialogMode = 2;
  /// Background of a refused control, 0x00BBGGRR.
  std::int32_t ErrorColour = 255;
  /// Import and Export also while choosing; local systems then carry no origin.
  bool ShowImportExport = false;
  /// 1: DatabasePath is a folder of tables; 2: a container; any other: no database is opened.
  std::int8_t DatabaseKind = 1;
  /// A folder or a file, as DatabaseKind says, in UTF-8; an empty path opens nothing.
  std::string DatabasePath;
};

}  // namespace QvRefSystem
