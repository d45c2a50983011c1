#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "platform/dbset/fixed_record_file.h"
#include "platform/dbset/write_group.h"
#include "platform/storage/file_stream.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::ElementsAre;

/// Both places where a table can lie.
class Changes : public testing::TestWithParam<QvDataBufferType> {
 protected:
  Changes() { MakeTable(name_, GetParam()); }
  Table Open() const { return Table(name_, GetParam()); }

 private:
  const TestFolder folder_;
  const std::string name_ =
      folder_.Path(GetParam() == QvDataBufferType::kResource ? "c.qvdb.unit" : "unit.dat");
};

INSTANTIATE_TEST_SUITE_P(
    Forms, Changes, testing::Values(QvDataBufferType::dtFileStream, QvDataBufferType::kResource),
    [](const auto& row) {
      return std::string(row.param == QvDataBufferType::kResource ? "Resource" : "File");
    });

TEST_P(Changes, AreThereForTheNextOneToOpen) {
  {
    Table table = Open();
    table.set.Append();
    table.set.Fields(kName).SetString("métre \t \"x\"");
    table.set.Fields(kNote).SetString(std::string(1000, 'n'));
    table.set.Fields(kFactor).SetFloat(0.1);
    table.set.Fields(kSpare).SetInteger(-7);
    table.set.Post();
    table.set.Append();
    table.set.Post();
  }
  Table table = Open();
  const RowView row = table.set.Row(1);
  EXPECT_EQ(row.GetInteger(kKey), 1);
  EXPECT_EQ(row.GetText(kName), "métre \t \"x\"");
  EXPECT_EQ(row.GetText(kNote), std::string(1000, 'n')) << "widths do not cut";
  EXPECT_EQ(row.GetFloat(kFactor), 0.1);
  EXPECT_EQ(row.GetInteger(kSpare), -7);
  EXPECT_EQ(table.set.Fields(kCode).AsString(), "0") << "mandatory";
  EXPECT_EQ(table.set.Fields(kFactor).AsString(), "") << "optional";
  EXPECT_EQ(table.set.Fields(kFactor).AsFloat(), 0);
  EXPECT_TRUE(table.set.Fields(kSpare).IsEmpty());
}

TEST_P(Changes, NeverGiveAKeyTwice) {
  Table table = Open();
  EXPECT_EQ(table.Add("a", 1), 1);
  EXPECT_EQ(table.Add("b", 1), 2);
  table.set.Delete();
  EXPECT_EQ(table.Add("c", 1), 3);
  table.set.Append();
  table.set.Fields(kKey).SetInteger(1);
  EXPECT_EQ(table.set.Post().GetInteger(kKey), 4) << "a new record has no say in its key";
  EXPECT_EQ(table.Change(kKey, 100).GetInteger(kKey), 100) << "an old one has";
  EXPECT_EQ(table.Change(kKey, 40).GetInteger(kKey), 40);
  table.Reopen();
  EXPECT_EQ(table.Key(""), 40);
  while (table.set.RecordCount() > 0)
    table.set.Delete();
  table.Reopen();
  EXPECT_EQ(table.Add("d", 1), 101) << "100 was written by hand once";
}

TEST_P(Changes, RefuseAKeyThatAnotherRecordHas) {
  Table table = Open();
  table.Add("a", 1);
  table.Add("b", 1);
  for (const int key : {1, 0, -5}) {
    EXPECT_THROW(table.Change(kKey, key), DataSetError);
    EXPECT_EQ(table.set.State(), DataSetState::kEdit) << "the change is still pending";
  }
  table.Change(kKey, 9);
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

TEST_P(Changes, OfARowThatAnotherHasChangedAreRefused) {
  Table mine = Open();
  mine.Add("a", 1);
  mine.Add("b", 1);
  Table other = Open();
  other.Rename(1, "x");
  mine.GoTo(1);
  EXPECT_THROW(mine.Change(kCode, 5), StaleRecordError);
  EXPECT_EQ(mine.set.State(), DataSetState::kBrowse);
  EXPECT_EQ(mine.set.Fields(kName).AsString(), "x") << "what stands in the store is shown";
  EXPECT_EQ(mine.set.Fields(kCode).AsInteger(), 1);
  EXPECT_THAT(mine.Names(), ElementsAre("b", "x"));
  mine.GoTo(1);
  EXPECT_NO_THROW(mine.Change(kCode, 5)) << "the second time it is known";

  other.GoTo(1);
  EXPECT_THROW(other.set.Delete(), StaleRecordError);
  EXPECT_EQ(other.set.RecordCount(), 2);
  for (const int key : {1, 2}) {
    other.GoTo(key);
    other.set.Delete();
  }
  mine.GoTo(2);
  EXPECT_THROW(mine.set.Delete(), StaleRecordError);
  EXPECT_THAT(mine.Names(), ElementsAre("x"));
  EXPECT_THROW(mine.Change(kCode, 6), StaleRecordError);
  EXPECT_EQ(mine.set.RecordCount(), 0);
  EXPECT_EQ(mine.Add("b", 1), 3);
}

TEST_P(Changes, OfOthersShowAfterReopening) {
  // A container is shared as long as somebody uses it.
  const Table keeper = Open();
  Table mine = Open();
  for (const char* name : {"a", "c"}) {
    mine.Add(name, 1);
    mine.Reopen();
  }
  mine.GoTo(2);
  mine.set.Delete();
  mine.Reopen();
  EXPECT_THAT(mine.Names(), ElementsAre("a"));
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
    mine.Rename(3, "bb");
  }
  mine.Reopen();
  EXPECT_THAT(mine.Names(), ElementsAre("bb", "c", "z"));
}

TEST(TwoDataSetsOfOneFile, DoNotTakeOverRowsThatTheOtherChanged) {
  FileTable first;
  Table second(first.buffer.StreamName);
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
  FileTable table;
  table.set.Append();
  TField& name = table.set.Fields(kName);
  TField& code = table.set.Fields(kCode);
  name.SetFloat(0.5);
  EXPECT_EQ(name.AsString(), "0.5");
  EXPECT_EQ(name.AsFloat(), 0.5);
  name.SetInteger(12);
  EXPECT_EQ(name.AsInteger(), 12);
  name.SetString("no number");
  EXPECT_EQ(name.AsInteger(), 0);
  code.SetFloat(2.6);
  EXPECT_EQ(code.AsInteger(), 3);
  code.SetString(" 17 ");
  EXPECT_THROW(code.SetString("seven"), DataSetError);
  for (const double value : {1e10, std::nan(""), static_cast<double>(INFINITY)})
    EXPECT_THROW(code.SetFloat(value), DataSetError) << value;
  EXPECT_EQ(code.AsString(), "17");
  code.Clear();
  EXPECT_TRUE(code.IsEmpty());
  table.set.Fields(kFactor).SetString("1e-3");
  EXPECT_EQ(table.set.Fields(kFactor).AsString(), "0.001");
  EXPECT_THROW(table.set.Fields(kFactor).SetFloat(INFINITY), DataSetError);
  EXPECT_EQ(table.set.FindField("code"), &code);
  EXPECT_THROW(static_cast<void>(table.set.FieldByName("NOTHING")), DataSetError);
  EXPECT_EQ(table.set.CurrentRow().GetInteger(-1), 0);
  EXPECT_EQ(table.set.CurrentRow().GetText(99), "");
}

TEST(TablesWithoutAKey, AreChangedLikeOthers) {
  TQvDbHeader header;
  header.AddField("TYPE", 3, 1, 255);
  header.AddField("SPARE", 3, 0, 255);
  header.AddField("NAME", 1, 1, 64);
  FileTable table(header);
  for (const char* name : {"b", "a", "a"}) {
    table.set.Append();
    table.set.FieldByName("NAME").SetString(name);
    table.set.Post();
  }
  EXPECT_THAT(table.Names(), ElementsAre("a", "a", "b"));
  table.set.First();
  table.Change(kName, "c");
  table.set.First();
  table.set.Delete();
  table.Reopen();
  EXPECT_THAT(table.Names(), ElementsAre("b", "c"));
}

TEST(Headers, AreReadFromTheFile) {
  EXPECT_EQ(FileTable().set.Header(), SampleHeader());
  EXPECT_EQ(SampleHeader().GetRecordSize(), 64 + 255 + 4 * 8);
}

TEST(Headers, RefuseFieldsThatATableCannotHave) {
  const struct {
    const char* why;
    const char* name;
    unsigned char type;
    unsigned char need;
  } rows[] = {{"unknown type", "A", 4, 0},
              {"unknown need", "A", 1, 3},
              {"there already", "name", 1, 0},
              {"no identifier", "A B", 1, 0},
              {"no name", "", 1, 0},
              {"null", nullptr, 1, 0},
              {"a digit in front", "1A", 1, 0},
              {"a second key", "ID", 3, 2},
              {"reserved", "ROW_VERSION", 3, 0}};
  TQvDbHeader header = SampleHeader();
  for (const auto& row : rows)
    EXPECT_THROW(header.AddField(row.name, row.type, row.need, 1), std::invalid_argument)
        << row.why;
  EXPECT_EQ(header, SampleHeader());
  EXPECT_THROW(TQvDbHeader().AddField("ID", 1, 2, 1), std::invalid_argument) << "keys are numbers";
}

TEST(MakingTables, LeavesTheStreamToTheCallerOnFailure) {
  TQvFileStream closed;
  TFixedRecordFile file(SampleHeader(), SampleHeader().GetRecordSize());
  EXPECT_FALSE(file.CreateNew(&closed, true));
  EXPECT_THROW(TFixedRecordFile(SampleHeader(), 1), std::invalid_argument);
}

}  // namespace
