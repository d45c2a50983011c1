// The list of those who refer to an object, and the hiding of owners round child dialogs.

#include "dialogs/select/used_by_list.h"

#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;

class UsedByList : public ListTest {
 protected:
  UsedByList() {
    const int bessel = KeyOf(kEllipsoid, "Bessel 1841");
    Add(TableId::kDatum, "Potsdam", {{"ELLIPSOID_AUTOKEY", bessel}});
    Add(TableId::kDatum, "Tokyo", {{"ELLIPSOID_AUTOKEY", bessel}});
    database_.Processor(kEllipsoid).LocateKey(bessel);
    // The list itself, in the place of the script's answer.
    database_.ui.onUsedBy = [this] {
      TformQvRfUsedByList* list = GetUsedByListFor(&ellipsoids_);
      list->BeginList();
      for (const QvPlatform::UsedByRow& row : database_.ui.usedBy)
        list->AddRow(row);
      return list->ShowList(database_.ui.viewAllowed);
    };
  }
  void Release(const char* datum) {
    ASSERT_TRUE(database_.Processor(kDatum).LocateKey(KeyOf(kDatum, datum)));
    SetField(database_.data->datasetDatum, "ELLIPSOID_AUTOKEY", "0");
  }
  static std::string Cells(const QWidget& list) {
    const auto& grid = Child<QTableWidget>(list, "strgridList");
    std::string text;
    for (int row = 0; row < grid.rowCount(); ++row) {
      for (int column = 0; column < grid.columnCount(); ++column)
        text += grid.item(row, column)->text().toStdString() + (column < 2 ? "," : ";");
    }
    return text;
  }
};

TEST_F(UsedByList, ShowsWhoRefersAndClosingItRefusesTheRemoval) {
  ScreenUser user;
  user.In<TformQvRfSelector>([](QWidget& form) {
        Click(form, "bitbtnRemove");
        EXPECT_EQ(MarkedName(form), "Bessel 1841");
        Click(form, "bitbtnCancel");
      })
      .In<TformQvRfUsedByList>([](QWidget& list) {
        EXPECT_EQ(list.windowTitle().toStdString(), "Object list");
        EXPECT_EQ(Cells(list), "datum,Potsdam,About Potsdam;datum,Tokyo,About Tokyo;");
        EXPECT_TRUE(IsShown(list, "bitbtnView"));
        Click(list, "bitbtnClose");
      });
  ellipsoids_.Select(nullptr, 0, false, nullptr, 0);
  EXPECT_EQ(database_.data->datasetEllipsoid.RecordCount(), 7);
  EXPECT_TRUE(database_.ui.messages.empty());
}

TEST_F(UsedByList, HasNoViewInSimpleMode) {
  database_.data->DialogMode = kSimpleMode;
  ScreenUser user(In<TformQvRfUsedByList>([](QWidget& list) {
    EXPECT_FALSE(IsShown(list, "bitbtnView"));
    Click(list, "bitbtnClose");
  }));
  EXPECT_FALSE(database_.Processor(kEllipsoid).DeleteWithConsent(&ellipsoids_));
}

// View opens the referring object; each return scans anew, until nothing refers any more.
TEST_F(UsedByList, ScansAgainAfterEachViewUntilNothingRefers) {
  ScreenUser user;
  user.In<TformQvRfSelector>([](QWidget& form) {
        Click(form, "bitbtnRemove");
        Click(form, "bitbtnCancel");
      })
      .In<TformQvRfUsedByList>(Clicks("bitbtnView"))
      .In<TformQvRfSelector>([this](QWidget& viewer) {
        EXPECT_EQ(viewer.windowTitle().toStdString(), "View datum");
        EXPECT_EQ(CurrentName(kDatum), "Potsdam");
        EXPECT_TRUE(IsShown(viewer, "memoDetails"));
        EXPECT_FALSE(ellipsoids_.isVisible()) << "the owner of the list is out of the way";
        Release("Potsdam");
        Click(viewer, "bitbtnClose");
      })
      .In<TformQvRfUsedByList>([this](QWidget& list) {
        EXPECT_TRUE(ellipsoids_.isVisible());
        EXPECT_EQ(Cells(list), "datum,Tokyo,About Tokyo;");
        Click(list, "bitbtnView");
      })
      .In<TformQvRfSelector>([this](QWidget& viewer) {
        Release("Tokyo");
        Click(viewer, "bitbtnClose");
      });
  ellipsoids_.Select(nullptr, 0, false, nullptr, 0);
  EXPECT_EQ(database_.data->datasetEllipsoid.RecordCount(), 6);
  ASSERT_EQ(database_.ui.messages.size(), 1U);
  EXPECT_NE(database_.ui.messages[0].find("\"Bessel 1841\""), std::string::npos);
}

TEST_F(UsedByList, IsOneForEachOwner) {
  TformQvRfEllipsoidSelector other(nullptr, DialogChooser());
  TformQvRfUsedByList* list = GetUsedByListFor(&ellipsoids_);
  EXPECT_EQ(GetUsedByListFor(&ellipsoids_), list);
  EXPECT_NE(GetUsedByListFor(&other), list);
  list->BeginList();
  list->ViewRow(0);
  list->ViewRow(1);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "rows that hold nothing open nothing";
}

// A form that is hidden while its child runs goes on with its own run afterwards.
TEST_F(UsedByList, HiddenOwnersComeBackInTheReverseOrder) {
  QvPlatform::ModalForm host(nullptr);
  QSignalSpy quits(qApp, &QGuiApplication::lastWindowClosed);
  TformQvRfSelector* outer = GetSelectorFor(&host, 3);
  TformQvRfSelector* inner = GetSelectorFor(outer, 2);
  std::string course;
  ScreenUser user;
  user.In<QvPlatform::ModalForm>([&](QDialog& form) {
        EXPECT_TRUE(outer->Select(nullptr, 0, true, nullptr, 0));
        EXPECT_TRUE(form.isVisible());
        course += "host ";
        form.accept();
      })
      .In<TformQvRfSelector>([&](QWidget& form) {
        EXPECT_FALSE(host.isVisible());
        EXPECT_TRUE(inner->Select(nullptr, 0, true, nullptr, 0));
        EXPECT_TRUE(form.isVisible());
        EXPECT_FALSE(host.isVisible());
        EXPECT_NE(ListedNames(form), "") << "its grid is awake again";
        course += "outer ";
        Click(form, "bitbtnOk");
      })
      .In<TformQvRfSelector>([&](QWidget& form) {
        EXPECT_EQ(&form, inner);
        EXPECT_FALSE(outer->isVisible());
        course += "inner ";
        Click(form, "bitbtnOk");
      });
  EXPECT_EQ(host.RunModal(), QDialog::Accepted);
  EXPECT_EQ(course, "inner outer host ");
  QCoreApplication::processEvents();
  EXPECT_EQ(quits.count(), 0) << "the program must not end with a hidden owner";
}

}  // namespace
}  // namespace refframe_tests
