#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Streams over files and over the named resources of a container.
namespace QvPlatform {

/// A storage operation failed; the message says what and on which file or resource.
class StorageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// How a stream is opened. kCreate replaces what stands under the name once Commit succeeds.
enum class QvOpenMode { kRead = 0, kCreate = 3 };

/// A source or target of bytes. Reading never goes past the end; writing is all or nothing: the
/// old content stays in place until Commit has succeeded, which ends the writing.
class TQvStream {
 public:
  TQvStream() = default;
  TQvStream(const TQvStream&) = delete;
  TQvStream& operator=(const TQvStream&) = delete;
  virtual ~TQvStream() = default;

  /// True if the stream is open afterwards. A failure leaves the reason in LastError().
  [[nodiscard]] virtual bool Open(const std::string& name, QvOpenMode mode) = 0;
  /// Number of bytes read, 0 at the end. Throws StorageError if the medium fails.
  virtual std::size_t Read(void* buffer, std::size_t size) = 0;
  /// Writes all or throws StorageError.
  virtual void Write(const void* data, std::size_t size) = 0;
  /// Size in bytes of a stream that is open for reading.
  [[nodiscard]] virtual std::uint64_t Size() const = 0;
  /// Puts what was written in place of what stood under the name. Throws StorageError; the old
  /// content then still stands.
  virtual void Commit() = 0;
  /// Closes without commit; what was written since Open is dropped. Never throws.
  virtual void Close() noexcept = 0;

  [[nodiscard]] const std::string& LastError() const { return lastError_; }
  /// All bytes from the present position to the end.
  [[nodiscard]] std::string ReadAll();

 protected:
  std::string lastError_;
};

/// A plain file. kCreate writes aside, flushes and renames on Commit.
class TQvFileStream final : public TQvStream {
 public:
  TQvFileStream();
  ~TQvFileStream() override;
  [[nodiscard]] bool Open(const std::string& path, QvOpenMode mode) override;
  std::size_t Read(void* buffer, std::size_t size) override;
  void Write(const void* data, std::size_t size) override;
  [[nodiscard]] std::uint64_t Size() const override;
  void Commit() override;
  void Close() noexcept override;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// A named resource of a container (one SQLite file). The name is the container's path, ".", and
/// the resource's own name: "refs.qvdb.ellipsoid", "refs.qvdb.Heights.Alps". A resource that is a
/// record table reads as a table file's bytes, and such bytes written to it become a table again.
/// Creating a resource in a container that does not exist makes the container when its path ends
/// in ".qvdb".
class TQvResourceSession final : public TQvStream {
 public:
  TQvResourceSession();
  ~TQvResourceSession() override;
  [[nodiscard]] bool Open(const std::string& name, QvOpenMode mode) override;
  std::size_t Read(void* buffer, std::size_t size) override;
  void Write(const void* data, std::size_t size) override;
  [[nodiscard]] std::uint64_t Size() const override;
  void Commit() override;
  void Close() noexcept override;

  [[nodiscard]] static bool Exists(const std::string& name);
  /// What follows the prefix in the names of those resources that begin with it and are no record
  /// tables. The prefix is a container's path, "." and the beginning of the resources' own names.
  /// Throws StorageError if the container cannot be read.
  [[nodiscard]] static std::vector<std::string> NamesBehind(const std::string& prefix);
  /// True if the resource was there and is gone.
  [[nodiscard]] static bool Delete(const std::string& name);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// CRC-32 (ISO 3309, as in zlib) of the bytes.
[[nodiscard]] std::uint32_t Crc32(std::string_view bytes);

}  // namespace QvPlatform
