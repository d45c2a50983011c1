#include "platform/data/height_table_reader.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "platform/data/height_table_numbers.h"

namespace QvRefSystem {

namespace {

std::string_view WithoutFrame(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (text.ends_with('\0')) text.remove_suffix(1);
  return text;
}

bool ReadHeader(detail::TokenReader* reader, HeightTableHeader* header) {
  double numbers[kHeightHeaderNumbers];
  if (!reader->Read(numbers, kHeightHeaderNumbers)) return false;
  const auto [south, north, west, east, cellNorthSouth, cellEastWest] = numbers;
  const GridExtents extents{west, east, south, north, cellEastWest, cellNorthSouth};
  const std::optional<GridCounts> counts = CountNodes(extents);
  if (counts) *header = {extents, *counts};
  return counts.has_value();
}

/// Reports the steps of reading to those who want to know.
class Steps {
 public:
  Steps(const TProgressInterface* progress, std::uint64_t count)
      : next_(progress != nullptr ? progress->Next : nullptr) {
    if (progress == nullptr || progress->SetMax == nullptr) return;
    constexpr std::uint64_t kMost = std::numeric_limits<int>::max();
    progress->SetMax(static_cast<int>(std::min(count, kMost)));
  }
  /// True unless the user has cancelled.
  [[nodiscard]] bool Take(std::uint64_t count) const {
    if (next_ == nullptr) return true;
    for (; count != 0; --count) {
      if (next_() != 0) return false;
    }
    return true;
  }

 private:
  int (*next_)();
};

/// Rows are read into a buffer and moved into the table a bundle at a time: one value by itself
/// would touch another cache line for each column.
bool ReadRows(detail::TokenReader* reader, const Steps& steps, THeightTable* table) {
  const std::size_t width = table->CountX;
  const std::uint32_t bundle = std::min(table->RowsAtATime(), table->CountY);
  std::vector<double> values(bundle * width);
  for (std::uint32_t done = 0; done < table->CountY;) {
    const std::uint32_t rows = std::min(bundle, table->CountY - done);
    for (std::uint32_t row = 0; row < rows; ++row) {
      if (!reader->Read(values.data() + row * width, width)) return false;
      if (!steps.Take(width) || !steps.Take(1)) return false;
    }
    table->SetRows(table->CountY - 1 - done, {values.data(), rows * width});
    done += rows;
  }
  return true;
}

bool Parse(std::string_view text, TProgressInterface* progress, THeightTable* table) {
  detail::TokenReader reader(WithoutFrame(text));
  HeightTableHeader header;
  if (!ReadHeader(&reader, &header)) return false;
  const auto& [extents, counts] = header;
  const std::uint64_t nodes = std::uint64_t{counts.x} * counts.y;
  // Each value takes a digit and a separator at least, but for the last one.
  if (nodes > (reader.Rest() + 1) / 2) return false;
  const Steps steps(progress, nodes + kHeightHeaderNumbers + counts.y);
  if (!steps.Take(kHeightHeaderNumbers)) return false;
  table->Resize(counts.x, counts.y, extents.CellEastWest, extents.CellNorthSouth, extents.West,
                extents.South);
  return ReadRows(&reader, steps, table) && table->ComputeCrc();
}

}  // namespace

bool ReadHeightTableHeader(std::string_view text, HeightTableHeader* header) {
  detail::TokenReader reader(WithoutFrame(text));
  return ReadHeader(&reader, header);
}

bool ParseHeightTable(THeightTable* table, std::string_view text, TProgressInterface* progress) {
  if (table == nullptr) return false;
  try {
    return Parse(text, progress, table);
  } catch (...) {
    // Nothing is raised past this border; the callers turn it into their own message.
    return false;
  }
}

}  // namespace QvRefSystem
