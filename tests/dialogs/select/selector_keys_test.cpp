// Keys, search and the filter of a selector.

#include "dialogs/base/edit_base.h"
#include "platform/widgets/data_grid.h"
#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;

// An edit dialog that does at once what its test says.
class ScriptedEdit : public TformQvRfEdit {
 public:
  explicit ScriptedEdit(TformQvRfSelector* owner)
      : TformQvRfEdit(owner, DialogChooser(), owner->Processor->Descriptor().type) {
    owner->EditForm = this;
  }
  std::string calls;
  std::function<bool()> onNew;

 protected:
  bool EditRecord() override {
    calls += "edit ";
    return false;
  }
  bool NewRecord() override {
    calls += "new ";
    return onNew ? onNew() : false;
  }
  bool StoreRecord() override { return false; }
};

class SelectorKeys : public ListTest {};

TEST_F(SelectorKeys, TypingLeavesTheRowsThatHaveTheTextInTheirName) {
  const struct {
    const char* text;
    const char* listed;
    const char* marked;
  } rows[] = {{"clarke", "Clarke 1866, Clarke 1880 (IGN)", "Clarke 1866"},
              {"18", "Airy 1830, Bessel 1841, Clarke 1866, Clarke 1880 (IGN)", "Airy 1830"},
              {"gS 8", "WGS 84", "WGS 84"},
              {"(", "Clarke 1880 (IGN)", "Clarke 1880 (IGN)"},
              {"no such", "", "(none)"}};
  for (const auto& row : rows) {
    Choose([&](QDialog& form) {
      EXPECT_EQ(MarkedName(form), "Airy 1830") << "a run begins without a filter";
      Search(form, row.text);
      EXPECT_EQ(ListedNames(form), row.listed) << row.text;
      EXPECT_EQ(MarkedName(form), row.marked) << row.text;
    });
  }
}

TEST_F(SelectorKeys, WhatDoesNotShowCannotBeChosenOrChanged) {
  Choose([&](QDialog& form) {
    Search(form, "zzz");
    EXPECT_EQ(Child<QvPlatform::DataGrid>(form, "dbgridList").EmptyText().toStdString(),
              "No name contains \"zzz\".");
    EXPECT_EQ(Which(IsEnabled, form, {"bitbtnOk", "bitbtnRemove", "bitbtnDetails"}), "");
    Press(form, "comboSearch", Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(form.isVisible());
    Child<QComboBox>(form, "comboSearch").lineEdit()->clear();
    EXPECT_TRUE(IsEnabled(form, "bitbtnOk"));
    EXPECT_EQ(MarkedName(form), "Airy 1830");
    Search(form, "clarke");
    database_.data->datasetEllipsoid.Last();
    EXPECT_EQ(MarkedName(form), "(none)") << "the filter hides the current record";
    EXPECT_FALSE(IsEnabled(form, "bitbtnOk"));
    Press(form, "dbgridList", Qt::Key_Delete);
    EXPECT_EQ(database_.data->datasetEllipsoid.RecordCount(), 7);
  });
}

TEST_F(SelectorKeys, TheFilterSeesRowsThatCameSinceTheLastLetter) {
  Choose([&](QDialog& form) {
    Search(form, "clarke");
    Add(TableId::kEllipsoid, "Clarke 1858");
    EXPECT_EQ(ListedNames(form), "Clarke 1858, Clarke 1866, Clarke 1880 (IGN)");
  });
  Add(TableId::kEllipsoid, "Clarke 1891");
  Choose([](QDialog& form) {
    Search(form, "clarke 189");
    EXPECT_EQ(ListedNames(form), "Clarke 1891");
  });
}

// What a user who never leaves the keyboard gets.
TEST_F(SelectorKeys, ANameIsChosenFromTheSearchField) {
  const struct {
    const char* name;
    const char* text;
    std::vector<Qt::Key> keys;  // each goes to the control that has the focus
    const char* chosen;         // "" if the dialog stays
  } rows[] = {
      {"one match", "grs", {Qt::Key_Return}, "GRS 1980"},
      {"two matches", "clarke", {Qt::Key_Return}, ""},
      {"two matches, the first", "clarke", {Qt::Key_Return, Qt::Key_Return}, "Clarke 1866"},
      {"two matches, the second",
       "clarke",
       {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return},
       "Clarke 1880 (IGN)"},
      {"down, up, and back again", "clarke", {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return}, ""},
      {"up within the list",
       "clarke",
       {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Return},
       "Clarke 1866"},
      {"a letter in the list", "", {Qt::Key_Down, Qt::Key_W, Qt::Key_Return}, "WGS 84"},
  };
  database_.data->DialogMode = kSimpleMode;
  for (const auto& row : rows) {
    const bool chosen = Choose([&](QDialog& form) {
      Search(form, row.text);
      for (const Qt::Key key : row.keys)
        QTest::keyClick(form.focusWidget(), key);
    });
    EXPECT_EQ(chosen, *row.chosen != 0) << row.name;
    EXPECT_EQ(chosen ? CurrentName(kEllipsoid) : "", row.chosen) << row.name;
  }
}

TEST_F(SelectorKeys, KeysDoWhatTheirButtonsOffer) {
  const struct {
    const char* name;
    int type;
    signed char mode;
    Qt::Key key;
    const char* calls;
    int left;
    bool chosen;
  } rows[] = {{"Enter edits", 3, 2, Qt::Key_Return, "edit ", 7, false},
              {"Enter chooses where Edit does not show", 3, 1, Qt::Key_Enter, "", 7, true},
              {"Insert", 3, 2, Qt::Key_Insert, "new ", 7, false},
              {"Insert in simple mode", 3, 1, Qt::Key_Insert, "", 7, false},
              {"Delete in simple mode", 3, 1, Qt::Key_Delete, "", 7, false},
              {"Delete", 3, 2, Qt::Key_Delete, "", 6, false},
              {"Enter edits a type", 12, 2, Qt::Key_Return, "edit ", 6, false},
              {"Insert among types", 12, 2, Qt::Key_Insert, "", 6, false},
              {"Delete among types", 12, 2, Qt::Key_Delete, "", 6, false}};
  for (const auto& row : rows) {
    database_.data->DialogMode = row.mode;
    const std::unique_ptr<TformQvRfSelector> list(GetSelectorFor(nullptr, row.type));
    ScriptedEdit edit(list.get());
    const auto press = [&](QDialog& form) { Press(form, "dbgridList", row.key); };
    EXPECT_EQ(ChooseIn(*list, press), row.chosen) << row.name;
    EXPECT_EQ(edit.calls, row.calls) << row.name;
    EXPECT_EQ(list->Processor->DataSet->RecordCount(), row.left) << row.name;
  }
}

TEST_F(SelectorKeys, ANewRecordShowsWhateverTheFilterWas) {
  ScriptedEdit edit(&ellipsoids_);
  edit.onNew = [this] { return Add(TableId::kEllipsoid, "Hayford") != 0; };
  Choose([](QDialog& form) {
    Search(form, "clarke");
    Click(form, "bitbtnNew");
    EXPECT_EQ(MarkedName(form), "Hayford");
    EXPECT_TRUE(IsEnabled(form, "bitbtnOk"));
  });
  edit.onNew = [this] {
    database_.data->datasetEllipsoid.Last();
    return false;
  };
  Choose([](QDialog& form) {
    Search(form, "clarke");
    Click(form, "bitbtnNew");
    EXPECT_EQ(MarkedName(form), "Clarke 1866") << "a new record given up leads back";
  });
}

TEST_F(SelectorKeys, AfterARemovalTheNeighbourInSightIsCurrent) {
  Choose([&](QDialog& form) {
    Search(form, "clarke");
    Press(form, "dbgridList", Qt::Key_Down);
    EXPECT_EQ(MarkedName(form), "Clarke 1880 (IGN)");
    Press(form, "dbgridList", Qt::Key_Delete);
    EXPECT_EQ(ListedNames(form), "Clarke 1866");
    EXPECT_EQ(MarkedName(form), "Clarke 1866");
    EXPECT_EQ(CurrentName(kEllipsoid), "Clarke 1866");
  });
  database_.ui.answers = {QvPlatform::MessageAnswer::kNo};
  Choose([&](QDialog& form) {
    Click(form, "bitbtnRemove");
    EXPECT_EQ(MarkedName(form), "Airy 1830") << "a No leaves everything";
  });
}

TEST_F(SelectorKeys, SearchButtonsGoFromMatchToMatchAndTellTheEnd) {
  Choose([&](QDialog& form) {
    Search(form, "clarke");
    Click(form, "bitbtnSearchDown");
    EXPECT_EQ(MarkedName(form), "Clarke 1880 (IGN)");
    EXPECT_TRUE(database_.ui.messages.empty());
    Click(form, "bitbtnSearchDown");
    EXPECT_EQ(MarkedName(form), "Clarke 1880 (IGN)") << "the record does not move";
    EXPECT_EQ(database_.ui.messages, std::vector<std::string>{"\"clarke\" not found"});
    Click(form, "bitbtnSearchUp");
    EXPECT_EQ(MarkedName(form), "Clarke 1866");
    Press(form, "bitbtnSearchDown", Qt::Key_Return);
    EXPECT_EQ(MarkedName(form), "Clarke 1880 (IGN)") << "Enter on an arrow is not OK";
    EXPECT_TRUE(form.isVisible());
  });
}

TEST_F(SelectorKeys, TheHistoryKeepsEachTextOnceAsFirstTyped) {
  Choose([&](QDialog& form) {
    auto& field = Child<QComboBox>(form, "comboSearch");
    for (const char* text : {"Clarke", "wgs", "CLARKE", "", "", "WGS"}) {
      field.lineEdit()->clear();
      Search(form, text);
      Click(form, "bitbtnSearchDown");
    }
    QStringList history;
    for (int i = 0; i < field.count(); ++i)
      history << field.itemText(i);
    EXPECT_EQ(history, QStringList({"", "wgs", "Clarke"}));
    EXPECT_EQ(field.currentText(), "WGS");
  });
}

TEST_F(SelectorKeys, TheRawTableComesAndGoesByItsKeys) {
  constexpr auto kBoth = Qt::ControlModifier | Qt::ShiftModifier;
  Choose([&](QDialog& form) {
    Press(form, "dbgridList", Qt::Key_F12, kBoth);
    EXPECT_FALSE(IsShown(form, "dbgridShowAll"));
    Press(form, "dbgridList", Qt::Key_F11, kBoth);
    const auto& grid = Child<QAbstractItemView>(form, "dbgridShowAll");
    EXPECT_TRUE(grid.isVisible());
    EXPECT_TRUE(grid.isEnabled());
    EXPECT_EQ(grid.geometry(), form.rect());
    EXPECT_EQ(grid.model()->columnCount(), database_.data->datasetEllipsoid.FieldCount());
    Press(form, "dbgridShowAll", Qt::Key_Down);
    EXPECT_EQ(CurrentName(kEllipsoid), "Bessel 1841");
    Press(form, "dbgridShowAll", Qt::Key_F12, kBoth);
    EXPECT_FALSE(grid.isVisible());
    EXPECT_FALSE(grid.isEnabled());
    EXPECT_EQ(MarkedName(form), "Bessel 1841");
  });
}

}  // namespace
}  // namespace refframe_tests
