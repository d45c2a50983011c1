#pragma once

// The parts that the sources of the reference system processor share; nobody else includes this.

#include <span>
#include <string_view>

#include "processors/ref_system_processor.h"

namespace QvRefSystem {

/// TYPE of a reference system.
enum : int {
  kLocalCartesian = 1,
  kLocal = 2,
  kGeocentric = 3,
  kGeodetic = 4,
  kProjected = 5,
  kTopocentric = 6
};

inline constexpr std::string_view kHeightsLabel = "vertical reference system";

/// One member of a body. Some are written and read alike, some only one way.
enum class TQvRfRefSystemDataProcessor::Step : unsigned char {
  kSwap,
  kAxes,
  kLinearUnit,
  kAngularUnit,
  kHeights,
  kUnitInHeights,
  kHeightsWithUnit,
  kPrimeMeridian,
  kEllipsoid,
  kDatumIfAny,
  kDatumOrEllipsoid,
  kPositiveLongitude,
  kProjection,
  kMifProjectionType,
  kPrimary,
  kOptionalPrimary,
  kPlaneOrigin,
  kSpaceOrigin,
  kAzimuth,
  kVertical
};

/// What a kind of system is made of behind the head, in the order of writing and of reading.
struct TQvRfRefSystemDataProcessor::Kind {
  std::span<const Step> written;
  std::span<const Step> read;
};

}  // namespace QvRefSystem
