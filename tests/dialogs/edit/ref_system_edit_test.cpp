// What the dialogs of Cartesian, geocentric, local and topocentric systems do beside their rows,
// and how the selector of reference systems gets to them.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QTableWidget>

#include "forms/system_forms.h"
#include "platform/geocore/system_model.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using QvRefSystem::FormDescription;
using QvRefSystem::GetSelectorFor;
using QvRefSystem::kCartSystemForm;
using QvRefSystem::kGeocSystemForm;
using QvRefSystem::kGeodSystemForm;
using QvRefSystem::kLocalSystemForm;
using QvRefSystem::kProjSystemForm;
using QvRefSystem::kTopoSystemForm;
using QvRefSystem::TableId;
using QvRefSystem::TformQvRfEdit;
using QvRefSystem::TformQvRfSelector;
using enum QvRefSystem::TObjectType;

class RefSystemEdit : public EditTest {
 protected:
  using Act = std::function<void(QWidget&)>;
  bool Make(const FormDescription& form, const Act& act) {
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return FormOf(form).CreateNew();
  }
  bool Change(const FormDescription& form, const Act& act) {
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return FormOf(form).EditCurrent();
  }
  /// Sets a field of the current record of a table.
  void Set(TableId table, const char* field, const std::string& value) {
    QvPlatform::TQvDataSet& dataSet = database_.data->DataSet(table);
    dataSet.Edit();
    dataSet.FieldByName(field).SetString(value);
    dataSet.Post();
  }
  /// Makes a record of a type table the one whose fields are set next.
  void LocateType(int type) { database_.Processor(kReferenceSystemType).LocateKey(type); }
  /// Stamps a unit, so that a new record begins with it.
  void UseLast(QvRefSystem::TObjectType object, const std::string& name) {
    database_.Processor(object).LocateKey(KeyOf(object, name));
    Set(QvRefSystem::DescriptorOf(object).table, "LAST_USE", "45000.5");
  }
  TformQvRfSelector& Systems() {
    return *GetSelectorFor(&owner_, static_cast<int>(kReferenceSystem));
  }
  int SystemOf(const char* name) { return KeyOf(kReferenceSystem, name); }
  bool LocateSystem(const char* name) {
    return database_.Processor(kReferenceSystem).LocateKey(SystemOf(name));
  }
};

bool IsChecked(const QWidget& dialog, const char* button) {
  return Child<QAbstractButton>(dialog, button).isChecked();
}

std::string Hint(const QWidget& dialog, const char* control) {
  return Child(dialog, control).toolTip().toStdString();
}

/// The names of the axes in the grid of the origin, joined by blanks.
std::string OriginNames(const QWidget& dialog) {
  const auto& grid = Child<QTableWidget>(dialog, "strgridOrigin");
  std::string names;
  for (int row = 0; row < grid.rowCount(); ++row)
    names += (row > 0 ? " " : "") + grid.item(row, 0)->text().toStdString();
  return names;
}

TEST_F(RefSystemEdit, ANewSystemHasTheAxesOfItsType) {
  for (const auto* form : {&kCartSystemForm, &kLocalSystemForm, &kTopoSystemForm}) {
    SCOPED_TRACE(form->caption);
    for (const bool left : {true, false}) {
      LocateType(form->type);
      Set(TableId::kRefSystemType, "SWAP_COORDS", left ? "1" : "0");
      Set(TableId::kRefSystemType, "COORD2_ABBR", "Hochwert");
      Make(*form, [&](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "edXname"), "A");
        EXPECT_EQ(TextOf(dialog, "edYname"), "Hochwert");
        EXPECT_EQ(TextOf(dialog, "edZname"), "C");
        EXPECT_EQ(IsChecked(dialog, "radiobtnLeft"), left);
        EXPECT_EQ(IsChecked(dialog, "radiobtnRight"), !left);
        Click(dialog, "bitbtnClose");
      });
    }
    LocateType(form->type);
    database_.data->datasetRefSystemType.Delete();
    Make(*form, [&](QWidget& dialog) {
      EXPECT_EQ(TextOf(dialog, "edXname"), "");
      EXPECT_FALSE(IsChecked(dialog, "radiobtnLeft") || IsChecked(dialog, "radiobtnRight"));
      Click(dialog, "bitbtnClose");
    });
  }
}

TEST_F(RefSystemEdit, HandednessIsStoredAndShown) {
  for (const auto* form : {&kCartSystemForm, &kLocalSystemForm, &kTopoSystemForm}) {
    SCOPED_TRACE(form->caption);
    const int key = AddValid(*form, form->caption);
    for (const char* radio : {"radiobtnLeft", "radiobtnRight"}) {
      const bool left = std::string(radio) == "radiobtnLeft";
      EXPECT_TRUE(Change(*form, [&](QWidget& dialog) {
        EXPECT_EQ(IsChecked(dialog, "radiobtnRight"), left) << "as it was";
        Click(dialog, radio);
        EXPECT_NE(IsChecked(dialog, "radiobtnRight"), left);
        Click(dialog, "bitbtnSave");
      }));
      EXPECT_EQ(TextOfField(*form, "SWAP_COORDS"), left ? "1" : "0");
    }
    EXPECT_EQ(database_.Processor(kReferenceSystem).GetCurrentKey(), key);
  }
}

TEST_F(RefSystemEdit, ADatumCountsOnlyWhileItsBoxIsChecked) {
  AddValid(kGeocSystemForm, "Geocentric");
  const std::string datum = std::to_string(KeyOf(kDatum, "First"));
  const auto stored = [&] { return TextOfField(kGeocSystemForm, "DATUM_AUTOKEY"); };
  EXPECT_TRUE(Change(kGeocSystemForm, [](QWidget& dialog) {
    EXPECT_TRUE(IsChecked(dialog, "chboxDatum"));
    Click(dialog, "chboxDatum");
    EXPECT_FALSE(IsEnabled(dialog, "btnDatum"));
    Type(dialog, "edName", "");
    Click(dialog, "bitbtnSave");
    Type(dialog, "edName", "Named");
    Click(dialog, "chboxDatum");
    EXPECT_TRUE(IsEnabled(dialog, "btnDatum"));
    Click(dialog, "bitbtnSave");
  }));
  EXPECT_EQ(stored(), datum) << "a refusal forgets nothing";
  EXPECT_TRUE(Change(kGeocSystemForm, [](QWidget& dialog) {
    Click(dialog, "chboxDatum");
    Click(dialog, "bitbtnSave");
  }));
  EXPECT_EQ(stored(), "0");
  EXPECT_TRUE(Change(kGeocSystemForm, [](QWidget& dialog) {
    EXPECT_FALSE(IsChecked(dialog, "chboxDatum"));
    EXPECT_EQ(TextOf(dialog, "edDatum"), "");
    Click(dialog, "chboxDatum");
    Click(dialog, "bitbtnSave");
  }));
  EXPECT_EQ(stored(), "0") << "checked, and none chosen";
}

TEST_F(RefSystemEdit, TheOriginOfALocalSystemFollowsItsAxesAndUnit) {
  UseLast(kLinearUnit, "Second");
  ScreenUser user;
  user.In<TformQvRfEdit>([&](QWidget& dialog) {
        EXPECT_EQ(OriginNames(dialog), "A B");
        EXPECT_EQ(TextOf(dialog, "edLinearUnit"), "Second");
        EXPECT_EQ(Hint(dialog, "strgridOrigin"), "<qt>Second</qt>") << "at once";
        Type(dialog, "edXname", "East");
        EXPECT_EQ(OriginNames(dialog), "East B");
        Press(dialog, "edXname", Qt::Key_Backspace);
        EXPECT_EQ(OriginNames(dialog), "Eas B");
        Type(dialog, "edYname", "");
        EXPECT_EQ(OriginNames(dialog), "Eas ");
        Click(dialog, "btnLinearUnit");
        EXPECT_EQ(TextOf(dialog, "edLinearUnit"), "Rod <b>");
        EXPECT_EQ(Hint(dialog, "strgridOrigin"), "<qt>Rod &lt;b&gt;</qt>");
        Click(dialog, "bitbtnClose");
      })
      .In<TformQvRfSelector>([](QWidget& units) {
        Click(units, "bitbtnNew");
        EXPECT_EQ(MarkedName(units), "Rod <b>");
        Click(units, "bitbtnOk");
      })
      .In<TformQvRfEdit>([](QWidget& unit) {
        Type(unit, "edName", "Rod <b>");
        Type(unit, "edFactorB", "5.03");
        Type(unit, "edFactorC", "1");
        Click(unit, "bitbtnSave");
      });
  EXPECT_FALSE(FormOf(kLocalSystemForm).CreateNew());
  AddValid(kLocalSystemForm, "Without unit");
  Set(TableId::kRefSystem, "LINEAR_UNIT_AUTOKEY", "9999");
  Change(kLocalSystemForm, [](QWidget& dialog) {
    EXPECT_EQ(Hint(dialog, "strgridOrigin"), "");
    Click(dialog, "bitbtnClose");
  });
}

TEST_F(RefSystemEdit, ALocalSystemStandsOnASphere) {
  AddValid(kLocalSystemForm, "Plane");
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "GRS 1980");
        Click(dialog, "btnEllipsoid");
        EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "GRS 1980") << "cancelled";
        Click(dialog, "btnEllipsoid");
        EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "Sphere");
        Click(dialog, "bitbtnSave");
      })
      .In<TformQvRfSelector>([](QWidget& spheres) {
        EXPECT_EQ(ListedNames(spheres), "Sphere");
        Click(spheres, "bitbtnCancel");
      })
      .In<TformQvRfSelector>([](QWidget& spheres) { Click(spheres, "bitbtnOk"); });
  EXPECT_TRUE(FormOf(kLocalSystemForm).EditCurrent());
  EXPECT_EQ(Table(kLocalSystemForm).FieldByName("ELLIPSOID_AUTOKEY").AsInteger(),
            KeyOf(kEllipsoid, "Sphere"));
}

TEST_F(RefSystemEdit, AHiddenOriginIsKeptAsItIs) {
  database_.data->ShowImportExport = true;
  AddValid(kLocalSystemForm, "Plane");
  Set(TableId::kRefSystem, "ORIGIN_COORD2", " 12.50 ");
  const auto rename = [](QWidget& dialog) {
    for (const char* control : {"strgridOrigin", "lblOrigin", "edOrigin1", "edOrigin2"})
      EXPECT_FALSE(IsShown(dialog, control)) << control;
    Type(dialog, "edName", "Renamed");
    Click(dialog, "bitbtnSave");
  };
  EXPECT_TRUE(Change(kLocalSystemForm, rename));
  EXPECT_EQ(Record(kLocalSystemForm, {"ORIGIN_COORD1", "ORIGIN_COORD2"}),
            "ORIGIN_COORD1=old ORIGIN_COORD1 ORIGIN_COORD2= 12.50 ");
  UseLast(kLinearUnit, "First");
  ScreenUser user;
  user.In<TformQvRfEdit>([&](QWidget& dialog) {
        Click(dialog, "btnEllipsoid");
        rename(dialog);
      })
      .In<TformQvRfSelector>([](QWidget& spheres) { Click(spheres, "bitbtnOk"); });
  EXPECT_TRUE(FormOf(kLocalSystemForm).CreateNew());
  EXPECT_EQ(Record(kLocalSystemForm, {"ORIGIN_COORD1", "ORIGIN_COORD2"}),
            "ORIGIN_COORD1= ORIGIN_COORD2=");
}

// By keys and clicks alone, and with names of axes that leave no room of their own accord.
TEST_F(RefSystemEdit, TheCellsOfTheOriginAreReachedAndHaveRoom) {
  AddValid(kTopoSystemForm, "Station");
  LocateSystem("First");
  Set(TableId::kRefSystem, "COORD1_ABBR", std::string(64, 'W'));
  Set(TableId::kRefSystem, "COORD2_ABBR", "Lon");
  LocateSystem("Station");
  EXPECT_TRUE(Change(kTopoSystemForm, [](QWidget& dialog) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto& grid = Child<QTableWidget>(dialog, "strgridOrigin");
    const int character = grid.fontMetrics().averageCharWidth();
    EXPECT_GE(grid.columnWidth(1), 12 * character);
    EXPECT_EQ(grid.columnWidth(0) + grid.columnWidth(1), grid.viewport()->width());
    EXPECT_FALSE(grid.item(0, 0)->toolTip().isEmpty());
    EXPECT_TRUE(grid.item(1, 0)->toolTip().isEmpty());
    const QRect last = grid.visualItemRect(grid.item(2, 0));
    EXPECT_TRUE(grid.viewport()->rect().contains(last)) << "all rows show";
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                      grid.visualItemRect(grid.item(1, 0)).center());
    const auto type = [&](const char* text) {
      auto* line = qobject_cast<QLineEdit*>(QApplication::focusWidget());
      ASSERT_NE(line, nullptr);
      line->selectAll();
      QTest::keyClicks(line, text);
    };
    type("two");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    type("three");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), &Child(dialog, "edOrigin1"));
    type("one");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  })) << "Enter in a cell saves as it does elsewhere";
  EXPECT_EQ(Record(kTopoSystemForm, {"ORIGIN_COORD1", "ORIGIN_COORD2", "ORIGIN_COORD3"}),
            "ORIGIN_COORD1=one ORIGIN_COORD2=two ORIGIN_COORD3=three");
}

class TopoEdit : public RefSystemEdit {
 protected:
  TopoEdit() {
    LocateSystem("Second");
    for (const auto& [field, text] :
         {std::pair("COORD1_ABBR", "Lat"), {"COORD2_ABBR", "Lon"}, {"COORD3_ABBR", "H"}}) {
      Set(TableId::kRefSystem, field, text);
    }
    Set(TableId::kRefSystem, "ANGULAR_UNIT_AUTOKEY", std::to_string(KeyOf(kAngularUnit, "First")));
    Set(TableId::kRefSystem, "LINEAR_UNIT_AUTOKEY", std::to_string(KeyOf(kLinearUnit, "Second")));
    AddValid(kTopoSystemForm, "Station");
  }
};

TEST_F(TopoEdit, ThePrimarySystemGivesTheOriginItsAxesAndUnits) {
  for (const bool choose : {false, true}) {
    database_.data->DialogMode = QvRefSystem::kFullMode;
    LocateSystem("Station");
    ScreenUser user;
    user.In<TformQvRfEdit>([&](QWidget& dialog) {
          EXPECT_EQ(OriginNames(dialog), "  ") << "those of the first one";
          EXPECT_EQ(Hint(dialog, "edAzimuth"), "") << "it has no units";
          Type(dialog, "edName", "Half typed");
          Click(dialog, "btnOriginRefSystem");
          EXPECT_EQ(database_.data->DialogMode, QvRefSystem::kFullMode);
          EXPECT_EQ(TextOf(dialog, "edName"), "Half typed");
          EXPECT_EQ(TextOf(dialog, "edOriginRefSystem"), choose ? "Second" : "First");
          EXPECT_EQ(OriginNames(dialog), choose ? "Lat Lon H" : "  ");
          EXPECT_EQ(Hint(dialog, "strgridOrigin"), choose ? "<qt>First/Second</qt>" : "");
          EXPECT_EQ(Hint(dialog, "edAzimuth"), choose ? "<qt>First</qt>" : "");
          Click(dialog, choose ? "bitbtnSave" : "bitbtnClose");
        })
        .In<TformQvRfSelector>([&](QWidget& systems) {
          EXPECT_EQ(ListedNames(systems), "First, Second") << "geodetic ones";
          for (const char* button : {"bitbtnNew", "bitbtnEdit", "bitbtnRemove"})
            EXPECT_FALSE(IsShown(systems, button)) << button;
          Press(systems, "dbgridList", Qt::Key_End);
          Click(systems, choose ? "bitbtnOk" : "bitbtnCancel");
        });
    EXPECT_EQ(FormOf(kTopoSystemForm).EditCurrent(), choose);
  }
  EXPECT_EQ(TextOfField(kTopoSystemForm, "NAME"), "Half typed");
  EXPECT_EQ(Table(kTopoSystemForm).FieldByName("PRIMARY_REFSYSTEM_AUTOKEY").AsInteger(),
            SystemOf("Second"));
  Change(kTopoSystemForm, [](QWidget& dialog) {
    EXPECT_EQ(OriginNames(dialog), "Lat Lon H");
    EXPECT_EQ(Hint(dialog, "strgridOrigin"), "<qt>First/Second</qt>");
    Click(dialog, "bitbtnClose");
  });
  Make(kTopoSystemForm, [](QWidget& dialog) {
    EXPECT_EQ(OriginNames(dialog), "  ") << "none is left from the run before";
    EXPECT_EQ(Hint(dialog, "strgridOrigin") + Hint(dialog, "edAzimuth"), "");
    Click(dialog, "bitbtnClose");
  });
}

TEST_F(TopoEdit, AMissingPrimarySystemHasToBeChosenAnew) {
  LocateSystem("First");
  Table(kTopoSystemForm).Delete();
  LocateSystem("Station");
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "edOriginRefSystem"), "");
        Click(dialog, "bitbtnSave");
        EXPECT_EQ(RefusedControls(dialog, kTopoSystemForm), "edOriginRefSystem");
        Type(dialog, "edAzimuth", " \t ");
        Click(dialog, "btnOriginRefSystem");
        EXPECT_EQ(RefusedControls(dialog, kTopoSystemForm), "");
        Click(dialog, "bitbtnSave");
      })
      .In<TformQvRfSelector>([](QWidget& systems) { Click(systems, "bitbtnOk"); });
  EXPECT_TRUE(FormOf(kTopoSystemForm).EditCurrent());
  EXPECT_EQ(Record(kTopoSystemForm, {"NAME", "AZIMUTH"}), "NAME=Station AZIMUTH=")
      << "blanks are no azimuth";
}

// Three dialogs over one table: the list, the system in it, and the list of its primaries.
TEST_F(TopoEdit, TheListBehindStandsOnTheSavedSystem) {
  ScreenUser user;
  user.In<TformQvRfSelector>([](QWidget& list) {
        EXPECT_EQ(ListedNames(list), "First, Second, Station");
        Click(list, "bitbtnEdit");
        EXPECT_EQ(ListedNames(list), "Alpha, First, Second");
        EXPECT_EQ(MarkedName(list), "Alpha");
        Click(list, "bitbtnCancel");
      })
      .In<TformQvRfEdit>([](QWidget& dialog) {
        Click(dialog, "btnOriginRefSystem");
        Type(dialog, "edName", "Alpha");
        Click(dialog, "bitbtnSave");
      })
      .In<TformQvRfSelector>([](QWidget& systems) { Click(systems, "bitbtnOk"); });
  int key = SystemOf("Station");
  Systems().Select(nullptr, 0, false, &key, 0);
}

TEST_F(RefSystemEdit, TheTypeLeadsToTheDialog) {
  const struct {
    int type;
    const FormDescription* form;
  } rows[] = {{1, &kCartSystemForm}, {2, &kLocalSystemForm}, {3, &kGeocSystemForm},
              {4, &kGeodSystemForm}, {5, &kProjSystemForm},  {6, &kTopoSystemForm}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.type);
    const std::string name = "System " + std::to_string(row.type);
    int key = Add(TableId::kRefSystem, name, {{"TYPE", row.type}});
    const auto close = [&](QWidget& dialog) {
      EXPECT_EQ(dialog.windowTitle().toStdString(), row.form->caption);
      Click(dialog, "bitbtnClose");
    };
    for (const char* button : {"bitbtnNew", "bitbtnEdit"}) {
      database_.ui.messages.clear();
      ScreenUser user;
      user.In<TformQvRfSelector>([&](QWidget& list) {
        Click(list, button);
        EXPECT_EQ(MarkedName(list), name);
        Click(list, "bitbtnCancel");
      });
      if (std::string(button) == "bitbtnNew") {
        user.In<TformQvRfSelector>([&](QWidget& types) {
          EXPECT_EQ(types.windowTitle().toStdString(), "Select reference system type");
          Press(types, "dbgridList", Qt::Key_Home);
          for (int at = 1; at < row.type; ++at)
            Press(types, "dbgridList", Qt::Key_Down);
          Click(types, "bitbtnOk");
        });
      }
      user.In<TformQvRfEdit>(close);
      Systems().Select(nullptr, 0, false, &key, 0);
      key = SystemOf(name.c_str());
      EXPECT_TRUE(database_.ui.messages.empty()) << button;
    }
  }
  int key = Add(TableId::kRefSystem, "Of no type", {{"TYPE", 9}});
  ScreenUser user;
  user.In<TformQvRfSelector>([&](QWidget& list) {
    database_.ui.messages.clear();
    Press(list, "dbgridList", Qt::Key_Return);
    EXPECT_TRUE(list.isVisible());
    EXPECT_TRUE(database_.ui.messages.empty());
    Click(list, "bitbtnCancel");
  });
  Systems().Select(nullptr, 0, false, &key, 0);
}

}  // namespace
}  // namespace refframe_tests
