// Datums and their shifts: the type picks the dialog, and in simple mode a datum has its own shift.

#include <gtest/gtest.h>

#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using QvRefSystem::GetSelectorFor;
using QvRefSystem::kBursaWolfForm;
using QvRefSystem::kDatumForm;
using QvRefSystem::kMolodenskyForm;
using QvRefSystem::TableId;
using QvRefSystem::TformQvRfEdit;
using QvRefSystem::TformQvRfSelector;
using enum QvRefSystem::TObjectType;

class DatumEdit : public EditTest {
 protected:
  static bool Has(const QWidget& dialog, const char* objectName) {
    return dialog.findChild<QWidget*>(objectName) != nullptr;
  }
  /// Fills in a shift of any type and saves it.
  static void MakeShift(QWidget& dialog, const std::string& name) {
    Type(dialog, "edName", name);
    for (const char* control : {"edTx", "edTy", "edTz", "edRx", "edRy", "edRz", "edS"}) {
      if (Has(dialog, control)) Type(dialog, control, "0");
    }
    Click(dialog, "bitbtnSave");
  }
  static void ChooseType(QWidget& types, const char* name) {
    Search(types, name);
    Click(types, "bitbtnOk");
  }
  void UseUnits() {
    for (const auto unit : {kLinearUnit, kAngularUnit, kScaleUnit}) {
      QvPlatform::TQvDataSet& table = *database_.Processor(unit).DataSet;
      table.Edit();
      table.FieldByName("LAST_USE").SetFloat(1);
      table.Post();
    }
  }
};

TEST_F(DatumEdit, TheTypeOfAShiftPicksItsDialogAndStays) {
  UseUnits();
  const std::unique_ptr<TformQvRfSelector> shifts(GetSelectorFor(nullptr, 4));
  const struct {
    const char* type;
    bool rotates;
    const char* stored;
  } rows[] = {{"shift 1", false, "TYPE=1 TX=0 RX= S= SCALE_UNIT_AUTOKEY=0"},
              {"shift 2", true, "TYPE=2 TX=0 RX=0 S=0 SCALE_UNIT_AUTOKEY=2"},
              {"shift 3", true, "TYPE=3 TX=0 RX=0 S=0 SCALE_UNIT_AUTOKEY=2"}};
  for (const auto& row : rows) {
    const std::string name = std::string("made as ") + row.type;
    ScreenUser user;
    user.In<TformQvRfSelector>([&](QWidget& list) {
          Click(list, "bitbtnNew");
          EXPECT_EQ(MarkedName(list), name);
          Click(list, "bitbtnEdit");
          EXPECT_EQ(MarkedName(list), name + " again");
          Click(list, "bitbtnCancel");
        })
        .In<TformQvRfSelector>([&](QWidget& types) { ChooseType(types, row.type); })
        .In<TformQvRfEdit>([&](QWidget& dialog) {
          EXPECT_EQ(Has(dialog, "edRx"), row.rotates);
          EXPECT_EQ(TextOf(dialog, row.rotates ? "edLinearUnit" : "edUnit"), "Second");
          MakeShift(dialog, name);
        })
        .In<TformQvRfEdit>([&](QWidget& dialog) {
          EXPECT_EQ(Has(dialog, "edRx"), row.rotates);
          Type(dialog, "edName", name + " again");
          Click(dialog, "bitbtnSave");
        });
    shifts->Select(nullptr, 0, false, nullptr, 0);
    EXPECT_EQ(Record(kBursaWolfForm, {"TYPE", "TX", "RX", "S", "SCALE_UNIT_AUTOKEY"}), row.stored);
  }
}

TEST_F(DatumEdit, AMolodenskyShiftKeepsWhatItsDialogDoesNotShow) {
  AddValid(kBursaWolfForm, "Seven");
  Table(kMolodenskyForm).Edit();
  Table(kMolodenskyForm).FieldByName("TYPE").SetInteger(1);
  Table(kMolodenskyForm).Post();
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) { Click(dialog, "bitbtnSave"); });
  EXPECT_TRUE(FormOf(kMolodenskyForm).EditCurrent());
  EXPECT_EQ(Record(kMolodenskyForm, {"TX", "RX", "S", "SCALE_UNIT_AUTOKEY", "TYPE"}),
            "TX=old TX RX=old RX S=old S SCALE_UNIT_AUTOKEY=1 TYPE=1");
}

TEST_F(DatumEdit, InFullModeAShiftIsChosenFromTheList) {
  AddValid(kDatumForm, "Tested");
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
        Click(dialog, "btnDatumShift");
        EXPECT_EQ(TextOf(dialog, "edDatumShift"), "Second");
        Click(dialog, "btnEllipsoid");
        EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "WGS 84");
        Click(dialog, "bitbtnSave");
      })
      .In<TformQvRfSelector>([](QWidget& list) {
        EXPECT_EQ(MarkedName(list), "First") << "opens on the one that is referred to";
        Press(list, "dbgridList", Qt::Key_End);
        Click(list, "bitbtnOk");
      })
      .In<TformQvRfSelector>([](QWidget& list) {
        Press(list, "dbgridList", Qt::Key_End);
        Click(list, "bitbtnOk");
      });
  EXPECT_TRUE(FormOf(kDatumForm).EditCurrent());
  EXPECT_EQ(Table(kDatumForm).FieldByName("DATUM_SHIFT_AUTOKEY").AsInteger(),
            KeyOf(kDatumShift, "Second"));
}

TEST_F(DatumEdit, InSimpleModeADatumMakesAndEditsItsOwnShift) {
  UseUnits();
  database_.data->DialogMode = QvRefSystem::kSimpleMode;
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& datum) {
        Type(datum, "edName", "Simple");
        Click(datum, "btnDatumShift");
        EXPECT_EQ(TextOf(datum, "edDatumShift"), "") << "no type was chosen";
        Click(datum, "btnDatumShift");
        EXPECT_TRUE(datum.isVisible());
        EXPECT_EQ(TextOf(datum, "edDatumShift"), "Own shift");
        Click(datum, "btnEllipsoid");
        Click(datum, "bitbtnSave");
      })
      .In<TformQvRfSelector>([](QWidget& types) { Click(types, "bitbtnCancel"); })
      .In<TformQvRfSelector>([](QWidget& types) { ChooseType(types, "shift 1"); })
      .In<TformQvRfEdit>([](QWidget& shift) { MakeShift(shift, "Own shift"); })
      .In<TformQvRfSelector>([](QWidget& ellipsoids) { Click(ellipsoids, "bitbtnOk"); });
  ASSERT_TRUE(FormOf(kDatumForm).CreateNew());
  const int own = KeyOf(kDatumShift, "Own shift");
  EXPECT_EQ(Table(kDatumForm).FieldByName("DATUM_SHIFT_AUTOKEY").AsInteger(), own);

  ScreenUser editor;
  editor
      .In<TformQvRfEdit>([this](QWidget& datum) {
        Table(kMolodenskyForm).First();
        Click(datum, "btnDatumShift");
        EXPECT_EQ(TextOf(datum, "edDatumShift"), "Better shift");
        Click(datum, "bitbtnSave");
      })
      .In<TformQvRfEdit>([](QWidget& shift) {
        EXPECT_EQ(TextOf(shift, "edName"), "Own shift");
        Type(shift, "edName", "Better shift");
        Click(shift, "bitbtnSave");
      });
  EXPECT_TRUE(FormOf(kDatumForm).EditCurrent());
  EXPECT_EQ(Table(kDatumForm).FieldByName("DATUM_SHIFT_AUTOKEY").AsInteger(), own);
  EXPECT_EQ(KeyOf(kDatumShift, "Better shift"), own);
}

TEST_F(DatumEdit, ANewDatumBeginsWithoutReferences) {
  UseUnits();
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
    EXPECT_EQ(TextOf(dialog, "edDatumShift") + TextOf(dialog, "edEllipsoid"), "");
    Click(dialog, "bitbtnClose");
  });
  EXPECT_FALSE(FormOf(kDatumForm).CreateNew());
}

}  // namespace
}  // namespace refframe_tests
