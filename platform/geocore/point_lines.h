#pragma once

#include <string>
#include <string_view>

#include "platform/geocore/shell_reference_system.h"

/// Points as lines of text: first, second and, if wanted, third coordinate in the axes of a system,
/// decimals in the C notation between blanks or tabs.
namespace QvRefSystem {

/// Whether a line holds no point: it is blank or a comment, which begins with "#".
[[nodiscard]] bool IsPassedOverLine(std::string_view line);

/// A line end and carriage return may stand behind the numbers. Without a third number Third is 0
/// and `hasThird` false. False, with the rest unchanged and `reason` telling why, for a line of
/// fewer than two or more than three numbers or of anything else.
[[nodiscard]] bool ReadPointLine(std::string_view line, TShellPoint* point, bool* hasThird,
                                 std::string* reason);

/// Appends the coordinates with as many decimals as resolve a tenth of a micrometre on the Earth,
/// parted by blanks, in the axes of `system`.
void AppendPoint(const TShellReferenceSystem& system, const TShellPoint& point, bool withThird,
                 std::string* line);

}  // namespace QvRefSystem
