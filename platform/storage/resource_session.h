#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/storage/stream.h"

namespace QvPlatform {

/// A named resource of a container (one SQLite file). The name is the container's path, ".", and
/// the resource's own name: "refs.qvdb.ellipsoid", "refs.qvdb.Heights.Alps". A resource that is a
/// record table reads as a table file's bytes, and such bytes written to it become a table again.
/// Creating a resource in a container that does not exist makes the container when its path ends
/// in ".qvdb".
class TQvResourceSession final : public TQvStream {
 public:
  /// The stream is closed.
  TQvResourceSession();
  ~TQvResourceSession() override;
  [[nodiscard]] bool Open(const std::string& name, QvOpenMode mode) override;
  std::size_t Read(void* buffer, std::size_t size) override;
  void Write(const void* data, std::size_t size) override;
  [[nodiscard]] std::uint64_t Size() const override;
  void Commit() override;
  void Close() noexcept override;

  /// Whether the container can be read and has such a resource, a blob or a record table.
  [[nodiscard]] static bool Exists(const std::string& name);
  /// Whether it is certain that there is no such resource. Throws StorageError if the container
  /// stands there and cannot be read.
  [[nodiscard]] static bool IsAbsent(const std::string& name);
  /// What follows the prefix in the names of those resources that begin with it and are no record
  /// tables. The prefix is a container's path, "." and the beginning of the resources' own names.
  /// Throws StorageError if the container cannot be read.
  [[nodiscard]] static std::vector<std::string> NamesBehind(const std::string& prefix);
  /// The same for those that are record tables.
  [[nodiscard]] static std::vector<std::string> TablesBehind(const std::string& prefix);
  /// True if the resource was there and is gone.
  [[nodiscard]] static bool Delete(const std::string& name);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace QvPlatform
