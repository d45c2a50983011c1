#pragma once

#include <span>
#include <string_view>

#include "platform/geocore/system_model.h"

/// The one table of map projection methods: EPSG codes, parameters, exchange numbers.
namespace QvRefSystem {

/// A parameter of map projections.
struct ProjectionParameter {
  /// EPSG parameter code.
  int code;
  /// The name in the registry.
  std::string_view name;
  /// Of which kind its unit is.
  UnitKind unit;
};

/// A method's number in MIF/MID files; -1 where there is none.
inline constexpr int kNoExchangeCode = -1;

/// A method of map projections.
struct ProjectionMethod {
  /// EPSG method code, the TYPE of map projection types.
  int code;
  /// The name in the registry.
  std::string_view name;
  /// EPSG parameter codes in the order in which they are shown.
  std::span<const int> parameters;
  /// GeoTIFF ProjCoordTransGeoKey number and MIF/MID projection number, or kNoExchangeCode.
  int geoTiffCode;
  int mifCode;
};

/// All methods of the registry's projected systems, by code.
[[nodiscard]] std::span<const ProjectionMethod> ProjectionMethods();
/// Null for a code that the table does not have.
[[nodiscard]] const ProjectionMethod* FindProjectionMethod(int code);
/// Null for a code that the table does not have.
[[nodiscard]] const ProjectionParameter* FindProjectionParameter(int code);

}  // namespace QvRefSystem
