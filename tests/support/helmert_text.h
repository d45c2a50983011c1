#pragma once

#include <numbers>
#include <string>

#include "platform/geocore/system_model.h"

namespace refframe_tests {

/// A value of a record in the base of its unit; an absent one is zero.
inline double InBase(const std::string& text, const QvRefSystem::UnitModel& unit) {
  return text.empty() ? 0 : std::stod(text) * unit.factorB / unit.factorC;
}

/// PROJ's step of a datum shift, from the record alone.
inline std::string HelmertText(const QvRefSystem::DatumShiftModel& shift) {
  std::string text = "+proj=helmert";
  const auto add = [&text](const char* name, double value) {
    char number[40];
    std::snprintf(number, sizeof number, "=%.17g", value);
    text += std::string(" +") + name + number;
  };
  add("x", InBase(shift.tx, shift.linearUnit));
  add("y", InBase(shift.ty, shift.linearUnit));
  add("z", InBase(shift.tz, shift.linearUnit));
  if (shift.type == 1) return text;
  constexpr double kSeconds = 648000 / std::numbers::pi;
  add("rx", InBase(shift.rx, shift.angularUnit) * kSeconds);
  add("ry", InBase(shift.ry, shift.angularUnit) * kSeconds);
  add("rz", InBase(shift.rz, shift.angularUnit) * kSeconds);
  add("s", InBase(shift.s, shift.scaleUnit) * 1e6);
  return text + " +convention=" + (shift.type == 2 ? "position_vector" : "coordinate_frame");
}

}  // namespace refframe_tests
