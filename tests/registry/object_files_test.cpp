#include "registry/object_files.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/test_database.h"

namespace QvRefSystem {
namespace {

using enum ObjectFileForm;

TEST(ObjectFiles, OfTextBearTheStoredLabelWithItsBlanks) {
  EXPECT_EQ(ObjectFileExtension(kText, "prime meridian"), ".prime meridian");
  EXPECT_EQ(ObjectFileExtension(kXml, "prime meridian"), ".x-ref-system");
  EXPECT_EQ(ObjectFileExtension(kProjJson, "reference system"), ".json");
  EXPECT_EQ(ObjectFileExtension(kWkt2, "reference system"), ".wkt");
}

TEST(ObjectFiles, ShowTheirForm) {
  const struct {
    const char* content;
    ObjectFileForm form;
    ObjectFileForm treeForm;
  } rows[] = {
      {"(0,0)\n", kText, kText},
      {"\xEF\xBB\xBF \n(0,0)", kText, kText},
      {"\xEF\xBB\xBF<?xml?>(", kXml, kXml},
      {" {\"a\": \"(<\"}", kProjJson, kText},
      {"GEOGCS[\"<\"]", kWkt2, kXml},
      {"", kWkt2, kText},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FormOfContent(row.content), row.form) << row.content;
    EXPECT_EQ(TreeFormOfContent(row.content), row.treeForm) << row.content;
  }
}

// A folder may be read on a system that keeps names, takes no account of case, or has patterns.
TEST(ObjectFiles, GetNamesThatAreFreeAndSafe) {
  const refframe_tests::TemporaryFolder folder;
  std::ofstream(folder.Path("Taken.x")) << "stands here already";
  FreeFileNames names(folder.Path());
  const std::string longName = std::string(179, 'n') + "\u00e9";
  const std::pair<std::string, std::string> rows[] = {{"Athens", "Athens.x"},
                                                      {"ATHENS", "ATHENS[1].x"},
                                                      {"athens", "athens[2].x"},
                                                      {"Taken", "Taken[1].x"},
                                                      {"a/b\\c:d*?", "a b c d.x"},
                                                      {" \t.", "unnamed.x"},
                                                      {"aux", "_aux.x"},
                                                      {"COM7", "_COM7.x"},
                                                      {"COM0", "COM0.x"},
                                                      {"-rf", "_-rf.x"},
                                                      {longName, std::string(179, 'n') + ".x"}};
  for (const auto& [name, file] : rows)
    EXPECT_EQ(names.Next(name, ".x"), folder.Path() + "/" + file) << name;
}

TEST(ObjectFiles, TooLargeForTheirReaderAreNotRead) {
  const refframe_tests::TemporaryFolder folder;
  SaveObjectFile(folder.Path("f"), kText, "12345");
  EXPECT_EQ(LoadObjectFile(folder.Path("f"), 6), std::string("12345\0", 6));
  EXPECT_THROW((void)LoadObjectFile(folder.Path("f"), 5), ObjectFileTooLarge);
  SaveObjectFile(folder.Path("f"), kWkt2, "12345");
  EXPECT_EQ(LoadObjectFile(folder.Path("f")), "12345\n");
}

}  // namespace
}  // namespace QvRefSystem
