// The shape of an ellipsoid, as its dialog lets it be told.

#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;

constexpr const char* kShapes[] = {"radiobtnB", "radiobtnF", "radiobtnSpheroid"};

class EllipsoidEdit : public EditTest {
 protected:
  /// The radio buttons that are checked, and "locked" if none can be.
  static std::string Shape(const QWidget& dialog) {
    std::string shape;
    bool locked = true;
    for (const char* radio : kShapes) {
      if (IsChecked(dialog, radio)) shape += radio;
      locked = locked && !IsEnabled(dialog, radio);
    }
    return shape + (locked ? " locked" : "");
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
    AddValid(kEllipsoidForm, "Tested",
             {{"USE_F", row.useF}, {"SPHEROID", row.spheroid}, {"B", " 6356752 "}});
    Change(kEllipsoidForm, [&](QWidget& dialog) {
      EXPECT_EQ(Shape(dialog), row.checked);
      const QColor face = dialog.palette().color(QPalette::Window);
      for (const auto& [control, radio] : {std::pair{"edB", "radiobtnB"}, {"edF", "radiobtnF"}}) {
        const bool used = std::string(row.checked) == radio;
        EXPECT_EQ(Child<QLineEdit>(dialog, control).isReadOnly(), !used) << control;
        EXPECT_EQ(IsPainted(dialog, control, face), !used) << control;
      }
      EXPECT_EQ(TextOf(dialog, "edB"), "6356752");
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
      {"click into the field", "edF", "90", "300", "A=100 B=90 F=300 USE_F=1 SPHEROID=0", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    AddValid(kEllipsoidForm, "Tested",
             {{"USE_F", *row.radio == 'e' ? "0" : "1"}, {"B", row.b}, {"F", row.f}});
    const bool saved = Change(kEllipsoidForm, [&](QWidget& dialog) {
      Type(dialog, "edA", "100");
      QTest::mouseClick(&Child(dialog, row.radio), Qt::LeftButton);
      Save(dialog);
      if (!dialog.isVisible()) return;
      EXPECT_EQ(RefusedControls(dialog, kEllipsoidForm), row.refused);
    });
    EXPECT_EQ(saved, *row.stored != 0);
    if (!saved) continue;
    EXPECT_EQ(Record(kEllipsoidForm, {"A", "B", "F", "USE_F", "SPHEROID"}), row.stored);
  }
}

TEST_F(EllipsoidEdit, AmongSpheresANewOneIsASphereAndStaysOne) {
  TformQvRfEllipsoidSelector selector(nullptr, DialogChooser());
  const auto makeMoon = [](QWidget& dialog) {
    EXPECT_EQ(Shape(dialog), "radiobtnSpheroid locked");
    QTest::mouseClick(&Child(dialog, "edB"), Qt::LeftButton);
    EXPECT_EQ(Shape(dialog), "radiobtnSpheroid locked") << "nor by a click into a field";
    Type(dialog, "edName", "Moon");
    Type(dialog, "edA", "1737400");
    Choose(dialog, "btnUnit");
    Save(dialog);
  };
  ScreenUser user;
  user.In<TformQvRfSelector>([&](QWidget& list) {
        Open<TformQvRfEdit>(list, "bitbtnNew", makeMoon);
        EXPECT_EQ(MarkedName(list), "Moon");
        Ok(list);
      })
      .In<TformQvRfSelector>([](QWidget& list) {
        Open<TformQvRfEdit>(list, "bitbtnNew", [](QWidget& dialog) {
          EXPECT_EQ(Shape(dialog), "radiobtnB") << "elsewhere as usual";
          EXPECT_TRUE(IsEnabled(dialog, "radiobtnSpheroid"));
          Close(dialog);
        });
        Cancel(list);
      });
  EXPECT_TRUE(selector.SelectSpheres(nullptr, 0, false, nullptr, 0));
  EXPECT_EQ(Record(kEllipsoidForm, {"NAME", "B", "SPHEROID"}), "NAME=Moon B=1737400 SPHEROID=1");
  selector.Select(nullptr, 0, false, nullptr, 0);
}

}  // namespace
}  // namespace refframe_tests
