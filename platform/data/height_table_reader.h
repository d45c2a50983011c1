#pragma once

#include <cstddef>
#include <string_view>

#include "platform/data/grid_extents.h"
#include "platform/ui/progress_interface.h"

/// The text in which a height table rests. Numbers between blanks, tabs, line feeds and carriage
/// returns: south, north, west, east, cell size north-south, cell size east-west, then the values
/// by rows from the north down, each row from west to east. Line ends mean no more than blanks. All
/// in the C notation, whatever the process locale says.
namespace QvRefSystem {

/// How many numbers stand at the head of a text.
inline constexpr std::size_t kHeightHeaderNumbers = 6;

/// What the numbers at the head of a text say.
struct HeightTableHeader {
  /// Limits and cells in the unit of the table's plane.
  GridExtents extents;
  /// The counts of the grid: how many values the whole text needs, and in how long rows.
  GridCounts counts;
};

/// Reads the head alone. False, and the header is unchanged, if there are no six finite numbers, or
/// if CountNodes counts nothing for them.
[[nodiscard]] bool ReadHeightTableHeader(std::string_view text, HeightTableHeader* header);

/// Reads a text into a table, which it resizes. Each value is the double nearest to its decimal
/// number: what std::from_chars reads; one "+" may stand ahead of it. A byte order mark ahead of
/// the text and one zero byte at its end are passed over, and what follows the last value is not
/// looked at. Crc is up to date afterwards.
///
/// False, with the table in any state: a head that ReadHeightTableHeader refuses; too few values;
/// one that is no finite number; too little memory; a cancelling user. A head that tells of more
/// values than the rest of the text can hold is refused before memory is taken.
///
/// The steps announced are one for each number of the text and one for each row.
[[nodiscard]] bool ParseHeightTable(THeightTable* table, std::string_view text,
                                    TProgressInterface* progress);

}  // namespace QvRefSystem
