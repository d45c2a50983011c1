#include "platform/storage/container.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>

#include "platform/storage/aside_file.h"
#include "platform/storage/file_use.h"
#include "platform/storage/paths.h"
#include "platform/storage/table_format.h"
#include "platform/storage/table_state.h"
#include "platform/storage/table_upgrade.h"
#include "platform/text/ascii.h"

namespace QvPlatform::detail {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kExtension = ".qvdb";
constexpr const char* kKind = "container";

/// The containers that this process has open.
struct OpenContainers {
  std::mutex mutex;
  std::map<std::string, std::weak_ptr<Container>> containers;
};

OpenContainers& Registry() {
  static OpenContainers registry;
  return registry;
}

/// The container that is open under this path already; not one whose file is gone from there.
std::shared_ptr<Container> FindOpen(const std::string& canonical) {
  OpenContainers& registry = Registry();
  const std::lock_guard lock(registry.mutex);
  const auto entry = registry.containers.find(canonical);
  if (entry == registry.containers.end()) return nullptr;
  std::shared_ptr<Container> container = entry->second.lock();
  const bool here = container != nullptr && !container->Transactions().Db().HasMoved("main");
  return here ? container : nullptr;
}

bool IsContainerFile(const std::string& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return false;
  if (FindOpen(CanonicalPath(path)) != nullptr) return true;
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  std::string header(kFileHeaderSize, '\0');
  const ssize_t count = read(descriptor, header.data(), header.size());
  CloseBesideConnections(descriptor);
  header.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return ApplicationIdOf(header) == kContainerId;
}

/// Opens the file for writing, or where its folder takes no log, as what cannot change.
Connection OpenContainerFile(const std::string& path) {
  std::error_code error;
  if (!fs::exists(path, error)) throw StorageError("\"" + path + "\": there is no such container");
  try {
    Connection connection = Connection::OpenFile(path);
    CheckMark(connection, kContainerId, kKind);
    if (!connection.IsReadOnly("main")) {
      connection.Execute("PRAGMA journal_mode=DELETE; PRAGMA synchronous=EXTRA");
    }
    CheckFile(connection, kKind);
    static_cast<void>(connection.QueryInteger("SELECT count(*) FROM qv_blobs"));
    return connection;
  } catch (const SqliteError&) {
    if (access(fs::path(path).parent_path().c_str(), W_OK) == 0 ||
        fs::exists(path + "-wal", error)) {
      throw;
    }
  }
  Connection connection = Connection::OpenImmutable(path);
  CheckMark(connection, kContainerId, kKind);
  CheckFile(connection, kKind);
  return connection;
}

/// Why a name leads to no container, told of the prefix that looks most like one.
[[noreturn]] void RefuseName(const std::string& name, const std::string& foreign) {
  if (foreign.empty()) throw StorageError("\"" + name + "\": there is no such container");
  std::error_code error;
  throw StorageError("\"" + foreign + "\" is no container but a " +
                     (fs::is_directory(foreign, error) ? "folder" : "file of another kind"));
}

}  // namespace

bool IsReservedResource(std::string_view resource) {
  const std::string lower = LowerAscii(resource);
  return lower.empty() || lower.starts_with("qv_") || lower.starts_with("sqlite_");
}

Container::Place Container::Resolve(const std::string& name) {
  const std::size_t separator = name.find_last_of('/');
  const std::size_t start = separator == std::string::npos ? 0 : separator + 1;
  std::optional<Place> found;
  std::optional<Place> fresh;
  std::string foreign;
  for (std::size_t dot = name.find('.', start + 1); dot != std::string::npos;
       dot = name.find('.', dot + 1)) {
    if (dot + 1 == name.size()) break;
    Place place{name.substr(0, dot), name.substr(dot + 1), true};
    std::error_code error;
    const bool named = LowerAscii(place.path).ends_with(kExtension);
    if (IsContainerFile(place.path)) {
      found = std::move(place);
    } else if (fs::exists(place.path, error)) {
      if (named || foreign.empty()) foreign = place.path;
    } else if (named && !fresh) {
      place.exists = false;
      fresh = std::move(place);
    }
  }
  if (!found && !fresh) RefuseName(name, foreign);
  return found ? *found : *fresh;
}

std::shared_ptr<Container> Container::Open(const std::string& path) {
  const std::string canonical = CanonicalPath(path);
  if (std::shared_ptr<Container> open = FindOpen(canonical)) return open;
  auto container = std::make_shared<Container>(canonical);
  OpenContainers& registry = Registry();
  const std::lock_guard lock(registry.mutex);
  registry.containers[canonical] = container;
  return container;
}

std::shared_ptr<Container> Container::OpenOrCreate(const std::string& path) {
  std::error_code error;
  if (!fs::exists(path, error)) {
    const std::string image = MakeContainerImage();
    AsideFile file(path);
    file.Write(image.data(), image.size());
    try {
      file.Publish(AsideFile::Place::kMustBeFree);
    } catch (const StorageError&) {
      // Another process may have made it just now; then that one is as good.
      if (!fs::exists(path, error)) throw;
    }
  }
  return Open(path);
}

Container::Container(const std::string& path)
    : path_(path),
      session_(
          std::make_unique<Session>(OpenContainerFile(path), std::vector<std::string>{"main"})) {}

Container::~Container() {
  const bool replaced = session_->Db().HasMoved("main");
  session_.reset();
  if (!replaced) return;
  // SQLite leaves the log of a file that went away where it is, and would then take it for that of
  // the file which has come into its place.
  std::error_code error;
  fs::remove(path_ + "-wal", error);
  fs::remove(path_ + "-shm", error);
}

bool Container::HasTable(const std::string& resource) {
  return HasRecordTable(session_->Db(), resource);
}

bool Container::FindBlob(const std::string& resource, Blob* blob) {
  Statement query = session_->Db().Prepare("SELECT id, size FROM qv_blobs WHERE name = ?");
  query.BindText(1, resource);
  if (!query.Step()) return false;
  *blob = {query.ColumnInteger(0), static_cast<std::uint64_t>(query.ColumnInteger(1))};
  return true;
}

std::vector<std::string> Container::BlobNames(const std::string& prefix) {
  Statement query = session_->Db().Prepare(
      "SELECT name FROM qv_blobs WHERE lower(substr(name, 1, length(?1))) = lower(?1) "
      "AND length(name) > length(?1) ORDER BY id");
  query.BindText(1, prefix);
  std::vector<std::string> names;
  while (query.Step())
    names.emplace_back(query.ColumnText(0));
  return names;
}

std::string Container::ReadTable(const std::string& resource) {
  const ReadScope scope(*session_);
  return MakeTableImage(session_->Db(), resource);
}

std::string Container::ReadPart(const Blob& blob, std::uint64_t part) {
  Statement query =
      session_->Db().Prepare("SELECT data FROM qv_blob_parts WHERE blob = ? AND part = ?");
  query.BindInteger(1, blob.id);
  query.BindInteger(2, static_cast<std::int64_t>(part));
  if (!query.Step()) {
    throw StorageError("\"" + session_->Db().Name() +
                       "\": a resource was replaced while it was read");
  }
  return std::string(query.ColumnBytes(0));
}

void Container::Remove(const std::string& resource) {
  if (HasTable(resource)) DropRecordTable(session_->Db(), resource);
  Blob blob;
  if (!FindBlob(resource, &blob)) return;
  const std::string id = std::to_string(blob.id);
  session_->Db().Execute("DELETE FROM qv_blob_parts WHERE blob = " + id +
                         "; DELETE FROM qv_blobs WHERE id = " + id);
}

void Container::WriteBlob(const std::string& resource, std::string_view bytes) {
  Statement name = session_->Db().Prepare("INSERT INTO qv_blobs (name, size) VALUES (?, ?)");
  name.BindText(1, resource);
  name.BindInteger(2, static_cast<std::int64_t>(bytes.size()));
  name.Run();
  const std::int64_t id = session_->Db().LastRowId();
  Statement insert =
      session_->Db().Prepare("INSERT INTO qv_blob_parts (blob, part, data) VALUES (?, ?, ?)");
  for (std::int64_t part = 0; !bytes.empty(); ++part) {
    const std::string_view piece = bytes.substr(0, kPartSize);
    insert.BindInteger(1, id);
    insert.BindInteger(2, part);
    insert.BindBytes(3, piece);
    insert.Run();
    bytes.remove_prefix(piece.size());
  }
}

void Container::BeginWriting() {
  session_->BeginFile("main");
  if (!HasSums(session_->Db(), "main")) AddSums(session_->Db(), "main");
}

bool Container::Has(const std::string& resource) {
  Blob blob;
  return HasTable(resource) || FindBlob(resource, &blob);
}

void Container::Write(const std::string& resource, std::string_view bytes, Target target) {
  const std::unique_ptr<Connection> image = OpenTableImage(bytes);
  WriteScope scope(*session_, true);
  if (target == Target::kMustBeFree && Has(resource)) {
    throw StorageError("\"" + session_->Db().Name() + "." + resource + "\" is there already");
  }
  BeginWriting();
  Remove(resource);
  if (image != nullptr) {
    CopyRecordTable(*image, kRecordTable, session_->Db(), resource);
  } else {
    WriteBlob(resource, bytes);
  }
  scope.Done(nullptr);
}

bool Container::Delete(const std::string& resource) {
  WriteScope scope(*session_, true);
  if (!Has(resource)) return false;
  BeginWriting();
  Remove(resource);
  scope.Done(nullptr);
  return true;
}

}  // namespace QvPlatform::detail
