#include "dialogs/edit/unit_edit.h"

#include <QGridLayout>
#include <QLabel>

#include "platform/widgets/limited_text.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

namespace {

QLabel* MakeLabel(QWidget* parent, const char* objectName, const char* text) {
  auto* label = new QLabel(QString::fromLatin1(text), parent);
  label->setObjectName(objectName);
  // A name of a unit is no markup.
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

UnitEdit::UnitEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form,
                   const char* baseUnit)
    : DescribedEdit(owner, chooser, form) {
  BuildEquation(baseUnit);
  for (const char* control : {"edName", "edAbbreviation"}) {
    connect(RowOf(control).Line(), &QLineEdit::editingFinished, this, [this] { ShowShortName(); });
  }
}

void UnitEdit::BuildEquation(const char* baseUnit) {
  QWidget* panel = RowOf("pnlEquation").Control();
  auto* grid = new QGridLayout(panel);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->addWidget(RowOf("edFactorB").Control(), 0, 0);
  grid->addWidget(MakeLabel(panel, "lblEquals", "="), 0, 1);
  grid->addWidget(RowOf("edFactorC").Control(), 0, 2);
  grid->addWidget(MakeLabel(panel, "lblBaseUnitAbbreviation", baseUnit), 1, 0);
  lblThisUnitAbbreviation_ = MakeLabel(panel, "lblThisUnitAbbreviation", "");
  // A long name is no reason to widen the dialog.
  lblThisUnitAbbreviation_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  grid->addWidget(lblThisUnitAbbreviation_, 1, 2);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(2, 1);
}

void UnitEdit::ShowShortName() {
  QString name = RowOf("edAbbreviation").Line()->text().trimmed();
  if (name.isEmpty()) name = RowOf("edName").Line()->text().trimmed();
  lblThisUnitAbbreviation_->setText(name);
  lblThisUnitAbbreviation_->setToolTip(name.toHtmlEscaped());
}

void UnitEdit::OnNewRecord() {
  ShowShortName();
  SetFactorsEnabled(true);
}

void UnitEdit::OnRead() {
  std::string& abbreviation = ValueOf("edAbbreviation").text;
  if (abbreviation.empty()) abbreviation = ValueOf("edName").text;
}

void UnitEdit::SetFactorsEnabled(bool enabled) {
  for (const char* control : {"edFactorB", "edFactorC"})
    RowOf(control).Control()->setEnabled(enabled);
}

void TformQvRfAngularUnitEdit::OnShowRecord() {
  UnitEdit::OnShowRecord();
  SetFactorsEnabled(Processor->DataSet->FieldByName("CODE").AsInteger() == 0);
}

}  // namespace QvRefSystem
