#include "dialogs/select/used_by_list.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <array>

#include "dialogs/base/guarded.h"
#include "dialogs/select/selectors.h"
#include "platform/widgets/fit_columns.h"
#include "platform/widgets/qt_text.h"
#include "platform/widgets/qt_user_interface.h"

namespace QvRefSystem {

using QvPlatform::SystemQText;
using QvPlatform::TextId;
using QvPlatform::ToQt;
using QvPlatform::UsedByAnswer;
using QvPlatform::UsedByRow;

namespace {
constexpr std::array kTitles{TextId::kColumnObjectType, TextId::kColumnName,
                             TextId::kColumnDescription};
}

TformQvRfUsedByList::TformQvRfUsedByList(QWidget* owner) : ModalForm(owner) {
  setWindowTitle(SystemQText(TextId::kObjectList));
  auto* column = new QVBoxLayout(this);
  auto* pnlMessage = new QLabel(SystemQText(TextId::kUsedBy), this);
  pnlMessage->setObjectName("pnlMessage");
  pnlMessage->setWordWrap(true);
  BuildList();
  bitbtnView = new QPushButton(SystemQText(TextId::kViewButton), this);
  bitbtnView->setObjectName("bitbtnView");
  bitbtnClose = new QPushButton(QvPlatform::Translated("Close"), this);
  bitbtnClose->setObjectName("bitbtnClose");
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(bitbtnView);
  buttons->addWidget(bitbtnClose);
  column->addWidget(pnlMessage);
  column->addWidget(strgridList, 1);
  column->addLayout(buttons);
  connect(bitbtnView, &QPushButton::clicked, this, [this] { bitbtnViewClick(); });
  connect(bitbtnClose, &QPushButton::clicked, this,
          [this] { done(static_cast<int>(UsedByAnswer::kClosed)); });
  connect(strgridList, &QTableWidget::cellDoubleClicked, this, [this] {
    if (!bitbtnView->isHidden()) bitbtnViewClick();
  });
  const QSize third = QGuiApplication::primaryScreen()->availableSize() / 3;
  resize(third.expandedTo(sizeHint()));
}

void TformQvRfUsedByList::BuildList() {
  strgridList = new QTableWidget(1, static_cast<int>(kTitles.size()), this);
  strgridList->setObjectName("strgridList");
  strgridList->setSelectionBehavior(QAbstractItemView::SelectRows);
  strgridList->setSelectionMode(QAbstractItemView::SingleSelection);
  strgridList->setEditTriggers(QAbstractItemView::NoEditTriggers);
  strgridList->setTabKeyNavigation(false);
  strgridList->setWordWrap(false);
  strgridList->setAccessibleName(SystemQText(TextId::kObjectList));
  strgridList->horizontalHeader()->setHighlightSections(false);
  strgridList->horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
  strgridList->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  strgridList->verticalHeader()->hide();
}

void TformQvRfUsedByList::BeginList() {
  rows_.clear();
  strgridList->clear();
  strgridList->setRowCount(1);
  QStringList titles;
  for (const TextId id : kTitles)
    titles << SystemQText(id);
  strgridList->setHorizontalHeaderLabels(titles);
}

void TformQvRfUsedByList::AddRow(const UsedByRow& row) {
  rows_.push_back(row);
  const int number = static_cast<int>(rows_.size()) - 1;
  if (strgridList->rowCount() <= number) strgridList->setRowCount(number + 1);
  const std::array texts{&row.typeName, &row.name, &row.description};
  for (int column = 0; column < static_cast<int>(texts.size()); ++column) {
    strgridList->setItem(number, column,
                         new QTableWidgetItem(ToQt(*texts[static_cast<std::size_t>(column)])));
  }
}

UsedByAnswer TformQvRfUsedByList::ShowList(bool viewAllowed) {
  bitbtnView->setVisible(viewAllowed);
  (viewAllowed ? bitbtnView : bitbtnClose)->setDefault(true);
  strgridList->setCurrentCell(0, 0);
  // However else the run ends, the list was closed.
  return RunModal() == static_cast<int>(UsedByAnswer::kViewed) ? UsedByAnswer::kViewed
                                                               : UsedByAnswer::kClosed;
}

void TformQvRfUsedByList::bitbtnViewClick() {
  Guarded(datamoduleQvRfData->Ui(), [this] { ViewRow(strgridList->currentRow() + 1); });
  done(static_cast<int>(UsedByAnswer::kViewed));
}

void TformQvRfUsedByList::ViewRow(int row) {
  if (row < 1 || row > static_cast<int>(rows_.size())) return;
  const UsedByRow& user = rows_[static_cast<std::size_t>(row - 1)];
  TformQvRfSelector* selector = GetSelectorFor(this, user.objectType);
  if (selector == nullptr) return;
  const QvPlatform::HiddenForm hidden(Owner());
  selector->Browse(user.key, true, false);
}

void TformQvRfUsedByList::FormShow(bool first) {
  ModalForm::FormShow(first);
  layout()->activate();
  QvPlatform::FitColumns(*strgridList);
  if (first) strgridList->setFocus();
}

void TformQvRfUsedByList::resizeEvent(QResizeEvent* event) {
  ModalForm::resizeEvent(event);
  QvPlatform::FitColumns(*strgridList);
}

TformQvRfUsedByList* GetUsedByListFor(QvPlatform::TComponent* owner) {
  auto* form = dynamic_cast<QWidget*>(owner);
  if (form != nullptr) {
    for (QObject* child : form->children()) {
      if (auto* list = dynamic_cast<TformQvRfUsedByList*>(child)) return list;
    }
  }
  return new TformQvRfUsedByList(form);
}

std::unique_ptr<QvPlatform::TUserInterface> MakeDialogInterface() {
  return std::make_unique<QvPlatform::QtUserInterface>(
      [](QvPlatform::TComponent* owner, std::span<const UsedByRow> rows, bool viewAllowed) {
        TformQvRfUsedByList* list = GetUsedByListFor(owner);
        // A list without an owner is this call's own.
        const std::unique_ptr<TformQvRfUsedByList> own(list->Owner() == nullptr ? list : nullptr);
        list->BeginList();
        for (const UsedByRow& row : rows)
          list->AddRow(row);
        return list->ShowList(viewAllowed);
      });
}

}  // namespace QvRefSystem
