#include "processors/system_bodies.h"

#include <array>

namespace QvRefSystem {

std::span<const std::string_view> RequiredReferences(SystemKind kind) {
  static constexpr std::array<std::string_view, 1> kCartesian{"LINEAR_UNIT_AUTOKEY"};
  static constexpr std::array<std::string_view, 2> kLocal{"LINEAR_UNIT_AUTOKEY",
                                                          "ELLIPSOID_AUTOKEY"};
  static constexpr std::array<std::string_view, 2> kGeocentric{"LINEAR_UNIT_AUTOKEY",
                                                               "PRIME_MERIDIAN_AUTOKEY"};
  static constexpr std::array<std::string_view, 4> kGeodetic{
      "LINEAR_UNIT_AUTOKEY", "ANGULAR_UNIT_AUTOKEY", "PRIME_MERIDIAN_AUTOKEY", "ELLIPSOID_AUTOKEY"};
  static constexpr std::array<std::string_view, 4> kProjected{
      "LINEAR_UNIT_AUTOKEY", "PRIME_MERIDIAN_AUTOKEY", "ELLIPSOID_AUTOKEY", "MAP_PROJ_AUTOKEY"};
  static constexpr std::array<std::string_view, 2> kTopocentric{"LINEAR_UNIT_AUTOKEY",
                                                                "PRIMARY_REFSYSTEM_AUTOKEY"};
  switch (kind) {
    case SystemKind::kLocalCartesian:
      return kCartesian;
    case SystemKind::kLocal:
      return kLocal;
    case SystemKind::kGeocentric:
      return kGeocentric;
    case SystemKind::kGeodetic:
      return kGeodetic;
    case SystemKind::kProjected:
      return kProjected;
    case SystemKind::kTopocentric:
      return kTopocentric;
  }
  return {};
}

}  // namespace QvRefSystem
