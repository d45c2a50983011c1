// A system of an older program meets the delivered database.
#include <gtest/gtest.h>

#include "processors/ref_system_processor.h"
#include "registry/legacy_bridge.h"
#include "tests/road/delivered_copies.h"
#include "tests/support/legacy_samples.h"

namespace refframe_tests {
namespace {

class LegacySystems : public DeliveredCopies {
 protected:
  // Records by the label of their type.
  std::map<std::string, int> ObjectCounts() {
    std::map<std::string, int> all;
    for (const ObjectDescriptor& object : QvRefSystem::ObjectDescriptors())
      all[std::string(object.typeName)] = data_->DataSet(object.table).RecordCount();
    return all;
  }
};

TEST_F(LegacySystems, BringOnlyWhatTheDeliveredDatabaseDoesNotHave) {
  data_ = OpenCopy(true);
  auto info = MakeProjectionInfo1(GaussKrueger(), kGaussKruegerFlags);
  info.Zone = LegacyZone(info, 5800000, 4500000);
  QvCommonUtils::TStringTree tree;
  ASSERT_TRUE(QvRefSystem::FillReferenceSystemTree(&info, &tree, 5800000, 4500000, 0));
  std::map<std::string, int> expected = ObjectCounts();
  // The system and its projection bear names of their own; all else is the registry's.
  ++expected["reference system"];
  ++expected["map projection"];
  const int key = data_->RefSystemProcessor->InsertFromTree(&tree);
  EXPECT_GT(key, 0);
  EXPECT_EQ(ObjectCounts(), expected);
  EXPECT_EQ(data_->RefSystemProcessor->InsertFromTree(&tree), key) << "found the second time";
  EXPECT_EQ(ObjectCounts(), expected);
  EXPECT_TRUE(ui_.messages.empty());
}

}  // namespace
}  // namespace refframe_tests
