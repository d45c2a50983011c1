#include "tests/dialogs/edit/edit_dialog_fixture.h"

#include <QPlainTextEdit>

#include "platform/geocore/system_model.h"

namespace refframe_tests {

using QvRefSystem::FormDescription;
using QvRefSystem::FormRow;
using QvRefSystem::RowKind;
using enum QvRefSystem::TObjectType;

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

QvRefSystem::TformQvRfEdit& EditTest::FormOf(const FormDescription& form) {
  QvRefSystem::TformQvRfEdit* dialog =
      QvRefSystem::GetEditForm(&owner_, QvRefSystem::DialogChooser(), form.object, form.type);
  if (dialog == nullptr) throw std::runtime_error(std::string("no dialog: ") + form.caption);
  return *dialog;
}

QvPlatform::TQvDataSet& EditTest::Table(const FormDescription& form) const {
  return *database_.Processor(form.object).DataSet;
}

std::string EditTest::Record(const FormDescription& form,
                             std::initializer_list<const char*> fields) const {
  std::string text;
  for (const char* field : fields) {
    if (!text.empty()) text += " ";
    text += std::string(field) + "=" + Table(form).FieldByName(field).AsString();
  }
  return text;
}

std::string EditTest::TextOfField(const FormDescription& form, const char* field) const {
  return Table(form).FieldByName(field).AsString();
}

int EditTest::AddValid(const FormDescription& form, const std::string& name) {
  QvPlatform::TQvDataSet& table = Table(form);
  if (!form.makesRecords) {
    table.First();
    table.Edit();
    table.FieldByName("FAVOUR").SetInteger(7);
    table.Post();
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
