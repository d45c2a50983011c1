#include "platform/storage/resource_session.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/storage/container.h"

namespace QvPlatform {

using detail::Container;

struct TQvResourceSession::Impl {
  enum class State { kClosed, kReading, kWriting };

  State state = State::kClosed;
  std::string name;
  Container::Place place;
  std::shared_ptr<Container> container;

  // Reading. A table's bytes are all in `bytes` once they were asked for: making the image of a
  // table costs more than opening it, and most that look whether it opens never read it. Of a blob
  // `bytes` is the part that was read last.
  Container::Blob blob;
  bool isBlob = false;
  bool mustBeFree = false;
  bool imagePending = false;
  std::uint64_t size = 0;
  std::uint64_t position = 0;
  std::uint64_t loadedPart = 0;
  std::string bytes;

  void OpenForReading();
  void OpenForWriting();
  void MakeImage();
  void LoadPartAt(std::uint64_t at);
  void Close() noexcept;
  [[noreturn]] void Fail(const std::string& reason) const {
    throw StorageError("\"" + name + "\" " + reason);
  }
};

void TQvResourceSession::Impl::OpenForReading() {
  if (!place.exists) Fail("cannot be read: there is no such container");
  container = Container::Open(place.path);
  isBlob = container->FindBlob(place.resource, &blob);
  if (isBlob) {
    size = blob.size;
    if (size > 0) {
      bytes = container->ReadPart(blob, 0);
      loadedPart = 0;
    }
  } else if (container->HasTable(place.resource)) {
    imagePending = true;
  } else {
    Fail("cannot be read: the container has no such resource");
  }
  state = State::kReading;
}

void TQvResourceSession::Impl::OpenForWriting() {
  if (detail::IsReservedResource(place.resource)) {
    Fail("cannot be written: the name is reserved");
  }
  if (place.exists) {
    container = Container::Open(place.path);
    if (container->Transactions().Db().IsReadOnly("main")) {
      Fail("cannot be written: the container is open for reading only");
    }
  } else {
    const std::filesystem::path folder = std::filesystem::path(place.path).parent_path();
    if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0) {
      Fail("cannot be created: " + std::string(std::strerror(errno)));
    }
  }
  state = State::kWriting;
}

void TQvResourceSession::Impl::MakeImage() {
  if (!imagePending) return;
  bytes = container->ReadTable(place.resource);
  size = bytes.size();
  imagePending = false;
}

void TQvResourceSession::Impl::LoadPartAt(std::uint64_t at) {
  const std::uint64_t part = at / Container::kPartSize;
  if (part == loadedPart) return;
  bytes = container->ReadPart(blob, part);
  loadedPart = part;
}

void TQvResourceSession::Impl::Close() noexcept {
  state = State::kClosed;
  container.reset();
  bytes.clear();
  bytes.shrink_to_fit();
  blob = {};
  isBlob = false;
  imagePending = false;
  size = 0;
  position = 0;
  loadedPart = 0;
}

TQvResourceSession::TQvResourceSession() : impl_(std::make_unique<Impl>()) {}

TQvResourceSession::~TQvResourceSession() = default;

bool TQvResourceSession::Open(const std::string& name, QvOpenMode mode) {
  Close();
  lastError_.clear();
  impl_->name = name;
  try {
    impl_->place = Container::Resolve(name);
    if (mode != QvOpenMode::kRead) {
      impl_->mustBeFree = mode == QvOpenMode::kCreateNew;
      impl_->OpenForWriting();
    } else {
      impl_->OpenForReading();
    }
    return true;
  } catch (const StorageError& error) {
    Close();
    lastError_ = error.what();
    return false;
  }
}

std::size_t TQvResourceSession::Read(void* buffer, std::size_t size) {
  Impl& impl = *impl_;
  if (impl.state != Impl::State::kReading) impl.Fail("is not open for reading");
  impl.MakeImage();
  if (impl.position >= impl.size || size == 0) return 0;
  std::size_t from = static_cast<std::size_t>(impl.position);
  if (impl.isBlob) {
    impl.LoadPartAt(impl.position);
    from = static_cast<std::size_t>(impl.position % Container::kPartSize);
  }
  if (from >= impl.bytes.size()) impl.Fail("is cut short");
  const std::size_t count = std::min(size, impl.bytes.size() - from);
  std::memcpy(buffer, impl.bytes.data() + from, count);
  impl.position += count;
  return count;
}

void TQvResourceSession::Write(const void* data, std::size_t size) {
  if (impl_->state != Impl::State::kWriting) impl_->Fail("is not open for writing");
  impl_->bytes.append(static_cast<const char*>(data), size);
}

std::uint64_t TQvResourceSession::Size() const {
  if (impl_->state != Impl::State::kReading) impl_->Fail("is not open for reading");
  impl_->MakeImage();
  return impl_->size;
}

void TQvResourceSession::Commit() {
  Impl& impl = *impl_;
  if (impl.state != Impl::State::kWriting) impl.Fail("is not open for writing");
  if (impl.container == nullptr) impl.container = Container::OpenOrCreate(impl.place.path);
  impl.container->Write(
      impl.place.resource, impl.bytes,
      impl.mustBeFree ? Container::Target::kMustBeFree : Container::Target::kReplaced);
  impl.Close();
}

void TQvResourceSession::Close() noexcept {
  impl_->Close();
}

bool TQvResourceSession::Exists(const std::string& name) {
  try {
    const Container::Place place = Container::Resolve(name);
    if (!place.exists) return false;
    return Container::Open(place.path)->Has(place.resource);
  } catch (const StorageError&) {
    return false;
  }
}

bool TQvResourceSession::IsAbsent(const std::string& name) {
  const Container::Place place = Container::Resolve(name);
  if (!place.exists) {
    std::error_code error;
    const auto type = std::filesystem::symlink_status(place.path, error).type();
    if (type == std::filesystem::file_type::not_found) return true;
    throw StorageError("\"" + place.path + "\" cannot be looked at: " + error.message());
  }
  return !Container::Open(place.path)->Has(place.resource);
}

std::vector<std::string> TQvResourceSession::NamesBehind(const std::string& prefix) {
  const Container::Place place = Container::Resolve(prefix);
  if (!place.exists) return {};
  std::vector<std::string> names = Container::Open(place.path)->BlobNames(place.resource);
  for (std::string& name : names)
    name.erase(0, place.resource.size());
  return names;
}

std::vector<std::string> TQvResourceSession::TablesBehind(const std::string& prefix) {
  const Container::Place place = Container::Resolve(prefix);
  if (!place.exists) return {};
  std::vector<std::string> names = Container::Open(place.path)->TableNames(place.resource);
  for (std::string& name : names)
    name.erase(0, place.resource.size());
  return names;
}

bool TQvResourceSession::Delete(const std::string& name) {
  try {
    const Container::Place place = Container::Resolve(name);
    return place.exists && Container::Open(place.path)->Delete(place.resource);
  } catch (const StorageError&) {
    return false;
  }
}

}  // namespace QvPlatform
