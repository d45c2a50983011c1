#pragma once

#include <QLineEdit>
#include <QPushButton>
#include <string>

#include "dialogs/base/edit_base.h"
#include "dialogs/edit/edit_forms.h"
#include "forms/form_descriptions.h"
#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {

/// TYPE of the one map projection type.
inline constexpr int kTransverseMercator = 9807;

/// Tests of edit dialogs: a database with two records of each kind that another refers to, and a
/// window that owns the dialogs.
class EditTest : public DialogTest {
 protected:
  EditTest();

  [[nodiscard]] QvRefSystem::TformQvRfEdit& FormOf(const QvRefSystem::FormDescription& form);
  [[nodiscard]] QvPlatform::TQvDataSet& Table(const QvRefSystem::FormDescription& form) const;
  /// Fields of the current record as texts, "NAME=x FACTOR_B=1".
  [[nodiscard]] std::string Record(const QvRefSystem::FormDescription& form,
                                   std::initializer_list<const char*> fields) const;
  [[nodiscard]] std::string TextOfField(const QvRefSystem::FormDescription& form,
                                        const char* field) const;
  /// Makes a record that the dialog takes as it is, and makes it current.
  int AddValid(const QvRefSystem::FormDescription& form, const std::string& name);

  QWidget owner_;
};

/// Clicks into a control and types a text in the place of what is there.
void Type(const QWidget& window, const char* objectName, const std::string& text);
[[nodiscard]] std::string TextOf(const QWidget& window, const char* objectName);
/// Whether a control stands on a background of that colour.
[[nodiscard]] bool IsPainted(const QWidget& window, const char* objectName, const QColor& colour);
/// The controls of the form on the refusal's colour, joined by blanks.
[[nodiscard]] std::string RefusedControls(const QWidget& window,
                                          const QvRefSystem::FormDescription& form);

}  // namespace refframe_tests
