// Opening and closing a database, in both forms, whole and damaged.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/text/text.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

namespace fs = std::filesystem;
using QvRefSystem::kFullMode;
using QvRefSystem::kSimpleMode;
using QvRefSystem::TdatamoduleQvRfData;

using Strings = std::vector<std::string>;

struct Opening {
  ScriptedUi ui;
  std::unique_ptr<TdatamoduleQvRfData> data = QvRefSystem::MakeDataModule(ui);
  bool opened = false;

  explicit Opening(const std::string& path, bool resourceForm = false) {
    data->DatabasePath = path;
    opened = data->OpenDatabase(path, kSimpleMode, resourceForm);
  }
};

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

Strings FilesOf(const std::string& folder) {
  Strings names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class BothForms : public testing::TestWithParam<bool> {};

TEST_P(BothForms, OpenWithTrimmedPathsAndStateTheirPlaces) {
  ScriptedUi ui;
  const TemporaryFolder folder;
  const bool resourceForm = GetParam();
  const std::string path = folder.Path(resourceForm ? "refs.qvdb" : "refs");
  MakeEmptyTables(path, resourceForm, ui);
  Opening opening("  " + path + " ", resourceForm);
  ASSERT_TRUE(opening.opened) << opening.data->LastError();
  const std::string root = path + (resourceForm ? "." : "/");
  EXPECT_EQ(opening.data->DatabasePath, root);
  EXPECT_EQ(opening.data->GetDatabaseRoot(), root);
  EXPECT_EQ(opening.data->GetHeightsPrefix(), root + "Heights" + (resourceForm ? "." : "/"));
  EXPECT_EQ(opening.data->GetBackupPrefix(), root + "Backup" + (resourceForm ? "." : "/"));
  EXPECT_EQ(opening.data->databufEllipsoid.StreamName,
            root + (resourceForm ? "ellipsoid" : "ellipsoid.dat"));
  EXPECT_FALSE(opening.data->NotActive);
  EXPECT_EQ(opening.data->DialogMode, kSimpleMode);
  EXPECT_NE(opening.data->EllipsoidProcessor, nullptr);
  EXPECT_FALSE(opening.data->datasetInternalService.GetActive());

  opening.data->CloseDatabase();
  opening.data->CloseDatabase();
  EXPECT_TRUE(opening.data->NotActive);
  EXPECT_EQ(opening.data->EllipsoidProcessor, nullptr);
  EXPECT_FALSE(opening.data->datasetEllipsoid.GetActive());
  EXPECT_TRUE(opening.data->OpenDatabase(opening.data->DatabasePath, kFullMode, resourceForm));
}

TEST_P(BothForms, MakeTheTwoTablesThatMayBeMissingAndNoOther) {
  const bool resourceForm = GetParam();
  for (const QvRefSystem::TableSpec& table : QvRefSystem::TableCatalogue()) {
    if (table.tag == QvRefSystem::kUnopenedTag) continue;
    ScriptedUi ui;
    const TemporaryFolder folder;
    const std::string path = folder.Path(resourceForm ? "refs.qvdb" : "refs");
    MakeEmptyTables(path, resourceForm, ui);
    const std::string stream =
        resourceForm ? path + "." + QvRefSystem::ExtractTableBaseName(table.streamName)
                     : path + "/" + std::string(table.streamName);
    ASSERT_TRUE(QvRefSystem::DeleteStorageFile(stream, resourceForm)) << stream;
    Opening opening(path, resourceForm);
    const bool made = table.tag == 1 || table.tag == 16;
    EXPECT_EQ(opening.opened, made) << table.streamName;
    EXPECT_EQ(QvRefSystem::StorageFileExists(stream, resourceForm), made) << table.streamName;
    EXPECT_EQ(opening.ui.messages.size(), made ? 1U : 0U) << table.streamName;
    EXPECT_EQ(opening.data->NotActive, !made);
  }
}

INSTANTIATE_TEST_SUITE_P(, BothForms, testing::Bool(), FormName{});

TEST(DataModule, TellsWhichTableIsNoTable) {
  const auto replace = [](const std::string& path) {
    fs::copy_file(fs::path(path).parent_path() / "linear_unit.dat", path,
                  fs::copy_options::overwrite_existing);
  };
  const struct {
    const char* name;
    const char* table;
    std::function<void(const std::string& path)> damage;
  } rows[] = {
      {"a text file", "datum_shift.dat",
       [](const std::string& path) { WriteFile(path, "this is no table\n"); }},
      {"an empty file", "ellipsoid.dat", [](const std::string& path) { WriteFile(path, ""); }},
      {"a cut table", "map_proj.dat",
       [](const std::string& path) { fs::resize_file(path, fs::file_size(path) / 2); }},
      {"another table", "geodetic_datum.dat", replace},
      {"another table of the same fields", "scale_unit.dat", replace},
      {"another table under the reference systems", "reference_system.dat", replace},
  };
  for (const auto& row : rows) {
    ScriptedUi ui;
    const TemporaryFolder folder;
    MakeEmptyTables(folder.Path(), false, ui);
    row.damage(folder.Path(row.table));
    const Strings before = FilesOf(folder.Path());
    Opening opening(folder.Path());
    EXPECT_FALSE(opening.opened) << row.name;
    EXPECT_EQ(opening.ui.messages, Strings{std::string("Cannot open table \"") + row.table + "\""})
        << row.name;
    EXPECT_FALSE(opening.data->LastError().empty()) << row.name;
    EXPECT_TRUE(opening.data->NotActive);
    EXPECT_EQ(opening.data->RefSystemProcessor, nullptr);
    opening.data->CloseDatabase();
    EXPECT_EQ(FilesOf(folder.Path()), before) << row.name;
  }
}

TEST(DataModule, TellsOfPlacesThatCannotHoldATable) {
  const TemporaryFolder folder;
  WriteFile(folder.Path("file"), "x");
  fs::create_directories(folder.Path("folder.qvdb"));
  fs::create_directories(folder.Path("empty"));
  const struct {
    std::string path;
    bool resourceForm;
    Strings messages;
  } rows[] = {
      {folder.Path("file"),
       false,
       {"Cannot create file " + folder.Path("file/prime_meridian.dat")}},
      {folder.Path("folder.qvdb"), true, {"Cannot open table \"prime_meridian\""}},
      {"", false, {}},
      {folder.Path("empty"), false, {}},
      {folder.Path("new.qvdb"), true, {}},
  };
  for (const auto& row : rows) {
    Opening opening(row.path, row.resourceForm);
    EXPECT_FALSE(opening.opened) << row.path;
    EXPECT_EQ(opening.ui.messages, row.messages) << row.path;
  }
  EXPECT_EQ(FilesOf(folder.Path()), (Strings{"empty", "file", "folder.qvdb"}));
  EXPECT_TRUE(FilesOf(folder.Path("empty")).empty());
}

TEST(StorageFiles, TellNamesApart) {
  using QvRefSystem::ExtractTableBaseName;
  EXPECT_EQ(ExtractTableBaseName("/a/b.c/ellipsoid.DAT"), "ellipsoid");
  EXPECT_EQ(ExtractTableBaseName("ellipsoid.dat "), "ellipsoid");
  EXPECT_EQ(ExtractTableBaseName("ellipsoid.data"), "ellipsoid.data");
  EXPECT_EQ(ExtractTableBaseName(".dat"), "");
  EXPECT_EQ(QvRefSystem::StorageShortName("a/refs.qvdb.Heights.Alps", true), "Alps");
  EXPECT_EQ(QvRefSystem::StorageShortName("a/Heights/Alps.txt", false), "Alps.txt");
  EXPECT_EQ(QvRefSystem::MakeFileName(" a/b.c\\d:e+f*g?h!i\"(ö) "), " a b c d e f g h i (ö) ");
}

TEST(StorageFiles, FindFreeNamesInBothForms) {
  const TemporaryFolder folder;
  const struct {
    bool resourceForm;
    const char* wanted;
    std::vector<const char*> taken;
    const char* free;
  } rows[] = {
      {false, "a.txt", {}, "a.txt"},
      {false, "a.txt", {"a.txt"}, "a[1].txt"},
      {false, "a .txt", {}, "a.txt"},
      {false, "a[1] .txt", {"a[1].txt"}, "a[2].txt"},
      {false, "a[7].txt", {"a[7].txt"}, "a[8].txt"},
      {false, "a[7].txt", {"a[7].txt", "a[8].txt"}, "a[9].txt"},
      {false, "a[x].txt", {"a[x].txt"}, "a[x][1].txt"},
      {false, "a[99999999999].txt", {"a[99999999999].txt"}, "a[99999999999][1].txt"},
      {true, "refs.qvdb.Heights.Alps", {"refs.qvdb.Heights.Alps"}, "refs.qvdb.Heights.Alps_1"},
      {true, "refs.qvdb.Alps_1", {"refs.qvdb.Alps_1"}, "refs.qvdb.Alps_2"},
      {true, "refs.qvdb.Alps_", {"refs.qvdb.Alps_"}, "refs.qvdb.Alps__1"},
  };
  int place = 0;
  for (const auto& row : rows) {
    const std::string root = folder.Path(std::to_string(place++)) + "/";
    fs::create_directories(root);
    for (const char* taken : row.taken) {
      ASSERT_TRUE(QvRefSystem::SaveStorageFile(root + taken, row.resourceForm, "x")) << taken;
    }
    EXPECT_EQ(QvRefSystem::MakeUniqueStorageName(root + row.wanted, row.resourceForm),
              root + row.free);
  }
}

TEST(StorageFiles, AreCopiedBetweenBothForms) {
  const TemporaryFolder folder;
  const std::string file = folder.Path("new/folders/a.txt");
  const std::string resource = folder.Path("refs.qvdb.Heights.Alps");
  std::string content;
  EXPECT_FALSE(QvRefSystem::LoadStorageFile(file, false, &content));
  ASSERT_TRUE(QvRefSystem::SaveStorageFile(file, false, "heights"));
  ASSERT_TRUE(QvRefSystem::CopyStorageFile(file, false, resource, true));
  ASSERT_TRUE(QvRefSystem::LoadStorageFile(resource, true, &content));
  EXPECT_EQ(content, "heights");
  EXPECT_TRUE(QvRefSystem::DeleteStorageFile(resource, true));
  EXPECT_FALSE(QvRefSystem::DeleteStorageFile(resource, true));
  EXPECT_FALSE(QvRefSystem::CopyStorageFile(resource, true, file, false));
  ASSERT_TRUE(QvRefSystem::LoadStorageFile(file, false, &content));
  EXPECT_EQ(content, "heights");
  // A target that cannot be written leaves no half file and no folder behind.
  EXPECT_FALSE(QvRefSystem::SaveStorageFile(file + "/below", false, "x"));
}

}  // namespace
}  // namespace refframe_tests
