// The delivered database, record by record: what leaves it is what PROJ knows, and comes back to
// the record that it left.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <locale>
#include <map>
#include <set>
#include <sstream>

#include "apps/cli/command_line.h"
#include "assembly/processor_set.h"
#include "platform/geocore/projjson.h"
#include "registry/equivalence.h"
#include "tests/road/delivered_copies.h"

namespace refframe_tests {
namespace {

/// A copy that is open in the folder form (false) or as a container (true).
class DeliveredDatabase : public DeliveredCopies, public testing::WithParamInterface<bool> {
 protected:
  DeliveredDatabase() { data_ = OpenCopy(GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(Forms, DeliveredDatabase, testing::Bool(), FormName{});

TEST_F(DeliveredCopies, AreTheSameInBothForms) {
  data_ = OpenCopy(false);
  const auto container = OpenCopy(true);
  for (const ObjectDescriptor& type : QvRefSystem::ObjectDescriptors()) {
    EXPECT_EQ(container->DataSet(type.table).RecordCount(),
              data_->DataSet(type.table).RecordCount());
    ForEveryRecord(type, [&](TQvRfDataProcessor& processor) {
      TQvRfDataProcessor& other =
          *QvRefSystem::ProcessorFor(*container, static_cast<int>(type.type));
      TStringTree tree;
      TStringTree otherTree;
      ASSERT_TRUE(processor.WriteToTree(&tree, 0, 0)) << NameOf(processor);
      ASSERT_TRUE(other.LocateKey(processor.GetCurrentKey())) << NameOf(processor);
      ASSERT_TRUE(other.WriteToTree(&otherTree, 0, 0)) << NameOf(processor);
      EXPECT_TRUE(SameTree(&tree, &otherTree)) << NameOf(processor);
    });
  }
}

// Of one form alone, since the two are the same and PROJ takes its time.
TEST_F(DeliveredCopies, HoldEverySystemAsProjKnowsIt) {
  data_ = OpenCopy(false);
  // A geodetic system that the registry knows with and without heights is one record with two
  // codes, so the rows of codes are walked, not the systems.
  const std::map<int, std::vector<int>> codesOfSystem = SystemCodes();
  std::map<std::string, int> found;
  ForEveryRecord(DescriptorOf(TObjectType::kReferenceSystem), [&](TQvRfDataProcessor& processor) {
    TStringTree tree;
    std::string kind;
    std::string why;
    ASSERT_TRUE(processor.WriteToTree(&tree, 0, 0)) << NameOf(processor);
    ASSERT_TRUE(tree.GetString(1100, 0, &kind)) << NameOf(processor);
    const auto codes = codesOfSystem.find(processor.GetCurrentKey());
    ASSERT_NE(codes, codesOfSystem.end()) << NameOf(processor) << " has no code";
    std::string flat;
    std::string spatial;
    ASSERT_TRUE(TreeToProjJson(&tree, QvRefSystem::Dimension::kTwo, &flat, &why)) << why;
    ASSERT_TRUE(TreeToProjJson(&tree, QvRefSystem::Dimension::kThree, &spatial, &why)) << why;
    for (const int code : codes->second) {
      const bool isFlat = QvRefSystem::EquivalentToEpsg(flat, code, &why);
      EXPECT_TRUE(isFlat || QvRefSystem::EquivalentToEpsg(spatial, code, &why))
          << NameOf(processor) << ", EPSG " << code << ": " << why;
      ++found[kind + (isFlat ? "" : " with heights")];
    }
  });
  // The live systems of the registry that PROJ 9.1 comes with; a later one has more.
  EXPECT_GE(found["5"], 5135);
  EXPECT_GE(found["4"], 545);
  EXPECT_GE(found["4 with heights"], 204);
  EXPECT_GE(found["3"], 194);
}

TEST_P(DeliveredDatabase, ReadsBackEveryTreeAndFindsItsObjectAgain) {
  const auto before = Counts();
  for (const ObjectDescriptor& type : QvRefSystem::ObjectDescriptors()) {
    ForEveryRecord(type, [](TQvRfDataProcessor& processor) {
      const int key = processor.GetCurrentKey();
      const std::string name = NameOf(processor);
      TStringTree tree;
      ASSERT_TRUE(processor.WriteToTree(&tree, 0, 0)) << name;
      TStringTree fromXml;
      ReadTreeXml(QvCommonUtils::WriteTreeXml(&tree), &fromXml);
      EXPECT_TRUE(SameTree(&tree, &fromXml)) << name;
      TStringTree fromText;
      ReadTreeText(WriteTreeText(&tree), &fromText);
      EXPECT_TRUE(SameTree(&tree, &fromText)) << name;
      EXPECT_EQ(processor.InsertFromTree(&fromText), key) << name;
    });
  }
  EXPECT_EQ(Counts(), before);
  EXPECT_THAT(ui_.messages, testing::IsEmpty());
}

struct Grouping : std::numpunct<char> {
  char do_thousands_sep() const override { return '.'; }
  char do_decimal_point() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
};

std::string Say(std::vector<const char*> arguments) {
  const std::string database = DeliveredPath(true);
  arguments.insert(arguments.begin(), "refframe");
  arguments.insert(arguments.begin() + 2, database.c_str());
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  const int status =
      RefframeCli::Run(static_cast<int>(arguments.size()), arguments.data(), {in, out, err, false});
  EXPECT_EQ(status, 0) << err.str();
  return out.str();
}

// A stream groups the digits of a number under many a user's locale, and a key of "1.234" is none.
TEST(DeliveredLines, KeepTheFormOfNumbersUnderAnyLocale) {
  const std::string plain = Say({"list", "reference-system"});
  const std::locale previous = std::locale::global(std::locale(std::locale(), new Grouping));
  const std::string grouped = Say({"list", "reference-system"});
  std::locale::global(previous);
  EXPECT_GE(std::ranges::count(plain, '\n'), 5874);
  EXPECT_EQ(plain, grouped);
}

// WGS 84 is one record with two codes, and whoever asks for the one with heights has to get them.
TEST(DeliveredLines, WriteASystemWithAsManyAxesAsItsCodeMeans) {
  const struct {
    std::vector<const char*> options;
    bool hasHeights;
  } rows[] = {{{"epsg:4326"}, false},
              {{"epsg:4979"}, true},
              {{"epsg:4979", "--dimension", "2"}, false},
              {{"epsg:4326", "--dimension", "3"}, true}};
  for (const auto& row : rows) {
    std::vector<const char*> arguments{"export", "reference-system", "--form", "wkt2"};
    arguments.insert(arguments.end(), row.options.begin(), row.options.end());
    const std::string wkt = Say(arguments);
    EXPECT_THAT(wkt, testing::HasSubstr("World Geodetic System 1984"));
    EXPECT_EQ(wkt.find("ellipsoidal height") != std::string::npos, row.hasHeights) << wkt;
  }
}

}  // namespace
}  // namespace refframe_tests
