#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "processors/data_processor.h"
#include "registry/object_files.h"

class QWidget;

/// Objects to and from files. An object travels as its tree, with all that it refers to.
namespace QvRefSystem {

/// Writes the current object in a form of a tree, kText or kXml, over whatever stands under the
/// path. False, and nothing is written, if the object cannot be told whole. Throws StorageError if
/// the file cannot be written.
[[nodiscard]] bool WriteObjectFile(TQvRfDataProcessor& processor, const std::string& path,
                                   ObjectFileForm form);

/// Largest file that is read from a dialog, in bytes. Nothing comes near it but a height system
/// with its table.
inline constexpr std::uint64_t kLargestObjectFile = std::uint64_t{1} << 30;

/// Replaces what `tree` holds by a file in a form of a tree, kText or kXml. Throws StorageError or
/// TreeFormatError with the tree unchanged; the message names the file, what is wrong with it, and
/// the line or the place in the document.
void ReadTreeFile(const std::string& path, ObjectFileForm form, TStringTree* tree);
/// Does the same in that of the two forms that the file's content shows.
void ReadTreeFile(const std::string& path, TStringTree* tree);

/// Asks for a file and writes the current object there.
void ExportObject(QWidget* window, TQvRfDataProcessor& processor);
/// Asks for a folder and writes every object of the table there, one XML file each; files of equal
/// names overwrite each other. An object that cannot be written does not keep the others from being
/// written, and is told at the end. The data set ends on the last record written.
void ExportTable(QWidget* window, TQvRfDataProcessor& processor);
/// Asks for a file and finds or adds its object; one that is not taken is told. A file that cannot
/// be read changes nothing. Throws what ReadTreeFile throws.
void ImportObject(QWidget* window, TQvRfDataProcessor& processor);

}  // namespace QvRefSystem
