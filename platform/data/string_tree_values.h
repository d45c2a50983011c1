#pragma once

#include <string>
#include <vector>

#include "platform/text/text.h"

/// The number and text helpers that travel with the tree.
namespace QvCommonUtils {

/// The shortest text that reads back as the same double.
[[nodiscard]] std::string ValueToString(const double& value);
/// `format` is a printf format for one double, as in "%.3lf m"; the result does not depend on the
/// locale. Throws std::invalid_argument for any other format.
[[nodiscard]] std::string ValueToString(const double& value, const char* format);
/// Reads the whole trimmed text as a finite double; `value` is unchanged on failure.
[[nodiscard]] bool ValueFromString(const std::string& text, double* value);
/// The pieces between separators: one more than there are separators, empty ones included.
[[nodiscard]] std::vector<std::string> SplitString(const std::string& text, char separator);
/// Puts the lowest finite double.
void MinValueOfType(double* value);
/// Puts the highest finite double.
void MaxValueOfType(double* value);
using QvPlatform::Decode;
using QvPlatform::Encode;

}  // namespace QvCommonUtils
