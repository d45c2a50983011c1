#include "registry/helmert.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "registry/model_values.h"
#include "registry/registry_units.h"

namespace QvRefSystem {
namespace {

constexpr int kMetre = 9001;
constexpr int kArcSecond = 9104;
constexpr int kPartsPerMillion = 9202;

struct MethodRow {
  int code;
  ShiftMethodTraits traits;
};

// Codes: EPSG Dataset v10.076, coordinate operation methods, for the geocentric, geographic 3D and
// geographic 2D domain of each.
constexpr MethodRow kMethods[] = {
    {1031, {ShiftMethod::kTranslation}},
    {1032, {ShiftMethod::kCoordinateFrame}},
    {1033, {ShiftMethod::kPositionVector}},
    {1034, {ShiftMethod::kCoordinateFrame, ShiftTime::kAlways, true}},
    {1035, {ShiftMethod::kTranslation}},
    {1037, {ShiftMethod::kPositionVector}},
    {1038, {ShiftMethod::kCoordinateFrame}},
    {1039, {ShiftMethod::kCoordinateFrame, ShiftTime::kAlways, true}},
    {1053, {ShiftMethod::kPositionVector, ShiftTime::kWithRates}},
    {1054, {ShiftMethod::kPositionVector, ShiftTime::kWithRates}},
    {1055, {ShiftMethod::kPositionVector, ShiftTime::kWithRates}},
    {1056, {ShiftMethod::kCoordinateFrame, ShiftTime::kWithRates}},
    {1057, {ShiftMethod::kCoordinateFrame, ShiftTime::kWithRates}},
    {1058, {ShiftMethod::kCoordinateFrame, ShiftTime::kWithRates}},
    {1061, {ShiftMethod::kPositionVector, ShiftTime::kAlways, true}},
    {1062, {ShiftMethod::kPositionVector, ShiftTime::kAlways, true}},
    {1063, {ShiftMethod::kPositionVector, ShiftTime::kAlways, true}},
    {1065, {ShiftMethod::kPositionVector, ShiftTime::kAtEpoch}},
    {1066, {ShiftMethod::kCoordinateFrame, ShiftTime::kAtEpoch}},
    {9601, {ShiftMethod::kLongitudeRotation}},
    {9603, {ShiftMethod::kTranslation}},
    {9606, {ShiftMethod::kPositionVector}},
    {9607, {ShiftMethod::kCoordinateFrame}},
    {9636, {ShiftMethod::kCoordinateFrame, ShiftTime::kAlways, true}},
};
static_assert(std::ranges::is_sorted(kMethods, {}, &MethodRow::code));

double InBaseUnit(const EpsgMeasure& measure) {
  const UnitModel* unit = FindRegistryUnit(measure.unit);
  return unit ? measure.value * unit->factorB / unit->factorC : 0;
}

double RotationSign(ShiftMethod method) {
  return method == ShiftMethod::kCoordinateFrame ? -1 : 1;
}

// rotation cross x.
std::array<double, 3> Turned(const std::array<double, 3>& rotation,
                             const std::array<double, 3>& x) {
  return {rotation[1] * x[2] - rotation[2] * x[1], rotation[2] * x[0] - rotation[0] * x[2],
          rotation[0] * x[1] - rotation[1] * x[0]};
}

std::array<double, 3> Applied(const HelmertParameters& shift, const std::array<double, 3>& x) {
  const std::array<double, 3> turned = Turned(shift.rotation, x);
  std::array<double, 3> result{};
  for (std::size_t i = 0; i < 3; ++i) {
    result[i] = shift.translation[i] + (1 + shift.scale) * (x[i] + turned[i]);
  }
  return result;
}

// A computed value with nine decimals: a nanometre, and less than that at the Earth's surface for
// arc-seconds and parts per million.
std::string ComputedText(double value) {
  constexpr double kDecimals = 1e9;
  return FormatNumber(std::round(value * kDecimals) / kDecimals);
}

const UnitModel& Unit(int code) {
  return *FindRegistryUnit(code);
}

}  // namespace

ShiftMethodTraits TraitsOfShiftMethod(int method) {
  const auto found = std::ranges::lower_bound(kMethods, method, {}, &MethodRow::code);
  return found == std::end(kMethods) || found->code != method ? ShiftMethodTraits{} : found->traits;
}

HelmertParameters ParametersOf(const EpsgShiftOperation& operation, double turnLongitudes) {
  const ShiftMethodTraits traits = TraitsOfShiftMethod(operation.method);
  HelmertParameters shift;
  if (traits.method == ShiftMethod::kLongitudeRotation) {
    shift.rotation[2] = turnLongitudes;
    return shift;
  }
  for (std::size_t i = 0; i < 3; ++i) {
    shift.translation[i] = InBaseUnit(operation.parameters[i]);
    shift.rotation[i] = RotationSign(traits.method) * InBaseUnit(operation.parameters[i + 3]);
  }
  shift.scale = InBaseUnit(operation.parameters[6]);
  if (traits.aboutPoint) {
    std::array<double, 3> point{};
    for (std::size_t i = 0; i < 3; ++i)
      point[i] = InBaseUnit(operation.pivot[i]);
    // T + P + A(x - P) = (T + P - A(P)) + A(x), A being rotation and scale.
    const HelmertParameters linear{{}, shift.rotation, shift.scale};
    const std::array<double, 3> moved = Applied(linear, point);
    for (std::size_t i = 0; i < 3; ++i)
      shift.translation[i] += point[i] - moved[i];
  }
  return shift;
}

HelmertParameters Inverse(const HelmertParameters& shift) {
  HelmertParameters inverse;
  inverse.scale = 1 / (1 + shift.scale) - 1;
  for (std::size_t i = 0; i < 3; ++i)
    inverse.rotation[i] = -shift.rotation[i];
  const std::array<double, 3> moved =
      Applied({{}, inverse.rotation, inverse.scale}, shift.translation);
  for (std::size_t i = 0; i < 3; ++i)
    inverse.translation[i] = -moved[i];
  return inverse;
}

HelmertParameters Compose(const HelmertParameters& first, const HelmertParameters& second) {
  HelmertParameters both;
  both.translation = Applied(second, first.translation);
  for (std::size_t i = 0; i < 3; ++i)
    both.rotation[i] = first.rotation[i] + second.rotation[i];
  both.scale = first.scale + second.scale + first.scale * second.scale;
  return both;
}

DatumShiftModel ShiftModelOf(const EpsgShiftOperation& operation) {
  const ShiftMethodTraits traits = TraitsOfShiftMethod(operation.method);
  if (traits.method == ShiftMethod::kLongitudeRotation) {
    return ShiftModelOf(ParametersOf(operation));
  }
  DatumShiftModel model;
  std::string* const texts[] = {&model.tx, &model.ty, &model.tz, &model.rx,
                                &model.ry, &model.rz, &model.s};
  const bool seven = traits.method != ShiftMethod::kTranslation;
  for (std::size_t i = 0; i < (seven ? 7U : 3U); ++i) {
    *texts[i] = FormatNumber(operation.parameters[i].value);
  }
  model.linearUnit = Unit(operation.parameters[0].unit);
  model.type = 1;
  if (seven) {
    model.type = traits.method == ShiftMethod::kPositionVector ? 2 : 3;
    model.angularUnit = Unit(operation.parameters[3].unit);
    model.scaleUnit = Unit(operation.parameters[6].unit);
  }
  if (traits.aboutPoint) {
    const HelmertParameters centred = ParametersOf(operation);
    for (std::size_t i = 0; i < 3; ++i)
      *texts[i] = ComputedText(centred.translation[i]);
    model.linearUnit = Unit(kMetre);
  }
  return model;
}

DatumShiftModel ShiftModelOf(const HelmertParameters& shift) {
  DatumShiftModel model;
  model.linearUnit = Unit(kMetre);
  model.tx = ComputedText(shift.translation[0]);
  model.ty = ComputedText(shift.translation[1]);
  model.tz = ComputedText(shift.translation[2]);
  const auto inUnit = [](double value, int unit) {
    return ComputedText(value * Unit(unit).factorC / Unit(unit).factorB);
  };
  const std::string rx = inUnit(shift.rotation[0], kArcSecond);
  const std::string ry = inUnit(shift.rotation[1], kArcSecond);
  const std::string rz = inUnit(shift.rotation[2], kArcSecond);
  const std::string s = inUnit(shift.scale, kPartsPerMillion);
  model.type = 1;
  if (rx == "0" && ry == "0" && rz == "0" && s == "0") return model;
  model.type = 2;
  model.rx = rx;
  model.ry = ry;
  model.rz = rz;
  model.s = s;
  model.angularUnit = Unit(kArcSecond);
  model.scaleUnit = Unit(kPartsPerMillion);
  return model;
}

}  // namespace QvRefSystem
