#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace QvPlatform {

class TQvDataSet;

/// Posts and deletes of several tables as one transaction: all are durable when Commit returns, or
/// none is. Groups nest; only the outermost one commits. A group that is destroyed without Commit
/// undoes its changes in the store and has the data sets reload.
///
/// The outermost group takes the store's lock when it is made, and brings its data sets up to date:
/// what is looked up inside of it still holds when it is written. What was looked up before may
/// not. On a store that cannot be written it only brings them up to date.
class TQvWriteGroup {
 public:
  /// Null and closed data sets are passed over. Throws std::logic_error for data sets that lie
  /// neither in one folder nor in one container, for more table files than one transaction can
  /// span, and for a group inside another that holds further data sets; StorageError where the lock
  /// cannot be had or a table cannot be read.
  explicit TQvWriteGroup(const std::vector<TQvDataSet*>& dataSets);
  ~TQvWriteGroup();
  TQvWriteGroup(const TQvWriteGroup&) = delete;
  TQvWriteGroup& operator=(const TQvWriteGroup&) = delete;
  /// Throws StorageError if the store refuses; everything the group wrote is then undone, but where
  /// the store failed behind the point of no return.
  void Commit();
  /// For what lies beside the tables and takes no part in their transaction, such as plain files:
  /// `done` runs once the outermost group has committed, `undone` once what this group wrote is
  /// undone, the last call first. Neither runs where a failed commit leaves open which of the two
  /// has happened. Either may be empty; what they throw is dropped.
  void AtEnd(std::function<void()> done, std::function<void()> undone);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace QvPlatform
