// The delivered database, made from the registry.

#include "registry/epsg_registry.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

#include "assembly/processor_set.h"
#include "processors/data_processor.h"
#include "processors/ref_system_processor.h"
#include "tests/support/test_database.h"

namespace QvRefSystem {
namespace {

namespace fs = std::filesystem;
using QvCommonUtils::TStringTree;

using refframe_tests::TemporaryFolder;

// Made once for all tests of its content; none of them changes it for good.
class DeliveredDatabase : public testing::Test {
 public:
  static void SetUpTestSuite() {
    made_ = std::make_unique<Made>();
    const std::string path = made_->place.Path("epsg");
    std::string error;
    ASSERT_TRUE(BuildRegistryDatabase(path, {}, made_->ui, &made_->report, &error)) << error;
    made_->data->DatabasePath = path;
    ASSERT_TRUE(made_->data->OpenDatabase(path, kFullMode, false));
  }
  static void TearDownTestSuite() { made_.reset(); }

 protected:
  struct Made {
    TemporaryFolder place;
    refframe_tests::ScriptedUi ui;
    RegistryReport report;
    std::unique_ptr<TdatamoduleQvRfData> data = MakeDataModule(ui);
  };

  static TdatamoduleQvRfData& Data() { return *made_->data; }
  static int Rows(TableId table) { return Data().DataSet(table).RecordCount(); }

  // Moves to the system with that GeoTIFF code.
  static void Locate(int code) {
    const auto field = [](std::string_view name) {
      return Data().datasetParamValue.FieldByName(name).GetIndex();
    };
    const QvPlatform::RowView row = Data().datasetParamValue.FindFirst(
        {QvPlatform::RowMatch::Integer(field("OWNER_CONTENT"), 1),
         QvPlatform::RowMatch::Integer(field("PARAM_TAG"), 4),
         QvPlatform::RowMatch::Text(field("VALUE"), std::to_string(code))});
    ASSERT_TRUE(row) << code;
    ASSERT_TRUE(Data().RefSystemProcessor->LocateKey(row.GetInteger(field("OWNER_ID"))));
  }

  static void WriteTree(int code, TStringTree* tree) {
    Locate(code);
    ASSERT_TRUE(Data().RefSystemProcessor->WriteToTree(tree, 0, 0));
  }
  // The value of a field; "(none)" without it.
  static std::string Text(const TStringTree* tree, int id) {
    std::string text;
    return tree != nullptr && tree->GetString(id, 0, &text) ? text : "(none)";
  }

  static inline std::unique_ptr<Made> made_;
};

TEST_F(DeliveredDatabase, HoldsEveryLiveSystemAndRefusesNone) {
  for (const RegistryRefusal& refusal : made_->report.refused) {
    ADD_FAILURE() << refusal.code << " " << refusal.name << ": " << refusal.reason;
  }
  // 545 geographic systems (204 of them with a 3D twin), 194 geocentric, 5135 projected.
  EXPECT_EQ(made_->report.systems, 545 + 194 + 5135);
  EXPECT_EQ(Rows(TableId::kRefSystem), made_->report.systems);
}

TEST_F(DeliveredDatabase, HasTheObjectsThatSystemsAreBuiltFrom) {
  // Each conversion stands once for each order and direction of axes that it is used with.
  const std::pair<TableId, int> rows[] = {
      {TableId::kDatum, 535},        {TableId::kPrimeMeridian, 14}, {TableId::kEllipsoid, 50},
      {TableId::kMapProj, 2327},     {TableId::kMapProjType, 39},   {TableId::kRefSystemType, 6},
      {TableId::kDatumShiftType, 3}, {TableId::kLinearUnit, 47},    {TableId::kAngularUnit, 10},
      {TableId::kScaleUnit, 3}};
  for (const auto& [table, count] : rows)
    EXPECT_EQ(Rows(table), count) << TableOf(table).streamName;
}

TEST_F(DeliveredDatabase, FindsASystemByItsCodesOfBothDimensionsAndExportsTheFlatOne) {
  Locate(4979);
  const int solid = Data().RefSystemProcessor->GetCurrentKey();
  TStringTree tree;
  WriteTree(4326, &tree);
  EXPECT_EQ(Data().RefSystemProcessor->GetCurrentKey(), solid);
  EXPECT_EQ(Text(&tree, 102005), "4326");
}

TEST_F(DeliveredDatabase, KeepsAxisVariantsOfOneConversionApart) {
  const auto projection = [](int code) {
    Locate(code);
    return Data().datasetRefSystem.FieldByName("MAP_PROJ_AUTOKEY").AsInteger();
  };
  // The same conversion, east first and north first.
  EXPECT_NE(projection(5041), projection(32661));
  // The same conversion and axes under two datums.
  EXPECT_EQ(projection(32637), projection(32237));
}

TEST_F(DeliveredDatabase, ExportsExchangeCodes) {
  TStringTree tree;
  WriteTree(32637, &tree);
  EXPECT_EQ(Text(&tree, 102001), "1");
  const TStringTree* mif = FindSubtree(&tree, 101000, 0);
  EXPECT_EQ(Text(mif, 101001), "8");    // transverse Mercator
  EXPECT_EQ(Text(mif, 101003), "104");  // WGS 84
  EXPECT_EQ(Text(mif, 101002), "m");
  // Several numbers stand for this datum, each with a shift of its own: it is written by ellipsoid.
  TStringTree nad27;
  WriteTree(4267, &nad27);
  mif = FindSubtree(&nad27, 101000, 0);
  EXPECT_EQ(Text(mif, 101003), "(none)");
  EXPECT_EQ(Text(mif, 101004), "7");  // Clarke 1866
}

TEST_F(DeliveredDatabase, OffersTheCommonestOfEachToNewRecords) {
  using enum TObjectType;
  for (const auto& [type, expected] : {std::pair{kLinearUnit, "metre"},
                                       {kAngularUnit, "degree"},
                                       {kScaleUnit, "unity"},
                                       {kPrimeMeridian, "Greenwich"},
                                       {kEllipsoid, "WGS 84"}}) {
    TQvRfDataProcessor& processor = *ProcessorFor(Data(), static_cast<int>(type));
    EXPECT_NE(processor.GetLastUsedKey(), 0);
    std::string name;
    processor.GetNames(nullptr, &name);
    EXPECT_EQ(name, expected);
  }
}

class MakingADatabase : public testing::TestWithParam<bool> {
 protected:
  [[nodiscard]] std::string Target() const { return place_.Path(GetParam() ? "new.qvdb" : "new"); }
  TemporaryFolder place_;
  std::string error_;
};

TEST_P(MakingADatabase, LeavesNothingWhenItIsCancelled) {
  refframe_tests::ScriptedUi ui;
  ui.cancelAt = 3;
  RegistryReport report;
  EXPECT_FALSE(BuildRegistryDatabase(Target(), {GetParam()}, ui, &report, &error_));
  EXPECT_FALSE(error_.empty());
  EXPECT_TRUE(fs::is_empty(place_.Path()));
  EXPECT_EQ(report.systems, 0);
}

TEST_P(MakingADatabase, FailsWhereItCannotWrite) {
  refframe_tests::ScriptedUi ui;
  // A file stands where a folder would have to be.
  std::ofstream(place_.Path("wall")) << "x";
  const std::string target = place_.Path(GetParam() ? "wall/new.qvdb" : "wall/new");
  EXPECT_FALSE(BuildRegistryDatabase(target, {GetParam()}, ui, nullptr, &error_));
  EXPECT_FALSE(error_.empty());
}

INSTANTIATE_TEST_SUITE_P(Forms, MakingADatabase, testing::Bool(), refframe_tests::FormName{});

TEST(MakingAFolder, LeavesADatabaseThatStandsThereAlone) {
  const TemporaryFolder place;
  refframe_tests::ScriptedUi ui;
  std::string error;
  fs::create_directory(place.Path("old"));
  std::ofstream(place.Path("old/ellipsoid.dat")) << "mine";
  EXPECT_FALSE(BuildRegistryDatabase(place.Path("old"), {}, ui, nullptr, &error));
  EXPECT_NE(error.find("already"), std::string::npos) << error;
  EXPECT_EQ(fs::file_size(place.Path("old/ellipsoid.dat")), 4U);
  EXPECT_FALSE(fs::exists(place.Path("old/datum_shift.dat")));
}

TEST(MakingAContainer, WantsANameThatTellsWhatItIs) {
  const TemporaryFolder place;
  refframe_tests::ScriptedUi ui;
  std::string error;
  EXPECT_FALSE(BuildRegistryDatabase(place.Path("refs.dat"), {true}, ui, nullptr, &error));
  EXPECT_NE(error.find(".qvdb"), std::string::npos) << error;
  EXPECT_TRUE(fs::is_empty(place.Path()));
}

}  // namespace
}  // namespace QvRefSystem
