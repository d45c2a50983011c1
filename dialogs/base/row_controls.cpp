#include "dialogs/base/row_controls.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSplitter>
#include <QStylePainter>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/text/text.h"
#include "platform/widgets/limited_text.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::LimitedLine;
using QvPlatform::LimitedMemo;
using QvPlatform::Translated;

namespace {

constexpr char kChooseCaption[] = "...";
constexpr char kMarkSuffix[] = "Theirs";

template <typename Widget>
Widget* Named(Widget* widget, const char* name) {
  widget->setObjectName(QString::fromLatin1(name));
  return widget;
}

/// A list whose field takes a background plainly. Styles paint a list as a button, and shade that
/// until a colour is no longer what it was.
class PlainList final : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void paintEvent(QPaintEvent* event) override {
    if (!isEnabled() || !testAttribute(Qt::WA_SetPalette)) return QComboBox::paintEvent(event);
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.palette = parentWidget()->palette();
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    option.palette = palette();
    painter.fillRect(
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this),
        palette().base());
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
  }
};

bool IsBox(RowKind kind) {
  return kind == RowKind::kBox || kind == RowKind::kColumn;
}

}  // namespace

QString TipOf(const QString& text) {
  return text.isEmpty() ? QString() : QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped());
}

void SetBackground(QWidget* control, const QColor& colour) {
  if (!colour.isValid()) {
    control->setPalette(QPalette());
    return;
  }
  constexpr int kMiddleGrey = 128;
  const QColor text = qGray(colour.rgb()) < kMiddleGrey ? Qt::white : Qt::black;
  QPalette palette = control->palette();
  // Lists are painted as buttons in some styles, and as fields in others.
  palette.setColor(QPalette::Base, colour);
  palette.setColor(QPalette::Button, colour);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::ButtonText, text);
  control->setPalette(palette);
}

RowControls::RowControls(const FormRow& row, QWidget* form) : QObject(form), row_(&row) {
  MakeLead(form);
  MakeControl(form);
  if (row.kind == RowKind::kReference) MakeButton(form);
  if (!IsBox(row.kind) && row.kind != RowKind::kEndColumns) MakeMark(form);
  if (control_ == nullptr) return;
  Named(control_, row.control);
  if (auto* label = qobject_cast<QLabel*>(lead_)) label->setBuddy(control_);
  if (!IsBox(row.kind)) control_->setAccessibleName(Translated(row.caption));
}

void RowControls::MakeLead(QWidget* form) {
  if (*row_->lead == 0) return;
  const QString caption = Translated(row_->caption);
  switch (row_->leadKind) {
    case LeadKind::kLabel: {
      auto* label = new QLabel(caption, form);
      label->setTextFormat(Qt::PlainText);
      lead_ = label;
      break;
    }
    case LeadKind::kRadio:
      lead_ = new QRadioButton(caption, form);
      break;
    case LeadKind::kCheck:
      lead_ = new QCheckBox(caption, form);
      break;
  }
  Named(lead_, row_->lead);
}

void RowControls::MakeControl(QWidget* form) {
  switch (row_->kind) {
    case RowKind::kText:
    case RowKind::kNumber:
    case RowKind::kReference: {
      auto* line = new LimitedLine(form);
      line->setReadOnly(row_->kind == RowKind::kReference);
      control_ = line;
      break;
    }
    case RowKind::kMemo:
      control_ = new LimitedMemo(form);
      break;
    case RowKind::kList: {
      auto* list = new PlainList(form);
      for (const char* item : row_->items)
        list->addItem(Translated(item));
      control_ = list;
      break;
    }
    case RowKind::kBox:
      control_ = new QGroupBox(Translated(row_->caption), form);
      break;
    case RowKind::kColumn:
    case RowKind::kPanel:
      control_ = new QWidget(form);
      break;
    default:
      break;
  }
}

void AlignWithText(QWidget* lead, const QPlainTextEdit& memo) {
  const int frame = memo.frameWidth() + static_cast<int>(memo.document()->documentMargin());
  lead->setContentsMargins(0, frame, 0, 0);
}

QPushButton* MakeChoiceButton(QWidget* parent, const char* objectName, const char* caption) {
  auto* button = Named(new QPushButton(QString::fromLatin1(kChooseCaption), parent), objectName);
  // The toolkit's least width is meant for words.
  button->setFixedWidth(button->fontMetrics().horizontalAdvance(kChooseCaption) +
                        button->sizeHint().height());
  const QString tip = Translated("Choose: %1").arg(Translated(caption));
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  return button;
}

void RowControls::MakeButton(QWidget* form) {
  button_ = MakeChoiceButton(form, row_->button, row_->caption);
}

// A line that a panel places has no room beside it, and bears its mark inside.
void RowControls::MakeMark(QWidget* form) {
  const QString name =
      QString::fromLatin1(*row_->control != 0 ? row_->control : row_->lead) + kMarkSuffix;
  if (row_->inPanel) {
    const QIcon icon = form->style()->standardIcon(QStyle::SP_MessageBoxWarning);
    markInside_ = Line()->addAction(icon, QLineEdit::TrailingPosition);
    markInside_->setObjectName(name);
    markInside_->setVisible(false);
    connect(markInside_, &QAction::triggered, this, &RowControls::TheirsWanted);
    return;
  }
  mark_ = new QToolButton(form);
  mark_->setObjectName(name);
  mark_->setText(QStringLiteral("\u2260 ") + Translated("Theirs"));
  mark_->hide();
  connect(mark_, &QToolButton::clicked, this, &RowControls::TheirsWanted);
}

void RowControls::ShowTheirs(const QString& value) {
  const QString text = Translated("Another user has changed this to: %1").arg(value) +
                       QLatin1Char('\n') + Translated("Click to take it over.");
  if (mark_ != nullptr) {
    mark_->setToolTip(TipOf(text));
    mark_->setAccessibleName(text);
    mark_->show();
  }
  if (markInside_ != nullptr) {
    markInside_->setToolTip(TipOf(text));
    markInside_->setText(text);
    markInside_->setVisible(true);
  }
}

void RowControls::ClearTheirs() {
  if (mark_ != nullptr) mark_->hide();
  if (markInside_ != nullptr) markInside_->setVisible(false);
}

RowState RowControls::State() const {
  RowState state;
  state.checked = LeadButton() != nullptr && LeadButton()->isChecked();
  if (Line() != nullptr) state.text = Line()->Text();
  if (const auto* memo = qobject_cast<LimitedMemo*>(control_)) state.text = memo->Text();
  if (const QComboBox* list = List()) {
    state.text = QvPlatform::FromQt(list->currentText());
    state.key = list->currentIndex();
  }
  return state;
}

void RowControls::Put(const RowState& state) {
  if (Line() != nullptr) Line()->SetText(state.text);
  if (row_->kind == RowKind::kReference) SetHint(Line()->text());
  if (auto* memo = qobject_cast<LimitedMemo*>(control_)) memo->SetText(state.text);
  if (QComboBox* list = List()) list->setCurrentIndex(state.key);
}

QAbstractButton* RowControls::LeadButton() const {
  return qobject_cast<QAbstractButton*>(lead_);
}

LimitedLine* RowControls::Line() const {
  return qobject_cast<LimitedLine*>(control_);
}

QComboBox* RowControls::List() const {
  return row_->kind == RowKind::kList ? qobject_cast<QComboBox*>(control_) : nullptr;
}

void RowControls::Show(const FormValue& value) {
  switch (row_->kind) {
    case RowKind::kText:
      Line()->SetText(value.text);
      break;
    case RowKind::kReference:
      Line()->SetText(value.text);
      SetHint(Line()->text());
      break;
    case RowKind::kNumber:
      // A new record has no number yet, not a 0.
      Line()->SetText(value.isNumber ? QvPlatform::DoubleToUserText(value.number) : "");
      break;
    case RowKind::kMemo:
      static_cast<LimitedMemo*>(control_)->SetText(value.text);
      break;
    case RowKind::kList:
      List()->setCurrentIndex(value.key);
      break;
    default:
      break;
  }
}

void RowControls::Read(FormValue* value) const {
  switch (row_->kind) {
    case RowKind::kText:
      value->text = Line()->Text();
      break;
    case RowKind::kNumber:
      value->number = 0;
      value->isNumber = QvPlatform::UserTextToDouble(Line()->Text(), &value->number);
      break;
    case RowKind::kMemo:
      value->text = static_cast<const LimitedMemo*>(control_)->Text();
      break;
    case RowKind::kList:
      value->key = List()->currentIndex();
      break;
    default:
      break;
  }
}

bool RowControls::IsUsed() const {
  const QAbstractButton* button = LeadButton();
  return needed_ && (button == nullptr || button->isChecked());
}

void RowControls::SetNeeded(bool needed) {
  needed_ = needed;
  for (QWidget* widget : {lead_, control_, static_cast<QWidget*>(button_)}) {
    if (widget != nullptr) widget->setEnabled(needed);
  }
  Paint();
}

void RowControls::SetUsable(bool usable) {
  usable_ = usable;
  if (row_->kind == RowKind::kText || row_->kind == RowKind::kNumber) {
    Line()->setReadOnly(!usable);
  } else if (row_->kind == RowKind::kReference) {
    button_->setEnabled(usable);
  } else if (control_ != nullptr) {
    control_->setEnabled(usable);
  }
  Paint();
}

void RowControls::Refuse(const QColor& colour, const QString& reason) {
  refused_ = true;
  errorColour_ = colour;
  control_->setToolTip(TipOf(reason));
  control_->setAccessibleDescription(reason);
  Paint();
}

void RowControls::ClearMark() {
  if (control_ == nullptr) return;
  refused_ = false;
  SetHint(hint_);
  Paint();
}

void RowControls::SetHint(const QString& hint) {
  hint_ = hint;
  if (refused_) return;
  control_->setToolTip(TipOf(hint));
  control_->setAccessibleDescription({});
}

void RowControls::Paint() {
  if (control_ == nullptr || IsBox(row_->kind)) return;
  if (refused_) {
    SetBackground(control_, errorColour_);
  } else if (!usable_ || !needed_) {
    SetBackground(control_, control_->parentWidget()->palette().color(QPalette::Window));
  } else {
    SetBackground(control_, {});
  }
}

void RowControls::SetLimit(int characters) {
  if (LimitedLine* line = Line()) line->SetLimit(characters);
  if (auto* memo = qobject_cast<LimitedMemo*>(control_)) memo->SetLimit(characters);
}

RowLayout::RowLayout(QVBoxLayout* place) : place_(place) {}

void RowLayout::AddColumn(QWidget* column) {
  if (columns_ == nullptr) {
    columns_ = new QHBoxLayout;
    // What belongs to one column stands closer together than the columns do.
    columns_->setSpacing(column->fontMetrics().height());
    place_->addLayout(columns_);
  }
  columns_->addWidget(column, 1);
}

// Boxes share the width as the user wishes.
void RowLayout::AddBox(QWidget* box) {
  if (boxes_ == nullptr) {
    boxes_ = new QSplitter(Qt::Horizontal, box->parentWidget());
    boxes_->setChildrenCollapsible(false);
    place_->addWidget(boxes_);
  }
  boxes_->addWidget(box);
}

void RowLayout::BeginColumn(const RowControls& row) {
  QWidget* box = row.Control();
  row.Row().kind == RowKind::kBox ? AddBox(box) : AddColumn(box);
  auto* inside = new QVBoxLayout(box);
  if (row.Row().kind == RowKind::kColumn) inside->setContentsMargins(0, 0, 0, 0);
  if (row.Lead() != nullptr) inside->addWidget(row.Lead());
  grid_ = new QGridLayout;
  grid_->setColumnStretch(1, 1);
  inside->addLayout(grid_);
  inside->addStretch(1);
}

void RowLayout::EndColumns() {
  columns_ = nullptr;
  boxes_ = nullptr;
  grid_ = nullptr;
}

void RowLayout::Align() {
  for (QGridLayout* grid : wholes_)
    grid->setColumnMinimumWidth(0, leadWidth_);
}

void RowLayout::Add(const RowControls& row) {
  if (IsBox(row.Row().kind)) return BeginColumn(row);
  if (row.Row().kind == RowKind::kEndColumns) return EndColumns();
  if (row.Row().inPanel) return;
  if (grid_ == nullptr) {
    grid_ = new QGridLayout;
    grid_->setColumnStretch(1, 1);
    place_->addLayout(grid_);
    wholes_.push_back(grid_);
  }
  const int line = grid_->rowCount();
  const int stretch = row.Row().stretch;
  const Qt::Alignment top = stretch > 0 ? Qt::AlignTop : Qt::Alignment();
  auto* memo = qobject_cast<QPlainTextEdit*>(row.Control());
  if (memo != nullptr && row.Lead() != nullptr) AlignWithText(row.Lead(), *memo);
  if (row.Lead() != nullptr) {
    // A button takes clicks only where its mark and caption are.
    const Qt::Alignment tight = row.LeadButton() != nullptr ? Qt::AlignLeading : Qt::Alignment();
    grid_->addWidget(row.Lead(), line, 0, top | tight);
    if (columns_ == nullptr && boxes_ == nullptr)
      leadWidth_ = std::max(leadWidth_, row.Lead()->sizeHint().width());
  }
  if (row.Mark() != nullptr) grid_->addWidget(row.Mark(), line, 3, top);
  if (row.Control() == nullptr) return;
  grid_->addWidget(row.Control(), line, 1, 1, row.Button() == nullptr ? 2 : 1);
  if (row.Button() != nullptr) grid_->addWidget(row.Button(), line, 2);
  grid_->setRowStretch(line, stretch);
  if (stretch > 0) place_->setStretchFactor(grid_, 1);
}

}  // namespace QvRefSystem
