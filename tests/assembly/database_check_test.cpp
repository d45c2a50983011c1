// What the check of a database finds: one fault at a time in a sound database.

#include "assembly/database_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "platform/dbset/write_group.h"
#include "processors/ref_system_processor.h"
#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvRefSystem::CheckDatabase;
using QvRefSystem::TableId;
using Strings = std::vector<std::string>;
using testing::Contains;
using testing::HasSubstr;

// A database with one system of each kind.
struct Sound : TestDatabase {
  Sound() {
    QvPlatform::TQvWriteGroup group(data->WritableTables());
    for (int kind = 1; kind <= 6; ++kind) {
      const TreePtr tree = MakeTree(SystemTree, kind);
      if (data->RefSystemProcessor->InsertFromTree(tree.get()) == 0) {
        throw std::runtime_error("a sample system is not taken");
      }
    }
    group.Commit();
  }
  [[nodiscard]] Strings Findings() const {
    Strings findings;
    const bool sound = CheckDatabase(*data, &findings);
    EXPECT_EQ(sound, findings.empty());
    return findings;
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
  // A further record like the current one.
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

TEST(SoundDatabase, HasNothingToFind) {
  const Sound database;
  EXPECT_THAT(database.Findings(), testing::IsEmpty());
}

struct Fault {
  const char* name;
  TableId table;
  /// Which record, and what becomes of it.
  const char* whereField;
  const char* whereValue;
  const char* field;
  const char* value;
  const char* found;
};

void PrintTo(const Fault& fault, std::ostream* out) {
  *out << fault.name;
}

class DatabaseWith : public testing::TestWithParam<Fault> {};

TEST_P(DatabaseWith, IsFoundUnsound) {
  const Fault& fault = GetParam();
  const Sound database;
  database.Locate(fault.table, fault.whereField, fault.whereValue);
  database.Change(fault.table, fault.field, fault.value);
  EXPECT_THAT(database.Findings(), Contains(HasSubstr(fault.found)));
}

INSTANTIATE_TEST_SUITE_P(
    Faults, DatabaseWith,
    testing::Values(
        Fault{"ALostReference", TableId::kRefSystem, "TYPE", "4", "DATUM_AUTOKEY", "999",
              "DATUM_AUTOKEY refers to 999, which is not in geodetic_datum.dat"},
        Fault{"ALostTypeReference", TableId::kMapProj, "TYPE", "9807", "TYPE", "9999",
              "TYPE refers to 9999, which is not in map_proj_type.dat"},
        Fault{"AMissingMeridian", TableId::kRefSystem, "TYPE", "4", "PRIME_MERIDIAN_AUTOKEY", "0",
              "PRIME_MERIDIAN_AUTOKEY is missing"},
        Fault{"AMissingPrimary", TableId::kRefSystem, "TYPE", "6", "PRIMARY_REFSYSTEM_AUTOKEY", "0",
              "PRIMARY_REFSYSTEM_AUTOKEY is missing"},
        Fault{"AnUnknownKind", TableId::kRefSystem, "TYPE", "1", "TYPE", "7",
              "TYPE 7 is no kind of system"},
        Fault{"ABlankName", TableId::kDatum, "FAVOUR", "0", "NAME", " ", "there is no name"},
        Fault{"AZeroFactor", TableId::kLinearUnit, "FACTOR_B", "1", "FACTOR_C", "0",
              "a factor is not above 0"},
        Fault{"AWordForAnAxis", TableId::kEllipsoid, "SPHEROID", "0", "A", "long", "no length"},
        Fault{"AWordForALongitude", TableId::kPrimeMeridian, "FAVOUR", "0", "LONGITUDE", "west",
              "LONGITUDE \"west\" is no number"},
        Fault{"AnEmptyShift", TableId::kDatumShift, "FAVOUR", "0", "TY", "",
              "TY \"\" is no number"},
        Fault{"ASignOfNothing", TableId::kMapProj, "TYPE", "9807", "COORD1_SIGN", "0",
              "COORD1_SIGN is not 1 or -1"},
        Fault{"AParameterWithoutUnit", TableId::kMapProj, "TYPE", "9807", "SCALE_UNIT_AUTOKEY", "0",
              "\"Scale factor at natural origin\" has no unit"},
        Fault{"AWordForAParameter", TableId::kParamValue, "PARAM_CODE", "8806", "VALUE", "far",
              "holds \"far\", which is no number"},
        Fault{"AStrayParameter", TableId::kParamValue, "PARAM_CODE", "8806", "PARAM_CODE", "8899",
              "\"False easting\" has 0 values"},
        Fault{"AWordForACode", TableId::kParamValue, "OWNER_CONTENT", "12", "VALUE", "two",
              "holds \"two\", which is no code"},
        Fault{"ACodeOfNobody", TableId::kParamValue, "OWNER_CONTENT", "2", "OWNER_ID", "999",
              "left by a record that is gone"},
        Fault{"ATagWithoutMeaning", TableId::kParamValue, "OWNER_CONTENT", "2", "PARAM_TAG", "9",
              "is of no known form"},
        Fault{"AListThatIsEmpty", TableId::kMapProjParam, "PARAM_CODE", "8805", "KIND", "1",
              "is chosen from a list that is empty"}),
    [](const auto& row) { return row.param.name; });

struct Twin {
  const char* name;
  TableId table;
};

void PrintTo(const Twin& twin, std::ostream* out) {
  *out << twin.name;
}

class DatabaseWithTwins : public testing::TestWithParam<Twin> {};

TEST_P(DatabaseWithTwins, OfATableIsFoundUnsound) {
  const Sound database;
  database.Table(GetParam().table).First();
  database.Repeat(GetParam().table);
  EXPECT_THAT(database.Findings(), Contains(HasSubstr("equal to key")));
}

INSTANTIATE_TEST_SUITE_P(Tables, DatabaseWithTwins,
                         testing::Values(Twin{"Units", TableId::kLinearUnit},
                                         Twin{"Ellipsoids", TableId::kEllipsoid},
                                         Twin{"Meridians", TableId::kPrimeMeridian},
                                         Twin{"Shifts", TableId::kDatumShift},
                                         Twin{"Datums", TableId::kDatum},
                                         Twin{"Systems", TableId::kRefSystem}),
                         [](const auto& row) { return row.param.name; });

TEST(DatabaseWithARepeatedRow, OfCodesIsFoundUnsound) {
  const Sound database;
  database.Locate(TableId::kParamValue, "OWNER_CONTENT", "12");
  database.Repeat(TableId::kParamValue);
  EXPECT_THAT(database.Findings(), Contains(HasSubstr("stands twice")));
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
