#include "apps/host/options_dialog.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPixmap>
#include <QPushButton>

#include "database/data_module.h"
#include "platform/widgets/colour.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::Translated;

OptionsDialog::OptionsDialog(const HostOptions& options, QWidget* parent)
    : QDialog(parent), options_(options) {
  setWindowTitle(Translated("Dialog options"));
  auto* form = new QFormLayout(this);
  comboMode_ = new QComboBox(this);
  comboMode_->setObjectName("comboMode");
  comboMode_->addItem(Translated("Simple: choosing only"), kSimpleMode);
  comboMode_->addItem(Translated("Full: choosing and changing"), kFullMode);
  comboMode_->setCurrentIndex(comboMode_->findData(options.dialog.DialogMode));
  btnColour_ = new QPushButton(this);
  btnColour_->setObjectName("btnColour");
  chboxImportExport_ = new QCheckBox(Translated("Show &Import and Export while choosing"), this);
  chboxImportExport_->setObjectName("chboxImportExport");
  chboxImportExport_->setChecked(options.dialog.ShowImportExport);
  chboxRejectGeodetic_ = new QCheckBox(Translated("Reject &geodetic systems"), this);
  chboxRejectGeodetic_->setObjectName("chboxRejectGeodetic");
  chboxRejectGeodetic_->setChecked(options.rejectGeodetic);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  form->addRow(Translated("&Mode"), comboMode_);
  form->addRow(Translated("Colour of &refused input"), btnColour_);
  form->addRow(chboxImportExport_);
  form->addRow(chboxRejectGeodetic_);
  form->addRow(buttons);
  connect(btnColour_, &QPushButton::clicked, this, [this] { ChooseColour(); });
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  ShowColour();
}

HostOptions OptionsDialog::Options() const {
  HostOptions result = options_;
  result.dialog.DialogMode = static_cast<std::int8_t>(comboMode_->currentData().toInt());
  result.dialog.ShowImportExport = chboxImportExport_->isChecked();
  result.rejectGeodetic = chboxRejectGeodetic_->isChecked();
  return result;
}

void OptionsDialog::ChooseColour() {
  const QColor chosen =
      QColorDialog::getColor(QvPlatform::ColourFromBgr(options_.dialog.ErrorColour), this);
  if (!chosen.isValid()) return;
  options_.dialog.ErrorColour = QvPlatform::BgrFromColour(chosen);
  ShowColour();
}

void OptionsDialog::ShowColour() {
  const QColor colour = QvPlatform::ColourFromBgr(options_.dialog.ErrorColour);
  QPixmap sample(btnColour_->iconSize());
  sample.fill(colour);
  btnColour_->setIcon(sample);
  btnColour_->setText(colour.name());
}

}  // namespace QvRefSystem
