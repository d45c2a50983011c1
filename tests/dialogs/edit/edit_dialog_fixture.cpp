#include "tests/dialogs/edit/edit_dialog_fixture.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QFileDialog>
#include <QPlainTextEdit>

#include "assembly/database_check.h"
#include "platform/geocore/system_model.h"

namespace refframe_tests {

using QvRefSystem::FormDescription;
using QvRefSystem::FormRow;
using QvRefSystem::RowKind;
using enum QvRefSystem::TObjectType;

void SetField(QvPlatform::TQvDataSet& table, const char* field, const std::string& value) {
  table.Edit();
  table.FieldByName(field).SetString(value);
  table.Post();
}

void ChangeElsewhere(const QvPlatform::TQvDataSet& table, const std::string& name) {
  QvPlatform::TQvDataBuffer buffer;
  buffer.StreamName = table.DataBuff->StreamName;
  QvPlatform::TQvDataSet other(buffer);
  other.Open();
  for (other.First(); other.FieldByName("NAME").AsString() != name;)
    other.Next();
  SetField(other, "DESCRIPTION", "theirs");
  other.Close();
}

QvRefSystem::TformQvRfEdit& EditDialogTest::FormOf(const FormDescription& form) {
  QvRefSystem::TformQvRfEdit* dialog =
      QvRefSystem::GetEditForm(&owner_, QvRefSystem::DialogChooser(), form.object, form.type);
  if (dialog == nullptr) throw std::runtime_error(std::string("no dialog: ") + form.caption);
  return *dialog;
}

bool EditDialogTest::Change(const FormDescription& form, const Act& act) {
  ScreenUser user;
  user.In<QvRefSystem::TformQvRfEdit>(act);
  return FormOf(form).EditCurrent();
}

bool EditDialogTest::Make(const FormDescription& form, const Act& act) {
  ScreenUser user;
  user.In<QvRefSystem::TformQvRfEdit>(act);
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

void EditDialogTest::UseLast(QvRefSystem::TObjectType object, const std::string& name) {
  QvPlatform::TQvDataSet& table = *database_.Processor(object).DataSet;
  table.First();
  if (!name.empty()) database_.Processor(object).LocateKey(KeyOf(object, name));
  SetField(table, "LAST_USE", "45000");
}

void ExpectSound(const TestDatabase& database) {
  std::vector<std::string> findings;
  EXPECT_TRUE(QvRefSystem::CheckDatabase(*database.data, &findings));
  EXPECT_THAT(findings, testing::IsEmpty());
}

EditTest::EditTest() {
  for (const auto object :
       {kLinearUnit, kAngularUnit, kScaleUnit, kDatumShift, kPrimeMeridian, kDatum}) {
    const auto table = QvRefSystem::DescriptorOf(object).table;
    Add(table, "First");
    Add(table, "Second");
  }
  for (const char* name : {"First", "Second"}) {
    Add(QvRefSystem::TableId::kRefSystem, name,
        {{"TYPE", static_cast<int>(QvRefSystem::SystemKind::kGeodetic)}});
  }
}

int EditTest::AddValid(const FormDescription& form, const std::string& name) {
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

void Choose(const QWidget& window, const char* button, const char* name) {
  Open<QvRefSystem::TformQvRfSelector>(window, button, [&](QWidget& list) {
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
  Open<QFileDialog>(window, button, [&path](QFileDialog& dialog) {
    Child<QLineEdit>(dialog, "fileNameEdit").setText(QString::fromStdString(path));
    QMetaObject::invokeMethod(&dialog, "accept");
  });
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

std::string TextOf(const QWidget& window, const char* objectName) {
  QWidget& control = Child(window, objectName);
  const char* property = qobject_cast<QPlainTextEdit*>(&control) != nullptr ? "plainText" : "text";
  return control.property(property).toString().toStdString();
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
