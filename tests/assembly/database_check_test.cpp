// What the check of a database finds: one fault at a time in a sound database.

#include "assembly/database_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "database/height_storage.h"
#include "platform/dbset/write_group.h"
#include "processors/ref_system_processor.h"
#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvRefSystem::TableId;
using Strings = std::vector<std::string>;
using testing::Contains;
using testing::HasSubstr;

// A database with one system of each kind; the heights of the geodetic one are a table, those of
// the projected one an offset.
struct Sound : TestDatabase {
  explicit Sound(bool inContainer = false) : TestDatabase(inContainer) {
    QvPlatform::TQvWriteGroup group(data->WritableTables());
    for (int kind = 1; kind <= 6; ++kind) {
      const TreePtr tree = MakeTree(SystemTree, kind);
      if (kind == 4) HeightTableTree(TreeBuilder(tree.get()).Sub(1500));
      if (kind == 5) HeightOffsetTree(TreeBuilder(tree.get()).Sub(1500));
      if (data->RefSystemProcessor->InsertFromTree(tree.get()) == 0) {
        throw std::runtime_error("a sample system is not taken");
      }
    }
    group.Commit();
  }
  [[nodiscard]] QvPlatform::TQvDataSet& Table(TableId id) const { return data->DataSet(id); }
  // Moves to the first record where the field has that content.
  void Locate(TableId id, const std::string& field, const std::string& value) const {
    QvPlatform::TQvDataSet& table = Table(id);
    for (table.First(); !table.Eof(); table.Next()) {
      if (table.FieldByName(field).AsString() == value) return;
    }
    FAIL() << field << " " << value;
  }
  void Change(TableId id, const std::string& field, const std::string& value) const {
    Table(id).Edit();
    Table(id).FieldByName(field).SetString(value);
    Table(id).Post();
  }
  // A further record like the current one, which is the current one then.
  void Repeat(TableId id) const {
    QvPlatform::TQvDataSet& table = Table(id);
    Strings values;
    for (int i = 0; i < table.FieldCount(); ++i)
      values.push_back(table.Fields(i).AsString());
    table.Append();
    for (int i = 0; i < table.FieldCount(); ++i) {
      if (table.Fields(i).Definition().need == QvPlatform::FieldNeed::kGeneratedKey) continue;
      table.Fields(i).SetString(values[static_cast<std::size_t>(i)]);
    }
    table.Post();
  }
};

class SoundDatabase : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(, SoundDatabase, testing::Bool(), FormName{});

TEST_P(SoundDatabase, HasNothingToFind) {
  const Sound database(GetParam());
  EXPECT_THAT(database.Findings(), testing::IsEmpty());
}

TEST_P(SoundDatabase, IsUnsoundWithAnotherHeightFile) {
  std::string changed = HeightText();
  changed[changed.find("20.125")] = '3';
  const struct {
    const char* name;
    std::string file;
    /// A null text deletes the file.
    std::optional<std::string> text;
    const char* found;
  } rows[] = {
      {"the lines that the checksum is of", "Alps", HeightText(), nullptr},
      {"another value", "Alps", changed, "\"Alps\" differs from VDATA_CRC32"},
      {"no table", "Alps", "no table at all", "\"Alps\" differs from VDATA_CRC32"},
      {"an empty file", "Alps", "", "\"Alps\" is empty or cannot be read"},
      {"no file", "Alps", std::nullopt, "\"Alps\" is missing"},
      {"a file of nobody", "left", "1 2 3",
       "note: vertical_refsystem.dat: the height file \"left\" is that of no record"},
  };
  for (const auto& row : rows) {
    const Sound database(GetParam());
    const std::string path = database.data->GetHeightsPrefix() + row.file;
    ASSERT_TRUE(row.text ? QvRefSystem::SaveStorageFile(path, GetParam(), *row.text)
                         : QvRefSystem::DeleteStorageFile(path, GetParam()));
    if (row.text && row.file == "Alps") {
      QvRefSystem::NoteHeightFile(database.Table(TableId::kVerticalRefSystem), 1, *row.text);
    }
    const Strings found = database.Findings();
    if (row.found == nullptr) {
      EXPECT_THAT(found, testing::IsEmpty()) << row.name;
    } else {
      EXPECT_THAT(found, testing::ElementsAre(HasSubstr(row.found))) << row.name;
    }
  }
}

TEST(DatabaseWithAFault, IsFoundUnsound) {
  const struct {
    TableId table;
    /// Which record, and what becomes of it.
    const char* whereField;
    const char* whereValue;
    const char* field;
    const char* value;
    const char* found;
  } rows[] = {
      {TableId::kRefSystem, "TYPE", "4", "DATUM_AUTOKEY", "999",
       "DATUM_AUTOKEY refers to 999, which is not in geodetic_datum.dat"},
      {TableId::kMapProj, "TYPE", "9807", "TYPE", "9999",
       "TYPE refers to 9999, which is not in map_proj_type.dat"},
      {TableId::kRefSystem, "TYPE", "4", "PRIME_MERIDIAN_AUTOKEY", "0",
       "PRIME_MERIDIAN_AUTOKEY is missing"},
      {TableId::kRefSystem, "TYPE", "6", "PRIMARY_REFSYSTEM_AUTOKEY", "0",
       "PRIMARY_REFSYSTEM_AUTOKEY is missing"},
      {TableId::kRefSystem, "TYPE", "1", "TYPE", "7", "TYPE 7 is no kind of system"},
      {TableId::kDatum, "FAVOUR", "0", "NAME", " ", "there is no name"},
      {TableId::kLinearUnit, "FACTOR_B", "1", "FACTOR_C", "0", "a factor is not above 0"},
      {TableId::kEllipsoid, "SPHEROID", "0", "A", "long", "no length"},
      {TableId::kPrimeMeridian, "FAVOUR", "0", "LONGITUDE", "west",
       "LONGITUDE \"west\" is no number"},
      {TableId::kDatumShift, "FAVOUR", "0", "TY", "", "TY \"\" is no number"},
      {TableId::kMapProj, "TYPE", "9807", "COORD1_SIGN", "0", "COORD1_SIGN is not 1 or -1"},
      {TableId::kMapProj, "TYPE", "9807", "SCALE_UNIT_AUTOKEY", "0",
       "\"Scale factor at natural origin\" has no unit"},
      {TableId::kParamValue, "PARAM_CODE", "8806", "VALUE", "far",
       "holds \"far\", which is no number"},
      {TableId::kParamValue, "PARAM_CODE", "8806", "PARAM_CODE", "8899",
       "\"False easting\" has 0 values"},
      {TableId::kParamValue, "OWNER_CONTENT", "12", "VALUE", "two",
       "holds \"two\", which is no code"},
      {TableId::kParamValue, "OWNER_CONTENT", "2", "OWNER_ID", "999",
       "left by a record that is gone"},
      {TableId::kParamValue, "OWNER_CONTENT", "2", "PARAM_TAG", "9", "is of no known form"},
      {TableId::kMapProjParam, "PARAM_CODE", "8805", "KIND", "1",
       "is chosen from a list that is empty"},
      {TableId::kRefSystem, "TYPE", "5", "VERT_SYSTEM_AUTOKEY", "1",
       "VERT_SYSTEM_AUTOKEY 1 is also that of key"},
      {TableId::kRefSystem, "TYPE", "5", "VERT_SYSTEM_AUTOKEY", "1",
       "\"Harbour\": no reference system refers to it"},
      {TableId::kRefSystem, "TYPE", "5", "VERT_SYSTEM_CODE", "5773",
       "both a height system and a built-in geoid"},
      {TableId::kVerticalRefSystem, "NAME", "Harbour", "VDATA_OFFSET", "low",
       "VDATA_OFFSET \"low\" is no number"},
      {TableId::kVerticalRefSystem, "NAME", "Harbour", "VDATA_UNIT_AUTOKEY", "0",
       "VDATA_UNIT_AUTOKEY is missing"},
      {TableId::kVerticalRefSystem, "NAME", "Harbour", "VDATA_TYPE", "7",
       "VDATA_TYPE 7 is no kind"},
  };
  for (const auto& row : rows) {
    const Sound database;
    database.Locate(row.table, row.whereField, row.whereValue);
    database.Change(row.table, row.field, row.value);
    EXPECT_THAT(database.Findings(), Contains(HasSubstr(row.found)));
  }
}

TEST(DatabaseWithARepeatedRecord, IsFoundUnsound) {
  const struct {
    TableId table;
    const char* found;
  } rows[] = {{TableId::kLinearUnit, "equal to key"},
              {TableId::kEllipsoid, "equal to key"},
              {TableId::kPrimeMeridian, "equal to key"},
              {TableId::kDatumShift, "equal to key"},
              {TableId::kDatum, "equal to key"},
              {TableId::kRefSystem, "equal to key"},
              {TableId::kVerticalRefSystem, "the height file \"Alps\" is also that of key"},
              {TableId::kParamValue, "stands twice"}};
  for (const auto& row : rows) {
    const Sound database;
    database.Table(row.table).First();
    database.Repeat(row.table);
    EXPECT_THAT(database.Findings(), Contains(HasSubstr(row.found)));
  }
}

TEST(DatabaseWithATwin, IsFoundUnsoundIfOnlyWordsDiffer) {
  const struct {
    const char* field;
    const char* value;
    bool same;
  } rows[] = {{"NAME", "  METRE ", true},    {"NAME", "metres", false}, {"FACTOR_B", "2", false},
              {"FACTOR_C", "2", false},      {"CODE", "7", false},      {"ABBREVIATION", "M", true},
              {"DESCRIPTION", "other", true}};
  for (const auto& row : rows) {
    const Sound database;
    database.Locate(TableId::kLinearUnit, "NAME", "metre");
    database.Repeat(TableId::kLinearUnit);
    database.Change(TableId::kLinearUnit, row.field, row.value);
    EXPECT_EQ(database.Findings().size(), row.same ? 1 : 0) << row.field << " " << row.value;
  }
}

TEST(DatabaseWithCodes, IsUnsoundWhereTwoStandForOneOwner) {
  const struct {
    const char* field;
    const char* value;
    const char* found;
  } rows[] = {
      {"VALUE", "7", "holds \"7\" beside"},
      {"OWNER_ID", "1", "owner 1/1 claims the code 26704, which is that of \"NAD27 geodetic\""},
      {"OWNER_ID", "999", "note: param_value.dat: row of tag 4 of owner 1/999 was left by"}};
  for (const auto& row : rows) {
    const Sound database;
    database.Locate(TableId::kParamValue, "VALUE", "26704");
    database.Repeat(TableId::kParamValue);
    database.Change(TableId::kParamValue, row.field, row.value);
    EXPECT_THAT(database.Findings(), Contains(HasSubstr(row.found)));
  }
}

TEST(CheckOfADatabase, CountsWhatItNoLongerLists) {
  const Sound database;
  QvPlatform::TQvDataSet& units = database.Table(TableId::kScaleUnit);
  QvPlatform::TQvWriteGroup group({&units});
  for (int i = 0; i < 1003; ++i) {
    units.Append();
    units.FieldByName("NAME").SetString("unit " + std::to_string(i));
    units.Post();
  }
  group.Commit();
  const QvRefSystem::CheckReport report = QvRefSystem::CheckDatabase(*database.data);
  EXPECT_EQ(report.Summary(), "1003 errors, 0 notes, 3 of them not listed");
  EXPECT_EQ(report.Lines().size(), 1000U);
}

// Two projections of one name and one set of fields are two as long as a parameter differs.
TEST(ProjectionsThatDifferInAParameter, AreNoTwins) {
  const Sound database;
  const TreePtr tree = MakeTree(ProjectionTree);
  RemoveField(tree.get(), 8806, 0);
  TreeBuilder(tree.get()).Field(8806, "123456");
  ASSERT_NE(database.Processor(QvRefSystem::TObjectType::kMapProjection).InsertFromTree(tree.get()),
            0);
  EXPECT_EQ(database.Table(TableId::kMapProj).RecordCount(), 2);
  EXPECT_THAT(database.Findings(), testing::IsEmpty());
}

}  // namespace
}  // namespace refframe_tests
