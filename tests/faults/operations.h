#pragma once

#include <memory>
#include <string>

#include "assembly/processor_set.h"
#include "tests/support/sample_trees.h"
#include "tests/support/scripted_ui.h"

/// What the tests of faults do with a database. Everything follows from numbers, so that another
/// run on another copy comes to the same content.
namespace refframe_faults {

[[nodiscard]] bool IsContainer(const std::string& path);

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

/// One of several processes that write the database at once: imports `count` systems and prints a
/// line for each change that is acknowledged: "I name", "E name", "D name"; "X why" for what
/// was refused; at last "W seconds", the longest wait. What `how` says:
/// "same": all processes import the same systems; "mixed": each imports its own, some with heights,
/// edits and deletes some, and all import some that they share.
/// With `isOpen` all goes through one open database, else each change is a command line.
void WriteBeside(const std::string& path, int process, int count, const std::string& how,
                 bool isOpen);

}  // namespace refframe_faults
