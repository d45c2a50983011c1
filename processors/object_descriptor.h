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

/// OWNER_CONTENT of the parameter values of map projections.
inline constexpr int kProjectionParameterOwner = 13;

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

/// One member of an object's tree, in writing order. kOwn stands where the object's processor
/// writes and reads members that depend on data.
struct TreeItem {
  enum class Kind : unsigned char { kField, kSubobject, kCode, kOwn };
  Kind kind = Kind::kField;
  int id = 0;
  int index = 0;
  std::string_view label = {};
  /// kField: the column; kSubobject: the column with its key.
  std::string_view column = {};
  ValueForm form = ValueForm::kText;
  Reading reading = Reading::kRequired;
  /// kSubobject: whose processor writes and stores it.
  TObjectType object = TObjectType::kNone;
  /// kSubobject: a key of 0 writes nothing, and an absent subtree reads as 0.
  bool optional = false;
  /// kCode: tag of its row, and the rule for blank values.
  ParamTag tag = ParamTag::kGeoTiff;
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
          .object = object,
          .optional = optional};
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
constexpr TreeItem With(TreeItem item, Reading reading) {
  item.reading = reading;
  return item;
}

/// How two records compare in one column. Names fold case and outer blanks; there is no tolerance.
enum class Compare : unsigned char { kFoldedName, kText, kTrimmedText, kInteger, kDouble };

/// A column counts only where the tree gave it a value: what a kind of object does not have takes
/// no part. The first column of a list narrows the search through an index.
struct EqualityColumn {
  std::string_view column = {};
  Compare compare = Compare::kInteger;
};

/// A table that can refer to the object, in scan order.
struct UsedByScan {
  TObjectType object;
  std::string_view column = {};
};

/// A line of the info text: the label, ": ", the column.
struct InfoLine {
  QvPlatform::TextId label;
  std::string_view column = {};
};

struct ObjectDescriptor {
  TObjectType type;
  TableId table;
  /// Stored label of the type.
  std::string_view typeName;
  /// Label of the object's subtree.
  std::string_view subtreeLabel;
  /// Text shown in dialogs.
  QvPlatform::TextId displayName;
  std::span<const TreeItem> items;
  /// Empty for objects that belong to one other object and are never shared.
  std::span<const EqualityColumn> equality;
  std::span<const UsedByScan> usedBy;
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
