#include "tests/apps/cli/command_line_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "apps/cli/command_line.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {

namespace fs = std::filesystem;

CommandLine::CommandLine() {
  QvRefSystem::TQvRfDataProcessor& systems =
      database_.Processor(QvRefSystem::TObjectType::kReferenceSystem);
  for (int kind = 1; kind <= 6; ++kind) {
    EXPECT_EQ(systems.InsertFromTree(MakeTree(SystemTree, kind).get()), kind);
  }
  database_.data->CloseDatabase();
}

std::vector<std::string> CommandLine::Split(std::string_view line) const {
  std::vector<std::string> words;
  bool inWord = false;
  bool quoted = false;
  for (const char c : line) {
    if (c == '\'') {
      quoted = !quoted;
    } else if (c == ' ' && !quoted) {
      inWord = false;
      continue;
    }
    if (!inWord) words.emplace_back();
    inWord = true;
    if (c != '\'') words.back() += c;
  }
  for (std::string& word : words) {
    if (word == "DB") word = database_.path;
    if (word.starts_with('@')) word = Path(word.substr(1));
  }
  return words;
}

Outcome CommandLine::Say(std::string_view line, const std::string& input, bool interactive) const {
  const std::vector<std::string> words = Split(line);
  std::vector<const char*> arguments{"refframe"};
  for (const std::string& word : words)
    arguments.push_back(word.c_str());
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  Outcome outcome;
  outcome.status = RefframeCli::Run(static_cast<int>(arguments.size()), arguments.data(),
                                    {in, out, err, interactive});
  const auto shorten = [this](std::string text) {
    const std::string folder = Path("");
    for (std::size_t at = text.find(folder); at != std::string::npos; at = text.find(folder, at)) {
      text.replace(at, folder.size(), "@");
    }
    return text;
  };
  outcome.out = shorten(out.str());
  outcome.err = shorten(err.str());
  return outcome;
}

std::string CommandLine::Printed(std::string_view line) const {
  const Outcome outcome = Say(line);
  EXPECT_EQ(outcome.status, 0) << line << ": " << outcome.err;
  return outcome.out;
}

void CommandLine::Expect(const LineRow& row) const {
  SCOPED_TRACE(row.line);
  const Outcome outcome = Say(row.line);
  EXPECT_EQ(outcome.status, row.status);
  EXPECT_EQ(outcome.out, row.out);
  EXPECT_THAT(outcome.err, testing::HasSubstr(row.err));
  EXPECT_EQ(outcome.err.empty(), *row.err == '\0') << outcome.err;
}

void CommandLine::ExpectAll(std::span<const LineRow> rows) const {
  for (const LineRow& row : rows)
    Expect(row);
}

void CommandLine::ChangeRecord(
    QvRefSystem::TObjectType type, int key,
    const std::function<void(QvPlatform::TQvDataSet& table)>& change) const {
  ASSERT_TRUE(database_.data->OpenDatabase(database_.path, QvRefSystem::kFullMode, false));
  QvRefSystem::TQvRfDataProcessor& processor = database_.Processor(type);
  ASSERT_TRUE(processor.LocateKey(key));
  change(*processor.DataSet);
  database_.data->CloseDatabase();
}

std::string CommandLine::Words(std::string_view line) const {
  std::string joined;
  for (const std::string& word : Split(line))
    joined += " '" + word + "'";
  return joined;
}

void CommandLine::Put(const std::string& name, const std::string& content) const {
  std::ofstream(Path(name), std::ios::binary) << content;
}

std::string CommandLine::Get(const std::string& name) const {
  std::ifstream file(Path(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::map<std::string, std::string> CommandLine::DatabaseBytes() const {
  std::map<std::string, std::string> bytes;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(database_.path)) {
    if (!entry.is_regular_file()) continue;
    const std::string name = fs::relative(entry.path(), folder_.Path()).string();
    bytes[name] = Get(name);
  }
  return bytes;
}

int CommandLine::CountOf(const std::string& type) const {
  const std::string out = Say("list DB " + type).out;
  return static_cast<int>(std::ranges::count(out, '\n'));
}

}  // namespace refframe_tests
