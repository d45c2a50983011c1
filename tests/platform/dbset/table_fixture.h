#pragma once

#include <string>
#include <vector>

#include "platform/dbset/data_set.h"
#include "tests/platform/storage/test_folder.h"

namespace platform_tests {

/// Field numbers of the sample table.
enum SampleField : int { kKey = 0, kCode = 1, kName = 2, kNote = 3, kFactor = 4, kSpare = 5 };

/// A table like those of the system: key, mandatory integer and name, optional text, float,
/// integer.
[[nodiscard]] QvPlatform::TQvDbHeader SampleHeader();
/// Makes an empty sample table as a file, or as a resource.
void MakeTable(const std::string& name,
               QvPlatform::QvDataBufferType type = QvPlatform::QvDataBufferType::dtFileStream,
               const QvPlatform::TQvDbHeader& header = SampleHeader());

/// A sample table that is open, in the order of its names.
class Table {
 public:
  explicit Table(const std::string& name,
                 QvPlatform::QvDataBufferType type = QvPlatform::QvDataBufferType::dtFileStream);

  QvPlatform::TQvDataBuffer buffer;
  QvPlatform::TQvDataSet set;

  /// Appends a record; its key.
  int Add(const std::string& name, int code);
  /// Key of the first record of this name, 0 if there is none.
  [[nodiscard]] int Key(const std::string& name) const;
  /// Moves to the record, which has to be there.
  void GoTo(int key);
  void Rename(int key, const std::string& name);
  /// Changes one field of the current record; the row that was written.
  QvPlatform::RowView Change(int field, const std::string& value);
  QvPlatform::RowView Change(int field, int value);
  /// Names from the first row to the last, by walking.
  [[nodiscard]] std::vector<std::string> Names();
  void Reopen();
};

/// A sample table in a file of its own folder, empty and open.
class FileTable : public TestFolder, public Table {
 public:
  FileTable() : FileTable(SampleHeader()) {}
  explicit FileTable(const QvPlatform::TQvDbHeader& header);
};

}  // namespace platform_tests
