// The shape of an ellipsoid, as its dialog lets it be told.

#include <gtest/gtest.h>

#include <QRadioButton>

#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using QvRefSystem::kEllipsoidForm;
using QvRefSystem::TformQvRfEdit;
using QvRefSystem::TformQvRfSelector;

class EllipsoidEdit : public EditTest {
 protected:
  void Store(const std::vector<std::pair<const char*, const char*>>& fields) {
    AddValid(kEllipsoidForm, "Tested");
    Table(kEllipsoidForm).Edit();
    for (const auto& [field, value] : fields)
      Table(kEllipsoidForm).FieldByName(field).SetString(value);
    Table(kEllipsoidForm).Post();
  }
  template <typename Act>
  bool Change(Act act) {
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return FormOf(kEllipsoidForm).EditCurrent();
  }
  static std::string Checked(const QWidget& dialog) {
    std::string checked;
    for (const char* radio : {"radiobtnB", "radiobtnF", "radiobtnSpheroid"}) {
      if (Child<QRadioButton>(dialog, radio).isChecked()) checked += radio;
    }
    return checked;
  }
};

TEST_F(EllipsoidEdit, ShowsTheShapeThatTheRecordTells) {
  const struct {
    const char* useF;
    const char* spheroid;
    const char* checked;
  } rows[] = {{"0", "0", "radiobtnB"},
              {"1", "0", "radiobtnF"},
              {"1", "1", "radiobtnSpheroid"},
              {"0", "1", "radiobtnSpheroid"}};
  for (const auto& row : rows) {
    Store({{"USE_F", row.useF}, {"SPHEROID", row.spheroid}, {"B", " 6356752 "}});
    Change([&](QWidget& dialog) {
      EXPECT_EQ(Checked(dialog), row.checked);
      const QColor face = dialog.palette().color(QPalette::Window);
      for (const auto& [control, radio] : {std::pair{"edB", "radiobtnB"}, {"edF", "radiobtnF"}}) {
        const bool used = std::string(row.checked) == radio;
        EXPECT_EQ(Child<QLineEdit>(dialog, control).isReadOnly(), !used) << control;
        EXPECT_EQ(IsPainted(dialog, control, face), !used) << control;
      }
      EXPECT_EQ(TextOf(dialog, "edB"), "6356752");
      Click(dialog, "bitbtnClose");
    });
    EXPECT_EQ(TextOfField(kEllipsoidForm, "B"), " 6356752 ") << "shown trimmed, kept as it is";
  }
}

// Of the three parameters the one that tells the shape is needed, and the others are left alone.
TEST_F(EllipsoidEdit, StoresTheShapeThatIsChosen) {
  const struct {
    const char* name;
    const char* radio;
    const char* b;
    const char* f;
    const char* stored;  // "" if refused
    const char* refused;
  } rows[] = {
      {"minor axis", "radiobtnB", "90", "x", "A=100 B=90 F=x USE_F=0 SPHEROID=0", ""},
      {"no minor axis", "radiobtnB", "", "300", "", "edB"},
      {"flattening", "radiobtnF", "", "300", "A=100 B= F=300 USE_F=1 SPHEROID=0", ""},
      {"no flattening", "radiobtnF", "90", "", "", "edF"},
      {"sphere", "radiobtnSpheroid", "90", "", "A=100 B=100 F= USE_F=0 SPHEROID=1", ""},
      {"no number", "radiobtnB", "ninety", "", "A=100 B=ninety F= USE_F=0 SPHEROID=0", ""},
  };
  for (const auto& row : rows) {
    Store({{"USE_F", "1"}, {"B", row.b}, {"F", row.f}});
    const bool saved = Change([&](QWidget& dialog) {
      Type(dialog, "edA", "100");
      Click(dialog, row.radio);
      Click(dialog, "bitbtnSave");
      if (!dialog.isVisible()) return;
      EXPECT_EQ(RefusedControls(dialog, kEllipsoidForm), row.refused) << row.name;
      Click(dialog, "bitbtnClose");
    });
    EXPECT_EQ(saved, *row.stored != 0) << row.name;
    if (!saved) continue;
    EXPECT_EQ(Record(kEllipsoidForm, {"A", "B", "F", "USE_F", "SPHEROID"}), row.stored) << row.name;
  }
}

TEST_F(EllipsoidEdit, AClickIntoAFieldChoosesItsParameter) {
  Store({{"USE_F", "0"}, {"F", ""}});
  EXPECT_TRUE(Change([&](QWidget& dialog) {
    Type(dialog, "edF", "298.257");
    EXPECT_EQ(Checked(dialog), "radiobtnF");
    Click(dialog, "bitbtnSave");
  }));
  EXPECT_EQ(Record(kEllipsoidForm, {"F", "USE_F"}), "F=298.257 USE_F=1");
}

TEST_F(EllipsoidEdit, AmongSpheresANewOneIsASphereAndStaysOne) {
  QvRefSystem::TformQvRfEllipsoidSelector selector(nullptr, QvRefSystem::DialogChooser());
  const auto shape = [](QWidget& dialog) {
    EXPECT_EQ(Checked(dialog), "radiobtnSpheroid");
    std::string enabled;
    for (const char* radio : {"radiobtnB", "radiobtnF", "radiobtnSpheroid"})
      enabled += IsEnabled(dialog, radio) ? "1" : "0";
    return enabled;
  };
  ScreenUser user;
  user.In<TformQvRfSelector>([](QWidget& list) {
        Click(list, "bitbtnNew");
        EXPECT_EQ(MarkedName(list), "Moon");
        Click(list, "bitbtnOk");
      })
      .In<TformQvRfEdit>([&](QWidget& dialog) {
        EXPECT_EQ(shape(dialog), "000");
        QTest::mouseClick(&Child(dialog, "edB"), Qt::LeftButton);
        EXPECT_EQ(shape(dialog), "000") << "nor by a click into a field";
        Type(dialog, "edName", "Moon");
        Type(dialog, "edA", "1737400");
        Click(dialog, "btnUnit");
        Click(dialog, "bitbtnSave");
      })
      .In<TformQvRfSelector>([](QWidget& units) { Click(units, "bitbtnOk"); })
      .In<TformQvRfSelector>([](QWidget& list) {
        Click(list, "bitbtnNew");
        Click(list, "bitbtnCancel");
      })
      .In<TformQvRfEdit>([](QWidget& dialog) {
        EXPECT_EQ(Checked(dialog), "radiobtnB") << "elsewhere as usual";
        EXPECT_TRUE(IsEnabled(dialog, "radiobtnSpheroid"));
        Click(dialog, "bitbtnClose");
      });
  EXPECT_TRUE(selector.SelectSpheres(nullptr, 0, false, nullptr, 0));
  EXPECT_EQ(Record(kEllipsoidForm, {"NAME", "B", "SPHEROID"}), "NAME=Moon B=1737400 SPHEROID=1");
  selector.Select(nullptr, 0, false, nullptr, 0);
}

}  // namespace
}  // namespace refframe_tests
