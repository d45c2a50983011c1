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
#include "platform/geocore/projjson.h"
#include "processors/processor_set.h"
#include "registry/equivalence.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

namespace fs = std::filesystem;
using QvCommonUtils::TStringTree;
using QvRefSystem::TableSpec;
using QvRefSystem::TObjectDescriptor;
using QvRefSystem::TObjectType;
using QvRefSystem::TQvRfDataProcessor;

// Field of a system's tree with its EPSG code.
constexpr int kSystemCode = 102005;

std::string DeliveredPath(bool container) {
  const char* folder = std::getenv("REFFRAME_DELIVERED");
  if (folder == nullptr) return "";
  return std::string(folder) + (container ? ".qvdb" : "");
}

/// A copy of the delivered database, open, in the folder form (false) or as a container (true).
class DeliveredDatabase : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    const std::string delivered = DeliveredPath(GetParam());
    ASSERT_NE(delivered, "") << "REFFRAME_DELIVERED does not name the delivered database";
    path_ = folder_.Path(GetParam() ? "copy.qvdb" : "copy");
    fs::copy(delivered, path_, fs::copy_options::recursive);
    data_ = QvRefSystem::MakeDataModule(ui_);
    data_->DatabasePath = path_;
    ASSERT_TRUE(data_->OpenDatabase(path_, QvRefSystem::kFullMode, GetParam()))
        << data_->LastError();
  }

  /// Calls `visit(processor)` with each record of the type current, in table order.
  template <typename Visitor>
  void ForEveryRecord(const TObjectDescriptor& type, Visitor visit) {
    TQvRfDataProcessor& processor = *QvRefSystem::ProcessorFor(*data_, static_cast<int>(type.type));
    std::vector<int> keys;
    const int keyField =
        processor.DataSet->FieldByName(QvRefSystem::TableOf(type.table).keyField).GetIndex();
    for (int at = 0; at < processor.DataSet->RecordCount(); ++at) {
      keys.push_back(processor.DataSet->Row(at).GetInteger(keyField));
    }
    for (const int key : keys) {
      ASSERT_TRUE(processor.LocateKey(key)) << type.typeName << " " << key;
      visit(processor);
      // A fault of the road is one of hundreds of records; the first few tell what it is.
      if (HasFailure() && ++failures_ > 5) return;
    }
  }

  [[nodiscard]] std::map<std::string, int> Counts() {
    std::map<std::string, int> counts;
    for (const TableSpec& table : QvRefSystem::TableCatalogue()) {
      if (table.tag == QvRefSystem::kUnopenedTag) continue;
      counts[std::string(table.streamName)] = data_->DataSet(table.id).RecordCount();
    }
    return counts;
  }

  TemporaryFolder folder_;
  ScriptedUi ui_;
  std::string path_;
  std::unique_ptr<QvRefSystem::TdatamoduleQvRfData> data_;
  int failures_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Forms, DeliveredDatabase, testing::Bool(),
                         [](const auto& form) { return form.param ? "Container" : "Folder"; });

std::string NameOf(const TQvRfDataProcessor& processor) {
  std::string name;
  processor.GetNames(nullptr, &name);
  return processor.TypeName + " " + std::to_string(processor.GetCurrentKey()) + " \"" + name + "\"";
}

TEST_P(DeliveredDatabase, ReadsBackEveryTreeFromItsTextAndItsXml) {
  for (const TObjectDescriptor& type : QvRefSystem::ObjectDescriptors()) {
    ForEveryRecord(type, [](TQvRfDataProcessor& processor) {
      TStringTree tree;
      ASSERT_TRUE(processor.WriteToTree(&tree, 0, 0)) << NameOf(processor);
      TStringTree fromText;
      ReadTreeText(WriteTreeText(&tree), &fromText);
      EXPECT_TRUE(SameTree(&tree, &fromText)) << NameOf(processor);
      TStringTree fromXml;
      ReadTreeXml(QvCommonUtils::WriteTreeXml(&tree), &fromXml);
      EXPECT_TRUE(SameTree(&tree, &fromXml)) << NameOf(processor);
    });
  }
}

TEST_P(DeliveredDatabase, HoldsEverySystemAsProjKnowsIt) {
  std::map<int, int> systemsOfKind;
  std::set<int> codes;
  ForEveryRecord(DescriptorOf(TObjectType::kReferenceSystem), [&](TQvRfDataProcessor& processor) {
    TStringTree tree;
    ASSERT_TRUE(processor.WriteToTree(&tree, 0, 0)) << NameOf(processor);
    int code = 0;
    int kind = 0;
    ASSERT_TRUE(tree.GetInteger(kSystemCode, 0, &code)) << NameOf(processor);
    ASSERT_TRUE(tree.GetInteger(1100, 0, &kind)) << NameOf(processor);
    EXPECT_TRUE(codes.insert(code).second) << "two systems have the code " << code;
    ++systemsOfKind[kind];
    std::string why;
    bool equivalent = false;
    for (const auto dimension : {QvRefSystem::Dimension::kTwo, QvRefSystem::Dimension::kThree}) {
      std::string json;
      ASSERT_TRUE(TreeToProjJson(&tree, dimension, &json, &why)) << NameOf(processor) << why;
      equivalent = equivalent || QvRefSystem::EquivalentToEpsg(json, code, &why);
    }
    EXPECT_TRUE(equivalent) << NameOf(processor) << ", EPSG " << code << ": " << why;
  });
  // The live systems of the registry that PROJ 9.1 comes with.
  EXPECT_GE(systemsOfKind[5], 5135);
  EXPECT_GE(systemsOfKind[4], 545);
  EXPECT_GE(systemsOfKind[3], 194);
}

TEST_P(DeliveredDatabase, FindsEveryObjectOfItsOwnAgain) {
  const auto before = Counts();
  for (const TObjectDescriptor& type : QvRefSystem::ObjectDescriptors()) {
    ForEveryRecord(type, [](TQvRfDataProcessor& processor) {
      const int key = processor.GetCurrentKey();
      const std::string name = NameOf(processor);
      TStringTree tree;
      ASSERT_TRUE(processor.WriteToTree(&tree, 0, 0)) << name;
      TStringTree travelled;
      ReadTreeText(WriteTreeText(&tree), &travelled);
      EXPECT_EQ(processor.InsertFromTree(&travelled), key) << name;
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

std::string List(const std::string& database) {
  const char* const arguments[] = {"refframe", "list", database.c_str(), "reference-system"};
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(RefframeCli::Run(4, arguments, {in, out, err}), 0) << err.str();
  return out.str();
}

// A stream groups the digits of a number under many a user's locale, and a key of "1.234" is none.
TEST(DeliveredList, KeepsTheFormOfNumbersUnderAnyLocale) {
  const std::string plain = List(DeliveredPath(true));
  const std::locale previous = std::locale::global(std::locale(std::locale(), new Grouping));
  const std::string grouped = List(DeliveredPath(true));
  std::locale::global(previous);
  EXPECT_GE(std::ranges::count(plain, '\n'), 5874);
  EXPECT_EQ(plain, grouped);
}

}  // namespace
}  // namespace refframe_tests
