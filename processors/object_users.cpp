#include "processors/object_users.h"

#include <set>
#include <string>

namespace QvRefSystem {
namespace {

using QvPlatform::RowMatch;
using QvPlatform::RowScope;
using QvPlatform::RowView;
using QvPlatform::TQvDataSet;
using QvPlatform::UsedByRow;

/// Finds the users of one type.
class UserScan {
 public:
  UserScan(TdatamoduleQvRfData& data, const ObjectDescriptor& user)
      : user_(user),
        table_(data.DataSet(user.table)),
        key_(table_.FieldByName(TableOf(user.table).keyField).GetIndex()),
        name_(table_.FieldByName("NAME").GetIndex()),
        description_(table_.FieldByName("DESCRIPTION").GetIndex()) {}

  // Adds those whose column holds the key and that are not in `listed` yet.
  void Add(std::string_view column, int key, std::set<int>* listed, std::vector<UsedByRow>* rows) {
    const auto match = RowMatch::Integer(table_.FieldByName(column).GetIndex(), key);
    for (const RowView row : table_.FindAll({match}, RowScope::kAll)) {
      const int own = row.GetInteger(key_);
      if (listed != nullptr && !listed->insert(own).second) continue;
      rows->push_back({std::string(user_.typeName), row.GetText(name_), row.GetText(description_),
                       static_cast<int>(user_.type), own});
    }
  }

 private:
  const ObjectDescriptor& user_;
  TQvDataSet& table_;
  int key_;
  int name_;
  int description_;
};

}  // namespace

std::vector<UsedByRow> UsersByDescriptor(TdatamoduleQvRfData& data,
                                         const ObjectDescriptor& descriptor, int key) {
  std::vector<UsedByRow> rows;
  for (const UsedByScan& scan : descriptor.usedBy)
    UserScan(data, DescriptorOf(scan.object)).Add(scan.column, key, nullptr, &rows);
  return rows;
}

std::vector<UsedByRow> UsersByCatalogue(TdatamoduleQvRfData& data, TableId table, int key) {
  std::vector<UsedByRow> rows;
  for (const ObjectDescriptor& user : ObjectDescriptors()) {
    UserScan scan(data, user);
    std::set<int> listed;
    for (const FieldSpec& field : TableOf(user.table).fields) {
      if (field.refersTo == table) scan.Add(field.name, key, &listed, &rows);
    }
  }
  return rows;
}

}  // namespace QvRefSystem
