#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/data/height_table.h"
#include "platform/ui/progress_interface.h"

/// How the text that height_table_reader.h describes is laid out in a file: the head on a line, its
/// numbers with a blank between, then a line for each row, with a tab behind each value.
namespace QvRefSystem {

/// The format of limits and cells in a file: twelve digits hold a limit to 0.1 mm on the Earth.
inline constexpr char kHeightHeaderFormat[] = "%.12lg";
/// The format of values in a file: three decimals hold a height to 1 mm.
inline constexpr char kHeightValueFormat[] = "%.3lf";

/// Writes a table as text. The formats are those of printf for one double, such as
/// kHeightHeaderFormat and kHeightValueFormat, which is the fastest; digits are exact, a tie goes
/// to the even one.
///
/// False, with `text` empty: a table without nodes; limits or a value that are not finite, which no
/// one could read back; a format that is not for one double; too little memory; a cancelling user.
///
/// The steps announced are the rows; the last one is not reported.
[[nodiscard]] bool FormatHeightTable(const THeightTable* table, std::string* text,
                                     const char* headerFormat, const char* valueFormat,
                                     TProgressInterface* progress);

/// The tokens of a text, each as it is, in the lines in which tables are written: a tree holds a
/// table as one line, beside the checksum of these lines. Nothing for a text whose head is not to
/// be read, or that has not as many values as a row.
[[nodiscard]] std::optional<std::string> HeightTableInLines(std::string_view text);

}  // namespace QvRefSystem
