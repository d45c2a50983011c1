#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/data/height_table.h"
#include "platform/ui/progress_interface.h"

/// The text in which a height table rests. Numbers between blanks, tabs, line feeds and carriage
/// returns: south, north, west, east, cell size north-south, cell size east-west, then the values
/// by rows from the north down, each row from west to east. Line ends mean no more than blanks. All
/// in the C notation, whatever the process locale says.
namespace QvRefSystem {

/// Numbers as height files have them: twelve digits hold a limit to 0.1 mm on the earth, three
/// decimals a height to 1 mm.
inline constexpr char kHeightHeaderFormat[] = "%.12lg";
inline constexpr char kHeightValueFormat[] = "%.3lf";

/// What the six numbers at the head of a text say.
struct HeightTableHeader {
  double south = 0;
  double north = 0;
  double west = 0;
  double east = 0;
  double cellNorthSouth = 0;
  double cellEastWest = 0;
  /// Nodes from west to east and from south to north, the nearest to the span divided by the cell
  /// size.
  std::uint32_t countX = 0;
  std::uint32_t countY = 0;
};

/// Reads the head alone. False, and the header is unchanged, if there are no six finite numbers; if
/// south > north or west > east; if a cell size is not greater than 0; if a count does not fit into
/// 32 bits, or both multiplied into memory.
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
[[nodiscard]] bool ParseHeightTable(QvCommonUtils::T2DTable<double>* table, std::string_view text,
                                    TProgressInterface* progress);

/// Writes a table as text: the head on a line, its numbers with a blank between, then a line for
/// each row, with a tab behind each value. The formats are those of printf for one double, such as
/// kHeightHeaderFormat and kHeightValueFormat, which is the fastest; digits are exact, a tie goes
/// to the even one.
///
/// False, with `text` empty: a table without nodes; limits or a value that are not finite, which no
/// one could read back; a format that is not for one double; too little memory; a cancelling user.
///
/// The steps announced are the rows; the last one is not reported.
[[nodiscard]] bool FormatHeightTable(const QvCommonUtils::T2DTable<double>* table,
                                     std::string* text, const char* headerFormat,
                                     const char* valueFormat, TProgressInterface* progress);

}  // namespace QvRefSystem
