#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "assembly/processor_set.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/test_database.h"

namespace refframe_tests {

namespace fs = std::filesystem;
using QvCommonUtils::TStringTree;
using QvRefSystem::ObjectDescriptor;
using QvRefSystem::TableSpec;
using QvRefSystem::TObjectType;
using QvRefSystem::TQvRfDataProcessor;

inline std::string DeliveredPath(bool container) {
  const char* folder = std::getenv("REFFRAME_DELIVERED");
  if (folder == nullptr) {
    throw std::runtime_error("REFFRAME_DELIVERED does not name the delivered database");
  }
  return std::string(folder) + (container ? ".qvdb" : "");
}

/// Copies of the delivered database.
class DeliveredCopies : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<QvRefSystem::TdatamoduleQvRfData> OpenCopy(bool container) {
    const std::string path = folder_.Path(container ? "copy.qvdb" : "copy");
    fs::copy(DeliveredPath(container), path, fs::copy_options::recursive);
    auto data = QvRefSystem::MakeDataModule(ui_);
    data->DatabasePath = path;
    EXPECT_TRUE(data->OpenDatabase(path, QvRefSystem::kFullMode, container)) << data->LastError();
    return data;
  }

  /// Calls `visit(processor)` with each record of the type current, in table order.
  template <typename Visitor>
  void ForEveryRecord(const ObjectDescriptor& type, Visitor visit) {
    TQvRfDataProcessor* found = QvRefSystem::ProcessorFor(*data_, static_cast<int>(type.type));
    if (found == nullptr) {
      EXPECT_EQ(data_->DataSet(type.table).RecordCount(), 0) << type.typeName;
      return;
    }
    TQvRfDataProcessor& processor = *found;
    std::vector<int> keys;
    const int keyField =
        processor.DataSet->FieldByName(QvRefSystem::TableOf(type.table).keyField).GetIndex();
    for (int at = 0; at < processor.DataSet->RecordCount(); ++at) {
      keys.push_back(processor.DataSet->Row(at).GetInteger(keyField));
    }
    for (const int key : keys) {
      ASSERT_TRUE(processor.LocateKey(key)) << type.typeName << " " << key;
      visit(processor);
      // A fault of the road is one of hundreds of records; the first few tell what it is.
      if (HasFailure() && ++failures_ > 5) return;
    }
  }

  /// The EPSG codes of each reference system, by its key; no code stands twice.
  [[nodiscard]] std::map<int, std::vector<int>> SystemCodes() {
    std::map<int, std::vector<int>> codes;
    std::set<int> seen;
    QvPlatform::TQvDataSet& values = data_->datasetParamValue;
    const auto field = [&](const char* name) { return values.FieldByName(name).GetIndex(); };
    for (const QvPlatform::RowView row :
         values.FindAll({QvPlatform::RowMatch::Integer(field("OWNER_CONTENT"), 1),
                         QvPlatform::RowMatch::Integer(field("PARAM_TAG"), 4)})) {
      const int code = std::stoi(row.GetText(field("VALUE")));
      codes[row.GetInteger(field("OWNER_ID"))].push_back(code);
      EXPECT_TRUE(seen.insert(code).second) << "two systems have the code " << code;
    }
    return codes;
  }

  [[nodiscard]] std::map<std::string, int> Counts() {
    std::map<std::string, int> counts;
    for (const TableSpec& table : QvRefSystem::TableCatalogue()) {
      if (table.tag == QvRefSystem::kUnopenedTag) continue;
      counts[std::string(table.streamName)] = data_->DataSet(table.id).RecordCount();
    }
    return counts;
  }

  TemporaryFolder folder_;
  ScriptedUi ui_;
  std::unique_ptr<QvRefSystem::TdatamoduleQvRfData> data_;
  int failures_ = 0;
};

inline std::string NameOf(const TQvRfDataProcessor& processor) {
  std::string name;
  processor.GetNames(nullptr, &name);
  return processor.TypeName + " " + std::to_string(processor.GetCurrentKey()) + " \"" + name + "\"";
}

}  // namespace refframe_tests
