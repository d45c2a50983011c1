#pragma once

#include <string>
#include <vector>

namespace QvRefSystem {

/// What one row of a form shows.
struct RowState {
  /// The text in the control; of a list, that of its chosen item.
  std::string text;
  /// The key of a reference, or the place of a list's chosen item.
  int key = 0;
  /// Whether the radio button or the box in front is checked.
  bool checked = false;
};

/// A named text that a dialog shows beside its rows.
struct BesideText {
  /// What tells it from the others.
  int code = 0;
  /// What it is called, in the language of the user.
  std::string caption;
  /// The text.
  std::string value;
};

/// What all of a form shows, so that it can be compared and put back.
struct FormState {
  /// The rows, in the form's order.
  std::vector<RowState> rows;
  /// What stands beside them.
  std::vector<BesideText> beside;
};

}  // namespace QvRefSystem
