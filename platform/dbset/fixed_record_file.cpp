#include "platform/dbset/fixed_record_file.h"

#include <stdexcept>

#include "platform/dbset/data_set.h"
#include "platform/dbset/field_descriptions.h"
#include "platform/storage/table_state.h"

namespace QvPlatform {

std::string MakeEmptyTableImage(const TQvDbHeader& header, const std::string& kind) {
  return detail::MakeTableImage(detail::Describe(header), kind);
}

std::string KindOfTable(const TQvDataSet& table) {
  return table.Note(0, detail::kKindNote).value_or("");
}

TFixedRecordFile::TFixedRecordFile(const TQvDbHeader& header, int recordSize) : header_(header) {
  if (recordSize != header.GetRecordSize()) {
    throw std::invalid_argument("the record size is not that of the fields");
  }
}

TFixedRecordFile::~TFixedRecordFile() = default;

bool TFixedRecordFile::CreateNew(TQvStream* stream, bool /*overwrite: the stream has decided*/) {
  lastError_.clear();
  if (stream == nullptr || header_.Fields().empty()) return false;
  try {
    const std::string image = MakeEmptyTableImage(header_, kind_);
    stream->Write(image.data(), image.size());
    stream->Commit();
  } catch (const StorageError& error) {
    lastError_ = error.what();
    return false;
  }
  stream_.reset(stream);
  return true;
}

void TFixedRecordFile::Close() {
  stream_.reset();
}

}  // namespace QvPlatform
