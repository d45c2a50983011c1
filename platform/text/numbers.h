#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers in the C notation, whatever the locale of the process says.
namespace QvPlatform {

/// The fewest digits that read back as the same double, in plain notation from 1e-7 up to below
/// 1e16 and with an exponent beyond. Infinities and NaN are "inf", "-inf" and "nan".
[[nodiscard]] std::string DoubleToText(double value);
/// Reads the whole trimmed text as a finite double; one leading "+" is allowed. False, with `out`
/// unchanged, for anything else, and for a number too great or too small for a double.
[[nodiscard]] bool TextToDouble(std::string_view text, double* out);
/// Reads the whole trimmed text as a 32-bit decimal integer; one leading "+" is allowed. False,
/// with `out` unchanged, for anything else.
[[nodiscard]] bool TextToInteger(std::string_view text, int* out);
/// Reads a 64-bit integer as TextToInteger reads a 32-bit one.
[[nodiscard]] bool TextToInteger64(std::string_view text, std::int64_t* out);

}  // namespace QvPlatform
