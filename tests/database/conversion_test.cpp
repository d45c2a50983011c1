// An older reference system table comes up to date while its database opens, whatever happens on
// the way.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <map>
#include <thread>

#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvPlatform::FieldType;
using QvPlatform::TQvDataSet;
using QvRefSystem::FieldSpec;
using QvRefSystem::TableId;
using QvRefSystem::TdatamoduleQvRfData;

// Content of one record by field.
using Record = std::map<std::string, std::string>;
using Records = std::map<int, Record>;

std::vector<FieldSpec> OlderFields() {
  std::vector<FieldSpec> fields;
  for (const FieldSpec& field : QvRefSystem::TableOf(TableId::kRefSystem).fields) {
    if (field.name == "VERT_SYSTEM_AUTOKEY") break;
    fields.push_back(field);
  }
  return fields;
}

// What a record of the older table holds: another value in each field.
std::string ValueOf(const FieldSpec& field, int key, int number) {
  switch (field.type) {
    case FieldType::kText:
      return std::string(field.name) + " of " + std::to_string(key);
    case FieldType::kInteger:
      return field.name == "TYPE" ? "4" : std::to_string(key * 100 + number);
    default:
      return std::to_string(40000 + key) + ".25";
  }
}

class TConversion : public testing::TestWithParam<bool> {
 protected:
  [[nodiscard]] bool ResourceForm() const { return GetParam(); }
  [[nodiscard]] std::string Stream(const std::string& name) const {
    return ResourceForm() ? path_ + "." + name : path_ + "/" + name + ".dat";
  }

  // A database whose reference system table is of the older layout, with these keys in it.
  void MakeOlderDatabase(const std::vector<int>& keys) {
    path_ = folder_.Path(ResourceForm() ? "refs.qvdb" : "refs");
    MakeEmptyTables(path_, ResourceForm(), ui_);
    QvPlatform::TQvDbHeader older;
    for (const FieldSpec& field : OlderFields()) {
      older.AddField(std::string(field.name).c_str(), static_cast<unsigned char>(field.type),
                     static_cast<unsigned char>(field.need),
                     static_cast<unsigned char>(field.length));
    }
    ASSERT_TRUE(QvRefSystem::SaveStorageFile(Stream("reference_system"), ResourceForm(),
                                             QvPlatform::MakeEmptyTableImage(older)));
    QvPlatform::TQvDataBuffer buffer;
    buffer.SetDataBufferType(ResourceForm() ? QvPlatform::QvDataBufferType::kResource
                                            : QvPlatform::QvDataBufferType::dtFileStream);
    buffer.StreamName = Stream("reference_system");
    TQvDataSet table(buffer);
    table.Open();
    QvPlatform::TQvWriteGroup group({&table});
    for (const int key : keys)
      AppendOlder(table, key);
    group.Commit();
  }

  void AppendOlder(TQvDataSet& table, int key) {
    Record& record = expected_[key];
    table.Append();
    int number = 0;
    for (const FieldSpec& field : OlderFields()) {
      if (field.name == "AUTOKEY") continue;
      table.FieldByName(field.name).SetString(ValueOf(field, key, ++number));
    }
    table.Post();
    table.Edit();
    table.FieldByName("AUTOKEY").SetInteger(key);
    table.Post();
    for (const FieldSpec& field : OlderFields()) {
      record[std::string(field.name)] = table.FieldByName(field.name).AsString();
    }
  }

  // Opens the database, and with it converts; gives the records by key.
  [[nodiscard]] Records Open(TdatamoduleQvRfData& data) {
    data.DatabasePath = path_;
    EXPECT_TRUE(data.OpenDatabase(path_, QvRefSystem::kFullMode, ResourceForm()))
        << data.LastError();
    Records records;
    TQvDataSet& table = data.datasetRefSystem;
    if (!table.GetActive()) return records;
    for (table.First(); !table.Eof(); table.Next()) {
      Record record;
      for (int i = 0; i < table.FieldCount(); ++i) {
        record[table.Fields(i).Definition().name] = table.Fields(i).AsString();
      }
      records[table.FieldByName("AUTOKEY").AsInteger()] = record;
    }
    return records;
  }

  // The records that the conversion has to make of what stood in the older table.
  [[nodiscard]] Records Expected() const {
    Records converted = expected_;
    for (auto& [key, record] : converted) {
      for (const FieldSpec& field : QvRefSystem::TableOf(TableId::kRefSystem).fields) {
        const std::string name(field.name);
        if (record.contains(name)) continue;
        record[name] = field.type == FieldType::kInteger && name != "TRANSFORM_AUTOKEY" ? "0" : "";
      }
    }
    return converted;
  }

  TemporaryFolder folder_;
  ScriptedUi ui_;
  std::string path_;
  Records expected_;
};

INSTANTIATE_TEST_SUITE_P(, TConversion, testing::Bool(), [](const auto& test) {
  return std::string(test.param ? "Container" : "Folder");
});

TEST_P(TConversion, KeepsEveryRecordKeyAndHole) {
  MakeOlderDatabase({2, 3, 7, 8, 40});
  const auto data = QvRefSystem::MakeDataModule(ui_);
  const Records records = Open(*data);
  for (const auto& [key, record] : Expected()) {
    ASSERT_TRUE(records.contains(key));
    for (const auto& [field, value] : record) {
      EXPECT_EQ(records.at(key).at(field), value) << key << ' ' << field;
    }
  }
  EXPECT_EQ(records.size(), 5U);
  EXPECT_NE(data->RefSystemProcessor, nullptr);
  // What is added goes on behind the old keys, and the list runs by name again.
  data->datasetRefSystem.Append();
  data->datasetRefSystem.FieldByName("NAME").SetString("A first name");
  data->datasetRefSystem.Post();
  EXPECT_GT(data->datasetRefSystem.FieldByName("AUTOKEY").AsInteger(), 40);
  data->datasetRefSystem.First();
  EXPECT_EQ(data->datasetRefSystem.FieldByName("NAME").AsString(), "A first name");
  EXPECT_TRUE(ui_.messages.empty());
}

TEST_P(TConversion, BacksUpTheOldTableAndTouchesACurrentOneNoMore) {
  MakeOlderDatabase({1});
  const std::string backup =
      path_ + (ResourceForm() ? ".Backup.reference_system" : "/Backup/reference_system.dat");
  const std::string second =
      path_ + (ResourceForm() ? ".Backup.reference_system_1" : "/Backup/reference_system[1].dat");
  std::string older;
  ASSERT_TRUE(QvRefSystem::LoadStorageFile(Stream("reference_system"), ResourceForm(), &older));
  for (int i = 0; i < 2; ++i) {
    const auto data = QvRefSystem::MakeDataModule(ui_);
    EXPECT_EQ(Open(*data).size(), 1U);
    EXPECT_TRUE(QvRefSystem::StorageFileExists(backup, ResourceForm()));
    EXPECT_FALSE(QvRefSystem::StorageFileExists(second, ResourceForm()));
    if (i == 1) {
      EXPECT_EQ(data->BackupTable(Stream("reference_system"), ResourceForm()), second);
    }
  }
  const auto data = QvRefSystem::MakeDataModule(ui_);
  EXPECT_EQ(data->BackupTable(Stream("no_such_table"), ResourceForm()), "");
}

TEST_P(TConversion, GivesAnEmptyTableForAnEmptyOne) {
  MakeOlderDatabase({});
  const auto data = QvRefSystem::MakeDataModule(ui_);
  EXPECT_TRUE(Open(*data).empty());
  EXPECT_TRUE(data->HasVerticalFields());
}

TEST_P(TConversion, LeavesTheOldTableWhereTheBackupCannotBeMade) {
  MakeOlderDatabase({1, 5});
  if (ResourceForm()) GTEST_SKIP() << "a container has no folder that could be in the way";
  ASSERT_TRUE(QvRefSystem::SaveStorageFile(path_ + "/Backup", false, "in the way"));
  {
    const auto data = QvRefSystem::MakeDataModule(ui_);
    data->DatabasePath = path_;
    EXPECT_FALSE(data->OpenDatabase(path_, QvRefSystem::kFullMode, false));
    EXPECT_TRUE(data->NotActive);
  }
  ASSERT_TRUE(QvRefSystem::DeleteStorageFile(path_ + "/Backup", false));
  const auto data = QvRefSystem::MakeDataModule(ui_);
  EXPECT_EQ(Open(*data), Expected());
}

// A process that converts is killed after ever longer times: whatever it left, the next opening
// finds every record.
TEST_P(TConversion, OpensWithEverythingAfterAStopAtAnyMoment) {
  std::vector<int> keys;
  for (int i = 0; i < 200; ++i)
    keys.push_back(3 * i + 2);
  MakeOlderDatabase(keys);
  std::string older;
  ASSERT_TRUE(QvRefSystem::LoadStorageFile(Stream("reference_system"), ResourceForm(), &older));
  const Records expected = Expected();
  int killed = 0;
  bool finished = false;
  for (int step = 0; step < 60 && !finished; ++step) {
    ASSERT_TRUE(QvRefSystem::SaveStorageFile(Stream("reference_system"), ResourceForm(), older));
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      const auto data = QvRefSystem::MakeDataModule(ui_);
      data->DatabasePath = path_;
      _exit(data->OpenDatabase(path_, QvRefSystem::kFullMode, ResourceForm()) ? 0 : 1);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1 + 5 * step));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    finished = WIFEXITED(status);
    if (finished) {
      EXPECT_EQ(WEXITSTATUS(status), 0);
    } else {
      ++killed;
    }
    const auto data = QvRefSystem::MakeDataModule(ui_);
    ASSERT_EQ(Open(*data), expected) << "stopped at step " << step;
  }
  EXPECT_GT(killed, 3);
}

}  // namespace
}  // namespace refframe_tests
