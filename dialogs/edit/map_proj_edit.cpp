#include "dialogs/edit/map_proj_edit.h"

#include <QKeyEvent>
#include <algorithm>

#include "dialogs/edit/param_grid.h"
#include "platform/widgets/data_grid.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::DataSetTableModel;
using QvPlatform::Translated;

namespace {

constexpr const char* kUnitControls[] = {"edLinearUnit", "edAngularUnit", "edScaleUnit"};

int Integer(QvPlatform::TQvDataSet& dataSet, const char* field) {
  return dataSet.FieldByName(field).AsInteger();
}

AxisSigns ReadSigns(QvPlatform::TQvDataSet& dataSet) {
  return {Integer(dataSet, "COORD1_SIGN"), Integer(dataSet, "COORD2_SIGN"),
          Integer(dataSet, "SWAP_COORDS")};
}

std::string NoValue(int /*code*/) {
  return {};
}

bool IsControlShift(const QKeyEvent& event, int key) {
  const Qt::KeyboardModifiers both = Qt::ControlModifier | Qt::ShiftModifier;
  return event.key() == key && (event.modifiers() & both) == both;
}

}  // namespace

TformQvRfMapProjEdit::TformQvRfMapProjEdit(QWidget* owner, const Chooser& chooser)
    : DescribedEdit(owner, chooser, kMapProjForm) {
  strgridProjParam_ = new ParamGrid(this);
  strgridProjParam_->setObjectName("strgridProjParam");
  strgridProjParam_->setAccessibleName(Translated("Parameters"));
  strgridProjParam_->SetLimit(Data().datasetParamValue.FieldByName("VALUE").Definition().length);
  strgridProjParam_->installEventFilter(this);
  FillPanel("pnlProjParam", strgridProjParam_);

  // Outside the layout: it covers the whole form.
  dbgridParamValue_ = new QvPlatform::DataGrid(this);
  dbgridParamValue_->setObjectName("dbgridParamValue");
  dbgridParamValue_->installEventFilter(this);
  HideRows();
}

TformQvRfMapProjEdit::~TformQvRfMapProjEdit() = default;

TQvRfMapProjDataProcessor& TformQvRfMapProjEdit::Projections() const {
  return *Data().MapProjProcessor;
}

void TformQvRfMapProjEdit::OnNewRecord() {
  SetDirections({});
  FillGrid(&NoValue);
}

void TformQvRfMapProjEdit::OnShowRecord() {
  SetDirections(DirectionsOf(ReadSigns(*Processor->DataSet)));
  const int type = ValueOf("edProjectionType").key;
  FillGrid([this, type](int code) { return Projections().ParameterValue(Key, type, code); });
}

void TformQvRfMapProjEdit::OnChosen(const FormRow& row) {
  if (row.object != TObjectType::kMapProjectionType) return;
  TakeAxesOfType();
  FillGrid(&NoValue);
}

void TformQvRfMapProjEdit::TakeAxesOfType() {
  QvPlatform::TQvDataSet& types = Data().datasetMapProjType;
  AxisSigns signs = ReadSigns(types);
  std::string first = types.FieldByName("COORD1_ABBR").AsString();
  std::string second = types.FieldByName("COORD2_ABBR").AsString();
  // A type names its axes in the order of east and north, whichever a system takes first.
  if (signs.swap != 0) {
    std::swap(first, second);
    std::swap(signs.sign1, signs.sign2);
  }
  ValueOf("edFirstAxisName").text = first;
  ValueOf("edSecondAxisName").text = second;
  for (const char* control : {"edFirstAxisName", "edSecondAxisName"}) {
    RowOf(control).ClearMark();
    Show(control);
  }
  SetDirections(DirectionsOf(signs));
}

void TformQvRfMapProjEdit::FillGrid(const ValueOfCode& valueOf) {
  const int type = ValueOf("edProjectionType").key;
  bool needed[std::size(kUnitControls)] = {};
  strgridProjParam_->Clear();
  for (const ProjectionParameterRow& parameter : Projections().ParametersOf(type)) {
    const int unit = parameter.unitType - 1;
    if (unit >= 0 && unit < static_cast<int>(std::size(needed))) needed[unit] = true;
    std::vector<std::string> choices;
    if (parameter.kind == kChosenParameter) {
      choices = Projections().AllowedValues(type, parameter.code);
    }
    strgridProjParam_->AddRow(parameter.code, parameter.name, valueOf(parameter.code), choices);
  }
  strgridProjParam_->FitColumns();
  for (std::size_t i = 0; i < std::size(needed); ++i)
    SetNeeded(kUnitControls[i], needed[i]);
}

// Axes.

void TformQvRfMapProjEdit::SetDirections(const AxisDirections& axes) {
  ValueOf("comboFirstAxisDir").key = static_cast<int>(axes.first);
  ValueOf("comboSecondAxisDir").key = static_cast<int>(axes.second);
  for (const char* control : {"comboFirstAxisDir", "comboSecondAxisDir"}) {
    RowOf(control).ClearMark();
    Show(control);
  }
}

AxisDirections TformQvRfMapProjEdit::Directions() {
  return {static_cast<AxisDirection>(ValueOf("comboFirstAxisDir").key),
          static_cast<AxisDirection>(ValueOf("comboSecondAxisDir").key)};
}

bool TformQvRfMapProjEdit::CheckMore() {
  const AxisDirections axes = Directions();
  if (axes.first == AxisDirection::kNone || axes.second == AxisDirection::kNone) return true;
  if (IsAlongMeridian(axes.first) != IsAlongMeridian(axes.second)) return true;
  const QString reason = Translated("One axis runs north or south, the other one east or west");
  Refuse("comboFirstAxisDir", reason);
  Refuse("comboSecondAxisDir", reason);
  return false;
}

// Storing.

void TformQvRfMapProjEdit::WriteMore(QvPlatform::TQvDataSet& dataSet) {
  const AxisDirections axes = Directions();
  const AxisSigns signs = SignsOf(axes);
  const auto name = [](AxisDirection direction) {
    return kDirectionNames[static_cast<std::size_t>(direction)];
  };
  dataSet.FieldByName("COORD1_DESC").SetString(name(axes.first));
  dataSet.FieldByName("COORD2_DESC").SetString(name(axes.second));
  dataSet.FieldByName("COORD1_SIGN").SetInteger(signs.sign1);
  dataSet.FieldByName("COORD2_SIGN").SetInteger(signs.sign2);
  dataSet.FieldByName("SWAP_COORDS").SetInteger(signs.swap);
}

std::vector<QvPlatform::TQvDataSet*> TformQvRfMapProjEdit::TablesBeside() {
  return {&Data().datasetParamValue};
}

void TformQvRfMapProjEdit::StoreBeside(int key) {
  const int type = ValueOf("edProjectionType").key;
  strgridProjParam_->CommitEditor();
  for (int row = 0; row < strgridProjParam_->rowCount(); ++row) {
    Projections().StoreParameterValue(key, type, strgridProjParam_->Code(row),
                                      strgridProjParam_->Value(row), EditMode == 0);
  }
}

std::vector<BesideText> TformQvRfMapProjEdit::BesideTexts() {
  strgridProjParam_->CommitEditor();
  std::vector<BesideText> texts;
  for (int row = 0; row < strgridProjParam_->rowCount(); ++row) {
    texts.push_back({strgridProjParam_->Code(row), strgridProjParam_->Name(row),
                     strgridProjParam_->Value(row)});
  }
  return texts;
}

void TformQvRfMapProjEdit::ShowBeside(const std::vector<BesideText>& texts) {
  FillGrid([&texts](int code) {
    const auto text = std::ranges::find(texts, code, &BesideText::code);
    return text == texts.end() ? std::string() : text->value;
  });
}

// The parameters of another type come with it.
void TformQvRfMapProjEdit::Take(const FormRow& row, const RowState& theirs) {
  DescribedEdit::Take(row, theirs);
  if (row.object == TObjectType::kMapProjectionType) TakeBeside();
}

// The raw view of the tables.

bool TformQvRfMapProjEdit::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto& key = static_cast<const QKeyEvent&>(*event);
    bool taken = true;
    if (watched == strgridProjParam_ && IsControlShift(key, Qt::Key_F11)) {
      Act([this] { ShowRows(TableId::kParamValue); });
    } else if (watched == strgridProjParam_ && IsControlShift(key, Qt::Key_F12)) {
      Act([this] { ShowRows(TableId::kMapProjParam); });
    } else if (watched == dbgridParamValue_ && IsControlShift(key, Qt::Key_F12)) {
      HideRows();
    } else {
      taken = false;
    }
    if (taken) return true;
  }
  return DescribedEdit::eventFilter(watched, event);
}

void TformQvRfMapProjEdit::ShowRows(TableId table) {
  dbgridParamValue_->SetDataSetModel(
      new DataSetTableModel(Data().Source(table), {}, dbgridParamValue_));
  dbgridParamValue_->setGeometry(rect());
  dbgridParamValue_->setEnabled(true);
  dbgridParamValue_->show();
  dbgridParamValue_->raise();
  dbgridParamValue_->setFocus(Qt::OtherFocusReason);
}

void TformQvRfMapProjEdit::HideRows() {
  dbgridParamValue_->hide();
  dbgridParamValue_->lower();
  dbgridParamValue_->setEnabled(false);
  DataSetTableModel* model = dbgridParamValue_->DataSetModel();
  dbgridParamValue_->setModel(nullptr);
  delete model;
}

void TformQvRfMapProjEdit::resizeEvent(QResizeEvent* event) {
  DescribedEdit::resizeEvent(event);
  dbgridParamValue_->setGeometry(rect());
}

}  // namespace QvRefSystem
