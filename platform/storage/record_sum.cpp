#include "platform/storage/record_sum.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <array>
#include <bit>
#include <cmath>

namespace QvPlatform::detail {

namespace {

/// What stands ahead of each content, so that no two records of other contents have one text.
constexpr char kNull = 'n';
constexpr char kInteger = 'i';
constexpr char kFloat = 'f';
constexpr char kText = 't';

}  // namespace

void RecordSum::AddNumber(char kind, std::uint64_t bits) {
  // Byte by byte, so that machines of either byte order agree.
  std::array<char, 1 + sizeof bits> bytes{kind};
  for (std::size_t i = 1; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(bits & 0xFF);
    bits >>= 8;
  }
  bytes_.append(bytes.data(), bytes.size());
}

void RecordSum::Begin(std::int64_t id, std::int64_t version) {
  bytes_.clear();
  AddInteger(id);
  AddInteger(version);
}

void RecordSum::AddNull() {
  bytes_ += kNull;
}

void RecordSum::AddInteger(std::int64_t value) {
  AddNumber(kInteger, static_cast<std::uint64_t>(value));
}

void RecordSum::AddFloat(double value) {
  if (std::isnan(value)) return AddNull();
  AddNumber(kFloat, std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value));
}

void RecordSum::AddText(std::string_view text) {
  AddNumber(kText, text.size());
  bytes_.append(text);
}

void RecordSum::AddColumn(const Statement& query, int column) {
  switch (query.ColumnKind(column)) {
    case Statement::Kind::kInteger:
      return AddInteger(query.ColumnInteger(column));
    case Statement::Kind::kFloat:
      return AddFloat(query.ColumnFloat(column));
    case Statement::Kind::kText:
    case Statement::Kind::kBytes:
      return AddText(query.ColumnBytes(column));
    case Statement::Kind::kNull:
      return AddNull();
  }
}

std::int64_t RecordSum::Value() const {
  return SumOfBytes(bytes_);
}

std::int64_t SumOfBytes(std::string_view bytes) {
  return static_cast<std::int64_t>(XXH3_64bits(bytes.data(), bytes.size())) & RecordSum::kMask;
}

}  // namespace QvPlatform::detail
