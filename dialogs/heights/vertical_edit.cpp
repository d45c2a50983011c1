#include "dialogs/heights/vertical_edit.h"

#include <QButtonGroup>
#include <QFocusEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>

#include "dialogs/base/guarded.h"
#include "dialogs/base/processor_of.h"
#include "dialogs/heights/offset_report.h"
#include "dialogs/heights/recalculate_grid.h"
#include "dialogs/heights/table_raster_view.h"
#include "platform/text/text.h"
#include "platform/ui/texts.h"
#include "platform/widgets/file_dialogs.h"
#include "platform/widgets/limited_text.h"
#include "platform/widgets/qt_text.h"
#include "vertical/linear_unit_texts.h"

namespace QvRefSystem {

using QvPlatform::FromQt;
using QvPlatform::MessageAnswer;
using QvPlatform::MessageButtons;
using QvPlatform::MessageKind;
using QvPlatform::SystemText;
using QvPlatform::TextId;
using QvPlatform::ToQt;
using QvPlatform::Translated;

namespace {

/// The colour of everything that is refused but a missing name and missing data.
const QColor kRefusalColour = Qt::red;

QString NameOf(const TShellReferenceSystem* system) {
  return system == nullptr ? QString() : ToQt(system->Name());
}

}  // namespace

TformQvRfVerticalRefSystemEdit::TformQvRfVerticalRefSystemEdit(QWidget* owner,
                                                               const Chooser& chooser)
    : TformQvRfEdit(owner, chooser, TObjectType::kVerticalReferenceSystem), heights_(Data()) {
  setWindowTitle(Translated("Edit height system"));
  BuildControls(this, ErrorColour);
  const auto limit = [this](const char* field) {
    return Processor->DataSet->FieldByName(field).Definition().length;
  };
  edName->SetLimit(limit("NAME"));
  edAbbreviation->SetLimit(limit("ABBREVIATION"));
  memoDescription->SetLimit(limit("DESCRIPTION"));
  ConnectControls();
  ConnectSources();
}

TformQvRfVerticalRefSystemEdit::~TformQvRfVerticalRefSystemEdit() = default;

void TformQvRfVerticalRefSystemEdit::OnClick(QPushButton* button,
                                             void (TformQvRfVerticalRefSystemEdit::*handler)()) {
  connect(button, &QPushButton::clicked, this,
          [this, handler] { Guarded(Data().Ui(), [this, handler] { (this->*handler)(); }); });
}

void TformQvRfVerticalRefSystemEdit::ConnectControls() {
  using Form = TformQvRfVerticalRefSystemEdit;
  OnClick(Button1, &Form::Button1Click);
  OnClick(btnDataCreate, &Form::btnDataCreateClick);
  OnClick(btnDataView, &Form::btnDataViewClick);
  connect(bitbtnSave, &QPushButton::clicked, this,
          [this] { Guarded(Data().Ui(), [this] { bitbtnSaveClick(); }); });
  connect(bitbtnClose, &QPushButton::clicked, this, [this] { bitbtnCloseClick(); });
  edName->installEventFilter(this);
  connect(edName, &QLineEdit::textEdited, this, [this] { ClearMark(edName); });
  for (int part = 0; part < GridControls::kPartCount; ++part) {
    connect(grid_->Edit(static_cast<GridControls::Part>(part)), &QLineEdit::textEdited, this,
            [this] { heights_.SetGrid(grid_->Extents()); });
  }
}

void TformQvRfVerticalRefSystemEdit::ConnectSources() {
  using Form = TformQvRfVerticalRefSystemEdit;
  OnClick(btnDataSourceParamsVertRefsystem, &Form::btnDataSourceParamsVertRefsystemClick);
  OnClick(btnDataSourceParamsFileName, &Form::btnDataSourceParamsFileNameClick);
  OnClick(btnDataSourceParamsFilePlaneRefsystem, &Form::btnDataSourceParamsFilePlaneRefsystemClick);
  OnClick(btnDataSourceParamsVertOffsetUnits, &Form::btnDataSourceParamsVertOffsetUnitsClick);
  OnClick(btnDataSourceView, &Form::btnDataSourceViewClick);
  connect(sources_, &QButtonGroup::buttonClicked, this, [this] {
    heights_.ChooseKind(CheckedSource());
    ShowSourcePanel();
    UpdateCreateControls();
  });
  edDataSourceParamsVertOffsetValue->installEventFilter(this);
  connect(edDataSourceParamsVertOffsetValue, &QLineEdit::textEdited, this, [this] {
    ClearMark(edDataSourceParamsVertOffsetValue);
    heights_.Outdate();
    // Only leaving the field refuses; a number can be used as soon as it is one.
    (void)heights_.TakeOffset(FromQt(edDataSourceParamsVertOffsetValue->text()));
    UpdateCreateControls();
  });
  connect(edDataSourceParamsVertOffsetValue, &QLineEdit::editingFinished, this,
          [this] { edDataSourceParamsVertOffsetValueExit(); });
}

// What the owner asks.

bool TformQvRfVerticalRefSystemEdit::SetPlaneSystem(const std::string& treeText, int unitKey) {
  const bool whole = heights_.SetPlaneSystem(treeText, unitKey);
  ShowPlane();
  return whole;
}

bool TformQvRfVerticalRefSystemEdit::LoadForReferenceSystem(int refSystemKey) {
  return heights_.LoadForReferenceSystem(refSystemKey);
}

bool TformQvRfVerticalRefSystemEdit::IsStoredPlaneSame(const TShellReferenceSystem* system) const {
  return heights_.IsStoredPlaneSame(system);
}

void TformQvRfVerticalRefSystemEdit::ShowPlane() {
  const TShellReferenceSystem* target = heights_.Target();
  QString name = NameOf(target);
  // A caption takes "&" for the mark of a key.
  name.replace(QLatin1Char('&'), QLatin1String("&&"));
  grboxDataGrid->setTitle(Translated(" Data Grid ") + QLatin1Char('(') + name +
                          QLatin1String(") "));
  grid_->ClearAxes();
  if (target != nullptr) (void)grid_->ShowAxes(*target);
}

// Filling and running.

bool TformQvRfVerticalRefSystemEdit::EditRecord() {
  BeginRun(Processor->GetCurrentKey());
  if (heights_.Target() == nullptr) return false;
  const auto text = [this](const char* field) {
    return Processor->DataSet->FieldByName(field).AsString();
  };
  edName->SetText(text("NAME"));
  edAbbreviation->SetText(text("ABBREVIATION"));
  memoDescription->SetText(text("DESCRIPTION"));
  return RunFilled(heights_.StartEdit());
}

bool TformQvRfVerticalRefSystemEdit::NewRecord() {
  BeginRun(0);
  edName->SetText({});
  edAbbreviation->SetText({});
  memoDescription->SetText({});
  heights_.StartNew();
  return heights_.Target() != nullptr && RunFilled(HeightRefusal::kNone);
}

bool TformQvRfVerticalRefSystemEdit::RunFilled(HeightRefusal loading) {
  ClearMarks();
  bitbtnSave->setToolTip({});
  CheckSource(heights_.Source().Kind);
  ShowSource();
  edDataSourceParamsVertOffsetValue->setText(ToQt(heights_.Source().Offset));
  ShowGrid();
  UpdateCreateControls();
  if (heights_.MadeData().Kind() == HeightKind::kOffset) radiobtnDataOffset->setChecked(true);
  RefreshDataState(loading);
  if (loading != HeightRefusal::kNone) {
    TellFile(Processor->DataSet->FieldByName("VDATA_FILENAME").AsString(), loading);
  }
  edName->setFocus(Qt::OtherFocusReason);
  return RunEdit();
}

void TformQvRfVerticalRefSystemEdit::ShowSource() {
  const HeightSource& source = heights_.Source();
  const auto* system = source.System.get();
  comboDataSourceParamsVertRefsystem->setText(NameOf(system));
  memoDataSourceParamsVertRefsystem->setPlainText(system == nullptr ? QString()
                                                                    : ToQt(system->Description()));
  edDataSourceParamsFileName->setText(ToQt(source.FileName));
  comboDataSourceParamsFilePlaneRefsystem->setText(NameOf(source.FilePlaneSystem.get()));
  const std::optional<UnitTexts> unit = LinearUnitTexts(Data(), source.OffsetUnit);
  comboDataSourceParamsVertOffsetUnits->setText(unit ? ToQt(unit->Name) : QString());
  lblDataSourceParamsVertOffsetUnitsAbbr->setText(unit ? ToQt(unit->Abbreviation) : QString());
}

void TformQvRfVerticalRefSystemEdit::UpdateCreateControls() {
  EnableData(heights_);
  btnDataSourceView->setEnabled(heights_.Source().Kind == HeightSourceKind::kFile &&
                                heights_.Source().FileTable != nullptr);
}

void TformQvRfVerticalRefSystemEdit::RefreshDataState(HeightRefusal refusal) {
  const HeightData& made = heights_.MadeData();
  const std::optional<UnitTexts> unit = LinearUnitTexts(Data(), made.OffsetUnit);
  if (made.Kind() == HeightKind::kOffset && unit) {
    edDataOffset->setText(ToQt(made.Offset + " " + unit->Label()));
  }
  ShowState(made.Kind(),
            refusal == HeightRefusal::kNone ? ToQt(heights_.Failure()) : WordsOf(refusal));
}

QString TformQvRfVerticalRefSystemEdit::WordsOf(HeightRefusal refusal) const {
  switch (refusal) {
    case HeightRefusal::kNone:
    case HeightRefusal::kCancelled:
      return {};
    case HeightRefusal::kNoHeights:
      return Translated("This system has no height system");
    case HeightRefusal::kHasHeights:
      return Translated("The plane system of a file must not have a height system of its own");
    case HeightRefusal::kNoSystem:
      return ToQt(heights_.Failure());
    case HeightRefusal::kNoImage:
      return Translated("The heights of the file cannot be brought into the plane of the data");
    case HeightRefusal::kNoNumber:
      return Translated("This is not a number; the decimal separator is \"%1\"")
          .arg(QLatin1Char('.'));
    case HeightRefusal::kNoFile:
      return Translated("The record names no file");
    case HeightRefusal::kNotOpened:
    case HeightRefusal::kNotRead:
      return Translated("It cannot be read, or is empty");
    case HeightRefusal::kNoGrid:
      return Translated(
          "It does not begin with a grid: six numbers for south, north, west, east and the cell "
          "sizes north-south and east-west");
    case HeightRefusal::kNoValues:
      return Translated("It has fewer heights than its grid has nodes, or one that is no number");
    case HeightRefusal::kCellTooGreat:
      return QvPlatform::SystemQText(TextId::kCellTooGreat);
    case HeightRefusal::kUnusableGrid:
      return Translated("The data grid is not complete, or has limits in the wrong order");
  }
  return {};
}

void TformQvRfVerticalRefSystemEdit::TellFile(const std::string& name, HeightRefusal refusal) {
  const QString why = WordsOf(refusal);
  if (why.isEmpty() || refusal == HeightRefusal::kNotOpened) return;
  const QString text =
      Translated("The height file \"%1\" cannot be used.").arg(ToQt(name)) + "\n" + why + ".";
  Data().Ui().ShowMessage(MessageKind::kError, FromQt(text), MessageButtons::kOk);
}

// Sources.

void TformQvRfVerticalRefSystemEdit::btnDataSourceParamsVertRefsystemClick() {
  ClearMark(comboDataSourceParamsFilePlaneRefsystem);
  TStringTree tree;
  if (!ListOf(TObjectType::kReferenceSystem).Select({.tree = &tree})) return;
  const HeightRefusal refusal = heights_.TakeSystem(&tree);
  ShowSource();
  ShowGrid();
  for (QWidget* control : {static_cast<QWidget*>(comboDataSourceParamsVertRefsystem),
                           static_cast<QWidget*>(memoDataSourceParamsVertRefsystem)}) {
    if (refusal == HeightRefusal::kNone) {
      ClearMark(control);
    } else {
      Refuse(control, kRefusalColour, WordsOf(refusal));
    }
  }
  UpdateCreateControls();
}

void TformQvRfVerticalRefSystemEdit::btnDataSourceParamsFileNameClick() {
  const auto file = QvPlatform::GetOpenFileName(
      this, Translated("Open height file"),
      {.filter = QvPlatform::SystemQText(TextId::kAllFiles) + QLatin1String(" (*.*)|*.*"),
       .filterIndex = 1,
       .defaultFileName = {}});
  if (file.path.isEmpty()) return;
  const std::string path = FromQt(file.path);
  const HeightRefusal refusal = heights_.TakeFile(path);
  ShowSource();
  ShowGrid();
  UpdateCreateControls();
  ClearMark(comboDataSourceParamsFilePlaneRefsystem);
  if (refusal == HeightRefusal::kNoImage) {
    Refuse(comboDataSourceParamsFilePlaneRefsystem, kRefusalColour, WordsOf(refusal));
  } else if (refusal != HeightRefusal::kNone) {
    TellFile(path, refusal);
  }
}

void TformQvRfVerticalRefSystemEdit::btnDataSourceParamsFilePlaneRefsystemClick() {
  ClearMark(comboDataSourceParamsFilePlaneRefsystem);
  TStringTree tree;
  if (!ListOf(TObjectType::kReferenceSystem).Select({.tree = &tree})) return;
  const HeightRefusal refusal = heights_.TakeFilePlane(&tree);
  ShowSource();
  ShowGrid();
  if (refusal != HeightRefusal::kNone) {
    Refuse(comboDataSourceParamsFilePlaneRefsystem, ErrorColour, WordsOf(refusal));
  }
  UpdateCreateControls();
}

void TformQvRfVerticalRefSystemEdit::btnDataSourceParamsVertOffsetUnitsClick() {
  if (ListOf(TObjectType::kLinearUnit).Select({})) {
    heights_.TakeOffsetUnit(ProcessorOf(TObjectType::kLinearUnit).GetCurrentKey());
  }
  // The unit may have been renamed or removed there.
  ShowSource();
  UpdateCreateControls();
}

void TformQvRfVerticalRefSystemEdit::edDataSourceParamsVertOffsetValueExit() {
  const std::string text = FromQt(edDataSourceParamsVertOffsetValue->text());
  const HeightRefusal refusal = heights_.TakeOffset(text);
  if (refusal == HeightRefusal::kNone) {
    ClearMark(edDataSourceParamsVertOffsetValue);
  } else {
    Refuse(edDataSourceParamsVertOffsetValue, kRefusalColour, WordsOf(refusal));
  }
  UpdateCreateControls();
}

void TformQvRfVerticalRefSystemEdit::btnDataSourceViewClick() {
  ViewHeightTable(this, heights_.Source().FileTable.get(), nullptr);
}

void TformQvRfVerticalRefSystemEdit::Button1Click() {
  if (gridDialog_ == nullptr)
    gridDialog_ = std::make_unique<TformQvRfRecalculateGridParams>(this, GetChooser());
  TShell2DTableExtents extents;
  if (!gridDialog_->Run(heights_.Target(), &extents)) return;
  heights_.SetGrid(extents);
  ShowGrid();
}

// Data.

void TformQvRfVerticalRefSystemEdit::btnDataCreateClick() {
  const HeightRefusal refusal =
      heights_.Create(CheckedData(), [this](HeightApproximation& r) { return AcceptOffset(r); });
  RefreshDataState(refusal);
  if (refusal == HeightRefusal::kCellTooGreat) {
    Data().Ui().ShowMessage(MessageKind::kError, SystemText(TextId::kCellTooGreat),
                            MessageButtons::kOk);
  }
}

bool TformQvRfVerticalRefSystemEdit::AcceptOffset(HeightApproximation& result) {
  edDataOffset->setText(ToQt(result.Offset + " " + result.UnitLabel));
  std::string text = result.SourceName;
  TformQvRfOffsetApproximationReport report(this);
  if (!report.Run({.Offset = result.Offset,
                   .UnitLabel = result.UnitLabel,
                   .Max = result.Max,
                   .Rms = result.Rms,
                   .Target = heights_.Target(),
                   .Errors = &result.Errors},
                  &text)) {
    return false;
  }
  memoDescription->SetText(memoDescription->Text() + " " + text);
  return true;
}

void TformQvRfVerticalRefSystemEdit::btnDataViewClick() {
  ViewHeightTable(this, heights_.MadeData().Table.get(), heights_.Target());
}

bool TformQvRfVerticalRefSystemEdit::ConfirmData() {
  if (!heights_.MadeData().Kind()) {
    Data().Ui().ShowMessage(MessageKind::kError, SystemText(TextId::kNoHeights),
                            MessageButtons::kOk);
    return false;
  }
  return heights_.IsCurrent() ||
         Data().Ui().ShowMessage(MessageKind::kWarning, SystemText(TextId::kHeightsNotCurrent),
                                 MessageButtons::kYesNo) == MessageAnswer::kYes;
}

bool TformQvRfVerticalRefSystemEdit::StoreRecord() {
  bitbtnSave->setToolTip({});
  if (!ConfirmData()) return false;
  if (EditMode == 1 && !Processor->LocateKey(Key)) {
    TellNotSaved(bitbtnSave, Translated("The object has been removed."));
    return false;
  }
  HeightRecord texts;
  texts.Name = edName->Text();
  texts.Abbreviation = edAbbreviation->Text();
  texts.Description = memoDescription->Text();
  if (texts.Name.empty()) {
    Refuse(edName, ErrorColour, Translated("This must not be empty"));
    return false;
  }
  ClearMark(edName);
  try {
    return heights_.Store(texts, EditMode == 0);
  } catch (const std::exception& error) {
    TellNotSaved(bitbtnSave, ToQt(error.what()));
    return false;
  }
}

// The window.

void TformQvRfVerticalRefSystemEdit::FormShow(bool first) {
  // Back from a dialog of its own, the form stands where it stood.
  if (!first) return;
  ClearMark(edName);
  layout()->activate();
  adjustSize();
  PlaceAndSize(size());
}

// The form stands at its owner, or as far above as it needs to end on the screen.
void TformQvRfVerticalRefSystemEdit::PlaceUsually() {
  TformQvRfEdit::PlaceUsually();
  constexpr int kBottomMargin = 30;
  constexpr int kTopMargin = 10;
  const QRect room = screen()->geometry();
  const int excess = frameGeometry().bottom() - (room.bottom() - kBottomMargin);
  if (excess > 0) move(x(), std::max(y() - excess, room.top() + kTopMargin));
}

bool TformQvRfVerticalRefSystemEdit::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::MouseButtonPress) {
    const auto* focus = dynamic_cast<QFocusEvent*>(event);
    const bool entered = focus == nullptr || (focus->reason() != Qt::ActiveWindowFocusReason &&
                                              focus->reason() != Qt::PopupFocusReason);
    if (entered) ClearMark(static_cast<QWidget*>(watched));
  }
  return TformQvRfEdit::eventFilter(watched, event);
}

void TformQvRfVerticalRefSystemEdit::changeEvent(QEvent* event) {
  TformQvRfEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && bitbtnClose != nullptr) PaintControls();
}

}  // namespace QvRefSystem
