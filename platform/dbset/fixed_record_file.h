#pragma once

#include <memory>
#include <string>

#include "platform/dbset/db_header.h"
#include "platform/storage/stream.h"

namespace QvPlatform {

/// Makes empty table files.
class TFixedRecordFile {
 public:
  /// Throws std::invalid_argument unless the size is the header's GetRecordSize.
  TFixedRecordFile(const TQvDbHeader& header, int recordSize);
  ~TFixedRecordFile();
  TFixedRecordFile(const TFixedRecordFile&) = delete;
  TFixedRecordFile& operator=(const TFixedRecordFile&) = delete;

  /// Writes an empty table to a stream that is open for writing and commits it. On success the
  /// stream belongs to this object; on failure it stays the caller's.
  [[nodiscard]] bool CreateNew(TQvStream* stream, bool overwrite);
  /// Closes the stream that CreateNew has taken over.
  void Close();

 private:
  TQvDbHeader header_;
  std::unique_ptr<TQvStream> stream_;
};

/// The bytes of an empty table file of this layout.
[[nodiscard]] std::string MakeEmptyTableImage(const TQvDbHeader& header);

}  // namespace QvPlatform
