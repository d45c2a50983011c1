#include "dialogs/select/database_manager.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <algorithm>
#include <array>

#include "dialogs/base/guarded.h"
#include "dialogs/base/store_watch.h"
#include "dialogs/select/selectors.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::ToQt;
using QvPlatform::Translated;

namespace {

#define REFFRAME_COUNT(stem, code) +1
constexpr std::size_t kObjectTypes = 0 REFFRAME_OBJECT_TYPES(REFFRAME_COUNT);
#undef REFFRAME_COUNT

// What the database holds, in the order of the list.
constexpr std::array kEntries{
    TObjectType::kReferenceSystemType,
    TObjectType::kReferenceSystem,
    TObjectType::kDatum,
    TObjectType::kEllipsoid,
    TObjectType::kDatumShiftType,
    TObjectType::kDatumShift,
    TObjectType::kPrimeMeridian,
    TObjectType::kLinearUnit,
    TObjectType::kAngularUnit,
    TObjectType::kScaleUnit,
    TObjectType::kMapProjectionType,
    TObjectType::kMapProjection,
    TObjectType::kVerticalReferenceSystem,
};
static_assert(kEntries.size() == kObjectTypes, "the list has all object types");

}  // namespace

TformGeoRefFrameDatabaseManager::TformGeoRefFrameDatabaseManager(QWidget* owner)
    : ModalForm(owner), watch_(StoreWatch::Shared()) {
  watch_->Watch(this);
  setWindowTitle(Translated("Database manager"));
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
  setSizeGripEnabled(false);
  listboxContent = new QListWidget(this);
  listboxContent->setObjectName("listboxContent");
  listboxContent->setAccessibleName(Translated("Object types"));
  listboxContent->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  listboxContent->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  bitbtnEdit = new QPushButton(Translated("&Edit"), this);
  bitbtnEdit->setObjectName("bitbtnEdit");
  bitbtnEdit->setToolTip(Translated("Show and change the objects of this type"));
  bitbtnEdit->setDefault(true);
  bitbtnClose = new QPushButton(Translated("Close"), this);
  bitbtnClose->setObjectName("bitbtnClose");

  auto* column = new QVBoxLayout(this);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(bitbtnEdit);
  buttons->addWidget(bitbtnClose);
  column->addWidget(listboxContent);
  column->addLayout(buttons);
  column->setSizeConstraint(QLayout::SetFixedSize);

  connect(bitbtnEdit, &QPushButton::clicked, this, [this] { bitbtnEditClick(); });
  connect(bitbtnClose, &QPushButton::clicked, this, [this] { bitbtnCloseClick(); });
  // Enter in the list reaches the default button.
  connect(listboxContent, &QListWidget::itemDoubleClicked, this, [this] { bitbtnEditClick(); });
  connect(listboxContent, &QListWidget::itemSelectionChanged, this, [this] { UpdateEditButton(); });
  UpdateEditButton();
}

void TformGeoRefFrameDatabaseManager::Fill(const TQvGeoRefFrameDialogOptions* options) {
  listboxContent->clear();
  if (options != nullptr &&
      (options->DialogMode == kSimpleMode || options->DialogMode == kFullMode)) {
    for (const TObjectType type : kEntries) {
      const TQvRfDataProcessor* processor =
          ProcessorFor(*datamoduleQvRfData, static_cast<int>(type));
      if (processor == nullptr) continue;
      std::string text;
      processor->GetDisplayNames(&text, nullptr);
      auto* entry = new QListWidgetItem(ToQt(text), listboxContent);
      entry->setData(Qt::UserRole, static_cast<int>(type));
    }
  }
  listboxContent->setCurrentRow(0);
  // The whole list shows at once.
  const int frame = 2 * listboxContent->frameWidth();
  const int row = std::max(listboxContent->sizeHintForRow(0), fontMetrics().height());
  listboxContent->setFixedHeight(row * static_cast<int>(kEntries.size()) + frame);
  listboxContent->setMinimumWidth(listboxContent->sizeHintForColumn(0) + frame +
                                  8 * fontMetrics().averageCharWidth());
  UpdateEditButton();
}

TformQvRfSelector* TformGeoRefFrameDatabaseManager::SelectedSelector() {
  const QList<QListWidgetItem*> selected = listboxContent->selectedItems();
  if (selected.isEmpty()) return nullptr;
  return GetSelectorFor(this, selected.constFirst()->data(Qt::UserRole).toInt());
}

void TformGeoRefFrameDatabaseManager::UpdateEditButton() {
  bitbtnEdit->setEnabled(!listboxContent->selectedItems().isEmpty());
}

void TformGeoRefFrameDatabaseManager::bitbtnEditClick() {
  TformQvRfSelector* selector = SelectedSelector();
  if (selector == nullptr) return;
  Guarded(selector->Processor->Data().Ui(), [&] { selector->Browse(0, false, true); });
}

void TformGeoRefFrameDatabaseManager::FormShow(bool first) {
  ModalForm::FormShow(first);
  listboxContent->setFocus();
}

}  // namespace QvRefSystem
