// What the dialogs of Cartesian, geocentric, local and topocentric systems do beside their rows,
// and how the selector of reference systems gets to them.

#include "forms/system_forms.h"
#include "platform/geocore/system_model.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;

class RefSystemEdit : public EditTest {
 protected:
  /// Sets a field of the record of that type in the table of types.
  void SetOfType(int type, const char* field, const char* value) {
    database_.Processor(kReferenceSystemType).LocateKey(type);
    SetField(database_.data->datasetRefSystemType, field, value);
  }
  void SetOfSystem(const char* field, const std::string& value) {
    SetField(database_.data->datasetRefSystem, field, value);
  }
  TformQvRfSelector& Systems() {
    return *GetSelectorFor(&owner_, static_cast<int>(kReferenceSystem));
  }
  int SystemOf(const std::string& name) { return KeyOf(kReferenceSystem, name); }
  bool LocateSystem(const char* name) {
    return database_.Processor(kReferenceSystem).LocateKey(SystemOf(name));
  }
};

constexpr const FormDescription* kHandedForms[] = {&kCartSystemForm, &kLocalSystemForm,
                                                   &kTopoSystemForm};

/// The names of the axes in the grid of the origin, joined by blanks.
std::string OriginNames(const QWidget& dialog) {
  const auto& grid = Child<QTableWidget>(dialog, "strgridOrigin");
  std::string names;
  for (int row = 0; row < grid.rowCount(); ++row)
    names += (row > 0 ? " " : "") + grid.item(row, 0)->text().toStdString();
  return names;
}

std::string AxisNames(const QWidget& dialog) {
  return TextOf(dialog, "edXname") + " " + TextOf(dialog, "edYname") + " " +
         TextOf(dialog, "edZname");
}

/// Which of the two radio buttons is checked.
std::string Handedness(const QWidget& dialog) {
  return std::string(IsChecked(dialog, "radiobtnLeft") ? "left" : "") +
         (IsChecked(dialog, "radiobtnRight") ? "right" : "");
}

TEST_F(RefSystemEdit, ANewSystemHasTheAxesOfItsType) {
  for (const auto* form : kHandedForms) {
    SCOPED_TRACE(form->caption);
    const auto expectNew = [&](const char* names, const char* handedness) {
      Make(*form, [&](QWidget& dialog) {
        EXPECT_EQ(AxisNames(dialog), names);
        EXPECT_EQ(Handedness(dialog), handedness);
      });
    };
    SetOfType(form->type, "COORD2_ABBR", "Hochwert");
    for (const bool left : {true, false}) {
      SetOfType(form->type, "SWAP_COORDS", left ? "1" : "0");
      expectNew("A Hochwert C", left ? "left" : "right");
    }
    database_.data->datasetRefSystemType.Delete();
    expectNew("  ", "");
  }
}

TEST_F(RefSystemEdit, HandednessIsStoredAndShown) {
  for (const auto* form : kHandedForms) {
    SCOPED_TRACE(form->caption);
    const int key = AddValid(*form, form->caption);
    for (const bool left : {true, false}) {
      EXPECT_TRUE(Change(*form, [&](QWidget& dialog) {
        EXPECT_EQ(Handedness(dialog), left ? "right" : "left") << "as it was";
        Click(dialog, left ? "radiobtnLeft" : "radiobtnRight");
        EXPECT_EQ(Handedness(dialog), left ? "left" : "right");
        Save(dialog);
      }));
      EXPECT_EQ(TextOfField(*form, "SWAP_COORDS"), left ? "1" : "0");
    }
    EXPECT_EQ(database_.Processor(kReferenceSystem).GetCurrentKey(), key);
  }
}

TEST_F(RefSystemEdit, ADatumCountsOnlyWhileItsBoxIsChecked) {
  AddValid(kGeocSystemForm, "Geocentric");
  const int datum = KeyOf(kDatum, "First");
  const struct {
    const char* name;
    bool checked;
    int clicks;
    int stored;
  } rows[] = {{"a refusal forgets nothing", true, 2, datum},
              {"unchecked", true, 1, 0},
              {"checked, and none chosen", false, 1, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_TRUE(Change(kGeocSystemForm, [&](QWidget& dialog) {
      EXPECT_EQ(IsChecked(dialog, "chboxDatum"), row.checked);
      EXPECT_EQ(TextOf(dialog, "edDatum"), row.checked ? "First" : "");
      for (int click = 0; click < row.clicks; ++click) {
        Click(dialog, "chboxDatum");
        EXPECT_EQ(IsEnabled(dialog, "btnDatum"), IsChecked(dialog, "chboxDatum"));
        Type(dialog, "edName", "");
        Save(dialog);
      }
      Type(dialog, "edName", "Named");
      Save(dialog);
    }));
    EXPECT_EQ(Table(kGeocSystemForm).FieldByName("DATUM_AUTOKEY").AsInteger(), row.stored);
  }
}

TEST_F(RefSystemEdit, TheOriginOfALocalSystemFollowsItsAxesAndUnit) {
  UseLast(kLinearUnit, "Second");
  const auto makeRod = [](QWidget& unit) {
    Type(unit, "edName", "Rod <b>");
    Type(unit, "edFactorB", "5.03");
    Type(unit, "edFactorC", "1");
    Save(unit);
  };
  EXPECT_FALSE(Make(kLocalSystemForm, [&](QWidget& dialog) {
    EXPECT_EQ(OriginNames(dialog), "A B");
    EXPECT_EQ(TextOf(dialog, "edLinearUnit"), "Second");
    EXPECT_EQ(TipOf(dialog, "strgridOrigin"), "<qt>Second</qt>") << "at once";
    Type(dialog, "edXname", "East");
    EXPECT_EQ(OriginNames(dialog), "East B");
    Type(dialog, "edYname", "");
    EXPECT_EQ(OriginNames(dialog), "East ");
    Open<TformQvRfSelector>(dialog, "btnLinearUnit", [&](QWidget& units) {
      Open<TformQvRfEdit>(units, "bitbtnNew", makeRod);
      Ok(units);
    });
    EXPECT_EQ(TextOf(dialog, "edLinearUnit"), "Rod <b>");
    EXPECT_EQ(TipOf(dialog, "strgridOrigin"), "<qt>Rod &lt;b&gt;</qt>");
  }));
  AddValid(kLocalSystemForm, "Without unit", {{"LINEAR_UNIT_AUTOKEY", "9999"}});
  Change(kLocalSystemForm, [](QWidget& dialog) { EXPECT_EQ(TipOf(dialog, "strgridOrigin"), ""); });
}

TEST_F(RefSystemEdit, ALocalSystemStandsOnASphere) {
  AddValid(kLocalSystemForm, "Plane");
  EXPECT_TRUE(Change(kLocalSystemForm, [](QWidget& dialog) {
    Open<TformQvRfSelector>(dialog, "btnEllipsoid", [](QWidget& spheres) {
      EXPECT_EQ(ListedNames(spheres), "Sphere");
      Cancel(spheres);
    });
    EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "GRS 1980") << "cancelled";
    Choose(dialog, "btnEllipsoid");
    EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "Sphere");
    Save(dialog);
  }));
  EXPECT_EQ(TextOfField(kLocalSystemForm, "ELLIPSOID_AUTOKEY"),
            std::to_string(KeyOf(kEllipsoid, "Sphere")));
}

TEST_F(RefSystemEdit, AHiddenOriginIsKeptAsItIs) {
  database_.data->ShowImportExport = true;
  UseLast(kLinearUnit);
  AddValid(kLocalSystemForm, "Plane", {{"ORIGIN_COORD2", " 12.50 "}});
  const auto rename = [](QWidget& dialog) {
    EXPECT_EQ(Which(IsShown, dialog, {"strgridOrigin", "lblOrigin", "edOrigin1", "edOrigin2"}), "");
    Type(dialog, "edName", "Renamed");
    Choose(dialog, "btnEllipsoid");
    Save(dialog);
  };
  EXPECT_TRUE(Change(kLocalSystemForm, rename));
  EXPECT_EQ(Record(kLocalSystemForm, {"ORIGIN_COORD1", "ORIGIN_COORD2"}),
            "ORIGIN_COORD1=old ORIGIN_COORD1 ORIGIN_COORD2= 12.50 ");
  EXPECT_TRUE(Make(kLocalSystemForm, rename));
  EXPECT_EQ(Record(kLocalSystemForm, {"ORIGIN_COORD1", "ORIGIN_COORD2"}),
            "ORIGIN_COORD1= ORIGIN_COORD2=");
}

// By keys and clicks alone, and with names of axes that leave no room of their own accord.
TEST_F(RefSystemEdit, TheCellsOfTheOriginAreReachedAndHaveRoom) {
  AddValid(kTopoSystemForm, "Station");
  LocateSystem("First");
  SetOfSystem("COORD1_ABBR", std::string(64, 'W'));
  SetOfSystem("COORD2_ABBR", "Lon");
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
      SetOfSystem(field, text);
    }
    SetOfSystem("ANGULAR_UNIT_AUTOKEY", std::to_string(KeyOf(kAngularUnit, "First")));
    SetOfSystem("LINEAR_UNIT_AUTOKEY", std::to_string(KeyOf(kLinearUnit, "Second")));
    AddValid(kTopoSystemForm, "Station");
  }
};

TEST_F(TopoEdit, ThePrimarySystemGivesTheOriginItsAxesAndUnits) {
  const auto origin = [](const QWidget& dialog) {
    return OriginNames(dialog) + "; " + TipOf(dialog, "strgridOrigin") + "; " +
           TipOf(dialog, "edAzimuth");
  };
  constexpr char kNone[] = "  ; ; ";
  constexpr char kOfSecond[] = "Lat Lon H; <qt>First/Second</qt>; <qt>First</qt>";
  for (const bool choose : {false, true}) {
    database_.data->DialogMode = kFullMode;
    LocateSystem("Station");
    const bool saved = Change(kTopoSystemForm, [&](QWidget& dialog) {
      EXPECT_EQ(origin(dialog), kNone) << "the first one has neither";
      Type(dialog, "edName", "Half typed");
      Open<TformQvRfSelector>(dialog, "btnOriginRefSystem", [&](QWidget& systems) {
        EXPECT_EQ(ListedNames(systems), "First, Second") << "geodetic ones";
        EXPECT_EQ(Which(IsShown, systems, {"bitbtnNew", "bitbtnEdit", "bitbtnRemove"}), "");
        choose ? ChooseLast(systems) : Cancel(systems);
      });
      EXPECT_EQ(database_.data->DialogMode, kFullMode);
      EXPECT_EQ(TextOf(dialog, "edName"), "Half typed");
      EXPECT_EQ(TextOf(dialog, "edOriginRefSystem"), choose ? "Second" : "First");
      EXPECT_EQ(origin(dialog), choose ? kOfSecond : kNone);
      if (choose) Save(dialog);
    });
    EXPECT_EQ(saved, choose);
  }
  EXPECT_EQ(Record(kTopoSystemForm, {"NAME", "PRIMARY_REFSYSTEM_AUTOKEY"}),
            "NAME=Half typed PRIMARY_REFSYSTEM_AUTOKEY=" + std::to_string(SystemOf("Second")));
  Change(kTopoSystemForm, [&](QWidget& dialog) { EXPECT_EQ(origin(dialog), kOfSecond); });
  Make(kTopoSystemForm, [&](QWidget& dialog) {
    EXPECT_EQ(origin(dialog), kNone) << "none is left from the run before";
  });
}

TEST_F(TopoEdit, AMissingPrimarySystemHasToBeChosenAnew) {
  LocateSystem("First");
  Table(kTopoSystemForm).Delete();
  LocateSystem("Station");
  EXPECT_TRUE(Change(kTopoSystemForm, [](QWidget& dialog) {
    EXPECT_EQ(TextOf(dialog, "edOriginRefSystem"), "");
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kTopoSystemForm), "edOriginRefSystem");
    Type(dialog, "edAzimuth", " \t ");
    Choose(dialog, "btnOriginRefSystem");
    EXPECT_EQ(RefusedControls(dialog, kTopoSystemForm), "");
    Save(dialog);
  }));
  EXPECT_EQ(Record(kTopoSystemForm, {"NAME", "AZIMUTH"}), "NAME=Station AZIMUTH=")
      << "blanks are no azimuth";
}

// Three dialogs over one table: the list, the system in it, and the list of its primaries.
TEST_F(TopoEdit, TheListBehindStandsOnTheSavedSystem) {
  ScreenUser user(In<TformQvRfSelector>([](QWidget& list) {
    EXPECT_EQ(ListedNames(list), "First, Second, Station");
    Open<TformQvRfEdit>(list, "bitbtnEdit", [](QWidget& dialog) {
      Choose(dialog, "btnOriginRefSystem");
      Type(dialog, "edName", "Alpha");
      Save(dialog);
    });
    EXPECT_EQ(ListedNames(list), "Alpha, First, Second");
    EXPECT_EQ(MarkedName(list), "Alpha");
    Cancel(list);
  }));
  int key = SystemOf("Station");
  Systems().Select(nullptr, 0, false, &key, 0);
}

TEST_F(RefSystemEdit, TheTypeLeadsToTheDialog) {
  for (const auto* form : {&kCartSystemForm, &kLocalSystemForm, &kGeocSystemForm, &kGeodSystemForm,
                           &kProjSystemForm, &kTopoSystemForm}) {
    SCOPED_TRACE(form->caption);
    const std::string name = "System " + std::to_string(form->type);
    int key = Add(TableId::kRefSystem, name, {{"TYPE", form->type}});
    const auto close = [&](QWidget& dialog) {
      EXPECT_EQ(dialog.windowTitle().toStdString(), form->caption);
      Close(dialog);
    };
    database_.ui.messages.clear();
    ScreenUser user;
    user.In<TformQvRfSelector>([&](QWidget& list) {
          Open<TformQvRfEdit>(list, "bitbtnEdit", close);
          Click(list, "bitbtnNew");
          EXPECT_EQ(MarkedName(list), name);
          Cancel(list);
        })
        .In<TformQvRfSelector>([&](QWidget& types) {
          EXPECT_EQ(types.windowTitle().toStdString(), "Select reference system type");
          Search(types, ("kind " + std::to_string(form->type)).c_str());
          Ok(types);
        })
        .In<TformQvRfEdit>(close);
    Systems().Select(nullptr, 0, false, &key, 0);
    EXPECT_TRUE(database_.ui.messages.empty());
  }
  int key = Add(TableId::kRefSystem, "Of no type", {{"TYPE", 9}});
  ScreenUser user(In<TformQvRfSelector>([&](QWidget& list) {
    database_.ui.messages.clear();
    Press(list, "dbgridList", Qt::Key_Return);
    EXPECT_TRUE(list.isVisible());
    EXPECT_TRUE(database_.ui.messages.empty());
    Cancel(list);
  }));
  Systems().Select(nullptr, 0, false, &key, 0);
}

}  // namespace
}  // namespace refframe_tests
