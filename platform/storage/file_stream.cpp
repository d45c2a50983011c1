#include "platform/storage/file_stream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/storage/aside_file.h"
#include "platform/storage/retried.h"

namespace QvPlatform {

namespace {

/// The most bytes that one call of the system reads.
constexpr std::size_t kReadPiece = std::size_t{1} << 20;

}  // namespace

struct TQvFileStream::Impl {
  std::string path;
  int descriptor = -1;
  std::unique_ptr<detail::AsideFile> target;
  detail::AsideFile::Place place = detail::AsideFile::Place::kReplace;

  void OpenForReading();
  void Close() noexcept {
    if (descriptor >= 0) close(std::exchange(descriptor, -1));
    target.reset();
  }
  [[noreturn]] void Fail(const std::string& reason) const {
    throw StorageError("\"" + path + "\" cannot be read: " + reason);
  }
};

void TQvFileStream::Impl::OpenForReading() {
  // Without blocking, for a name may be that of a pipe to which nobody writes.
  descriptor =
      detail::Retried([this] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); });
  if (descriptor < 0) Fail(std::strerror(errno));
  struct stat status {};
  if (fstat(descriptor, &status) != 0) Fail(std::strerror(errno));
  if (!S_ISREG(status.st_mode)) {
    Close();
    Fail("it is no plain file");
  }
}

TQvFileStream::TQvFileStream() : impl_(std::make_unique<Impl>()) {}

TQvFileStream::~TQvFileStream() {
  impl_->Close();
}

bool TQvFileStream::Open(const std::string& path, QvOpenMode mode) {
  Close();
  lastError_.clear();
  impl_->path = path;
  try {
    if (mode != QvOpenMode::kRead) {
      impl_->place = mode == QvOpenMode::kCreate ? detail::AsideFile::Place::kReplace
                                                 : detail::AsideFile::Place::kMustBeFree;
      impl_->target = std::make_unique<detail::AsideFile>(path);
    } else {
      impl_->OpenForReading();
    }
    return true;
  } catch (const StorageError& error) {
    lastError_ = error.what();
    return false;
  }
}

std::size_t TQvFileStream::Read(void* buffer, std::size_t size) {
  if (impl_->descriptor < 0) impl_->Fail("it is not open for reading");
  const ssize_t count =
      detail::Retried([&] { return read(impl_->descriptor, buffer, std::min(size, kReadPiece)); });
  if (count < 0) impl_->Fail(std::strerror(errno));
  return static_cast<std::size_t>(count);
}

void TQvFileStream::Write(const void* data, std::size_t size) {
  if (impl_->target == nullptr) {
    throw StorageError("\"" + impl_->path + "\" is not open for writing");
  }
  impl_->target->Write(data, size);
}

std::uint64_t TQvFileStream::Size() const {
  struct stat status {};
  if (impl_->descriptor < 0) impl_->Fail("it is not open for reading");
  if (fstat(impl_->descriptor, &status) != 0) impl_->Fail(std::strerror(errno));
  return static_cast<std::uint64_t>(status.st_size);
}

void TQvFileStream::Commit() {
  if (impl_->target == nullptr) {
    throw StorageError("\"" + impl_->path + "\" is not open for writing");
  }
  impl_->target->Publish(impl_->place);
  impl_->target.reset();
}

void TQvFileStream::Close() noexcept {
  impl_->Close();
}

}  // namespace QvPlatform
