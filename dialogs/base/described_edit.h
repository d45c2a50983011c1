#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "dialogs/base/edit_base.h"
#include "dialogs/base/edit_conflict.h"
#include "dialogs/base/row_controls.h"

class QPushButton;
class QVBoxLayout;

namespace QvRefSystem {

/// An edit dialog made from the description of its form: it makes the controls, fills them, checks
/// all of them on every attempt to save, marks what it refuses, and stores the record. What
/// somebody else has changed meanwhile is marked as well, and the user decides. A subclass adds
/// only what its object alone does, in the hooks below.
class DescribedEdit : public TformQvRfEdit {
  Q_OBJECT

 public:
  /// `form` must outlive the dialog; else the conditions are those of TformQvRfEdit.
  DescribedEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form);
  ~DescribedEdit() override;

 protected:
  // What an object does beside its rows. The rows of a new record are empty or have their defaults
  // when OnNewRecord is called; those of an edited one show the record, which is current.
  virtual void OnNewRecord() {}
  /// Shows what the record says beside its rows, and nothing else: what others have stored is shown
  /// by it, too.
  virtual void OnShowRecord() {}
  /// Called behind it when a run begins.
  virtual void OnEditRecord() {}
  /// Called when the controls have been read and before they are checked.
  virtual void OnRead() {}
  /// Checks what the rules of the rows do not; false if it has refused anything.
  [[nodiscard]] virtual bool CheckMore() { return true; }
  /// Writes fields of the pending record that no row holds.
  virtual void WriteMore(QvPlatform::TQvDataSet& /*dataSet*/) {}
  /// Tables of what belongs to the record beside it, and the writing of it; one transaction with
  /// the record. Without tables StoreBeside is not called.
  [[nodiscard]] virtual std::vector<QvPlatform::TQvDataSet*> TablesBeside() { return {}; }
  virtual void StoreBeside(int /*key*/) {}
  /// What the dialog shows beside its rows and stores in StoreBeside, as texts, and the panel in
  /// which it does.
  [[nodiscard]] virtual std::vector<BesideText> BesideTexts() { return {}; }
  virtual void ShowBeside(const std::vector<BesideText>& /*texts*/) {}
  [[nodiscard]] virtual std::string_view BesidePanel() const { return {}; }
  /// Puts what somebody else has stored into a row, and into its lead.
  virtual void Take(const FormRow& row, const RowState& theirs);
  /// Puts what somebody else has stored into what stands beside the rows, as far as he has changed
  /// it.
  void TakeBeside();
  /// The user knows what somebody else has stored, and stores over it. The record is current.
  virtual void OnKeepMine() {}
  /// A lead was clicked, or set by the program.
  virtual void OnLeads() {}
  /// Runs the dialog in which the object of a row is chosen; the default is its list. True if
  /// one was, and it is then current on its processor.
  [[nodiscard]] virtual bool Choose(const FormRow& row);
  /// Called when another object was taken over into the row.
  virtual void OnChosen(const FormRow& /*row*/) {}

  /// The controls of a row, and what it holds since it was last filled, chosen or read. Throws
  /// std::out_of_range for a control that the form does not have.
  [[nodiscard]] RowControls& RowOf(std::string_view control);
  [[nodiscard]] FormValue& ValueOf(std::string_view control) { return record_.At(control); }
  /// Puts a widget of the dialog's own into a panel, and where the panel stands in Tab's walk.
  void FillPanel(std::string_view panel, QWidget* content);
  /// The radio button or check box of that name.
  [[nodiscard]] QAbstractButton& LeadOf(std::string_view lead);
  /// Checks that one of a group of radio buttons, or none for "".
  void SetChoice(int choice, std::string_view lead);
  /// Marks a control; the colour is ErrorColour unless another is given.
  void Refuse(std::string_view control, const QString& reason, const QColor& colour = {});
  /// Takes over what the user has typed.
  void ReadControls();
  /// Marks a row that its rule refuses, as far as it is in use; the mark of any other one goes.
  [[nodiscard]] bool CheckRow(std::string_view control);
  /// Shows what a row holds again in its control.
  void Show(std::string_view control);
  /// Enables or disables a reference: one that is not needed has no key and is not checked, and one
  /// that comes to be needed begins with the object last used.
  void SetNeeded(std::string_view control, bool needed);
  /// Lets the rows be used whose leads are checked.
  void UpdateLeads();
  /// Runs an action of the user's; what it throws is told.
  void Act(const std::function<void()>& action);

  [[nodiscard]] bool StoreRecord() override;
  [[nodiscard]] bool EditRecord() override;
  [[nodiscard]] bool NewRecord() override;
  void FormShow(bool first) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void BuildRows();
  void BuildButtons(QVBoxLayout* place);
  void ConnectRow(RowControls& row);
  void BeginFilled();
  void ShowValues();
  void ShowReferences();
  void ShowRecord();
  [[nodiscard]] FormState TakeState();
  void PutState(const FormState& state);
  void PutRow(std::size_t row, const RowState& state);
  void PutLead(const FormRow& row, bool checked);
  [[nodiscard]] bool SettleConflict(bool removed);
  [[nodiscard]] bool AskRemoved();
  [[nodiscard]] FormState StateOfTheirs(const FormState& mine);
  void ShowMarks();
  void ClearMarks();
  void TakeTheirs(std::size_t row);
  void TakeAllTheirs();
  void ButtonClick(std::size_t row);
  void LeadClick(std::size_t row);
  [[nodiscard]] bool CheckRow(std::size_t row);
  [[nodiscard]] bool CheckRows();
  [[nodiscard]] bool Write();
  /// Nothing if the record was stored, else whether it was removed by somebody else.
  [[nodiscard]] std::optional<bool> Store();

  const FormDescription& form_;
  FormRecord record_;
  /// The form as it showed the record that the user began with, or whose changes he knows.
  FormState before_;
  /// What somebody else has changed, as long as it is marked.
  std::optional<EditConflict> conflict_;
  std::vector<std::unique_ptr<RowControls>> rows_;
  std::map<int, QButtonGroup*> choices_;
  QPushButton* bitbtnSave_ = nullptr;
  QPushButton* bitbtnClose_ = nullptr;
};

/// The dialog of an object that needs no more than its description.
template <const FormDescription& Form>
class EditOf : public DescribedEdit {
 public:
  /// The conditions are those of TformQvRfEdit.
  EditOf(QWidget* owner, const Chooser& chooser) : DescribedEdit(owner, chooser, Form) {}
};

}  // namespace QvRefSystem
