#pragma once

#include <array>
#include <optional>
#include <string>

#include "platform/geocore/system_model.h"
#include "registry/proj_database.h"

/// Shifts between datums as three or seven parameters: how the registry's operations become them,
/// and how two of them become one.
namespace QvRefSystem {

/// x' = translation + (1 + scale) * (x + rotation cross x): the position vector sense, with the
/// rotation matrix linear in its angles, as the registry's methods have it.
struct HelmertParameters {
  /// Metres.
  std::array<double, 3> translation{};
  /// Radians about the axes X, Y and Z.
  std::array<double, 3> rotation{};
  /// Difference of the scale from one; no unit.
  double scale = 0;
};

/// What a method makes of its parameters.
enum class ShiftMethod {
  kTranslation,
  kPositionVector,
  kCoordinateFrame,
  /// Turns longitudes alone.
  kLongitudeRotation,
  kOther
};

/// When the parameters of a method hold.
enum class ShiftTime { kAlways, kAtEpoch, kWithRates };

/// What is to be known of a method before its parameters are read.
struct ShiftMethodTraits {
  /// The sense in which the parameters apply.
  ShiftMethod method = ShiftMethod::kOther;
  /// When the parameters hold.
  ShiftTime time = ShiftTime::kAlways;
  /// The rotation and scale apply about a point of evaluation (Molodensky-Badekas).
  bool aboutPoint = false;
};

/// By EPSG coordinate operation method; kOther for a method that is no such shift.
[[nodiscard]] ShiftMethodTraits TraitsOfShiftMethod(int method);

/// The parameters of an operation; those with rates at the operation's own epoch. `turnLongitudes`
/// is the part of a longitude rotation, in radians, that the prime meridians do not account for.
[[nodiscard]] HelmertParameters ParametersOf(const EpsgShiftOperation& operation,
                                             double turnLongitudes = 0);
/// The shift back. Its rotation has the signs turned, which leaves out squares of the angles, as
/// Compose does.
[[nodiscard]] HelmertParameters Inverse(const HelmertParameters& shift);
/// `first`, then `second`. Products of two rotations are left out: less than 1 mm for rotations of
/// up to two arc-seconds each.
[[nodiscard]] HelmertParameters Compose(const HelmertParameters& first,
                                        const HelmertParameters& second);

/// The shift of one operation, applied forwards, in the operation's own units and digits. The
/// translations of a Molodensky-Badekas method are those about the centre of the Earth.
[[nodiscard]] DatumShiftModel ShiftModelOf(const EpsgShiftOperation& operation);
/// The shift as a translation where there is nothing else, else as a position vector, in metres,
/// arc-seconds and parts per million. Name and texts are left empty.
[[nodiscard]] DatumShiftModel ShiftModelOf(const HelmertParameters& shift);

}  // namespace QvRefSystem
