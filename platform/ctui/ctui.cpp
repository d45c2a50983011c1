#include "platform/ctui/ctui.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>

#include "platform/storage/crc32.h"
#include "platform/text/locale.h"

namespace QvPlatform {

namespace {

constexpr std::string_view kMagic = "RFLB";
constexpr std::uint32_t kVersion = 1;
constexpr std::uint32_t kKnownFlags = 0x1F;
constexpr std::uint32_t kLongestText = 255;
constexpr std::uint32_t kMostParameters = 32;

/// Takes values off the front of bytes that may hold anything. After a failure nothing more is
/// taken, and Good() is false.
class BlockReader {
 public:
  explicit BlockReader(std::string_view bytes) : rest_(bytes) {}

  [[nodiscard]] bool Good() const { return good_; }
  [[nodiscard]] bool AtEnd() const { return rest_.empty(); }
  void Require(bool condition) { good_ = good_ && condition; }

  std::string_view Bytes(std::size_t count) {
    Require(count <= rest_.size());
    if (!good_) return {};
    const std::string_view bytes = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return bytes;
  }
  std::uint64_t Number(std::size_t size) {
    std::uint64_t value = 0;
    unsigned shift = 0;
    for (const char c : Bytes(size)) {
      value |= std::uint64_t{static_cast<unsigned char>(c)} << shift;
      shift += 8;
    }
    return value;
  }
  void Take(std::uint32_t* value) { *value = static_cast<std::uint32_t>(Number(4)); }
  void Take(std::int32_t* value) {
    *value = static_cast<std::int32_t>(static_cast<std::uint32_t>(Number(4)));
  }
  void Take(double* value) {
    *value = std::bit_cast<double>(Number(8));
    Require(std::isfinite(*value));
  }
  void Take(std::string* text) {
    const std::uint64_t size = Number(2);
    Require(size <= kLongestText);
    *text = Bytes(static_cast<std::size_t>(size));
    const auto isControl = [](unsigned char c) { return c < ' ' || c == 0x7F; };
    Require(IsUtf8(*text) && std::ranges::none_of(*text, isControl));
  }
  void Take(std::vector<LegacyParameter>* parameters) {
    std::uint32_t count = 0;
    Take(&count);
    Require(count <= kMostParameters);
    for (std::uint32_t i = 0; good_ && i < count; ++i) {
      LegacyParameter parameter;
      Take(&parameter.Code);
      Take(&parameter.Value);
      parameters->push_back(parameter);
    }
  }

 private:
  std::string_view rest_;
  bool good_ = true;
};

class BlockWriter {
 public:
  void Number(std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i, value >>= 8U)
      bytes_ += static_cast<char>(value & 0xFFU);
  }
  void Take(const std::uint32_t* value) { Number(*value, 4); }
  void Take(const std::int32_t* value) { Number(static_cast<std::uint32_t>(*value), 4); }
  void Take(const double* value) { Number(std::bit_cast<std::uint64_t>(*value), 8); }
  void Take(const std::string* text) {
    const std::string_view kept = std::string_view(*text).substr(0, kLongestText);
    Number(kept.size(), 2);
    bytes_ += kept;
  }
  void Take(const std::vector<LegacyParameter>* parameters) {
    Number(parameters->size(), 4);
    for (const LegacyParameter& parameter : *parameters) {
      Take(&parameter.Code);
      Take(&parameter.Value);
    }
  }
  void Raw(std::string_view bytes) { bytes_ += bytes; }
  [[nodiscard]] std::string& Bytes() { return bytes_; }

 private:
  std::string bytes_;
};

/// The members in the order of the block, for reading and for writing.
template <typename Info, typename Walker>
void WalkMembers(Info& info, Walker* walker) {
  walker->Take(&info.SystemName);
  walker->Take(&info.ProjectionName);
  walker->Take(&info.NorthingFirst);
  walker->Take(&info.Method);
  walker->Take(&info.EllipsoidName);
  walker->Take(&info.UnitName);
  walker->Take(&info.UnitFactor);
  walker->Take(&info.SemiMajorAxis);
  walker->Take(&info.InverseFlattening);
  walker->Take(&info.DatumName);
  walker->Take(&info.MeridianName);
  walker->Take(&info.MeridianLongitude);
  walker->Take(&info.ShiftType);
  for (auto& value : info.Shift)
    walker->Take(&value);
  walker->Take(&info.ZoneWidth);
  walker->Take(&info.Parameters);
}

class BlockCTUI final : public TCTUI {
 public:
  explicit BlockCTUI(const TBinaryBlock& block)
      : bytes_(static_cast<const char*>(block.Data), block.Size) {}

  bool GetUserSystemProjectionInfo311(TProjectionInfo311* info,
                                      std::uint32_t* flags) const override {
    constexpr std::size_t kSumSize = 4;
    if (bytes_.size() < kSumSize) return false;
    const std::string_view body = bytes_.substr(0, bytes_.size() - kSumSize);
    BlockReader sum(bytes_.substr(body.size()));
    BlockReader reader(body);
    std::uint32_t version = 0;
    std::uint32_t read = 0;
    reader.Require(Crc32(body) == sum.Number(kSumSize));
    reader.Require(reader.Bytes(kMagic.size()) == kMagic);
    reader.Take(&version);
    reader.Require(version == kVersion);
    reader.Take(&read);
    reader.Require((read & ~kKnownFlags) == 0);
    TProjectionInfo311 result;
    WalkMembers(result, &reader);
    if (!reader.Good() || !reader.AtEnd()) return false;
    *info = std::move(result);
    *flags = read;
    return true;
  }

 private:
  std::string_view bytes_;
};

}  // namespace

std::unique_ptr<TCTUI> CreateCTUI(const TBinaryBlock& block) {
  if (block.Data == nullptr || block.Size == 0) return nullptr;
  return std::make_unique<BlockCTUI>(block);
}

SQvCTUI_ProjectionInfo1 MakeProjectionInfo1(const TProjectionInfo311& info, std::uint32_t flags) {
  SQvCTUI_ProjectionInfo1 record;
  static_cast<TProjectionInfo311&>(record) = info;
  record.Geodetic = (flags & kLegacyGeodetic) != 0;
  record.Projected = (flags & kLegacyProjected) != 0;
  record.Geocentric = (flags & kLegacyGeocentric) != 0;
  record.HasShift = (flags & kLegacyShift) != 0;
  record.HasZones = (flags & kLegacyZones) != 0;
  return record;
}

std::int32_t LegacyZone(const SQvCTUI_ProjectionInfo1& info, double averageX, double averageY) {
  const double easting = info.NorthingFirst != 0 ? averageY : averageX;
  const double zone = std::floor(easting * info.UnitFactor * 0.000001);
  using Limits = std::numeric_limits<std::int32_t>;
  return zone >= Limits::min() && zone <= Limits::max() ? static_cast<std::int32_t>(zone) : 0;
}

std::string WriteLegacyBlock(const TProjectionInfo311& info, std::uint32_t flags) {
  BlockWriter writer;
  writer.Raw(kMagic);
  writer.Number(kVersion, 4);
  writer.Number(flags, 4);
  WalkMembers(info, &writer);
  writer.Number(Crc32(writer.Bytes()), 4);
  return std::move(writer.Bytes());
}

}  // namespace QvPlatform
