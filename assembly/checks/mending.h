#pragma once

#include <string>
#include <variant>

#include "database/table_catalogue.h"

/// The steps by which repair mends a database, as the checks name them.
namespace QvRefSystem {

/// A row of param_value that goes: its owner is gone, or another row says the same.
struct RemovedValue {
  /// The type of the owner, or kProjectionParameterOwner.
  int content = 0;
  /// The key of the owner.
  int owner = 0;
  /// PARAM_TAG.
  int tag = 0;
  /// PARAM_GROUP.
  int group = 0;
  /// PARAM_CODE.
  int code = 0;
  /// VALUE.
  std::string value;
};

/// A height file that belongs to no record and moves to the backups.
struct FileSetAside {
  /// The short name.
  std::string name;
};

/// A record whose users go over to the record that says the same, before it is removed with its
/// rows of param_value, which that record has as well.
struct MergedRecord {
  /// The table of both.
  TableId table = TableId::kNone;
  /// The key that goes.
  int key = 0;
  /// The key that stays, the lower one.
  int into = 0;
  /// NAME of both.
  std::string name;
  /// How many fields of other records name the key that goes.
  int references = 0;
};

/// A table whose new records would get keys that are named already, so that they would come to the
/// codes, the users or the heights of former ones.
struct RaisedCounter {
  /// The table.
  TableId table = TableId::kNone;
  /// The key behind which new ones begin.
  int key = 0;
};

/// One step of repair.
using Mending = std::variant<RaisedCounter, RemovedValue, FileSetAside, MergedRecord>;

/// The step in words: table, record, and what becomes of it.
[[nodiscard]] std::string StepOf(const Mending& mending);

}  // namespace QvRefSystem
