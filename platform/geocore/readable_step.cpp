#include "platform/geocore/readable_step.h"

#include <algorithm>
#include <cmath>

namespace QvRefSystem {
namespace {

// How much coarser than asked a cell may be so as to read well: a datum shift stretches a grid by a
// hundred-thousandth, a map projection by a few ten-thousandths, and neither is a loss.
constexpr double kSlack = 1e-3;

double PowerOfTen(int exponent) {
  // Exact up to 1e22, which is all that coordinates need.
  return std::pow(10.0, exponent);
}

bool Divides(double step, double whole) {
  const double count = whole / step;
  return std::abs(count - std::round(count)) < 1e-9 * std::max(1.0, count);
}

}  // namespace

ReadableStep ReadableStep::AtMost(double limit, double divides) {
  // In hundredths, so that all of them are whole numbers.
  constexpr int kDigits[] = {800, 750, 600, 500, 400, 300, 250, 200, 150, 125, 120, 100};
  const double allowed = limit * (1 + kSlack);
  const int decade = static_cast<int>(std::floor(std::log10(allowed)));
  for (const int exponent : {decade, decade - 1}) {
    for (const int digits : kDigits) {
      const ReadableStep step(digits, exponent - 2);
      if (step.Value() <= allowed && (divides == 0 || Divides(step.Value(), divides))) return step;
    }
  }
  // A quarter of a turn in radians has no readable part.
  return AtMost(limit);
}

double ReadableStep::Multiple(double count) const {
  const double whole = count * digits_;
  return exponent_ < 0 ? whole / PowerOfTen(-exponent_) : whole * PowerOfTen(exponent_);
}

double ReadableStep::CountBelow(double coordinate) const {
  return std::floor(coordinate / Value() + 1e-6);
}

double ReadableStep::CountAbove(double coordinate) const {
  return std::ceil(coordinate / Value() - 1e-6);
}

}  // namespace QvRefSystem
