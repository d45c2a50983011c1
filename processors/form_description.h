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
enum class TRowKind : unsigned char {
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
enum class TLeadKind : unsigned char { kLabel, kRadio, kCheck };

/// When a control is refused.
enum class TRule : unsigned char {
  kNone,
  kNotEmpty,  ///< text: empty
  kNotZero,   ///< number: 0, or no number
  kChosen     ///< reference: key 0; list: nothing chosen
};

/// The key of a reference in a new record.
enum class TNewKey : unsigned char { kNone, kLastUsed };

struct TFormRow {
  TRowKind kind;
  const char* control = "";
  const char* lead = "";
  const char* caption = "";
  const char* column = "";
  TRule rule = TRule::kNone;
  TLeadKind leadKind = TLeadKind::kLabel;
  /// Radio buttons of one number exclude one another.
  int choice = 0;
  /// kReference: what is referred to, and the "..." button.
  TObjectType object = TObjectType::kNone;
  const char* button = "";
  TNewKey newKey = TNewKey::kNone;
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

constexpr TFormRow TextRow(const char* control, const char* lead, const char* caption,
                           const char* column, TRule rule = TRule::kNone) {
  return {.kind = TRowKind::kText,
          .control = control,
          .lead = lead,
          .caption = caption,
          .column = column,
          .rule = rule};
}
constexpr TFormRow ReferenceRow(const char* control, const char* button, const char* lead,
                                const char* caption, const char* column, TObjectType object,
                                TNewKey newKey = TNewKey::kNone, TRule rule = TRule::kChosen) {
  return {.kind = TRowKind::kReference,
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
constexpr TFormRow Led(TFormRow row, TLeadKind kind, int choice = 0) {
  row.leadKind = kind;
  row.choice = choice;
  return row;
}
constexpr TFormRow Unmarked(TFormRow row) {
  row.enteringClears = false;
  return row;
}
constexpr TFormRow ListRow(const char* control, const char* lead, const char* caption,
                           std::span<const char* const> items) {
  return {.kind = TRowKind::kList,
          .control = control,
          .lead = lead,
          .caption = caption,
          .rule = TRule::kChosen,
          .items = items};
}
constexpr TFormRow ColumnRow(const char* lead = "", const char* caption = "") {
  return {.kind = TRowKind::kColumn, .lead = lead, .caption = caption};
}
constexpr TFormRow BoxRow(const char* control, const char* caption) {
  return {.kind = TRowKind::kBox, .control = control, .caption = caption};
}
constexpr TFormRow PanelRow(const char* control, const char* lead = "", const char* caption = "",
                            int stretch = 0) {
  return {.kind = TRowKind::kPanel,
          .control = control,
          .lead = lead,
          .caption = caption,
          .stretch = stretch};
}
inline constexpr TFormRow kEndColumns{.kind = TRowKind::kEndColumns};

/// The rows that every dialog has.
inline constexpr TFormRow kNameRow = TextRow("edName", "lblName", "Name", "NAME", TRule::kNotEmpty);
inline constexpr TFormRow kDescriptionRow{.kind = TRowKind::kMemo,
                                          .control = "memoDescription",
                                          .lead = "lblDescription",
                                          .caption = "Description",
                                          .column = "DESCRIPTION",
                                          .stretch = 1};
/// The same with room behind the caption.
inline constexpr TFormRow kSpacedDescriptionRow = [] {
  TFormRow row = kDescriptionRow;
  row.caption = "Description   ";
  return row;
}();
inline constexpr TFormRow kAbbreviationRow =
    TextRow("edAbbreviation", "lblAbbreviation", "Abbreviation", "ABBREVIATION");

/// An integer that the dialog writes without asking.
struct TFixedValue {
  const char* column;
  int value;
  /// False: a new record alone gets it.
  bool always = false;
};

/// What LAST_USE of an edited record becomes; of a new one it is always the current moment.
enum class TEditStamp : unsigned char { kNow, kZero };

struct TFormDescription {
  TObjectType object;
  /// TYPE of the objects, where those of different types have different dialogs; 0 for all.
  int type = 0;
  const char* caption;
  std::span<const TFormRow> rows;
  std::span<const TFixedValue> fixed = {};
  /// The dialog's share of the screen, when it is first shown.
  double width = 1.0 / 4;
  double height = 1.0 / 2;
  TEditStamp stamp = TEditStamp::kNow;
  /// False: the table's records are fixed, and only edited.
  bool makesRecords = true;
};

/// Place of a control's row; rows.size() if no row has that control.
[[nodiscard]] constexpr std::size_t RowOf(const TFormDescription& form, std::string_view control) {
  std::size_t at = 0;
  while (at < form.rows.size() && form.rows[at].control != control)
    ++at;
  return at;
}

/// Whether every row has what its kind needs, and each name stands once.
consteval bool IsSound(std::span<const TFormRow> rows) {
  const auto has = [](const char* text) { return *text != 0; };
  for (const TFormRow& row : rows) {
    const bool bound = row.kind <= TRowKind::kReference;
    if (bound && (!has(row.column) || !has(row.control))) return false;
    if ((row.kind == TRowKind::kReference) != has(row.button)) return false;
    if ((row.leadKind == TLeadKind::kRadio) != (row.choice != 0)) return false;
    if (row.kind == TRowKind::kChoice && row.leadKind == TLeadKind::kLabel) return false;
    const auto same = [&](const TFormRow& other) {
      return std::string_view(row.control) == other.control && has(row.control);
    };
    if (has(row.control) && std::ranges::count_if(rows, same) != 1) return false;
  }
  return true;
}

}  // namespace QvRefSystem
