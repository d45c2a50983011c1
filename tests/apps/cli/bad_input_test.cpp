// What is wrong is told, and nothing is lost by it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/data/string_tree.h"
#include "tests/apps/cli/command_line_fixture.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {
namespace {

namespace fs = std::filesystem;
using QvRefSystem::TObjectType;
using testing::HasSubstr;

class BadInput : public CommandLine {
 protected:
  // The line fails, says why, prints nothing else, and leaves every byte of the database.
  void ExpectRefusal(const std::string& line, const std::string& message) {
    SCOPED_TRACE(line);
    const auto before = DatabaseBytes();
    const Outcome outcome = Say(line);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr(message));
    EXPECT_TRUE(outcome.err.starts_with("refframe: ")) << outcome.err;
    EXPECT_EQ(DatabaseBytes(), before);
  }
};

using DamagedDatabase = BadInput;

TEST_F(DamagedDatabase, NamesTheTableThatIsMissingOrNone) {
  for (const char* table : {"ellipsoid.dat", "prime_meridian.dat", "param_value.dat"}) {
    const std::string path = std::string("refs/") + table;
    const std::string content = Get(path);
    fs::remove(Path(path));
    ExpectRefusal("list DB reference-system", table);
    for (const std::string& bytes :
         {std::string("Not a table, only a text.\n"), std::string(4096, '\0'),
          content.substr(0, content.size() / 2),
          "SQLite format 3" + std::string(1, '\0') + "and nothing behind",
          Get("refs/scale_unit.dat")}) {
      Put(path, bytes);
      ExpectRefusal("info DB reference-system 4", table);
    }
    Put(path, content);
  }
  EXPECT_EQ(Say("list DB reference-system").status, 0);
}

TEST_F(DamagedDatabase, IsToldFromAPlaceThatHoldsNone) {
  fs::create_directory(Path("folder.qvdb"));
  fs::create_directory(Path("empty"));
  Put("file", "some text");
  Put("text.qvdb", "some text");
  ExpectRefusal("check @nowhere", "@nowhere: there is no such database");
  ExpectRefusal("check @nowhere.qvdb", "@nowhere.qvdb: there is no such database");
  ExpectRefusal("check @folder.qvdb", "@folder.qvdb: is a folder");
  ExpectRefusal("check @file", "@file: is no folder");
  ExpectRefusal("check @empty", "@empty: the table prime_meridian.dat is missing");
  ExpectRefusal("check @text.qvdb", "text.qvdb");
  EXPECT_TRUE(fs::is_empty(Path("empty"))) << "a folder that is no database is left as it was";
  EXPECT_EQ(Get("text.qvdb"), "some text");
  EXPECT_FALSE(fs::exists(Path("nowhere.qvdb")));
}

TEST_F(DamagedDatabase, DoesNotHideAnObjectThatIsGone) {
  ChangeRecord(TObjectType::kDatum, 1, [](auto& table) { table.Delete(); });
  Put("kept.txt", "what stood here before");
  for (const char* system : {"3", "4", "5", "6"}) {
    ExpectRefusal(std::string("export DB reference-system ") + system + " -o @kept.txt",
                  std::string(system) + ": ");
  }
  EXPECT_EQ(Get("kept.txt"), "what stood here before");
  EXPECT_EQ(Say("export DB reference-system 1").status, 0) << "it does not need the datum";

  const Outcome check = Say("check DB");
  EXPECT_EQ(check.status, 1);
  EXPECT_THAT(check.out, HasSubstr("NAD27 geodetic"));
}

using UnwritablePlace = BadInput;

TEST_F(UnwritablePlace, IsNamed) {
  Put("file", "some text");
  Put("unit.txt", WriteTreeText(MakeTree(MetreTree).get()));
  ExpectRefusal("init @file/database", "@file/database");
  ExpectRefusal("init @file/database.qvdb", "@file/database.qvdb");
  fs::create_directory(Path("folder.qvdb"));
  ExpectRefusal("init @folder.qvdb", "@folder.qvdb");
  ExpectRefusal("init DB", "@");
  ExpectRefusal("export DB datum 1 -o @file/datum", "@file/datum");
  ExpectRefusal("export DB datum --all -o @file", "@file");
  ExpectRefusal("export DB datum 1 -o @", "@");
  ExpectRefusal("import DB linear-unit @folder.qvdb", "no files to import");
  EXPECT_EQ(Get("file"), "some text");
}

using BrokenObjects = BadInput;

// What else makes a tree no object is told where trees are read.
TEST_F(BrokenObjects, AreRefusedAndAddNothing) {
  const TreePtr tree = MakeTree(SystemTree, 4);
  RemoveField(tree.get(), 1020, 0);
  Put("broken.txt", WriteTreeText(tree.get()));
  ExpectRefusal("import DB reference-system @broken.txt", "@broken.txt: ");
  ClearTree(tree.get());
  Put("broken.txt", WriteTreeText(tree.get()));
  ExpectRefusal("import DB reference-system @broken.txt", "@broken.txt: ");
}

TEST_F(BrokenObjects, AreToldWithTheirPlace) {
  const struct {
    const char* content;
    const char* message;
  } rows[] = {
      {"", "@f: the file is empty"},
      {" \n \n", "@f: the file is empty"},
      {"(0,0)\n(1020,0)[1]\tname\tAlps", "@f: line 2: "},
      {"(0,0)\n(1020,0)[999999999]\tname\tAlps\n\n", "@f: line 2: "},
      {"(0,0)\n\t(1101,0)\n", "@f: line "},
      {"<?xml version=\"1.0\"?><!DOCTYPE xini [<!ENTITY a \"b\">]><xini version=\"1\"/>",
       "@f: XML: a DOCTYPE"},
      {"<xini version=\"1\"><i n=\"tag\">0</i>", "@f: XML"},
      {"{\"type\": \"GeographicCRS\"", "@f: "},
      {"{\"type\": \"Conversion\"}", "@f: "},
      {"PROJCRS[\"no\"", "@f: "},
      {"what is this", "@f: "},
  };
  for (const auto& row : rows) {
    Put("f", row.content);
    ExpectRefusal("import DB reference-system @f", row.message);
  }
}

TEST_F(BrokenObjects, OfAnotherTypeAreNoSuchObject) {
  Put("ellipsoid.txt", WriteTreeText(MakeTree(EllipsoidTree).get()));
  ExpectRefusal("import DB datum @ellipsoid.txt", "@ellipsoid.txt: it does not hold a whole datum");
  ExpectRefusal("import DB reference-system @ellipsoid.txt", "@ellipsoid.txt: ");
}

// The kind of a stored record is edited by hand: it can be listed, and everything else refuses it.
TEST_F(BrokenObjects, InTheTableAreListedAndNotExported) {
  ChangeRecord(TObjectType::kReferenceSystem, 1, [](auto& table) {
    table.Edit();
    table.FieldByName("TYPE").SetInteger(7);
    table.Post();
  });
  EXPECT_THAT(Say("list DB reference-system").out, HasSubstr("1\tSite grid"));
  ExpectRefusal("info DB reference-system 1", "kind");
  ExpectRefusal("export DB reference-system 1", "1: ");
  EXPECT_EQ(Say("check DB").status, 1);
}

}  // namespace
}  // namespace refframe_tests
