#pragma once

#include <string>

#include "database/storage_files.h"
#include "dialogs/base/edit_base.h"
#include "dialogs/edit/edit_forms.h"
#include "forms/form_descriptions.h"
#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {

/// TYPE of the one map projection type.
inline constexpr int kTransverseMercator = 9807;

/// What the user does in one dialog.
using Act = std::function<void(QWidget&)>;

/// Clicks a button that opens a dialog, and does something in there.
template <typename Dialog, typename DoInDialog>
void Open(const QWidget& window, const char* button, DoInDialog act) {
  ScreenUser user;
  user.In<Dialog>(act);
  Click(window, button);
}

/// Each clicks the button of that name.
void Ok(QWidget& dialog);
void Cancel(QWidget& dialog);
void Save(QWidget& dialog);
void Close(QWidget& dialog);
/// Does so, and closes the dialog unless that has ended it.
[[nodiscard]] Act ThenClose(const Act& act);

/// Clicks a button that opens a selector, and takes what it marks, or the object of that name. The
/// window is hidden meanwhile.
void Choose(const QWidget& window, const char* button, const char* name = "");
/// Takes the last object of the list.
void ChooseLast(QWidget& selector);
/// Clicks a button that asks for a file, and names one.
void NameFile(const QWidget& window, const char* button, const std::string& path);
/// Checks a radio button or a box at its mark: the middle of a wide one is no place to click.
void Check(const QWidget& window, const char* objectName);
[[nodiscard]] bool IsChecked(const QWidget& window, const char* objectName);
/// Clicks into a control and types a text in the place of what is there.
void Type(const QWidget& window, const char* objectName, const std::string& text);
[[nodiscard]] std::string TipOf(const QWidget& window, const char* objectName);
/// The edits or labels of a grid of heights: north, west, east, south, and the cells.
inline constexpr std::array kGridParts{"ExtentsNorth", "ExtentsWest", "ExtentsEast",
                                       "ExtentsSouth", "StepWE",      "StepNS"};
using GridTexts = std::array<std::string, kGridParts.size()>;
/// Their texts, joined by blanks; the names of the controls begin so.
[[nodiscard]] std::string GridOf(const QWidget& window, const std::string& prefix);
void TypeGrid(const QWidget& window, const std::string& prefix, const GridTexts& texts);
/// Whether a control stands on a background of that colour.
[[nodiscard]] bool IsPainted(const QWidget& window, const char* objectName, const QColor& colour);
/// The controls of the form on the refusal's colour, joined by blanks.
[[nodiscard]] std::string RefusedControls(const QWidget& window,
                                          const QvRefSystem::FormDescription& form);

/// Sets a field of the current record.
void SetField(QvPlatform::TQvDataSet& table, const char* field, const std::string& value);
/// Gives a field of the record of that name, its description unless another is told, another value
/// in a data set of its own, as another program does.
void ChangeElsewhere(const QvPlatform::TQvDataSet& table, const std::string& name,
                     const char* field = "DESCRIPTION", const char* value = "theirs");

/// Expects that the check of the database finds nothing.
void ExpectSound(const TestDatabase& database);

/// Tests of edit dialogs over the small database, with a window that owns the dialogs.
class EditDialogTest : public DialogTest {
 protected:
  [[nodiscard]] QvRefSystem::TformQvRfEdit& FormOf(const QvRefSystem::FormDescription& form);
  /// Runs the dialog on the current record, or on a new one; the user closes what `act` leaves
  /// open. True if it was saved.
  bool Change(const QvRefSystem::FormDescription& form, const Act& act);
  bool Make(const QvRefSystem::FormDescription& form, const Act& act);

  [[nodiscard]] QvPlatform::TQvDataSet& Table(const QvRefSystem::FormDescription& form) const;
  /// Fields of the current record as texts, "NAME=x FACTOR_B=1".
  [[nodiscard]] std::string Record(const QvRefSystem::FormDescription& form,
                                   std::initializer_list<const char*> fields) const;
  [[nodiscard]] std::string TextOfField(const QvRefSystem::FormDescription& form,
                                        const char* field) const;
  /// The names of the files of heights.
  [[nodiscard]] std::vector<std::string> HeightFiles() const {
    return QvRefSystem::ListStorageFiles(database_.data->GetHeightsPrefix(), false);
  }
  /// Stamps an object, the first one without a name, so that a new record begins with it.
  void UseLast(QvRefSystem::TObjectType object, const std::string& name = {});

  QWidget owner_;
};

/// The same with two records of each kind that another refers to.
class EditTest : public EditDialogTest {
 protected:
  EditTest();

  /// Makes a record that the dialog takes as it is, but for the given fields, and makes it current.
  int AddValid(const QvRefSystem::FormDescription& form, const std::string& name,
               const std::vector<std::pair<const char*, std::string>>& fields = {});
};

}  // namespace refframe_tests
