#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/dbset/db_header.h"
#include "platform/storage/stream.h"

namespace QvPlatform {

class TQvDataSet;

/// Makes empty table files.
class TFixedRecordFile {
 public:
  /// Throws std::invalid_argument unless the size is the header's GetRecordSize.
  TFixedRecordFile(const TQvDbHeader& header, int recordSize);
  ~TFixedRecordFile();
  TFixedRecordFile(const TFixedRecordFile&) = delete;
  TFixedRecordFile& operator=(const TFixedRecordFile&) = delete;

  /// What the table holds, kept beside its records as KindOfTable gives it again, so that the file
  /// of another table of the same fields is not taken for it.
  void SetKind(std::string kind) { kind_ = std::move(kind); }
  /// Writes an empty table to a stream that is open for writing and commits it. On success the
  /// stream belongs to this object; on failure it stays the caller's.
  [[nodiscard]] bool CreateNew(TQvStream* stream, bool overwrite);
  /// Why the last CreateNew has failed, for users to read; "" after one that did not.
  [[nodiscard]] const std::string& LastError() const { return lastError_; }
  /// Closes the stream that CreateNew has taken over.
  void Close();

 private:
  TQvDbHeader header_;
  std::string kind_;
  std::string lastError_;
  std::unique_ptr<TQvStream> stream_;
};

/// The bytes of an empty table file of this layout and kind.
[[nodiscard]] std::string MakeEmptyTableImage(const TQvDbHeader& header,
                                              const std::string& kind = {});
/// What an open table was made to hold; "" where that was not said. Throws StorageError.
[[nodiscard]] std::string KindOfTable(const TQvDataSet& table);

}  // namespace QvPlatform
