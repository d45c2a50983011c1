#pragma once

#include <array>
#include <span>
#include <string_view>

#include "database/table_catalogue.h"
#include "platform/ui/texts.h"

/// What is true of one object type, as data. The processor base works from these rows; the
/// command line, the integrity check and the tests read the same.
namespace QvRefSystem {

/// Codes of the object types; they equal the tags of their tables.
enum class TObjectType : signed char {
  kNone = 0,
  kReferenceSystem = 1,
  kDatum = 2,
  kEllipsoid = 3,
  kDatumShift = 4,
  kPrimeMeridian = 5,
  kMapProjection = 6,
  kDatumShiftType = 7,
  kLinearUnit = 8,
  kScaleUnit = 9,
  kAngularUnit = 10,
  kMapProjectionType = 11,
  kReferenceSystemType = 12,
  kVerticalReferenceSystem = 16
};

/// OWNER_CONTENT of the parameter values of map projections.
inline constexpr int kProjectionParameterOwner = 13;

/// Values of PARAM_TAG.
enum class TParamTag : int {
  kProjectionParameter = 1,
  kAllowedValue = 2,
  kMif = 3,
  kGeoTiff = 4,
  kPositiveLongitude = 7
};

/// How a tree field is read.
enum class TValueForm : unsigned char { kText, kInteger, kDouble };

/// Whether InsertFromTree needs the member: kByRule leaves it to the object's own code, and
/// kWriteOnly fields are never read.
enum class TReading : unsigned char { kRequired, kByRule, kWriteOnly };

/// When an exchange code's value counts as none: never when its row exists, or when blank.
enum class TBlankRule : unsigned char { kWriteBlank, kSkipBlank };

/// One member of an object's tree, in writing order. kOwn stands where the object's processor
/// writes and reads members that depend on data.
struct TTreeItem {
  enum class Kind : unsigned char { kField, kSubobject, kCode, kOwn };
  Kind kind = Kind::kField;
  int id = 0;
  int index = 0;
  std::string_view label = {};
  /// kField: the column; kSubobject: the column with its key.
  std::string_view column = {};
  TValueForm form = TValueForm::kText;
  TReading reading = TReading::kRequired;
  /// kSubobject: whose processor writes and stores it.
  TObjectType object = TObjectType::kNone;
  /// kSubobject: a key of 0 writes nothing, and an absent subtree reads as 0.
  bool optional = false;
  /// kCode: tag of its row, and the rule for blank values.
  TParamTag tag = TParamTag::kGeoTiff;
  TBlankRule blank = TBlankRule::kSkipBlank;
};

constexpr TTreeItem TextItem(int id, std::string_view label, std::string_view column,
                             int index = 0) {
  return {.id = id, .index = index, .label = label, .column = column};
}
constexpr TTreeItem IntegerItem(int id, std::string_view label, std::string_view column,
                                int index = 0) {
  return {.id = id, .index = index, .label = label, .column = column, .form = TValueForm::kInteger};
}
constexpr TTreeItem DoubleItem(int id, std::string_view label, std::string_view column) {
  return {.id = id, .label = label, .column = column, .form = TValueForm::kDouble};
}
constexpr TTreeItem SubobjectItem(int id, TObjectType object, std::string_view column,
                                  bool optional = false) {
  return {.kind = TTreeItem::Kind::kSubobject,
          .id = id,
          .column = column,
          .object = object,
          .optional = optional};
}
constexpr TTreeItem CodeItem(int id, std::string_view label, TParamTag tag,
                             TValueForm form = TValueForm::kInteger,
                             TBlankRule blank = TBlankRule::kSkipBlank) {
  return {.kind = TTreeItem::Kind::kCode,
          .id = id,
          .label = label,
          .form = form,
          .tag = tag,
          .blank = blank};
}
constexpr TTreeItem OwnItem(int id, std::string_view label = {}) {
  return {.kind = TTreeItem::Kind::kOwn, .id = id, .label = label};
}
constexpr TTreeItem With(TTreeItem item, TReading reading) {
  item.reading = reading;
  return item;
}

/// How two records compare in one column. Names fold case and outer blanks; there is no tolerance.
enum class TCompare : unsigned char { kFoldedName, kText, kTrimmedText, kInteger, kDouble };

/// A column counts only where the tree gave it a value: what a kind of object does not have takes
/// no part. The first column of a list narrows the search through an index.
struct TEqualityColumn {
  std::string_view column = {};
  TCompare compare = TCompare::kInteger;
};

/// A table that can refer to the object, in scan order.
struct TUsedByScan {
  TObjectType object;
  std::string_view column = {};
};

/// A line of the info text: the label, ": ", the column.
struct TInfoLine {
  QvPlatform::TextId label;
  std::string_view column = {};
};

struct TObjectDescriptor {
  TObjectType type;
  TableId table;
  /// Stored label of the type.
  std::string_view typeName;
  /// Label of the object's subtree.
  std::string_view subtreeLabel;
  /// Text shown in dialogs.
  QvPlatform::TextId displayName;
  std::span<const TTreeItem> items;
  /// Empty for objects that belong to one other object and are never shared.
  std::span<const TEqualityColumn> equality;
  std::span<const TUsedByScan> usedBy;
  std::span<const TInfoLine> infoLines;
};

/// The two lines that most objects have.
inline constexpr std::array kNameAndDescription{
    TInfoLine{QvPlatform::TextId::kInfoName, "NAME"},
    TInfoLine{QvPlatform::TextId::kInfoDescription, "DESCRIPTION"}};

/// All object types, by code.
[[nodiscard]] std::span<const TObjectDescriptor> ObjectDescriptors();
/// Throws std::out_of_range for a code that is no object type.
[[nodiscard]] const TObjectDescriptor& DescriptorOf(TObjectType type);
/// The type of that code; kNone for any other code.
[[nodiscard]] TObjectType ObjectTypeOf(int code);

}  // namespace QvRefSystem
