#pragma once

#include <memory>
#include <string>

#include "platform/dbset/db_int_filter.h"

namespace QvPlatform {

class DataSetImpl;

/// Where a table lies: as a resource of a container, or as a file of its own.
enum class QvDataBufferType { kResource = 1, dtFileStream = 2 };

/// Where a table lies and how its rows are arranged. Changes of the type, the order and the filter
/// are made with the data set closed, then the buffer closed, and take effect at the next Open. A
/// buffer has to outlive the data sets over it.
class TQvDataBuffer {
 public:
  /// A number for the owner's own use; nothing here reads it.
  int Tag = 0;
  /// Path of the table file, or full name of the resource.
  std::string StreamName;

  /// A buffer of no table yet, in the order of making and without a filter.
  TQvDataBuffer();
  ~TQvDataBuffer();
  TQvDataBuffer(const TQvDataBuffer&) = delete;
  TQvDataBuffer& operator=(const TQvDataBuffer&) = delete;

  /// Where StreamName leads: to a file unless SetDataBufferType said otherwise.
  [[nodiscard]] QvDataBufferType GetDataBufferType() const { return type_; }
  /// Says where StreamName leads from the next Open on.
  void SetDataBufferType(QvDataBufferType type) { type_ = type; }
  /// The data set's Close has given up the store already; the rows stay in memory, and the next
  /// Open takes them over if the store is still as it was.
  void Close();

  /// Rows run in ascending order of the field with this number: numbers by value, text by the
  /// collation of the user's locale, equals in the order of their making. -1 is the order of
  /// making.
  void SetSortField(int index, bool descending, bool rebuild);
  /// Shows only rows whose integer field with this number equals the value.
  void SetFilter(int index, int value, TQvDbIntFilter::TFilterOp op, bool rebuild);
  /// Shows all rows again.
  void ClearFilter(bool rebuild);

 private:
  friend class DataSetImpl;
  QvDataBufferType type_ = QvDataBufferType::dtFileStream;
  int sortField_ = -1;
  bool descending_ = false;
  int filterField_ = -1;
  int filterValue_ = 0;
  std::shared_ptr<void> cache_;  // what a reopening may take over when the store did not change
};

}  // namespace QvPlatform
