#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "assembly/checks/checked_database.h"
#include "assembly/checks/mending.h"

namespace QvRefSystem {

/// How much a find weighs.
enum class FindingRank : unsigned char {
  /// The database does not hold together there.
  kError,
  /// What ordinary work leaves behind, or what a person may want to look at.
  kNote
};

/// One find of the check of a database.
struct Finding {
  FindingRank rank = FindingRank::kError;
  /// Table, key, name, what; for what concerns no one record the table and what.
  std::string text;
  /// What repair does about it; nothing where no one answer is right.
  std::optional<Mending> mending;
};

/// What all checks have found. Each kind of find, which is what one check finds in one rank, is
/// listed up to a limit and counted beyond.
struct CheckReport {
  /// The greatest number of listed finds of a kind.
  static constexpr std::size_t kMostOfAKind = 1000;

  /// The finds in the order of the checks, at most kMostOfAKind of each kind.
  std::vector<Finding> findings;
  /// What repair would do, in the order in which it has to be done: all of it, listed or not.
  std::vector<Mending> mendings;
  /// Number of all errors.
  std::size_t errors = 0;
  /// Number of all notes.
  std::size_t notes = 0;

  /// The listed finds as lines, errors first; a note begins with "note: ".
  [[nodiscard]] std::vector<std::string> Lines() const;
  /// All errors and notes in numbers, and how many of them are not listed.
  [[nodiscard]] std::string Summary() const;
};

/// Takes what the checks of a database find.
class Findings {
 public:
  /// Adds to `report`, which must outlive this.
  explicit Findings(CheckReport* report) : report_(report) {}

  /// What follows is found by a further check, and so of another kind.
  void BeginCheck() { listed_.clear(); }

  /// An error about a record. Of a record without key and name the line holds the table alone, and
  /// `what` has to tell the record apart.
  void Add(const CheckedRow& row, const std::string& what, std::optional<Mending> mending = {});
  /// An error about no one record of the table.
  void Add(const CheckedTable& table, const std::string& what, std::optional<Mending> mending = {});
  /// A note about a record.
  void Note(const CheckedRow& row, const std::string& what, std::optional<Mending> mending = {});
  /// A note about no one record of the table.
  void Note(const CheckedTable& table, const std::string& what,
            std::optional<Mending> mending = {});

  /// Adds an error if the field, which holds a key or a type, is 0.
  void NeedReference(const CheckedRow& row, std::string_view field);
  /// Adds an error if the text of the field is no decimal number in the C notation.
  void NeedNumber(const CheckedRow& row, std::string_view field);

 private:
  void Put(Finding finding);

  CheckReport* report_;
  /// Finds of the present check by rank.
  std::map<FindingRank, std::size_t> listed_;
};

/// One check: it adds what it finds, and changes nothing.
using Check = void (*)(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
