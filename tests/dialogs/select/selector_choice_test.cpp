// Choosing and browsing: what a run of a selector gives back, and which buttons it offers.

#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;

class SelectorChoice : public ListTest {};

TEST_F(SelectorChoice, OkGivesTheCurrentRecordAndStampsIt) {
  int key = KeyOf(kEllipsoid, "Clarke 1866");
  const auto act = [](QWidget& form) {
    EXPECT_EQ(form.windowTitle().toStdString(), "Select ellipsoid");
    EXPECT_EQ(MarkedName(form), "Clarke 1866");
    Press(form, "dbgridList", Qt::Key_Down);
    Click(form, "bitbtnOk");
  };
  EXPECT_TRUE(Choose(act, {.hideOwner = false, .key = &key}));
  EXPECT_EQ(key, KeyOf(kEllipsoid, "Clarke 1880 (IGN)"));
  EXPECT_EQ(CurrentName(kEllipsoid), "Clarke 1880 (IGN)");
  EXPECT_NEAR(LastUse(kEllipsoid), QvPlatform::CurrentMoment(), 0.1);
}

TEST_F(SelectorChoice, ARefusalGivesNoKeyAndStampsNothing) {
  const std::pair<const char*, std::function<void(QWidget&)>> ways[] = {
      {"button", Clicks("bitbtnCancel")},
      {"Esc in the list", [](QWidget& form) { Press(form, "dbgridList", Qt::Key_Escape); }},
      {"Esc in the search field",
       [](QWidget& form) { Press(form, "comboSearch", Qt::Key_Escape); }},
      {"window frame", [](QWidget& form) { form.close(); }},
  };
  for (const auto& [name, leave] : ways) {
    int key = KeyOf(kEllipsoid, "Airy 1830");
    const auto act = [leave = leave](QWidget& form) {
      Press(form, "dbgridList", Qt::Key_Down);
      leave(form);
      EXPECT_FALSE(form.isVisible());
    };
    EXPECT_FALSE(Choose(act, {.hideOwner = false, .key = &key})) << name;
    EXPECT_EQ(key, 0) << name;
    EXPECT_EQ(CurrentName(kEllipsoid), "Bessel 1841") << name << ": stays where the user went";
    EXPECT_EQ(LastUse(kEllipsoid), 0) << name;
  }
}

TEST_F(SelectorChoice, AKeyThatIsGoneOpensOnTheLastRow) {
  int key = 9999;
  EXPECT_FALSE(Choose([](QWidget& form) { EXPECT_EQ(MarkedName(form), "WGS 84"); },
                      {.hideOwner = false, .key = &key}));
}

TEST_F(SelectorChoice, OkOnAnEmptyTableGivesNothing) {
  EXPECT_FALSE(ChooseIn(systems_, [](QWidget& form) {
    EXPECT_EQ(Which(IsEnabled, form, {"bitbtnEdit", "bitbtnRemove", "bitbtnDetails"}), "");
    Click(form, "bitbtnOk");
    EXPECT_FALSE(form.isVisible());
  }));
}

TEST_F(SelectorChoice, WritesTheChosenObjectWhereItWasAskedTo) {
  QvCommonUtils::TStringTree tree;
  TreeBuilder(&tree).Field(1, "the host's own");
  const int whole = Insert(kEllipsoid, MakeTree(EllipsoidTree));
  for (const int id : {5113, 0}) {
    int key = whole;
    ScreenUser user(In<TformQvRfSelector>(Clicks("bitbtnOk")));
    ASSERT_TRUE(ellipsoids_.Select(&tree, id, false, &key, 2)) << id;
    const auto* object = id == 0 ? &tree : FindSubtree(&tree, id, 2);
    ASSERT_NE(object, nullptr) << id;
    std::string name;
    EXPECT_TRUE(object->GetString(5120, 0, &name)) << id;
    EXPECT_EQ(name, "Clarke 1866") << id;
    EXPECT_EQ(FindField(&tree, 1, 0) != nullptr, id != 0) << "the root is cleared for id 0 alone";
  }
}

TEST_F(SelectorChoice, AnObjectThatIsNotWholeIsRefusedAndTheTreeKeepsItsContent) {
  Add(TableId::kRefSystem, "Broken", {{"TYPE", 4}});
  for (const int id : {0, 1121}) {
    for (const int type : {0, 4}) {
      QvCommonUtils::TStringTree tree;
      TreeBuilder(&tree).Field(1020, "the host's system");
      TreeBuilder(&tree).Sub(1121).Field(1020, "the host's system");
      database_.ui.messages.clear();
      ScreenUser user(In<TformQvRfSelector>(Clicks("bitbtnOk")));
      int key = 0;
      EXPECT_FALSE(type == 0 ? systems_.Select(&tree, id, false, &key, 0)
                             : systems_.SelectFiltered(&tree, id, type, false, &key, 0));
      EXPECT_EQ(key, 0);
      EXPECT_EQ(database_.ui.messages.size(), 1U);
      std::string name;
      EXPECT_TRUE((id == 0 ? &tree : FindSubtree(&tree, id, 0))->GetString(1020, 0, &name));
      EXPECT_EQ(name, "the host's system");
      EXPECT_EQ(LastUse(kReferenceSystem), 0);
    }
  }
}

// A topocentric system refers to a geodetic one, which the filter hides.
TEST_F(SelectorChoice, AFilterHidesNothingFromTheTreeOfTheChosenObject) {
  Insert(kReferenceSystem, MakeTree(SystemTree, 6));
  ScreenUser user(In<TformQvRfSelector>(Clicks("bitbtnOk")));
  QvCommonUtils::TStringTree tree;
  EXPECT_TRUE(systems_.SelectFiltered(&tree, 0, 6, false, nullptr, 0));
  EXPECT_NE(FindSubtree(&tree, 1121, 0), nullptr);
}

TEST_F(SelectorChoice, ADoubleClickChoosesAndInTheViewerCloses) {
  const auto doubleClick = [](QWidget& form) {
    auto& list = Child<QAbstractItemView>(form, "dbgridList");
    const QPoint place = list.visualRect(list.model()->index(2, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
  };
  EXPECT_TRUE(Choose(doubleClick));
  EXPECT_EQ(CurrentName(kEllipsoid), "Clarke 1866");
  ScreenUser user(In<TformQvRfSelector>(doubleClick));
  EXPECT_FALSE(ellipsoids_.Browse(0, false, true));
}

TEST_F(SelectorChoice, TheViewerOpensOnItsRecordOrElseOnTheFirst) {
  const struct {
    const char* name;
    int key;
    bool details;
    const char* expected;
    bool inDetails;
  } rows[] = {{"known key", KeyOf(kEllipsoid, "GRS 1980"), false, "GRS 1980", false},
              {"known key, details", KeyOf(kEllipsoid, "GRS 1980"), true, "GRS 1980", true},
              {"unknown key, details", 9999, true, "Airy 1830", false},
              {"no key", 0, false, "Airy 1830", false}};
  for (const auto& row : rows) {
    ScreenUser user(In<TformQvRfSelector>([&](QWidget& form) {
      EXPECT_EQ(form.windowTitle().toStdString(), "View ellipsoid");
      EXPECT_EQ(CurrentName(kEllipsoid), row.expected) << row.name;
      EXPECT_EQ(IsShown(form, "memoDetails"), row.inDetails) << row.name;
      EXPECT_EQ(IsShown(form, "dbgridList"), !row.inDetails) << row.name;
      Click(form, "bitbtnClose");
    }));
    EXPECT_FALSE(ellipsoids_.Browse(row.key, row.details, true)) << row.name;
    EXPECT_EQ(LastUse(kEllipsoid), 0) << row.name;
  }
}

// The buttons that a run shows, by the mode of the dialogs and what the caller asked for.
TEST_F(SelectorChoice, OffersTheButtonsOfItsMode) {
  const struct {
    const char* name;
    int objectType;
    signed char mode;
    bool files;
    bool select;
    bool writable;
    const char* expected;
  } rows[] = {
      {"select, full", 3, 2, false, true, false, "Ok Details New Edit Remove Cancel "},
      {"select, full, files", 3, 2, true, true, false,
       "Ok Details New Edit Remove Export Import Cancel "},
      {"select, simple", 3, 1, false, true, false, "Ok Details Cancel "},
      {"browse, full", 3, 2, false, false, false, "Details New Edit Remove Export Import Close "},
      {"browse, simple", 3, 1, false, false, false, "Details Export Import Close "},
      {"browse, simple, writable", 3, 1, false, false, true,
       "Details New Edit Remove Export Import Close "},
      {"types, full", 12, 2, false, true, false, "Ok Details Edit Cancel "},
      {"types, simple", 12, 1, false, true, false, "Ok Details Cancel "},
  };
  for (const auto& row : rows) {
    database_.data->DialogMode = row.mode;
    database_.data->ShowImportExport = row.files;
    const std::unique_ptr<TformQvRfSelector> selector(GetSelectorFor(nullptr, row.objectType));
    std::string shown;
    const auto look = [&shown](QDialog& form) {
      for (const auto* button :
           form.findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (button->isVisible()) shown += button->objectName().mid(6).toStdString() + " ";
      }
      form.reject();
    };
    if (row.select) {
      EXPECT_FALSE(ChooseIn(*selector, look));
    } else {
      ScreenUser user(In<TformQvRfSelector>(look));
      EXPECT_FALSE(selector->Browse(0, false, row.writable));
    }
    EXPECT_EQ(shown, row.expected) << row.name;
  }
}

TEST_F(SelectorChoice, ConfinedToAKindShowsThatAloneAndIsWholeAgainAfterwards) {
  Add(TableId::kRefSystem, "Alpha", {{"TYPE", 4}});
  const int beta = Add(TableId::kRefSystem, "Beta", {{"TYPE", 5}});
  Add(TableId::kRefSystem, "Gamma", {{"TYPE", 4}});
  const struct {
    const char* name;
    int type;
    const char* listed;
    const char* button;
    bool chosen;
    const char* current;
  } rows[] = {{"chosen", 5, "Beta", "bitbtnOk", true, "Beta"},
              {"cancelled", 5, "Beta", "bitbtnCancel", false, "Alpha"},
              {"none of the kind", 6, "", "bitbtnOk", false, "Alpha"}};
  for (const auto& row : rows) {
    ScreenUser user(In<TformQvRfSelector>([&](QWidget& form) {
      EXPECT_EQ(ListedNames(form), row.listed) << row.name;
      Click(form, row.button);
    }));
    int key = 0;
    EXPECT_EQ(systems_.SelectFiltered(nullptr, 0, row.type, false, &key, 0), row.chosen)
        << row.name;
    EXPECT_EQ(key, row.chosen ? beta : 0) << row.name;
    EXPECT_EQ(database_.data->datasetRefSystem.RecordCount(), 3) << row.name;
    EXPECT_EQ(CurrentName(kReferenceSystem), row.current) << row.name;
  }
}

TEST_F(SelectorChoice, FindsItsSelectorAmongTheOwnersChildren) {
  QDialog owner;
  for (int type = -1; type <= kObjectTypeCodes; ++type) {
    TformQvRfSelector* made = GetSelectorFor(&owner, type);
    EXPECT_EQ(made != nullptr, ProcessorFor(*database_.data, type) != nullptr) << type;
    if (made == nullptr) continue;
    EXPECT_EQ(made->Processor->ObjectType, type);
    EXPECT_EQ(made->parent(), &owner) << type;
    EXPECT_EQ(GetSelectorFor(&owner, type), made) << type;
    const std::unique_ptr<TformQvRfSelector> own(GetSelectorFor(nullptr, type));
    EXPECT_NE(own.get(), made) << type;
  }
  EXPECT_NE(dynamic_cast<TformQvRfRefSystemSelector*>(GetSelectorFor(&owner, 1)), nullptr);
}

// Tab walks the controls as the eye does, without a stop at what does not show.
TEST_F(SelectorChoice, TabGoesFromTheSearchToTheListToTheButtons) {
  Choose([](QDialog& form) {
    std::string order;
    QWidget* const first = form.focusWidget();
    do {
      order += form.focusWidget()->objectName().toStdString() + " ";
      QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
    } while (form.focusWidget() != first && order.size() < 1000);
    EXPECT_EQ(order,
              "comboSearch bitbtnSearchDown bitbtnSearchUp dbgridList bitbtnOk bitbtnDetails "
              "bitbtnNew bitbtnEdit bitbtnRemove bitbtnCancel ");
  });
}

TEST_F(SelectorChoice, IsLiveThoughOuterOperationsHoldTheControlsDisabled) {
  QvPlatform::TQvDataSet& dataSet = database_.data->datasetEllipsoid;
  TformQvRfEllipsoidSelector inner(&ellipsoids_, DialogChooser());
  dataSet.DisableControls();
  dataSet.DisableControls();
  dataSet.MoveTo(3);
  ScreenUser user;
  user.In<TformQvRfSelector>([&](QWidget& form) {
        EXPECT_EQ(MarkedName(form), "Clarke 1880 (IGN)");
        // As an edit dialog does from which a list of the same objects is opened.
        dataSet.DisableControls();
        EXPECT_FALSE(inner.Select(nullptr, 0, true, nullptr, 0));
        dataSet.EnableControls();
        dataSet.Last();
        EXPECT_EQ(MarkedName(form), "WGS 84") << "live again after a list further down";
        Press(form, "dbgridList", Qt::Key_Home);
        EXPECT_EQ(CurrentName(kEllipsoid), MarkedName(form));
        Click(form, "bitbtnCancel");
      })
      .In<TformQvRfSelector>([&](QWidget& form) {
        dataSet.First();
        EXPECT_EQ(MarkedName(form), "Airy 1830");
        Click(form, "bitbtnCancel");
      });
  EXPECT_FALSE(ellipsoids_.Select(nullptr, 0, false, nullptr, 0));
  EXPECT_TRUE(dataSet.ControlsDisabled());
  dataSet.EnableControls();
  EXPECT_TRUE(dataSet.ControlsDisabled()) << "both levels are back";
  dataSet.EnableControls();
  EXPECT_FALSE(dataSet.ControlsDisabled());
}

}  // namespace
}  // namespace refframe_tests
