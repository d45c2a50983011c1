#include "apps/host/main_window.h"

#include "apps/host/tree_view.h"
#include "dialogs/select/database_manager.h"
#include "dialogs/select/import_export.h"
#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;

class HostWindow : public testing::Test {
 protected:
  HostWindow() {
    for (const int kind : {4, 5}) {
      auto& systems = database_.Processor(TObjectType::kReferenceSystem);
      EXPECT_GT(systems.InsertFromTree(MakeTree(SystemTree, kind).get()), 0);
    }
    database_.data->CloseDatabase();
  }
  [[nodiscard]] bool Open(MainWindow& window) {
    return window.OpenDatabase(QString::fromStdString(database_.path));
  }
  static QAction& Action(const QWidget& window, const char* name) {
    auto* action = window.findChild<QAction*>(name);
    if (action == nullptr) throw std::runtime_error(std::string("no action ") + name);
    return *action;
  }

  TestDatabase database_;
  ScriptedUi ui_;
  TemporaryFolder folder_;
  QSettings settings_{QString::fromStdString(folder_.Path("settings.ini")), QSettings::IniFormat};
};

TEST_F(HostWindow, WithoutADatabaseSaysWhatToDo) {
  MainWindow window(settings_, ui_);
  window.show();
  EXPECT_TRUE(Child<QLabel>(window, "lblPlaceholder").text().contains("refframe init DIR"));
  for (const char* action :
       {"actChoose", "actInsert", "actInfo", "actSaveTree", "actManage", "actBrowse1"})
    EXPECT_FALSE(Action(window, action).isEnabled()) << action;
  EXPECT_FALSE(window.OpenDatabase("/no/such/folder"));
  EXPECT_EQ(ui_.messages, std::vector<std::string>{"There is no database at \"/no/such/folder\"."});
}

TEST_F(HostWindow, ShowsTheChosenSystemAndManagesItsDatabase) {
  MainWindow window(settings_, ui_);
  window.show();
  ASSERT_TRUE(Open(window));
  EXPECT_TRUE(Child<QLabel>(window, "lblDatabase").text().endsWith(": 2 systems"));
  ScreenUser user(In<TformQvRfSelector>([](QWidget& form) {
    Search(form, "utm");
    Press(form, "comboSearch", Qt::Key_Return);
  }));
  Action(window, "actChoose").trigger();
  EXPECT_TRUE(window.windowTitle().startsWith("NAD27 / UTM 17N"));
  const QString info = Child<QPlainTextEdit>(window, "memoInfo").toPlainText();
  for (const char* line : {"Kind: projected", "Map projection: UTM zone 17N", "Ellipsoid: Clarke"})
    EXPECT_TRUE(info.contains(line)) << line << " in " << info.toStdString();
  EXPECT_TRUE(Child<QPlainTextEdit>(window, "memoWkt").toPlainText().startsWith("PROJCRS["));
  const auto found =
      Child<QTreeWidget>(window, "treeSystem").findItems("NAD27 / UTM 17N", Qt::MatchExactly, 1);
  ASSERT_EQ(found.size(), 1);
  EXPECT_EQ(found[0]->text(2), "1020");
  user.In<TformGeoRefFrameDatabaseManager>(Clicks("bitbtnClose"));
  Action(window, "actManage").trigger();
}

TEST_F(HostWindow, ACancelledChoiceKeepsTheSystem) {
  MainWindow window(settings_, ui_);
  ASSERT_TRUE(Open(window));
  const std::string path = folder_.Path("system");
  WriteTreeFile(*MakeTree(SystemTree, 1), path, ObjectFileForm::kText);
  ASSERT_TRUE(window.OpenTree(QString::fromStdString(path)));
  ScreenUser user(In<TformQvRfSelector>([](QWidget& form) {
    EXPECT_EQ(MarkedName(form), "Site grid") << "the host's system is stored and offered";
    Press(form, "dbgridList", Qt::Key_Home);
    Click(form, "bitbtnCancel");
  }));
  Action(window, "actChoose").trigger();
  EXPECT_TRUE(window.windowTitle().startsWith("Site grid"));
}

TEST_F(HostWindow, OpensAndSavesTreesInBothForms) {
  MainWindow window(settings_, ui_);
  const auto source = MakeTree(SystemTree, 5);
  const auto answer = [](const std::string& path, int filter) {
    return [path, filter](QFileDialog& dialog) { TakeFile(dialog, path, filter); };
  };
  const struct {
    int filter;
    const char* extension;
    ObjectFileForm form;
  } rows[] = {{0, ".reference system", ObjectFileForm::kText},
              {1, ".x-ref-system", ObjectFileForm::kXml}};
  for (const auto& row : rows) {
    const std::string in = folder_.Path("in") + row.extension;
    WriteTreeFile(*source, in, row.form);
    ScreenUser user(In<QFileDialog>(answer(in, row.filter)));
    Action(window, "actOpenTree").trigger();
    user.In<QFileDialog>(answer(folder_.Path("out"), row.filter));
    Action(window, "actSaveTree").trigger();
    QvCommonUtils::TStringTree saved;
    ReadTreeFile(folder_.Path("out") + row.extension, &saved);
    EXPECT_TRUE(SameTree(&saved, source.get())) << row.extension;
  }
  EXPECT_TRUE(ui_.messages.empty());
}

TEST_F(HostWindow, AFileThatIsNoTreeIsToldAndKeepsTheSystem) {
  MainWindow window(settings_, ui_);
  EXPECT_FALSE(window.OpenTree(QString::fromStdString(folder_.Path("none"))));
  EXPECT_EQ(ui_.messages.size(), 1U);
  EXPECT_FALSE(Action(window, "actSaveTree").isEnabled());
}

TEST_F(HostWindow, RemembersItsDatabaseAndItsOptions) {
  {
    MainWindow window(settings_, ui_);
    ASSERT_TRUE(Open(window));
    ScreenUser user(In<QDialog>([](QDialog& dialog) {
      Child<QComboBox>(dialog, "comboMode").setCurrentIndex(0);
      Child<QCheckBox>(dialog, "chboxImportExport").click();
      QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                        Qt::LeftButton);
    }));
    Action(window, "actOptions").trigger();
    EXPECT_EQ(datamoduleQvRfData->DialogMode, kSimpleMode);
  }
  MainWindow window(settings_, ui_);
  window.OpenLastDatabase();
  ASSERT_NE(datamoduleQvRfData, nullptr);
  EXPECT_EQ(datamoduleQvRfData->DatabasePath, database_.path + "/");
  EXPECT_EQ(datamoduleQvRfData->DialogMode, kSimpleMode);
  EXPECT_TRUE(datamoduleQvRfData->ShowImportExport);
}

TEST_F(HostWindow, DescribesTheHeightsOfASystem) {
  const std::pair<void (*)(TreeBuilder), const char*> rows[] = {
      {nullptr, "Heights: above the ellipsoid"},
      {SystemGeoidTree, "Heights: above a predefined geoid, EGM96 height"},
      {HeightOffsetTree, "Heights: Harbour, an offset of -2.33 metre"},
      {HeightTableTree,
       "Heights: Alps, a table\n    south 54, north 55, west 36, east 38, cells 1 by 1"},
  };
  for (const auto& [write, lines] : rows) {
    const auto tree = MakeTree(SystemTree, 4);
    if (write != nullptr) write(TreeBuilder(tree.get()).Sub(1500));
    const QString text = DescribeTree(*tree).join('\n');
    EXPECT_TRUE(text.endsWith(lines)) << text.toStdString();
  }
}

TEST_F(HostWindow, DescribesWhatATreeLacks) {
  QvCommonUtils::TStringTree tree;
  TreeBuilder(&tree).Field(1020, "Nameless but for this");
  const QStringList lines = DescribeTree(tree);
  ASSERT_EQ(lines.size(), 1);
  EXPECT_TRUE(lines[0].startsWith("This tree does not hold a whole reference system: "));
  EXPECT_TRUE(WktOfTree(tree).startsWith("There is no WKT 2 of this system: "));
}

}  // namespace
}  // namespace refframe_tests
