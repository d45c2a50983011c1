#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "database/data_module.h"

/// Where height files lie: names of records and of foreign trees turned into names of streams that
/// never lead out of the database's own place for heights.
namespace QvRefSystem {

/// How a new height file is named after its object.
enum class HeightNaming {
  /// Through MakeFileName: for heights that are made here.
  kReplaced,
  /// The name of the object, for what a tree or a copy brings: only what could lead to another
  /// place becomes a blank, that is separators of folders and drives, control characters, and in
  /// the resource form the dot, behind which a short name would begin anew.
  kAsNamed,
};

/// The stream of the height file that a record names. Nothing where the name is none that a short
/// name can be: empty, blank at an end, "." or "..", or with a separator or a control character
/// inside. Such a record has no file, and nothing may be read, written or deleted for it.
[[nodiscard]] std::optional<std::string> HeightStoragePath(const TdatamoduleQvRfData& data,
                                                           std::string_view shortName);

/// Keeps in the table of height systems, beside the record of that key, the size and the checksum
/// of its height file. Throws what the table throws.
void NoteHeightFile(QvPlatform::TQvDataSet& heights, int key, std::string_view content);
/// Why a content is not that of the height file that was written for the record: it was damaged or
/// exchanged. Nothing if it is, and for a file that an older version has written, of which nothing
/// is kept.
[[nodiscard]] std::optional<std::string> HeightFileDamage(const QvPlatform::TQvDataSet& heights,
                                                          int key, std::string_view content);

/// A stream for a new height file of an object, under which nothing stands yet. Its
/// StorageShortName is what the record keeps: not empty, 255 bytes at most, and HeightStoragePath
/// leads back from it. A name of nothing but blanks becomes "heights", one that some systems give
/// to a device ("nul", "com1") gets a "_" behind, and one that is too long is cut between two
/// characters.
[[nodiscard]] std::string NewHeightStorageName(const TdatamoduleQvRfData& data,
                                               std::string_view objectName, HeightNaming naming);

}  // namespace QvRefSystem
