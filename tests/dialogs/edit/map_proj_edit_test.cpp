// Map projections: what the tables say of a type, axes, lists in cells, and the rows of values.

#include <gtest/gtest.h>

#include <QComboBox>
#include <QTableWidget>

#include "forms/axis_directions.h"
#include "processors/map_projection_processor.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using QvRefSystem::AxisDirection;
using QvRefSystem::kMapProjForm;
using QvRefSystem::TformQvRfEdit;
using QvRefSystem::TformQvRfSelector;
using enum QvRefSystem::TObjectType;

constexpr int kScaleParameter = 8805;

class MapProjEdit : public EditTest {
 protected:
  MapProjEdit() {
    // The scale factor is chosen from a list.
    auto& parameters = database_.data->datasetMapProjParam;
    for (parameters.First(); !parameters.Eof(); parameters.Next()) {
      if (parameters.FieldByName("PARAM_CODE").AsInteger() != kScaleParameter) continue;
      parameters.Edit();
      parameters.FieldByName("KIND").SetInteger(1);
      parameters.Post();
    }
    auto& values = database_.data->datasetSystemValue;
    for (const char* value : {"0.9996(UTM)", "1(Gauss-Krueger)"}) {
      values.Append();
      values.FieldByName("OWNER_ID").SetInteger(kTransverseMercator);
      values.FieldByName("PARAM_TAG").SetInteger(2);
      values.FieldByName("PARAM_GROUP").SetInteger(kScaleParameter);
      values.FieldByName("VALUE").SetString(value);
      values.Post();
    }
  }
  static void ChooseType(QWidget& types) { Click(types, "bitbtnOk"); }
  static QTableWidget& Grid(const QWidget& dialog) {
    return Child<QTableWidget>(dialog, "strgridProjParam");
  }
  static std::string Cells(const QWidget& dialog) {
    std::string cells;
    for (int row = 0; row < Grid(dialog).rowCount(); ++row)
      cells += Grid(dialog).item(row, 1)->text().toStdString() + "|";
    return cells;
  }
  /// Types a value into the grid's cell by the keyboard.
  static void TypeCell(const QWidget& dialog, int row, const char* text) {
    Grid(dialog).setCurrentCell(row, 1);
    QTest::keyClick(&Grid(dialog), Qt::Key_F2);
    QWidget* editor = Grid(dialog).viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
  }
  static QComboBox* ShownList(const QWidget& dialog) {
    for (auto* list : Grid(dialog).viewport()->findChildren<QComboBox*>()) {
      if (list->isVisible()) return list;
    }
    return nullptr;
  }
  std::string StoredValue(int key, int code) {
    return database_.data->MapProjProcessor->ParameterValue(key, kTransverseMercator, code);
  }
  [[nodiscard]] int ValueRows() const { return database_.data->datasetParamValue.RecordCount(); }
};

TEST_F(MapProjEdit, AxesAreSignsAndASwap) {
  using enum AxisDirection;
  const struct {
    QvRefSystem::AxisDirections axes;
    QvRefSystem::AxisSigns signs;
  } rows[] = {{{kNorth, kEast}, {1, 1, 1}},  {{kSouth, kWest}, {-1, -1, 1}},
              {{kEast, kNorth}, {1, 1, 0}},  {{kWest, kSouth}, {-1, -1, 0}},
              {{kNorth, kWest}, {1, -1, 1}}, {{kEast, kSouth}, {1, -1, 0}}};
  for (const auto& row : rows) {
    EXPECT_EQ(SignsOf(row.axes), row.signs);
    EXPECT_EQ(QvRefSystem::DirectionsOf(row.signs), row.axes);
  }
  EXPECT_EQ(QvRefSystem::DirectionsOf({0, 0, 0}).first, kWest) << "0 counts as negative";
}

TEST_F(MapProjEdit, ATypeBringsItsParametersUnitsAndAxes) {
  const int linear = Add(QvRefSystem::TableId::kLinearUnit, "Used", {{"LAST_USE", 5}});
  ScreenUser user;
  user.In<TformQvRfEdit>([&](QWidget& dialog) {
        EXPECT_EQ(Grid(dialog).rowCount(), 0);
        for (const char* control :
             {"edLinearUnit", "btnLinearUnit", "lblLinearUnit", "edScaleUnit"})
          EXPECT_FALSE(IsEnabled(dialog, control)) << control;
        Type(dialog, "edFirstAxisName", "overwritten");
        Click(dialog, "btnProjectionType");
        EXPECT_EQ(TextOf(dialog, "edProjectionType"), "Transverse Mercator");
        EXPECT_EQ(Grid(dialog).rowCount(), 5);
        EXPECT_EQ(Grid(dialog).item(0, 0)->text(), "Latitude of natural origin");
        EXPECT_EQ(TextOf(dialog, "edFirstAxisName") + TextOf(dialog, "edSecondAxisName"), "EN");
        EXPECT_EQ(Child<QComboBox>(dialog, "comboFirstAxisDir").currentText(), "East");
        EXPECT_EQ(TextOf(dialog, "edLinearUnit"), "Used");
        EXPECT_EQ(TextOf(dialog, "edAngularUnit"), "") << "needed, and none was used yet";
        Type(dialog, "edName", "New");
        Click(dialog, "bitbtnSave");
        EXPECT_EQ(RefusedControls(dialog, kMapProjForm), "edAngularUnit edScaleUnit");
        Click(dialog, "btnAngularUnit");
        Click(dialog, "btnScaleUnit");
        TypeCell(dialog, 1, "15");
        Click(dialog, "bitbtnSave");
      })
      .In<TformQvRfSelector>(&ChooseType)
      .In<TformQvRfSelector>([](QWidget& units) { Click(units, "bitbtnOk"); })
      .In<TformQvRfSelector>([](QWidget& units) { Click(units, "bitbtnOk"); });
  const int before = ValueRows();
  ASSERT_TRUE(FormOf(kMapProjForm).CreateNew());
  EXPECT_EQ(Record(kMapProjForm, {"TYPE", "COORD1_DESC", "COORD2_DESC", "COORD1_SIGN",
                                  "COORD2_SIGN", "SWAP_COORDS"}),
            "TYPE=9807 COORD1_DESC=East COORD2_DESC=North COORD1_SIGN=1 COORD2_SIGN=1 "
            "SWAP_COORDS=0");
  EXPECT_EQ(Table(kMapProjForm).FieldByName("LINEAR_UNIT_AUTOKEY").AsInteger(), linear);
  EXPECT_EQ(ValueRows(), before + 5) << "a row for every parameter, also the empty ones";
  EXPECT_EQ(StoredValue(database_.data->MapProjProcessor->GetCurrentKey(), 8802), "15");
}

TEST_F(MapProjEdit, AUnitThatNoParameterNeedsIsDisabledAndStoredAsNone) {
  auto& parameters = database_.data->datasetMapProjParam;
  for (parameters.First(); !parameters.Eof(); parameters.Next()) {
    if (parameters.FieldByName("UNIT_TYPE").AsInteger() != 3) continue;
    parameters.Edit();
    parameters.FieldByName("UNIT_TYPE").SetInteger(0);
    parameters.Post();
  }
  AddValid(kMapProjForm, "Without scale");
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
    EXPECT_EQ(TextOf(dialog, "edScaleUnit"), "");
    EXPECT_FALSE(IsEnabled(dialog, "btnScaleUnit"));
    EXPECT_TRUE(IsPainted(dialog, "edScaleUnit", dialog.palette().color(QPalette::Window)));
    Click(dialog, "bitbtnSave");
  });
  EXPECT_TRUE(FormOf(kMapProjForm).EditCurrent());
  EXPECT_EQ(Record(kMapProjForm, {"LINEAR_UNIT_AUTOKEY", "SCALE_UNIT_AUTOKEY"}),
            "LINEAR_UNIT_AUTOKEY=1 SCALE_UNIT_AUTOKEY=0");
}

// The table of types names east ahead of north in any case.
TEST_F(MapProjEdit, ATypeThatSwapsItsAxesBringsNorthFirst) {
  auto& types = database_.data->datasetMapProjType;
  types.Edit();
  types.FieldByName("SWAP_COORDS").SetInteger(1);
  types.FieldByName("COORD1_SIGN").SetInteger(-1);
  types.Post();
  AddValid(kMapProjForm, "Tested");
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
        Click(dialog, "btnProjectionType");
        EXPECT_EQ(TextOf(dialog, "edFirstAxisName") + TextOf(dialog, "edSecondAxisName"), "NE");
        Click(dialog, "bitbtnSave");
      })
      .In<TformQvRfSelector>(&ChooseType);
  EXPECT_TRUE(FormOf(kMapProjForm).EditCurrent());
  EXPECT_EQ(Record(kMapProjForm, {"COORD1_DESC", "COORD2_DESC", "SWAP_COORDS"}),
            "COORD1_DESC=North COORD2_DESC=West SWAP_COORDS=1");
}

TEST_F(MapProjEdit, ATypeThatTheTableDoesNotKnowIsKept) {
  AddValid(kMapProjForm, "Tested");
  Table(kMapProjForm).Edit();
  Table(kMapProjForm).FieldByName("TYPE").SetInteger(1234);
  Table(kMapProjForm).Post();
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
        Click(dialog, "btnProjectionType");
        EXPECT_EQ(TextOf(dialog, "edProjectionType"), "");
        Type(dialog, "edName", "Renamed");
        Click(dialog, "bitbtnSave");
      })
      .In<TformQvRfSelector>([](QWidget& types) { Click(types, "bitbtnCancel"); });
  EXPECT_TRUE(FormOf(kMapProjForm).EditCurrent());
  EXPECT_EQ(Record(kMapProjForm, {"NAME", "TYPE"}), "NAME=Renamed TYPE=1234");
}

TEST_F(MapProjEdit, TwoAxesOnOneLineAreRefusedOnBothLists) {
  AddValid(kMapProjForm, "Tested");
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
    Press(dialog, "comboFirstAxisDir", Qt::Key_Home);  // North
    Press(dialog, "comboSecondAxisDir", Qt::Key_End);
    Press(dialog, "comboSecondAxisDir", Qt::Key_Up);  // South
    Click(dialog, "bitbtnSave");
    EXPECT_EQ(RefusedControls(dialog, kMapProjForm), "comboFirstAxisDir comboSecondAxisDir");
    for (const char* list : {"comboFirstAxisDir", "comboSecondAxisDir"}) {
      const QImage image = Child(dialog, list).grab().toImage();
      for (const int quarter : {1, 3}) {
        EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() * quarter / 4).name(),
                  QColor(Qt::red).name())
            << list << " is shaded as a button";
      }
    }
    Press(dialog, "comboSecondAxisDir", Qt::Key_End);  // West
    Click(dialog, "bitbtnSave");
  });
  EXPECT_TRUE(FormOf(kMapProjForm).EditCurrent());
  EXPECT_EQ(Record(kMapProjForm, {"COORD1_DESC", "COORD1_SIGN", "COORD2_SIGN", "SWAP_COORDS"}),
            "COORD1_DESC=North COORD1_SIGN=1 COORD2_SIGN=-1 SWAP_COORDS=1");
}

TEST_F(MapProjEdit, AChoiceInACellIsCutAndATypedValueIsNot) {
  const int key = AddValid(kMapProjForm, "Tested");
  database_.data->MapProjProcessor->StoreParameterValue(key, kTransverseMercator, kScaleParameter,
                                                        "0.9996", false);
  for (const bool byMouse : {true, false}) {
    ScreenUser user;
    user.In<TformQvRfEdit>([&](QWidget& dialog) {
      QTableWidget& grid = Grid(dialog);
      EXPECT_EQ(Cells(dialog), byMouse ? "||0.9996|||" : "||1(mine)|||");
      if (byMouse) {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                          grid.visualItemRect(grid.item(2, 1)).center());
      } else {
        grid.setCurrentCell(2, 1);
        QTest::keyClick(&grid, Qt::Key_Return);
      }
      QComboBox* list = ShownList(dialog);
      ASSERT_NE(list, nullptr);
      EXPECT_EQ(list->geometry(), grid.visualItemRect(grid.item(2, 1)));
      EXPECT_EQ(list->currentIndex(), byMouse ? 0 : -1) << "the value that stands is selected";
      list->hidePopup();
      list->setCurrentIndex(0);
      QTest::keyClick(list, Qt::Key_Down);
      EXPECT_EQ(Cells(dialog), "||1|||");
      EXPECT_EQ(ShownList(dialog), nullptr);
      TypeCell(dialog, 2, "1(mine)");
      EXPECT_TRUE(dialog.isVisible()) << "Enter in a cell is not Save";
      Click(dialog, "bitbtnSave");
    });
    EXPECT_TRUE(FormOf(kMapProjForm).EditCurrent());
    EXPECT_EQ(StoredValue(key, kScaleParameter), "1(mine)");
  }
}

TEST_F(MapProjEdit, ValuesAreReplacedWithTheRecordOrNotAtAll) {
  const int key = AddValid(kMapProjForm, "Tested");
  auto& processor = *database_.data->MapProjProcessor;
  processor.StoreParameterValue(key, kTransverseMercator, 8801, " 10 ", false);
  const int before = ValueRows();
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) { Click(dialog, "bitbtnSave"); })
      .In<TformQvRfEdit>([](QWidget& dialog) { Click(dialog, "bitbtnSave"); });
  for (int run = 0; run < 2; ++run) {
    EXPECT_TRUE(FormOf(kMapProjForm).EditCurrent());
    EXPECT_EQ(ValueRows(), before + 4) << "one row for each parameter, however often saved";
    EXPECT_EQ(StoredValue(key, 8801), " 10 ");
  }
  // Rows that wait for the key of the record to come.
  processor.StoreParameterValue(key + 1, kTransverseMercator, 8807, "stray", false);
  const int stray = ValueRows();
  ScreenUser maker;
  maker
      .In<TformQvRfEdit>([&](QWidget& dialog) {
        Type(dialog, "edName", "Second");
        Click(dialog, "btnProjectionType");
        for (const char* button : {"btnLinearUnit", "btnAngularUnit", "btnScaleUnit"})
          Click(dialog, button);
        Click(dialog, "bitbtnSave");
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(TextOf(dialog, "edName"), "Second");
        Click(dialog, "bitbtnClose");
      })
      .In<TformQvRfSelector>(&ChooseType)
      .In<TformQvRfSelector>(&ChooseType)
      .In<TformQvRfSelector>(&ChooseType)
      .In<TformQvRfSelector>(&ChooseType);
  EXPECT_FALSE(FormOf(kMapProjForm).CreateNew());
  EXPECT_EQ(Table(kMapProjForm).RecordCount(), 1) << "nor is the record there";
  EXPECT_EQ(ValueRows(), stray);
  EXPECT_EQ(TextOfField(kMapProjForm, "NAME"), "Tested");
}

TEST_F(MapProjEdit, TheRawTablesComeAndGoByTheirKeys) {
  constexpr auto kBoth = Qt::ControlModifier | Qt::ShiftModifier;
  AddValid(kMapProjForm, "Tested");
  ScreenUser user;
  user.In<TformQvRfEdit>([&](QWidget& dialog) {
    auto& rows = Child<QAbstractItemView>(dialog, "dbgridParamValue");
    const std::pair<Qt::Key, int> views[] = {
        {Qt::Key_F11, database_.data->datasetParamValue.RecordCount()},
        {Qt::Key_F12, database_.data->datasetMapProjParam.RecordCount()}};
    for (const auto& [key, count] : views) {
      EXPECT_FALSE(rows.isVisible());
      Press(dialog, "strgridProjParam", key, kBoth);
      EXPECT_TRUE(rows.isVisible());
      EXPECT_EQ(rows.geometry(), dialog.rect());
      EXPECT_EQ(rows.model()->rowCount(), count);
      Press(dialog, "dbgridParamValue", Qt::Key_F12, kBoth);
    }
    EXPECT_FALSE(rows.isEnabled());
    Click(dialog, "bitbtnSave");
  });
  EXPECT_TRUE(FormOf(kMapProjForm).EditCurrent());
}

}  // namespace
}  // namespace refframe_tests
