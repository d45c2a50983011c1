#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/storage/session.h"

namespace QvPlatform::detail {

/// One container file, shared by all of its users in this process, so that a group of changes and
/// a stream never wait for each other. Names of resources are compared without regard to the case
/// of ASCII letters. The write-ahead log is folded into the file when the last user goes.
class Container {
 public:
  /// The two halves of a resource's full name.
  struct Place {
    std::string path;
    std::string resource;
    /// The container is there; otherwise its path is one under which it may be made.
    bool exists = false;
  };
  /// A blob as it was found. Its parts can be read until it is replaced.
  struct Blob {
    std::int64_t id = 0;
    std::uint64_t size = 0;
  };

  /// Splits behind the last "." whose prefix is a container, so that "refs.qvdb.old" opens beside
  /// "refs.qvdb", or else behind the first whose prefix ends in ".qvdb" and may become one. Throws
  /// StorageError if there is neither.
  [[nodiscard]] static Place Resolve(const std::string& name);
  [[nodiscard]] static std::shared_ptr<Container> Open(const std::string& path);
  /// Makes it if it is not there.
  [[nodiscard]] static std::shared_ptr<Container> OpenOrCreate(const std::string& path);

  explicit Container(const std::string& path);
  ~Container();
  Container(const Container&) = delete;
  Container& operator=(const Container&) = delete;

  [[nodiscard]] Session& Transactions() { return *session_; }
  [[nodiscard]] bool HasTable(const std::string& resource);
  [[nodiscard]] bool FindBlob(const std::string& resource, Blob* blob);
  /// Names of all blobs that begin with the prefix and go on behind it, in the order of their
  /// making.
  [[nodiscard]] std::vector<std::string> BlobNames(const std::string& prefix);
  /// Bytes of a table file with the records of a table.
  [[nodiscard]] std::string ReadTable(const std::string& resource);
  /// One part of a blob, each but the last of kPartSize bytes. Throws if it has been replaced.
  [[nodiscard]] std::string ReadPart(const Blob& blob, std::uint64_t part);
  /// Puts a table or a blob in place of whatever stands under the name.
  void Write(const std::string& resource, std::string_view bytes);
  /// True if there was something to delete.
  [[nodiscard]] bool Delete(const std::string& resource);

  /// Raised by each change of a record table in this process.
  std::uint64_t& ChangesOf(const std::string& table);
  /// Differs between two openings, even of one file.
  [[nodiscard]] std::uint64_t Serial() const { return serial_; }

  static constexpr std::size_t kPartSize = std::size_t{256} << 10;

 private:
  void Remove(const std::string& resource);
  void WriteBlob(const std::string& resource, std::string_view bytes);

  std::string path_;
  std::unique_ptr<Session> session_;
  std::map<std::string, std::uint64_t> changes_;
  std::uint64_t serial_;
};

/// Names that the container needs for itself.
[[nodiscard]] bool IsReservedResource(std::string_view resource);

}  // namespace QvPlatform::detail
