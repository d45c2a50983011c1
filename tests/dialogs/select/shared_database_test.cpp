// Windows over a database that other programs write to, lock, and take away.

#include <sys/inotify.h>
#include <unistd.h>

#include "database/storage_files.h"
#include "dialogs/base/store_watch.h"
#include "platform/dbset/write_group.h"
#include "platform/widgets/file_dialogs.h"
#include "platform/widgets/window_waiter.h"
#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using namespace testing;

/// A second program with the table of ellipsoids open.
class OtherProgram {
 public:
  explicit OtherProgram(const TestDatabase& database) {
    buffer_.StreamName = database.data->datasetEllipsoid.DataBuff->StreamName;
    table_.Open();
  }
  void Add(const char* name) {
    table_.Append();
    table_.FieldByName("NAME").SetString(name);
    table_.Post();
  }
  [[nodiscard]] auto Lock() {
    return std::make_unique<QvPlatform::TQvWriteGroup>(std::vector{&table_});
  }

 private:
  QvPlatform::TQvDataBuffer buffer_;
  QvPlatform::TQvDataSet table_{buffer_};
};

class SharedDatabase : public ListTest {
 protected:
  static bool Comes(const std::function<bool()>& what) { return QTest::qWaitFor(what, 2000); }
  OtherProgram other_{database_};
};

TEST_F(SharedDatabase, AListShowsWhatOthersStoreAndKeepsItsPlace) {
  for (int number = 0; number < 60; ++number)
    Add(TableId::kEllipsoid, "1 " + std::to_string(100 + number));
  ellipsoids_.resize(400, 300);
  Choose([&](TformQvRfSelector& list) {
    auto& rows = Child<QTableView>(list, "dbgridList");
    Search(list, "1");
    rows.selectRow(20);
    const std::string marked = MarkedName(list);
    const int place = rows.rowViewportPosition(rows.currentIndex().row());
    const int count = rows.model()->rowCount();
    other_.Add("1 000");
    EXPECT_TRUE(Comes([&] { return rows.model()->rowCount() == count + 1; }));
    EXPECT_EQ(MarkedName(list), marked);
    EXPECT_EQ(rows.rowViewportPosition(rows.currentIndex().row()), place);
    EXPECT_EQ(Child<QComboBox>(list, "comboSearch").currentText(), "1");
    // A question on top is answered over what it was asked about.
    ScreenUser user(In<QMessageBox>([&](QMessageBox& box) {
      other_.Add("1 001");
      EXPECT_FALSE(QTest::qWaitFor([&] { return rows.model()->rowCount() > count + 1; }, 1200));
      box.reject();
    }));
    QMessageBox(QMessageBox::Question, "", "", QMessageBox::Ok, &list).exec();
    EXPECT_TRUE(Comes([&] { return rows.model()->rowCount() == count + 2; }));
  });
}

TEST_F(SharedDatabase, AListTellsThatTheDatabaseIsAwayAndHealsWhenItIsBack) {
  const std::filesystem::path file = database_.data->datasetEllipsoid.DataBuff->StreamName;
  const std::filesystem::path away = file.string() + ".away";
  bool chosen = true;
  Choose([&](TformQvRfSelector& list) {
    std::filesystem::rename(file, away);
    EXPECT_TRUE(Comes([&] { return TextOf(list, "lblCount") == "The database cannot be read"; }));
    EXPECT_THAT(Child(list, "lblCount").toolTip().toStdString(), HasSubstr("ellipsoid.dat"));
    EXPECT_THAT(ListedNames(list), HasSubstr("WGS 84"));
  });
  chosen = Choose([](TformQvRfSelector& list) { Click(list, "bitbtnOk"); });
  EXPECT_FALSE(chosen);
  EXPECT_THAT(database_.ui.messages, Not(IsEmpty()));
  std::filesystem::rename(away, file);
  other_.Add("New");
  Choose([&](TformQvRfSelector& list) {
    EXPECT_TRUE(Comes([&] { return TextOf(list, "lblCount") == "All 8"; }));
  });
}

TEST_F(SharedDatabase, AStampThatCannotBeWrittenIsNoFailure) {
  const auto lock = other_.Lock();
  EXPECT_TRUE(Choose([](TformQvRfSelector& list) { Click(list, "bitbtnOk"); }));
  EXPECT_THAT(database_.ui.messages, IsEmpty());
}

/// Does something when the box of a wait shows. Timers do not run then.
class AtWaitingBox : public QObject {
 public:
  explicit AtWaitingBox(std::function<void(QWidget& box)> act) : act_(std::move(act)) {
    qApp->installEventFilter(this);
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Show && watched->objectName() == "waitingBox") {
      act_(*static_cast<QWidget*>(watched));
    }
    return false;
  }

 private:
  std::function<void(QWidget& box)> act_;
};

void PostClick(QWidget& button) {
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QCoreApplication::postEvent(
        &button, new QMouseEvent(type, QPointF(3, 3), button.mapToGlobal(QPointF(3, 3)),
                                 Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
  }
}

TEST_F(SharedDatabase, AWaitEndsByCancelOrWithTheOtherProgramAndNothingElseGoesOnMeanwhile) {
  QvPlatform::WindowWaiter waiter;
  const QvPlatform::WaiterScope scope(waiter);
  QPushButton elsewhere("elsewhere");
  elsewhere.show();
  bool clicked = false;
  bool ticked = false;
  QObject::connect(&elsewhere, &QPushButton::clicked, &elsewhere, [&] { clicked = true; });
  const struct {
    const char* name;
    bool cancels;
  } rows[] = {{"cancel", true}, {"the other ends", false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    auto lock = other_.Lock();
    QTimer::singleShot(1, &elsewhere, [&] { ticked = true; });
    const AtWaitingBox user([&](QWidget& box) {
      PostClick(elsewhere);
      row.cancels ? PostClick(Child(box, "btnCancel")) : lock.reset();
    });
    std::string told;
    try {
      Add(TableId::kEllipsoid, row.name);
    } catch (const QvPlatform::StorageError& error) {
      told = error.what();
      database_.data->datasetEllipsoid.Cancel();
    }
    EXPECT_EQ(told.find("another program") != std::string::npos, row.cancels) << told;
    EXPECT_FALSE(clicked);
    EXPECT_FALSE(ticked);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ticked; }, 1000)) << "only later";
    ticked = false;
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "the box is gone";
  }
}

TEST_F(SharedDatabase, FileDialogsOpenNoFile) {
  const std::string file = database_.folder.Path("refs.qvdb");
  ASSERT_TRUE(SaveStorageFile(file, false, std::string(5000, 'x')));
  const int notices = inotify_init1(IN_NONBLOCK);
  ASSERT_GE(inotify_add_watch(notices, file.c_str(), IN_OPEN), 0);
  ScreenUser user(In<QFileDialog>([&](QFileDialog& dialog) {
    dialog.setViewMode(QFileDialog::Detail);
    auto* tree = dialog.findChild<QTreeView*>("treeView");
    ASSERT_NE(tree, nullptr);
    EXPECT_TRUE(Comes([&] { return tree->model()->rowCount(tree->rootIndex()) > 1; }));
    QTest::qWait(100);
    dialog.reject();
  }));
  (void)QvPlatform::GetOpenFileName(
      nullptr, "Open",
      {.filter = "All files (*.*)|*",
       .defaultFileName = QString::fromStdString(database_.folder.Path("x"))});
  std::array<char, 4096> events{};
  EXPECT_LT(read(notices, events.data(), events.size()), 0);
  close(notices);
}

}  // namespace
}  // namespace refframe_tests
