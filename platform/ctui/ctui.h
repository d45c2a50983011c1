#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Coordinate systems of users as older programs kept them: one binary block each. The format is
/// told in docs/legacy-blocks.md.
namespace QvPlatform {

/// Bytes that somebody else owns.
struct TBinaryBlock {
  /// The first byte; null for a block without bytes.
  const void* Data = nullptr;
  /// Number of bytes.
  std::size_t Size = 0;
};

/// What the flag word tells; its other bits are 0. One of the first three, the kinds, is set.
enum LegacyFlags : std::uint32_t {
  kLegacyGeodetic = 1,
  kLegacyProjected = 2,
  kLegacyGeocentric = 4,
  /// The block holds the shift from the datum to WGS 84.
  kLegacyShift = 8,
  /// The projection is one zone of many: its central meridian and false easting follow from the
  /// zone's number.
  kLegacyZones = 16,
};

/// One parameter of a projection.
struct LegacyParameter {
  /// EPSG parameter code.
  std::int32_t Code = 0;
  /// Degrees, units of the system, or a plain number, by the kind of the parameter.
  double Value = 0;
};

/// A system as its block holds it.
struct TProjectionInfo311 {
  /// Name of the system. Texts are UTF-8 without control characters, of 255 bytes at most.
  std::string SystemName;
  /// Name of the projection; may be empty.
  std::string ProjectionName;
  /// Not 0: the first coordinate is the northing or the latitude.
  std::int32_t NorthingFirst = 0;
  /// EPSG method code of the projection.
  std::int32_t Method = 0;
  /// Name of the ellipsoid.
  std::string EllipsoidName;
  /// Name of the unit of length.
  std::string UnitName;
  /// Metres in one unit of length.
  double UnitFactor = 0;
  /// Semi-major axis of the ellipsoid in metres.
  double SemiMajorAxis = 0;
  /// 1/f of the ellipsoid; 0 is a sphere.
  double InverseFlattening = 0;
  /// Name of the datum.
  std::string DatumName;
  /// Name of the prime meridian.
  std::string MeridianName;
  /// Degrees east of Greenwich.
  double MeridianLongitude = 0;
  /// 1 geocentric translation, 2 position vector, 3 coordinate frame rotation.
  std::int32_t ShiftType = 0;
  /// Metres (3), arc-seconds (3) and parts per million.
  double Shift[7] = {};
  /// Degrees from one zone's central meridian to the next one's.
  double ZoneWidth = 0;
  /// Parameters of the projection, 32 at most.
  std::vector<LegacyParameter> Parameters;
};

/// The same for whoever makes a system of it, with the flags one for one.
struct SQvCTUI_ProjectionInfo1 : TProjectionInfo311 {
  /// Coordinates are latitude and longitude.
  bool Geodetic = false;
  /// Coordinates are those of a plane.
  bool Projected = false;
  /// Coordinates are geocentric.
  bool Geocentric = false;
  /// Shift and its type count.
  bool HasShift = false;
  /// The projection is one zone of many.
  bool HasZones = false;
  /// Number of the zone in which the data lies.
  std::int32_t Zone = 0;
};

/// Reads one block.
class TCTUI {
 public:
  virtual ~TCTUI() = default;
  /// Reads the block. False, with both unchanged, for a block that is damaged or of another kind.
  [[nodiscard]] virtual bool GetUserSystemProjectionInfo311(TProjectionInfo311* info,
                                                            std::uint32_t* flags) const = 0;
};

/// A reader over bytes that must outlive it; null for a block without bytes.
[[nodiscard]] std::unique_ptr<TCTUI> CreateCTUI(const TBinaryBlock& block);

/// The record of a system that was read, with its flags; the zone is left at 0.
[[nodiscard]] SQvCTUI_ProjectionInfo1 MakeProjectionInfo1(const TProjectionInfo311& info,
                                                          std::uint32_t flags);
/// Number of the zone in which data lies whose mean coordinates, in units of the system, are these:
/// the whole millions of metres in the easting, 0 where that is no 32-bit number.
[[nodiscard]] std::int32_t LegacyZone(const SQvCTUI_ProjectionInfo1& info, double averageX,
                                      double averageY);

/// The block of a system; what CreateCTUI reads.
[[nodiscard]] std::string WriteLegacyBlock(const TProjectionInfo311& info, std::uint32_t flags);

}  // namespace QvPlatform
