// Saving and loading height files: messages, progress, and nothing half written.

#include "platform/storage/crc32.h"
#include "platform/ui/progress_display.h"
#include "vertical/height_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "database/storage_files.h"
#include "platform/storage/stream.h"
#include "platform/ui/progress_interface.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

namespace fs = std::filesystem;
using QvRefSystem::LoadHeightTable;
using QvRefSystem::SaveHeightTable;
using Table = QvCommonUtils::T2DTable<double>;
using Strings = std::vector<std::string>;

/// Keeps what a progress display was told, and cancels at a step.
class ProgressUi : public ScriptedUi {
 public:
  struct Shown {
    int options = 0;
    std::string title;
    int count = 0;
    int steps = 0;
  };
  std::vector<Shown> displays;
  int cancelAt = -1;

  std::unique_ptr<QvPlatform::TProgress> StartProgress(int options, const std::string& title,
                                                       int count) override {
    displays.push_back({options, title, count, 0});
    class Recorder : public QvPlatform::TProgress {
     public:
      explicit Recorder(ProgressUi& ui) : ui_(ui) {}
      bool Next() override { return ++ui_.displays.back().steps != ui_.cancelAt; }
      void SetMax(int count) override { ui_.displays.back().count = count; }

     private:
      ProgressUi& ui_;
    };
    return std::make_unique<Recorder>(*this);
  }
};

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

  ProgressUi ui_;
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
  ASSERT_EQ(ui_.displays.size(), 2U);
  EXPECT_EQ(ui_.displays[0].options, 33);
  EXPECT_EQ(ui_.displays[0].title, "Saving geoid undulation data");
  EXPECT_EQ(ui_.displays[0].count, 3);
  EXPECT_EQ(ui_.displays[0].steps, 2);
  EXPECT_EQ(ui_.displays[1].options, 33);
  EXPECT_EQ(ui_.displays[1].title, "Loading geoid undulation data");
  EXPECT_EQ(ui_.displays[1].count, 2 * 3 + 6 + 3);
  EXPECT_EQ(ui_.displays[1].steps, ui_.displays[1].count);
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
  EXPECT_EQ(ui_.messages, Strings(4, message));
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

INSTANTIATE_TEST_SUITE_P(, HeightFile, testing::Bool(), [](const auto& test) {
  return std::string(test.param ? "Container" : "Folder");
});

TEST(ProgressDisplay, TakesManyStepsForOneAndStaysCancelled) {
  ProgressUi ui;
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
