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
  const void* Data = nullptr;
  std::size_t Size = 0;
};

/// What the flag word tells; its other bits are 0. One of the three kinds is set.
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

struct LegacyParameter {
  /// EPSG parameter code.
  std::int32_t Code = 0;
  /// Degrees, units of the system, or a plain number, by the kind of the parameter.
  double Value = 0;
};

/// A system as its block holds it.
struct TProjectionInfo311 {
  std::string SystemName;
  std::string ProjectionName;
  /// Not 0: the first coordinate is the northing or the latitude.
  std::int32_t NorthingFirst = 0;
  /// EPSG method code of the projection.
  std::int32_t Method = 0;
  std::string EllipsoidName;
  /// Of lengths, with its size in metres.
  std::string UnitName;
  double UnitFactor = 0;
  /// Semi-major axis in metres, and 1/f; 0 is a sphere.
  double SemiMajorAxis = 0;
  double InverseFlattening = 0;
  std::string DatumName;
  std::string MeridianName;
  /// Degrees east of Greenwich.
  double MeridianLongitude = 0;
  /// 1 geocentric translation, 2 position vector, 3 coordinate frame rotation.
  std::int32_t ShiftType = 0;
  /// Metres (3), arc-seconds (3) and parts per million.
  double Shift[7] = {};
  /// Degrees from one zone's central meridian to the next one's.
  double ZoneWidth = 0;
  std::vector<LegacyParameter> Parameters;
};

/// The same for whoever makes a system of it, with the flags one for one.
struct SQvCTUI_ProjectionInfo1 : TProjectionInfo311 {
  bool Geodetic = false;
  bool Projected = false;
  bool Geocentric = false;
  bool HasShift = false;
  bool HasZones = false;
  /// Number of the zone in which the data lies.
  std::int32_t Zone = 0;
};

class TCTUI {
 public:
  virtual ~TCTUI() = default;
  /// Reads the block. False, with both unchanged, for a block that is damaged or of another kind.
  [[nodiscard]] virtual bool GetUserSystemProjectionInfo311(TProjectionInfo311* info,
                                                            std::uint32_t* flags) const = 0;
};

/// A reader over bytes that must outlive it; null for a block without bytes.
[[nodiscard]] std::unique_ptr<TCTUI> CreateCTUI(const TBinaryBlock& block);

/// The record of a system that was read. `averageX` and `averageY` are the mean coordinates of the
/// data in units of the system: the zone is the number of whole millions of metres in the easting,
/// 0 where that is no 32-bit number.
[[nodiscard]] SQvCTUI_ProjectionInfo1 MakeProjectionInfo1(const TProjectionInfo311& info,
                                                          std::uint32_t flags);
[[nodiscard]] std::int32_t LegacyZone(const SQvCTUI_ProjectionInfo1& info, double averageX,
                                      double averageY);

/// The block of a system; what CreateCTUI reads.
[[nodiscard]] std::string WriteLegacyBlock(const TProjectionInfo311& info, std::uint32_t flags);

}  // namespace QvPlatform
