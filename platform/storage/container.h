#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/storage/session.h"

namespace QvPlatform::detail {

/// One container file, shared by all of its users in this process, so that a group of changes and
/// a stream never wait for each other. Names of resources are compared without regard to the case
/// of ASCII letters. A
/// container at rest is one whole file; one that an older program left with a write-ahead log takes
/// that in when it is opened.
class Container {
 public:
  /// The two halves of a resource's full name.
  struct Place {
    /// Path of the container's file.
    std::string path;
    /// The resource's own name, behind the ".".
    std::string resource;
    /// The container is there; otherwise its path is one under which it may be made.
    bool exists = false;
  };
  /// A blob as it was found. Its parts can be read until it is replaced.
  struct Blob {
    /// Number that no other blob of the container ever has.
    std::int64_t id = 0;
    /// Size in bytes.
    std::uint64_t size = 0;
  };

  /// Splits behind the last "." whose prefix is a container, so that "refs.qvdb.old" opens beside
  /// "refs.qvdb", or else behind the first whose prefix ends in ".qvdb" and may become one. Throws
  /// StorageError if there is neither.
  [[nodiscard]] static Place Resolve(const std::string& name);
  /// The container under this path, the same for all users in this process unless another file has
  /// come into its place. Throws StorageError if it is missing or none.
  [[nodiscard]] static std::shared_ptr<Container> Open(const std::string& path);
  /// The same, of a container that is made if it is not there.
  [[nodiscard]] static std::shared_ptr<Container> OpenOrCreate(const std::string& path);

  /// Opens the file by its canonical path; callers take Open. Throws StorageError.
  explicit Container(const std::string& path);
  ~Container() = default;
  Container(const Container&) = delete;
  Container& operator=(const Container&) = delete;

  /// The connection with its transactions.
  [[nodiscard]] Session& Transactions() { return *session_; }
  /// Whether a record table stands under the name.
  [[nodiscard]] bool HasTable(const std::string& resource);
  /// Whether anything stands under the name.
  [[nodiscard]] bool Has(const std::string& resource);
  /// Whether a blob stands under the name; `blob` is unchanged if not.
  [[nodiscard]] bool FindBlob(const std::string& resource, Blob* blob);
  /// Names of all blobs that begin with the prefix and go on behind it, in the order of their
  /// making.
  [[nodiscard]] std::vector<std::string> BlobNames(const std::string& prefix);
  /// The same for the names of record tables, in no order.
  [[nodiscard]] std::vector<std::string> TableNames(const std::string& prefix);
  /// Bytes of a table file with the records of a table, which has to be there.
  [[nodiscard]] std::string ReadTable(const std::string& resource);
  /// One part of a blob, each but the last of kPartSize bytes. Throws StorageError if the blob has
  /// been replaced.
  [[nodiscard]] std::string ReadPart(const Blob& blob, std::uint64_t part);
  /// What may stand under a name that is written.
  enum class Target { kReplaced, kMustBeFree };
  /// Puts bytes under the name: as a table if they are a sound table file, else as a blob. Throws
  /// StorageError, also where something stands there and must not; what stood there then stays.
  void Write(const std::string& resource, std::string_view bytes,
             Target target = Target::kReplaced);
  /// Deletes what stands under the name; false if there was nothing. Throws StorageError.
  [[nodiscard]] bool Delete(const std::string& resource);

  /// Size in bytes of the parts in which blobs are kept, so that none is read or written whole.
  static constexpr std::size_t kPartSize = std::size_t{256} << 10;

 private:
  void BeginWriting();
  void Remove(const std::string& resource);
  void WriteBlob(const std::string& resource, std::string_view bytes);

  std::unique_ptr<Session> session_;
};

/// Whether a name is one that the container needs for itself.
[[nodiscard]] bool IsReservedResource(std::string_view resource);

}  // namespace QvPlatform::detail
