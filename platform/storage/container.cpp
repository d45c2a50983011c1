#include "platform/storage/container.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>

#include "platform/storage/aside_file.h"
#include "platform/storage/journal_names.h"
#include "platform/storage/paths.h"
#include "platform/storage/retried.h"
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

/// What stands under a path.
enum class Standing { kNothing, kContainer, kOther };

/// `unread` is why the system cannot tell, which leaves open what is there; else it is unchanged.
Standing StandingAt(const std::string& path, std::string* unread) {
  const auto fail = [&](int reason) {
    *unread = "\"" + path + "\" cannot be read: " + std::strerror(reason);
    return Standing::kOther;
  };
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    const bool isAbsent = errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG;
    return isAbsent ? Standing::kNothing : fail(errno);
  }
  if (!S_ISREG(status.st_mode)) return Standing::kOther;
  if (FindOpen(CanonicalPath(path)) != nullptr) return Standing::kContainer;
  const int descriptor =
      Retried([&path] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); });
  if (descriptor < 0) return fail(errno);
  std::string header(kFileHeaderSize, '\0');
  const ssize_t count = Retried([&] { return read(descriptor, header.data(), header.size()); });
  const int reason = errno;
  close(descriptor);
  if (count < 0) return fail(reason);
  header.resize(static_cast<std::size_t>(count));
  return ApplicationIdOf(header) == kContainerId ? Standing::kContainer : Standing::kOther;
}

/// Whether the file says of itself that it has a write-ahead log.
bool IsLogged(const Connection& connection) {
  constexpr std::size_t kWriteVersionAt = 18;
  constexpr std::size_t kReadVersionAt = 19;
  constexpr char kLogVersion = 2;
  const std::string header = connection.ReadFileHeader("main");
  return header.size() > kReadVersionAt &&
         (header[kWriteVersionAt] == kLogVersion || header[kReadVersionAt] == kLogVersion);
}

Connection Checked(Connection connection) {
  CheckFile(connection, kKind);
  static_cast<void>(connection.QueryInteger("SELECT count(*) FROM qv_blobs"));
  return connection;
}

/// Takes the log of an older program into the file and has it do without from now on.
void GiveUpLog(const std::string& path) {
  Connection connection = Connection::OpenLogged(path);
  connection.Execute("PRAGMA synchronous=EXTRA");
  const std::string mode = connection.QueryText("PRAGMA journal_mode=DELETE");
  if (mode == "delete") return;
  throw StorageError("\"" + path + "\": its write-ahead log cannot be taken in");
}

/// Opens a container that has a log: without it, or on a medium that takes no more, as what cannot
/// change.
Connection OpenLoggedContainer(const std::string& path) {
  if (access(path.c_str(), W_OK) == 0 && access(FolderOf(path).c_str(), W_OK) == 0) {
    GiveUpLog(path);
    return Connection::OpenFile(path);
  }
  std::error_code error;
  const std::string log = path + std::string(kLogEnding);
  if (fs::exists(log, error) && fs::file_size(log, error) != 0) {
    throw StorageError("\"" + path + "\" cannot be read where it cannot be written: its last " +
                       "changes lie in \"" + log + "\" and have to be taken in first");
  }
  return Connection::OpenImmutable(path);
}

Connection OpenContainerFile(const std::string& path) {
  std::error_code error;
  if (!fs::exists(path, error)) throw StorageError("\"" + path + "\": there is no such container");
  Connection connection = Connection::OpenFile(path);
  CheckMark(connection, kContainerId, kKind);
  if (IsLogged(connection)) return Checked(OpenLoggedContainer(path));
  connection.Execute("PRAGMA synchronous=EXTRA");
  return Checked(std::move(connection));
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
  std::string unread;
  for (std::size_t dot = name.find('.', start + 1); dot != std::string::npos;
       dot = name.find('.', dot + 1)) {
    if (dot + 1 == name.size()) break;
    Place place{name.substr(0, dot), name.substr(dot + 1), true};
    const bool named = LowerAscii(place.path).ends_with(kExtension);
    const Standing standing = StandingAt(place.path, &unread);
    if (standing == Standing::kContainer) {
      found = std::move(place);
    } else if (standing == Standing::kOther) {
      if (named || foreign.empty()) foreign = place.path;
    } else if (named && !fresh) {
      place.exists = false;
      fresh = std::move(place);
    }
  }
  // What could not be read may be the container that is meant, and none is made in its place.
  if (!found && !unread.empty()) throw StorageError(unread);
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
    : session_(
          std::make_unique<Session>(OpenContainerFile(path), std::vector<std::string>{"main"})) {}

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

namespace {

std::vector<std::string> NamesLike(Connection& connection, const std::string& prefix,
                                   const std::string& select, const std::string& order) {
  Statement query = connection.Prepare(select +
                                       " WHERE lower(substr(name, 1, length(?1))) = lower(?1) "
                                       "AND length(name) > length(?1)" +
                                       order);
  query.BindText(1, prefix);
  std::vector<std::string> names;
  while (query.Step())
    names.emplace_back(query.ColumnText(0));
  return names;
}

}  // namespace

std::vector<std::string> Container::BlobNames(const std::string& prefix) {
  return NamesLike(session_->Db(), prefix, "SELECT name FROM qv_blobs", " ORDER BY id");
}

std::vector<std::string> Container::TableNames(const std::string& prefix) {
  return NamesLike(session_->Db(), prefix,
                   "SELECT name FROM (SELECT DISTINCT table_name AS name FROM qv_fields)", "");
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
