// Names of height files: none leads out of the place for heights.

#include "database/height_storage.h"

#include <gtest/gtest.h>

#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvRefSystem::HeightNaming;
using QvRefSystem::HeightStoragePath;
using QvRefSystem::NewHeightStorageName;

class HeightStorage : public testing::TestWithParam<bool> {
 protected:
  [[nodiscard]] std::string Short(const std::string& objectName, HeightNaming naming) const {
    return QvRefSystem::StorageShortName(NewHeightStorageName(*database_.data, objectName, naming),
                                         GetParam());
  }

  TestDatabase database_{GetParam()};
};

TEST_P(HeightStorage, NamesNewFilesAfterTheirObjects) {
  const struct {
    std::string object;
    std::string replaced;
    std::string asNamed;
    std::string asNamedResource;
  } rows[] = {
      {"Alps", "Alps", "Alps", "Alps"},
      {"  Höhen (m)  ", "Höhen (m)", "Höhen (m)", "Höhen (m)"},
      {"EGM+96*?!", "EGM 96", "EGM+96*?!", "EGM+96*?!"},
      {"v1.2", "v1 2", "v1.2", "v1 2"},
      {"../../escape", "escape", ".. .. escape", "escape"},
      {"..\\..\\escape", "escape", ".. .. escape", "escape"},
      {"/etc/passwd", "etc passwd", "etc passwd", "etc passwd"},
      {"C:drive", "C drive", "C drive", "C drive"},
      {std::string("a\0b\tc\n", 6), "a b c", "a b c", "a b c"},
      {"", "heights", "heights", "heights"},
      {" \t ", "heights", "heights", "heights"},
      {"..", "heights", "heights", "heights"},
      {"/", "heights", "heights", "heights"},
      {"nul", "nul_", "nul_", "nul_"},
      {"Com1.txt", "Com1 txt", "Com1_.txt", "Com1 txt"},
      {"combo", "combo", "combo", "combo"},
      {std::string(1000, 'x'), std::string(240, 'x'), std::string(240, 'x'), std::string(240, 'x')},
      {std::string(239, 'x') + "ö", std::string(239, 'x'), std::string(239, 'x'),
       std::string(239, 'x')},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Short(row.object, HeightNaming::kReplaced), row.replaced) << row.object;
    EXPECT_EQ(Short(row.object, HeightNaming::kAsNamed),
              GetParam() ? row.asNamedResource : row.asNamed)
        << row.object;
    for (const auto naming : {HeightNaming::kReplaced, HeightNaming::kAsNamed}) {
      const std::string name = NewHeightStorageName(*database_.data, row.object, naming);
      EXPECT_EQ(HeightStoragePath(*database_.data, Short(row.object, naming)), name);
    }
  }
}

TEST_P(HeightStorage, NeverNamesAFileTwice) {
  for (const auto naming : {HeightNaming::kReplaced, HeightNaming::kAsNamed}) {
    for (const char* object : {"Alps", "../Alps", "..", "prn", "a.b"}) {
      for (int turn = 0; turn < 3; ++turn) {
        const std::string name = NewHeightStorageName(*database_.data, object, naming);
        EXPECT_FALSE(QvRefSystem::StorageFileExists(name, GetParam())) << name;
        ASSERT_TRUE(QvRefSystem::SaveStorageFile(name, GetParam(), "x")) << name;
        EXPECT_EQ(
            HeightStoragePath(*database_.data, QvRefSystem::StorageShortName(name, GetParam())),
            name);
      }
    }
  }
  EXPECT_EQ(QvRefSystem::ListStorageFiles(database_.data->GetHeightsPrefix(), GetParam()).size(),
            30U)
      << "all of them lie where heights do";
}

TEST_P(HeightStorage, RefusesWhatARecordCannotName) {
  const std::string longDots(300, '.');
  for (const std::string& name :
       {std::string(), std::string("."), std::string(".."), longDots, std::string("../a"),
        std::string("a/b"), std::string("a\\b"), std::string("c:a"), std::string("/a"),
        std::string("a\n"), std::string("a\0b", 3), std::string(" "), std::string(" a"),
        std::string("a ")}) {
    EXPECT_EQ(HeightStoragePath(*database_.data, name), std::nullopt) << name;
  }
  const std::string prefix = database_.data->GetHeightsPrefix();
  for (const char* name : {"Alps", "Alps[1]", "Alps_1", "a.b", "..a", "Höhe"})
    EXPECT_EQ(HeightStoragePath(*database_.data, name), prefix + name);
}

INSTANTIATE_TEST_SUITE_P(, HeightStorage, testing::Bool(), FormName{});

}  // namespace
}  // namespace refframe_tests
