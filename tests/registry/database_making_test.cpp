#include "registry/database_making.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/storage_files.h"
#include "tests/platform/storage/test_folder.h"
#include "tests/support/scripted_ui.h"

namespace {

using namespace QvRefSystem;
using namespace platform_tests;
using refframe_tests::ScriptedUi;
using testing::HasSubstr;
using testing::ThrowsMessage;

/// Where a database can be made.
struct Target {
  const char* name;
  const char* path;
  bool resourceForm;
  /// Makes what stands there before; null for nothing.
  void (*prepare)(const std::string& path);
};

const Target kTargets[] = {
    {"a new folder", "above/refs", false, nullptr},
    {"a folder with other things", "refs", false,
     [](const std::string& path) {
       std::filesystem::create_directory(path);
       WriteFile(path + "/notes", "mine");
     }},
    {"a new container", "above/refs.qvdb", true, nullptr},
    {"a container with other things", "refs.qvdb", true,
     [](const std::string& path) { ASSERT_TRUE(SaveStorageFile(path + ".notes", true, "mine")); }}};

/// A place for one database, in a folder of its own.
class Place {
 public:
  explicit Place(const Target& target) : target_(target), path_(folder_.Path(target.path)) {
    if (target.prepare != nullptr) target.prepare(path_);
  }
  std::unique_ptr<DatabaseMaking> Begin() {
    return std::make_unique<DatabaseMaking>(path_, target_.resourceForm, ui);
  }
  /// Whether the whole is there, and what was there before, and nothing beside.
  void ExpectWhole() {
    const std::string join = target_.resourceForm ? "." : "/";
    const std::string ending = target_.resourceForm ? "" : ".dat";
    for (const char* table : {"prime_meridian", "reference_system", "vertical_refsystem"})
      EXPECT_TRUE(StorageFileExists(path_ + join + table + ending, target_.resourceForm));
    std::string notes = "mine";
    if (target_.prepare != nullptr) {
      EXPECT_TRUE(LoadStorageFile(path_ + join + "notes", target_.resourceForm, &notes));
    }
    EXPECT_EQ(notes, "mine");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.Path()))
      EXPECT_FALSE(entry.path().filename().string().starts_with(".")) << entry.path();
  }
  [[nodiscard]] const std::string& Path() const { return path_; }

  ScriptedUi ui;

 private:
  Target target_;
  TestFolder folder_;
  std::string path_;
};

TEST(MakingADatabase, IsWonByTheFirstOfTwo) {
  for (const Target& target : kTargets) {
    SCOPED_TRACE(target.name);
    Place place(target);
    const auto first = place.Begin();
    auto second = place.Begin();
    first->Deliver();
    EXPECT_THAT([&] { second->Deliver(); },
                ThrowsMessage<std::runtime_error>(HasSubstr("there is a database already")));
    second.reset();
    place.ExpectWhole();
  }
}

TEST(MakingADatabase, IsNotHinderedByAKilledOne) {
  for (const Target& target : kTargets) {
    SCOPED_TRACE(target.name);
    Place place(target);
    const auto kill = [&place] {
      const auto making = place.Begin();
      _exit(7);
      return 0;
    };
    EXPECT_EQ(ExitOfChild(kill), 7);
    place.Begin()->Deliver();
    place.ExpectWhole();
  }
}

TEST(MakingADatabase, IsFinishedByTheNextWhereItWasKilledAmongTheTables) {
  Place place(kTargets[1]);
  const auto kill = [&place] {
    const auto making = place.Begin();
    const std::filesystem::path made = making->Place();
    WriteFile((made.parent_path() / "delivering").string(), "");
    std::filesystem::rename(made / "prime_meridian.dat", place.Path() + "/prime_meridian.dat");
    _exit(7);
    return 0;
  };
  EXPECT_EQ(ExitOfChild(kill), 7);
  EXPECT_THAT([&] { place.Begin(); },
              ThrowsMessage<std::runtime_error>(HasSubstr("there is a database already")));
  place.ExpectWhole();
}

TEST(MakingADatabase, SettlesWhatIsLeftOfAFormerOne) {
  Place place(kTargets[2]);
  std::filesystem::create_directories(std::filesystem::path(place.Path()).parent_path());
  WriteFile(place.Path() + "-journal", std::string(512, '\0'));
  WriteFile(place.Path() + "-wal", "somebody's records");
  place.Begin()->Deliver();
  place.ExpectWhole();
  EXPECT_FALSE(std::filesystem::exists(place.Path() + "-journal"));
  EXPECT_EQ(ReadFile(place.Path() + "-wal.left"), "somebody's records");
  EXPECT_THAT(place.ui.messages, testing::ElementsAre(HasSubstr("-wal.left")));
}

}  // namespace
