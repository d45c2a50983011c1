#pragma once

namespace QvRefSystem {

/// A step that reads well: 1, 1.2, 1.25, 1.5, 2, 2.5, 3, 4, 5, 6, 7.5 or 8 times a power of ten.
/// Its multiples come out as the doubles next to their decimal numbers, so that their shortest
/// texts are as short as they look.
class ReadableStep {
 public:
  /// The greatest step that is not above `limit`, or a thousandth at most; `divides`, if not 0,
  /// must be a multiple of it, if a step near the limit is one. The limit must be above 0 and
  /// finite.
  [[nodiscard]] static ReadableStep AtMost(double limit, double divides = 0);

  /// The step itself.
  [[nodiscard]] double Value() const { return Multiple(1); }
  /// A whole number of steps.
  [[nodiscard]] double Multiple(double count) const;
  /// The last multiple that is not above a coordinate, counted in steps; a coordinate within a
  /// millionth of a step beside a multiple counts as that multiple.
  [[nodiscard]] double CountBelow(double coordinate) const;
  /// The first multiple that is not below a coordinate, in the same way.
  [[nodiscard]] double CountAbove(double coordinate) const;

 private:
  ReadableStep(int digits, int exponent) : digits_(digits), exponent_(exponent) {}

  /// The step is digits_ times ten to the power exponent_.
  int digits_;
  int exponent_;
};

}  // namespace QvRefSystem
