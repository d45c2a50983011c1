#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "assembly/processor_set.h"
#include "database/data_module.h"
#include "processors/data_processor.h"
#include "tests/support/scripted_ui.h"

namespace refframe_tests {

/// A folder that goes with its test.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  [[nodiscard]] std::string Path(const std::string& name = {}) const {
    return (path_ / name).string();
  }

 private:
  std::filesystem::path path_;
};

/// A small database with the fixed types (of map projections the transverse Mercator alone) and no
/// objects, in either form, open.
class TestDatabase {
 public:
  explicit TestDatabase(bool resourceForm = false);

  TemporaryFolder folder;
  ScriptedUi ui;
  std::string path;
  std::unique_ptr<QvRefSystem::TdatamoduleQvRfData> data;

  [[nodiscard]] QvRefSystem::TQvRfDataProcessor& Processor(QvRefSystem::TObjectType type) const {
    return *QvRefSystem::ProcessorFor(*data, static_cast<int>(type));
  }
  /// Records of each table, in the order of the catalogue.
  [[nodiscard]] std::vector<int> Counts() const;
  /// What the check of the database finds. Throws if its answer does not agree with its findings.
  [[nodiscard]] std::vector<std::string> Findings() const;
};

/// The tree of a processor's current record; throws if it cannot be written.
[[nodiscard]] std::unique_ptr<QvCommonUtils::TStringTree> WrittenTree(
    QvRefSystem::TQvRfDataProcessor& processor);

/// Names the cases of a test that runs in both forms, true for the container.
struct FormName {
  template <typename Case>
  std::string operator()(const Case& it) const {
    return it.param ? "Container" : "Folder";
  }
};

/// Makes the table files of an empty database; opens nothing.
void MakeEmptyTables(const std::string& path, bool resourceForm, QvPlatform::TUserInterface& ui);

}  // namespace refframe_tests
