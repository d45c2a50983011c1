#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

/// What streams have in common; file_stream.h and resource_session.h hold the two kinds.
namespace QvPlatform {

/// A storage operation failed; the message says what and on which file or resource.
class StorageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// How a stream is opened. kCreate replaces what stands under the name once Commit succeeds; the
/// Commit of kCreateNew is refused where anything stands there.
enum class QvOpenMode { kRead = 0, kCreate = 3, kCreateNew = 4 };

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

  /// Why the last Open failed, for users to read; "" after one that did not.
  [[nodiscard]] const std::string& LastError() const { return lastError_; }
  /// All bytes from the present position to the end. Throws StorageError.
  [[nodiscard]] std::string ReadAll();

 protected:
  std::string lastError_;
};

}  // namespace QvPlatform
