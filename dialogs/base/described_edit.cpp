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
    layout.Add(*rows_.emplace_back(std::make_unique<RowControls>(row, this)));
    ConnectRow(*rows_.back());
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
    connect(row.Line(), &QLineEdit::textEdited, this, [this, at] { rows_[at]->ClearMark(); });
  }
  if (row.Button() != nullptr) {
    connect(row.Button(), &QPushButton::clicked, this,
            [this, at] { Act([this, at] { ButtonClick(at); }); });
  }
  connect(&row, &RowControls::TheirsWanted, this,
          [this, at] { Act([this, at] { TakeTheirs(at); }); });
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
  return *rows_.at(QvRefSystem::RowOf(form_, control));
}

void DescribedEdit::FillPanel(std::string_view panel, QWidget* content) {
  auto* inside = new QVBoxLayout(RowOf(panel).Control());
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addWidget(content);
  QWidget* last = nullptr;
  for (const auto& row : rows_) {
    if (row->Row().control == panel) break;
    for (QWidget* stop : {row->Control(), static_cast<QWidget*>(row->Button())}) {
      if (stop != nullptr && stop->focusPolicy() != Qt::NoFocus) last = stop;
    }
  }
  if (last != nullptr) setTabOrder(last, content);
}

QAbstractButton& DescribedEdit::LeadOf(std::string_view lead) {
  for (const auto& row : rows_) {
    if (row->Row().lead == lead && row->LeadButton() != nullptr) return *row->LeadButton();
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
  for (const auto& row : rows_) {
    if (row->LeadButton() != nullptr) row->SetUsable(row->LeadButton()->isChecked());
  }
  OnLeads();
}

// Filling and running.

bool DescribedEdit::EditRecord() {
  BeginRun(Processor->GetCurrentKey());
  record_.Load();
  BeginFilled();
  ShowRecord();
  before_ = TakeState();
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

void DescribedEdit::ShowRecord() {
  ShowValues();
  // An object that refers to one of its own table has left the cursor there.
  Processor->LocateKey(Key);
  OnShowRecord();
}

void DescribedEdit::BeginFilled() {
  ShowValues();
  bitbtnSave_->setToolTip({});
  for (const auto& row : rows_)
    row->ClearMark();
  ClearMarks();
  UpdateLeads();
}

void DescribedEdit::ShowValues() {
  for (std::size_t at = 0; at < rows_.size(); ++at)
    rows_[at]->Show(record_.At(at));
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
  rows_[row]->ClearMark();
  const bool chosen = Choose(form_.rows[row]);
  if (chosen) record_.TakeCurrent(row);
  // Further down an object may have been renamed or removed.
  record_.RefreshReferences();
  ShowReferences();
  if (chosen) OnChosen(form_.rows[row]);
}

void DescribedEdit::ShowReferences() {
  for (std::size_t at = 0; at < rows_.size(); ++at) {
    if (form_.rows[at].kind == RowKind::kReference) rows_[at]->Show(record_.At(at));
  }
}

// The marks of those that the lead has a say in are out of date.
void DescribedEdit::LeadClick(std::size_t row) {
  const int choice = form_.rows[row].choice;
  for (std::size_t at = 0; at < rows_.size(); ++at) {
    if (at == row || (choice != 0 && form_.rows[at].choice == choice)) rows_[at]->ClearMark();
  }
  UpdateLeads();
}

// Checking and storing.

void DescribedEdit::ReadControls() {
  for (std::size_t at = 0; at < rows_.size(); ++at)
    rows_[at]->Read(&record_.At(at));
  OnRead();
}

bool DescribedEdit::CheckRow(std::size_t row) {
  rows_[row]->ClearMark();
  if (!rows_[row]->IsUsed()) return true;
  const std::optional<FormRefusal> refusal = record_.Check(row);
  if (refusal) rows_[row]->Refuse(ErrorColour, ReasonOf(*refusal));
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
  if (Key != 0) Processor->LocateKey(Key);
  ReadControls();
  return CheckRows() && Write();
}

std::optional<bool> DescribedEdit::Store() {
  FormRecord::Extras extras;
  extras.fields = [this](QvPlatform::TQvDataSet& dataSet) { WriteMore(dataSet); };
  extras.tables = TablesBeside();
  if (!extras.tables.empty()) extras.beside = [this](int key) { StoreBeside(key); };
  try {
    Key = record_.Store(EditMode == 0, extras);
    return std::nullopt;
  } catch (const FormConflict& conflict) {
    return conflict.IsRemoved();
  }
}

bool DescribedEdit::Write() {
  try {
    while (const std::optional<bool> removed = Store()) {
      if (!SettleConflict(*removed)) return false;
    }
    return true;
  } catch (const std::exception& error) {
    ShowReferences();
    TellNotSaved(bitbtnSave_, ToQt(error.what()));
    return false;
  }
}

// What somebody else has stored meanwhile.

FormState DescribedEdit::TakeState() {
  FormState state;
  for (std::size_t at = 0; at < rows_.size(); ++at) {
    RowState row = rows_[at]->State();
    if (form_.rows[at].kind == RowKind::kReference) row.key = record_.At(at).key;
    state.rows.push_back(std::move(row));
  }
  state.beside = BesideTexts();
  return state;
}

void DescribedEdit::PutRow(std::size_t row, const RowState& state) {
  if (form_.rows[row].kind == RowKind::kReference) {
    record_.At(row).key = state.key;
    record_.At(row).text = state.text;
  }
  rows_[row]->Put(state);
}

void DescribedEdit::PutLead(const FormRow& row, bool checked) {
  if (row.leadKind == LeadKind::kCheck) LeadOf(row.lead).setChecked(checked);
  if (row.leadKind == LeadKind::kRadio && checked) SetChoice(row.choice, row.lead);
}

void DescribedEdit::PutState(const FormState& state) {
  for (const auto& [choice, group] : choices_)
    SetChoice(choice, "");
  for (std::size_t at = 0; at < rows_.size(); ++at) {
    PutRow(at, state.rows[at]);
    PutLead(form_.rows[at], state.rows[at].checked);
  }
  ShowBeside(state.beside);
  ReadControls();
  UpdateLeads();
}

// The form shows what is stored for a moment, by the code by which it shows any record.
FormState DescribedEdit::StateOfTheirs(const FormState& mine) {
  setUpdatesEnabled(false);
  Processor->LocateKey(Key);
  record_.LoadAgain();
  ShowRecord();
  FormState theirs = TakeState();
  PutState(mine);
  setUpdatesEnabled(true);
  return theirs;
}

bool DescribedEdit::AskRemoved() {
  const QString removed = Translated("The object has been removed by another user.");
  const bool again =
      form_.makesRecords &&
      Data().Ui().ShowMessage(
          QvPlatform::MessageKind::kWarning,
          QvPlatform::FromQt(removed + QLatin1Char('\n') + Translated("Save it as a new one?")),
          QvPlatform::MessageButtons::kYesNo) == QvPlatform::MessageAnswer::kYes;
  if (!again) {
    TellNotSaved(bitbtnSave_, removed);
    return false;
  }
  BeginRun(0);
  return true;
}

bool DescribedEdit::SettleConflict(bool removed) {
  if (removed) return AskRemoved();
  const FormState mine = TakeState();
  conflict_.emplace(form_.rows, before_, StateOfTheirs(mine), mine);
  ShowMarks();
  const auto answer =
      conflict_->IsSettled()
          ? QvPlatform::ConflictAnswer::kKeepMine
          : Data().Ui().AskConflict(QvPlatform::FromQt(windowTitle()), conflict_->Texts());
  if (answer == QvPlatform::ConflictAnswer::kGoBack) return false;
  record_.Accept();
  before_ = conflict_->Theirs();
  Processor->LocateKey(Key);
  const bool keeps = answer == QvPlatform::ConflictAnswer::kKeepMine;
  keeps ? OnKeepMine() : TakeAllTheirs();
  ClearMarks();
  return keeps;
}

void DescribedEdit::ShowMarks() {
  for (const auto& row : rows_)
    row->ClearTheirs();
  for (const std::size_t at : conflict_->Rows())
    rows_[at]->ShowTheirs(ToQt(conflict_->TheirText(at)));
  if (!conflict_->IsChangedBeside()) return;
  QString texts;
  const auto differing = conflict_->Texts();
  for (std::size_t at = conflict_->Rows().size(); at < differing.size(); ++at)
    texts += QLatin1Char('\n') + ToQt(differing[at].caption + " = " + differing[at].theirs);
  RowOf(BesidePanel()).ShowTheirs(texts);
}

void DescribedEdit::ClearMarks() {
  for (const auto& row : rows_)
    row->ClearTheirs();
  conflict_.reset();
}

void DescribedEdit::Take(const FormRow& row, const RowState& theirs) {
  PutRow(static_cast<std::size_t>(&row - form_.rows.data()), theirs);
  PutLead(row, theirs.checked);
}

void DescribedEdit::TakeTheirs(std::size_t row) {
  if (!conflict_) return;
  const FormRow& spec = form_.rows[row];
  rows_[row]->ClearMark();
  rows_[row]->ClearTheirs();
  if (spec.kind == RowKind::kPanel) {
    TakeBeside();
  } else {
    Take(spec, conflict_->Theirs().rows[row]);
  }
  UpdateLeads();
}

void DescribedEdit::TakeBeside() {
  if (conflict_) ShowBeside(conflict_->MergedBeside());
}

void DescribedEdit::TakeAllTheirs() {
  for (const std::size_t at : conflict_->Rows())
    TakeTheirs(at);
  if (conflict_->IsChangedBeside()) TakeTheirs(QvRefSystem::RowOf(form_, BesidePanel()));
}

// The window.

void DescribedEdit::FormShow(bool first) {
  if (!first) return;
  const QScreen* shown = screen() != nullptr ? screen() : QGuiApplication::primaryScreen();
  const QSize room = shown->availableSize();
  PlaceAndSize({static_cast<int>(room.width() * form_.width),
                static_cast<int>(room.height() * form_.height)});
  for (const auto& row : rows_) {
    if (row->Line() == nullptr || !row->Control()->isEnabled()) continue;
    row->Control()->setFocus(Qt::OtherFocusReason);
    // The toolkit selects the whole text when the window has come up, and scrolls to its end.
    QMetaObject::invokeMethod(
        row->Line(), [line = row->Line()] { line->setCursorPosition(0); }, Qt::QueuedConnection);
    break;
  }
}

bool DescribedEdit::eventFilter(QObject* watched, QEvent* event) {
  const bool entered = event->type() == QEvent::FocusIn &&
                       static_cast<QFocusEvent*>(event)->reason() != Qt::ActiveWindowFocusReason &&
                       static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason;
  const bool pressed = event->type() == QEvent::MouseButtonPress;
  if (entered || pressed) {
    for (const auto& row : rows_) {
      if (row->Control() != watched) continue;
      if (row->Row().enteringClears) row->ClearMark();
      // A click into the field of an unchosen radio button chooses it, so that the user can type.
      QAbstractButton* lead = row->LeadButton();
      if (pressed && row->Row().kind == RowKind::kText && lead != nullptr && !lead->isChecked() &&
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
  for (const auto& row : rows_)
    row->Paint();
}

}  // namespace QvRefSystem
