// Reading PROJ's database, and files that are none.

#include "registry/proj_database.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "tests/registry/installed.h"

namespace QvRefSystem {
namespace {

namespace fs = std::filesystem;

TEST(InstalledDataset, IsVersionedAndLeavesDeprecatedObjectsOut) {
  EXPECT_TRUE(Dataset().version.starts_with("v"));
  EXPECT_FALSE(Dataset().geodeticSystems.contains(4329));   // WGS 84 (3D)
  EXPECT_FALSE(Dataset().projectedSystems.contains(2192));  // ED50 / France EuroLambert
  EXPECT_FALSE(Dataset().ellipsoids.contains(7035));        // Sphere
  EXPECT_FALSE(Dataset().primeMeridians.empty());
}

TEST(InstalledDataset, KeepsParametersInTheirOrderAndNotation) {
  const auto& parameters = Dataset().conversions.at(19952).parameters;
  ASSERT_EQ(parameters.size(), 7U);
  EXPECT_EQ(parameters[2].code, 1036);
  EXPECT_EQ(parameters[2].value, 30.171730311);  // 30 degrees 17' 17.30311"
  EXPECT_EQ(parameters[2].unit, 9110);
}

TEST(InstalledDataset, ReadsRatesEpochAndPivotOfOperations) {
  const EpsgShiftOperation& timed = Dataset().shiftOperations.at(8405);
  EXPECT_EQ(timed.epoch, 2010.0);
  EXPECT_NE(timed.rates[6].unit, 0);
  EXPECT_NE(timed.rates[5].value, 0);
  const auto& operations = Dataset().shiftOperations;
  const auto aboutPoint = std::ranges::find_if(
      operations, [](const auto& entry) { return entry.second.pivot[0].unit != 0; });
  ASSERT_NE(aboutPoint, operations.end());
  EXPECT_GT(std::abs(aboutPoint->second.pivot[0].value), 1e5);
}

TEST(InstalledDataset, NamesTheMembersOfEnsembles) {
  const EpsgDatum& wgs84 = Dataset().datums.at(6326);
  EXPECT_TRUE(wgs84.ensemble);
  EXPECT_NE(std::ranges::find(wgs84.members, 1309), wgs84.members.end());
  EXPECT_FALSE(Dataset().datums.at(6277).ensemble);
}

class OtherFile : public testing::Test {
 protected:
  OtherFile() : path_(testing::TempDir() + "refframe-no-proj-" + std::to_string(getpid())) {
    fs::remove(path_);
  }
  ~OtherFile() override { fs::remove(path_); }

  // The data set must stay as it was, and the message name the file.
  void ExpectRefused() const {
    EpsgDataset dataset;
    dataset.version = "before";
    std::string error;
    EXPECT_FALSE(ReadEpsgDataset(path_, &dataset, &error));
    EXPECT_EQ(dataset.version, "before");
    EXPECT_NE(error.find(path_), std::string::npos) << error;
  }

  std::string path_;
};

TEST_F(OtherFile, ThatIsMissingOrHoldsTextIsRefusedAndNotMade) {
  ExpectRefused();
  EXPECT_FALSE(fs::exists(path_));
  std::ofstream(path_) << std::string(5000, 'x');
  ExpectRefused();
}

TEST_F(OtherFile, OfAnotherLayoutIsRefused) {
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(path_.c_str(), &handle), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(handle,
                         "CREATE TABLE metadata(key TEXT, value TEXT);"
                         "INSERT INTO metadata VALUES('DATABASE.LAYOUT.VERSION.MAJOR', '2')",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(handle);
  ExpectRefused();
}

}  // namespace
}  // namespace QvRefSystem
