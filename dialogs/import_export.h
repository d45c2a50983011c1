#pragma once

#include <string>
#include <string_view>

#include "processors/data_processor.h"

class QWidget;

/// Objects to and from files. An object travels as its tree, with all that it refers to.
namespace QvRefSystem {

/// The two forms of an object file; the first is named by the object's stored label.
enum class TObjectFileForm { kText, kXml };

/// Writes the current object over whatever stands under the path. False, and nothing is written,
/// if the object cannot be told whole. Throws StorageError if the file cannot be written.
[[nodiscard]] bool WriteObjectFile(TQvRfDataProcessor& processor, const std::string& path,
                                   TObjectFileForm form);
/// Writes any tree over whatever stands under the path. Throws StorageError.
void WriteTreeFile(const TStringTree& tree, const std::string& path, TObjectFileForm form);
/// Replaces what `tree` holds. Throws StorageError or TreeFormatError with the tree unchanged.
void ReadTreeFile(const std::string& path, TObjectFileForm form, TStringTree* tree);
/// The same in the form that the file's content shows.
void ReadTreeFile(const std::string& path, TStringTree* tree);

/// Asks for a file and writes the current object there.
void ExportObject(QWidget* window, TQvRfDataProcessor& processor);
/// Asks for a folder and writes every object of the table there, one XML file each; files of equal
/// names overwrite each other. The data set ends on the last record written.
void ExportTable(QWidget* window, TQvRfDataProcessor& processor);
/// Asks for a file and finds or adds its object; one that is not taken is told.
void ImportObject(QWidget* window, TQvRfDataProcessor& processor);

}  // namespace QvRefSystem
