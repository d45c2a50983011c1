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
enum class LeadKind : unsigned char {
  kLabel,  ///< a text; the control is always in use
  kRadio,  ///< a radio button
  kCheck   ///< a check box
};

/// When a control is refused.
enum class Rule : unsigned char {
  kNone,      ///< never
  kNotEmpty,  ///< text: empty
  kNotZero,   ///< number: 0, or no number
  kChosen     ///< reference: key 0; list: nothing chosen
};

/// The key of a reference in a new record.
enum class NewKey : unsigned char {
  kNone,     ///< 0: nothing is chosen yet
  kLastUsed  ///< the object of that type which was used last
};

/// A row of an edit dialog. What its kind does not need stays empty; IsSound tells what it needs.
struct FormRow {
  /// What the row is, and so what its control holds.
  RowKind kind;
  /// The name of the control.
  const char* control = "";
  /// The name of what stands in front of the control.
  const char* lead = "";
  /// The text of the lead, of a heading or of a frame, untranslated.
  const char* caption = "";
  /// The field of the record that the control is filled from and written to.
  const char* column = "";
  /// What of its content is refused.
  Rule rule = Rule::kNone;
  /// What the lead is.
  LeadKind leadKind = LeadKind::kLabel;
  /// A number above 0: radio buttons of one number exclude one another.
  int choice = 0;
  /// kReference: the type of the object referred to.
  TObjectType object = TObjectType::kNone;
  /// kReference: the name of the "..." button.
  const char* button = "";
  /// kReference: what a new record refers to.
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

/// A line of text, bound to a column.
constexpr FormRow TextRow(const char* control, const char* lead, const char* caption,
                          const char* column, Rule rule = Rule::kNone) {
  return {.kind = RowKind::kText,
          .control = control,
          .lead = lead,
          .caption = caption,
          .column = column,
          .rule = rule};
}
/// The controls of a reference, by name.
struct ReferenceControls {
  /// The name of the object referred to.
  const char* control;
  /// The "..." that chooses another object.
  const char* button;
  /// What stands in front of them.
  const char* lead;
};
/// The key of another object, bound to a column.
constexpr FormRow ReferenceRow(const ReferenceControls& controls, const char* caption,
                               const char* column, TObjectType object,
                               NewKey newKey = NewKey::kNone, Rule rule = Rule::kChosen) {
  return {.kind = RowKind::kReference,
          .control = controls.control,
          .lead = controls.lead,
          .caption = caption,
          .column = column,
          .rule = rule,
          .object = object,
          .button = controls.button,
          .newKey = newKey,
          .enteringClears = false};
}
/// The same row in use only while the radio button (or box) in front of it is checked.
constexpr FormRow Led(FormRow row, LeadKind kind, int choice = 0) {
  row.leadKind = kind;
  row.choice = choice;
  return row;
}
/// The same row, whose mark of a refusal stays when the control is entered.
constexpr FormRow Unmarked(FormRow row) {
  row.enteringClears = false;
  return row;
}
/// A drop-down list of which an item must be chosen. It is bound to no column.
constexpr FormRow ListRow(const char* control, const char* lead, const char* caption,
                          std::span<const char* const> items) {
  return {.kind = RowKind::kList,
          .control = control,
          .lead = lead,
          .caption = caption,
          .rule = Rule::kChosen,
          .items = items};
}
/// The begin of a column, with a heading or without one.
constexpr FormRow ColumnRow(const char* lead = "", const char* caption = "") {
  return {.kind = RowKind::kColumn, .lead = lead, .caption = caption};
}
/// The begin of a frame round a column.
constexpr FormRow BoxRow(const char* control, const char* caption) {
  return {.kind = RowKind::kBox, .control = control, .caption = caption};
}
/// A place for what the dialog's own code makes.
constexpr FormRow PanelRow(const char* control, const char* lead = "", const char* caption = "",
                           int stretch = 0) {
  return {.kind = RowKind::kPanel,
          .control = control,
          .lead = lead,
          .caption = caption,
          .stretch = stretch};
}
/// The end of all columns that were begun.
inline constexpr FormRow kEndColumns{.kind = RowKind::kEndColumns};

/// The name, which every dialog has.
inline constexpr FormRow kNameRow = TextRow("edName", "lblName", "Name", "NAME", Rule::kNotEmpty);
/// The description, which every dialog has.
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
/// The abbreviation, which the objects of most dialogs have.
inline constexpr FormRow kAbbreviationRow =
    TextRow("edAbbreviation", "lblAbbreviation", "Abbreviation", "ABBREVIATION");

/// An integer that the dialog writes without asking.
struct FixedValue {
  /// The integer field that gets it.
  const char* column;
  /// What the field gets.
  int value;
  /// Whether an edited record gets it, too; a new one always does.
  bool always = false;
};

/// What LAST_USE of an edited record becomes; of a new one it is always the current moment.
enum class EditStamp : unsigned char {
  kNow,  ///< the current moment
  kZero  ///< 0, as of a record that was never used
};

/// An edit dialog as data. Its texts and spans live as long as the program.
struct FormDescription {
  /// The type of the objects that the dialog edits.
  TObjectType object;
  /// TYPE of the objects, where those of different types have different dialogs; 0 for all.
  int type = 0;
  /// The dialog's title, untranslated.
  const char* caption;
  /// The rows from top to bottom.
  std::span<const FormRow> rows;
  /// What is written beside the rows.
  std::span<const FixedValue> fixed = {};
  /// The dialog's share of the screen's width, 0 to 1, when it is first shown.
  double width = 1.0 / 4;
  /// Its share of the screen's height, 0 to 1; 0: as high as what it holds.
  double height = 1.0 / 2;
  /// What becomes of LAST_USE of an edited record.
  EditStamp stamp = EditStamp::kNow;
  /// Whether the dialog makes new records; else the table's records are fixed, and only edited.
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
