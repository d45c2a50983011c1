// Map projections: what the tables say of a type, axes, lists in cells, and the rows of values.

#include "processors/map_projection_processor.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;

constexpr int kScaleParameter = 8805;

class MapProjEdit : public EditTest {
 protected:
  MapProjEdit() {
    // The scale factor is chosen from a list.
    SetParameters("PARAM_CODE", kScaleParameter, "KIND", "1");
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
  /// Sets a field of the parameters of the type whose other field has that value.
  void SetParameters(const char* where, int is, const char* field, const char* value) {
    auto& parameters = database_.data->datasetMapProjParam;
    for (parameters.First(); !parameters.Eof(); parameters.Next())
      if (parameters.FieldByName(where).AsInteger() == is) SetField(parameters, field, value);
  }
  static QTableWidget& Grid(const QWidget& dialog) {
    return Child<QTableWidget>(dialog, "strgridProjParam");
  }
  static std::string Cells(const QWidget& dialog) {
    std::string cells;
    for (int row = 0; row < Grid(dialog).rowCount(); ++row)
      cells += Grid(dialog).item(row, 1)->text().toStdString() + "|";
    return cells;
  }
  static std::string AxisNames(const QWidget& dialog) {
    return TextOf(dialog, "edFirstAxisName") + TextOf(dialog, "edSecondAxisName");
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
    for (auto* list : Grid(dialog).viewport()->findChildren<QComboBox*>())
      if (list->isVisible()) return list;
    return nullptr;
  }
  std::string StoredValue(int key, int code) {
    return database_.data->MapProjProcessor->ParameterValue(key, kTransverseMercator, code);
  }
  void StoreValue(int key, int code, const char* value) {
    database_.data->MapProjProcessor->StoreParameterValue(key, kTransverseMercator, code, value,
                                                          false);
  }
  [[nodiscard]] int ValueRows() const { return database_.data->datasetParamValue.RecordCount(); }
};

TEST_F(MapProjEdit, ATypeBringsItsParametersUnitsAndAxes) {
  const int linear = Add(TableId::kLinearUnit, "Used", {{"LAST_USE", 5}});
  const int before = ValueRows();
  ASSERT_TRUE(Make(kMapProjForm, [](QWidget& dialog) {
    EXPECT_EQ(Grid(dialog).rowCount(), 0);
    EXPECT_EQ(
        Which(IsEnabled, dialog, {"edLinearUnit", "btnLinearUnit", "lblLinearUnit", "edScaleUnit"}),
        "");
    Type(dialog, "edFirstAxisName", "overwritten");
    Choose(dialog, "btnProjectionType");
    EXPECT_EQ(TextOf(dialog, "edProjectionType"), "Transverse Mercator");
    EXPECT_EQ(Grid(dialog).rowCount(), 5);
    EXPECT_EQ(Grid(dialog).item(0, 0)->text(), "Latitude of natural origin");
    EXPECT_EQ(AxisNames(dialog), "EN");
    EXPECT_EQ(Child<QComboBox>(dialog, "comboFirstAxisDir").currentText(), "East");
    EXPECT_EQ(TextOf(dialog, "edLinearUnit"), "Used");
    EXPECT_EQ(TextOf(dialog, "edAngularUnit"), "") << "needed, and none was used yet";
    Type(dialog, "edName", "New");
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kMapProjForm), "edAngularUnit edScaleUnit");
    Choose(dialog, "btnAngularUnit");
    Choose(dialog, "btnScaleUnit");
    TypeCell(dialog, 1, "15");
    Save(dialog);
  }));
  EXPECT_EQ(Record(kMapProjForm, {"TYPE", "COORD1_DESC", "COORD2_DESC", "COORD1_SIGN",
                                  "COORD2_SIGN", "SWAP_COORDS", "LINEAR_UNIT_AUTOKEY"}),
            "TYPE=9807 COORD1_DESC=East COORD2_DESC=North COORD1_SIGN=1 COORD2_SIGN=1 "
            "SWAP_COORDS=0 LINEAR_UNIT_AUTOKEY=" +
                std::to_string(linear));
  EXPECT_EQ(ValueRows(), before + 5) << "a row for every parameter, also the empty ones";
  EXPECT_EQ(StoredValue(database_.data->MapProjProcessor->GetCurrentKey(), 8802), "15");
}

TEST_F(MapProjEdit, AUnitThatNoParameterNeedsIsDisabledAndStoredAsNone) {
  SetParameters("UNIT_TYPE", 3, "UNIT_TYPE", "0");
  AddValid(kMapProjForm, "Without scale");
  EXPECT_TRUE(Change(kMapProjForm, [](QWidget& dialog) {
    EXPECT_EQ(TextOf(dialog, "edScaleUnit"), "");
    EXPECT_FALSE(IsEnabled(dialog, "btnScaleUnit"));
    EXPECT_TRUE(IsPainted(dialog, "edScaleUnit", dialog.palette().color(QPalette::Window)));
    Save(dialog);
  }));
  EXPECT_EQ(Record(kMapProjForm, {"LINEAR_UNIT_AUTOKEY", "SCALE_UNIT_AUTOKEY"}),
            "LINEAR_UNIT_AUTOKEY=1 SCALE_UNIT_AUTOKEY=0");
}

// The table of types names east ahead of north in any case.
TEST_F(MapProjEdit, ATypeThatSwapsItsAxesBringsNorthFirst) {
  SetField(database_.data->datasetMapProjType, "SWAP_COORDS", "1");
  SetField(database_.data->datasetMapProjType, "COORD1_SIGN", "-1");
  AddValid(kMapProjForm, "Tested");
  EXPECT_TRUE(Change(kMapProjForm, [](QWidget& dialog) {
    Choose(dialog, "btnProjectionType");
    EXPECT_EQ(AxisNames(dialog), "NE");
    Save(dialog);
  }));
  EXPECT_EQ(Record(kMapProjForm, {"COORD1_DESC", "COORD2_DESC", "SWAP_COORDS"}),
            "COORD1_DESC=North COORD2_DESC=West SWAP_COORDS=1");
}

TEST_F(MapProjEdit, ATypeThatTheTableDoesNotKnowIsKept) {
  AddValid(kMapProjForm, "Tested", {{"TYPE", "1234"}});
  EXPECT_TRUE(Change(kMapProjForm, [](QWidget& dialog) {
    Open<TformQvRfSelector>(dialog, "btnProjectionType", Cancel);
    EXPECT_EQ(TextOf(dialog, "edProjectionType"), "");
    Save(dialog);
  }));
  EXPECT_EQ(Record(kMapProjForm, {"TYPE"}), "TYPE=1234");
}

TEST_F(MapProjEdit, TwoAxesOnOneLineAreRefusedOnBothLists) {
  AddValid(kMapProjForm, "Tested");
  EXPECT_TRUE(Change(kMapProjForm, [](QWidget& dialog) {
    Press(dialog, "comboFirstAxisDir", Qt::Key_Home);  // North
    Press(dialog, "comboSecondAxisDir", Qt::Key_End);
    Press(dialog, "comboSecondAxisDir", Qt::Key_Up);  // South
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kMapProjForm), "comboFirstAxisDir comboSecondAxisDir");
    const QImage image = Child(dialog, "comboFirstAxisDir").grab().toImage();
    for (const int quarter : {1, 3}) {
      EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() * quarter / 4).name(),
                QColor(Qt::red).name())
          << "shaded as a button";
    }
    Press(dialog, "comboSecondAxisDir", Qt::Key_End);  // West
    Save(dialog);
  }));
  EXPECT_EQ(Record(kMapProjForm, {"COORD1_DESC", "COORD1_SIGN", "COORD2_SIGN", "SWAP_COORDS"}),
            "COORD1_DESC=North COORD1_SIGN=1 COORD2_SIGN=-1 SWAP_COORDS=1");
}

TEST_F(MapProjEdit, AChoiceInACellIsCutAndATypedValueIsNot) {
  const int key = AddValid(kMapProjForm, "Tested");
  StoreValue(key, kScaleParameter, "0.9996");
  for (const bool byMouse : {true, false}) {
    EXPECT_TRUE(Change(kMapProjForm, [&](QWidget& dialog) {
      QTableWidget& grid = Grid(dialog);
      const QRect cell = grid.visualItemRect(grid.item(2, 1));
      EXPECT_EQ(Cells(dialog), byMouse ? "||0.9996|||" : "||1(mine)|||");
      if (byMouse) {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, cell.center());
      } else {
        grid.setCurrentCell(2, 1);
        QTest::keyClick(&grid, Qt::Key_Return);
      }
      QComboBox* list = ShownList(dialog);
      ASSERT_NE(list, nullptr);
      EXPECT_EQ(list->geometry(), cell);
      EXPECT_EQ(list->currentIndex(), byMouse ? 0 : -1) << "the value that stands is selected";
      list->hidePopup();
      list->setCurrentIndex(0);
      QTest::keyClick(list, Qt::Key_Down);
      EXPECT_EQ(Cells(dialog), "||1|||");
      EXPECT_EQ(ShownList(dialog), nullptr);
      TypeCell(dialog, 2, "1(mine)");
      EXPECT_TRUE(dialog.isVisible()) << "Enter in a cell is not Save";
      Save(dialog);
    }));
    EXPECT_EQ(StoredValue(key, kScaleParameter), "1(mine)");
  }
}

TEST_F(MapProjEdit, ValuesAreReplacedWithTheRecordOrNotAtAll) {
  const int key = AddValid(kMapProjForm, "Tested");
  StoreValue(key, 8801, " 10 ");
  const int before = ValueRows();
  for (int run = 0; run < 2; ++run) {
    EXPECT_TRUE(Change(kMapProjForm, Save));
    EXPECT_EQ(ValueRows(), before + 4) << "one row for each parameter, however often saved";
    EXPECT_EQ(StoredValue(key, 8801), " 10 ");
  }
  // Rows that wait for the key of the record to come.
  StoreValue(key + 1, 8807, "stray");
  const int stray = ValueRows();
  EXPECT_FALSE(Make(kMapProjForm, [](QWidget& dialog) {
    Type(dialog, "edName", "Second");
    for (const char* button :
         {"btnProjectionType", "btnLinearUnit", "btnAngularUnit", "btnScaleUnit"})
      Choose(dialog, button);
    Save(dialog);
    EXPECT_TRUE(dialog.isVisible());
  }));
  EXPECT_EQ(Table(kMapProjForm).RecordCount(), 1) << "nor is the record there";
  EXPECT_EQ(ValueRows(), stray);
  EXPECT_EQ(TextOfField(kMapProjForm, "NAME"), "Tested");
}

TEST_F(MapProjEdit, TheRawTablesComeAndGoByTheirKeys) {
  constexpr auto kBoth = Qt::ControlModifier | Qt::ShiftModifier;
  AddValid(kMapProjForm, "Tested");
  EXPECT_TRUE(Change(kMapProjForm, [&](QWidget& dialog) {
    auto& rows = Child<QAbstractItemView>(dialog, "dbgridParamValue");
    for (const auto& [key, count] :
         {std::pair{Qt::Key_F11, ValueRows()},
          std::pair{Qt::Key_F12, database_.data->datasetMapProjParam.RecordCount()}}) {
      EXPECT_FALSE(rows.isVisible());
      Press(dialog, "strgridProjParam", key, kBoth);
      EXPECT_TRUE(rows.isVisible());
      EXPECT_EQ(rows.geometry(), dialog.rect());
      EXPECT_EQ(rows.model()->rowCount(), count);
      Press(dialog, "dbgridParamValue", Qt::Key_F12, kBoth);
    }
    EXPECT_FALSE(rows.isEnabled());
    Save(dialog);
  }));
}

}  // namespace
}  // namespace refframe_tests
