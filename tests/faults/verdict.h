#pragma once

#include <string>
#include <vector>

namespace refframe_faults {

/// What stands in a database, seen from outside.
struct Verdict {
  /// Why it does not open; "" for one that does.
  std::string refused;
  /// A number over all described fields of all records but their last use, and over the heights.
  std::string digest;
  /// What the check of the database finds, in its words.
  std::vector<std::string> findings;
  /// Whether the check calls an error what it finds.
  bool hasErrors = false;
  /// What SQLite itself finds in the files; "ok" for nothing.
  std::string integrity = "ok";
  /// Files of the database that belong to nobody: heights without a record, and such as writers
  /// make for a moment.
  std::vector<std::string> strays;
};

/// A line for each record of the database with all of its described fields but the last use, and
/// one for each file of heights with its content. Throws std::runtime_error for what does not open.
[[nodiscard]] std::vector<std::string> RecordLines(const std::string& path);

/// Opens the database, as the next program would, and looks. Throws nothing of the store's.
[[nodiscard]] Verdict Judge(const std::string& path);

}  // namespace refframe_faults
