// One line in, the expected lines out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "platform/data/string_tree.h"
#include "tests/apps/cli/command_line_fixture.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {
namespace {

using testing::HasSubstr;

class Lines : public CommandLine {
 protected:
  // A system like that of kind 1 but for a swap, under a name.
  void PutOtherGrid(const char* name) {
    TreePtr other = MakeTree(SystemTree, 1);
    ReplaceField(other.get(), 1400, "0");
    ReplaceField(other.get(), 1020, name);
    Put("other.txt", WriteTreeText(other.get()));
  }
};

TEST_F(Lines, ListTheObjectsInTheOrderOfTheirNames) {
  const LineRow rows[] = {
      {"list DB reference-system", 0,
       "6\tAntenna site\tA system\n2\tLocal sphere\tA system\n5\tNAD27 / UTM 17N\tA system\n"
       "3\tNAD27 geocentric\tA system\n4\tNAD27 geodetic\tA system\n1\tSite grid\tA system\n",
       ""},
      {"list DB reference-system --search utm", 0, "5\tNAD27 / UTM 17N\tA system\n", ""},
      {"list DB reference-system --search=Nothing", 0, "", ""},
      {"list DB datum-shift", 0, "1\tNAD27 to WGS 84\tMean of the states\n", ""},
      {"list DB datum", 0, "1\tNorth American Datum 1927\tA datum\n", ""},
      // The key of a type table is the type's number, not the number of its record.
      {"list DB map-projection-type", 0, "9807\tTransverse Mercator\t\n", ""},
      {"list DB height-system", 0, "", ""},
  };
  ExpectAll(rows);
}

TEST_F(Lines, NameAnObjectByKeyCodeOrName) {
  const char* const kGeodetic =
      "Name: NAD27 geodetic\nDescription: A system\nLatitude & longitude units: degree\n"
      "Height units: metre\n";
  const LineRow rows[] = {
      {"info DB reference-system 4", 0, kGeodetic, ""},
      {"info DB reference-system epsg:26704", 0, kGeodetic, ""},
      {"info DB reference-system 'name: nad27 GEODETIC '", 0, kGeodetic, ""},
      {"info DB reference-system name:NAD27", 1, "", "there is no reference system \"name:NAD27\""},
      {"info DB reference-system epsg:7008", 1, "", "there is no reference system \"epsg:7008\""},
      {"info DB reference-system 99", 1, "", "there is no reference system \"99\""},
      {"info DB reference-system 0", 2, "", "\"0\" is no object"},
      {"info DB reference-system -1", 2, "", "-1"},
      {"info DB reference-system epsg:x", 2, "", "\"epsg:x\" is no object"},
      {"info DB reference-system 4x", 2, "", "\"4x\" is no object"},
      {"info DB ellipsoid epsg:7008", 0, "Name: Clarke 1866\nDescription: An ellipsoid\n", ""},
  };
  ExpectAll(rows);
}

// A name is never made unique, so that two records may bear it; to take the first would be to hand
// out a system that was perhaps not meant.
TEST_F(Lines, RefuseANameThatTwoObjectsBear) {
  PutOtherGrid("Site grid");
  Expect({"import DB reference-system @other.txt", 0, "7\tinserted\tSite grid\n", ""});
  Expect({"info DB reference-system 'name:Site grid'", 1, "", "the keys are 1, 7"});
}

TEST_F(Lines, AnswerMisuseWithTwo) {
  const LineRow rows[] = {
      {"", 2, "", "subcommand"},
      {"frobnicate DB", 2, "", "refframe: "},
      {"list DB", 2, "", "TYPE is required"},
      {"list DB vertical-system", 2, "", "vertical-system"},
      {"info DB datum", 2, "", "OBJ is required"},
      {"export DB datum", 2, "", "give an object or --all"},
      {"export DB datum 1 --all -o @out", 2, "", "not both"},
      {"export DB datum --all", 2, "", "needs a folder"},
      {"export DB datum 1 --form pdf", 2, "", "pdf"},
      {"export DB reference-system 4 --dimension 4", 2, "", "4"},
      {"import DB datum", 2, "", "FILE is required"},
      {"check", 2, "", "DB is required"},
      {"check DB DB", 2, "", "refframe: "},
  };
  ExpectAll(rows);
}

TEST_F(Lines, CarryHeightsWithTheirSystemAndAlone) {
  const TreePtr system = MakeTree(SystemTree, 4);
  HeightTableTree(TreeBuilder(system.get()).Sub(1500));
  Put("alps.txt", WriteTreeText(system.get()));
  Expect({"import DB reference-system @alps.txt", 0, "7\tinserted\tNAD27 geodetic\n", ""});
  Expect({"import DB reference-system @alps.txt", 0, "7\tfound\tNAD27 geodetic\n", ""});
  Expect({"list DB height-system", 0, "1\tAlps\tA table\n", ""});
  Expect({"used-by DB height-system 1", 0, "reference-system\t7\tNAD27 geodetic\tA system\n", ""});
  Expect({"check DB", 0, "", ""});
  Expect({"delete DB height-system 1 --yes", 1, "", "  reference-system 7 \"NAD27 geodetic\"\n"});
  Expect({"export DB reference-system 7 --form xml -o @again.xml", 0, "", ""});
  Expect({"import DB reference-system @again.xml", 0, "7\tfound\tNAD27 geodetic\n", ""});

  // Alone a height system is added whenever it comes, and is nobody's then.
  Expect({"export DB height-system 'name:Alps' -o @heights.txt", 0, "", ""});
  Expect({"import DB height-system @heights.txt", 0, "4\tinserted\tAlps\n", ""});
  EXPECT_THAT(Say("check DB").out, HasSubstr("no reference system refers to it"));
  Expect({"delete DB height-system 4", 1, "", "--yes"});
  Expect({"delete DB height-system 4 --yes", 0, "", ""});
  Expect({"check DB", 0, "", ""});
  Expect({"delete DB reference-system 7 --yes", 0, "", ""});
  Expect({"list DB height-system", 0, "", ""});
  EXPECT_TRUE(std::filesystem::is_empty(database_.path + "/Heights"));
}

TEST_F(Lines, GiveHelpForEveryCommand) {
  for (const char* command :
       {"init", "list", "info", "export", "import", "used-by", "delete", "check"}) {
    EXPECT_THAT(Printed(std::string(command) + " --help"), HasSubstr("DB")) << command;
    EXPECT_THAT(Say("--help").out, HasSubstr(command));
  }
  EXPECT_THAT(Say("--version").out, testing::MatchesRegex("refframe [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Lines, TellWhoUsesAnObject) {
  const LineRow rows[] = {
      {"used-by DB linear-unit epsg:9001", 0,
       "reference-system\t6\tAntenna site\tA system\n"
       "reference-system\t2\tLocal sphere\tA system\n"
       "reference-system\t5\tNAD27 / UTM 17N\tA system\n"
       "reference-system\t3\tNAD27 geocentric\tA system\n"
       "reference-system\t4\tNAD27 geodetic\tA system\n"
       "reference-system\t1\tSite grid\tA system\n"
       "ellipsoid\t1\tClarke 1866\tAn ellipsoid\n"
       "datum-shift\t1\tNAD27 to WGS 84\tMean of the states\n"
       "map-projection\t1\tUTM zone 17N\tA projection\n",
       ""},
      {"used-by DB reference-system 4", 0,
       "reference-system\t6\tAntenna site\tA system\n"
       "reference-system\t5\tNAD27 / UTM 17N\tA system\n",
       ""},
      {"used-by DB datum-shift-type 1", 0, "datum-shift\t1\tNAD27 to WGS 84\tMean of the states\n",
       ""},
      {"used-by DB reference-system 5", 0, "", ""},
  };
  ExpectAll(rows);
}

TEST_F(Lines, DeleteWhatNothingRefersTo) {
  Expect({"delete DB reference-system 5 --yes", 0, "", ""});
  Expect({"info DB reference-system 5", 1, "", "there is no reference system \"5\""});
  Expect({"delete DB map-projection 1 --yes", 0, "", ""});
  EXPECT_EQ(CountOf("reference-system"), 5);
  EXPECT_EQ(CountOf("map-projection"), 0);
}

TEST_F(Lines, RefuseToDeleteWhatIsInUse) {
  Expect({"delete DB reference-system 4 --yes", 1, "",
          "refframe: The object cannot be deleted because it is used by:\n"
          "  reference-system 6 \"Antenna site\"\n  reference-system 5 \"NAD27 / UTM 17N\"\n"});
  Expect({"delete DB map-projection-type 9807 --yes", 1, "", "cannot be deleted"});
  EXPECT_EQ(CountOf("reference-system"), 6);
  EXPECT_EQ(CountOf("map-projection-type"), 1);
}

TEST_F(Lines, RepairWhatDeletionsLeave) {
  Expect({"delete DB reference-system 5 --yes", 0, "", ""});
  const char* const kNote =
      "note: param_value.dat: row of tag 4 of owner 1/5 was left by a record that is gone\n";
  const char* const kStep = "param_value.dat: row of tag 4 of owner 1/5, \"26705\": removed\n";
  Expect({"check DB", 0, kNote, "0 errors, 1 note\n"});
  Expect({"check DB --repair --dry-run", 0, (std::string(kStep) + kNote).c_str(), "1 note"});
  Expect({"check DB --repair", 0, kStep, "the backup is @refs-before-repair.qvdb\n"});
  Expect({"check DB", 0, "", ""});
  EXPECT_EQ(Say("check @refs-before-repair.qvdb").out, kNote);
  Expect({"check DB --dry-run", 2, "", "--repair"});
}

TEST_F(Lines, NameTwentyUsersAtMost) {
  for (int i = 0; i < 21; ++i) {
    const TreePtr tree = MakeTree(SystemTree, 1);
    ReplaceField(tree.get(), 1020, "Site " + std::to_string(i));
    Put("site.txt", WriteTreeText(tree.get()));
    ASSERT_EQ(Say("import DB reference-system @site.txt").status, 0);
  }
  const Outcome refused = Say("delete DB linear-unit 1 --yes");
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(std::ranges::count(refused.err, '\n'), 22);
  EXPECT_THAT(refused.err, HasSubstr("  and 10 more (refframe used-by lists them)\n"));
}

TEST_F(Lines, AskBeforeTheyDelete) {
  Outcome outcome = Say("delete DB reference-system 1", "n\n", true);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "Do you really want to delete \"Site grid\"(reference system)? [y/N] ");
  EXPECT_EQ(CountOf("reference-system"), 6);

  EXPECT_EQ(Say("delete DB reference-system 1", "", true).status, 0);
  EXPECT_EQ(CountOf("reference-system"), 6) << "the end of the input is no Yes";

  EXPECT_EQ(Say("delete DB reference-system 1", "y\n", true).status, 0);
  EXPECT_EQ(CountOf("reference-system"), 5);
}

TEST_F(Lines, ExportAndImportTheSameObject) {
  // The zero byte ends the text form in a file, not on the standard output.
  const Outcome printed = Say("export DB reference-system 5");
  Expect({"export DB reference-system 5 -o @grid.reference-system", 0, "", ""});
  EXPECT_EQ(Get("grid.reference-system"), printed.out + '\0');
  Expect({"export DB reference-system 5 --form xml -o @grid.x-ref-system", 0, "", ""});
  EXPECT_THAT(Get("grid.x-ref-system"), HasSubstr("<xini"));

  const LineRow rows[] = {
      {"import DB reference-system @grid.reference-system @grid.x-ref-system", 0,
       "5\tfound\tNAD27 / UTM 17N\n5\tfound\tNAD27 / UTM 17N\n", ""},
      {"delete DB reference-system 5 --yes", 0, "", ""},
      {"import DB reference-system @grid.reference-system", 0, "7\tinserted\tNAD27 / UTM 17N\n",
       ""},
      {"import DB reference-system @grid.x-ref-system --form xml", 0, "7\tfound\tNAD27 / UTM 17N\n",
       ""},
  };
  ExpectAll(rows);

  const Outcome piped = Say("import DB reference-system -", printed.out);
  EXPECT_EQ(piped.out, "7\tfound\tNAD27 / UTM 17N\n");
}

TEST_F(Lines, GoOnBehindAFileThatDoesNotGetIn) {
  Expect({"export DB ellipsoid 1 -o @clarke.ellipsoid", 0, "", ""});
  Put("alps.txt", "(0,0)\n(1020,0)[1]\tname\tAlps\n(1021,0)[one]\tdesc\t\n\n");
  Expect({"import DB ellipsoid @alps.txt @none.txt @clarke.ellipsoid --each", 1,
          "1\tfound\tClarke 1866\n", "refframe: @alps.txt: line 3: "});
}

TEST_F(Lines, BringSystemsInAndOutThroughProj) {
  Put("system.json", Printed("export DB reference-system 4 --form projjson"));
  EXPECT_THAT(Get("system.json"), HasSubstr("\"Clarke 1866\""));
  Put("system.wkt", Printed("export DB reference-system 5 --form wkt2"));
  EXPECT_THAT(Get("system.wkt"), HasSubstr("\"NAD27 / UTM 17N\""));
  EXPECT_THAT(Printed("import DB reference-system @system.json @system.wkt"),
              testing::AllOf(HasSubstr("\tNAD27 geodetic\n"), HasSubstr("\tNAD27 / UTM 17N\n")));

  const LineRow refused[] = {
      {"export DB ellipsoid 1 --form projjson", 1, "", "hold reference systems"},
      {"export DB reference-system 1 --form projjson", 1, "", "refframe: 1: "},
      {"import DB ellipsoid @system.json", 1, "", "@system.json: "},
  };
  ExpectAll(refused);
}

// Two systems once went to one file, and the second took the place of the first.
TEST_F(Lines, ExportEveryObjectToAFileOfItsOwn) {
  PutOtherGrid("SITE:grid");
  Expect({"import DB reference-system @other.txt", 0, "7\tinserted\tSITE:grid\n", ""});

  const char* const kWritten = "7 objects written to @out\n";
  for (const char* form : {" --form xml", " --form xml", ""}) {
    Expect({("export DB reference-system --all -o @out" + std::string(form)).c_str(), 0, kWritten,
            ""});
  }
  Expect({"export DB prime-meridian --all -o @out", 0, "1 objects written to @out\n", ""});
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(Path("out")))
    names.push_back(entry.path().filename().string());
  EXPECT_EQ(names.size(), 22U);
  EXPECT_THAT(names,
              testing::IsSupersetOf({"NAD27   UTM 17N.x-ref-system", "Site grid[1].x-ref-system",
                                     "Antenna site[1].x-ref-system", "Site grid.reference system",
                                     "Greenwich.prime meridian"}));
}

TEST_F(Lines, TellWhichObjectsOfAllCannotBeWritten) {
  const Outcome outcome = Say("export DB reference-system --all -o @out --form projjson");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "3 objects written to @out\n");
  for (const char* name : {"1 \"Site grid\": ", "2 \"Local sphere\": ", "6 \"Antenna site\": "}) {
    EXPECT_THAT(outcome.err, HasSubstr(name));
  }
}

TEST_F(Lines, KeepALineALineWhateverItsTextsHold) {
  TreePtr unit = MakeTree(MetreTree);
  ReplaceField(unit.get(), 5320, "two\nlines\tand a tab");
  Put("unit.txt", WriteTreeText(unit.get()));
  Expect({"import DB linear-unit @unit.txt", 0, "2\tinserted\ttwo\\nlines\\tand a tab\n", ""});
}

}  // namespace
}  // namespace refframe_tests
