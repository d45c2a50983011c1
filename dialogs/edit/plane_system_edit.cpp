#include "dialogs/edit/plane_system_edit.h"

#include <QComboBox>
#include <algorithm>

#include "dialogs/base/processor_of.h"
#include "dialogs/heights/vertical_edit.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/shell_reference_system.h"
#include "platform/ui/texts.h"
#include "platform/widgets/limited_text.h"
#include "platform/widgets/qt_text.h"
#include "processors/ref_system_processor.h"
#include "vertical/vertical_processor.h"

namespace QvRefSystem {

using QvPlatform::ToQt;
using QvPlatform::TQvDataSet;
using QvPlatform::Translated;
using enum TObjectType;

namespace {

constexpr char kDatumRadio[] = "radiobtnDatum";
constexpr char kEllipsoidRadio[] = "radiobtnEllipsoid";
constexpr char kHeightEllipsoidRadio[] = "radiobtnHeightEllipsoid";
constexpr char kGeoidRadio[] = "radiobtnHeightGeoid";
constexpr char kSystemGeoidRadio[] = "radiobtnHeightSystemGeoid";
constexpr char kGeoid[] = "Edit1";
constexpr char kSystemGeoids[] = "comboSystemGeoids";

}  // namespace

PlaneSystemEdit::PlaneSystemEdit(QWidget* owner, const Chooser& chooser,
                                 const FormDescription& form)
    : SystemEdit(owner, chooser, form),
      form_(form),
      VerticalEdit(new TformQvRfVerticalRefSystemEdit(this, chooser)),
      working_(Data()) {
  ListSystemGeoids();
}

void PlaneSystemEdit::ListSystemGeoids() {
  std::map<int, std::string> geoids;
  if (!GetSystemGeoidsList(&geoids)) {
    LeadOf(kSystemGeoidRadio).setEnabled(false);
    return;
  }
  QComboBox* list = RowOf(kSystemGeoids).List();
  for (const auto& [code, name] : geoids) {
    SystemGeoids.emplace(list->count(), code);
    list->addItem(ToQt(name));
  }
}

// Filling.

void PlaneSystemEdit::OnNewRecord() {
  SystemEdit::OnNewRecord();
  working_.DropLeft();
  DropBrokenReferences();
  SetChoice(kGround, "");
  (void)VerticalEdit->LoadForReferenceSystem(0);
  ShowHeights(0, 0);
  OldVerticalKey = 0;
}

void PlaneSystemEdit::OnShowRecord() {
  SystemEdit::OnShowRecord();
  TQvDataSet& dataSet = *Processor->DataSet;
  const int vertical = dataSet.FieldByName("VERT_SYSTEM_AUTOKEY").AsInteger();
  const int code = dataSet.FieldByName("VERT_SYSTEM_CODE").AsInteger();
  DropBrokenReferences();
  SetChoice(kGround, ValueOf("edDatum").key != 0       ? kDatumRadio
                     : ValueOf("edEllipsoid").key != 0 ? kEllipsoidRadio
                                                       : "");
  Processor->LocateKey(Key);
  ShowHeights(vertical, code);
}

void PlaneSystemEdit::OnEditRecord() {
  BeginHeights();
}

void PlaneSystemEdit::DropBrokenReferences() {
  for (const FormRow& row : form_.rows) {
    if (row.kind == RowKind::kReference && row.choice != kHeightSurface) DropIfBroken(row);
  }
}

// An object that cannot be written whole counts as none: no system can be made with it.
void PlaneSystemEdit::DropIfBroken(const FormRow& row) {
  if (ValueOf(row.control).key == 0 || CanBeWritten(row)) return;
  ValueOf(row.control) = {};
  Show(row.control);
}

bool PlaneSystemEdit::CanBeWritten(const FormRow& row) {
  TQvRfDataProcessor* processor = ProcessorFor(Data(), static_cast<int>(row.object));
  try {
    TStringTree tree;
    return processor != nullptr && processor->LocateKey(ValueOf(row.control).key) &&
           processor->WriteToTree(&tree, 0, 0);
  } catch (const std::exception&) {
    return false;
  }
}

void PlaneSystemEdit::ShowHeights(int key, int code) {
  const auto listed = std::ranges::find(SystemGeoids, code, [](const auto& g) { return g.second; });
  ValueOf(kSystemGeoids).key = listed == SystemGeoids.end() ? -1 : listed->first;
  Show(kSystemGeoids);
  ValueOf(kGeoid) = {};
  ValueOf(kGeoid).key = key;
  ValueOf(kGeoid).text = QvPlatform::FromQt(NameOf(kVerticalReferenceSystem, key));
  Show(kGeoid);
  SetChoice(kHeightSurface, key != 0    ? kGeoidRadio
                            : code != 0 ? kSystemGeoidRadio
                                        : kHeightEllipsoidRadio);
}

void PlaneSystemEdit::BeginHeights() {
  working_.DropLeft();
  OldVerticalKey = ValueOf(kGeoid).key;
  ValueOf(kGeoid) = {};
  (void)VerticalEdit->LoadForReferenceSystem(Key);
  Processor->LocateKey(Key);
  // The last step, so that nothing stands between the copy and the run that removes it.
  if (OldVerticalKey != 0) CopyHeights();
  Show(kGeoid);
}

// Without a copy (the user was told why) the stored heights stay until others are saved.
void PlaneSystemEdit::CopyHeights() {
  if (!working_.Copy(OldVerticalKey)) return;
  const TQvRfDataProcessor& heights = *Data().VerticalRefSystemProcessor;
  ValueOf(kGeoid).key = heights.GetCurrentKey();
  ValueOf(kGeoid).text = heights.DataSet->FieldByName("NAME").AsString();
}

void PlaneSystemEdit::OnLeads() {
  RowOf(kGeoid).Control()->setEnabled(IsChosen(kGeoidRadio));
}

// References.

bool PlaneSystemEdit::Choose(const FormRow& row) {
  if (row.object == kVerticalReferenceSystem) return ChooseHeights();
  ProcessorOf(row.object).LocateKey(ValueOf(row.control).key);
  return SystemEdit::Choose(row);
}

bool PlaneSystemEdit::ChooseHeights() {
  TStringTree tree;
  if (!BuildSystemTree(&tree, 0, 0)) {
    Data().Ui().ShowMessage(QvPlatform::MessageKind::kError,
                            SystemText(QvPlatform::TextId::kPlaneNotDefined),
                            QvPlatform::MessageButtons::kOk);
    return false;
  }
  const std::string text = WriteTreeText(&tree);
  if (!VerticalEdit->SetPlaneSystem(text, ValueOf("edLinearUnit").key)) return false;
  const int key = ValueOf(kGeoid).key;
  if (key == 0) {
    if (!VerticalEdit->CreateNew()) return false;
    working_.Take(VerticalEdit->Processor->GetCurrentKey());
    return true;
  }
  return VerticalEdit->Processor->LocateKey(key) && VerticalEdit->EditCurrent();
}

void PlaneSystemEdit::OnChosen(const FormRow& row) {
  if (row.object == kDatum) TakeEllipsoidOfDatum();
}

void PlaneSystemEdit::TakeEllipsoidOfDatum() {
  const int key = Data().datasetDatum.FieldByName("ELLIPSOID_AUTOKEY").AsInteger();
  const QString name = NameOf(kEllipsoid, key);
  FormValue& value = ValueOf("edEllipsoid");
  value = {};
  RowOf("edEllipsoid").ClearMark();
  if (ProcessorFor(Data(), static_cast<int>(kEllipsoid))->RowOfKey(key)) {
    value.key = key;
    value.text = QvPlatform::FromQt(name);
  }
  Show("edEllipsoid");
  if (value.key == 0) Refuse("edEllipsoid", Translated("The ellipsoid of the datum is missing"));
}

// The system as a tree.

bool PlaneSystemEdit::BuildSystemTree(TStringTree* tree, int id, int index) {
  ReadControls();
  if (Key != 0) Processor->LocateKey(Key);
  if (!CheckPlane()) return false;
  const bool entered = id == 0 || (EnsureSubtree(tree, id, index, Processor->TypeName) &&
                                   EnterSubtree(&tree, id, index));
  UnstoredSystem system;
  FillSystem(&system);
  return entered && Data().RefSystemProcessor->WriteUnstored(tree, system);
}

void PlaneSystemEdit::FillSystem(UnstoredSystem* system) {
  system->kind = static_cast<SystemKind>(form_.type);
  system->name = ValueOf("edName").text;
  system->description = ValueOf("memoDescription").text;
  system->abbreviation = ValueOf("edAbbreviation").text;
  for (const FormRow& row : form_.rows) {
    constexpr std::string_view kAxisColumns[] = {"COORD1_ABBR", "COORD2_ABBR", "COORD3_ABBR"};
    const auto* axis = std::ranges::find(kAxisColumns, row.column);
    if (axis != std::end(kAxisColumns)) {
      system->axes[static_cast<std::size_t>(axis - kAxisColumns)] = ValueOf(row.control).text;
    }
  }
  system->linearUnit = ValueOf("edLinearUnit").key;
  system->primeMeridian = ValueOf("edPrimeMeridian").key;
  system->ellipsoid = ValueOf("edEllipsoid").key;
  // The datum of an unchecked radio button is kept in the dialog, but is not the system's.
  system->datum = IsChosen(kDatumRadio) ? ValueOf("edDatum").key : 0;
}

std::unique_ptr<TShellReferenceSystem> PlaneSystemEdit::BuildShellSystem() {
  TStringTree tree;
  if (!BuildSystemTree(&tree, 0, 0)) return nullptr;
  return CreateShellReferenceSystem(&tree, nullptr);
}

// Checking.

bool PlaneSystemEdit::CheckPlane() {
  bool ok = true;
  for (const FormRow& row : form_.rows) {
    if (*row.control == 0 || row.choice == kHeightSurface) continue;
    if (row.kind == RowKind::kReference && RowOf(row.control).IsUsed()) DropIfBroken(row);
    ok = CheckRow(row.control) && ok;
  }
  return CheckGround() && ok;
}

bool PlaneSystemEdit::CheckGround() {
  if (IsChosen(kDatumRadio) || IsChosen(kEllipsoidRadio)) return true;
  for (const char* control : {"edDatum", "edEllipsoid"})
    Refuse(control, Translated("Either a datum or an ellipsoid must be chosen"));
  return false;
}

bool PlaneSystemEdit::CheckMore() {
  bool ok = CheckGround();
  if (IsChosen(kGeoidRadio)) ok = CheckGeoid() && ok;
  if (IsChosen(kSystemGeoidRadio)) ok = CheckSystemGeoid() && ok;
  return ok;
}

bool PlaneSystemEdit::CheckGeoid() {
  // Its row has refused a missing one.
  FormValue& heights = ValueOf(kGeoid);
  if (heights.key == 0) return true;
  const std::unique_ptr<TShellReferenceSystem> system = BuildShellSystem();
  const bool same = VerticalEdit->IsStoredPlaneSame(system.get());
  // Those of another plane stay out of sight until they are made anew, or fit again.
  heights.text =
      same ? QvPlatform::FromQt(NameOf(kVerticalReferenceSystem, heights.key)) : std::string();
  Show(kGeoid);
  if (same) return true;
  Refuse(kGeoid, system == nullptr
                     ? Translated("The heights cannot be checked while the system is not complete")
                     : Translated("These heights were made for another plane; make them anew"));
  return false;
}

bool PlaneSystemEdit::CheckSystemGeoid() {
  QComboBox* list = RowOf(kSystemGeoids).List();
  if (SystemGeoids.contains(list->currentIndex())) return true;
  list->setCurrentIndex(-1);
  Refuse(kSystemGeoids, Translated("One must be chosen"), Qt::red);
  return false;
}

// Storing.

void PlaneSystemEdit::WriteMore(TQvDataSet& dataSet) {
  SystemEdit::WriteMore(dataSet);
  const auto code = SystemGeoids.find(ValueOf(kSystemGeoids).key);
  const bool builtIn = IsChosen(kSystemGeoidRadio) && code != SystemGeoids.end();
  dataSet.FieldByName("VERT_SYSTEM_CODE").SetInteger(builtIn ? code->second : 0);
  if (!IsChosen(kGeoidRadio)) dataSet.FieldByName("VERT_SYSTEM_AUTOKEY").SetInteger(0);
  if (!IsChosen(kDatumRadio)) dataSet.FieldByName("DATUM_AUTOKEY").SetInteger(0);
}

std::vector<TQvDataSet*> PlaneSystemEdit::TablesBeside() {
  return Data().WritableTables();
}

void PlaneSystemEdit::StoreBeside(int /*key*/) {
  VerticalRecords& heights = *Data().VerticalRefSystemProcessor;
  working_.Keep();
  if (!IsChosen(kGeoidRadio)) heights.Remove(ValueOf(kGeoid).key);
  heights.Remove(OldVerticalKey);
}

// The heights that another user has given the system take the place of those worked on.
void PlaneSystemEdit::Take(const FormRow& row, const RowState& theirs) {
  const bool isHeights = row.control == std::string_view(kGeoid);
  if (isHeights) working_.Drop();
  SystemEdit::Take(row, theirs);
  if (isHeights) BeginHeights();
}

// What is stored over goes with the heights that are stored with it.
void PlaneSystemEdit::OnKeepMine() {
  OldVerticalKey = Processor->DataSet->FieldByName("VERT_SYSTEM_AUTOKEY").AsInteger();
}

void PlaneSystemEdit::CancelEdit() {
  working_.Drop();
}

}  // namespace QvRefSystem
