// Databases copied, backed up and put back; files that come in together; files that are never
// written over.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/data/string_tree.h"
#include "platform/storage/store_lock.h"
#include "tests/apps/cli/command_line_fixture.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class Keeping : public CommandLine {
 protected:
  // Geodetic systems whose height files differ by case alone.
  void ImportHeights() {
    for (const auto& [system, name] : {std::pair("North", "Alps"), {"South", "ALPS"}}) {
      const TreePtr tree = MakeTree(SystemTree, 4);
      HeightTableTree(TreeBuilder(tree.get()).Sub(1500));
      QvCommonUtils::TStringTree* heights = tree.get();
      ASSERT_TRUE(EnterSubtree(&heights, 1500, 0));
      ReplaceField(heights, 1502, name);
      ReplaceField(tree.get(), 1020, system);
      Put("system.txt", WriteTreeText(tree.get()));
      (void)Printed("import DB reference-system @system.txt");
    }
  }
  // All that a database hands out.
  [[nodiscard]] std::string Contents(const std::string& database) const {
    std::string contents;
    for (const char* type : {"reference-system", "height-system", "datum", "ellipsoid"}) {
      contents += Printed("list " + database + " " + type);
    }
    for (const char* key : {"1", "2", "3", "4", "5", "7", "8"}) {
      contents += Printed("export " + database + " reference-system " + key);
    }
    return contents;
  }
};

TEST_F(Keeping, ACopyIsTheDatabaseInEitherForm) {
  ImportHeights();
  // The key of the last record is not given again, in no copy.
  Put("last.txt", Printed("export DB reference-system 6"));
  (void)Printed("delete DB reference-system 6 --yes");
  const std::string contents = Contents("DB");
  const std::array<std::string, 5> chain{"DB", "@a.qvdb", "@b.qvdb", "@c", "@d"};
  for (std::size_t i = 1; i < chain.size(); ++i) {
    SCOPED_TRACE(chain[i]);
    const Outcome copied = Say("copy " + chain[i - 1] + " " + chain[i]);
    EXPECT_EQ(copied.status, 0) << copied.err;
    EXPECT_EQ(copied.err.empty(), i > 1) << copied.err;
    EXPECT_EQ(Contents(chain[i]), contents);
    Expect({("copy DB " + chain[i]).c_str(), 1, "", "is there already"});
  }
  for (const std::string& database : {chain[1], chain[4]}) {
    EXPECT_THAT(Printed("import " + database + " any @last.txt"), HasSubstr("9\tinserted"));
  }
}

TEST_F(Keeping, ABackupIsPutBackAndTheFormerDatabaseKept) {
  const LineRow rows[] = {
      {"backup DB @b.qvdb", 0, "", ""},
      {"backup DB @b.qvdb", 1, "", "\"@b.qvdb\" is there already"},
      {"backup @b.qvdb @b.qvdb --force", 1, "", "is the database itself"},
      {"backup DB @b", 1, "", "ends in \".qvdb\""},
      {"delete DB reference-system 2 --yes", 0, "", ""},
      {"restore @b.qvdb DB", 0, "the former database is kept as @refs-before-restore\n", ""},
      {"list DB reference-system --search sphere", 0, "2\tLocal sphere\tA system\n", ""},
      {"list @refs-before-restore reference-system --search sphere", 0, "", ""},
      {"restore @b.qvdb @new.qvdb", 0, "", ""},
      {"restore @b.qvdb @new.qvdb", 0, "the former database is kept as @new-before-restore.qvdb\n",
       ""},
      {"restore @none.qvdb DB", 1, "", "there is no such database"},
  };
  ExpectAll(rows);
}

TEST_F(Keeping, WhatBelongsToADatabaseIsNeverWrittenOver) {
  (void)Printed("copy DB @other.qvdb");
  fs::create_symlink(Path("other.qvdb"), Path("link.txt"));
  fs::create_directory(Path("refs/Heights"));
  const auto before = DatabaseBytes();
  for (const char* target :
       {"@other.qvdb", "@other.qvdb-journal", "@link.txt", "@refs/ellipsoid.dat", "@refs/lost.dat",
        "@refs/Heights/Alps", "@refs --all", "@refs/Heights --all"}) {
    const std::string object = std::string_view(target).ends_with("--all") ? "" : "1 ";
    Expect({("export DB ellipsoid " + object + "-o " + target).c_str(), 1, "",
            "belongs to a database"});
  }
  EXPECT_EQ(DatabaseBytes(), before);
  Expect({"list @other.qvdb prime-meridian", 0, "1\tGreenwich\tThe zero meridian\n", ""});
}

TEST_F(Keeping, AFileThatIsThereIsReplacedAsItsOwnerWishes) {
  const char* const kLine = "export DB ellipsoid 1 -o @out";
  Put("out", "old");
  Expect({"export DB ellipsoid 1 -o @out --no-clobber", 1, "", "\"@out\" is there already"});
  EXPECT_THAT(Say(kLine, "n\n", true).err, HasSubstr("Replace it? [y/N]"));
  EXPECT_EQ(Get("out"), "old");
  (void)Say(kLine, "y\n", true);
  EXPECT_THAT(Get("out"), HasSubstr("Clarke 1866"));
  Put("out", "old");
  Expect({kLine, 0, "", ""});
  EXPECT_THAT(Get("out"), HasSubstr("Clarke 1866"));
}

TEST_F(Keeping, FilesOfManyTypesComeInTogetherOrNotAtAll) {
  for (const char* type : {"reference-system", "datum", "ellipsoid", "linear-unit", "scale-unit",
                           "angular-unit", "prime-meridian", "map-projection"}) {
    (void)Printed(std::string("export DB ") + type + " --all -o @objects");
  }
  (void)Printed("init --empty @new");
  Put("objects/zz", "(0,0)\n(7,0)[1]\tname\tNothing\n\n");
  Expect({"import @new any @objects", 1, "", "@objects/zz: it does not hold an object"});
  Expect({"list @new ellipsoid", 0, "", ""});
  EXPECT_EQ(Say("import @new any @objects --each").status, 1);
  fs::remove(Path("objects/zz"));
  EXPECT_THAT(Printed("import @new any @objects"), testing::Not(HasSubstr("inserted")));
  for (const char* type : {"datum", "scale-unit", "map-projection"}) {
    EXPECT_EQ(Printed(std::string("list @new ") + type).empty(), false) << type;
  }
}

TEST_F(Keeping, AnotherProgramThatWritesIsWaitedForAsLongAsWasSaid) {
  (void)Printed("copy DB @other.qvdb");
  (void)Printed("backup DB @backup.qvdb");
  Put("unit.txt", WriteTreeText(MakeTree(DegreeTree).get()));
  for (const char* file : {"other.qvdb", "refs/reference_system.dat"}) {
    const QvPlatform::StoreLock writer({Path(file)});
    const std::string database = *file == 'o' ? "@other.qvdb" : "DB";
    Expect({("restore @backup.qvdb " + database + " --wait 0").c_str(), 1, "", "another program"});
    EXPECT_FALSE(fs::exists(Path("other-before-restore.qvdb")));
    EXPECT_EQ(Say("restore @backup.qvdb " + database + " --wait x").status, 2);
  }
}

TEST_F(Keeping, WhatCanBeReadOfADamagedDatabaseIsBroughtBack) {
  ImportHeights();
  const std::string contents = Contents("DB");
  (void)Printed("copy DB @other.qvdb");
  for (const char* database : {"DB", "@other.qvdb"}) {
    SCOPED_TRACE(database);
    fs::remove_all(Path("new"));
    EXPECT_EQ(Say(std::string("salvage ") + database + " @new").status, 0);
    EXPECT_EQ(Contents("@new"), contents);
    EXPECT_EQ(Say("check @new").status, Say("check DB").status);
    Expect({(std::string("salvage ") + database + " @new").c_str(), 1, "", "is there already"});
  }
  // The schema of a table and the last page of another; a third is gone.
  const std::string schema = Get("refs/reference_system.dat");
  Put("refs/reference_system.dat", std::string(4096, '\x55') + schema.substr(4096));
  fs::remove(Path("refs/datum_shift.dat"));
  Put("refs/ellipsoid.dat", "nothing");
  const Outcome salvaged = Say("salvage DB @rest");
  EXPECT_EQ(salvaged.status, 1);
  EXPECT_THAT(salvaged.err, HasSubstr("reference_system.dat: the list of its tables is damaged"));
  EXPECT_THAT(salvaged.out, HasSubstr("reference_system\t8\t"));
  EXPECT_THAT(salvaged.out, HasSubstr("geodetic_datum\t1\twhole\n"));
  EXPECT_THAT(salvaged.out, HasSubstr("datum_shift\t0\t"));
  EXPECT_EQ(Printed("list @rest reference-system"), Printed("list @new reference-system"));
  // The key of the lost ellipsoid is not given to another one, for the datum still names it.
  Put("other.txt", Printed("export @new ellipsoid 1"));
  EXPECT_THAT(Printed("import @rest any @other.txt"), HasSubstr("2\tinserted"));
}

TEST_F(Keeping, WhatAnInterruptedProgramLeftIsTold) {
  EXPECT_EQ(Printed("recover DB"), "nothing is left of an interrupted change\n");
  Put("refs/gone.dat-journal", "of a table that is no more");
  EXPECT_THAT(Printed("recover @refs"), HasSubstr("gone.dat-journal.left"));
  EXPECT_TRUE(fs::exists(Path("refs/gone.dat-journal.left")));
}

}  // namespace
}  // namespace refframe_tests
