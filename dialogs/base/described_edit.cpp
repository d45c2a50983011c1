#include "dialogs/base/described_edit.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QVBoxLayout>
#include <stdexcept>

#include "dialogs/base/guarded.h"
#include "platform/text/text.h"
#include "platform/widgets/limited_text.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::ToQt;
using QvPlatform::Translated;

namespace {

QString ReasonOf(FormRefusal refusal) {
  switch (refusal) {
    case FormRefusal::kEmpty:
      return Translated("This must not be empty");
    case FormRefusal::kNoNumber:
      return Translated("This is not a number; the decimal separator is \"%1\"")
          .arg(ToQt(QvPlatform::DecimalSeparator()));
    case FormRefusal::kZero:
      return Translated("This must not be 0");
    case FormRefusal::kNotChosen:
      return Translated("One must be chosen");
  }
  return {};
}

}  // namespace

DescribedEdit::DescribedEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form)
    : TformQvRfEdit(owner, chooser, form.object), form_(form), record_(*Processor, form) {
  setWindowTitle(Translated(form.caption));
  BuildRows();
}

DescribedEdit::~DescribedEdit() = default;

void DescribedEdit::BuildRows() {
  auto* column = new QVBoxLayout(this);
  auto* place = new QVBoxLayout;
  column->addLayout(place, 1);
  RowLayout layout(place);
  // Tab walks the controls in the order of their making.
  rows_.reserve(form_.rows.size());
  for (const FormRow& row : form_.rows) {
    layout.Add(rows_.emplace_back(row, this));
    ConnectRow(rows_.back());
  }
  layout.Align();
  BuildButtons(column);
}

void DescribedEdit::BuildButtons(QVBoxLayout* place) {
  auto* line = new QHBoxLayout;
  bitbtnSave_ = new QPushButton(Translated("Save"), this);
  bitbtnSave_->setObjectName("bitbtnSave");
  bitbtnSave_->setDefault(true);
  bitbtnClose_ = new QPushButton(Translated("Close"), this);
  bitbtnClose_->setObjectName("bitbtnClose");
  line->addStretch(1);
  line->addWidget(bitbtnSave_);
  line->addWidget(bitbtnClose_);
  place->addLayout(line);
  connect(bitbtnSave_, &QPushButton::clicked, this, [this] { Act([this] { bitbtnSaveClick(); }); });
  connect(bitbtnClose_, &QPushButton::clicked, this, [this] { bitbtnCloseClick(); });
}

void DescribedEdit::ConnectRow(RowControls& row) {
  const std::size_t at = rows_.size() - 1;
  const FormRow& spec = row.Row();
  const bool typed = spec.kind == RowKind::kText || spec.kind == RowKind::kMemo;
  if (typed) row.SetLimit(Processor->DataSet->FieldByName(spec.column).Definition().length);
  if (spec.kind == RowKind::kNumber) {
    row.SetHint(Translated("A number; the decimal separator is \"%1\"")
                    .arg(ToQt(QvPlatform::DecimalSeparator())));
  }
  if (row.Control() != nullptr) row.Control()->installEventFilter(this);
  // A control that is refused while it has the focus is not entered again.
  if (row.Line() != nullptr && spec.enteringClears) {
    connect(row.Line(), &QLineEdit::textEdited, this, [this, at] { rows_[at].ClearMark(); });
  }
  if (row.Button() != nullptr) {
    connect(row.Button(), &QPushButton::clicked, this,
            [this, at] { Act([this, at] { ButtonClick(at); }); });
  }
  if (QAbstractButton* lead = row.LeadButton()) {
    if (spec.leadKind == LeadKind::kRadio) {
      QButtonGroup*& group = choices_[spec.choice];
      if (group == nullptr) group = new QButtonGroup(this);
      group->addButton(lead);
    }
    connect(lead, &QAbstractButton::clicked, this,
            [this, at] { Act([this, at] { LeadClick(at); }); });
  }
}

void DescribedEdit::Act(const std::function<void()>& action) {
  Guarded(Data().Ui(), action);
}

RowControls& DescribedEdit::RowOf(std::string_view control) {
  return rows_.at(QvRefSystem::RowOf(form_, control));
}

void DescribedEdit::FillPanel(std::string_view panel, QWidget* content) {
  auto* inside = new QVBoxLayout(RowOf(panel).Control());
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addWidget(content);
  QWidget* last = nullptr;
  for (const RowControls& row : rows_) {
    if (row.Row().control == panel) break;
    for (QWidget* stop : {row.Control(), static_cast<QWidget*>(row.Button())}) {
      if (stop != nullptr && stop->focusPolicy() != Qt::NoFocus) last = stop;
    }
  }
  if (last != nullptr) setTabOrder(last, content);
}

QAbstractButton& DescribedEdit::LeadOf(std::string_view lead) {
  for (const RowControls& row : rows_) {
    if (row.Row().lead == lead && row.LeadButton() != nullptr) return *row.LeadButton();
  }
  throw std::out_of_range("no radio button or check box " + std::string(lead));
}

void DescribedEdit::SetChoice(int choice, std::string_view lead) {
  QButtonGroup* group = choices_.at(choice);
  group->setExclusive(false);
  for (QAbstractButton* button : group->buttons())
    button->setChecked(button->objectName().toStdString() == lead);
  group->setExclusive(true);
  UpdateLeads();
}

void DescribedEdit::UpdateLeads() {
  for (RowControls& row : rows_) {
    if (row.LeadButton() != nullptr) row.SetUsable(row.LeadButton()->isChecked());
  }
  OnLeads();
}

// Filling and running.

bool DescribedEdit::EditRecord() {
  BeginRun(Processor->GetCurrentKey());
  record_.Load();
  BeginFilled();
  // An object that refers to one of its own table has left the cursor there.
  Processor->LocateKey(Key);
  OnEditRecord();
  return RunEdit();
}

bool DescribedEdit::NewRecord() {
  if (!form_.makesRecords) return false;
  BeginRun(0);
  record_.Clear();
  BeginFilled();
  OnNewRecord();
  return RunEdit();
}

void DescribedEdit::BeginFilled() {
  ShowValues();
  bitbtnSave_->setToolTip({});
  for (RowControls& row : rows_)
    row.ClearMark();
  UpdateLeads();
}

void DescribedEdit::ShowValues() {
  for (std::size_t at = 0; at < rows_.size(); ++at)
    rows_[at].Show(record_.At(at));
}

void DescribedEdit::Show(std::string_view control) {
  RowOf(control).Show(record_.At(control));
}

void DescribedEdit::SetNeeded(std::string_view control, bool needed) {
  if (needed) {
    record_.NeedKey(QvRefSystem::RowOf(form_, control));
  } else {
    record_.At(control) = {};
  }
  RowOf(control).ClearMark();
  RowOf(control).SetNeeded(needed);
  Show(control);
}

// References.

bool DescribedEdit::Choose(const FormRow& row) {
  return ListOf(row.object).Select({});
}

void DescribedEdit::ButtonClick(std::size_t row) {
  rows_[row].ClearMark();
  const bool chosen = Choose(form_.rows[row]);
  if (chosen) record_.TakeCurrent(row);
  // Further down an object may have been renamed or removed.
  record_.RefreshReferences();
  for (std::size_t at = 0; at < rows_.size(); ++at) {
    if (form_.rows[at].kind == RowKind::kReference) rows_[at].Show(record_.At(at));
  }
  if (chosen) OnChosen(form_.rows[row]);
}

// The marks of those that the lead has a say in are out of date.
void DescribedEdit::LeadClick(std::size_t row) {
  const int choice = form_.rows[row].choice;
  for (std::size_t at = 0; at < rows_.size(); ++at) {
    if (at == row || (choice != 0 && form_.rows[at].choice == choice)) rows_[at].ClearMark();
  }
  UpdateLeads();
}

// Checking and storing.

void DescribedEdit::ReadControls() {
  for (std::size_t at = 0; at < rows_.size(); ++at)
    rows_[at].Read(&record_.At(at));
  OnRead();
}

bool DescribedEdit::CheckRow(std::size_t row) {
  rows_[row].ClearMark();
  if (!rows_[row].IsUsed()) return true;
  const std::optional<FormRefusal> refusal = record_.Check(row);
  if (refusal) rows_[row].Refuse(ErrorColour, ReasonOf(*refusal));
  return !refusal;
}

bool DescribedEdit::CheckRow(std::string_view control) {
  return CheckRow(QvRefSystem::RowOf(form_, control));
}

bool DescribedEdit::CheckRows() {
  bool ok = true;
  for (std::size_t at = 0; at < rows_.size(); ++at)
    ok = CheckRow(at) && ok;
  return CheckMore() && ok;
}

void DescribedEdit::Refuse(std::string_view control, const QString& reason, const QColor& colour) {
  RowOf(control).Refuse(colour.isValid() ? colour : ErrorColour, reason);
}

bool DescribedEdit::StoreRecord() {
  const bool located = Key == 0 || Processor->LocateKey(Key);
  ReadControls();
  const bool accepted = CheckRows();
  if (!located) TellNotSaved(bitbtnSave_, Translated("The object has been removed."));
  return accepted && located && Write();
}

bool DescribedEdit::Write() {
  FormRecord::Extras extras;
  extras.fields = [this](QvPlatform::TQvDataSet& dataSet) { WriteMore(dataSet); };
  extras.tables = TablesBeside();
  if (!extras.tables.empty()) extras.beside = [this](int key) { StoreBeside(key); };
  try {
    record_.Store(EditMode == 0, extras);
    return true;
  } catch (const std::exception& error) {
    TellNotSaved(bitbtnSave_, ToQt(error.what()));
    return false;
  }
}

// The window.

void DescribedEdit::FormShow(bool first) {
  if (!first) return;
  const QScreen* shown = screen() != nullptr ? screen() : QGuiApplication::primaryScreen();
  const QSize room = shown->availableSize();
  PlaceAndSize({static_cast<int>(room.width() * form_.width),
                static_cast<int>(room.height() * form_.height)});
  for (const RowControls& row : rows_) {
    if (row.Line() == nullptr || !row.Control()->isEnabled()) continue;
    row.Control()->setFocus(Qt::OtherFocusReason);
    // The toolkit selects the whole text when the window has come up, and scrolls to its end.
    QMetaObject::invokeMethod(
        row.Line(), [line = row.Line()] { line->setCursorPosition(0); }, Qt::QueuedConnection);
    break;
  }
}

bool DescribedEdit::eventFilter(QObject* watched, QEvent* event) {
  const bool entered = event->type() == QEvent::FocusIn &&
                       static_cast<QFocusEvent*>(event)->reason() != Qt::ActiveWindowFocusReason &&
                       static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason;
  const bool pressed = event->type() == QEvent::MouseButtonPress;
  if (entered || pressed) {
    for (RowControls& row : rows_) {
      if (row.Control() != watched) continue;
      if (row.Row().enteringClears) row.ClearMark();
      // A click into the field of an unchosen radio button chooses it, so that the user can type.
      QAbstractButton* lead = row.LeadButton();
      if (pressed && row.Row().kind == RowKind::kText && lead != nullptr && !lead->isChecked() &&
          lead->isEnabled()) {
        lead->click();
      }
    }
  }
  return TformQvRfEdit::eventFilter(watched, event);
}

void DescribedEdit::changeEvent(QEvent* event) {
  TformQvRfEdit::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  for (RowControls& row : rows_)
    row.Paint();
}

}  // namespace QvRefSystem
