#include "dialogs/select/selector.h"

#include <QApplication>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QResizeEvent>
#include <QScopedValueRollback>
#include <QScreen>
#include <QToolButton>
#include <stdexcept>
#include <utility>

#include "dialogs/base/edit_base.h"
#include "dialogs/base/guarded.h"
#include "dialogs/base/processor_of.h"
#include "dialogs/base/store_watch.h"
#include "dialogs/edit/edit_forms.h"
#include "dialogs/select/details_view.h"
#include "dialogs/select/import_export.h"
#include "platform/storage/waiting.h"
#include "platform/text/text.h"
#include "platform/widgets/data_grid.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::DataSetTableModel;
using QvPlatform::HiddenForm;
using QvPlatform::SystemText;
using QvPlatform::TDataSource;
using QvPlatform::TextId;
using QvPlatform::ToQt;
using QvPlatform::Translated;

namespace {

/// A stamp is not worth a wait that the user would notice.
constexpr std::chrono::milliseconds kWaitForStamp{200};

// Makes the data set's controls live for the time of a modal run. The levels that a run further up
// has taken off stay off until that one ends: its list is to be live when it comes back.
class LiveControls {
 public:
  explicit LiveControls(TQvRfDataProcessor& processor)
      : processor_(processor), outer_(std::exchange(processor.SuspendedControls, 0)) {
    processor_.ReleaseControls();
  }
  ~LiveControls() {
    processor_.RestoreControls();
    processor_.SuspendedControls = outer_;
  }
  LiveControls(const LiveControls&) = delete;
  LiveControls& operator=(const LiveControls&) = delete;

 private:
  TQvRfDataProcessor& processor_;
  const int outer_;
};

// Keeps the current record of every table. A dialog that waits behind this one counts on them, and
// writing a tree moves the cursors.
class KeptRecords {
 public:
  explicit KeptRecords(TdatamoduleQvRfData& data) {
    for (const ObjectDescriptor& object : ObjectDescriptors()) {
      if (auto* processor = ProcessorFor(data, static_cast<int>(object.type))) {
        processor->DataSet->DisableControls();
        records_.push_back({processor, processor->GetCurrentKey()});
      }
    }
  }
  ~KeptRecords() {
    for (const auto& [processor, key] : records_) {
      try {
        processor->LocateKey(key);
      } catch (const std::exception&) {
        // The table has been lost, which its next user is told.
      }
      processor->DataSet->EnableControls();
    }
  }
  KeptRecords(const KeptRecords&) = delete;
  KeptRecords& operator=(const KeptRecords&) = delete;

 private:
  std::vector<std::pair<TQvRfDataProcessor*, int>> records_;
};

// Opens the table anew after a change of how its rows are arranged.
template <typename Change>
void Rearrange(QvPlatform::TQvDataSet& dataSet, Change&& change) {
  dataSet.Close();
  dataSet.DataBuff->Close();
  change(*dataSet.DataBuff);
  dataSet.Open();
}

std::string CaptionOf(TextId verb, const TQvRfDataProcessor& processor) {
  std::string typeText;
  processor.GetDisplayNames(&typeText, nullptr);
  return SystemText(verb) + " " + typeText;
}

}  // namespace

TformQvRfSelector::TformQvRfSelector(QWidget* owner, const Chooser& chooser,
                                     const SelectorTraits& traits)
    : ModalForm(owner),
      Processor(&ProcessorOf(traits.type)),
      TypeList(traits.typeList),
      chooser_(chooser),
      watch_(StoreWatch::Shared()),
      ownSource_(traits.ownSource ? std::make_unique<TDataSource>(Processor->DataSet) : nullptr),
      source_(ownSource_ ? *ownSource_ : Data().Source(DescriptorOf(traits.type).table)) {
  BuildControls(this);
  listModel_ = std::make_unique<DataSetTableModel>(
      source_,
      std::vector<DataSetTableModel::Column>{
          {"NAME", QvPlatform::SystemQText(TextId::kColumnName)},
          {"DESCRIPTION", QvPlatform::SystemQText(TextId::kColumnDescription)}},
      nullptr);
  dbgridList->SetDataSetModel(listModel_.get());
  bitbtnExport->setEnabled(!TypeList);
  bitbtnImport->setEnabled(!TypeList);
  if (traits.type == TObjectType::kReferenceSystem) {
    tabDetails->SetSystemSource([this](TStringTree* tree) {
      const KeptRecords kept(Data());
      return Processor->WriteToTree(tree, 0, 0);
    });
  }
  const SelectorControls& controls = *this;
  search_.emplace(controls, *listModel_, *Processor);
  ConnectControls();
  const QSize third = QGuiApplication::primaryScreen()->availableSize() / 3;
  resize(third.expandedTo(sizeHint()));
}

TformQvRfSelector::~TformQvRfSelector() = default;

void TformQvRfSelector::ConnectControls() {
  ConnectButtons();
  new SelectorKeys(this, *this, *search_, *this, Data().Ui());
  connect(dbgridList, &QAbstractItemView::doubleClicked, this, [this] { bitbtnOkClick(); });
  connect(comboSearch, &QComboBox::editTextChanged, this, [this] { SearchTextChanged(); });
  connect(listModel_.get(), &DataSetTableModel::CursorMoved, this, [this] { CursorMoved(); });
  watch_->Watch(this);
  connect(watch_.get(), &StoreWatch::Changed, this, [this] {
    if (isVisible()) CursorMoved();
  });
}

void TformQvRfSelector::ConnectButtons() {
  const auto onClick = [this](QAbstractButton* button, auto&& action) {
    connect(button, &QAbstractButton::clicked, this,
            [this, action] { Guarded(Data().Ui(), action); });
  };
  onClick(bitbtnOk, [this] { bitbtnOkClick(); });
  onClick(bitbtnCancel, [this] { bitbtnCloseClick(); });
  onClick(bitbtnClose, [this] { bitbtnCloseClick(); });
  onClick(bitbtnNew, [this] { DoNew(); });
  onClick(bitbtnEdit, [this] { DoEdit(); });
  onClick(bitbtnRemove, [this] { DoRemove(); });
  onClick(bitbtnImport, [this] { bitbtnImportClick(); });
  onClick(bitbtnExport, [this] {
    bitbtnExportClick(QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier));
  });
  onClick(bitbtnSearchDown, [this] { search_->Find(true); });
  onClick(bitbtnSearchUp, [this] { search_->Find(false); });
  // The button that was clicked is gone, and the focus goes to what took its view's place.
  onClick(bitbtnList, [this] {
    bitbtnListClick();
    dbgridList->setFocus();
  });
  onClick(bitbtnDetails, [this] {
    bitbtnDetailsClick();
    tabDetails->FocusPage();
  });
}

bool TformQvRfSelector::Select(TStringTree* tree, int id, bool hideOwner, int* key, int index) {
  return Select({.tree = tree, .id = id, .index = index, .hideOwner = hideOwner, .key = key});
}

bool TformQvRfSelector::Select(const Choice& choice) {
  if (IsRunning()) return false;
  // A key that is gone leaves the data set on its last record.
  if (choice.key != nullptr && *choice.key != 0) Processor->LocateKey(*choice.key);
  {
    std::optional<HiddenForm> hidden;
    if (choice.hideOwner) hidden.emplace(Owner());
    bitbtnListClick();
    SetDialogMode(true, Data().DialogMode == kSimpleMode);
    setWindowTitle(ToQt(CaptionOf(TextId::kSelect, *Processor)));
    Run();
    if (Chosen) TakeChoice(choice);
  }
  if (choice.key != nullptr) *choice.key = Chosen ? Processor->GetCurrentKey() : 0;
  return Chosen;
}

bool TformQvRfSelector::Browse(int key, bool showDetails, bool writable) {
  if (IsRunning()) return false;
  const HiddenForm hidden(Owner());
  bitbtnListClick();
  if (!Processor->LocateKey(key)) {
    Processor->DataSet->First();
  } else if (showDetails) {
    bitbtnDetailsClick();
  }
  SetDialogMode(false, !writable && Data().DialogMode == kSimpleMode);
  setWindowTitle(ToQt(CaptionOf(TextId::kView, *Processor)));
  Run();
  return false;
}

void TformQvRfSelector::Run() {
  Chosen = false;
  ClearSearch();
  const LiveControls live(*Processor);
  RunModal();
}

void TformQvRfSelector::TakeChoice(const Choice& choice) {
  Chosen = Guarded(Data().Ui(), [&] {
    const int key = Processor->GetCurrentKey();
    Processor->DataSet->Refresh();
    if (!Processor->LocateKey(key)) {
      throw std::runtime_error(
          QvPlatform::FromQt(Translated("The object has been removed by another user.")));
    }
    if (choice.tree != nullptr) WriteChoice(choice);
    if (!choiceGoesOn_) StampLastUse();
  });
}

// Throws unless the whole object was written; the caller's tree then keeps its content.
void TformQvRfSelector::WriteChoice(const Choice& choice) {
  TStringTree object;
  if (!Processor->WriteToTree(&object, choice.id, choice.index)) {
    throw std::runtime_error(QvPlatform::FromQt(
        Translated("The object refers to one that is not in the database. It cannot be used.")));
  }
  if (choice.id == 0) {
    QvCommonUtils::ClearTree(choice.tree);
  } else {
    QvCommonUtils::RemoveSubtree(choice.tree, choice.id, choice.index);
  }
  QvCommonUtils::MergeTree(&object, choice.tree);
}

// When the record was last chosen only sorts suggestions. Where it cannot be kept, as in a database
// that is read-only for this user or that another program is writing to, the choice stands.
void TformQvRfSelector::StampLastUse() {
  QvPlatform::TQvDataSet& dataSet = *Processor->DataSet;
  const int key = Processor->GetCurrentKey();
  QvPlatform::TimedWaiter shortly(kWaitForStamp);
  try {
    const QvPlatform::WaiterScope scope(shortly);
    dataSet.Refresh();
    if (Processor->GetCurrentKey() != key) return;
    dataSet.Edit();
    dataSet.FieldByName("LAST_USE").SetFloat(QvPlatform::CurrentMoment());
    dataSet.Post();
  } catch (const std::exception&) {
    dataSet.Cancel();
  }
}

bool TformQvRfSelector::SelectWhere(const RowFilter& where, const Choice& choice) {
  QvPlatform::TQvDataSet& dataSet = *Processor->DataSet;
  const int number = dataSet.FieldByName(where.field).GetIndex();
  int chosenKey = 0;
  Guarded(Data().Ui(), [&] {
    Rearrange(dataSet, [&](QvPlatform::TQvDataBuffer& buffer) {
      buffer.SetFilter(number, where.value, QvPlatform::TQvDbIntFilter::kEqual, true);
    });
    const QScopedValueRollback goesOn(choiceGoesOn_, true);
    if (Select({.hideOwner = choice.hideOwner, .key = choice.key}))
      chosenKey = Processor->GetCurrentKey();
  });
  const bool whole = Guarded(Data().Ui(), [&] {
    Rearrange(dataSet, [](QvPlatform::TQvDataBuffer& buffer) { buffer.ClearFilter(true); });
  });
  // Only now: an object may refer to one of its own table that the filter hides.
  Chosen = whole && Processor->LocateKey(chosenKey) && Guarded(Data().Ui(), [&] {
             if (choice.tree != nullptr) WriteChoice(choice);
             StampLastUse();
           });
  if (!Chosen && choice.key != nullptr) *choice.key = 0;
  return Chosen;
}

void TformQvRfSelector::SetDialogMode(bool selectMode, bool readOnly) {
  bitbtnOk->setVisible(selectMode);
  bitbtnCancel->setVisible(selectMode);
  bitbtnClose->setVisible(!selectMode);
  const bool files = !selectMode || Data().ShowImportExport;
  bitbtnExport->setVisible(files);
  bitbtnImport->setVisible(files);
  bitbtnNew->setVisible(!readOnly && !TypeList);
  bitbtnEdit->setVisible(!readOnly);
  bitbtnRemove->setVisible(!readOnly && !TypeList);
  (selectMode ? bitbtnOk : bitbtnClose)->setDefault(true);
  dbgridList->EqualiseColumns();
}

bool TformQvRfSelector::HasEditDialog() const {
  return EditForm != nullptr || HasEditForm(Processor->Descriptor().type);
}

TformQvRfEdit* TformQvRfSelector::NeedEditForm() {
  if (EditForm == nullptr) EditForm = chooser_.FormFor(this, Processor->Descriptor().type, 0);
  return EditForm;
}

void TformQvRfSelector::UpdateEditButtons() {
  const bool current = HasVisibleCurrent();
  const bool edits = HasEditDialog();
  if (!edits) {
    for (QPushButton* button : {bitbtnNew, bitbtnEdit}) {
      button->setToolTip(Translated("There is no edit dialog for these objects yet"));
    }
  }
  bitbtnNew->setEnabled(edits && !TypeList);
  bitbtnEdit->setEnabled(edits && current);
  bitbtnRemove->setEnabled(current && !TypeList);
  bitbtnDetails->setEnabled(current);
  bitbtnExport->setEnabled(current && !TypeList);
  // On an empty table OK stands, and ends without a choice.
  const QvPlatform::TQvDataSet& dataSet = *Processor->DataSet;
  bitbtnOk->setEnabled(current || !dataSet.GetActive() || dataSet.RecordCount() == 0);
}

bool TformQvRfSelector::GetInfo(TStrings* lines) {
  return Processor->GetInfoLines(lines);
}

void TformQvRfSelector::FormShow(bool first) {
  ModalForm::FormShow(first);
  // A source that was not asleep has nothing to tell on waking; the list is to be true anyway.
  source_.SetEnabled(false);
  source_.SetEnabled(true);
  UpdateEditButtons();
  if (!first) return;
  layout()->activate();
  dbgridList->EqualiseColumns();
  comboSearch->setFocus(Qt::OtherFocusReason);
}

void TformQvRfSelector::FormHide() {
  source_.SetEnabled(false);
}

void TformQvRfSelector::resizeEvent(QResizeEvent* event) {
  ModalForm::resizeEvent(event);
  dbgridShowAll->setGeometry(rect());
}

void TformQvRfSelector::bitbtnListClick() {
  tabDetails->hide();
  bitbtnList->hide();
  dbgridList->show();
  bitbtnDetails->show();
}

void TformQvRfSelector::bitbtnDetailsClick() {
  TStrings lines;
  if (!GetInfo(&lines)) return;
  tabDetails->ShowObject(lines);
  dbgridList->hide();
  bitbtnDetails->hide();
  tabDetails->show();
  bitbtnList->show();
}

void TformQvRfSelector::bitbtnOkClick() {
  Chosen = Processor->GetCurrentKey() != 0;
  done(Chosen ? Accepted : Rejected);
}

void TformQvRfSelector::bitbtnCloseClick() {
  Chosen = false;
  reject();
}

bool TformQvRfSelector::NewByType() {
  const int key = Processor->GetCurrentKey();
  TformQvRfEdit* form = FormOfNew();
  const bool made = form != nullptr && form->CreateNew();
  if (!made) Processor->LocateKey(key);
  return made;
}

bool TformQvRfSelector::EditByType() {
  const int key = Processor->GetCurrentKey();
  TformQvRfEdit* form = FormOfCurrent();
  const bool edited = form != nullptr && form->EditCurrent();
  Processor->LocateKey(key);
  return edited;
}

void TformQvRfSelector::bitbtnNewClick() {
  if (NewByType()) {
    Saved();
    ShowCurrentRecord();
  }
  UpdateEditButtons();
}

void TformQvRfSelector::bitbtnEditClick() {
  if (EditByType()) {
    Saved();
    ShowCurrentRecord();
  }
  UpdateEditButtons();
}

void TformQvRfSelector::bitbtnRemoveClick() {
  if (!Processor->DeleteWithConsent(this)) return;
  bitbtnListClick();
  search_->KeepCurrentInSight();
  UpdateEditButtons();
}

void TformQvRfSelector::bitbtnExportClick(bool wholeTable) {
  if (wholeTable) {
    ExportTable(this, *Processor);
  } else if (HasVisibleCurrent()) {
    ExportObject(this, *Processor);
  }
}

void TformQvRfSelector::bitbtnImportClick() {
  ImportObject(this, *Processor);
  ShowCurrentRecord();
  UpdateEditButtons();
}

void TformQvRfSelector::ShowAllFields(bool show) {
  if (show && allModel_ == nullptr) {
    allModel_ = std::make_unique<DataSetTableModel>(
        source_, std::vector<DataSetTableModel::Column>{}, nullptr);
    dbgridShowAll->SetDataSetModel(allModel_.get());
  }
  dbgridShowAll->setEnabled(show);
  if (show) {
    dbgridShowAll->setGeometry(rect());
    dbgridShowAll->raise();
    dbgridShowAll->show();
    dbgridShowAll->setFocus();
  } else {
    dbgridShowAll->hide();
    dbgridShowAll->lower();
    dbgridList->setFocus();
  }
}

void TformQvRfSelector::ClearSearch() {
  if (comboSearch->currentText().isEmpty()) {
    SearchTextChanged();
  } else {
    comboSearch->setEditText(QString());
  }
}

void TformQvRfSelector::SearchTextChanged() {
  if (!comboSearch->currentText().isEmpty()) bitbtnListClick();
  search_->Apply();
  CursorMoved();
}

void TformQvRfSelector::ShowCurrentRecord() {
  if (!HasVisibleCurrent()) ClearSearch();
}

void TformQvRfSelector::CursorMoved() {
  UpdateEditButtons();
  search_->ShowCount(watch_->Trouble());
  if (!tabDetails->isHidden()) bitbtnDetailsClick();
}

}  // namespace QvRefSystem
