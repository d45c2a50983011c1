#pragma once

#include <memory>
#include <string>
#include <vector>

#include "assembly/processor_set.h"
#include "tests/support/sample_trees.h"
#include "tests/support/scripted_ui.h"

/// What the tests of faults do with a database. Everything follows from numbers, so that another
/// run on another copy comes to the same content.
namespace refframe_faults {

[[nodiscard]] bool IsContainer(const std::string& path);

/// What a command line came to.
struct CommandResult {
  int exitCode = 0;
  std::string output;
  std::string errors;
};
/// Runs a command of the program `refframe` in this process; `arguments` without its name.
[[nodiscard]] CommandResult RunCommandLine(const std::vector<std::string>& arguments,
                                           const std::string& input = {});

/// Writes to standard output at once, so that a process that is killed then has said it.
void Say(const std::string& text);

/// A database opened as a program does, by a user who says yes to everything.
struct OpenDatabase {
  /// Throws std::runtime_error with what the user was told.
  explicit OpenDatabase(const std::string& path);
  /// Throws std::runtime_error with what the user was told if the operation was refused.
  void Expect(bool succeeded) const;

  refframe_tests::ScriptedUi ui;
  std::unique_ptr<QvRefSystem::TdatamoduleQvRfData> data;
};

/// A reference system of a kind (1 to 6) with sub-objects of its own, named after the prefix and
/// the number; where it has a plane and `hasHeights`, with a table of heights.
[[nodiscard]] refframe_tests::TreePtr NumberedSystem(const std::string& prefix, int number,
                                                     int kind, bool hasHeights);

/// One operation of the sequence that belongs to a seed: most import a system, known or new; others
/// edit a record, a projection with its parameters or all systems at once, delete, or put heights
/// in the place of others. Throws what it was refused with.
void Operate(OpenDatabase& database, int seed, int number);

/// One of several processes that write the database at once: imports `count` systems, those that
/// all import alike ("same"), or most of its own, of which it edits and deletes some ("mixed").
/// With `isOpen` all goes through one open database, else each change is a command line.
///
/// Prints a line for each change that is acknowledged, "I name", "E name", "D name"; "R what: why"
/// for what may be refused, since others use it, "X what: why" for what may not; at last
/// "W seconds", the longest wait.
void WriteBeside(const std::string& path, int process, int count, const std::string& how,
                 bool isOpen);

/// What stands in a database, seen from outside.
struct Verdict {
  /// Why it does not open; "" for one that does.
  std::string refused;
  /// A number over all records and heights, as RecordLines tells them.
  std::string digest;
  /// What the check of the database finds, in its words, and whether it calls that an error.
  std::vector<std::string> findings;
  bool hasErrors = false;
  /// What SQLite itself finds in the files; "ok" for nothing.
  std::string integrity = "ok";
  /// Files that belong to nobody: heights without a record, and such as writers make for a moment.
  std::vector<std::string> strays;
};
/// Opens the database, as the next program would, and looks.
[[nodiscard]] Verdict Judge(const std::string& path);

/// A line for each record of the database with all of its described fields but the last use and
/// names of files, and one for each file of heights with its content. Throws std::runtime_error for
/// what does not open.
[[nodiscard]] std::vector<std::string> RecordLines(const std::string& path);

}  // namespace refframe_faults
