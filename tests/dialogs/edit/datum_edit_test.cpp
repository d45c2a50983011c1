// Datums and their shifts: the type picks the dialog, and in simple mode a datum has its own shift.

#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;

/// Fills in a shift of any type and saves it.
void MakeShift(QWidget& dialog, const std::string& name) {
  Type(dialog, "edName", name);
  for (const char* control : {"edTx", "edTy", "edTz", "edRx", "edRy", "edRz", "edS"})
    if (dialog.findChild<QWidget*>(control) != nullptr) Type(dialog, control, "0");
  Save(dialog);
}

Act ChooseType(const char* name) {
  return [name](QWidget& types) {
    Search(types, name);
    Ok(types);
  };
}

class DatumEdit : public EditTest {
 protected:
  DatumEdit() {
    for (const auto unit : {kLinearUnit, kAngularUnit, kScaleUnit})
      UseLast(unit, "Second");
  }
};

TEST_F(DatumEdit, TheTypeOfAShiftPicksItsDialogAndStays) {
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
          Open<TformQvRfEdit>(list, "bitbtnEdit", [&](QWidget& dialog) {
            EXPECT_EQ(dialog.findChild<QWidget*>("edRx") != nullptr, row.rotates);
            Type(dialog, "edName", name + " again");
            Save(dialog);
          });
          EXPECT_EQ(MarkedName(list), name + " again");
          Cancel(list);
        })
        .In<TformQvRfSelector>(ChooseType(row.type))
        .In<TformQvRfEdit>([&](QWidget& dialog) {
          EXPECT_EQ(dialog.findChild<QWidget*>("edRx") != nullptr, row.rotates);
          EXPECT_EQ(TextOf(dialog, row.rotates ? "edLinearUnit" : "edUnit"), "Second");
          MakeShift(dialog, name);
        });
    shifts->Select(nullptr, 0, false, nullptr, 0);
    EXPECT_EQ(Record(kBursaWolfForm, {"TYPE", "TX", "RX", "S", "SCALE_UNIT_AUTOKEY"}), row.stored);
  }
}

TEST_F(DatumEdit, AShiftKeepsItsTypeAndWhatItsDialogDoesNotShow) {
  const std::pair<const FormDescription*, const char*> rows[] = {{&kMolodenskyForm, "1"},
                                                                 {&kBursaWolfForm, "3"}};
  for (const auto& [form, type] : rows) {
    AddValid(kBursaWolfForm, "Seven", {{"TYPE", type}});
    EXPECT_TRUE(Change(*form, Save));
    EXPECT_EQ(Record(*form, {"TX", "RX", "S", "SCALE_UNIT_AUTOKEY", "TYPE"}),
              std::string("TX=old TX RX=old RX S=old S SCALE_UNIT_AUTOKEY=1 TYPE=") + type);
  }
}

TEST_F(DatumEdit, InSimpleModeADatumMakesAndEditsItsOwnShift) {
  database_.data->DialogMode = kSimpleMode;
  UseLast(kDatumShift);
  UseLast(kEllipsoid);
  ASSERT_TRUE(Make(kDatumForm, [](QWidget& datum) {
    EXPECT_EQ(TextOf(datum, "edDatumShift") + TextOf(datum, "edEllipsoid"), "")
        << "a new datum has none, whatever was used";
    Type(datum, "edName", "Simple");
    Open<TformQvRfSelector>(datum, "btnDatumShift", Cancel);
    EXPECT_EQ(TextOf(datum, "edDatumShift"), "") << "no type was chosen";
    {
      ScreenUser user;
      user.In<TformQvRfSelector>(ChooseType("shift 1")).In<TformQvRfEdit>([](QWidget& shift) {
        MakeShift(shift, "Own shift");
      });
      Click(datum, "btnDatumShift");
    }
    EXPECT_TRUE(datum.isVisible());
    EXPECT_EQ(TextOf(datum, "edDatumShift"), "Own shift");
    Choose(datum, "btnEllipsoid");
    Save(datum);
  }));
  const int own = KeyOf(kDatumShift, "Own shift");
  EXPECT_EQ(TextOfField(kDatumForm, "DATUM_SHIFT_AUTOKEY"), std::to_string(own));
  EXPECT_TRUE(Change(kDatumForm, [this](QWidget& datum) {
    Table(kMolodenskyForm).First();
    Open<TformQvRfEdit>(datum, "btnDatumShift", [](QWidget& shift) {
      EXPECT_EQ(TextOf(shift, "edName"), "Own shift");
      Type(shift, "edName", "Better shift");
      Save(shift);
    });
    EXPECT_EQ(TextOf(datum, "edDatumShift"), "Better shift");
    Save(datum);
  }));
  EXPECT_EQ(TextOfField(kDatumForm, "DATUM_SHIFT_AUTOKEY"), std::to_string(own));
  EXPECT_EQ(KeyOf(kDatumShift, "Better shift"), own);
}

}  // namespace
}  // namespace refframe_tests
