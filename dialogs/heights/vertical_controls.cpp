#include "dialogs/heights/vertical_controls.h"

#include <QButtonGroup>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "dialogs/base/row_controls.h"
#include "platform/widgets/limited_text.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::LimitedLine;
using QvPlatform::LimitedMemo;
using QvPlatform::Translatable;
using QvPlatform::Translated;

namespace {

struct SourceRow {
  HeightSourceKind kind;
  const char* objectName;
  const char* caption;
};

// The panels of the sources stand in the same order, behind the one of no source.
constexpr SourceRow kSources[] = {
    {HeightSourceKind::kSystem, "radiobtnDataSourceVertRefsystem",
     Translatable("Reference System")},
    {HeightSourceKind::kFile, "radiobtnDataSourceFile", Translatable("Vertical Data File")},
    {HeightSourceKind::kOffset, "radiobtnDataSourceOffset", Translatable("Vertical Offset")}};

template <typename Widget>
Widget* Named(Widget* widget, const char* objectName) {
  widget->setObjectName(QString::fromLatin1(objectName));
  return widget;
}

QGroupBox* MakeBox(QDialog* form, QBoxLayout* place, const char* objectName, const char* caption) {
  auto* box = Named(new QGroupBox(Translated(caption), form), objectName);
  place->addWidget(box);
  return box;
}

/// Captions on the left, controls beside them, and what belongs to a control behind it.
class PanelRows {
 public:
  explicit PanelRows(QWidget* panel) : panel_(panel), grid_(new QGridLayout(panel)) {
    grid_->setColumnStretch(1, 1);
  }
  template <typename Control>
  Control* Add(const char* objectName, const char* caption, Control* control) {
    ++row_;
    auto* label = new QLabel(Translated(caption), panel_);
    label->setBuddy(control);
    const auto* memo = qobject_cast<QPlainTextEdit*>(control);
    grid_->addWidget(label, row_, 0, memo != nullptr ? Qt::AlignTop : Qt::Alignment());
    grid_->addWidget(Named(control, objectName), row_, 1);
    if (memo != nullptr) {
      AlignWithText(label, *memo);
      grid_->setRowStretch(row_, 1);
    }
    control->setAccessibleName(Translated(caption));
    caption_ = caption;
    return control;
  }
  QLineEdit* AddShown(const char* objectName, const char* caption) {
    auto* line = Add(objectName, caption, new QLineEdit(panel_));
    line->setReadOnly(true);
    return line;
  }
  /// A "..." behind the control that was added last.
  QPushButton* AddChoice(const char* objectName) {
    QPushButton* button = MakeChoiceButton(panel_, objectName, caption_);
    grid_->addWidget(button, row_, 2);
    return button;
  }
  void AddBehind(QWidget* widget, int column) { grid_->addWidget(widget, row_, column); }
  void AddBelow(QWidget* widget) { grid_->addWidget(widget, ++row_, 1, Qt::AlignLeft); }
  void FillUp() { grid_->setRowStretch(++row_, 1); }

 private:
  QWidget* panel_;
  QGridLayout* grid_;
  int row_ = -1;
  const char* caption_ = "";
};

}  // namespace

void VerticalControls::BuildControls(QDialog* form, const QColor& errorColour) {
  form_ = form;
  errorColour_ = errorColour;
  auto* column = new QVBoxLayout(form);
  auto* halves = new QHBoxLayout;
  column->addLayout(halves, 1);
  auto* left = new QVBoxLayout;
  auto* right = new QVBoxLayout;
  halves->addLayout(left, 1);
  halves->addLayout(right, 1);
  BuildTexts(left);
  BuildSources(left);
  BuildGrid(right);
  BuildData(right);
  right->addStretch(1);
  BuildButtons(column);
}

void VerticalControls::BuildTexts(QBoxLayout* place) {
  auto* panel = new QWidget(form_);
  place->addWidget(panel, 1);
  PanelRows rows(panel);
  panel->layout()->setContentsMargins(0, 0, 0, 0);
  edName = rows.Add("edName", Translatable("Name"), new LimitedLine(panel));
  edAbbreviation = rows.Add("edAbbreviation", Translatable("Abbreviation"), new LimitedLine(panel));
  memoDescription =
      rows.Add("memoDescription", Translatable("Description"), new LimitedMemo(panel));
}

void VerticalControls::BuildSources(QBoxLayout* place) {
  QGroupBox* box = MakeBox(form_, place, "grboxDataSource", Translatable(" Data Source "));
  auto* column = new QVBoxLayout(box);
  sources_ = new QButtonGroup(box);
  for (const SourceRow& row : kSources) {
    auto* button = Named(new QRadioButton(Translated(row.caption), box), row.objectName);
    sources_->addButton(button, static_cast<int>(row.kind));
    column->addWidget(button);
  }
  panels_ = new QStackedWidget(box);
  column->addWidget(panels_, 1);
  (void)AddPanel("pnlDataSourceParamsNone");
  BuildSystemPanel();
  BuildFilePanel();
  BuildOffsetPanel();
}

QWidget* VerticalControls::AddPanel(const char* name) {
  auto* panel = Named(new QWidget(panels_), name);
  panels_->addWidget(panel);
  return panel;
}

void VerticalControls::BuildSystemPanel() {
  QWidget* panel = AddPanel("pnlDataSourceParamsVertRefsystem");
  PanelRows rows(panel);
  comboDataSourceParamsVertRefsystem =
      rows.AddShown("comboDataSourceParamsVertRefsystem", Translatable("Reference System"));
  btnDataSourceParamsVertRefsystem = rows.AddChoice("btnDataSourceParamsVertRefsystem");
  auto* memo = new LimitedMemo(panel);
  memo->setReadOnly(true);
  memo->setTabChangesFocus(true);
  memoDataSourceParamsVertRefsystem =
      rows.Add("memoDataSourceParamsVertRefsystem", Translatable("Description"), memo);
}

void VerticalControls::BuildFilePanel() {
  QWidget* panel = AddPanel("pnlDataSourceParamsFile");
  PanelRows rows(panel);
  edDataSourceParamsFileName = rows.AddShown("edDataSourceParamsFileName", Translatable("File"));
  btnDataSourceParamsFileName = rows.AddChoice("btnDataSourceParamsFileName");
  comboDataSourceParamsFilePlaneRefsystem = rows.AddShown("comboDataSourceParamsFilePlaneRefsystem",
                                                          Translatable("Plane Reference System"));
  btnDataSourceParamsFilePlaneRefsystem = rows.AddChoice("btnDataSourceParamsFilePlaneRefsystem");
  btnDataSourceView = Named(new QPushButton(Translated("View..."), panel), "btnDataSourceView");
  rows.AddBelow(btnDataSourceView);
  rows.FillUp();
}

void VerticalControls::BuildOffsetPanel() {
  QWidget* panel = AddPanel("pnlDataSourceParamsVertOffset");
  PanelRows rows(panel);
  edDataSourceParamsVertOffsetValue =
      rows.Add("edDataSourceParamsVertOffsetValue", Translatable("Offset"), new QLineEdit(panel));
  lblDataSourceParamsVertOffsetUnitsAbbr =
      Named(new QLabel(panel), "lblDataSourceParamsVertOffsetUnitsAbbr");
  // Units are named by the user: they are never markup.
  lblDataSourceParamsVertOffsetUnitsAbbr->setTextFormat(Qt::PlainText);
  rows.AddBehind(lblDataSourceParamsVertOffsetUnitsAbbr, 2);
  comboDataSourceParamsVertOffsetUnits =
      rows.AddShown("comboDataSourceParamsVertOffsetUnits", Translatable("Unit"));
  btnDataSourceParamsVertOffsetUnits = rows.AddChoice("btnDataSourceParamsVertOffsetUnits");
  rows.FillUp();
}

void VerticalControls::BuildGrid(QBoxLayout* place) {
  grboxDataGrid = MakeBox(form_, place, "grboxDataGrid", Translatable(" Data Grid "));
  grid_.emplace(grboxDataGrid, QString());
  Button1 =
      Named(new QPushButton(Translated("Use another reference system"), grboxDataGrid), "Button1");
  QGridLayout* layout = grid_->Layout();
  layout->addWidget(Button1, layout->rowCount(), 0, 1, layout->columnCount(), Qt::AlignLeft);
}

void VerticalControls::BuildData(QBoxLayout* place) {
  QGroupBox* box = MakeBox(form_, place, "grboxData", Translatable(" Data "));
  auto* column = new QVBoxLayout(box);
  auto* wishes = new QHBoxLayout;
  column->addLayout(wishes);
  btnDataCreate = Named(new QPushButton(Translated("Create"), box), "btnDataCreate");
  radiobtnDataTable = Named(new QRadioButton(Translated("Table"), box), "radiobtnDataTable");
  radiobtnDataOffset = Named(new QRadioButton(Translated("Offset"), box), "radiobtnDataOffset");
  for (QWidget* widget :
       {static_cast<QWidget*>(btnDataCreate), static_cast<QWidget*>(radiobtnDataTable),
        static_cast<QWidget*>(radiobtnDataOffset)}) {
    wishes->addWidget(widget);
  }
  wishes->addStretch(1);
  auto* state = new QHBoxLayout;
  column->addLayout(state);
  pnlDataType = Named(new QLabel(box), "pnlDataType");
  pnlDataType->setAlignment(Qt::AlignCenter);
  pnlDataType->setFrameShape(QFrame::StyledPanel);
  pnlDataType->setAutoFillBackground(true);
  btnDataView = Named(new QPushButton(Translated("View..."), box), "btnDataView");
  edDataOffset = Named(new QLineEdit(box), "edDataOffset");
  edDataOffset->setReadOnly(true);
  edDataOffset->setAccessibleName(Translated("Offset"));
  // The line keeps its height, whatever of it shows.
  pnlDataType->setMinimumHeight(
      std::max(btnDataView->sizeHint().height(), edDataOffset->sizeHint().height()));
  state->addWidget(pnlDataType, 1);
  state->addWidget(btnDataView, 1);
  state->addWidget(edDataOffset, 2);
}

void VerticalControls::BuildButtons(QBoxLayout* place) {
  auto* line = new QHBoxLayout;
  bitbtnSave = Named(new QPushButton(Translated("Save"), form_), "bitbtnSave");
  bitbtnSave->setDefault(true);
  bitbtnClose = Named(new QPushButton(Translated("Close"), form_), "bitbtnClose");
  line->addStretch(1);
  line->addWidget(bitbtnSave);
  line->addWidget(bitbtnClose);
  place->addLayout(line);
}

HeightSourceKind VerticalControls::CheckedSource() const {
  const int id = sources_->checkedId();
  return id < 0 ? HeightSourceKind::kNone : static_cast<HeightSourceKind>(id);
}

void VerticalControls::CheckSource(HeightSourceKind kind) {
  sources_->setExclusive(false);
  for (QAbstractButton* button : sources_->buttons())
    button->setChecked(sources_->id(button) == static_cast<int>(kind));
  sources_->setExclusive(true);
  ShowSourcePanel();
}

void VerticalControls::ShowSourcePanel() {
  const HeightSourceKind kind = CheckedSource();
  panels_->setCurrentIndex(static_cast<int>(kind));
  gridIsUsed_ = kind == HeightSourceKind::kSystem || kind == HeightSourceKind::kFile;
  grboxDataGrid->setEnabled(gridIsUsed_);
  PaintControls();
}

std::optional<HeightKind> VerticalControls::CheckedData() const {
  if (radiobtnDataTable->isChecked()) return HeightKind::kTable;
  if (radiobtnDataOffset->isChecked()) return HeightKind::kOffset;
  return std::nullopt;
}

void VerticalControls::EnableData(const HeightCreation& heights) {
  const std::optional<HeightKind> usual = heights.Source().UsualKind();
  radiobtnDataTable->setEnabled(heights.Source().CanMake(HeightKind::kTable));
  radiobtnDataOffset->setEnabled(heights.Source().CanMake(HeightKind::kOffset));
  btnDataCreate->setEnabled(usual.has_value());
  if (usual == HeightKind::kTable) radiobtnDataTable->setChecked(true);
  if (usual == HeightKind::kOffset) radiobtnDataOffset->setChecked(true);
}

void VerticalControls::ShowState(std::optional<HeightKind> kind, const QString& why) {
  btnDataView->setVisible(kind == HeightKind::kTable);
  edDataOffset->setVisible(kind == HeightKind::kOffset);
  if (!kind) {
    pnlDataType->setText(Translated("No data"));
    Refuse(pnlDataType, errorColour_, why);
    return;
  }
  pnlDataType->setText(kind == HeightKind::kTable ? Translated("Table") : Translated("Offset"));
  ClearMark(pnlDataType);
}

void VerticalControls::Refuse(QWidget* control, const QColor& colour, const QString& why) {
  marks_[control] = {colour, why};
  PaintMark(control);
}

void VerticalControls::ClearMark(QWidget* control) {
  marks_[control] = {};
  PaintMark(control);
}

void VerticalControls::ClearMarks() {
  for (auto& [control, mark] : marks_)
    mark = {};
  PaintControls();
}

void VerticalControls::PaintMark(QWidget* control) {
  const Mark& mark = marks_.at(control);
  SetBackground(control, mark.colour);
  if (control == pnlDataType) {
    QPalette palette = control->palette();
    palette.setColor(QPalette::Window, palette.color(QPalette::Button));
    palette.setColor(QPalette::WindowText, palette.color(QPalette::ButtonText));
    control->setPalette(palette);
  }
  control->setToolTip(TipOf(mark.why));
  control->setAccessibleDescription(mark.why);
}

void VerticalControls::PaintControls() {
  for (const auto& [control, mark] : marks_)
    PaintMark(control);
  const QColor unused = gridIsUsed_ ? QColor() : form_->palette().color(QPalette::Button);
  for (int part = 0; part < GridControls::kPartCount; ++part)
    SetBackground(grid_->Edit(static_cast<GridControls::Part>(part)), unused);
}

}  // namespace QvRefSystem
