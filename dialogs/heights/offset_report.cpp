#include "dialogs/heights/offset_report.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>

#include "assembly/processor_set.h"
#include "dialogs/base/guarded.h"
#include "dialogs/base/row_controls.h"
#include "dialogs/heights/table_raster_view.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::FromQt;
using QvPlatform::ToQt;
using QvPlatform::Translatable;
using QvPlatform::Translated;

namespace {

QGroupBox* MakeBox(QDialog* form, const char* objectName, const char* caption) {
  auto* box = new QGroupBox(Translated(caption), form);
  box->setObjectName(objectName);
  form->layout()->addWidget(box);
  return box;
}

/// A number that cannot be changed, with its unit behind it.
struct NumberRow {
  QLineEdit* edit;
  QLabel* unit;
};

NumberRow MakeNumber(QGridLayout* grid, int row, const char* editName, const char* unitName,
                     const char* accessibleName) {
  QWidget* box = grid->parentWidget();
  auto* edit = new QLineEdit(box);
  edit->setObjectName(editName);
  edit->setReadOnly(true);
  edit->setAccessibleName(Translated(accessibleName));
  auto* unit = new QLabel(box);
  unit->setObjectName(unitName);
  // Units are named by the user: they are never markup.
  unit->setTextFormat(Qt::PlainText);
  grid->addWidget(edit, row, 1);
  grid->addWidget(unit, row, 2);
  return {edit, unit};
}

}  // namespace

TformQvRfOffsetApproximationReport::TformQvRfOffsetApproximationReport(QWidget* owner)
    : ModalForm(owner) {
  setWindowTitle(Translated("Approximation results"));
  new QVBoxLayout(this);
  BuildNumbers();
  BuildInfo();
  BuildButtons();
}

void TformQvRfOffsetApproximationReport::BuildNumbers() {
  auto* offset = new QGridLayout(MakeBox(this, "grboxOffset", Translatable(" Offset value ")));
  const NumberRow value =
      MakeNumber(offset, 0, "edOffsetValue", "lblOffsetUnit", Translatable("Offset value"));
  edOffsetValue = value.edit;
  lblOffsetUnit = value.unit;

  QGroupBox* box = MakeBox(this, "grboxAccuracy", Translatable(" Approximation accuracy "));
  auto* accuracy = new QGridLayout(box);
  const NumberRow rms =
      MakeNumber(accuracy, 0, "edAccuracyRms", "lblAccuracyRmsUnit", Translatable("RMS"));
  edAccuracyRms = rms.edit;
  lblAccuracyRmsUnit = rms.unit;
  const NumberRow max =
      MakeNumber(accuracy, 1, "edAccuracyMax", "lblAccuracyMaxUnit", Translatable("Max"));
  edAccuracyMax = max.edit;
  lblAccuracyMaxUnit = max.unit;
  accuracy->addWidget(new QLabel(Translated("RMS"), box), 0, 0);
  accuracy->addWidget(new QLabel(Translated("Max"), box), 1, 0);

  auto* row = new QHBoxLayout;
  auto* lblAccuracyViewRaster =
      new QLabel(Translated("View approximation errors distribution"), box);
  lblAccuracyViewRaster->setObjectName("lblAccuracyViewRaster");
  btnAccuracyViewRaster = MakeChoiceButton(box, "btnAccuracyViewRaster", "");
  btnAccuracyViewRaster->setAccessibleName(lblAccuracyViewRaster->text());
  btnAccuracyViewRaster->setToolTip(lblAccuracyViewRaster->text());
  btnAccuracyViewRaster->setAutoDefault(false);
  row->addWidget(lblAccuracyViewRaster, 1);
  row->addWidget(btnAccuracyViewRaster);
  accuracy->addLayout(row, 2, 0, 1, 3);
  connect(btnAccuracyViewRaster, &QPushButton::clicked, this,
          [this] { btnAccuracyViewRasterClick(); });
}

void TformQvRfOffsetApproximationReport::BuildInfo() {
  QGroupBox* box = MakeBox(this, "grboxInfo", Translatable(" Information "));
  memoInfoText = new QPlainTextEdit(box);
  memoInfoText->setObjectName("memoInfoText");
  memoInfoText->setAccessibleName(Translated("Information"));
  memoInfoText->setTabChangesFocus(true);
  chboxInfoInsert =
      new QCheckBox(Translated("Add the text to the height system description "), box);
  chboxInfoInsert->setObjectName("chboxInfoInsert");
  auto* column = new QVBoxLayout(box);
  column->addWidget(memoInfoText, 1);
  column->addWidget(chboxInfoInsert);
}

void TformQvRfOffsetApproximationReport::BuildButtons() {
  btnAccept = new QPushButton(Translated("Accept"), this);
  btnAccept->setObjectName("btnAccept");
  btnReject = new QPushButton(Translated("Reject"), this);
  btnReject->setObjectName("btnReject");
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(btnAccept);
  row->addWidget(btnReject);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  btnAccept->setDefault(true);
  connect(btnAccept, &QPushButton::clicked, this, &QDialog::accept);
  connect(btnReject, &QPushButton::clicked, this, &QDialog::reject);
}

bool TformQvRfOffsetApproximationReport::Run(const std::string& offset,
                                             const std::string& unitLabel, std::string* text,
                                             TShellReferenceSystem* target, THeightTable* errors,
                                             const std::string& max, const std::string& rms) {
  return Run({.Offset = offset,
              .UnitLabel = unitLabel,
              .Max = max,
              .Rms = rms,
              .Target = target,
              .Errors = errors},
             text);
}

bool TformQvRfOffsetApproximationReport::Run(const OffsetApproximation& result, std::string* text) {
  const QScopedValueRollback shown(result_, &result);
  ShowResult(*text);
  const bool accepted = RunModal() == QDialog::Accepted;
  *text = accepted && chboxInfoInsert->isChecked() ? FromQt(memoInfoText->toPlainText())
                                                   : std::string();
  return accepted;
}

void TformQvRfOffsetApproximationReport::ShowResult(const std::string& source) {
  edOffsetValue->setText(ToQt(result_->Offset));
  edAccuracyRms->setText(ToQt(result_->Rms));
  edAccuracyMax->setText(ToQt(result_->Max));
  const QString unit = ToQt(result_->UnitLabel);
  for (QLabel* label : {lblOffsetUnit, lblAccuracyRmsUnit, lblAccuracyMaxUnit})
    label->setText(unit);
  const auto error = [&unit](const char* what, const std::string& value) {
    return Translated(what) + QLatin1Char(' ') + ToQt(value) + QLatin1Char(' ') + unit;
  };
  memoInfoText->setPlainText(Translated("Approximation of") + QLatin1Char(' ') + ToQt(source) +
                             QStringLiteral(": ") + error(Translatable("RMS error"), result_->Rms) +
                             QStringLiteral("; ") + error(Translatable("Max error"), result_->Max) +
                             QLatin1Char('.'));
  chboxInfoInsert->setChecked(false);
}

void TformQvRfOffsetApproximationReport::FormShow(bool first) {
  ModalForm::FormShow(first);
  if (first) btnAccept->setFocus();
}

void TformQvRfOffsetApproximationReport::btnAccuracyViewRasterClick() {
  Guarded(datamoduleQvRfData->Ui(),
          [this] { ViewHeightTable(this, result_->Errors, result_->Target); });
}

}  // namespace QvRefSystem
