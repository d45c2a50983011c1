#pragma once

#include <string>

#include "database/data_module.h"

class QWidget;

/// The tool that makes the tree of a system that an older program left in an ini file.
namespace QvRefSystem {

/// The one file that the tool writes: in the folder of the database, or beside its container.
[[nodiscard]] std::string LegacyOutputPath(const TdatamoduleQvRfData& data);

/// Reads the system of an ini file, and writes its tree in the text form to `outputPath`. False,
/// and nothing is written, if the file holds no whole system. Throws StorageError if the ini file
/// cannot be read or the output not be written; a file at `outputPath` that the tool did not write
/// itself stays, and is told by the same error.
[[nodiscard]] bool ConvertLegacySystem(const std::string& iniPath, const std::string& outputPath);

/// Asks for the ini file and converts it. The database is not touched, and no message follows.
void RunLegacyTool(QWidget* window, const TdatamoduleQvRfData& data);

}  // namespace QvRefSystem
