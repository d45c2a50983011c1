#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "platform/dbset/fixed_record_file.h"
#include "platform/dbset/write_group.h"
#include "platform/storage/file_stream.h"
#include "tests/platform/dbset/table_fixture.h"
#include "tests/platform/storage/test_folder.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::ElementsAre;

/// Both places where a table can lie.
struct Form {
  const char* name;
  QvDataBufferType type;
};

class Changes : public testing::TestWithParam<Form> {
 protected:
  Changes() { MakeTable(Name(), GetParam().type); }
  std::string Name() const { return folder_.Path(GetParam().name); }
  Table Open() const { return Table(Name(), GetParam().type); }

 private:
  TestFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Forms, Changes,
                         testing::Values(Form{"unit.dat", QvDataBufferType::dtFileStream},
                                         Form{"c.qvdb.unit", QvDataBufferType::kResource}),
                         [](const auto& row) {
                           return std::string(
                               row.param.type == QvDataBufferType::kResource ? "Resource" : "File");
                         });

TEST_P(Changes, AreThereForTheNextOneToOpen) {
  {
    Table table = Open();
    table.set.Append();
    table.set.Fields(kName).SetString("métre \t \"x\"");
    table.set.Fields(kNote).SetString(std::string(1000, 'n'));
    table.set.Fields(kFactor).SetFloat(0.1);
    table.set.Fields(kCode).SetInteger(-7);
    table.set.Post();
  }
  Table table = Open();
  const RowView row = table.set.CurrentRow();
  EXPECT_EQ(row.GetInteger(kKey), 1);
  EXPECT_EQ(row.GetText(kName), "métre \t \"x\"");
  EXPECT_EQ(row.GetText(kNote), std::string(1000, 'n')) << "widths do not cut";
  EXPECT_EQ(row.GetFloat(kFactor), 0.1);
  EXPECT_EQ(row.GetInteger(kCode), -7);
  EXPECT_EQ(row.GetInteger(kSpare), 0);
  EXPECT_TRUE(table.set.Fields(kSpare).IsEmpty());
}

TEST_P(Changes, LeaveMandatoryFieldsAtZeroAndOptionalOnesEmpty) {
  Table table = Open();
  table.set.Append();
  table.set.Post();
  table.Reopen();
  EXPECT_FALSE(table.set.Fields(kCode).IsEmpty());
  EXPECT_EQ(table.set.Fields(kCode).AsString(), "0");
  EXPECT_EQ(table.set.Fields(kFactor).AsString(), "");
  EXPECT_EQ(table.set.Fields(kFactor).AsFloat(), 0);
}

TEST_P(Changes, NeverGiveAKeyTwice) {
  Table table = Open();
  EXPECT_EQ(table.Add("a", 1), 1);
  EXPECT_EQ(table.Add("b", 1), 2);
  table.GoTo(2);
  table.set.Delete();
  EXPECT_EQ(table.Add("c", 1), 3);
  while (table.set.RecordCount() > 0)
    table.set.Delete();
  table.Reopen();
  EXPECT_EQ(table.Add("d", 1), 4);
}

TEST_P(Changes, GiveAFreshKeyWhateverIsWrittenIntoANewRecord) {
  Table table = Open();
  table.Add("a", 1);
  table.set.Append();
  table.set.Fields(kKey).SetInteger(1);
  table.set.Post();
  EXPECT_EQ(table.set.Fields(kKey).AsInteger(), 2);
}

TEST_P(Changes, KeepAKeyThatIsWrittenByHandIntoAnOldRecord) {
  Table table = Open();
  for (const int key : {40, 7, 12}) {
    table.Add("n" + std::to_string(key), 1);
    table.set.Edit();
    table.set.FieldByName("autokey").SetInteger(key);
    table.set.Post();
    EXPECT_EQ(table.set.Fields(kKey).AsInteger(), key);
  }
  table.Reopen();
  EXPECT_EQ(table.Key("n40"), 40);
  EXPECT_EQ(table.Key("n7"), 7);
  EXPECT_EQ(table.Add("next", 1), 43) << "40 was the greatest, 41 and 42 were given and replaced";
}

TEST_P(Changes, NeverGiveAwayAKeyThatWasWrittenByHandOnce) {
  Table table = Open();
  table.Add("a", 1);
  table.set.Edit();
  table.set.Fields(kKey).SetInteger(100);
  table.set.Post();
  table.set.Delete();
  EXPECT_EQ(table.Add("b", 1), 101);
}

TEST_P(Changes, RefuseAKeyThatAnotherRecordHas) {
  Table table = Open();
  table.Add("a", 1);
  table.Add("b", 1);
  table.set.Edit();
  for (const int key : {1, 0, -5}) {
    table.set.Fields(kKey).SetInteger(key);
    EXPECT_THROW(table.set.Post(), DataSetError);
    EXPECT_EQ(table.set.State(), DataSetState::kEdit) << "the change is still pending";
  }
  table.set.Fields(kKey).SetInteger(9);
  table.set.Post();
  EXPECT_EQ(table.Key("b"), 9);
}

TEST_P(Changes, FollowTheStates) {
  Table table = Open();
  EXPECT_THROW(table.set.Post(), DataSetError);
  EXPECT_THROW(table.set.Edit(), DataSetError);
  EXPECT_THROW(table.set.Delete(), DataSetError);
  EXPECT_THROW(table.set.Fields(kName).SetString("x"), DataSetError);
  table.Add("a", 1);
  table.Add("b", 1);
  table.set.First();
  table.set.Edit();
  table.set.Fields(kName).SetString("z");
  EXPECT_EQ(table.set.CurrentRow().GetText(kName), "z");
  EXPECT_EQ(table.set.Row(0).GetText(kName), "a");
  table.set.Next();
  EXPECT_EQ(table.set.State(), DataSetState::kBrowse) << "moving cancels";
  EXPECT_THAT(table.Names(), ElementsAre("a", "b"));
  table.set.Append();
  table.set.Fields(kName).SetString("c");
  table.set.Delete();
  EXPECT_EQ(table.set.RecordCount(), 2) << "the new record was dropped, no old one";
  table.set.Append();
  table.set.Close();
  EXPECT_EQ(table.set.State(), DataSetState::kInactive);
  EXPECT_EQ(table.set.RecordCount(), 0);
  EXPECT_THROW(table.set.Append(), DataSetError);
  EXPECT_EQ(table.set.FindField("NAME"), nullptr);
  table.set.Open();
  EXPECT_EQ(table.set.RecordCount(), 2);
}

TEST_P(Changes, PutTheRowAtItsPlaceAndStayOnIt) {
  Table table = Open();
  for (const char* name : {"b", "d", "c"}) {
    table.Add(name, 1);
    EXPECT_EQ(table.set.Fields(kName).AsString(), name);
  }
  EXPECT_THAT(table.Names(), ElementsAre("b", "c", "d"));
  table.Rename(table.Key("d"), "a");
  EXPECT_EQ(table.set.Position(), 0);
  EXPECT_THAT(table.Names(), ElementsAre("a", "b", "c"));
  table.GoTo(table.Key("b"));
  table.set.Delete();
  EXPECT_EQ(table.set.Fields(kName).AsString(), "c") << "the next row";
  table.set.Delete();
  EXPECT_EQ(table.set.Fields(kName).AsString(), "a") << "the last row";
}

TEST_P(Changes, OfARowThatAnotherHasChangedAreRefused) {
  Table mine = Open();
  mine.Add("a", 1);
  mine.Add("b", 1);
  Table other = Open();
  other.Rename(1, "x");
  mine.GoTo(1);
  mine.set.Edit();
  mine.set.Fields(kCode).SetInteger(5);
  EXPECT_THROW(mine.set.Post(), StaleRecordError);
  EXPECT_EQ(mine.set.State(), DataSetState::kBrowse);
  EXPECT_EQ(mine.set.Fields(kName).AsString(), "x") << "what stands in the store is shown";
  EXPECT_EQ(mine.set.Fields(kCode).AsInteger(), 1);
  EXPECT_THAT(mine.Names(), ElementsAre("b", "x"));
  mine.GoTo(1);
  mine.set.Edit();
  mine.set.Fields(kCode).SetInteger(5);
  EXPECT_NO_THROW(mine.set.Post()) << "the second time it is known";

  other.GoTo(1);
  EXPECT_THROW(other.set.Delete(), StaleRecordError);
  EXPECT_EQ(other.set.RecordCount(), 2);
  other.GoTo(2);
  other.set.Delete();
  mine.GoTo(2);
  EXPECT_THROW(mine.set.Delete(), StaleRecordError);
  EXPECT_THAT(mine.Names(), ElementsAre("x"));
}

TEST_P(Changes, OfARowThatAnotherHasDeletedAreRefused) {
  Table mine = Open();
  mine.Add("a", 1);
  Table other = Open();
  other.set.Delete();
  mine.set.Edit();
  EXPECT_THROW(mine.set.Post(), StaleRecordError);
  EXPECT_EQ(mine.set.RecordCount(), 0);
  EXPECT_EQ(mine.Add("b", 1), 2);
}

TEST_P(Changes, OfOthersShowAfterReopening) {
  // A container is shared as long as somebody uses it.
  const Table keeper = Open();
  Table mine = Open();
  mine.Add("a", 1);
  mine.Reopen();
  mine.set.Close();
  {
    Table other = Open();
    other.Add("b", 1);
    other.Rename(1, "z");
  }
  mine.set.Open();
  EXPECT_THAT(mine.Names(), ElementsAre("b", "z"));
  {
    Table other = Open();
    other.Add("c", 1);
    // One change of mine after one of the other: the store has what my rows lack.
    mine.GoTo(2);
    mine.Rename(2, "bb");
  }
  mine.Reopen();
  EXPECT_THAT(mine.Names(), ElementsAre("bb", "c", "z"));
}

TEST_P(Changes, AreNotLostWhenRowsAreTakenOverAtReopening) {
  Table table = Open();
  for (int i = 0; i < 5; ++i) {
    table.Add("n" + std::to_string(i), i);
    table.Reopen();
    EXPECT_EQ(table.set.RecordCount(), i + 1);
  }
  table.GoTo(3);
  table.set.Delete();
  table.Reopen();
  EXPECT_THAT(table.Names(), ElementsAre("n0", "n1", "n3", "n4"));
}

TEST(TwoDataSetsOfOneFile, DoNotTakeOverRowsThatTheOtherChanged) {
  const TestFolder folder;
  MakeTable(folder.Path("t.dat"));
  Table first(folder.Path("t.dat"));
  Table second(folder.Path("t.dat"));
  {
    TQvWriteGroup group({&first.set, &second.set});
    first.Add("a", 1);
    second.Add("b", 1);
    group.Commit();
  }
  first.Reopen();
  second.Reopen();
  EXPECT_THAT(first.Names(), ElementsAre("a", "b"));
  EXPECT_THAT(second.Names(), ElementsAre("a", "b"));
}

TEST(Contents, AreConvertedOrRefused) {
  const TestFolder folder;
  MakeTable(folder.Path("t.dat"));
  Table table(folder.Path("t.dat"));
  table.set.Append();
  table.set.Fields(kName).SetFloat(0.5);
  EXPECT_EQ(table.set.Fields(kName).AsString(), "0.5");
  EXPECT_EQ(table.set.Fields(kName).AsFloat(), 0.5);
  table.set.Fields(kName).SetInteger(12);
  EXPECT_EQ(table.set.Fields(kName).AsInteger(), 12);
  table.set.Fields(kName).SetString("no number");
  EXPECT_EQ(table.set.Fields(kName).AsInteger(), 0);
  table.set.Fields(kCode).SetString(" 17 ");
  EXPECT_EQ(table.set.Fields(kCode).AsInteger(), 17);
  table.set.Fields(kCode).SetFloat(2.6);
  EXPECT_EQ(table.set.Fields(kCode).AsInteger(), 3);
  table.set.Fields(kFactor).SetString("1e-3");
  EXPECT_EQ(table.set.Fields(kFactor).AsString(), "0.001");
  EXPECT_THROW(table.set.Fields(kCode).SetString("seven"), DataSetError);
  EXPECT_THROW(table.set.Fields(kCode).SetFloat(1e10), DataSetError);
  EXPECT_THROW(table.set.Fields(kFactor).SetFloat(std::nan("")), DataSetError);
  EXPECT_THROW(table.set.Fields(kFactor).SetFloat(INFINITY), DataSetError);
  table.set.Fields(kSpare).SetInteger(4);
  table.set.Fields(kSpare).Clear();
  EXPECT_TRUE(table.set.Fields(kSpare).IsEmpty());
  EXPECT_EQ(table.set.FindField("NOTHING"), nullptr);
  EXPECT_THROW(static_cast<void>(table.set.FieldByName("NOTHING")), DataSetError);
  EXPECT_EQ(table.set.CurrentRow().GetInteger(-1), 0);
  EXPECT_EQ(table.set.CurrentRow().GetText(99), "");
}

TEST(TablesWithoutAKey, AreChangedLikeOthers) {
  const TestFolder folder;
  TQvDbHeader header;
  header.AddField("TYPE", 3, 1, 255);
  header.AddField("SPARE", 3, 0, 255);
  header.AddField("NAME", 1, 1, 64);
  MakeTable(folder.Path("t.dat"), header);
  Table table(folder.Path("t.dat"));
  for (const char* name : {"b", "a", "a"}) {
    table.set.Append();
    table.set.FieldByName("NAME").SetString(name);
    table.set.FieldByName("TYPE").SetInteger(5);
    table.set.Post();
  }
  EXPECT_THAT(table.Names(), ElementsAre("a", "a", "b"));
  table.set.First();
  table.set.Edit();
  table.set.FieldByName("NAME").SetString("c");
  table.set.Post();
  table.set.First();
  table.set.Delete();
  table.Reopen();
  EXPECT_THAT(table.Names(), ElementsAre("b", "c"));
}

TEST(Headers, AreReadFromTheFile) {
  const TestFolder folder;
  MakeTable(folder.Path("t.dat"));
  const Table table(folder.Path("t.dat"));
  EXPECT_EQ(table.set.Header(), SampleHeader());
  EXPECT_EQ(SampleHeader().GetRecordSize(), 64 + 255 + 4 * 8);
}

TEST(Headers, RefuseFieldsThatATableCannotHave) {
  TQvDbHeader header = SampleHeader();
  EXPECT_THROW(header.AddField("A", 4, 0, 1), std::invalid_argument) << "unknown type";
  EXPECT_THROW(header.AddField("A", 1, 3, 1), std::invalid_argument) << "unknown need";
  EXPECT_THROW(header.AddField("name", 1, 0, 1), std::invalid_argument) << "there already";
  EXPECT_THROW(header.AddField("A B", 1, 0, 1), std::invalid_argument) << "no identifier";
  EXPECT_THROW(header.AddField("", 1, 0, 1), std::invalid_argument);
  EXPECT_THROW(header.AddField(nullptr, 1, 0, 1), std::invalid_argument);
  EXPECT_THROW(header.AddField("1A", 1, 0, 1), std::invalid_argument);
  EXPECT_THROW(header.AddField("ID", 3, 2, 1), std::invalid_argument) << "a second key";
  EXPECT_THROW(header.AddField("ROW_VERSION", 3, 0, 1), std::invalid_argument);
  TQvDbHeader text;
  EXPECT_THROW(text.AddField("ID", 1, 2, 1), std::invalid_argument) << "keys are numbers";
  EXPECT_EQ(header, SampleHeader());
}

TEST(MakingTables, LeavesTheStreamToTheCallerOnFailure) {
  const TestFolder folder;
  TQvFileStream closed;
  TFixedRecordFile file(SampleHeader(), SampleHeader().GetRecordSize());
  EXPECT_FALSE(file.CreateNew(&closed, true));
  EXPECT_THROW(TFixedRecordFile(SampleHeader(), 1), std::invalid_argument);
}

}  // namespace
