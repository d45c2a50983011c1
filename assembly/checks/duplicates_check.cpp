#include "assembly/checks/duplicates_check.h"

#include <map>
#include <set>
#include <span>
#include <utility>

#include "platform/text/text.h"
#include "processors/object_descriptor.h"
#include "processors/vertical_records.h"

namespace QvRefSystem {
namespace {

std::string Comparable(const CheckedRow& row, const EqualityColumn& column) {
  switch (column.compare) {
    case Compare::kFoldedName:
      return QvPlatform::FoldName(row.Text(column.column));
    case Compare::kTrimmedText:
      return QvPlatform::Trim(row.Text(column.column));
    case Compare::kText:
    case Compare::kInteger:
    case Compare::kDouble:
      break;
  }
  return row.AsText(column.column);
}

// A text that two records share if, and only if, they are equal in these columns.
std::string Comparable(const CheckedRow& row, std::span<const EqualityColumn> columns) {
  std::string signature;
  for (const EqualityColumn& column : columns)
    signature += Comparable(row, column) + '\n';
  return signature;
}

// What the equality of objects looks at beside their own columns.
class Beside {
 public:
  explicit Beside(const CheckedDatabase& database)
      : heights_(database.Of(TableId::kVerticalRefSystem)) {
    for (const CheckedRow row : database.Of(TableId::kParamValue))
      TakeValue(row);
  }

  [[nodiscard]] std::string Of(TObjectType type, const CheckedRow& row) const {
    switch (type) {
      case TObjectType::kEllipsoid:
        return ShapeOf(row);
      case TObjectType::kMapProjection: {
        const auto values = projectionValues_.find(row.Key());
        return values == projectionValues_.end() ? std::string() : values->second;
      }
      case TObjectType::kReferenceSystem:
        return HeightsOf(row) +
               (positiveLongitude_.contains(row.Key()) ? "positive longitude" : "");
      default:
        return {};
    }
  }

 private:
  void TakeValue(const CheckedRow& row) {
    const int tag = row.Integer("PARAM_TAG");
    if (tag == static_cast<int>(ParamTag::kProjectionParameter)) {
      projectionValues_[row.Integer("OWNER_ID")] += std::to_string(row.Integer("PARAM_CODE")) +
                                                    '=' + QvPlatform::Trim(row.Text("VALUE")) +
                                                    '\n';
    } else if (tag == static_cast<int>(ParamTag::kPositiveLongitude) &&
               row.Integer("OWNER_CONTENT") == static_cast<int>(TObjectType::kReferenceSystem)) {
      positiveLongitude_.insert(row.Integer("OWNER_ID"));
    }
  }

  [[nodiscard]] static std::string ShapeOf(const CheckedRow& row) {
    if (row.Integer("SPHEROID") != 0) return "sphere";
    return row.Integer("USE_F") != 0 ? "f " + QvPlatform::DoubleToText(row.Float("F"))
                                     : "b " + row.Text("B");
  }

  // What the heights of a reference system say, wherever they lie.
  [[nodiscard]] std::string HeightsOf(const CheckedRow& row) const {
    const int key = row.Integer("VERT_SYSTEM_AUTOKEY");
    if (key == 0) return "code " + std::to_string(row.Integer("VERT_SYSTEM_CODE")) + '\n';
    const CheckedRow record = heights_.WithKey(key);
    if (!record) return "key " + std::to_string(key) + '\n';
    return Comparable(record, VerticalEqualityOf(record.Integer("VDATA_TYPE")));
  }

  const CheckedTable& heights_;
  // The values of each projection in the order of their codes.
  std::map<int, std::string> projectionValues_;
  std::set<int> positiveLongitude_;
};

void CheckObjects(const CheckedTable& table, const ObjectDescriptor& descriptor,
                  const Beside& beside, Findings& findings) {
  std::map<std::string, int> seen;
  for (const CheckedRow row : table) {
    std::string signature = Comparable(row, descriptor.equality) + beside.Of(descriptor.type, row);
    const auto [first, isNew] = seen.emplace(std::move(signature), row.Key());
    if (!isNew) findings.Add(row, "equal to key " + std::to_string(first->second));
  }
}

}  // namespace

void CheckDuplicates(const CheckedDatabase& database, Findings& findings) {
  const Beside beside(database);
  for (const ObjectDescriptor& descriptor : ObjectDescriptors()) {
    if (descriptor.equality.empty()) continue;
    CheckObjects(database.Of(descriptor.table), descriptor, beside, findings);
  }
}

}  // namespace QvRefSystem
