#include "platform/ctui/ctui.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "platform/storage/crc32.h"
#include "platform/storage/stream.h"
#include "tests/support/legacy_samples.h"

namespace QvPlatform {
namespace {

constexpr std::uint32_t kFlags = kLegacyProjected | kLegacyShift | kLegacyZones;

TProjectionInfo311 Sample() {
  TProjectionInfo311 info = refframe_tests::GaussKrueger();
  info.SystemName = "Lagestatus 110";
  info.ProjectionName = "Gauß-Krüger";
  info.ShiftType = 2;
  for (int i = 0; i < 7; ++i)
    info.Shift[i] = i - 2.5;
  return info;
}

bool Read(const std::string& block, TProjectionInfo311* info, std::uint32_t* flags) {
  // A copy of its own size, so that a step past its end is a step out of the memory.
  const std::vector<char> bytes(block.begin(), block.end());
  const auto reader = CreateCTUI({bytes.data(), bytes.size()});
  return reader != nullptr && reader->GetUserSystemProjectionInfo311(info, flags);
}

/// The block of the sample without its sum.
std::string SampleBody() {
  const std::string block = WriteLegacyBlock(Sample(), kFlags);
  return block.substr(0, block.size() - 4);
}

/// The bytes with a true sum behind them.
std::string Summed(std::string bytes) {
  for (std::uint32_t sum = Crc32(bytes), i = 0; i < 4; ++i, sum >>= 8U)
    bytes += static_cast<char>(sum & 0xFFU);
  return bytes;
}

TEST(LegacyBlock, TellsTheWholeSystem) {
  const TProjectionInfo311 sample = Sample();
  TProjectionInfo311 read;
  std::uint32_t flags = 0;
  ASSERT_TRUE(Read(WriteLegacyBlock(sample, kFlags), &read, &flags));
  EXPECT_EQ(flags, kFlags);
  EXPECT_EQ(WriteLegacyBlock(read, flags), WriteLegacyBlock(sample, kFlags));
  // The documented layout, byte by byte.
  const std::string_view head("RFLB\x01\0\0\0\x1A\0\0\0\x0E\0Lagestatus 110\x0D\0Gau", 33);
  EXPECT_TRUE(WriteLegacyBlock(sample, kFlags).starts_with(head));
  EXPECT_EQ(read.ProjectionName, sample.ProjectionName);
  EXPECT_EQ(read.Parameters.at(3).Value, 500000);
  const SQvCTUI_ProjectionInfo1 record = MakeProjectionInfo1(read, flags);
  EXPECT_EQ(record.SystemName, sample.SystemName);
  EXPECT_TRUE(!record.Geodetic && record.Projected && !record.Geocentric);
  EXPECT_TRUE(record.HasShift && record.HasZones);
}

TEST(LegacyBlock, DamageIsRefusedAndChangesNothing) {
  const std::string block = WriteLegacyBlock(Sample(), kFlags);
  TProjectionInfo311 info;
  info.SystemName = "as before";
  std::uint32_t flags = 77;
  for (std::size_t size = 0; size < block.size(); ++size) {
    ASSERT_FALSE(Read(block.substr(0, size), &info, &flags)) << size;
    if (size + 4 == block.size()) continue;  // all but the sum, which makes it whole again
    ASSERT_FALSE(Read(Summed(block.substr(0, size)), &info, &flags)) << size << ", a true sum";
  }
  for (std::size_t at = 0; at < block.size(); ++at) {
    std::string bad = block;
    bad[at] = static_cast<char>(bad[at] ^ 0x10);
    ASSERT_FALSE(Read(bad, &info, &flags)) << at;
  }
  EXPECT_EQ(info.SystemName, "as before");
  EXPECT_EQ(flags, 77U);
  EXPECT_EQ(CreateCTUI({nullptr, 5}), nullptr);
  EXPECT_EQ(CreateCTUI({"x", 0}), nullptr);
}

TEST(LegacyBlock, HostileNumbersAreNotBelieved) {
  const std::string body = SampleBody();
  const std::size_t counts = body.size() - 5 * 12 - 4;
  const struct {
    const char* name;
    std::size_t at;
    std::string bytes;
  } rows[] = {{"another kind", 0, "RFLX"},
              {"a later version", 4, "\x02"},
              {"an unknown flag", 8, "\x3A"},
              {"a text longer than the block", 12, "\xFF\xFF"},
              {"a text longer than the block, of a length that may be", 12, "\xFF"},
              {"a text with a control character", 14, "\n"},
              {"a text that is not UTF-8", 14, "\xFF"},
              {"parameters without end", counts, "\xFF\xFF\xFF\xFF"},
              {"one parameter too many", counts, "\x06"},
              {"one parameter too few", counts, "\x04"},
              {"a value that is no number", body.size() - 2, "\xF8\x7F"}};
  for (const auto& row : rows) {
    std::string bad = body;
    bad.replace(row.at, row.bytes.size(), row.bytes);
    TProjectionInfo311 info;
    std::uint32_t flags = 0;
    EXPECT_FALSE(Read(Summed(bad), &info, &flags)) << row.name;
  }
}

// Whatever is read is read back from its own block: nothing of chance gets past the checks.
TEST(LegacyBlock, RandomChangesEndInARefusalOrASystem) {
  const std::string body = SampleBody();
  std::mt19937 random(20240817);
  int taken = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string bytes = body;
    for (unsigned i = 0; i <= random() % 3; ++i)
      bytes[random() % bytes.size()] = static_cast<char>(random());
    TProjectionInfo311 info;
    std::uint32_t flags = 0;
    if (!Read(Summed(bytes), &info, &flags)) continue;
    ++taken;
    ASSERT_EQ(WriteLegacyBlock(info, flags), Summed(bytes));
  }
  EXPECT_GT(taken, 100);
  EXPECT_LT(taken, 19000);
}

TEST(LegacyBlock, TheZoneIsInTheEasting) {
  const struct {
    const char* name;
    int northingFirst;
    double factor, x, y;
    int zone;
  } rows[] = {{"easting first", 0, 1, 4500000, 5800000, 4},
              {"northing first", 1, 1, 5800000, 4500000, 4},
              {"in kilometres", 0, 1000, 4500, 5800, 4},
              {"whole", 0, 1, 5000000, 0, 5},
              {"just below", 0, 1, 4999999.999, 0, 4},
              {"without a zone", 0, 1, 500000, 0, 0},
              {"west of all", 0, 1, -1, 0, -1},
              {"beyond numbers", 0, 1, 1e300, 0, 0},
              {"no number", 0, 1, std::numeric_limits<double>::quiet_NaN(), 0, 0}};
  for (const auto& row : rows) {
    SQvCTUI_ProjectionInfo1 info;
    info.NorthingFirst = row.northingFirst;
    info.UnitFactor = row.factor;
    EXPECT_EQ(LegacyZone(info, row.x, row.y), row.zone) << row.name;
  }
}

}  // namespace
}  // namespace QvPlatform
