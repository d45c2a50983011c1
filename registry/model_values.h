#pragma once

#include <optional>
#include <string>

#include "platform/geocore/system_model.h"

/// How numbers become the texts of a model. Records are found again by these texts, so everything
/// that makes models from doubles makes them here.
namespace QvRefSystem {

/// Shortest decimal text that reads back as the same double ("0.9996", "500000", "-34.5"); never
/// "-0".
[[nodiscard]] std::string FormatNumber(double value);

/// f = 1 / inverse flattening; 0 for an inverse flattening of 0, by which PROJ's forms mean a
/// sphere.
[[nodiscard]] double FlatteningFromInverse(double inverseFlattening);
/// 1 / f as the shortest text that gives the same f again through FlatteningFromInverse.
[[nodiscard]] std::string InverseFlatteningText(double flattening);

/// Decimal degrees of a value in EPSG unit 9110 (sexagesimal DMS: degrees, point, two digits of
/// minutes, two digits of seconds, fraction of seconds; 2.201395 is 2 degrees 20' 13.95").
/// The digits are those of the shortest decimal text of `dms`, the division is rounded once.
/// False, and `degrees` unchanged, for minutes or seconds of 60 and more.
[[nodiscard]] bool SexagesimalDmsToDegrees(double dms, double* degrees);

/// The shape of an ellipsoid from its semi-major axis and one of the two other numbers, each text
/// in `unit`:
/// - `inverseFlattening` of more than 0: useF, f = 1/rf, b computed for display;
/// - `inverseFlattening` of 0, or b equal to a: a sphere, b = a;
/// - else `b` gives the shape: useF false, f 0.
[[nodiscard]] EllipsoidModel MakeEllipsoid(double a, std::optional<double> inverseFlattening,
                                           std::optional<double> b, const UnitModel& unit);

}  // namespace QvRefSystem
