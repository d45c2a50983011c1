// Saving and loading height files: messages, progress, and nothing half written.

#include "vertical/height_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "database/storage_files.h"
#include "platform/storage/crc32.h"
#include "platform/storage/stream.h"
#include "platform/ui/progress_display.h"
#include "platform/ui/progress_interface.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

namespace fs = std::filesystem;
using QvRefSystem::LoadHeightTable;
using QvRefSystem::SaveHeightTable;
using Table = QvCommonUtils::T2DTable<double>;
using Strings = std::vector<std::string>;

class HeightFile : public testing::TestWithParam<bool> {
 protected:
  HeightFile() { table_.Resize(2, 3, 1, 1, 36, 54); }

  [[nodiscard]] std::string Content() const {
    std::string content;
    return QvRefSystem::LoadStorageFile(path_, GetParam(), &content) ? content : "";
  }
  [[nodiscard]] bool Save(unsigned* crc = nullptr) {
    return SaveHeightTable(&table_, path_, GetParam(), crc, ui_);
  }

  ScriptedUi ui_;
  TemporaryFolder folder_;
  std::string path_ = folder_.Path(GetParam() ? "refs.qvdb.Heights.Alps" : "refs/Heights/Alps");
  Table table_;
};

TEST_P(HeightFile, ComesBackAsItWasSaved) {
  table_.Set(1, 2, -12.3456);
  unsigned crc = 0;
  ASSERT_TRUE(Save(&crc));
  const std::string text = "54 56 36 37 1 1\n0.000\t-12.346\t\n0.000\t0.000\t\n0.000\t0.000\t\n";
  EXPECT_EQ(Content(), text);
  EXPECT_EQ(crc, QvPlatform::Crc32(text));

  Table loaded;
  ASSERT_TRUE(LoadHeightTable(&loaded, path_, GetParam(), ui_));
  EXPECT_EQ(loaded.Get(1, 2), -12.346);
  EXPECT_EQ(loaded.East(), 37);
  EXPECT_TRUE(ui_.messages.empty());
  EXPECT_EQ(ui_.progress,
            (Strings{"Saving geoid undulation data", "Loading geoid undulation data"}));
  const auto expectShown = [this](std::size_t display, int count, int steps) {
    EXPECT_EQ(ui_.displays[display].options, 33);
    EXPECT_EQ(ui_.displays[display].count, count);
    EXPECT_EQ(ui_.displays[display].steps, steps);
  };
  expectShown(0, 3, 2);
  expectShown(1, 2 * 3 + 6 + 3, 2 * 3 + 6 + 3);
}

TEST_P(HeightFile, StaysAsItWasWhenSavingFails) {
  ASSERT_TRUE(Save());
  const std::string before = Content();
  const auto expectRefused = [&](const char* why) {
    unsigned crc = 7;
    EXPECT_FALSE(Save(&crc)) << why;
    EXPECT_EQ(crc, 7U) << why;
    EXPECT_EQ(Content(), before) << why;
  };
  table_.Set(0, 0, 99);
  ui_.cancelAt = 1;
  expectRefused("the user cancels");
  ui_.cancelAt = -1;
  table_.Set(0, 0, std::numeric_limits<double>::quiet_NaN());
  expectRefused("a value that is no number");
  table_.Resize(2, 3, 1, 0, 36, 54);
  expectRefused("a cell size that no reader takes");
  table_.Resize(3, 1, 1e-6, 1, 5e6, 0);
  expectRefused("limits that twelve digits do not tell apart well enough");
  table_.Clear();
  expectRefused("no nodes");
  EXPECT_TRUE(ui_.messages.empty());
  // Nothing is left beside it either.
  const auto files = fs::recursive_directory_iterator(folder_.Path());
  EXPECT_EQ(std::count_if(begin(files), end(files),
                          [](const auto& entry) {
                            return entry.is_regular_file() &&
                                   entry.path().string().find(".new") != std::string::npos;
                          }),
            0);
}

TEST_P(HeightFile, TellsOfPlacesThatCannotBeOpened) {
  ASSERT_TRUE(QvRefSystem::SaveStorageFile(folder_.Path("file"), false, "x"));
  const bool resource = GetParam();
  const std::string place = folder_.Path(resource ? "file.Alps" : "file/Alps");
  const std::string message =
      (resource ? "Cannot create resource " : "Cannot create file ") + place;
  std::string text = "kept";
  EXPECT_FALSE(SaveHeightTable(&table_, place, resource, nullptr, ui_));
  EXPECT_FALSE(LoadHeightTable(&table_, place, resource, ui_));
  EXPECT_FALSE(QvRefSystem::SaveHeightText(place, resource, "1", ui_));
  EXPECT_FALSE(QvRefSystem::LoadHeightText(place, resource, &text, ui_));
  EXPECT_EQ(ui_.messages.size(), 4U);
  EXPECT_THAT(ui_.messages, testing::Each(testing::StartsWith(message + " (")));
  EXPECT_EQ(text, "kept");
  EXPECT_TRUE(ui_.displays.empty());
}

TEST_P(HeightFile, IsRefusedWithoutAMessageIfItsTextIsNone) {
  ASSERT_TRUE(QvRefSystem::SaveHeightText(path_, GetParam(), "no numbers", ui_));
  EXPECT_FALSE(LoadHeightTable(&table_, path_, GetParam(), ui_));
  EXPECT_TRUE(ui_.messages.empty());
  // An empty one cannot even be loaded.
  ASSERT_TRUE(QvRefSystem::SaveHeightText(path_, GetParam(), "", ui_));
  EXPECT_FALSE(LoadHeightTable(&table_, path_, GetParam(), ui_));
  EXPECT_EQ(ui_.messages.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(, HeightFile, testing::Bool(), FormName{});

TEST(ProgressDisplay, TakesManyStepsForOneAndStaysCancelled) {
  ScriptedUi ui;
  ui.cancelAt = 3;
  QvRefSystem::ProgressDisplay display(ui, QvRefSystem::ProgressDisplay::kCounted, "title");
  display.Interface()->SetMax(2'000'000'000);
  EXPECT_EQ(ui.displays.back().count, 1000);
  int taken = 0;
  while (display.Interface()->Next() == 0 && taken < 10'000'000)
    ++taken;
  EXPECT_EQ(taken, 3 * 2'000'000 - 1);
  EXPECT_TRUE(display.Cancelled());
  EXPECT_EQ(display.Interface()->Next(), 1);
  EXPECT_EQ(ui.displays.back().steps, 3);
}

}  // namespace
}  // namespace refframe_tests
