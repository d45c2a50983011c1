#pragma once

#include <array>
#include <span>
#include <string_view>

#include "database/object_types.h"
#include "database/table_catalogue.h"
#include "platform/data/tree_ids.h"
#include "platform/ui/texts.h"

/// What is true of one object type, as data. The processor base works from these rows; the
/// command line, the integrity check and the tests read the same.
namespace QvRefSystem {

/// Values of PARAM_TAG.
enum class ParamTag : int {
  kProjectionParameter = 1,
  kAllowedValue = 2,
  kMif = 3,
  kGeoTiff = 4,
  kPositiveLongitude = 7
};

/// How a tree field is read.
enum class ValueForm : unsigned char { kText, kInteger, kDouble };

/// Whether InsertFromTree needs the member: kByRule leaves it to the object's own code, and
/// kWriteOnly fields are never read.
enum class Reading : unsigned char { kRequired, kByRule, kWriteOnly };

/// When an exchange code's value counts as none: never when its row exists, or when blank.
enum class BlankRule : unsigned char { kWriteBlank, kSkipBlank };

/// The last turn of reading.
inline constexpr int kLastTurn = 6;

/// One member of an object's tree. The rows of a list stand in writing order.
struct TreeItem {
  /// What the member is made of.
  enum class Kind : unsigned char {
    /// A field with the value of a column.
    kField,
    /// A subtree with the object whose key stands in a column.
    kSubobject,
    /// An empty subtree, for members that name it as what they stand within.
    kSubtree,
    /// A field with a code that lies in a row beside the record.
    kCode,
    /// What depends on more than a column: the object's processor writes and reads it.
    kOwn
  };
  /// What is written and read.
  Kind kind = Kind::kField;
  /// The id of the member, from tree_ids.h.
  int id = 0;
  /// The index of the member among those of the same id.
  int index = 0;
  /// The label as it is written. Nobody reads it back.
  std::string_view label = {};
  /// The id of the subtree that the member stands in, 0 for the level of the record.
  int within = 0;
  /// kField: the column; kSubobject: the column with its key; kOwn: what its processor takes from
  /// here.
  std::string_view column = {};
  /// kField and kCode: how the value is read.
  ValueForm form = ValueForm::kText;
  /// Whether the member is read with the others.
  Reading reading = Reading::kRequired;
  /// When the member is read, from 0 to kLastTurn: fields are read in turn 0, sub-objects later.
  /// Those of one turn are read in the order of the list.
  int turn = 0;
  /// kSubobject: whose processor writes and stores it.
  TObjectType object = TObjectType::kNone;
  /// kSubobject: a key of 0 writes nothing, and an absent subtree reads as 0.
  bool optional = false;
  /// kCode: tag of its row.
  ParamTag tag = ParamTag::kGeoTiff;
  /// kCode: whether a blank value is written.
  BlankRule blank = BlankRule::kSkipBlank;
};

/// A field whose text is the column's as it stands.
constexpr TreeItem TextItem(const TreeIds::Item& member, std::string_view column, int index = 0) {
  return {.id = member.id, .index = index, .label = member.label, .column = column};
}
/// A field that holds a whole number.
constexpr TreeItem IntegerItem(const TreeIds::Item& member, std::string_view column,
                               int index = 0) {
  TreeItem item = TextItem(member, column, index);
  item.form = ValueForm::kInteger;
  return item;
}
/// A field that holds a finite number.
constexpr TreeItem DoubleItem(const TreeIds::Item& member, std::string_view column) {
  TreeItem item = TextItem(member, column);
  item.form = ValueForm::kDouble;
  return item;
}
/// A subtree with the object whose key the column holds.
constexpr TreeItem SubobjectItem(const TreeIds::Item& member, TObjectType object,
                                 std::string_view column, bool optional = false) {
  return {.kind = TreeItem::Kind::kSubobject,
          .id = member.id,
          .label = member.label,
          .column = column,
          .turn = 1,
          .object = object,
          .optional = optional};
}
/// A subtree that other items of the list stand within.
constexpr TreeItem SubtreeItem(const TreeIds::Item& member) {
  return {.kind = TreeItem::Kind::kSubtree, .id = member.id, .label = member.label};
}
/// A field with a code of the object, which lies in a row beside the record.
constexpr TreeItem CodeItem(const TreeIds::Item& member, ParamTag tag,
                            ValueForm form = ValueForm::kInteger,
                            BlankRule blank = BlankRule::kSkipBlank) {
  return {.kind = TreeItem::Kind::kCode,
          .id = member.id,
          .label = member.label,
          .form = form,
          .tag = tag,
          .blank = blank};
}
/// A member that the object's processor writes and reads by code of its own.
constexpr TreeItem OwnItem(const TreeIds::Item& member) {
  return {.kind = TreeItem::Kind::kOwn, .id = member.id, .label = member.label};
}
/// The item for the processor's own code, with its column and object.
constexpr TreeItem AsOwn(TreeItem item) {
  item.kind = TreeItem::Kind::kOwn;
  return item;
}
/// The item with another rule of reading.
constexpr TreeItem With(TreeItem item, Reading reading) {
  item.reading = reading;
  return item;
}
/// The item inside a subtree of the level.
constexpr TreeItem Within(const TreeIds::Item& subtree, TreeItem item) {
  item.within = subtree.id;
  return item;
}
/// The item read in that turn.
constexpr TreeItem InTurn(int turn, TreeItem item) {
  item.turn = turn;
  return item;
}
/// Lists joined into one.
template <std::size_t... Sizes>
constexpr auto Items(const std::array<TreeItem, Sizes>&... parts) {
  std::array<TreeItem, (Sizes + ...)> joined{};
  std::size_t next = 0;
  const auto append = [&](const auto& part) {
    for (const TreeItem& item : part)
      joined[next++] = item;
  };
  (append(parts), ...);
  return joined;
}

/// How two records compare in one column. Names fold case and outer blanks; there is no tolerance.
enum class Compare : unsigned char { kFoldedName, kText, kTrimmedText, kInteger, kDouble };

/// A column in which two records have to agree. It counts only where the tree gave it a value: what
/// a kind of object does not have takes no part.
struct EqualityColumn {
  std::string_view column = {};
  /// How the two values compare.
  Compare compare = Compare::kInteger;
};

/// A table that can refer to the object.
struct UsedByScan {
  /// The type of the objects that refer to it.
  TObjectType object;
  /// The column that holds its key.
  std::string_view column = {};
};

/// A line of the info text: the label, ": ", the column.
struct InfoLine {
  /// The label as the user reads it.
  QvPlatform::TextId label;
  /// The column whose value follows.
  std::string_view column = {};
};

/// All that is true of one object type.
struct ObjectDescriptor {
  /// The code of the type.
  TObjectType type;
  /// The table with its records.
  TableId table;
  /// Stored label of the type.
  std::string_view typeName;
  /// Label of the object's subtree.
  std::string_view subtreeLabel;
  /// Text shown in dialogs.
  QvPlatform::TextId displayName;
  /// The members of its tree, in writing order.
  std::span<const TreeItem> items;
  /// The first column narrows the search through an index. Empty for objects that belong to one
  /// other object and are never shared.
  std::span<const EqualityColumn> equality;
  /// Who can refer to it, in scan order.
  std::span<const UsedByScan> usedBy;
  /// The lines of its description.
  std::span<const InfoLine> infoLines;
};

/// The two lines that most objects have.
inline constexpr std::array kNameAndDescription{
    InfoLine{QvPlatform::TextId::kInfoName, "NAME"},
    InfoLine{QvPlatform::TextId::kInfoDescription, "DESCRIPTION"}};

/// All object types, by code.
[[nodiscard]] std::span<const ObjectDescriptor> ObjectDescriptors();
/// Throws std::out_of_range for a code that is no object type.
[[nodiscard]] const ObjectDescriptor& DescriptorOf(TObjectType type);
/// The type of that code; kNone for any other code.
[[nodiscard]] TObjectType ObjectTypeOf(int code);

}  // namespace QvRefSystem
