#pragma once

#include <memory>
#include <string>

namespace QvPlatform {

/// Resources that are written to one container as one transaction: all are there when Commit
/// returns, or, without it, none. Streams of this process that write to the container meanwhile
/// belong to the group.
class TQvResourceGroup {
 public:
  /// Makes the container if there is none, and waits for another process that writes to it. Throws
  /// StorageError.
  explicit TQvResourceGroup(const std::string& container);
  ~TQvResourceGroup();
  TQvResourceGroup(const TQvResourceGroup&) = delete;
  TQvResourceGroup& operator=(const TQvResourceGroup&) = delete;
  /// Throws StorageError; nothing of the group is then there.
  void Commit();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace QvPlatform
