#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/test_database.h"

namespace refframe_tests {

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

/// What a line is expected to do.
struct LineRow {
  const char* line;
  int status;
  const char* out;
  /// What the error stream holds somewhere; "" for an error stream that stays empty.
  const char* err;
};

/// A user at the command line, over a database with one system of each kind and what they are
/// built from.
class CommandLine : public testing::Test {
 protected:
  CommandLine();

  /// Says one line, its words parted by blanks and held together by single quotes. "DB" stands for
  /// the database, "@name" for a file beside it. In what comes back the folder is "@" again.
  [[nodiscard]] Outcome Say(std::string_view line, const std::string& input = {},
                            bool interactive = false) const;
  /// What a line prints that has to succeed.
  [[nodiscard]] std::string Printed(std::string_view line) const;
  void Expect(const LineRow& row) const;
  void ExpectAll(std::span<const LineRow> rows) const;
  [[nodiscard]] std::string Path(const std::string& name) const { return folder_.Path(name); }
  [[nodiscard]] std::string Words(std::string_view line) const;
  void Put(const std::string& name, const std::string& content) const;
  [[nodiscard]] std::string Get(const std::string& name) const;
  /// The bytes of every file of the database, by name.
  [[nodiscard]] std::map<std::string, std::string> DatabaseBytes() const;
  /// Changes a record of the stored database past the command line.
  void ChangeRecord(QvRefSystem::TObjectType type, int key,
                    const std::function<void(QvPlatform::TQvDataSet& table)>& change) const;
  /// Lines that `list` gives for a type.
  [[nodiscard]] int CountOf(const std::string& type) const;

  TestDatabase database_;
  const TemporaryFolder& folder_ = database_.folder;

 private:
  [[nodiscard]] std::vector<std::string> Split(std::string_view line) const;
};

}  // namespace refframe_tests
