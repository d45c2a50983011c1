#include "editor/georef_frame_editor.h"

#include "assembly/processor_set.h"
#include "database/data_module.h"
#include "dialogs/base/guarded.h"
#include "dialogs/select/database_manager.h"
#include "dialogs/select/selectors.h"
#include "dialogs/select/used_by_list.h"
#include "platform/geocore/system_model.h"
#include "platform/storage/waiting.h"
#include "platform/ui/texts.h"
#include "platform/ui/user_interface.h"
#include "platform/widgets/window_waiter.h"
#include "processors/ref_system_processor.h"
#include "vertical/working_heights.h"

namespace QvRefSystem {

using QvPlatform::MessageButtons;
using QvPlatform::MessageKind;
using QvPlatform::SystemText;
using QvPlatform::TextId;
using QvPlatform::WindowWaiter;

namespace {
constexpr int kFolderDatabase = 1;
constexpr int kContainerDatabase = 2;
constexpr int kGeodetic = static_cast<int>(SystemKind::kGeodetic);
}  // namespace

TQvGeoRefFrameEditor::TQvGeoRefFrameEditor()
    : ownUi_(MakeDialogInterface()), waiter_(std::make_unique<WindowWaiter>()), ui_(*ownUi_) {
  datamoduleQvRfData = nullptr;
}

TQvGeoRefFrameEditor::TQvGeoRefFrameEditor(QvPlatform::TUserInterface& ui)
    : waiter_(std::make_unique<WindowWaiter>()), ui_(ui) {
  datamoduleQvRfData = nullptr;
}

TQvGeoRefFrameEditor::~TQvGeoRefFrameEditor() {
  Finalize();
}

// Runs an operation of the host's: what it throws is told, and while it waits the user may cancel.
template <typename Operation>
bool TQvGeoRefFrameEditor::Run(Operation&& operation) {
  // A call that a host has posted to itself may come while an operation waits.
  if (WindowWaiter::IsWaiting()) return false;
  const QvPlatform::WaiterScope scope(*waiter_);
  return Guarded(ui_, std::forward<Operation>(operation));
}

bool TQvGeoRefFrameEditor::Initialize(const TQvGeoRefFrameDialogOptions* options) {
  Finalize();
  if (options == nullptr) return false;
  bool ready = false;
  const bool ran = Run([&] { ready = Open(*options); });
  if (!ran || !ready) Finalize();
  return ran && ready;
}

bool TQvGeoRefFrameEditor::Open(const TQvGeoRefFrameDialogOptions& options) {
  data_ = MakeDataModule(ui_);
  datamoduleQvRfData = data_.get();
  data_->DialogMode = options.DialogMode;
  data_->ShowImportExport = options.ShowImportExport;
  data_->ErrorColour = options.ErrorColour;
  data_->DatabasePath = options.DatabasePath;
  const bool folder = options.DatabaseKind == kFolderDatabase;
  if (!folder && options.DatabaseKind != kContainerDatabase) return true;
  if (!data_->OpenDatabase(options.DatabasePath, options.DialogMode, !folder)) return false;
  WorkingHeights(*data_).DropLeft();
  selector_ = std::make_unique<TformQvRfRefSystemSelector>(nullptr, DialogChooser());
  return true;
}

void TQvGeoRefFrameEditor::Finalize() {
  selector_.reset();
  if (data_ == nullptr) return;
  Run([this] { data_->CloseDatabase(); });
  // A second editor may have put its own data module there.
  if (datamoduleQvRfData == data_.get()) datamoduleQvRfData = nullptr;
  data_.reset();
}

bool TQvGeoRefFrameEditor::DatabaseIsActive() const {
  return data_ != nullptr && !data_->NotActive;
}

bool TQvGeoRefFrameEditor::Edit(TStringTree* tree, bool rejectGeodetic) {
  if (selector_ == nullptr || tree == nullptr) return false;
  bool chosen = false;
  const bool ran = Run([&] {
    int key = data_->RefSystemProcessor->InsertFromTree(tree);
    chosen = selector_->Select(tree, 0, false, &key, 0);
    if (!chosen || !rejectGeodetic) return;
    if (data_->datasetRefSystem.FieldByName("TYPE").AsInteger() != kGeodetic) return;
    ui_.ShowMessage(MessageKind::kPlain, SystemText(TextId::kNoLatitudeLongitude),
                    MessageButtons::kOk);
    chosen = false;
  });
  return ran && chosen;
}

bool TQvGeoRefFrameEditor::Insert(TStringTree* tree) {
  if (!DatabaseIsActive() || tree == nullptr) return false;
  int key = 0;
  const bool ran = Run([&] { key = data_->RefSystemProcessor->InsertFromTree(tree); });
  insertFailureWasTold_ = !ran || data_->RefSystemProcessor->StorageFailed();
  return ran && key != 0;
}

bool TQvGeoRefFrameEditor::GetInfo(TStrings* lines) {
  if (selector_ == nullptr || lines == nullptr) return false;
  bool told = false;
  TStrings info;
  const bool ran = Run([&] { told = selector_->GetInfo(&info); });
  if (!ran || !told) return false;
  *lines = std::move(info);
  return true;
}

bool TQvGeoRefFrameEditor::Browse(int objectType) {
  if (!DatabaseIsActive()) return true;
  Run([&] {
    const std::unique_ptr<TformQvRfSelector> selector(GetSelectorFor(nullptr, objectType));
    if (selector != nullptr) selector->Browse(0, false, true);
  });
  return true;
}

bool TQvGeoRefFrameEditor::ManageDatabase() {
  if (!DatabaseIsActive()) return false;
  Run([this] {
    TQvGeoRefFrameDialogOptions options;
    options.DialogMode = data_->DialogMode;
    options.ErrorColour = data_->ErrorColour;
    options.ShowImportExport = data_->ShowImportExport;
    options.DatabasePath = data_->DatabasePath;
    TformGeoRefFrameDatabaseManager manager(nullptr);
    manager.Fill(&options);
    manager.RunModal();
  });
  return true;
}

bool TQvGeoRefFrameEditor::CalculateMapProjectionParameters() {
  ui_.ShowMessage(MessageKind::kWarning, SystemText(TextId::kNoParameterCalculation),
                  MessageButtons::kOk);
  return false;
}

}  // namespace QvRefSystem
