#include "assembly/database_repair.h"

#include <filesystem>
#include <system_error>

#include "assembly/database_check.h"
#include "database/storage_files.h"
#include "platform/dbset/write_group.h"
#include "processors/code_rows.h"

namespace QvRefSystem {
namespace {

namespace fs = std::filesystem;
using QvPlatform::RowMatch;
using QvPlatform::RowScope;
using QvPlatform::RowView;
using QvPlatform::StorageError;
using QvPlatform::TQvDataSet;
using QvPlatform::TQvWriteGroup;

/// Carries out steps inside a group of changes.
class Mender {
 public:
  Mender(TdatamoduleQvRfData& data, TQvWriteGroup& group)
      : data_(data), group_(group), values_(data.datasetParamValue) {}

  void operator()(const RaisedCounter& counter) {
    data_.DataSet(counter.table).RaiseLastKey(counter.key);
  }

  void operator()(const RemovedValue& row) {
    values_.Delete(
        {values_.Match(CodeRows::kOwnerId, row.owner),
         RowMatch::Text(values_.Field(CodeRows::kValue), row.value),
         values_.Match(CodeRows::kOwnerContent, row.content),
         values_.Match(CodeRows::kTag, row.tag), values_.Match(CodeRows::kGroup, row.group),
         values_.Match(CodeRows::kCode, row.code)},
        false);
  }

  void operator()(const FileSetAside& file) {
    const bool resourceForm = data_.ResourceForm;
    const std::string from = data_.GetHeightsPrefix() + file.name;
    const std::string prefix = data_.GetBackupPrefix();
    if (resourceForm) return MoveStorageFile(from, prefix + file.name, true);
    // A plain file takes no part in the transaction.
    group_.AtEnd([from, prefix, name = file.name] { MoveStorageFile(from, prefix + name, false); },
                 {});
  }

  void operator()(const MergedRecord& merge) {
    for (const TableSpec& users : TableCatalogue()) {
      if (users.tag == kUnopenedTag) continue;
      for (const FieldSpec& field : users.fields) {
        if (field.refersTo == merge.table) Redirect(users.id, field.name, merge);
      }
    }
    RemoveValuesOf(merge);
    TQvDataSet& table = data_.DataSet(merge.table);
    const RowView row = table.FindFirst({RowMatch::Integer(KeyField(merge.table), merge.key)});
    if (row && table.MoveTo(row)) table.Delete();
  }

 private:
  [[nodiscard]] int KeyField(TableId id) {
    return data_.DataSet(id).FieldByName(TableOf(id).keyField).GetIndex();
  }

  void Redirect(TableId id, std::string_view field, const MergedRecord& merge) {
    TQvDataSet& users = data_.DataSet(id);
    QvPlatform::TField& reference = users.FieldByName(field);
    const auto match = RowMatch::Integer(reference.GetIndex(), merge.key);
    while (const RowView row = users.FindFirst({match})) {
      users.MoveTo(row);
      users.Edit();
      reference.SetInteger(merge.into);
      users.Post();
    }
  }

  // The record that stays has the same rows.
  void RemoveValuesOf(const MergedRecord& merge) {
    for (const ObjectDescriptor& descriptor : ObjectDescriptors()) {
      if (descriptor.table == merge.table) {
        RemoveValuesOf(static_cast<int>(descriptor.type), merge.key);
      }
    }
    if (merge.table == TableId::kMapProj) RemoveValuesOf(kProjectionParameterOwner, merge.key);
  }
  void RemoveValuesOf(int content, int owner) {
    values_.Delete(
        {values_.Match(CodeRows::kOwnerId, owner), values_.Match(CodeRows::kOwnerContent, content)},
        true);
  }

  TdatamoduleQvRfData& data_;
  TQvWriteGroup& group_;
  CodeRows values_;
};

void AddSteps(const std::vector<Mending>& mendings, RepairReport* report) {
  for (const Mending& mending : mendings)
    report->steps.push_back(StepOf(mending));
}

}  // namespace

RepairReport RepairDatabase(TdatamoduleQvRfData& data, const RepairOptions& options) {
  RepairReport report;
  const std::vector<Mending> planned = CheckDatabase(data).mendings;
  if (planned.empty()) return report;
  if (options.dryRun) {
    AddSteps(planned, &report);
    return report;
  }
  report.backup = RepairBackupPath(data);
  options.backup(data, report.backup);
  TQvWriteGroup group(data.WritableTables());
  // Others may have written since.
  const std::vector<Mending> mendings = CheckDatabase(data).mendings;
  Mender mender(data, group);
  for (const Mending& mending : mendings)
    std::visit(mender, mending);
  group.Commit();
  AddSteps(mendings, &report);
  return report;
}

std::string RepairBackupPath(const TdatamoduleQvRfData& data) {
  constexpr std::string_view kSuffix = ".qvdb";
  std::string root = data.GetDatabaseRoot();
  root.pop_back();
  if (root.ends_with(kSuffix)) root.resize(root.size() - kSuffix.size());
  root += "-before-repair";
  std::string path = root + std::string(kSuffix);
  std::error_code error;
  for (int number = 1; fs::symlink_status(path, error).type() != fs::file_type::not_found; ++number)
    path = root + "-" + std::to_string(number) + std::string(kSuffix);
  return path;
}

}  // namespace QvRefSystem
