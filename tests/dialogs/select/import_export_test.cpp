#include "dialogs/select/import_export.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "platform/storage/stream.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;

class ImportAndExport : public DialogTest {
 protected:
  TQvRfDataProcessor& Units() { return database_.Processor(kLinearUnit); }
  QStringList Listed(QDir::Filters which) const {
    return QDir(QString::fromStdString(folder_.Path())).entryList(which | QDir::NoDotAndDotDot);
  }
  // Opens the list of a type, lets the user do something in it and then in file dialogs.
  template <typename... Acts>
  static void Browse(int type, std::function<void(QWidget&)> inList, Acts... inDialogs) {
    const std::unique_ptr<TformQvRfSelector> selector(GetSelectorFor(nullptr, type));
    ScreenUser user(In<TformQvRfSelector>([inList](QWidget& form) {
      inList(form);
      Click(form, "bitbtnClose");
    }));
    (user.In<QFileDialog>(inDialogs), ...);
    EXPECT_FALSE(selector->Browse(0, false, true));
  }
  TemporaryFolder folder_;
};

TEST_F(ImportAndExport, BothFormsComeBackAsTheSameTree) {
  Insert(kLinearUnit, MakeTree(MetreTree));
  for (const auto form : {ObjectFileForm::kText, ObjectFileForm::kXml}) {
    const std::string path = folder_.Path("metre");
    ASSERT_TRUE(WriteObjectFile(Units(), path, form));
    QvCommonUtils::TStringTree expected;
    ASSERT_TRUE(Units().WriteToTree(&expected, 0, 0));
    QvCommonUtils::TStringTree told;
    ReadTreeFile(path, form, &told);
    EXPECT_TRUE(SameTree(&told, &expected));
    QvCommonUtils::TStringTree guessed;
    ReadTreeFile(path, &guessed);
    EXPECT_TRUE(SameTree(&guessed, &expected));
    EXPECT_EQ(Content(path).back() == '\0', form == ObjectFileForm::kText);
  }
}

// The user writes an object to a file through the dialog, and takes it into another database.
TEST_F(ImportAndExport, AnObjectTravelsThroughTheDialogs) {
  database_.data->ShowImportExport = true;
  Insert(kLinearUnit, MakeTree(MetreTree));
  const std::unique_ptr<TformQvRfSelector> selector(GetSelectorFor(nullptr, 8));
  const std::string path = folder_.Path("out.x-ref-system");
  const auto choose = [&path](QFileDialog& dialog) {
    EXPECT_TRUE(dialog.selectedNameFilter().contains("*.x-ref-system"))
        << "the XML form is offered first";
    TakeFile(dialog, path);
  };
  ScreenUser user(In<TformQvRfSelector>([&](QWidget& form) {
    Open<QFileDialog>(form, "bitbtnExport", [&](QFileDialog& dialog) {
      EXPECT_EQ(TextOf(dialog, "fileNameEdit"), "metre");
      choose(dialog);
    });
    ASSERT_NE(Content(path), "");
    database_.data->datasetLinearUnit.Delete();
    Open<QFileDialog>(form, "bitbtnImport", choose);
    EXPECT_EQ(ListedNames(form), "metre");
    EXPECT_EQ(MarkedName(form), "metre");
    Cancel(form);
  }));
  EXPECT_FALSE(selector->Select(nullptr, 0, false, nullptr, 0));
  EXPECT_TRUE(database_.ui.messages.empty());
}

// What goes wrong with files, in both forms: each is told in one box that names the file and the
// place, and the database stays as it was.
struct BadFile {
  const char* name;
  int filter;
  std::function<void(std::string* content)> spoil;
  const char* told;
};

void Replace(std::string* content, const std::string& from, const std::string& to) {
  const std::size_t at = content->find(from);
  ASSERT_NE(at, std::string::npos) << from;
  content->replace(at, from.size(), to);
}

const BadFile kBadFiles[] = {
    {"empty", 1, [](auto* c) { c->clear(); }, "line 1: the text ends too early"},
    {"another kind of file", 1, [](auto* c) { *c = "%PDF-1.4 nothing"; }, "line 1: \"(\""},
    {"another kind of file", 2, [](auto* c) { *c = "%PDF-1.4 nothing"; }, "it holds no XML"},
    {"only zero bytes", 2, [](auto* c) { c->assign(64, '\0'); }, "it holds no XML"},
    {"foreign XML", 2, [](auto* c) { *c = "<kml><Document/></kml>"; },
     "the root is not one <xini>"},
    {"cut short", 2, [](auto* c) { c->resize(c->size() / 2); }, "at byte "},
    {"a second tree", 1, [](auto* c) { c->append(*c); }, "behind the end of the tree"},
    {"a count too high", 1, [](auto* c) { Replace(c, ")[1]", ")[2000000000]"); },
     "line 2: a field"},
    {"an id that is no number", 2, [](auto* c) { Replace(c, ">0<", ">zero<"); },
     "/tag: not a 32-bit"},
    {"a broken escape", 2, [](auto* c) { Replace(c, ">metre<", ">\\zz<"); }, "hexadecimal"},
    {"XML under the first filter", 1, [](auto* c) { *c = "<xini version='1'/>"; }, "the XML form"},
    {"text under All files", 3, [](auto* c) { *c = "(0,0)\n\n"; }, "the first filter"},
};

TEST_F(ImportAndExport, AFileThatCannotBeReadIsToldWithItsPlaceAndChangesNothing) {
  const std::vector<int> before = database_.Counts();
  for (const BadFile& row : kBadFiles) {
    SCOPED_TRACE(std::string(row.name) + ", filter " + std::to_string(row.filter));
    const std::string path = folder_.Path("bad");
    WriteTreeFile(*MakeTree(MetreTree), path,
                  row.filter == 1 ? ObjectFileForm::kText : ObjectFileForm::kXml);
    std::string content = Content(path);
    row.spoil(&content);
    std::ofstream(path, std::ios::binary) << content;
    database_.ui.messages.clear();
    Browse(
        8, [](QWidget& form) { Click(form, "bitbtnImport"); },
        [&](QFileDialog& dialog) { TakeFile(dialog, path, row.filter - 1); });
    ASSERT_EQ(database_.ui.messages.size(), 1U);
    for (const std::string& part : {"\"" + path + "\"", std::string(row.told)})
      EXPECT_THAT(database_.ui.messages[0], testing::HasSubstr(part));
    EXPECT_EQ(database_.Counts(), before);
  }
}

TEST_F(ImportAndExport, WhatIsNoFileOfAnObjectIsNotEvenRead) {
  std::ofstream(folder_.Path("huge")) << "(0,0)";
  std::filesystem::resize_file(folder_.Path("huge"), kLargestObjectFile + 1);
  std::filesystem::create_directory(folder_.Path("folder"));
  ASSERT_EQ(mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
  const std::pair<const char*, const char*> rows[] = {{"huge", "too large"},
                                                      {"folder", "no plain file"},
                                                      {"pipe", "no plain file"},
                                                      {"missing", "No such file"}};
  for (const auto& [name, told] : rows) {
    for (const auto form : {ObjectFileForm::kText, ObjectFileForm::kXml}) {
      QvCommonUtils::TStringTree tree;
      TreeBuilder(&tree).Field(1020, "as before");
      const auto read = [&, name = name] { ReadTreeFile(folder_.Path(name), form, &tree); };
      const auto tells =
          testing::AllOf(testing::HasSubstr(told), testing::HasSubstr(folder_.Path(name)));
      EXPECT_THAT(read, testing::ThrowsMessage<QvPlatform::StorageError>(tells));
      EXPECT_NE(FindField(&tree, 1020, 0), nullptr) << name;
    }
  }
}

TEST_F(ImportAndExport, ATargetThatCannotBeWrittenKeepsWhatStoodThere) {
  Insert(kLinearUnit, MakeTree(MetreTree));
  std::filesystem::create_directory(folder_.Path("folder"));
  const std::string rows[] = {"folder", "missing/metre", std::string(300, 'x')};
  for (const std::string& name : rows) {
    for (const auto form : {ObjectFileForm::kText, ObjectFileForm::kXml}) {
      EXPECT_THROW((void)WriteObjectFile(Units(), folder_.Path(name), form),
                   QvPlatform::StorageError)
          << name;
    }
  }
  EXPECT_EQ(Listed(QDir::AllEntries | QDir::Hidden), QStringList{"folder"});
}

TEST_F(ImportAndExport, OffersTheObjectsOwnFormFirstAndXmlAtOnce) {
  Insert(kLinearUnit, MakeTree(MetreTree));
  const auto look = [](const char* first) {
    return [first](QFileDialog& dialog) {
      EXPECT_EQ(dialog.nameFilters(),
                QStringList({first, "Coordinate systems in XML format (*.x-ref-system)",
                             "All files (*.*)"}));
      EXPECT_EQ(dialog.selectedNameFilter(), dialog.nameFilters().at(1));
      dialog.reject();
    };
  };
  Browse(
      8,
      [](QWidget& form) {
        Click(form, "bitbtnExport");
        Click(form, "bitbtnImport");
      },
      look("linear unit (*.linear?unit)"), look("linear unit (*.reference?system)"));
  EXPECT_TRUE(database_.ui.messages.empty()) << "a cancel does nothing";
}

TEST_F(ImportAndExport, AnObjectOfAnotherTypeIsRefusedByName) {
  const std::string path = folder_.Path("metre.x-ref-system");
  WriteTreeFile(*MakeTree(MetreTree), path, ObjectFileForm::kXml);
  Browse(
      2,
      [](QWidget& form) {
        Press(form, "dbgridList", Qt::Key_F3, Qt::ControlModifier | Qt::ShiftModifier);
      },
      [&](QFileDialog& dialog) { TakeFile(dialog, path); });
  EXPECT_EQ(database_.ui.messages, std::vector<std::string>{"Import failed(datum)"});
}

// One object refers to another that is gone, and one has a name longer than a file's may be.
TEST_F(ImportAndExport, AWholeTableGoesToAFolderAndWhatCannotBeWrittenIsTold) {
  for (const int kind : {1, 3, 4, 5})
    Insert(kReferenceSystem, MakeTree(SystemTree, kind));
  const auto change = [&](const char* name, const char* field, const std::string& value) {
    database_.Processor(kReferenceSystem).LocateKey(KeyOf(kReferenceSystem, name));
    SetField(database_.data->datasetRefSystem, field, value);
  };
  change("Site grid", "LINEAR_UNIT_AUTOKEY", "4711");
  change("NAD27 geodetic", "NAME", "Long " + std::string(300, 'x'));
  Browse(
      1, [](QWidget& form) { Click(form, "bitbtnExport", Qt::ShiftModifier); },
      [this](QFileDialog& dialog) { TakeFile(dialog, folder_.Path()); });
  ASSERT_EQ(database_.ui.messages.size(), 1U);
  const std::string& told = database_.ui.messages[0];
  EXPECT_THAT(told, testing::StartsWith("Objects that could not be written: 2\n\"Long xxx"));
  EXPECT_THAT(told, testing::HasSubstr("\n\"Site grid\": "));
  EXPECT_EQ(Listed(QDir::Files | QDir::Hidden),
            QStringList({"NAD27   UTM 17N.x-ref-system", "NAD27 geocentric.x-ref-system"}));
}

}  // namespace
}  // namespace refframe_tests
