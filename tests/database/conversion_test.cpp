// An older reference system table comes up to date while its database opens, whatever happens on
// the way.

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <limits>
#include <map>

#include "database/table_files.h"
#include "platform/dbset/fixed_record_file.h"
#include "platform/dbset/write_group.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

namespace fs = std::filesystem;
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

// The current record.
Record ContentOf(TQvDataSet& table) {
  Record record;
  for (int i = 0; i < table.FieldCount(); ++i)
    record[table.Fields(i).Definition().name] = table.Fields(i).AsString();
  return record;
}

class Conversion : public testing::TestWithParam<bool> {
 protected:
  [[nodiscard]] bool ResourceForm() const { return GetParam(); }
  [[nodiscard]] std::string Stream(const std::string& name) const {
    return ResourceForm() ? path_ + "." + name : path_ + "/" + name + ".dat";
  }

  // A database whose reference system table is of the older layout, with these keys in it.
  void MakeOlderDatabase(const std::vector<int>& keys) {
    const std::string name = "refs" + std::to_string(keys.size());
    path_ = folder_.Path(ResourceForm() ? name + ".qvdb" : name);
    expected_.clear();
    MakeEmptyTables(path_, ResourceForm(), ui_);
    QvRefSystem::TableSpec older = QvRefSystem::TableOf(TableId::kRefSystem);
    const std::vector<FieldSpec> fields = OlderFields();
    older.fields = fields;
    ASSERT_TRUE(
        QvRefSystem::CreateCatalogueTable(Stream("reference_system"), ResourceForm(), older, ui_));
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
    expected_[key] = ContentOf(table);
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
      records[table.FieldByName("AUTOKEY").AsInteger()] = ContentOf(table);
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

class ConversionInAFolder : public Conversion {};

INSTANTIATE_TEST_SUITE_P(, Conversion, testing::Bool(), FormName{});
INSTANTIATE_TEST_SUITE_P(, ConversionInAFolder, testing::Values(false), FormName{});

TEST_P(Conversion, KeepsEveryRecordKeyAndHole) {
  MakeOlderDatabase({2, 3, 7, 8, 40});
  const auto data = QvRefSystem::MakeDataModule(ui_);
  EXPECT_EQ(Open(*data), Expected());
  EXPECT_NE(data->RefSystemProcessor, nullptr);
  // What is added goes on behind the old keys, and the list runs by name again.
  TQvDataSet& table = data->datasetRefSystem;
  table.Append();
  table.FieldByName("NAME").SetString("A first name");
  table.Post();
  EXPECT_GT(table.FieldByName("AUTOKEY").AsInteger(), 40);
  table.First();
  EXPECT_EQ(table.FieldByName("NAME").AsString(), "A first name");
  EXPECT_TRUE(ui_.messages.empty());
}

TEST_P(Conversion, BacksUpTheOldTableAndTouchesACurrentOneNoMore) {
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

TEST_P(Conversion, GivesAnEmptyTableForAnEmptyOne) {
  MakeOlderDatabase({});
  const auto data = QvRefSystem::MakeDataModule(ui_);
  EXPECT_TRUE(Open(*data).empty());
  EXPECT_TRUE(data->HasVerticalFields());
}

// A container has no folder that could be in the way.
TEST_P(ConversionInAFolder, LeavesTheOldTableWhereTheBackupCannotBeMade) {
  MakeOlderDatabase({1, 5});
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

// Calls of the system that change what a disk holds.
constexpr std::uint32_t kWrites[] = {
#ifdef SYS_rename
    SYS_rename,    SYS_unlink,    SYS_mkdir,
#endif
    SYS_write,     SYS_pwrite64,  SYS_writev,   SYS_renameat2, SYS_renameat,
    SYS_ftruncate, SYS_fallocate, SYS_unlinkat, SYS_mkdirat};

// Has this process stop at each of those calls for the one that traces it, and at no other.
void StopAtWrites() {
  std::vector<sock_filter> filter = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const std::uint32_t call : kWrites) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRACE));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) _exit(2);
}

// The sanitizers try addresses out by writing to a pipe.
bool GoesToPipe(pid_t process, const __ptrace_syscall_info& call) {
  if (call.seccomp.nr != SYS_write) return false;
  std::error_code none;
  const fs::path file = fs::read_symlink(
      "/proc/" + std::to_string(process) + "/fd/" + std::to_string(call.seccomp.args[0]), none);
  return file.string().starts_with("pipe:");
}

constexpr int kNever = std::numeric_limits<int>::max();

// How a process of its own went.
struct Course {
  int writes = 0;
  bool killed = false;
  int exitCode = -1;
};

// Runs `work` in a process of its own, which is killed where it is about to write for the
// `fatal`th time, counted from 0.
Course RunUntilWrite(int fatal, const std::function<bool()>& work) {
  Course course;
  const pid_t child = fork();
  if (child == 0) {
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    StopAtWrites();
    _exit(work() ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESECCOMP | PTRACE_O_EXITKILL);
  int signal = 0;
  while (ptrace(PTRACE_CONT, child, nullptr, signal) == 0 && waitpid(child, &status, 0) == child &&
         WIFSTOPPED(status)) {
    signal = 0;
    if (status >> 8 != (SIGTRAP | PTRACE_EVENT_SECCOMP << 8)) {
      signal = WSTOPSIG(status);
      continue;
    }
    __ptrace_syscall_info call{};
    ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof call, &call);
    if (GoesToPipe(child, call) || course.writes++ < fatal) continue;
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    break;
  }
  course.killed = WIFSIGNALED(status);
  if (WIFEXITED(status)) course.exitCode = WEXITSTATUS(status);
  return course;
}

// A process that converts is killed at its writes, early and late ones: whatever it left, the next
// opening finds every record.
TEST_P(Conversion, OpensWithEverythingAfterAStopAtAnyWrite) {
  struct Case {
    const char* name;
    int records;
    std::vector<double> stops;  // as shares of all writes
  };
  std::vector<double> places;
  for (int i = 0; i < 15; ++i)
    places.push_back(i / 15.0);
  for (const Case& test :
       {Case{"few", 40, places}, Case{"as many as a registry has", 5900, {0.7}}}) {
    SCOPED_TRACE(test.name);
    std::vector<int> keys;
    for (int i = 0; i < test.records; ++i)
      keys.push_back(3 * i + 2);
    MakeOlderDatabase(keys);
    const Records expected = Expected();
    const std::string older = path_ + " before";
    fs::copy(path_, older, fs::copy_options::recursive);
    const auto convert = [&](int fatal) {
      fs::remove_all(path_);
      fs::copy(older, path_, fs::copy_options::recursive);
      return RunUntilWrite(fatal, [&] {
        const auto data = QvRefSystem::MakeDataModule(ui_);
        data->DatabasePath = path_;
        return data->OpenDatabase(path_, QvRefSystem::kFullMode, ResourceForm());
      });
    };
    const Course whole = convert(kNever);
    ASSERT_EQ(whole.exitCode, 0);
    ASSERT_GT(whole.writes, 20);
    for (const double stop : test.stops) {
      const int fatal = static_cast<int>(stop * whole.writes);
      ASSERT_TRUE(convert(fatal).killed) << fatal;
      const auto data = QvRefSystem::MakeDataModule(ui_);
      ASSERT_TRUE(Open(*data) == expected) << "killed at write " << fatal;
    }
  }
}

}  // namespace
}  // namespace refframe_tests
