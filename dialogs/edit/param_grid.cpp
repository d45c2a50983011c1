#include "dialogs/edit/param_grid.h"

#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QStyledItemDelegate>

#include "platform/widgets/limited_text.h"
#include "platform/widgets/qt_text.h"
#include "processors/map_projection_processor.h"

namespace QvRefSystem {

using QvPlatform::FromQt;
using QvPlatform::ToQt;
using QvPlatform::Translated;

namespace {

constexpr int kNameColumn = 0;
constexpr int kValueColumn = 1;
/// Data of the name's cell: the code; of the value's cell: the text as it was filled in.
constexpr int kOwnRole = Qt::UserRole;

class LimitedDelegate final : public QStyledItemDelegate {
 public:
  LimitedDelegate(QObject* parent, int limit) : QStyledItemDelegate(parent), limit_(limit) {}
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                        const QModelIndex&) const override {
    auto* editor = new QvPlatform::LimitedLine(parent);
    editor->SetLimit(limit_);
    editor->setFrame(false);
    return editor;
  }

 private:
  int limit_;
};

// The choice that stands for the current value (null for none) is chosen, the last of several.
void FillParamValueList(QComboBox* list, const std::vector<std::string>& choices,
                        const std::string* current) {
  list->clear();
  int chosen = -1;
  for (const std::string& choice : choices) {
    list->addItem(ToQt(choice));
    if (current != nullptr && ValueOfChoice(choice) == *current) chosen = list->count() - 1;
  }
  list->setCurrentIndex(chosen);
}

bool IsEnter(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

ParamGrid::ParamGrid(QWidget* parent) : QTableWidget(0, 2, parent) {
  setHorizontalHeaderLabels({Translated("Parameter"), Translated("Value")});
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setHighlightSections(false);
  verticalHeader()->hide();
  setTabKeyNavigation(false);
  setSelectionMode(SingleSelection);
  setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
  // A row holds a list with room to spare.
  const QComboBox sample;
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(sample.sizeHint().height());
}

void ParamGrid::SetLimit(int characters) {
  setItemDelegateForColumn(kValueColumn, new LimitedDelegate(this, characters));
}

void ParamGrid::Clear() {
  for (QComboBox* list : lists_)
    delete list;
  lists_.clear();
  setRowCount(0);
}

void ParamGrid::AddRow(int code, std::string_view name, const std::string& value,
                       const std::vector<std::string>& choices) {
  const int row = rowCount();
  setRowCount(row + 1);
  auto* caption = new QTableWidgetItem(ToQt(name));
  caption->setFlags(Qt::ItemIsEnabled);
  caption->setData(kOwnRole, code);
  setItem(row, kNameColumn, caption);
  auto* cell = new QTableWidgetItem(ToQt(value));
  cell->setData(kOwnRole, QByteArray::fromStdString(value));
  setItem(row, kValueColumn, cell);
  if (row == 0) setCurrentCell(row, kValueColumn);

  QComboBox* list = nullptr;
  if (!choices.empty()) {
    list = new QComboBox(viewport());
    list->hide();
    list->setMaxVisibleItems(20);
    list->setAccessibleName(ToQt(name));
    FillParamValueList(list, choices, value.empty() ? nullptr : &value);
    list->installEventFilter(this);
    connect(list, &QComboBox::activated, this, [this, list](int item) { TakeChoice(list, item); });
    cell->setToolTip(Translated("Click or press Enter to choose from the list, or type a value"));
  }
  lists_.push_back(list);
}

void ParamGrid::FitColumns() {
  resizeColumnToContents(kNameColumn);
}

void ParamGrid::CommitEditor() {
  if (state() != EditingState) return;
  if (QWidget* editor = indexWidget(currentIndex())) {
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
  }
}

int ParamGrid::Code(int row) const {
  return item(row, kNameColumn)->data(kOwnRole).toInt();
}

std::string ParamGrid::Name(int row) const {
  return FromQt(item(row, kNameColumn)->text());
}

std::string ParamGrid::Value(int row) const {
  const QTableWidgetItem* cell = item(row, kValueColumn);
  const std::string filled = cell->data(kOwnRole).toByteArray().toStdString();
  return cell->text() == ToQt(filled) ? filled : FromQt(cell->text());
}

QSize ParamGrid::minimumSizeHint() const {
  const int rows = verticalHeader()->defaultSectionSize() * 4;
  return {fontMetrics().averageCharWidth() * 40, rows + horizontalHeader()->sizeHint().height()};
}

// Lists.

QComboBox* ParamGrid::ListAt(int row, int column) const {
  const bool inside = row >= 0 && row < static_cast<int>(lists_.size());
  return inside && column == kValueColumn ? lists_[static_cast<std::size_t>(row)] : nullptr;
}

void ParamGrid::ShowList(int row) {
  QComboBox* list = ListAt(row, kValueColumn);
  setCurrentCell(row, kValueColumn);
  list->setGeometry(visualRect(currentIndex()));
  list->show();
  list->raise();
  list->setFocus(Qt::OtherFocusReason);
  list->showPopup();
}

void ParamGrid::HideList(QComboBox* list) {
  list->hide();
  setFocus(Qt::OtherFocusReason);
}

void ParamGrid::TakeChoice(QComboBox* list, int item) {
  const std::string choice = FromQt(list->itemText(item));
  currentItem()->setText(ToQt(ValueOfChoice(choice)));
  HideList(list);
}

void ParamGrid::mousePressEvent(QMouseEvent* event) {
  QTableWidget::mousePressEvent(event);
  const QModelIndex index = indexAt(event->position().toPoint());
  if (ListAt(index.row(), index.column()) != nullptr) ShowList(index.row());
}

// Enter never leaves the grid: it is not to save a dialog whose value is being typed.
void ParamGrid::keyPressEvent(QKeyEvent* event) {
  if (!IsEnter(event->key()) || state() == EditingState) {
    QTableWidget::keyPressEvent(event);
    return;
  }
  if (ListAt(currentRow(), currentColumn()) != nullptr) {
    ShowList(currentRow());
  } else if (currentIndex().isValid()) {
    edit(currentIndex());
  }
  event->accept();
}

bool ParamGrid::eventFilter(QObject* watched, QEvent* event) {
  auto* list = qobject_cast<QComboBox*>(watched);
  if (list != nullptr && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (IsEnter(key) || key == Qt::Key_Escape) {
      HideList(list);
      return true;
    }
  }
  // The focus goes to the list's own popup and back; anywhere else it leaves the list.
  if (list != nullptr && event->type() == QEvent::FocusOut &&
      static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
    list->hide();
  }
  return QTableWidget::eventFilter(watched, event);
}

}  // namespace QvRefSystem
