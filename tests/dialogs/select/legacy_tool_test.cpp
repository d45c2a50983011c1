// The tool that turns a legacy system into a tree, by its key and with its one file.

#include "dialogs/select/legacy_tool.h"

#include <fstream>

#include "dialogs/select/import_export.h"
#include "platform/storage/stream.h"
#include "tests/dialogs/dialog_fixture.h"
#include "tests/support/legacy_samples.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;

std::string Hex(const std::string& bytes) {
  return QByteArray::fromStdString(bytes).toHex().toStdString();
}

class LegacyTool : public DialogTest {
 protected:
  std::string Ini(const std::string& block, const char* mean = "AverX_U=5800000\nAverY_U=4500000") {
    const std::string path = folder_.Path("old.ini");
    std::ofstream(path) << "[CoordSystem]\nBinData=" << block << "\n" << mean << "\n";
    return path;
  }
  static std::string Whole() { return Hex(WriteLegacyBlock(GaussKrueger(), kGaussKruegerFlags)); }
  TemporaryFolder folder_;
};

// Ctrl+Shift+F2 on Import writes the file beside the database's tables; elsewhere it exports.
TEST_F(LegacyTool, AnswersItsKeyOnTheImportButtonOfSystemsAlone) {
  const std::string ini = Ini(Whole());
  const std::string output = LegacyOutputPath(*database_.data);
  EXPECT_EQ(output, database_.path + "/legacy system.reference system");
  const std::vector<int> before = database_.Counts();
  for (const int type : {3, 1}) {
    const std::unique_ptr<TformQvRfSelector> selector(GetSelectorFor(nullptr, type));
    ScreenUser user(In<TformQvRfSelector>([](QWidget& form) {
      Press(form, "bitbtnImport", Qt::Key_F2, Qt::ControlModifier | Qt::ShiftModifier);
      Click(form, "bitbtnClose");
    }));
    if (type == 1) {
      user.In<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.nameFilters(), QStringList({"Ini files (*.ini)", "All files (*.*)"}));
        TakeFile(dialog, ini);
      });
    }
    selector->Browse(0, false, true);
    EXPECT_EQ(std::filesystem::exists(output), type == 1);
  }
  EXPECT_TRUE(database_.ui.messages.empty());
  EXPECT_EQ(database_.Counts(), before);
  EXPECT_EQ(Content(output).back(), '\0');
  QvCommonUtils::TStringTree tree;
  ReadTreeFile(output, ObjectFileForm::kText, &tree);
  std::string name;
  EXPECT_TRUE(tree.GetString(1020, 0, &name));
  EXPECT_EQ(name, GaussKrueger().SystemName);
}

TEST_F(LegacyTool, TheZoneIsThatOfTheData) {
  const std::string output = folder_.Path("out");
  for (const auto& [mean, told] : {std::pair{"AverX_U=1\nAverY_U=3400000.5", "\t3500000\n"},
                                   std::pair{"AverX_U=3\nAverY_U=5400000", "\t5500000\n"}}) {
    ASSERT_TRUE(ConvertLegacySystem(Ini(Whole(), mean), output));
    EXPECT_NE(Content(output).find(told), std::string::npos) << mean;
  }
}

TEST_F(LegacyTool, WhatHoldsNoSystemGivesNoFile) {
  const std::string output = folder_.Path("out");
  const std::string whole = Whole();
  const struct {
    const char* name;
    std::string block;
    const char* mean;
  } rows[] = {{"no block", "", "AverY_U=4500000"},
              {"no bytes", "this is no block", "AverY_U=4500000"},
              {"a block cut short", whole.substr(0, whole.size() / 2 * 2 - 20), "AverY_U=4500000"},
              {"no averages, so no zone", whole, ""},
              {"no flags", Hex(WriteLegacyBlock(GaussKrueger(), 0)), "AverY_U=4500000"}};
  for (const auto& row : rows) {
    EXPECT_FALSE(ConvertLegacySystem(Ini(row.block, row.mean), output)) << row.name;
    EXPECT_FALSE(std::filesystem::exists(output)) << row.name;
  }
  EXPECT_THROW((void)ConvertLegacySystem(folder_.Path("none.ini"), output),
               QvPlatform::StorageError);
}

TEST_F(LegacyTool, OverwritesItsOwnFileAndNoOther) {
  const std::string output = folder_.Path("out");
  ASSERT_TRUE(ConvertLegacySystem(Ini(Whole()), output));
  const std::string own = Content(output);
  ASSERT_TRUE(ConvertLegacySystem(Ini(Whole()), output));
  EXPECT_EQ(Content(output), own);
  for (const std::string& content : {std::string("(0,0)\n\n"), std::string(), own.substr(3)}) {
    std::ofstream(output, std::ios::binary) << content;
    EXPECT_THROW((void)ConvertLegacySystem(Ini(Whole()), output), QvPlatform::StorageError);
    EXPECT_EQ(Content(output), content);
  }
}

TEST(LegacyOutput, StandsBesideAContainer) {
  const TestDatabase container(true);
  container.data->DatabasePath = "/data/refs.qvdb";
  EXPECT_EQ(LegacyOutputPath(*container.data), "/data/legacy system.reference system");
}

}  // namespace
}  // namespace refframe_tests
