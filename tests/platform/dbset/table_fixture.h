#pragma once

#include <string>
#include <vector>

#include "platform/dbset/data_set.h"

namespace platform_tests {

/// Field numbers of the sample table.
enum SampleField : int { kKey = 0, kCode = 1, kName = 2, kNote = 3, kFactor = 4, kSpare = 5 };

/// A table like those of the system: key, mandatory integer and name, optional text, float,
/// integer.
[[nodiscard]] QvPlatform::TQvDbHeader SampleHeader();
/// Makes an empty sample table as a file, or as a resource.
void MakeTable(const std::string& name,
               QvPlatform::QvDataBufferType type = QvPlatform::QvDataBufferType::dtFileStream);
void MakeTable(const std::string& name, const QvPlatform::TQvDbHeader& header,
               QvPlatform::QvDataBufferType type = QvPlatform::QvDataBufferType::dtFileStream);

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
  /// Names from the first row to the last, by walking.
  [[nodiscard]] std::vector<std::string> Names();
  void Reopen();
};

}  // namespace platform_tests
