#pragma once

#include <QObject>

#include "platform/ui/user_interface.h"

class QDialog;
class QKeyEvent;

namespace QvRefSystem {

struct SelectorControls;
class SelectorSearch;

/// What a user can ask of a selector by a key.
class SelectorActions {
 public:
  virtual ~SelectorActions() = default;

  /// Ends the run with the current record as the chosen one.
  virtual void DoChoose() = 0;
  /// Removes the current record, after the user's consent.
  virtual void DoRemove() = 0;
  /// Makes a record in its edit dialog.
  virtual void DoNew() = 0;
  /// Changes the current record in its edit dialog.
  virtual void DoEdit() = 0;
  /// Writes the current object to a file.
  virtual void DoExport() = 0;
  /// Takes an object from a file.
  virtual void DoImport() = 0;
  /// Shows the list in the place of the details.
  virtual void ShowList() = 0;
  /// Covers the form with all fields of the table, or uncovers it.
  virtual void ShowAllFields(bool show) = 0;
};

/// The keys of a selector. A key does no more than its button would, and what goes wrong on the way
/// is told to the user.
class SelectorKeys final : public QObject {
  Q_OBJECT

 public:
  /// Takes the keys of the controls, and those of the form wherever the focus is. The form owns the
  /// object; all others must live as long as the form's controls.
  SelectorKeys(QDialog* form, const SelectorControls& controls, SelectorSearch& search,
               SelectorActions& actions, QvPlatform::TUserInterface& ui);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ConnectShortcuts(QDialog* form);
  [[nodiscard]] bool KeyDown(const QObject* watched, const QKeyEvent& event);
  [[nodiscard]] bool dbgridListKeyDown(const QKeyEvent& event);
  [[nodiscard]] bool dbgridShowAllKeyDown(const QKeyEvent& event);
  [[nodiscard]] bool comboSearchKeyDown(const QKeyEvent& event);
  [[nodiscard]] bool ControlShiftKey(int key);
  [[nodiscard]] bool PlainKey(const QKeyEvent& event);
  [[nodiscard]] bool EnterInList();
  [[nodiscard]] bool EnterInSearch();
  void GoToList();

  const SelectorControls& controls_;
  SelectorSearch& search_;
  SelectorActions& actions_;
  QvPlatform::TUserInterface& ui_;
};

}  // namespace QvRefSystem
