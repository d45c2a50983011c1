#include "registry/model_tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/projjson.h"
#include "registry/epsg_models.h"

namespace QvRefSystem {
namespace {

using QvCommonUtils::FindField;
using QvCommonUtils::FindSubtree;
using QvCommonUtils::TStringTree;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

SystemModel Epsg(int code) {
  SystemModel model;
  std::string error;
  EXPECT_TRUE(ModelFromEpsg(code, &model, &error)) << error;
  return model;
}

SystemModel Topocentric() {
  SystemModel model;
  model.kind = SystemKind::kTopocentric;
  model.name = "Dam axis";
  model.linearUnit = Epsg(4978).linearUnit;
  model.primary = std::make_shared<SystemModel>(Epsg(4326));
  for (std::string& origin : model.origin)
    origin = "12.5";
  model.azimuth = "30";
  return model;
}

SystemModel Local() {
  SystemModel model = Topocentric();
  model.kind = SystemKind::kLocal;
  model.primary.reset();
  model.ellipsoid = Epsg(4326).datum->ellipsoid;
  model.origin[2].clear();
  model.azimuth.clear();
  return model;
}

SystemModel WithGeoid(SystemModel model) {
  model.geoidCode = 5773;
  model.positiveLongitude = true;
  return model;
}

SystemModel WithoutDatum(SystemModel model) {
  model.ellipsoid = model.datum->ellipsoid;
  model.datum.reset();
  return model;
}

struct Sample {
  const char* name;
  SystemModel model;
};

// Systems that between them hold every kind of object that a tree can hold.
std::vector<Sample> Samples() {
  return {{"projected, seven parameters", Epsg(31467)},
          {"projected, three parameters, grads", Epsg(27572)},
          {"projected in feet", Epsg(2263)},
          {"geodetic", Epsg(4326)},
          {"geodetic with a geoid", WithGeoid(Epsg(4258))},
          {"geodetic without a datum", WithoutDatum(Epsg(4326))},
          {"geocentric", Epsg(4978)},
          {"topocentric", Topocentric()},
          {"local", Local()}};
}

std::string TextOf(const SystemModel& model) {
  TStringTree tree;
  ModelToTree(model, &tree);
  return WriteTreeText(&tree);
}

TEST(ModelTreeTest, ComesBackWholeFromTheTextOfItsTree) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    TStringTree tree;
    ReadTreeText(TextOf(sample.model), &tree);
    SystemModel read;
    std::string error;
    ASSERT_TRUE(ModelFromTree(&tree, &read, &error)) << error;
    EXPECT_EQ(TextOf(read), TextOf(sample.model));
  }
}

using Address = std::pair<int, int>;

// Takes one field after the other out of the tree and gathers those without which the model is
// still read as if nothing had happened; every other loss must be told by the field's id.
void GatherUnread(TStringTree* root, TStringTree* level, std::set<int>* unread) {
  for (std::size_t i = 0; i < level->Fields.size(); ++i) {
    const Address address{level->Fields[i]->Id, level->Fields[i]->Index};
    level->Fields[i]->Id = -1;
    SystemModel read;
    std::string error;
    if (ModelFromTree(root, &read, &error)) {
      unread->insert(address.first);
    } else {
      EXPECT_THAT(error, HasSubstr(std::to_string(address.first)));
    }
    level->Fields[i]->Id = address.first;
  }
  for (const auto& below : level->Subtrees) {
    GatherUnread(root, static_cast<TStringTree*>(below.get()), unread);
  }
}

TEST(ModelTreeTest, NamesTheFieldThatIsMissing) {
  // A unit's kind follows from its place; exchange codes, the azimuth and the longitude flag may be
  // absent; flags stand twice; the catalogue's words about a type are not the model's; a height
  // system is read by its code.
  const std::set<int> optional = {5312,   1111,   1122,   1400,   1401,   1502,   1503,   1504,
                                  2001,   2002,   2003,   2004,   2005,   5702,   5703,   5801,
                                  5802,   5803,   5830,   101001, 101002, 101003, 101004, 102001,
                                  102002, 102003, 102004, 102005, 102006, 102007, 102008, 102009};
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    TStringTree tree;
    ModelToTree(sample.model, &tree);
    // A projected system repeats its linear unit here, and it is not read.
    if (sample.model.kind == SystemKind::kProjected) RemoveSubtree(&tree, 1201, 0);
    std::set<int> unread;
    GatherUnread(&tree, &tree, &unread);
    for (const int id : optional)
      unread.erase(id);
    // A shape by the semi-minor axis needs no flattening, a local system no origin.
    for (const int id : {5112, 1120})
      unread.erase(id);
    EXPECT_THAT(unread, IsEmpty());
  }
}

TEST(ModelTreeTest, RefusesSwapsThatAreMissingWhereTheyCount) {
  TStringTree tree;
  ModelToTree(Local(), &tree);
  RemoveField(&tree, 1400, 0);
  SystemModel read;
  std::string error;
  EXPECT_FALSE(ModelFromTree(&tree, &read, &error));
  EXPECT_THAT(error, HasSubstr("1400"));
}

TEST(ModelTreeTest, LeavesTheModelAloneWhenTheTreeIsNoSystem) {
  SystemModel read;
  read.name = "untouched";
  std::string error;
  EXPECT_FALSE(ModelFromTree(nullptr, &read, &error));
  TStringTree tree;
  EXPECT_FALSE(ModelFromTree(&tree, &read, &error));
  ModelToTree(Epsg(4326), &tree);
  FindField(&tree, 1100, 0)->SetValueText("7", 0);
  EXPECT_FALSE(ModelFromTree(&tree, &read, &error));
  EXPECT_THAT(error, HasSubstr("not 7"));
  ModelToTree(Epsg(4326), &tree);
  TStringTree* unit = FindSubtree(&tree, 1106, 0);
  FindField(unit, 5311, 0)->SetValueText("0", 0);
  EXPECT_FALSE(ModelFromTree(&tree, &read, &error));
  EXPECT_THAT(error, HasSubstr("angular unit"));
  EXPECT_EQ(read.name, "untouched");
}

std::vector<int> Ids(const TStringTree& tree, bool subtrees) {
  std::vector<int> ids;
  if (subtrees) {
    for (const auto& below : tree.Subtrees)
      ids.push_back(below->Id);
  } else {
    for (const auto& field : tree.Fields)
      ids.push_back(field->Id);
  }
  return ids;
}

TEST(ModelTreeTest, StandsInTheOrderOfARecord) {
  TStringTree tree;
  ModelToTree(Epsg(31467), &tree);
  EXPECT_THAT(Ids(tree, false),
              ElementsAre(1020, 1021, 1022, 1100, 1025, 1025, 1025, 101001, 102001, 102005));
  EXPECT_THAT(Ids(tree, true), ElementsAre(2000, 1101, 1201, 1104, 1300, 1121, 1107));
  const TStringTree* shift = FindSubtree(FindSubtree(&tree, 1107, 0), 1102, 0);
  EXPECT_THAT(Ids(*shift, true), ElementsAre(5443, 5440, 5441, 5442));
  TStringTree simple;
  ModelToTree(Epsg(27572), &simple);
  EXPECT_THAT(Ids(*FindSubtree(FindSubtree(&simple, 1107, 0), 1102, 0), true),
              ElementsAre(5440, 5443));
}

TEST(ModelTreeTest, GeneratesAPrimarySystemThatReadsBackAsNone) {
  SystemModel model = Epsg(31467);
  model.primary.reset();
  TStringTree tree;
  ModelToTree(model, &tree);
  const TStringTree* primary = FindSubtree(&tree, 1121, 0);
  ASSERT_TRUE(primary);
  EXPECT_EQ(primary->Label, "primary reference system");
  std::string text;
  EXPECT_TRUE(primary->GetString(1020, 0, &text));
  EXPECT_EQ(text, "Primary ref. system");
  int code = 0;
  EXPECT_TRUE(primary->GetInteger(102005, 0, &code));
  EXPECT_EQ(code, 31467);
  SystemModel read;
  std::string error;
  ASSERT_TRUE(ModelFromTree(&tree, &read, &error)) << error;
  EXPECT_FALSE(read.primary);
  EXPECT_TRUE(ModelToProjJson(read, Dimension::kTwo, &text, &error)) << error;
}

}  // namespace
}  // namespace QvRefSystem
