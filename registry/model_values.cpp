#include "registry/model_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "platform/geocore/projjson.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

// Digits behind the seconds that fit an exact 64-bit count of the smallest part: 360 degrees are
// 1,296,000 seconds, and 1,296,000 * 10^12 < 2^63.
constexpr std::size_t kMaxSecondDigits = 12;

// A text without an exponent, so that its digits can be taken apart.
std::string FixedText(double value) {
  char buffer[400];
  const auto written =
      std::to_chars(std::begin(buffer), std::end(buffer), value, std::chars_format::fixed);
  return {buffer, written.ptr};
}

int TwoDigits(const std::string& digits, std::size_t at) {
  return (digits[at] - '0') * 10 + (digits[at + 1] - '0');
}

}  // namespace

std::string FormatNumber(double value) {
  return QvPlatform::DoubleToText(value == 0 ? 0.0 : value);
}

double FlatteningFromInverse(double inverseFlattening) {
  return inverseFlattening == 0 ? 0 : 1 / inverseFlattening;
}

std::string InverseFlatteningText(double flattening) {
  return FormatNumber(InverseFlattening(flattening));
}

bool SexagesimalDmsToDegrees(double dms, double* degrees) {
  if (!std::isfinite(dms) || std::abs(dms) > 360) return false;
  const std::string text = FixedText(std::abs(dms));
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string fraction = point < text.size() ? text.substr(point + 1) : std::string();
  fraction.resize(std::max<std::size_t>(fraction.size(), 4), '0');
  fraction.resize(std::min(fraction.size(), 4 + kMaxSecondDigits));
  const int minutes = TwoDigits(fraction, 0);
  const int seconds = TwoDigits(fraction, 2);
  if (minutes >= 60 || seconds >= 60) return false;

  std::int64_t parts =
      std::int64_t{std::stoi(text.substr(0, point))} * 3600 + minutes * 60 + seconds;
  std::int64_t partsOfDegree = 3600;
  for (std::size_t i = 4; i < fraction.size(); ++i) {
    parts = parts * 10 + (fraction[i] - '0');
    partsOfDegree *= 10;
  }
  const auto magnitude = static_cast<double>(static_cast<long double>(parts) /
                                             static_cast<long double>(partsOfDegree));
  *degrees = std::signbit(dms) && magnitude != 0 ? -magnitude : magnitude;
  return true;
}

EllipsoidModel MakeEllipsoid(double a, std::optional<double> inverseFlattening,
                             std::optional<double> b, const UnitModel& unit) {
  EllipsoidModel ellipsoid;
  ellipsoid.unit = unit;
  ellipsoid.a = FormatNumber(a);
  ellipsoid.useF = inverseFlattening.value_or(0) != 0;
  if (ellipsoid.useF) {
    ellipsoid.f = FlatteningFromInverse(*inverseFlattening);
    ellipsoid.b = FormatNumber(a - a * ellipsoid.f);
    return ellipsoid;
  }
  const double semiMinor = inverseFlattening ? a : b.value_or(a);
  ellipsoid.sphere = semiMinor == a;
  ellipsoid.b = FormatNumber(semiMinor);
  return ellipsoid;
}

}  // namespace QvRefSystem
