#pragma once

#include <QAbstractButton>
#include <map>
#include <memory>

#include "dialogs/edit/system_edit.h"
#include "processors/unstored_system.h"
#include "vertical/working_heights.h"

namespace QvRefSystem {

class TShellReferenceSystem;
class TformQvRfVerticalRefSystemEdit;

/// The dialog of a system that stands on a datum or on an ellipsoid alone, and whose heights count
/// from the ellipsoid, from a height system of its own or from a built-in geoid.
///
/// The stored height system is never touched while the dialog runs: it works on a copy, or on one
/// that was made in this run. Save puts it in the place of the stored one, or removes both if the
/// heights do without; Close removes it and leaves the stored one as it was.
class PlaneSystemEdit : public SystemEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` and `form` must outlive it.
  PlaneSystemEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form);

  /// Assembles the system as it stands in the dialog, in the tree itself (id 0) or in a new subtree
  /// (id, index). Returns false, and marks the controls that stand in the way, if it is not whole.
  [[nodiscard]] bool BuildSystemTree(TStringTree* tree, int id, int index);

 protected:
  void OnNewRecord() override;
  void OnShowRecord() override;
  void OnEditRecord() override;
  void Take(const FormRow& row, const RowState& theirs) override;
  void OnKeepMine() override;
  [[nodiscard]] bool CheckMore() override;
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;
  [[nodiscard]] std::vector<QvPlatform::TQvDataSet*> TablesBeside() override;
  void StoreBeside(int key) override;
  void OnLeads() override;
  [[nodiscard]] bool Choose(const FormRow& row) override;
  void OnChosen(const FormRow& row) override;
  void CancelEdit() override;
  /// Fills in what the dialog holds of a system. This class fills in what both kinds have; a
  /// subclass calls it, and adds what its kind alone has.
  virtual void FillSystem(UnstoredSystem* system);

 private:
  void ListSystemGeoids();
  void DropBrokenReferences();
  void DropIfBroken(const FormRow& row);
  [[nodiscard]] bool CanBeWritten(const FormRow& row);
  /// Shows a height system of that key, or a built-in geoid of that code.
  void ShowHeights(int key, int code);
  /// Begins to work on the height system that the record shows.
  void BeginHeights();
  void CopyHeights();
  [[nodiscard]] bool CheckPlane();
  [[nodiscard]] bool CheckGround();
  [[nodiscard]] bool CheckGeoid();
  [[nodiscard]] bool CheckSystemGeoid();
  [[nodiscard]] std::unique_ptr<TShellReferenceSystem> BuildShellSystem();
  [[nodiscard]] bool ChooseHeights();
  void TakeEllipsoidOfDatum();
  [[nodiscard]] bool IsChosen(const char* radio) { return LeadOf(radio).isChecked(); }

  const FormDescription& form_;
  TformQvRfVerticalRefSystemEdit* VerticalEdit;
  /// The height system of the record as it is stored; the row holds the one that is worked on.
  int OldVerticalKey = 0;
  /// The one that is worked on.
  WorkingHeights working_;
  /// Codes of the built-in geoids by their places in the list.
  std::map<int, int> SystemGeoids;
};

}  // namespace QvRefSystem
