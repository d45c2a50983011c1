#include "tests/dialogs/edit/edit_dialog_fixture.h"

#include "assembly/database_check.h"
#include "platform/geocore/system_model.h"

namespace refframe_tests {

using namespace QvRefSystem;
using enum TObjectType;

void SetField(QvPlatform::TQvDataSet& table, const char* field, const std::string& value) {
  table.Edit();
  table.FieldByName(field).SetString(value);
  table.Post();
}

void ChangeElsewhere(const QvPlatform::TQvDataSet& table, const std::string& name,
                     const char* field, const char* value) {
  QvPlatform::TQvDataBuffer buffer;
  buffer.StreamName = table.DataBuff->StreamName;
  QvPlatform::TQvDataSet other(buffer);
  other.Open();
  for (other.First(); other.FieldByName("NAME").AsString() != name;)
    other.Next();
  SetField(other, field, value);
  other.Close();
}

TformQvRfEdit& EditDialogTest::FormOf(const FormDescription& form) {
  TformQvRfEdit* dialog = GetEditForm(&owner_, DialogChooser(), form.object, form.type);
  if (dialog == nullptr) throw std::runtime_error(std::string("no dialog: ") + form.caption);
  return *dialog;
}

bool EditDialogTest::Change(const FormDescription& form, const Act& act) {
  ScreenUser user(In<TformQvRfEdit>(ThenClose(act)));
  return FormOf(form).EditCurrent();
}

bool EditDialogTest::Make(const FormDescription& form, const Act& act) {
  ScreenUser user(In<TformQvRfEdit>(ThenClose(act)));
  return FormOf(form).CreateNew();
}

QvPlatform::TQvDataSet& EditDialogTest::Table(const FormDescription& form) const {
  return *database_.Processor(form.object).DataSet;
}

std::string EditDialogTest::Record(const FormDescription& form,
                                   std::initializer_list<const char*> fields) const {
  std::string text;
  for (const char* field : fields) {
    if (!text.empty()) text += " ";
    text += std::string(field) + "=" + Table(form).FieldByName(field).AsString();
  }
  return text;
}

std::string EditDialogTest::TextOfField(const FormDescription& form, const char* field) const {
  return Table(form).FieldByName(field).AsString();
}

void EditDialogTest::UseLast(TObjectType object, const std::string& name) {
  QvPlatform::TQvDataSet& table = *database_.Processor(object).DataSet;
  table.First();
  if (!name.empty()) database_.Processor(object).LocateKey(KeyOf(object, name));
  SetField(table, "LAST_USE", "45000");
}

void ExpectSound(const TestDatabase& database) {
  const QvRefSystem::CheckReport report = QvRefSystem::CheckDatabase(*database.data);
  EXPECT_EQ(report.errors, 0U) << testing::PrintToString(report.Lines());
}

EditTest::EditTest() {
  for (const auto object :
       {kLinearUnit, kAngularUnit, kScaleUnit, kDatumShift, kPrimeMeridian, kDatum}) {
    const auto table = DescriptorOf(object).table;
    Add(table, "First");
    Add(table, "Second");
  }
  for (const char* name : {"First", "Second"}) {
    Add(TableId::kRefSystem, name, {{"TYPE", static_cast<int>(SystemKind::kGeodetic)}});
  }
}

int EditTest::AddValid(const FormDescription& form, const std::string& name,
                       const std::vector<std::pair<const char*, std::string>>& fields) {
  QvPlatform::TQvDataSet& table = Table(form);
  if (!form.makesRecords) {
    table.First();
    SetField(table, "FAVOUR", "7");
    return database_.Processor(form.object).GetCurrentKey();
  }
  table.Append();
  table.FieldByName("NAME").SetString(name);
  table.FieldByName("FAVOUR").SetInteger(7);
  if (form.type != 0) table.FieldByName("TYPE").SetInteger(form.type);
  for (const FormRow& row : form.rows) {
    if (std::string_view(row.column) == "NAME" || *row.column == 0) continue;
    QvPlatform::TField& field = table.FieldByName(row.column);
    switch (row.kind) {
      case RowKind::kNumber:
        field.SetFloat(2.5);
        break;
      case RowKind::kReference:
        field.SetInteger(row.object == kMapProjectionType
                             ? kTransverseMercator
                             : KeyOf(row.object, row.object == kEllipsoid ? "GRS 1980" : "First"));
        break;
      case RowKind::kList:
        field.SetInteger(0);
        break;
      default:
        field.SetString(std::string("old ") + row.column);
    }
  }
  for (const auto& [field, value] : fields)
    table.FieldByName(field).SetString(value);
  table.Post();
  return database_.Processor(form.object).GetCurrentKey();
}

void Ok(QWidget& dialog) {
  Click(dialog, "bitbtnOk");
}
void Cancel(QWidget& dialog) {
  Click(dialog, "bitbtnCancel");
}
void Save(QWidget& dialog) {
  Click(dialog, "bitbtnSave");
}
void Close(QWidget& dialog) {
  Click(dialog, "bitbtnClose");
}

Act ThenClose(const Act& act) {
  return [act](QWidget& dialog) {
    act(dialog);
    if (dialog.isVisible()) Close(dialog);
  };
}

void Choose(const QWidget& window, const char* button, const char* name) {
  Open<TformQvRfSelector>(window, button, [&](QWidget& list) {
    EXPECT_FALSE(window.isVisible());
    Search(list, name);
    Ok(list);
  });
}

void ChooseLast(QWidget& selector) {
  Press(selector, "dbgridList", Qt::Key_End);
  Ok(selector);
}

void NameFile(const QWidget& window, const char* button, const std::string& path) {
  Open<QFileDialog>(window, button, [&path](QFileDialog& dialog) { TakeFile(dialog, path); });
}

void Check(const QWidget& window, const char* objectName) {
  auto& button = Child<QAbstractButton>(window, objectName);
  EXPECT_TRUE(button.isEnabled()) << objectName;
  QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
  EXPECT_TRUE(button.isChecked()) << objectName;
}

bool IsChecked(const QWidget& window, const char* objectName) {
  return Child<QAbstractButton>(window, objectName).isChecked();
}

void Type(const QWidget& window, const char* objectName, const std::string& text) {
  QWidget& control = Child(window, objectName);
  QTest::mouseClick(&control, Qt::LeftButton);
  QTest::keyClick(&control, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&control, Qt::Key_Delete);
  QTest::keyClicks(&control, QString::fromStdString(text));
}

std::string GridOf(const QWidget& window, const std::string& prefix) {
  std::string grid;
  for (const char* part : kGridParts)
    grid += (part == kGridParts.front() ? "" : " ") + TextOf(window, (prefix + part).c_str());
  return grid;
}

void TypeGrid(const QWidget& window, const std::string& prefix, const GridTexts& texts) {
  for (std::size_t n = 0; n < texts.size(); ++n)
    Type(window, (prefix + kGridParts[n]).c_str(), texts[n]);
}

std::string TipOf(const QWidget& window, const char* objectName) {
  return Child(window, objectName).toolTip().toStdString();
}

bool IsPainted(const QWidget& window, const char* objectName, const QColor& colour) {
  return Child(window, objectName).palette().color(QPalette::Base) == colour;
}

std::string RefusedControls(const QWidget& window, const FormDescription& form) {
  std::string refused;
  for (const FormRow& row : form.rows) {
    if (*row.control == 0 || !IsPainted(window, row.control, Qt::red)) continue;
    if (!refused.empty()) refused += " ";
    refused += row.control;
  }
  return refused;
}

}  // namespace refframe_tests
