#include "platform/storage/work_folder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/storage/durable.h"
#include "platform/storage/retried.h"
#include "platform/storage/stream.h"

namespace QvPlatform {

namespace {

namespace fs = std::filesystem;
using detail::Retried;

constexpr mode_t kUsualMode = 0666;

[[noreturn]] void Fail(const std::string& path, const char* doing, int reason) {
  throw StorageError("\"" + path + "\" " + doing + ": " + std::strerror(reason));
}

/// A descriptor that is closed with its scope.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int Number() const { return number_; }
  /// False, with the reason in errno, where closing fails.
  [[nodiscard]] bool Close() { return close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

bool IsUnsupported(int reason) {
  return reason == EINVAL || reason == ENOSYS || reason == EOPNOTSUPP;
}

const std::string& MadeFolder(const std::string& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) throw StorageError("\"" + folder + "\" cannot be made: " + error.message());
  return folder;
}

/// Two steps, for media that know no exchange; after the first nothing stands under `other`.
void ExchangeInSteps(const std::string& one, const std::string& other) {
  const std::string between = one + ".between";
  if (rename(other.c_str(), between.c_str()) != 0) Fail(other, "cannot be replaced", errno);
  if (rename(one.c_str(), other.c_str()) != 0) {
    const int reason = errno;
    std::error_code ignored;
    fs::rename(between, other, ignored);
    Fail(other, "cannot be replaced", reason);
  }
  if (rename(between.c_str(), one.c_str()) != 0) Fail(one, "cannot be made", errno);
}

}  // namespace

WorkFolder::WorkFolder(const std::string& beside) : folder_(MadeFolder(beside)) {}

void WorkFolder::Sync() const {
  const Descriptor folder(
      Retried([this] { return open(folder_.Path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (folder.Number() < 0 || Retried([&folder] { return syncfs(folder.Number()); }) != 0) {
    Fail(folder_.Path(), "cannot be brought to the medium", errno);
  }
}

std::string FolderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

void MoveUnflushed(const std::string& from, const std::string& to) {
  if (!detail::MoveToFreePlace(from, to)) Fail(to, "cannot be made", errno);
}

void FlushFolder(const std::string& folder) {
  if (!detail::SyncFolder(folder)) Fail(folder, "cannot be brought to the medium", errno);
}

void TakeFreePlace(const std::string& from, const std::string& to) {
  MoveUnflushed(from, to);
  FlushFolder(FolderOf(to));
}

void ExchangePlaces(const std::string& one, const std::string& other) {
  const auto exchange = [&] {
    return renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
  };
  if (Retried(exchange) != 0) {
    if (!IsUnsupported(errno)) Fail(other, "cannot be replaced", errno);
    ExchangeInSteps(one, other);
  }
  FlushFolder(FolderOf(other));
}

void WriteUnflushed(const std::string& path, const void* data, std::size_t size) {
  Descriptor file(Retried(
      [&path] { return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kUsualMode); }));
  if (file.Number() < 0) Fail(path, "cannot be created", errno);
  const char* next = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = write(file.Number(), next, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) Fail(path, "cannot be written", errno);
    next += written;
    size -= static_cast<std::size_t>(written);
  }
  if (!file.Close()) Fail(path, "cannot be written", errno);
}

}  // namespace QvPlatform
