#pragma once

// The parts that the sources of the reference system processor share; nobody else includes this.

#include <span>
#include <string_view>

#include "platform/geocore/system_model.h"
#include "processors/ref_system_processor.h"

namespace QvRefSystem {

/// TYPE of a reference system, as its column holds it.
inline constexpr int kLocalCartesian = static_cast<int>(SystemKind::kLocalCartesian);
inline constexpr int kGeocentric = static_cast<int>(SystemKind::kGeocentric);
inline constexpr int kGeodetic = static_cast<int>(SystemKind::kGeodetic);
inline constexpr int kProjected = static_cast<int>(SystemKind::kProjected);
inline constexpr int kTopocentric = static_cast<int>(SystemKind::kTopocentric);

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
