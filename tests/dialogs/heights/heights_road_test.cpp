// The whole way of heights: made in the dialogs, chosen by a host with their system, carried to
// another database, and computing the same there.

#include <cmath>
#include <fstream>

#include "dialogs/heights/table_raster_view.h"
#include "dialogs/heights/vertical_edit.h"
#include "platform/geocore/shell_reference_system.h"
#include "processors/ref_system_processor.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using enum TObjectType;
using QvCommonUtils::TStringTree;
using namespace testing;

constexpr char kFilePlane[] = "NAD27 geodetic";
constexpr char kMade[] = "Harbour geodetic";
constexpr double kFileCell = 0.25;  // degrees

/// Heights of the geoid, in metres, over the plane of the file, whose places are in degrees. Being
/// linear, they are the same between the nodes of the file as at them.
double FileUndulation(double latitude, double longitude) {
  return 20 + 4 * (latitude - 54) + 3 * (longitude - 36);
}

std::string FileText() {
  std::string text = "54 55 36 38 0.25 0.25\n";
  for (int row = 4; row >= 0; --row) {
    for (int column = 0; column <= 8; ++column)
      text += std::to_string(FileUndulation(54 + row * kFileCell, 36 + column * kFileCell)) + " ";
    text += "\n";
  }
  return text;
}

/// By EPSG, ellipsoid 7030.
void Wgs84EllipsoidTree(TreeBuilder tree) {
  tree.Field(5120, "WGS 84").Field(5121, "An ellipsoid");
  tree.Field(5110, "6378137").Field(5111, "6356752.314245").Field(5112, "0");
  tree.Field(5114, "0").Field(5115, "0");
  MetreTree(tree.Sub(5113));
}

void Wgs84SystemTree(TreeBuilder tree, const char* name) {
  tree.Field(1020, name).Field(1021, "A system").Field(1022, "WGS");
  tree.Field(1100, "4");
  for (int axis = 0; axis < 3; ++axis)
    tree.Field(1025, std::string(1, "BLH"[axis]), axis);
  PrimeMeridianTree(tree.Sub(1101));
  Wgs84EllipsoidTree(tree.Sub(1103));
  DegreeTree(tree.Sub(1106));
  MetreTree(tree.Sub(1201).Sub(1104));
}

/// A system on a datum of its own, with a constant offset as heights.
void HarbourTree(TreeBuilder tree) {
  Wgs84SystemTree(tree, kMade);
  TreeBuilder datum = tree.Sub(1107);
  datum.Field(5620, "Harbour datum").Field(5621, "A datum").Field(5622, "HD");
  TreeBuilder shift = datum.Sub(1102);
  shift.Field(5420, "Harbour to WGS 84").Field(5421, "A shift").Field(5422, "HD");
  shift.Field(5461, "-87.5").Field(5462, "-98.25").Field(5463, "-121");
  MetreTree(shift.Sub(5440));
  shift.Sub(5443).Field(5701, "1").Field(5702, "translation").Field(5703, "three parameters");
  Wgs84EllipsoidTree(datum.Sub(5610));
  HeightOffsetTree(tree.Sub(1500));
}

/// Puts the table of a file in the place of a stored offset, which does not know what it was made
/// of.
void MakeTable(QWidget& heights, const std::string& file) {
  EXPECT_EQ(TextOf(heights, "pnlDataType"), "Offset");
  Check(heights, "radiobtnDataSourceFile");
  NameFile(heights, "btnDataSourceParamsFileName", file);
  Choose(heights, "btnDataSourceParamsFilePlaneRefsystem", kFilePlane);
  Check(heights, "radiobtnDataTable");
  Click(heights, "btnDataCreate");
  EXPECT_EQ(TextOf(heights, "pnlDataType"), "Table");
  Type(heights, "edName", "Harbour heights");
  Save(heights);
}

/// Looks at the heights of a stored system, and leaves all as it is.
void LookAtTable(QWidget& system) {
  Open<TformQvRfVerticalRefSystemEdit>(system, "Button1", [](QWidget& heights) {
    EXPECT_EQ(TextOf(heights, "edName"), "Harbour heights");
    EXPECT_EQ(TextOf(heights, "pnlDataType"), "Table");
    Open<TformQvRfTableRasterView>(heights, "btnDataView", Ok);
    Close(heights);
  });
  Close(system);
}

std::unique_ptr<TShellReferenceSystem> Compute(TStringTree* tree) {
  std::string error;
  auto system = CreateShellReferenceSystem(tree, nullptr, &error);
  if (!system) throw std::runtime_error(error);
  return system;
}

TShellPoint Moved(const TShellReferenceSystem& from, const TShellReferenceSystem& to,
                  TShellPoint point) {
  EXPECT_EQ(from.Transform(to, {&point, 1}), 0U);
  return point;
}

class HeightsRoad : public TestWithParam<bool> {
 protected:
  HeightsRoad() : first_(GetParam()), second_(GetParam()) {
    WorkIn(first_);
    for (const TreePtr& tree : {MakeTree(SystemTree, 4), MakeTree(HarbourTree)})
      EXPECT_GT(first_.Processor(kReferenceSystem).InsertFromTree(tree.get()), 0);
    file_ = folder_.Path("geoid.txt");
    std::ofstream(file_) << FileText();
  }
  ~HeightsRoad() override {
    for (const TestDatabase* database : {&first_, &second_}) {
      ExpectSound(*database);
      EXPECT_THAT(database->ui.messages, IsEmpty());
    }
    datamoduleQvRfData = nullptr;
  }
  void WorkIn(TestDatabase& database) {
    datamoduleQvRfData = database.data.get();
    database.data->ShowImportExport = true;
    current_ = &database;
  }
  /// A host's question for a system, and what its user does in the list.
  template <typename Act>
  void SelectInto(TStringTree* tree, Act act) {
    const std::unique_ptr<TformQvRfSelector> selector(GetSelectorFor(nullptr, 1));
    ScreenUser user(In<TformQvRfSelector>(act));
    EXPECT_TRUE(selector->Select(tree, 0, false, nullptr, 0));
  }
  /// Gives the system the table, exports it and takes it.
  void MakeAndExport(TStringTree* tree, const std::string& exported) {
    SelectInto(tree, [&](QWidget& list) {
      Search(list, kMade);
      EXPECT_THAT(HeightFiles(), IsEmpty()) << "an offset has none";
      Open<TformQvRfEdit>(list, "bitbtnEdit", [this](QWidget& system) {
        Open<TformQvRfVerticalRefSystemEdit>(system, "Button1",
                                             [this](QWidget& form) { MakeTable(form, file_); });
        Save(system);
      });
      EXPECT_EQ(MarkedName(list), kMade);
      NameFile(list, "bitbtnExport", exported);
      Ok(list);
    });
  }
  [[nodiscard]] std::vector<std::string> HeightFiles() const {
    return ListStorageFiles(current_->data->GetHeightsPrefix(), GetParam());
  }

  TestDatabase first_;
  TestDatabase second_;
  TestDatabase* current_ = nullptr;
  TemporaryFolder folder_;
  std::string file_;
};

INSTANTIATE_TEST_SUITE_P(Forms, HeightsRoad, Bool(), FormName());

constexpr TShellPoint kPlaces[] = {{54.3, 36.4, 0}, {54.5, 37, 100.125}, {54.71, 37.63, -12.5}};

/// The undulations of the made system are those of the file, carried from datum to datum.
void ExpectUndulationsOfTheFile(const TShellReferenceSystem& made,
                                const TShellReferenceSystem& plain) {
  const auto filePlane = Compute(MakeTree(SystemTree, 4).get());
  const auto wgs84 = Compute(MakeTree(Wgs84SystemTree, "WGS 84 geodetic").get());
  for (const TShellPoint& place : kPlaces) {
    SCOPED_TRACE(place.First);
    TShellPoint geoid = Moved(plain, *filePlane, {place.First, place.Second, 0});
    geoid.Third = FileUndulation(geoid.First, geoid.Second);
    const double expected = Moved(*filePlane, plain, geoid).Third;
    EXPECT_GT(std::abs(expected - geoid.Third), 5) << "the datums differ";
    const double undulation = Moved(made, plain, place).Third - place.Third;
    // A table has whole millimetres at its nodes, and is straight between them.
    EXPECT_NEAR(undulation, expected, 2e-3);
    const TShellPoint over = Moved(made, *wgs84, place);
    const TShellPoint without = Moved(plain, *wgs84, place);
    EXPECT_NEAR(over.Third - without.Third, undulation, 1e-6);
  }
}

TEST_P(HeightsRoad, MadeExportedAndImportedItComputesTheSame) {
  const std::string exported = folder_.Path("harbour.x-ref-system");
  TStringTree made;
  MakeAndExport(&made, exported);
  EXPECT_THAT(HeightFiles(), ElementsAre("Harbour heights"));
  EXPECT_EQ(first_.data->datasetVerticalRefSystem.RecordCount(), 1) << "the offset is gone";

  WorkIn(second_);
  ASSERT_EQ(second_.data->datasetDatum.RecordCount(), 0);
  TStringTree imported;
  SelectInto(&imported, [&](QWidget& list) {
    NameFile(list, "bitbtnImport", exported);
    EXPECT_EQ(ListedNames(list), kMade);
    Open<TformQvRfEdit>(list, "bitbtnEdit", LookAtTable);
    Ok(list);
  });
  EXPECT_THAT(HeightFiles(), SizeIs(1));
  EXPECT_TRUE(SameTree(&imported, &made));

  const auto here = Compute(&made);
  const auto there = Compute(&imported);
  EXPECT_TRUE(here->HasHeightSystem());
  const auto wgs84 = Compute(MakeTree(Wgs84SystemTree, "WGS 84 geodetic").get());
  for (const TShellPoint& place : kPlaces) {
    const TShellPoint one = Moved(*here, *wgs84, place);
    const TShellPoint other = Moved(*there, *wgs84, place);
    EXPECT_NEAR(one.First, other.First, 1e-12);
    EXPECT_NEAR(one.Second, other.Second, 1e-12);
    EXPECT_NEAR(one.Third, other.Third, 1e-9);
  }
  RemoveSubtree(&imported, 1500, 0);
  ExpectUndulationsOfTheFile(*there, *Compute(&imported));
}

}  // namespace
}  // namespace refframe_tests
