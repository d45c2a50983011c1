#pragma once

#include <memory>
#include <optional>

#include "dialogs/base/chooser.h"
#include "dialogs/select/selector_controls.h"
#include "dialogs/select/selector_keys.h"
#include "dialogs/select/selector_search.h"
#include "platform/dbset/data_set.h"
#include "platform/dbset/data_source.h"
#include "platform/widgets/data_set_model.h"
#include "platform/widgets/modal_form.h"
#include "processors/data_processor.h"

namespace QvRefSystem {

class StoreWatch;
class TformQvRfEdit;

/// What a selector of one object type is.
struct SelectorTraits {
  /// The type of the objects that the list shows.
  TObjectType type;
  /// A table of types: its records are neither made nor removed, nor do they travel in files.
  bool typeList = false;
  /// Binds the list to a data source of its own instead of the data module's.
  bool ownSource = false;
};

/// The list dialog of an object type: shows its records, finds them by name, describes them, and
/// starts what changes them.
///
/// It holds no record: the chosen one is the current record of the processor's data set. The data
/// module must be open when a selector is made, and must outlive it.
///
/// What other programs store shows while the list does.
///
/// While a search text stands, only rows whose name contains it show, and only a row that shows can
/// be chosen, described or changed.
class TformQvRfSelector : public QvPlatform::ModalForm,
                          public ObjectList,
                          protected SelectorControls,
                          protected SelectorActions {
  Q_OBJECT

 public:
  /// Throws std::invalid_argument for an object type without a processor. `chooser` must outlive
  /// the list.
  TformQvRfSelector(QWidget* owner, const Chooser& chooser, const SelectorTraits& traits);
  ~TformQvRfSelector() override;

  /// Lets the user choose a record. `key` may be null; else it is the record to start on (0: none)
  /// and becomes the chosen one, 0 after a cancel. The choice is written to `tree` at (id, index)
  /// unless it is null; an object that cannot be written whole is told and not chosen.
  bool Select(TStringTree* tree, int id, bool hideOwner, int* key, int index);
  bool Select(const Choice& choice) override;
  bool SelectWhere(const RowFilter& where, const Choice& choice) override;
  [[nodiscard]] bool NewByType() override;
  [[nodiscard]] bool EditByType() override;
  void PlaceAt(const QPoint& place) override { move(place); }
  /// Lets the user look and maintain. Opens on `key`, in the details view if wanted; a key that is
  /// not there opens the list on its first row. `writable` shows New, Edit and Remove in simple
  /// mode too. Always false.
  bool Browse(int key, bool showDetails, bool writable);
  /// Shows the buttons of choosing or of browsing, and those of changing unless `readOnly`.
  void SetDialogMode(bool selectMode, bool readOnly);
  /// Enables what acts on the current record if and only if there is one that shows.
  void UpdateEditButtons();
  /// The description of the current record; false on an empty table.
  [[nodiscard]] bool GetInfo(TStrings* lines);

  /// The processor of the objects in the list; never null.
  TQvRfDataProcessor* const Processor;
  /// The dialog that edits this object, made on first need; null where there is more than one.
  TformQvRfEdit* EditForm = nullptr;
  /// Whether the table is one of types, see SelectorTraits.
  const bool TypeList;
  /// How the last modal run ended.
  bool Chosen = false;

 protected:
  // One path for the buttons and the keys.
  void DoChoose() override { bitbtnOkClick(); }
  void DoRemove() override { bitbtnRemoveClick(); }
  void DoNew() override { bitbtnNewClick(); }
  void DoEdit() override { bitbtnEditClick(); }
  void DoExport() override { bitbtnExportClick(false); }
  void DoImport() override { bitbtnImportClick(); }
  void ShowList() override { bitbtnListClick(); }
  void ShowAllFields(bool show) override;
  [[nodiscard]] bool HasEditDialog() const;
  /// The dialogs in which New makes an object and Edit changes the current one; null if there is
  /// none, or if the user has chosen none. The default is EditForm.
  [[nodiscard]] virtual TformQvRfEdit* FormOfNew() { return NeedEditForm(); }
  [[nodiscard]] virtual TformQvRfEdit* FormOfCurrent() { return NeedEditForm(); }
  /// Called when an edit dialog has saved.
  virtual void Saved() { bitbtnListClick(); }
  /// EditForm, made if need be; null if the object has no edit dialog.
  TformQvRfEdit* NeedEditForm();

  void bitbtnNewClick();
  void bitbtnEditClick();
  void bitbtnRemoveClick();
  void bitbtnListClick();
  void bitbtnDetailsClick();
  /// Clears the search text if it would hide the current record.
  void ShowCurrentRecord();
  [[nodiscard]] TdatamoduleQvRfData& Data() const { return Processor->Data(); }
  /// The way to lists and dialogs, for what this list owns.
  [[nodiscard]] const Chooser& GetChooser() const { return chooser_; }

  void FormShow(bool first) override;
  void FormHide() override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ConnectControls();
  void ConnectButtons();
  void Run();
  void TakeChoice(const Choice& choice);
  void WriteChoice(const Choice& choice);
  void StampLastUse();
  void bitbtnOkClick();
  void bitbtnCloseClick();
  void bitbtnExportClick(bool wholeTable);
  void bitbtnImportClick();
  void ClearSearch();
  void SearchTextChanged();
  void CursorMoved();
  [[nodiscard]] bool HasVisibleCurrent() const { return search_->HasVisibleCurrent(); }

  const Chooser& chooser_;
  std::shared_ptr<StoreWatch> watch_;
  // Whether the run is a part of a choice that ends behind it.
  bool choiceGoesOn_ = false;
  // The models look at the source, and go first.
  std::unique_ptr<QvPlatform::TDataSource> ownSource_;
  QvPlatform::TDataSource& source_;
  std::unique_ptr<QvPlatform::DataSetTableModel> listModel_;
  std::unique_ptr<QvPlatform::DataSetTableModel> allModel_;
  std::optional<SelectorSearch> search_;
};

}  // namespace QvRefSystem
