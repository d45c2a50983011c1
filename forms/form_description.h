#pragma once

#include <algorithm>
#include <span>
#include <string_view>

#include "processors/object_descriptor.h"

/// What the edit dialog of an object asks for, as data: its rows in the order in which they are
/// checked, which is also that in which they are shown and in which Tab walks them. The dialogs
/// make the controls; the tests walk the same rows.
namespace QvRefSystem {

/// What a row is. Names of controls are those by which tests and style sheets find them.
enum class RowKind : unsigned char {
  kText,       ///< one line of text, kept as typed
  kMemo,       ///< several lines of text
  kNumber,     ///< a floating-point number in the notation of the user's locale
  kReference,  ///< the key of another object: its name, and a button that chooses one
  kList,       ///< a drop-down list; its integer is the place of the chosen item, -1 for none
  kChoice,     ///< no more than its lead
  kPanel,      ///< made and laid out by the dialog's own code
  kColumn,     ///< begins a column under a heading, beside the column ahead of it
  kBox,        ///< the same in a frame that bears the caption
  kEndColumns  ///< ends the columns; the rows behind it take the whole width again
};

/// What stands in front of a control. The control of an unchecked lead is not in use: it cannot be
/// changed and is not checked.
enum class LeadKind : unsigned char { kLabel, kRadio, kCheck };

/// When a control is refused.
enum class Rule : unsigned char {
  kNone,
  kNotEmpty,  ///< text: empty
  kNotZero,   ///< number: 0, or no number
  kChosen     ///< reference: key 0; list: nothing chosen
};

/// The key of a reference in a new record.
enum class NewKey : unsigned char { kNone, kLastUsed };

struct FormRow {
  RowKind kind;
  const char* control = "";
  const char* lead = "";
  const char* caption = "";
  const char* column = "";
  Rule rule = Rule::kNone;
  LeadKind leadKind = LeadKind::kLabel;
  /// Radio buttons of one number exclude one another.
  int choice = 0;
  /// kReference: what is referred to, and the "..." button.
  TObjectType object = TObjectType::kNone;
  const char* button = "";
  NewKey newKey = NewKey::kNone;
  /// kReference: a key whose object is not there stays, and shows no name; else it becomes 0.
  bool keepsKey = false;
  /// kList: the items.
  std::span<const char* const> items = {};
  /// Blanks round a stored text do not show.
  bool trimmed = false;
  /// How much of the height that is left over the row takes, against the others.
  int stretch = 0;
  /// The control is placed by the panel that follows.
  bool inPanel = false;
  /// The mark of a refusal goes when the control is entered; that of a reference, when its button
  /// is clicked.
  bool enteringClears = true;
};

constexpr FormRow TextRow(const char* control, const char* lead, const char* caption,
                          const char* column, Rule rule = Rule::kNone) {
  return {.kind = RowKind::kText,
          .control = control,
          .lead = lead,
          .caption = caption,
          .column = column,
          .rule = rule};
}
constexpr FormRow ReferenceRow(const char* control, const char* button, const char* lead,
                               const char* caption, const char* column, TObjectType object,
                               NewKey newKey = NewKey::kNone, Rule rule = Rule::kChosen) {
  return {.kind = RowKind::kReference,
          .control = control,
          .lead = lead,
          .caption = caption,
          .column = column,
          .rule = rule,
          .object = object,
          .button = button,
          .newKey = newKey,
          .enteringClears = false};
}
/// The same row in use only while the radio button (or box) in front of it is checked.
constexpr FormRow Led(FormRow row, LeadKind kind, int choice = 0) {
  row.leadKind = kind;
  row.choice = choice;
  return row;
}
constexpr FormRow Unmarked(FormRow row) {
  row.enteringClears = false;
  return row;
}
constexpr FormRow ListRow(const char* control, const char* lead, const char* caption,
                          std::span<const char* const> items) {
  return {.kind = RowKind::kList,
          .control = control,
          .lead = lead,
          .caption = caption,
          .rule = Rule::kChosen,
          .items = items};
}
constexpr FormRow ColumnRow(const char* lead = "", const char* caption = "") {
  return {.kind = RowKind::kColumn, .lead = lead, .caption = caption};
}
constexpr FormRow BoxRow(const char* control, const char* caption) {
  return {.kind = RowKind::kBox, .control = control, .caption = caption};
}
constexpr FormRow PanelRow(const char* control, const char* lead = "", const char* caption = "",
                           int stretch = 0) {
  return {.kind = RowKind::kPanel,
          .control = control,
          .lead = lead,
          .caption = caption,
          .stretch = stretch};
}
inline constexpr FormRow kEndColumns{.kind = RowKind::kEndColumns};

/// The rows that every dialog has.
inline constexpr FormRow kNameRow = TextRow("edName", "lblName", "Name", "NAME", Rule::kNotEmpty);
inline constexpr FormRow kDescriptionRow{.kind = RowKind::kMemo,
                                         .control = "memoDescription",
                                         .lead = "lblDescription",
                                         .caption = "Description",
                                         .column = "DESCRIPTION",
                                         .stretch = 1};
/// The same with room behind the caption.
inline constexpr FormRow kSpacedDescriptionRow = [] {
  FormRow row = kDescriptionRow;
  row.caption = "Description   ";
  return row;
}();
inline constexpr FormRow kAbbreviationRow =
    TextRow("edAbbreviation", "lblAbbreviation", "Abbreviation", "ABBREVIATION");

/// An integer that the dialog writes without asking.
struct FixedValue {
  const char* column;
  int value;
  /// False: a new record alone gets it.
  bool always = false;
};

/// What LAST_USE of an edited record becomes; of a new one it is always the current moment.
enum class EditStamp : unsigned char { kNow, kZero };

struct FormDescription {
  TObjectType object;
  /// TYPE of the objects, where those of different types have different dialogs; 0 for all.
  int type = 0;
  const char* caption;
  std::span<const FormRow> rows;
  std::span<const FixedValue> fixed = {};
  /// The dialog's share of the screen, when it is first shown.
  double width = 1.0 / 4;
  double height = 1.0 / 2;
  EditStamp stamp = EditStamp::kNow;
  /// False: the table's records are fixed, and only edited.
  bool makesRecords = true;
};

/// Place of a control's row; rows.size() if no row has that control.
[[nodiscard]] constexpr std::size_t RowOf(const FormDescription& form, std::string_view control) {
  std::size_t at = 0;
  while (at < form.rows.size() && form.rows[at].control != control)
    ++at;
  return at;
}

/// Whether every row has what its kind needs, and each name stands once.
consteval bool IsSound(std::span<const FormRow> rows) {
  const auto has = [](const char* text) { return *text != 0; };
  for (const FormRow& row : rows) {
    const bool bound = row.kind <= RowKind::kReference;
    if (bound && (!has(row.column) || !has(row.control))) return false;
    if ((row.kind == RowKind::kReference) != has(row.button)) return false;
    if ((row.leadKind == LeadKind::kRadio) != (row.choice != 0)) return false;
    if (row.kind == RowKind::kChoice && row.leadKind == LeadKind::kLabel) return false;
    const auto same = [&](const FormRow& other) {
      return std::string_view(row.control) == other.control && has(row.control);
    };
    if (has(row.control) && std::ranges::count_if(rows, same) != 1) return false;
  }
  return true;
}

}  // namespace QvRefSystem
