#include "editor/georef_frame_editor.h"

#include <filesystem>
#include <stdexcept>

#include "dialogs/base/guarded.h"
#include "dialogs/select/database_manager.h"
#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using QvCommonUtils::TStringTree;

constexpr int kName = 1020;
constexpr int kInserted = 201003;

class Editor : public testing::Test {
 protected:
  Editor() { prepared_.data->CloseDatabase(); }
  [[nodiscard]] TQvGeoRefFrameDialogOptions Options() const {
    TQvGeoRefFrameDialogOptions options;
    options.DatabasePath = prepared_.path;
    return options;
  }
  [[nodiscard]] bool Start(std::int8_t mode = kFullMode) {
    TQvGeoRefFrameDialogOptions options = Options();
    options.DialogMode = mode;
    return editor_.Initialize(&options);
  }
  /// Lets the user press a button in the selector that Edit opens.
  bool Edit(TStringTree* tree, bool rejectGeodetic, const char* button) {
    ScreenUser user(In<TformQvRfSelector>(Clicks(button)));
    return editor_.Edit(tree, rejectGeodetic);
  }
  static std::string Value(const TStringTree& tree, int id, int index = 0) {
    std::string value;
    return tree.GetString(id, index, &value) ? value : "(none)";
  }

  TestDatabase prepared_;
  ScriptedUi ui_;
  TQvGeoRefFrameEditor editor_{ui_};
};

TEST_F(Editor, TakesItsOptionsAndGivesEverythingBack) {
  TQvGeoRefFrameDialogOptions options = Options();
  options.DialogMode = 1;
  options.ErrorColour = 0x112233;
  options.ShowImportExport = true;
  ASSERT_TRUE(editor_.Initialize(&options));
  EXPECT_TRUE(editor_.DatabaseIsActive());
  ASSERT_NE(datamoduleQvRfData, nullptr);
  EXPECT_EQ(datamoduleQvRfData->DialogMode, 1);
  EXPECT_EQ(datamoduleQvRfData->ErrorColour, 0x112233);
  EXPECT_TRUE(datamoduleQvRfData->ShowImportExport);
  editor_.Finalize();
  editor_.Finalize();
  EXPECT_EQ(datamoduleQvRfData, nullptr);
  EXPECT_FALSE(editor_.DatabaseIsActive());
}

TEST_F(Editor, OpensAContainerLikeAFolder) {
  TestDatabase container(true);
  container.data->CloseDatabase();
  TQvGeoRefFrameDialogOptions options;
  options.DatabaseKind = 2;
  options.DatabasePath = container.path;
  ASSERT_TRUE(editor_.Initialize(&options));
  EXPECT_TRUE(datamoduleQvRfData->ResourceForm);
  const TreePtr tree = MakeTree(SystemTree, 5);
  EXPECT_TRUE(Edit(tree.get(), false, "bitbtnOk"));
  EXPECT_EQ(Value(*tree, kName), "NAD27 / UTM 17N");
}

TEST_F(Editor, ASecondStartOpensTheSecondDatabase) {
  TestDatabase other;
  other.data->CloseDatabase();
  ASSERT_TRUE(Start());
  TQvGeoRefFrameDialogOptions options = Options();
  options.DatabasePath = other.path;
  ASSERT_TRUE(editor_.Initialize(&options));
  EXPECT_EQ(datamoduleQvRfData->DatabasePath, other.path + "/");
}

TEST_F(Editor, ADatabaseThatCannotBeOpenedLeavesNothingBehind) {
  const struct {
    const char* name;
    std::string path;
    std::int8_t kind;
    bool ready;
    bool told;
  } rows[] = {{"empty path, silently", "", 1, false, false},
              {"empty container path, silently", "", 2, false, false},
              {"no such container", prepared_.folder.Path("none.qvdb"), 2, false, false},
              {"no database wanted", prepared_.path, 0, true, false},
              {"no database wanted and none named", "", 7, true, false}};
  for (const auto& row : rows) {
    TQvGeoRefFrameDialogOptions options;
    options.DatabasePath = row.path;
    options.DatabaseKind = row.kind;
    EXPECT_EQ(editor_.Initialize(&options), row.ready) << row.name;
    EXPECT_EQ(datamoduleQvRfData != nullptr, row.ready) << row.name;
    EXPECT_FALSE(editor_.DatabaseIsActive()) << row.name;
    EXPECT_EQ(ui_.messages.empty(), !row.told) << row.name;
  }
  EXPECT_FALSE(editor_.Initialize(nullptr));
}

TEST_F(Editor, WithoutADatabaseOperationsAnswerNo) {
  TStringTree tree;
  std::vector<std::string> lines{"as before"};
  EXPECT_FALSE(editor_.Edit(&tree, false));
  EXPECT_FALSE(editor_.Insert(&tree));
  EXPECT_FALSE(editor_.GetInfo(&lines));
  EXPECT_EQ(lines, std::vector<std::string>{"as before"});
  EXPECT_TRUE(editor_.Browse(1));
  EXPECT_FALSE(editor_.ManageDatabase());
  EXPECT_TRUE(ui_.messages.empty());
  EXPECT_FALSE(editor_.CalculateMapProjectionParameters());
  EXPECT_EQ(ui_.messages.size(), 1U) << "not calculated yet";
}

TEST_F(Editor, ManagesTheDatabaseInItsOwnMode) {
  ASSERT_TRUE(Start(kSimpleMode));
  ScreenUser user;
  user.In<TformGeoRefFrameDatabaseManager>(
          [](QWidget& form) { Press(form, "listboxContent", Qt::Key_Return); })
      .In<TformQvRfSelector>(Clicks("bitbtnClose"))
      .In<TformGeoRefFrameDatabaseManager>(Clicks("bitbtnClose"));
  EXPECT_TRUE(editor_.ManageDatabase());
}

TEST_F(Editor, EditStoresTheTreesSystemAndOpensOnIt) {
  ASSERT_TRUE(Start());
  const TreePtr other = MakeTree(SystemTree, 1);
  ASSERT_TRUE(editor_.Insert(other.get()));
  const TreePtr tree = MakeTree(SystemTree, 5);
  ScreenUser user(In<TformQvRfSelector>([](QWidget& form) {
    EXPECT_EQ(MarkedName(form), "NAD27 / UTM 17N");
    Press(form, "dbgridList", Qt::Key_End);
    EXPECT_EQ(MarkedName(form), "Site grid");
    Click(form, "bitbtnOk");
  }));
  ASSERT_TRUE(editor_.Edit(tree.get(), false));
  EXPECT_EQ(Value(*tree, kName), "Site grid");
  EXPECT_EQ(FindSubtree(tree.get(), 1300, 0), nullptr) << "nothing of the earlier system is left";
  std::vector<std::string> lines;
  ASSERT_TRUE(editor_.GetInfo(&lines));
  EXPECT_NE(lines[0].find("Site grid"), std::string::npos);
}

TEST_F(Editor, TheChosenTreeIsFoundAgainAsTheSameSystem) {
  ASSERT_TRUE(Start());
  for (int kind = 1; kind <= 6; ++kind) {
    const TreePtr tree = MakeTree(SystemTree, kind);
    ASSERT_TRUE(Edit(tree.get(), false, "bitbtnOk")) << kind;
    ASSERT_TRUE(editor_.Insert(tree.get())) << kind;
    EXPECT_EQ(Value(*tree, kInserted, -1), "0") << kind << ": it was there already";
  }
}

TEST_F(Editor, ACancelLeavesTheTreeAsStoringLeftIt) {
  ASSERT_TRUE(Start());
  const TreePtr tree = MakeTree(SystemTree, 4);
  EXPECT_FALSE(Edit(tree.get(), false, "bitbtnCancel"));
  EXPECT_EQ(Value(*tree, kName), "NAD27 geodetic");
  EXPECT_EQ(Value(*tree, kInserted, -1), "1");
}

TEST_F(Editor, AGeodeticChoiceCanBeRejected) {
  ASSERT_TRUE(Start());
  const struct {
    const char* name;
    int kind;
    bool reject;
    bool chosen;
  } rows[] = {{"geodetic, accepted", 4, false, true},
              {"geodetic, rejected", 4, true, false},
              {"projected, not concerned", 5, true, true}};
  for (const auto& row : rows) {
    ui_.messages.clear();
    const TreePtr tree = MakeTree(SystemTree, row.kind);
    EXPECT_EQ(Edit(tree.get(), row.reject, "bitbtnOk"), row.chosen) << row.name;
    EXPECT_EQ(ui_.messages.size(), row.chosen ? 0U : 1U) << row.name;
    EXPECT_NE(FindField(tree.get(), 1100, 0), nullptr) << row.name << ": the tree holds the choice";
  }
}

TEST_F(Editor, AnEmptyTreeOpensTheListAndStoresNothing) {
  ASSERT_TRUE(Start());
  TStringTree tree;
  EXPECT_FALSE(Edit(&tree, false, "bitbtnOk"));
  EXPECT_FALSE(editor_.Insert(&tree));
  EXPECT_EQ(datamoduleQvRfData->datasetRefSystem.RecordCount(), 0);
}

TEST_F(Editor, BrowsesEveryTypeWithFullRightsAndUnknownCodesInSilence) {
  ASSERT_TRUE(Start(kSimpleMode));
  for (int type = -1; type <= 17; ++type) {
    ScreenUser user;
    if (ProcessorFor(*datamoduleQvRfData, type) != nullptr) {
      user.In<TformQvRfSelector>([type](TformQvRfSelector& form) {
        EXPECT_EQ(form.Processor->ObjectType, type);
        EXPECT_TRUE(IsShown(form, "bitbtnEdit")) << type;
        Click(form, "bitbtnClose");
      });
    }
    EXPECT_TRUE(editor_.Browse(type)) << type;
  }
  EXPECT_TRUE(ui_.messages.empty());
  datamoduleQvRfData->datasetEllipsoid.Close();
  EXPECT_TRUE(editor_.Browse(3));
  EXPECT_EQ(ui_.messages.size(), 1U) << "what failed is told, and is no answer";
}

TEST_F(Editor, WhatCannotBeStoredIsTold) {
  ASSERT_TRUE(Start());
  std::filesystem::remove_all(prepared_.path);
  const TreePtr tree = MakeTree(SystemTree, 1);
  EXPECT_FALSE(editor_.Insert(tree.get()));
  EXPECT_EQ(ui_.messages.size(), 1U);
}

// A failure inside an operation reaches the user, never the host.
TEST_F(Editor, NoExceptionLeavesAnOperation) {
  EXPECT_FALSE(Guarded(ui_, [] { throw std::runtime_error("disk full"); }));
  EXPECT_EQ(ui_.messages, std::vector<std::string>{"disk full"});
  EXPECT_TRUE(Guarded(ui_, [] {}));
}

TEST(Libraries, StartAndStopAreCounted) {
  _QvGeoRefFrameEditor_Finalize();
  EXPECT_TRUE(_QvGeoRefFrameEditor_Initialize());
  EXPECT_FALSE(_QvGeoRefFrameEditor_Initialize());
  _QvGeoRefFrameEditor_Finalize();
  EXPECT_FALSE(_QvGeoRefFrameEditor_Initialize());
  _QvGeoRefFrameEditor_Finalize();
  _QvGeoRefFrameEditor_Finalize();
  EXPECT_TRUE(_QvGeoRefFrameEditor_Initialize()) << "all stopped: the next start is a first one";
  _QvGeoRefFrameEditor_Finalize();
}

}  // namespace
}  // namespace refframe_tests
