// The database driven by the tests of faults: reads a request a line (JSON), does it in a process
// of its own, into which the faults come, and answers by a line:
//
//   {"do": [WORD...], "input": TEXT, "fault": {...}, "kill_after": MICROSECONDS, "limit": SECONDS}
//   {"exit": STATUS or -SIGNAL, "calls": N, "out": TEXT, "err": TEXT}
//
// With words as arguments it does just these. The words:
//   refframe ARGUMENT...               a command line
//   make DB                            a database with types and without objects
//   old DB COUNT                       the same in the layout before heights, with so many systems
//   work DB SEED FROM TO               operations; "A number" for each that is acknowledged
//   oracle DB SEED TO                  "digest errors" of the database before and after each of
//   them judge DB                           a Verdict beside DB PROCESS COUNT HOW open|command
//   WriteBeside tree PREFIX NUMBER KIND            a system with heights, as text
#include "tests/faults/driver.h"

#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "apps/cli/command_line.h"
#include "database/table_files.h"
#include "platform/data/string_tree_text.h"
#include "platform/dbset/write_group.h"
#include "tests/faults/failing_calls.h"
#include "tests/support/test_database.h"

namespace refframe_faults {

using nlohmann::json;
using Words = std::vector<std::string>;
namespace fs = std::filesystem;

CommandResult RunCommandLine(const std::vector<std::string>& arguments, const std::string& input) {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  std::vector<const char*> words{"refframe"};
  for (const std::string& argument : arguments)
    words.push_back(argument.c_str());
  const int exitCode =
      RefframeCli::Run(static_cast<int>(words.size()), words.data(), {in, out, err, false});
  return {exitCode, out.str(), err.str()};
}

void Say(const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t count = write(1, text.data() + done, text.size() - done);
    if (count < 0) _exit(9);
    done += static_cast<std::size_t>(count);
  }
}

namespace {

void Make(const Words& words) {
  refframe_tests::TestDatabase database(IsContainer(words.at(1)));
  database.data->CloseDatabase();
  fs::copy(database.path, words.at(1), fs::copy_options::recursive);
}

// The reference systems as they were stored before they had heights.
void MakeOld(const Words& words) {
  Make(words);
  const std::string& path = words.at(1);
  const std::string table =
      path + (IsContainer(path) ? ".reference_system" : "/reference_system.dat");
  QvRefSystem::TableSpec spec = QvRefSystem::TableOf(QvRefSystem::TableId::kRefSystem);
  spec.fields = spec.fields.first(static_cast<std::size_t>(
      std::ranges::find(spec.fields, "VERT_SYSTEM_AUTOKEY", &QvRefSystem::FieldSpec::name) -
      spec.fields.begin()));
  refframe_tests::ScriptedUi ui;
  (void)QvRefSystem::DeleteStorageFile(table, IsContainer(path));
  if (!QvRefSystem::CreateCatalogueTable(table, IsContainer(path), spec, ui))
    throw std::runtime_error("the old table is not made");
  QvPlatform::TQvDataBuffer buffer;
  buffer.SetDataBufferType(IsContainer(path) ? QvPlatform::QvDataBufferType::kResource
                                             : QvPlatform::QvDataBufferType::dtFileStream);
  buffer.StreamName = table;
  QvPlatform::TQvDataSet systems(buffer);
  systems.Open();
  QvPlatform::TQvWriteGroup group({&systems});
  for (int i = 0; i < std::stoi(words.at(2)); ++i) {
    systems.Append();
    systems.FieldByName("NAME").SetString("old " + std::to_string(i));
    systems.FieldByName("TYPE").SetInteger(1);
    systems.Post();
  }
  group.Commit();
}

void Work(const Words& words) {
  OpenDatabase database(words.at(1));
  Say("O\n");
  for (int i = std::stoi(words.at(3)); i < std::stoi(words.at(4)); ++i) {
    Operate(database, std::stoi(words.at(2)), i);
    Say("A " + std::to_string(i) + "\n");
  }
}

void TellVerdict(const Words& words) {
  const Verdict verdict = Judge(words.at(1));
  const json told{{"refused", verdict.refused},     {"digest", verdict.digest},
                  {"findings", verdict.findings},   {"errors", verdict.hasErrors},
                  {"integrity", verdict.integrity}, {"strays", verdict.strays}};
  Say(told.dump(-1, ' ', false, json::error_handler_t::replace) + "\n");
}

int Do(const Words& words, const std::string& input) {
  const std::string& what = words.at(0);
  const auto number = [&](std::size_t at) { return std::stoi(words.at(at)); };
  if (what == "refframe") {
    const CommandResult result = RunCommandLine({words.begin() + 1, words.end()}, input);
    Say(result.output);
    std::cerr << result.errors;
    return result.exitCode;
  }
  const std::map<std::string, std::function<void()>> kinds{
      {"make", [&] { Make(words); }},
      {"old", [&] { MakeOld(words); }},
      {"work", [&] { Work(words); }},
      {"judge", [&] { TellVerdict(words); }},
      {"records",
       [&] {
         for (const std::string& line : RecordLines(words.at(1)))
           Say(line + '\n');
       }},
      {"beside",
       [&] { WriteBeside(words.at(1), number(2), number(3), words.at(4), words.at(5) == "open"); }},
      {"tree", [&] {
         const auto tree = NumberedSystem(words.at(1), number(2), number(3), true);
         Say(WriteTreeText(tree.get()) + '\0');
       }}};
  kinds.at(what)();
  return 0;
}

Fault ReadFault(const json& request) {
  const json fault = request.value("fault", json::object());
  return {.families = fault.value("families", ""),
          .prefix = fault.value("prefix", "/"),
          .at = fault.value("at", 0L),
          .forGood = fault.value("for_good", false),
          .effect = fault.value("effect", "fail"),
          .error = fault.value("error", 0),
          .log = fault.value("log", "")};
}

// In the process of its own; what it says goes to the pipes.
[[noreturn]] void DoAndLeave(const json& request, int out, int err, int calls) {
  dup2(out, 1);
  dup2(err, 2);
  alarm(request.value("limit", 60U));
  const auto words = request.at("do").get<Words>();
  const auto input = request.value("input", "");
  const Fault fault = ReadFault(request);
  if (const long after = request.value("kill_after", 0L); after != 0) {
    const itimerval timer{{}, {after / 1000000, after % 1000000}};
    setitimer(ITIMER_PROF, &timer, nullptr);
  }
  int exitCode = 1;
  try {
    Arm(fault);
    exitCode = Do(words, input);
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
  }
  const long counted = Disarm();
  if (write(calls, &counted, sizeof counted) < 0) exitCode = 9;
  _exit(exitCode);
}

// Reads files that the process has filled.
std::string Content(FILE* file) {
  std::string text(static_cast<std::size_t>(lseek(fileno(file), 0, SEEK_END)), '\0');
  if (pread(fileno(file), text.data(), text.size(), 0) < 0) text.clear();
  std::fclose(file);
  return text;
}

json Answer(const json& request) {
  FILE* const out = std::tmpfile();
  FILE* const err = std::tmpfile();
  FILE* const calls = std::tmpfile();
  const pid_t child = fork();
  if (child == 0) DoAndLeave(request, fileno(out), fileno(err), fileno(calls));
  int status = 0;
  waitpid(child, &status, 0);
  long counted = 0;
  const std::string bytes = Content(calls);
  if (bytes.size() == sizeof counted) std::memcpy(&counted, bytes.data(), sizeof counted);
  return {{"exit", WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status)},
          {"calls", counted},
          {"out", Content(out)},
          {"err", Content(err)}};
}

}  // namespace

}  // namespace refframe_faults

int main(int argc, char** argv) try {
  using namespace refframe_faults;
  if (argc > 1) return Do({argv + 1, argv + argc}, "");
  for (std::string line; std::getline(std::cin, line);)
    std::cout << Answer(json::parse(line)).dump(-1, ' ', false, json::error_handler_t::replace)
              << std::endl;
  return 0;
} catch (const std::exception& error) {
  std::cerr << error.what() << "\n";
  return 1;
}
