// A system of an older program meets the delivered database.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>

#include "assembly/processor_set.h"
#include "processors/ref_system_processor.h"
#include "registry/legacy_bridge.h"
#include "tests/support/legacy_samples.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvRefSystem::TableId;

TEST(LegacySystems, BringOnlyWhatTheDeliveredDatabaseDoesNotHave) {
  const char* delivered = std::getenv("REFFRAME_DELIVERED");
  ASSERT_NE(delivered, nullptr) << "REFFRAME_DELIVERED does not name the delivered database";
  const TemporaryFolder folder;
  const std::string path = folder.Path("copy.qvdb");
  std::filesystem::copy(std::string(delivered) + ".qvdb", path);
  ScriptedUi ui;
  const auto data = QvRefSystem::MakeDataModule(ui);
  data->DatabasePath = path;
  ASSERT_TRUE(data->OpenDatabase(path, QvRefSystem::kFullMode, true)) << data->LastError();
  const auto counts = [&data] {
    std::map<TableId, int> all;
    for (const auto& object : QvRefSystem::ObjectDescriptors())
      all[object.table] = data->DataSet(object.table).RecordCount();
    return all;
  };

  auto info = MakeProjectionInfo1(GaussKrueger(), kGaussKruegerFlags);
  info.Zone = LegacyZone(info, 5800000, 4500000);
  QvCommonUtils::TStringTree tree;
  ASSERT_TRUE(QvRefSystem::FillReferenceSystemTree(&info, &tree, 5800000, 4500000, 0));
  std::map<TableId, int> expected = counts();
  // The system and its projection bear names of their own; all else is the registry's.
  ++expected[TableId::kRefSystem];
  ++expected[TableId::kMapProj];
  const int key = data->RefSystemProcessor->InsertFromTree(&tree);
  EXPECT_GT(key, 0);
  EXPECT_EQ(counts(), expected);
  EXPECT_EQ(data->RefSystemProcessor->InsertFromTree(&tree), key) << "found the second time";
  EXPECT_EQ(counts(), expected);
  EXPECT_TRUE(ui.messages.empty());
}

}  // namespace
}  // namespace refframe_tests
