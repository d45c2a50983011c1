// The delivered database, made from the registry.

#include "registry/epsg_registry.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

#include "assembly/database_check.h"
#include "assembly/processor_set.h"
#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/projjson.h"
#include "processors/data_processor.h"
#include "processors/ref_system_processor.h"
#include "registry/equivalence.h"
#include "tests/support/scripted_ui.h"

namespace QvRefSystem {
namespace {

namespace fs = std::filesystem;
using QvCommonUtils::TStringTree;

// A place of its own that goes with the test.
class Place {
 public:
  Place() {
    std::string name = (fs::temp_directory_path() / "registry-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~Place() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  [[nodiscard]] std::string operator/(const std::string& name) const {
    return (path_ / name).string();
  }
  [[nodiscard]] bool Empty() const { return fs::is_empty(path_); }

 private:
  fs::path path_;
};

// Cancels at the given step.
class ImpatientUi : public refframe_tests::ScriptedUi {
 public:
  explicit ImpatientUi(int steps) : steps_(steps) {}
  std::unique_ptr<QvPlatform::TProgress> StartProgress(int, const std::string&, int) override {
    class Counting : public QvPlatform::TProgress {
     public:
      explicit Counting(int steps) : left_(steps) {}
      bool Next() override { return --left_ > 0; }

     private:
      int left_;
    };
    return std::make_unique<Counting>(steps_);
  }

 private:
  int steps_;
};

// Made once for all tests of its content; none of them changes it for good.
class DeliveredDatabase : public testing::Test {
 public:
  static void SetUpTestSuite() {
    made_ = std::make_unique<Made>();
    std::string error;
    ASSERT_TRUE(BuildRegistryDatabase(made_->place / "epsg", {}, made_->ui, &made_->report, &error))
        << error;
    made_->data = MakeDataModule(made_->ui);
    made_->data->DatabasePath = made_->place / "epsg";
    ASSERT_TRUE(made_->data->OpenDatabase(made_->place / "epsg", kFullMode, false));
  }
  static void TearDownTestSuite() { made_.reset(); }

 protected:
  struct Made {
    Place place;
    refframe_tests::ScriptedUi ui;
    RegistryReport report;
    std::unique_ptr<TdatamoduleQvRfData> data;
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

  static std::unique_ptr<Made> made_;
};

std::unique_ptr<DeliveredDatabase::Made> DeliveredDatabase::made_;

TEST_F(DeliveredDatabase, HoldsEveryLiveSystemAndRefusesNone) {
  for (const RegistryRefusal& refusal : made_->report.refused) {
    ADD_FAILURE() << refusal.code << " " << refusal.name << ": " << refusal.reason;
  }
  // 545 geographic systems (204 of them with a 3D twin), 194 geocentric, 5135 projected.
  EXPECT_EQ(made_->report.systems, 545 + 194 + 5135);
  EXPECT_EQ(Rows(TableId::kRefSystem), made_->report.systems);
}

TEST_F(DeliveredDatabase, HasTheObjectsThatSystemsAreBuiltFrom) {
  EXPECT_EQ(Rows(TableId::kDatum), 535);
  EXPECT_EQ(Rows(TableId::kPrimeMeridian), 14);
  EXPECT_EQ(Rows(TableId::kEllipsoid), 50);
  // Each conversion once for each order and direction of axes that it is used with.
  EXPECT_EQ(Rows(TableId::kMapProj), 2327);
  EXPECT_EQ(Rows(TableId::kMapProjType), 39);
  EXPECT_EQ(Rows(TableId::kRefSystemType), 6);
  EXPECT_EQ(Rows(TableId::kDatumShiftType), 3);
  EXPECT_EQ(Rows(TableId::kLinearUnit), 47);
  EXPECT_EQ(Rows(TableId::kAngularUnit), 10);
  EXPECT_EQ(Rows(TableId::kScaleUnit), 3);
}

TEST_F(DeliveredDatabase, HoldsTogether) {
  std::vector<std::string> findings;
  EXPECT_TRUE(CheckDatabase(Data(), &findings));
  for (const std::string& finding : findings)
    ADD_FAILURE() << finding;
}

TEST_F(DeliveredDatabase, GivesBackEverySystemAsThatOfItsCode) {
  int equivalent = 0;
  for (int i = 0; i < Rows(TableId::kRefSystem); ++i) {
    Data().datasetRefSystem.MoveTo(i);
    TStringTree tree;
    SystemModel model;
    std::string json;
    std::string why;
    const bool same = Data().RefSystemProcessor->WriteToTree(&tree, 0, 0) &&
                      ModelFromTree(&tree, &model, &why) &&
                      ModelToProjJson(model, Dimension::kTwo, &json, &why) &&
                      EquivalentToEpsg(json, model.geoTiffCode, &why);
    EXPECT_TRUE(same) << model.name << ": " << why;
    equivalent += same ? 1 : 0;
  }
  EXPECT_EQ(equivalent, made_->report.systems);
}

TEST_F(DeliveredDatabase, FindsItsOwnSystemsAgainAndAddsNothing) {
  std::map<TableId, int> before;
  for (const TableSpec& table : TableCatalogue()) {
    if (table.tag != kUnopenedTag) before[table.id] = Rows(table.id);
  }
  for (const int code : {4326, 4978, 4807, 27700, 2193, 5513, 29371, 27572, 6201, 32661, 9895}) {
    TStringTree tree;
    WriteTree(code, &tree);
    const int key = Data().RefSystemProcessor->GetCurrentKey();
    EXPECT_EQ(Data().RefSystemProcessor->InsertFromTree(&tree), key) << code;
  }
  for (const auto& [table, rows] : before) {
    EXPECT_EQ(Rows(table), rows) << TableOf(table).streamName;
  }
}

TEST_F(DeliveredDatabase, FindsASystemByItsCodesOfBothDimensionsAndExportsTheFlatOne) {
  Locate(4979);
  const int solid = Data().RefSystemProcessor->GetCurrentKey();
  TStringTree tree;
  WriteTree(4326, &tree);
  EXPECT_EQ(Data().RefSystemProcessor->GetCurrentKey(), solid);
  int code = 0;
  EXPECT_TRUE(tree.GetInteger(102005, 0, &code));
  EXPECT_EQ(code, 4326);
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
  int code = 0;
  EXPECT_TRUE(tree.GetInteger(102001, 0, &code));
  EXPECT_EQ(code, 1);
  const TStringTree* mif = FindSubtree(&tree, 101000, 0);
  ASSERT_NE(mif, nullptr);
  std::string text;
  EXPECT_TRUE(mif->GetString(101001, 0, &text));
  EXPECT_EQ(text, "8");  // transverse Mercator
  EXPECT_TRUE(mif->GetString(101003, 0, &text));
  EXPECT_EQ(text, "104");  // WGS 84
  EXPECT_TRUE(mif->GetString(101002, 0, &text));
  EXPECT_EQ(text, "m");
  // Several numbers stand for this datum, each with a shift of its own: it is written by ellipsoid.
  TStringTree nad27;
  WriteTree(4267, &nad27);
  mif = FindSubtree(&nad27, 101000, 0);
  ASSERT_NE(mif, nullptr);
  EXPECT_FALSE(mif->GetString(101003, 0, &text));
  EXPECT_TRUE(mif->GetString(101004, 0, &text));
  EXPECT_EQ(text, "7");  // Clarke 1866
}

TEST_F(DeliveredDatabase, OffersTheCommonestOfEachToNewRecords) {
  const auto lastUsed = [](TObjectType type) {
    TQvRfDataProcessor& processor = *ProcessorFor(Data(), static_cast<int>(type));
    EXPECT_NE(processor.GetLastUsedKey(), 0);
    std::string name;
    processor.GetNames(nullptr, &name);
    return name;
  };
  EXPECT_EQ(lastUsed(TObjectType::kLinearUnit), "metre");
  EXPECT_EQ(lastUsed(TObjectType::kAngularUnit), "degree");
  EXPECT_EQ(lastUsed(TObjectType::kScaleUnit), "unity");
  EXPECT_EQ(lastUsed(TObjectType::kPrimeMeridian), "Greenwich");
  EXPECT_EQ(lastUsed(TObjectType::kEllipsoid), "WGS 84");
}

class MakingADatabase : public testing::TestWithParam<bool> {
 protected:
  [[nodiscard]] std::string Target() const { return place_ / (GetParam() ? "new.qvdb" : "new"); }
  Place place_;
  std::string error_;
};

TEST_P(MakingADatabase, LeavesNothingWhenItIsCancelled) {
  ImpatientUi ui(3);
  RegistryReport report;
  EXPECT_FALSE(BuildRegistryDatabase(Target(), {GetParam()}, ui, &report, &error_));
  EXPECT_FALSE(error_.empty());
  EXPECT_TRUE(place_.Empty());
  EXPECT_EQ(report.systems, 0);
}

TEST_P(MakingADatabase, FailsWhereItCannotWrite) {
  refframe_tests::ScriptedUi ui;
  // A file stands where a folder would have to be.
  std::ofstream(place_ / "wall") << "x";
  const std::string target = place_ / (GetParam() ? "wall/new.qvdb" : "wall/new");
  EXPECT_FALSE(BuildRegistryDatabase(target, {GetParam()}, ui, nullptr, &error_));
  EXPECT_FALSE(error_.empty());
}

INSTANTIATE_TEST_SUITE_P(Forms, MakingADatabase, testing::Bool(),
                         [](const auto& form) { return form.param ? "Container" : "Folder"; });

TEST(MakingAFolder, LeavesADatabaseThatStandsThereAlone) {
  const Place place;
  refframe_tests::ScriptedUi ui;
  std::string error;
  fs::create_directory(place / "old");
  std::ofstream((place / "old") + "/ellipsoid.dat") << "mine";
  EXPECT_FALSE(BuildRegistryDatabase(place / "old", {}, ui, nullptr, &error));
  EXPECT_NE(error.find("already"), std::string::npos) << error;
  EXPECT_EQ(fs::file_size((place / "old") + "/ellipsoid.dat"), 4U);
  EXPECT_FALSE(fs::exists((place / "old") + "/datum_shift.dat"));
}

TEST(MakingAContainer, WantsANameThatTellsWhatItIs) {
  const Place place;
  refframe_tests::ScriptedUi ui;
  std::string error;
  EXPECT_FALSE(BuildRegistryDatabase(place / "refs.dat", {true}, ui, nullptr, &error));
  EXPECT_NE(error.find(".qvdb"), std::string::npos) << error;
  EXPECT_TRUE(place.Empty());
}

}  // namespace
}  // namespace QvRefSystem
