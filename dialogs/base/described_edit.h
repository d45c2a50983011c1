#pragma once

#include <vector>

#include "dialogs/base/edit_base.h"
#include "dialogs/base/row_controls.h"

class QPushButton;
class QVBoxLayout;

namespace QvRefSystem {

/// An edit dialog made from the description of its form: it makes the controls, fills them, checks
/// all of them on every attempt to save, marks what it refuses, and stores the record. A subclass
/// adds only what its object alone does, in the hooks below.
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
  void ButtonClick(std::size_t row);
  void LeadClick(std::size_t row);
  [[nodiscard]] bool CheckRow(std::size_t row);
  [[nodiscard]] bool CheckRows();
  [[nodiscard]] bool Write();

  const FormDescription& form_;
  FormRecord record_;
  std::vector<RowControls> rows_;
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
