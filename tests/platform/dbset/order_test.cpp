#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

#include "platform/dbset/write_group.h"
#include "platform/text/text.h"
#include "tests/platform/dbset/table_fixture.h"
#include "tests/platform/storage/test_folder.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::ElementsAre;

/// One record of the plain list that a table is compared with.
struct Record {
  int key = 0;
  int code = 0;
  std::string name;
  std::string note;
};

struct Setup {
  const char* title;
  int sortField;
  bool descending;
  std::optional<int> filterCode;
};

void PrintTo(const Setup& setup, std::ostream* out) {
  *out << setup.title;
}

/// Random changes to a table, and the same to a list that is sorted and walked in the plainest way.
class TableLikeList : public testing::TestWithParam<Setup> {
 protected:
  static std::string RandomName(std::mt19937& random) {
    static const std::vector<std::string> kNames = {
        "",    "a",    "A",    " a ",  "Ärger", "arge", "zoo", "ZOO",    "Zoo ",   "10 m",
        "9 m", "élan", "Élan", "elan", "_x",    "-x",   "x",   "ßtraße", "STRASSE"};
    return kNames[random() % kNames.size()];
  }

  bool Shows(const Record& record) const {
    return !GetParam().filterCode || record.code == *GetParam().filterCode;
  }
  bool Before(const Record& a, const Record& b) const {
    int order = 0;
    if (GetParam().sortField == kName) order = CollationKey(a.name).compare(CollationKey(b.name));
    if (GetParam().sortField == kCode) order = a.code - b.code;
    if (GetParam().sortField == kKey) order = a.key - b.key;
    if (order != 0) return (order < 0) != GetParam().descending;
    return a.key < b.key;
  }
  std::vector<Record> Sorted() const {
    std::vector<Record> shown;
    std::ranges::copy_if(records_, std::back_inserter(shown),
                         [this](const Record& record) { return Shows(record); });
    std::ranges::sort(shown, [this](const Record& a, const Record& b) { return Before(a, b); });
    return shown;
  }

  void Change(Table& table, std::mt19937& random) {
    const std::vector<Record> shown = Sorted();
    const auto choice = random() % 10;
    if (shown.empty() || choice < 5) {
      Append(table, random);
    } else if (choice < 8) {
      Alter(table, random, shown[random() % shown.size()].key);
    } else {
      const int key = shown[random() % shown.size()].key;
      table.GoTo(key);
      table.set.Delete();
      std::erase_if(records_, [key](const Record& record) { return record.key == key; });
    }
  }
  void Append(Table& table, std::mt19937& random) {
    Record record{++lastKey_, static_cast<int>(random() % 4), RandomName(random), ""};
    table.Add(record.name, record.code);
    records_.push_back(record);
  }
  void Alter(Table& table, std::mt19937& random, int key) {
    Record& record = *std::ranges::find(records_, key, &Record::key);
    table.GoTo(key);
    table.set.Edit();
    if (random() % 2 == 0) {
      record.name = RandomName(random);
      table.set.Fields(kName).SetString(record.name);
    } else if (random() % 2 == 0) {
      record.code = static_cast<int>(random() % 4);
      table.set.Fields(kCode).SetInteger(record.code);
    } else {
      record.note = RandomName(random);
      table.set.Fields(kNote).SetString(record.note);
    }
    table.set.Post();
    if (Shows(record)) {
      EXPECT_EQ(table.set.Fields(kKey).AsInteger(), key);
    }
  }

  void ExpectSame(const Table& table) const {
    const std::vector<Record> expected = Sorted();
    ASSERT_EQ(table.set.RecordCount(), static_cast<int>(expected.size()));
    for (int i = 0; i < table.set.RecordCount(); ++i) {
      const Record& record = expected[static_cast<std::size_t>(i)];
      const RowView row = table.set.Row(i);
      ASSERT_EQ(row.GetInteger(kKey), record.key) << "at " << i;
      ASSERT_EQ(row.GetText(kName), record.name);
      ASSERT_EQ(row.GetText(kNote), record.note);
      ASSERT_EQ(row.GetInteger(kCode), record.code);
      ASSERT_EQ(table.set.PositionOf(row), i);
    }
  }

  template <typename Condition>
  void ExpectFound(const Table& table, std::initializer_list<RowMatch> matches,
                   Condition condition) const {
    std::vector<int> keys;
    for (const Record& record : Sorted()) {
      if (condition(record)) keys.push_back(record.key);
    }
    const RowView first = table.set.FindFirst(matches);
    ASSERT_EQ(first.GetInteger(kKey), keys.empty() ? 0 : keys.front());
    std::vector<int> found;
    for (const RowView row : table.set.FindAll(matches))
      found.push_back(row.GetInteger(kKey));
    ASSERT_EQ(found, keys);
    const auto all = static_cast<std::size_t>(std::ranges::count_if(records_, condition));
    ASSERT_EQ(table.set.FindAll(matches, RowScope::kAll).size(), all);
  }
  void ExpectLookUps(const Table& table, std::mt19937& random) const {
    const int key = static_cast<int>(random() % static_cast<unsigned>(lastKey_ + 2));
    const int code = static_cast<int>(random() % 4);
    const std::string name = RandomName(random);
    const std::string folded = FoldName(name);
    ExpectFound(table, {RowMatch::Integer(kKey, key)},
                [key](const Record& record) { return record.key == key; });
    ExpectFound(table, {RowMatch::Text(kName, name)},
                [&name](const Record& record) { return record.name == name; });
    ExpectFound(table, {RowMatch::Folded(kName, folded)},
                [&folded](const Record& record) { return FoldName(record.name) == folded; });
    const auto both = [&folded, code](const Record& record) {
      return record.code == code && FoldName(record.name) == folded;
    };
    ExpectFound(table, {RowMatch::Integer(kCode, code), RowMatch::Folded(kName, folded)}, both);
    ExpectFound(table, {RowMatch::Folded(kName, folded), RowMatch::Integer(kCode, code)}, both);
    ExpectFound(table, {RowMatch::Integer(kCode, code), RowMatch::Integer(kCode, code + 1)},
                [](const Record&) { return false; });
  }

  std::vector<Record> records_;
  int lastKey_ = 0;
};

TEST_P(TableLikeList, UnderRandomChangesLookUpsAndReopenings) {
  const TestFolder folder;
  MakeTable(folder.Path("t.dat"));
  Table table(folder.Path("t.dat"));
  table.set.Close();
  table.buffer.SetSortField(GetParam().sortField, GetParam().descending, true);
  if (GetParam().filterCode) {
    table.buffer.SetFilter(kCode, *GetParam().filterCode, TQvDbIntFilter::kEqual, true);
  }
  table.set.Open();
  std::mt19937 random(4711);
  for (int round = 0; round < 25; ++round) {
    TQvWriteGroup group({&table.set});
    for (int i = 0; i < 15; ++i) {
      Change(table, random);
      ASSERT_NO_FATAL_FAILURE(ExpectLookUps(table, random));
    }
    group.Commit();
    ASSERT_NO_FATAL_FAILURE(ExpectSame(table));
    if (round % 5 == 0) {
      table.Reopen();
      ASSERT_NO_FATAL_FAILURE(ExpectSame(table));
    }
  }
  Table afresh(folder.Path("t.dat"));
  EXPECT_EQ(afresh.set.RecordCount(), static_cast<int>(records_.size()));
}

INSTANTIATE_TEST_SUITE_P(
    Arrangements, TableLikeList,
    testing::Values(Setup{"byName", kName, false, {}}, Setup{"byNameDown", kName, true, {}},
                    Setup{"byNumber", kCode, false, {}}, Setup{"byNumberDown", kCode, true, {}},
                    Setup{"byMaking", -1, false, {}}, Setup{"byNameFiltered", kName, false, 2},
                    Setup{"byKeyFiltered", kKey, true, 0}),
    [](const auto& row) { return std::string(row.param.title); });

TEST(Arranging, FollowsTheUsersLanguageFromTheNextOpening) {
  const TestFolder folder;
  MakeTable(folder.Path("t.dat"));
  SetUserLocale("de-DE");
  Table table(folder.Path("t.dat"));
  for (const char* name : {"zebra", "ärta", "istanbul", "ISTANBUL"})
    table.Add(name, 1);
  EXPECT_THAT(table.Names(), ElementsAre("ärta", "istanbul", "ISTANBUL", "zebra"));
  EXPECT_EQ(table.set.FindAll({RowMatch::Folded(kName, FoldName("Istanbul"))}).size(), 2U);
  SetUserLocale("sv-SE");
  table.Reopen();
  EXPECT_THAT(table.Names(), ElementsAre("istanbul", "ISTANBUL", "zebra", "ärta"));
  SetUserLocale("tr-TR");
  table.Reopen();
  EXPECT_EQ(table.set.FindFirst({RowMatch::Folded(kName, FoldName("istanbul"))}).GetText(kName),
            "istanbul");
  EXPECT_EQ(table.set.FindAll({RowMatch::Folded(kName, FoldName("istanbul"))}).size(), 1U)
      << "a dotless I is another letter there";
  SetUserLocale("en-US");
}

TEST(Arranging, LetsFilterAndOrderChangeWithTheTableClosed) {
  const TestFolder folder;
  MakeTable(folder.Path("t.dat"));
  Table table(folder.Path("t.dat"));
  for (const char* name : {"c", "a", "b"})
    table.Add(name, *name == 'a' ? 1 : 2);
  table.set.Close();
  table.buffer.SetFilter(kCode, 2, TQvDbIntFilter::kEqual, true);
  table.set.Open();
  EXPECT_THAT(table.Names(), ElementsAre("b", "c"));
  table.set.Close();
  table.buffer.ClearFilter(true);
  table.buffer.SetSortField(-1, false, true);
  table.set.Open();
  EXPECT_THAT(table.Names(), ElementsAre("c", "a", "b"));
}

TEST(Arranging, LeavesARowThatNoLongerShowsForItsNeighbour) {
  const TestFolder folder;
  MakeTable(folder.Path("t.dat"));
  Table table(folder.Path("t.dat"));
  for (const char* name : {"a", "b", "c"})
    table.Add(name, 1);
  table.set.Close();
  table.buffer.SetFilter(kCode, 1, TQvDbIntFilter::kEqual, true);
  table.set.Open();
  for (const char* expected : {"c", "a", ""}) {
    table.GoTo(table.Key(*expected == 'c' ? "b" : *expected == 'a' ? "c" : "a"));
    table.set.Edit();
    table.set.Fields(kCode).SetInteger(5);
    EXPECT_EQ(table.set.Post().GetInteger(kCode), 5) << "the row that was written";
    EXPECT_EQ(table.set.Fields(kName).AsString(), expected);
  }
  EXPECT_TRUE(table.set.Eof());
  table.Add("d", 5);
  EXPECT_EQ(table.set.RecordCount(), 0);
  EXPECT_FALSE(table.set.CurrentRow());
}

TEST(Walking, SetsItsEndsAsAWalkExpects) {
  const TestFolder folder;
  MakeTable(folder.Path("t.dat"));
  Table table(folder.Path("t.dat"));
  EXPECT_TRUE(table.set.Eof() && table.set.Bof());
  EXPECT_EQ(table.set.Position(), -1);
  for (const char* name : {"a", "b"})
    table.Add(name, 1);
  table.set.First();
  EXPECT_TRUE(table.set.Bof());
  EXPECT_FALSE(table.set.Eof());
  table.set.Next();
  EXPECT_FALSE(table.set.Bof() || table.set.Eof());
  table.set.Next();
  table.set.Next();
  EXPECT_TRUE(table.set.Eof());
  EXPECT_EQ(table.set.Position(), 1) << "the cursor stays on the last row";
  table.set.Prior();
  EXPECT_FALSE(table.set.Bof() || table.set.Eof());
  table.set.Prior();
  EXPECT_TRUE(table.set.Bof());
  table.set.MoveBehindLast();
  EXPECT_TRUE(table.set.Eof());
  table.set.MoveTo(0);
  EXPECT_FALSE(table.set.Bof() || table.set.Eof());
  EXPECT_THROW(table.set.MoveTo(2), DataSetError);
  EXPECT_FALSE(table.set.MoveTo(RowView()));
}

}  // namespace
