// The frames that all object types share, driven over every type by its sample tree.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <ostream>
#include <set>

#include "platform/text/text.h"
#include "processors/name_filter.h"
#include "processors/system_bodies.h"
#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvCommonUtils::TStringTree;
using QvRefSystem::CodeRows;
using QvRefSystem::DescriptorOf;
using QvRefSystem::TObjectType;
using QvRefSystem::TQvRfDataProcessor;
using QvRefSystem::TreeItem;
using QvRefSystem::ValueForm;
using enum QvRefSystem::TObjectType;

struct Sample {
  const char* name;
  TObjectType type;
  std::function<void(TreeBuilder)> write;
};

void PrintTo(const Sample& sample, std::ostream* out) {
  *out << sample.name;
}

const Sample kSamples[] = {
    {"LinearUnit", kLinearUnit, MetreTree},
    {"AngularUnit", kAngularUnit, DegreeTree},
    {"ScaleUnit", kScaleUnit, UnityTree},
    {"Ellipsoid", kEllipsoid, EllipsoidTree},
    {"PrimeMeridian", kPrimeMeridian, PrimeMeridianTree},
    {"Translation", kDatumShift, TranslationTree},
    {"PositionVector", kDatumShift, PositionVectorTree},
    {"Datum", kDatum, DatumTree},
    {"Projection", kMapProjection, ProjectionTree},
    {"SiteGrid", kReferenceSystem, [](TreeBuilder tree) { SystemTree(tree, 1); }},
    {"Local", kReferenceSystem, [](TreeBuilder tree) { SystemTree(tree, 2); }},
    {"Geocentric", kReferenceSystem, [](TreeBuilder tree) { SystemTree(tree, 3); }},
    {"Geodetic", kReferenceSystem, [](TreeBuilder tree) { SystemTree(tree, 4); }},
    {"Projected", kReferenceSystem, [](TreeBuilder tree) { SystemTree(tree, 5); }},
    {"Topocentric", kReferenceSystem, [](TreeBuilder tree) { SystemTree(tree, 6); }},
};

// The members of the sample's type and, of a system, of its kind.
std::vector<TreeItem> MembersOf(const Sample& sample) {
  const auto head = DescriptorOf(sample.type).items;
  std::vector<TreeItem> members(head.begin(), head.end());
  if (int kind = 0; MakeTree(sample.write)->GetInteger(1100, 0, &kind)) {
    const auto body = BodyOf(QvRefSystem::SystemKind(kind));
    members.insert(members.end(), body.begin(), body.end());
  }
  return members;
}

class EveryObject : public testing::TestWithParam<Sample> {
 protected:
  TreePtr Tree() const { return MakeTree(GetParam().write); }
  TQvRfDataProcessor& Processor() const { return database_.Processor(GetParam().type); }
  TestDatabase database_;
};

std::string Note(const TStringTree* tree, int id) {
  std::string value;
  (void)tree->GetString(id, -1, &value);
  return value;
}

TEST_P(EveryObject, IsAddedOnceAndFoundEverAfter) {
  const TreePtr tree = Tree();
  const int key = Processor().InsertFromTree(tree.get());
  ASSERT_GT(key, 0);
  EXPECT_EQ(Processor().GetCurrentKey(), key);
  EXPECT_EQ(Note(tree.get(), 201001), std::to_string(key));
  EXPECT_EQ(Note(tree.get(), 201002), std::to_string(static_cast<int>(GetParam().type)));
  EXPECT_EQ(Note(tree.get(), 201003), "1");
  EXPECT_EQ(FindField(tree.get(), 201001, -1)->Label, "Inserted ID");

  const std::vector<int> counts = database_.Counts();
  EXPECT_EQ(Processor().InsertFromTree(tree.get()), key);
  EXPECT_EQ(Note(tree.get(), 201003), "0");
  EXPECT_EQ(FindField(tree.get(), 201001, -1)->Label, "Found ID");
  EXPECT_EQ(database_.Counts(), counts);
}

TEST_P(EveryObject, IsFoundAgainByWhatItWrites) {
  const int key = Processor().InsertFromTree(Tree().get());
  const std::vector<int> counts = database_.Counts();
  const TreePtr written = WrittenTree(Processor());
  EXPECT_EQ(Processor().GetCurrentKey(), key);
  TStringTree read;
  ReadTreeText(WriteTreeText(written.get()), &read);
  ASSERT_TRUE(SameTree(written.get(), &read));
  EXPECT_EQ(Processor().InsertFromTree(&read), key);
  EXPECT_EQ(database_.Counts(), counts);

  // Every member of the sample comes back with its value.
  const std::function<void(const TStringTree*, const TStringTree*)> compare =
      [&](const TStringTree* given, const TStringTree* back) {
        for (const auto& field : given->Fields) {
          std::string value;
          ASSERT_TRUE(back->GetString(field->Id, field->Index, &value)) << field->Id;
          EXPECT_EQ(value, field->GetValueText(0)) << field->Id;
        }
        for (const auto& subtree : given->Subtrees) {
          const TStringTree* other = FindSubtree(back, subtree->Id, subtree->Index);
          ASSERT_NE(other, nullptr) << subtree->Id;
          const bool isType = subtree->Id == 5443;  // the table's own name of the type is written
          if (!isType) compare(static_cast<const TStringTree*>(subtree.get()), other);
        }
      };
  compare(Tree().get(), written.get());
}

TEST_P(EveryObject, WithoutARequiredMemberAddsNothingToItsTable) {
  int removed = 0;
  for (const TreeItem& item : MembersOf(GetParam())) {
    if (item.reading != QvRefSystem::Reading::kRequired || item.optional) continue;
    const TreePtr tree = Tree();
    TStringTree* level = tree.get();
    ASSERT_TRUE(item.within == 0 || EnterSubtree(&level, item.within, 0));
    const bool isField = item.kind == TreeItem::Kind::kField;
    if (isField && FindField(level, item.id, item.index) != nullptr) {
      RemoveField(level, item.id, item.index);
    } else if (item.kind == TreeItem::Kind::kSubobject && FindSubtree(level, item.id, 0)) {
      RemoveSubtree(level, item.id, 0);
    } else {
      continue;
    }
    ++removed;
    const int before = Processor().DataSet->RecordCount();
    EXPECT_EQ(Processor().InsertFromTree(tree.get()), 0) << item.id;
    // The primary of a system is stored ahead of what is missing behind it.
    const bool primary = FindSubtree(tree.get(), 1121, 0) != nullptr;
    EXPECT_LE(Processor().DataSet->RecordCount(), before + (primary ? 1 : 0)) << item.id;
  }
  EXPECT_GE(removed, 3);
  EXPECT_TRUE(database_.ui.messages.empty());
}

TEST_P(EveryObject, IsRemovedWhenTheUserSaysYes) {
  Processor().InsertFromTree(Tree().get());
  while (Processor().DataSet->RecordCount() > 1)
    Processor().DataSet->Delete();
  database_.ui.answers = {QvPlatform::MessageAnswer::kNo};
  EXPECT_TRUE(Processor().DeleteRecord(nullptr));
  EXPECT_EQ(Processor().DataSet->RecordCount(), 1);
  std::string name;
  Processor().GetNames(nullptr, &name);
  EXPECT_TRUE(Processor().DeleteRecord(nullptr));
  EXPECT_EQ(Processor().DataSet->RecordCount(), 0);
  EXPECT_EQ(database_.ui.messages.back(), "Do you really want to delete \"" + name + "\"(" +
                                              std::string(DescriptorOf(GetParam().type).typeName) +
                                              ")?");
}

TEST_P(EveryObject, UnderEditingIsNotRemoved) {
  Processor().InsertFromTree(Tree().get());
  const int count = Processor().DataSet->RecordCount();
  Processor().PushEditKey();
  Processor().PushEditKey();
  Processor().PopEditKey();
  EXPECT_FALSE(Processor().DeleteRecord(nullptr));
  EXPECT_EQ(Processor().DataSet->RecordCount(), count);
  EXPECT_EQ(database_.ui.messages, std::vector<std::string>{"The object is under editing now!"});
  Processor().PopEditKey();
  EXPECT_TRUE(Processor().CheckNotEditing());
}

TEST_P(EveryObject, IsWrittenWithANumberWhereAnIntegerIsUnset) {
  const int key = Processor().InsertFromTree(Tree().get());
  QvPlatform::TQvDataSet& table = *Processor().DataSet;
  std::vector<TreeItem> cleared;
  table.Edit();
  for (const TreeItem& item : Processor().Descriptor().items) {
    if (item.kind != TreeItem::Kind::kField || item.form != ValueForm::kInteger) continue;
    QvPlatform::TField& field = table.FieldByName(item.column);
    if (field.Definition().need != QvPlatform::FieldNeed::kOptional) continue;
    field.Clear();
    cleared.push_back(item);
  }
  if (GetParam().type == kReferenceSystem) table.FieldByName("SWAP_COORDS").Clear();
  table.Post();
  const TreePtr written = WrittenTree(Processor());
  for (const TreeItem& item : cleared) {
    int number = -1;
    EXPECT_TRUE(written->GetInteger(item.id, item.index, &number)) << item.id;
    EXPECT_EQ(number, 0) << item.id;
  }
  EXPECT_EQ(Processor().InsertFromTree(written.get()), key);
}

TEST_P(EveryObject, WritesTheFirstOfItsCodesAndBlankOnesByTheirRule) {
  const int key = Processor().InsertFromTree(Tree().get());
  const int content = Processor().ObjectType;
  CodeRows codes(database_.data->datasetParamValue);
  for (const TreeItem& item : MembersOf(GetParam())) {
    if (item.kind != TreeItem::Kind::kCode) continue;
    codes.Delete({codes.Match(CodeRows::kOwnerContent, content),
                  codes.Match(CodeRows::kOwnerId, key), codes.Match(item.tag)},
                 true);
    TreePtr written = WrittenTree(Processor());
    EXPECT_EQ(FindField(written.get(), item.id, 0), nullptr) << item.id;
    for (const char* value : {" ", "7"})
      codes.Append({.ownerContent = content, .ownerId = key, .tag = item.tag}, value);
    written = WrittenTree(Processor());
    const bool writesBlanks = item.id == 101002 || item.id == 101003;
    std::string value = "none";
    EXPECT_EQ(written->GetString(item.id, 0, &value), writesBlanks) << item.id;
    EXPECT_EQ(value, writesBlanks ? " " : "none") << item.id;
  }
}

INSTANTIATE_TEST_SUITE_P(, EveryObject, testing::ValuesIn(kSamples),
                         [](const auto& test) { return std::string(test.param.name); });

// One change of a tree, and whether the object is still the same.
struct Change {
  const char* name;
  TObjectType type;
  void (*write)(TreeBuilder);
  std::vector<int> path;
  int id;
  const char* value;
  bool same;
};

void Projected(TreeBuilder tree) {
  SystemTree(tree, 5);
}
void Geodetic(TreeBuilder tree) {
  SystemTree(tree, 4);
}
void FlatteningEllipsoid(TreeBuilder tree) {
  tree.Field(5114, "1").Field(5112, "0.0033900753039287634");
  EllipsoidTree(tree);
}
void Sphere(TreeBuilder tree) {
  tree.Field(5115, "1");
  EllipsoidTree(tree);
}

const Change kChanges[] = {
    {"EllipsoidMinorAxisText", kEllipsoid, EllipsoidTree, {}, 5111, "6356583.80", false},
    {"EllipsoidFlatteningUnused", kEllipsoid, EllipsoidTree, {}, 5112, "0.1", true},
    {"EllipsoidFlattening", kEllipsoid, FlatteningEllipsoid, {}, 5112, "0.0034", false},
    {"EllipsoidMinorAxisUnused", kEllipsoid, FlatteningEllipsoid, {}, 5111, "1", true},
    {"SphereOfOtherShape", kEllipsoid, Sphere, {}, 5111, "1", true},
    {"RecordsFlagNotReadForMinorAxis", kEllipsoid, FlatteningEllipsoid, {}, 5114, "0", true},
    {"TreeAsksForFlattening", kEllipsoid, EllipsoidTree, {}, 5114, "1", false},
    {"TranslationWithRotation", kDatumShift, TranslationTree, {}, 5464, "1", true},
    {"ProjectionParameterWithBlanks", kMapProjection, ProjectionTree, {}, 8805, " 0.9996 ", true},
    {"ProjectionParameterWithAZero", kMapProjection, ProjectionTree, {}, 8805, "0.99960", false},
    {"ProjectionWithAParameterOfNoUse", kMapProjection, ProjectionTree, {}, 8899, "1", true},
    {"ProjectionRepeatedSign", kMapProjection, ProjectionTree, {}, 1401, "-1", true},
    {"SystemGeoTiffCode", kReferenceSystem, Projected, {}, 102005, "1", true},
    {"SystemWithPrimaryOfNoCode", kReferenceSystem, Projected, {1121}, 102005, "0", false},
    {"PositiveLongitude", kReferenceSystem, Geodetic, {}, 1111, "1", false},
    {"PositiveLongitudeOfZero", kReferenceSystem, Geodetic, {}, 1111, "0", true},
};

TEST(Equality, FollowsTheRulesOfTheObject) {
  for (const Change& change : kChanges) {
    SCOPED_TRACE(change.name);
    TestDatabase database;
    TQvRfDataProcessor& processor = database.Processor(change.type);
    const int key = processor.InsertFromTree(MakeTree(change.write).get());
    ASSERT_GT(key, 0);
    const TreePtr changed = MakeTree(change.write);
    TStringTree* cursor = changed.get();
    for (const int id : change.path)
      ASSERT_TRUE(EnterSubtree(&cursor, id, 0));
    ReplaceField(cursor, change.id, change.value);
    const int other = processor.InsertFromTree(changed.get());
    ASSERT_GT(other, 0);
    EXPECT_EQ(other == key, change.same);
    // The record that was there first is as it was.
    EXPECT_EQ(processor.InsertFromTree(MakeTree(change.write).get()), key);
  }
}

// The columns in which two objects of a type have to agree to be the same, but for those that tell
// the shape of an ellipsoid. All others may differ.
const std::map<TObjectType, std::set<std::string_view>> kTelling = {
    {kLinearUnit, {"NAME", "CODE", "FACTOR_B", "FACTOR_C"}},
    {kAngularUnit, {"NAME", "CODE", "FACTOR_B", "FACTOR_C"}},
    {kScaleUnit, {"NAME", "CODE", "FACTOR_B", "FACTOR_C"}},
    {kEllipsoid, {"NAME", "UNIT_AUTOKEY", "A"}},
    {kPrimeMeridian, {"NAME", "UNIT_AUTOKEY", "LONGITUDE"}},
    {kDatumShift,
     {"NAME", "TYPE", "LINEAR_UNIT_AUTOKEY", "ANGULAR_UNIT_AUTOKEY", "SCALE_UNIT_AUTOKEY", "TX",
      "TY", "TZ", "RX", "RY", "RZ", "S"}},
    {kDatum, {"NAME", "ELLIPSOID_AUTOKEY", "DATUM_SHIFT_AUTOKEY"}},
    {kMapProjection,
     {"NAME", "TYPE", "LINEAR_UNIT_AUTOKEY", "ANGULAR_UNIT_AUTOKEY", "SCALE_UNIT_AUTOKEY",
      "COORD1_SIGN", "COORD2_SIGN", "SWAP_COORDS"}},
    {kReferenceSystem,
     {"NAME", "LINEAR_UNIT_AUTOKEY", "ANGULAR_UNIT_AUTOKEY", "PRIMARY_REFSYSTEM_AUTOKEY",
      "MAP_PROJ_AUTOKEY", "DATUM_AUTOKEY", "PRIME_MERIDIAN_AUTOKEY", "ELLIPSOID_AUTOKEY",
      "SWAP_COORDS", "ORIGIN_COORD1", "ORIGIN_COORD2", "ORIGIN_COORD3", "AZIMUTH"}}};

bool IsTrimmed(std::string_view column) {
  return column.starts_with("ORIGIN_") || column == "AZIMUTH";
}

// The members that give columns of the sample's record their values.
std::vector<TreeItem> ComparedMembers(const Sample& sample) {
  static const std::set<std::string_view> kShape{"B", "F", "USE_F", "SPHEROID"};
  std::vector<TreeItem> members = MembersOf(sample);
  std::erase_if(members, [&](const TreeItem& item) {
    const bool isKind = sample.type == kReferenceSystem && item.column == "TYPE";
    const bool datumOrEllipsoid = item.object == kDatum && item.column == "ELLIPSOID_AUTOKEY";
    return item.column.empty() || item.reading == QvRefSystem::Reading::kWriteOnly || isKind ||
           datumOrEllipsoid || (sample.type == kEllipsoid && kShape.contains(item.column));
  });
  return members;
}

// The least change that tells two values apart.
std::string OtherValue(const TreeItem& item, const std::string& text) {
  if (item.form == ValueForm::kInteger) return std::to_string(std::stoi(text) + 1);
  if (item.form == ValueForm::kDouble) {
    return QvCommonUtils::ValueToString(std::nextafter(std::stod(text), HUGE_VAL));
  }
  return text + (text.find('.') == std::string::npos ? ".0" : "0");
}

// Gives a member another value, or another object of its type. False if the sample lacks it.
bool ChangeMember(TStringTree* tree, TreeItem item) {
  if (item.within != 0 && !EnterSubtree(&tree, item.within, 0)) return false;
  if (item.object != kNone) {
    if (!EnterSubtree(&tree, item.id, 0)) return false;
    const auto column = item.object == kDatumShiftType ? "TYPE" : "NAME";
    item = *std::ranges::find(DescriptorOf(item.object).items, column, &TreeItem::column);
  }
  std::string text;
  if (!tree->GetString(item.id, item.index, &text)) return false;
  ReplaceField(tree, item.id, OtherValue(item, text), item.index);
  return true;
}

TEST(Processors, TellRecordsApartByTheColumnsOfTheirEqualityAlone) {
  auto left = kTelling;
  for (const Sample& sample : kSamples) {
    for (const TreeItem& item : ComparedMembers(sample)) {
      TestDatabase database;
      TQvRfDataProcessor& processor = database.Processor(sample.type);
      const int key = processor.InsertFromTree(MakeTree(sample.write).get());
      const TreePtr changed = MakeTree(sample.write);
      if (!ChangeMember(changed.get(), item)) continue;
      const int other = processor.InsertFromTree(changed.get());
      if (other == 0 && item.column == "TYPE") continue;  // a type with other members
      const bool tells = kTelling.at(sample.type).contains(item.column);
      EXPECT_EQ(other != key, tells) << sample.name << " " << item.column;
      left[sample.type].erase(item.column);
      if (item.column != "NAME" && !IsTrimmed(item.column)) continue;
      // Blanks around it do not count, nor does the case of a name.
      std::string text;
      ASSERT_TRUE(changed->GetString(item.id, item.index, &text));
      ReplaceField(changed.get(), item.id, "  " + QvPlatform::UpperCase(text) + " ", item.index);
      EXPECT_EQ(processor.InsertFromTree(changed.get()), other) << sample.name << item.column;
    }
  }
  for (const auto& [type, columns] : left)
    EXPECT_THAT(columns, testing::IsEmpty()) << DescriptorOf(type).typeName;
}

// A filter on the reference systems, as selectors set it; 0 takes it off.
void ShowSystemsOf(int type, TestDatabase& database) {
  auto& systems = database.data->datasetRefSystem;
  const int field = systems.FieldByName("TYPE").GetIndex();
  systems.Close();
  systems.DataBuff->Close();
  if (type == 0) {
    systems.DataBuff->ClearFilter(true);
  } else {
    systems.DataBuff->SetFilter(field, type, QvPlatform::TQvDbIntFilter::kEqual, true);
  }
  systems.Open();
}

TEST(Processors, RefuseToRemoveWhatIsReferredTo) {
  TestDatabase database;
  database.Processor(kReferenceSystem).InsertFromTree(MakeTree(SystemTree, 5).get());
  database.Processor(kDatumShift).InsertFromTree(MakeTree(PositionVectorTree).get());
  // Rows that a filter hides refer to an object all the same.
  ShowSystemsOf(1, database);
  ASSERT_EQ(database.data->datasetRefSystem.RecordCount(), 0);

  for (const auto& descriptor : QvRefSystem::ObjectDescriptors()) {
    if (descriptor.usedBy.empty() || descriptor.type == kReferenceSystem) continue;
    TQvRfDataProcessor& processor = database.Processor(descriptor.type);
    processor.DataSet->First();  // of the shifts the one that the datum has
    const int key = processor.GetCurrentKey();
    const int count = processor.DataSet->RecordCount();
    database.ui.usedBy.clear();
    EXPECT_FALSE(processor.DeleteRecord(nullptr)) << descriptor.typeName;
    EXPECT_FALSE(database.ui.usedBy.empty()) << descriptor.typeName;
    EXPECT_EQ(processor.DataSet->RecordCount(), count);
    EXPECT_EQ(processor.GetCurrentKey(), key);
    // The rows come in the order of the scans.
    std::size_t scan = 0;
    for (const auto& row : database.ui.usedBy) {
      while (scan < descriptor.usedBy.size() &&
             static_cast<int>(descriptor.usedBy[scan].object) != row.objectType) {
        ++scan;
      }
      EXPECT_LT(scan, descriptor.usedBy.size()) << row.typeName << " " << row.name;
    }
  }
}

TEST(Processors, ScanAgainAfterAUserWasViewed) {
  TestDatabase database;
  database.Processor(kDatum).InsertFromTree(MakeTree(DatumTree).get());
  TQvRfDataProcessor& shifts = database.Processor(kDatumShift);
  database.ui.onUsedBy = [&] {
    database.Processor(kDatum).DataSet->Delete();
    return QvPlatform::UsedByAnswer::kViewed;
  };
  EXPECT_TRUE(shifts.DeleteRecord(nullptr));
  EXPECT_EQ(database.ui.usedByShown, 1);
  EXPECT_TRUE(database.ui.viewAllowed);
  EXPECT_EQ(shifts.DataSet->RecordCount(), 0);
}

TEST(Processors, RemoveInSimpleModeWhatOneObjectAloneUsed) {
  for (const bool simple : {true, false}) {
    TestDatabase database;
    database.data->DialogMode = simple ? QvRefSystem::kSimpleMode : QvRefSystem::kFullMode;
    database.Processor(kReferenceSystem).InsertFromTree(MakeTree(SystemTree, 5).get());
    EXPECT_TRUE(database.Processor(kReferenceSystem).DeleteRecord(nullptr));
    EXPECT_EQ(database.data->datasetMapProj.RecordCount(), simple ? 0 : 1);
    database.Processor(kReferenceSystem).DeleteRecord(nullptr);
    EXPECT_TRUE(database.Processor(kDatum).DeleteRecord(nullptr));
    EXPECT_EQ(database.data->datasetDatumShift.RecordCount(), simple ? 0 : 1);
  }
}

TEST(Processors, RemoveAProjectionWithItsParametersAndNotItsCode) {
  TestDatabase database;
  const int before = database.data->datasetParamValue.RecordCount();
  TQvRfDataProcessor& projections = database.Processor(kMapProjection);
  projections.InsertFromTree(MakeTree(ProjectionTree).get());
  const int codes = 4;  // its own, and those of the three units
  EXPECT_EQ(database.data->datasetParamValue.RecordCount(), before + 5 + codes);
  EXPECT_TRUE(projections.DeleteRecord(nullptr));
  EXPECT_EQ(database.data->datasetParamValue.RecordCount(), before + codes);
}

TEST(Processors, WriteAProjectionWithoutAUnitThatItsTypeDoesNotNeed) {
  TestDatabase database;
  TQvRfDataProcessor& projections = database.Processor(kMapProjection);
  const TreePtr tree = MakeTree(ProjectionTree);
  RemoveSubtree(tree.get(), 6091, 0);
  const int key = projections.InsertFromTree(tree.get());
  const TreePtr written = WrittenTree(projections);
  EXPECT_EQ(FindSubtree(written.get(), 6091, 0), nullptr);
  EXPECT_EQ(projections.InsertFromTree(written.get()), key);
  EXPECT_NE(projections.InsertFromTree(MakeTree(ProjectionTree).get()), key);
}

// A list of systems can be confined to one kind while a file with another is imported from it.
TEST(Processors, GiveWhatAFilterHidesItsOwnKeyAndCodes) {
  TestDatabase database;
  TQvRfDataProcessor& systems = database.Processor(kReferenceSystem);
  ShowSystemsOf(4, database);
  const TreePtr tree = MakeTree(SystemTree, 5);
  const int key = systems.InsertFromTree(tree.get());
  EXPECT_EQ(Note(tree.get(), 201001), std::to_string(key));
  EXPECT_EQ(systems.DataSet->RecordCount(), 1);
  EXPECT_EQ(systems.InsertFromTree(tree.get()), key);
  ShowSystemsOf(0, database);
  EXPECT_EQ(systems.DataSet->RecordCount(), 2);
  ASSERT_TRUE(systems.LocateKey(key));
  const TreePtr written = WrittenTree(systems);
  int code = 0;
  EXPECT_TRUE(written->GetInteger(1100, 0, &code) && code == 5);
  EXPECT_TRUE(written->GetInteger(102005, 0, &code) && code == 26705);
}

TEST(Processors, NeverRemoveOrAddTypes) {
  TestDatabase database;
  for (const TObjectType type : {kDatumShiftType, kMapProjectionType, kReferenceSystemType}) {
    TQvRfDataProcessor& types = database.Processor(type);
    types.DataSet->First();
    const int count = types.DataSet->RecordCount();
    const TreePtr tree = WrittenTree(types);
    EXPECT_EQ(types.InsertFromTree(tree.get()), types.GetCurrentKey());
    EXPECT_FALSE(types.DeleteRecord(nullptr));
    ReplaceField(tree.get(), types.Descriptor().items.front().id, "77");
    EXPECT_EQ(types.InsertFromTree(tree.get()), 0);
    EXPECT_EQ(types.DataSet->RecordCount(), count);
  }
  EXPECT_TRUE(database.ui.messages.empty());
}

TEST(Processors, LocateByKeyAndByName) {
  TestDatabase database;
  TQvRfDataProcessor& units = database.Processor(kLinearUnit);
  EXPECT_EQ(units.GetCurrentKey(), 0);
  EXPECT_TRUE(units.FindNextByName(""));
  EXPECT_EQ(units.GetLastUsedKey(), 0);
  std::vector<int> keys;
  for (const char* name : {"alpha metre", "beta Metre", "gamma"}) {
    const TreePtr tree = MakeTree(MetreTree);
    ReplaceField(tree.get(), 5320, name);
    keys.push_back(units.InsertFromTree(tree.get()));
  }
  // Of equal times the first in table order wins, and no time at all is none.
  for (const double moment : {5.0, 0.0}) {
    for (const int key : keys) {
      ASSERT_TRUE(units.LocateKey(key));
      units.DataSet->Edit();
      units.DataSet->FieldByName("LAST_USE").SetFloat(moment);
      units.DataSet->Post();
    }
    EXPECT_EQ(units.GetLastUsedKey(), moment > 0 ? keys[0] : 0);
  }
  ASSERT_TRUE(units.LocateKey(keys[0]));
  EXPECT_TRUE(units.FindNextByName("METRE"));
  EXPECT_EQ(units.GetCurrentKey(), keys[1]);
  EXPECT_FALSE(units.FindNextByName("metre"));
  EXPECT_EQ(units.GetCurrentKey(), keys[1]);
  EXPECT_TRUE(units.FindPriorByName("metre"));
  EXPECT_EQ(units.GetCurrentKey(), keys[0]);
  EXPECT_FALSE(units.LocateKey(0));
  EXPECT_FALSE(units.LocateKey(-5));
  EXPECT_EQ(units.GetCurrentKey(), keys[0]);
  EXPECT_EQ(units.GetNeighbourKey(keys[0]), keys[1]);
  EXPECT_EQ(units.GetCurrentKey(), keys[0]);
  EXPECT_FALSE(units.LocateKey(999));
  EXPECT_TRUE(units.DataSet->Eof());
  EXPECT_EQ(units.GetCurrentKey(), keys[2]);
  EXPECT_EQ(units.GetNeighbourKey(keys[2]), keys[1]);
}

TEST(NameFilter, FindsTheRowsThatASearchByNameWouldMeet) {
  TestDatabase database;
  TQvRfDataProcessor& units = database.Processor(kLinearUnit);
  const struct {
    const char* name;
    const char* description;
  } rows[] = {{"Foot (Ångström)", "EPSG:1"},
              {"chain of feet", "EPSG:9097"},
              {"foot", "of metre"},
              {"metre", "EPSG:9001"},
              {"metre metre", "EPSG:9001"}};
  for (const auto& row : rows) {
    const TreePtr tree = MakeTree(MetreTree);
    ReplaceField(tree.get(), 5320, row.name);
    ReplaceField(tree.get(), 5322, row.description);
    ASSERT_GT(units.InsertFromTree(tree.get()), 0);
  }
  QvRefSystem::NameFilter filter(*units.DataSet);
  // Table order: chain of feet, foot, Foot (Ångström), metre, metre metre.
  const struct {
    const char* text;
    std::vector<int> rows;
  } searches[] = {{"", {0, 1, 2, 3, 4}}, {"FOOT", {1, 2}}, {"ångstr", {2}},
                  {"metre", {3, 4}},     {"metre m", {4}}, {"feet", {0}},
                  {"9001", {3, 4}},      {"of m", {1}},    {"fathom", {}}};
  for (const auto& search : searches) {
    EXPECT_EQ(filter.Match(search.text), search.rows) << search.text;
  }
}

TEST(Processors, KnowEveryFieldThatMayReferToThem) {
  for (const auto& user : QvRefSystem::ObjectDescriptors()) {
    for (const auto& field : QvRefSystem::TableOf(user.table).fields) {
      for (const auto& object : QvRefSystem::ObjectDescriptors()) {
        // Types are never removed, and heights belong to one system.
        if (object.table != field.refersTo || object.usedBy.empty()) continue;
        EXPECT_TRUE(std::ranges::any_of(object.usedBy,
                                        [&](const auto& scan) {
                                          return scan.object == user.type &&
                                                 scan.column == field.name;
                                        }))
            << field.name << " of a " << user.typeName << " is not looked at";
      }
    }
  }
}

TEST(Processors, TellTheirInfoLines) {
  TestDatabase database;
  database.Processor(kReferenceSystem).InsertFromTree(MakeTree(SystemTree, 5).get());
  const struct {
    TObjectType type;
    QvRefSystem::TStrings lines;
  } rows[] = {
      {kLinearUnit, {"Name: metre", "Description: a unit"}},
      {kAngularUnit, {"Name: degree", "Description: a unit", "Abbreviation: deg"}},
      {kPrimeMeridian, {"Name: Greenwich", "Description: The zero meridian", "Longitude: 0 (deg)"}},
      {kReferenceSystem, {"Name: NAD27 / UTM 17N", "Description: A system", "Units: metre"}},
  };
  QvRefSystem::TStrings lines;
  for (const auto& row : rows) {
    EXPECT_TRUE(database.Processor(row.type).GetInfoLines(&lines));
    EXPECT_EQ(lines, row.lines);
  }
  TQvRfDataProcessor& systems = database.Processor(kReferenceSystem);
  systems.InsertFromTree(MakeTree(SystemTree, 4).get());
  EXPECT_TRUE(systems.GetInfoLines(&lines));
  EXPECT_EQ(lines[2], "Latitude & longitude units: degree");
  EXPECT_EQ(lines[3], "Height units: metre");
}

}  // namespace
}  // namespace refframe_tests
