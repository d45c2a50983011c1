#include <bit>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/data/height_table_reader.h"
#include "platform/data/height_table_writer.h"

namespace {

using namespace QvRefSystem;
using Table = QvCommonUtils::T2DTable<double>;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string Text(const Table& table, const char* valueFormat) {
  std::string text;
  Require(FormatHeightTable(&table, &text, "%.17lg", valueFormat, nullptr));
  return text;
}

bool SameValues(const Table& one, const Table& other) {
  for (std::uint32_t i = 0; i < one.CountX; ++i) {
    for (std::uint32_t j = 0; j < one.CountY; ++j) {
      const double value = one.Get(i, j);
      if (std::bit_cast<std::uint64_t>(value) != std::bit_cast<std::uint64_t>(other.Get(i, j))) {
        return false;
      }
      if (value < one.MinValue || value > one.MaxValue) return false;
    }
  }
  return true;
}

/// The limits that the writer derives may lie too near to each other for a double where a cell is
/// tiny beside them; then the text tells of another grid.
bool KeepsItsNodes(const Table& table, const std::string& text) {
  HeightTableHeader header;
  return ReadHeightTableHeader(text, &header) && header.counts.x == table.CountX &&
         header.counts.y == table.CountY;
}

}  // namespace

/// A text is refused, or it reads as a table that comes back the same, and whose heights are
/// written alike by the fast path and by printf.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Table table;
  if (!ParseHeightTable(&table, {reinterpret_cast<const char*>(data), size}, nullptr)) return 0;
  Require(table.CrcValid == 1 && table.CountX != 0 && table.CountY != 0);
  Require(std::uint64_t{table.CountX} * table.CountY <= size);
  std::string text;
  // East and north may overflow although what was read does not.
  if (!FormatHeightTable(&table, &text, "%.17lg", "%.17lg", nullptr)) return 0;
  const std::string heights = Text(table, kHeightValueFormat);
  Require(heights == Text(table, "%#.3lf"));
  if (!KeepsItsNodes(table, text)) return 0;
  Table again;
  Require(ParseHeightTable(&again, text, nullptr) && SameValues(table, again));
  Require(again.Crc == table.Crc);
  Require(ParseHeightTable(&again, heights, nullptr));
  Require(Text(again, kHeightValueFormat) == heights);
  return 0;
}
