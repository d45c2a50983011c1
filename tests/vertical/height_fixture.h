#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"
#include "vertical/vertical_processor.h"

namespace refframe_tests {

using Strings = std::vector<std::string>;

/// A small database in one of its forms, and what its current height system and its files hold.
class HeightTest : public testing::TestWithParam<bool> {
 protected:
  [[nodiscard]] static bool InContainer() { return GetParam(); }
  [[nodiscard]] QvRefSystem::TQvRfDataProcessor& Systems() const {
    return database_.Processor(QvRefSystem::TObjectType::kReferenceSystem);
  }
  [[nodiscard]] QvRefSystem::TQvRfVerticalRefSystemDataProcessor& Records() const {
    return *database_.data->VerticalRefSystemProcessor;
  }
  [[nodiscard]] Strings Files() const {
    return QvRefSystem::ListStorageFiles(database_.data->GetHeightsPrefix(), InContainer());
  }
  [[nodiscard]] std::string Text(const char* field) const {
    return Records().DataSet->FieldByName(field).AsString();
  }
  [[nodiscard]] std::string FileText() const {
    std::string text;
    const auto path = Records().CurrentHeightFile();
    return path && QvRefSystem::LoadStorageFile(*path, InContainer(), &text) ? text : "(none)";
  }
  // Another content of the current record's file, as if it had been written for it.
  void SaveFile(const std::string& text) const {
    const auto path = Records().CurrentHeightFile();
    ASSERT_TRUE(path && QvRefSystem::SaveStorageFile(*path, InContainer(), text));
    QvRefSystem::NoteHeightFile(*Records().DataSet, Records().GetCurrentKey(), text);
  }
  static void Set(QvRefSystem::TQvRfDataProcessor& processor, const char* field,
                  const std::string& value) {
    processor.DataSet->Edit();
    processor.DataSet->FieldByName(field).SetString(value);
    processor.DataSet->Post();
  }

  TestDatabase database_{GetParam()};
};

}  // namespace refframe_tests
