#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <random>

#include "platform/dbset/write_group.h"
#include "platform/text/locale.h"
#include "tests/platform/dbset/table_fixture.h"

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
  bool operator==(const Record&) const = default;
};

struct Setup {
  const char* title;
  int sortField;
  bool descending;
  std::optional<int> filterCode;
};

void Rearrange(Table* table, const Setup& setup) {
  table->set.Close();
  table->buffer.SetSortField(setup.sortField, setup.descending, true);
  table->buffer.ClearFilter(true);
  if (setup.filterCode) {
    table->buffer.SetFilter(kCode, *setup.filterCode, TQvDbIntFilter::kEqual, true);
  }
  table->set.Open();
}

/// Random changes to a table, and the same to a list that is sorted and walked in the plainest way.
class TableLikeList : public testing::TestWithParam<Setup> {
 protected:
  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
  std::string RandomName() {
    static constexpr std::array kNames = {"",    "a",    "A",    " a ",    "Ärger",  "arge", "zoo",
                                          "ZOO", "Zoo ", "10 m", "9 m",    "élan",   "Élan", "elan",
                                          "_x",  "-x",   "x",    "ßtraße", "STRASSE"};
    return kNames[Below(kNames.size())];
  }

  bool Shows(const Record& record) const {
    return !GetParam().filterCode || record.code == *GetParam().filterCode;
  }
  std::vector<Record> Sorted() const {
    std::vector<Record> shown;
    std::ranges::copy_if(records_, std::back_inserter(shown),
                         [this](const Record& record) { return Shows(record); });
    std::ranges::sort(shown, [](const Record& a, const Record& b) {
      int order = 0;
      if (GetParam().sortField == kName) order = CollationKey(a.name).compare(CollationKey(b.name));
      if (GetParam().sortField == kCode) order = a.code - b.code;
      if (GetParam().sortField == kKey) order = a.key - b.key;
      return order != 0 ? (order < 0) != GetParam().descending : a.key < b.key;
    });
    return shown;
  }

  void ChangeAnything() {
    const std::vector<Record> shown = Sorted();
    const unsigned choice = Below(10);
    if (shown.empty() || choice < 5) {
      const Record record{++lastKey_, static_cast<int>(Below(4)), RandomName(), ""};
      const int key = table_.Add(record.name, record.code);
      EXPECT_TRUE(key == record.key || !Shows(record));
      records_.push_back(record);
      return;
    }
    const auto record = std::ranges::find(
        records_, shown[Below(static_cast<unsigned>(shown.size()))].key, &Record::key);
    table_.GoTo(record->key);
    if (choice < 8) {
      Alter(&*record);
    } else {
      const int place = table_.set.Position();
      table_.set.Delete();
      EXPECT_EQ(table_.set.Position(), std::min(place, table_.set.RecordCount() - 1));
      records_.erase(record);
    }
  }
  void Alter(Record* record) {
    const unsigned choice = Below(4);
    if (choice == 0) table_.Change(kCode, record->code = static_cast<int>(Below(4)));
    if (choice == 1) table_.Change(kNote, record->note = RandomName());
    if (choice > 1) table_.Change(kName, record->name = RandomName());
    EXPECT_TRUE(table_.set.Fields(kKey).AsInteger() == record->key || !Shows(*record));
  }

  void ExpectSame() const {
    const std::vector<Record> expected = Sorted();
    ASSERT_EQ(table_.set.RecordCount(), static_cast<int>(expected.size()));
    for (int i = 0; i < table_.set.RecordCount(); ++i) {
      const RowView row = table_.set.Row(i);
      const Record record{row.GetInteger(kKey), row.GetInteger(kCode), row.GetText(kName),
                          row.GetText(kNote)};
      ASSERT_EQ(record, expected[static_cast<std::size_t>(i)]) << "at " << i;
      ASSERT_EQ(table_.set.PositionOf(row), i);
    }
  }

  void ExpectFound(std::initializer_list<RowMatch> matches,
                   const std::function<bool(const Record&)>& condition) const {
    std::vector<int> keys;
    for (const Record& record : Sorted()) {
      if (condition(record)) keys.push_back(record.key);
    }
    std::vector<int> found;
    for (const RowView row : table_.set.FindAll(matches))
      found.push_back(row.GetInteger(kKey));
    ASSERT_EQ(found, keys);
    ASSERT_EQ(table_.set.FindFirst(matches).GetInteger(kKey), keys.empty() ? 0 : keys.front());
    const auto all = static_cast<std::size_t>(std::ranges::count_if(records_, condition));
    ASSERT_EQ(table_.set.FindAll(matches, RowScope::kAll).size(), all);
  }
  void ExpectLookUps() {
    const int key = static_cast<int>(Below(static_cast<unsigned>(lastKey_ + 2)));
    const int code = static_cast<int>(Below(4));
    const std::string name = RandomName();
    const RowMatch hasCode = RowMatch::Integer(kCode, code);
    const RowMatch isCalled = RowMatch::Folded(kName, FoldName(name));
    const auto called = [&](const Record& record) {
      return FoldName(record.name) == FoldName(name);
    };
    const auto both = [&](const Record& record) { return record.code == code && called(record); };
    ExpectFound({RowMatch::Integer(kKey, key)}, [&](const Record& r) { return r.key == key; });
    ExpectFound({RowMatch::Text(kName, name)}, [&](const Record& r) { return r.name == name; });
    ExpectFound({isCalled}, called);
    ExpectFound({hasCode, isCalled}, both);
    ExpectFound({isCalled, hasCode}, both);
    ExpectFound({hasCode, RowMatch::Integer(kCode, code + 1)}, [](const Record&) { return false; });
  }

  FileTable table_;
  std::mt19937 random_{4711};
  std::vector<Record> records_;
  int lastKey_ = 0;
};

TEST_P(TableLikeList, UnderRandomChangesLookUpsAndReopenings) {
  Rearrange(&table_, GetParam());
  for (int round = 0; round < 25; ++round) {
    TQvWriteGroup group({&table_.set});
    for (int i = 0; i < 15; ++i) {
      ChangeAnything();
      ASSERT_NO_FATAL_FAILURE(ExpectLookUps());
    }
    group.Commit();
    ASSERT_NO_FATAL_FAILURE(ExpectSame());
    if (round % 5 == 0) {
      table_.Reopen();
      ASSERT_NO_FATAL_FAILURE(ExpectSame());
    }
  }
  const Table afresh(table_.buffer.StreamName);
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
  SetUserLocale("de-DE");
  FileTable table;
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
  FileTable table;
  for (const char* name : {"c", "a", "b"})
    table.Add(name, *name == 'a' ? 1 : 2);
  Rearrange(&table, {"", kName, false, 2});
  EXPECT_THAT(table.Names(), ElementsAre("b", "c"));
  Rearrange(&table, {"", -1, false, {}});
  EXPECT_THAT(table.Names(), ElementsAre("c", "a", "b"));
}

TEST(Arranging, LeavesARowThatNoLongerShowsForItsNeighbour) {
  FileTable table;
  for (const char* name : {"a", "b", "c"})
    table.Add(name, 1);
  Rearrange(&table, {"", kName, false, 1});
  for (const auto& [hidden, next] : {std::pair{"b", "c"}, {"c", "a"}, {"a", ""}}) {
    table.GoTo(table.Key(hidden));
    EXPECT_EQ(table.Change(kCode, 5).GetInteger(kCode), 5) << "the row that was written";
    EXPECT_EQ(table.set.Fields(kName).AsString(), next);
  }
  EXPECT_TRUE(table.set.Eof());
  table.Add("d", 5);
  EXPECT_EQ(table.set.RecordCount(), 0);
  EXPECT_FALSE(table.set.CurrentRow());
}

TEST(Walking, SetsItsEndsAsAWalkExpects) {
  FileTable table;
  TQvDataSet& set = table.set;
  const auto state = [&set] {
    return std::to_string(set.Position()) + (set.Bof() ? " bof" : "") + (set.Eof() ? " eof" : "");
  };
  EXPECT_EQ(state(), "-1 bof eof");
  for (const char* name : {"a", "b"})
    table.Add(name, 1);
  const std::pair<std::function<void()>, const char*> steps[] = {
      {[&] { set.First(); }, "0 bof"},
      {[&] { set.Next(); }, "1"},
      {[&] { set.Next(); }, "1 eof"},
      {[&] { set.Next(); }, "1 eof"},
      {[&] { set.Prior(); }, "0"},
      {[&] { set.Prior(); }, "0 bof"},
      {[&] { set.MoveBehindLast(); }, "1 eof"},
      {[&] { set.MoveTo(0); }, "0"}};
  for (const auto& [step, expected] : steps) {
    step();
    EXPECT_EQ(state(), expected);
  }
  EXPECT_THROW(set.MoveTo(2), DataSetError);
  EXPECT_FALSE(set.MoveTo(RowView()));
}

}  // namespace
