#include "platform/storage/page_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/storage/stream.h"
#include "platform/text/ascii.h"

namespace QvPlatform::detail {

namespace {

/// Places in the head of the file.
constexpr std::size_t kFileHead = 100;
constexpr std::size_t kPageSizeAt = 16;
constexpr std::size_t kReservedAt = 20;
constexpr std::size_t kFreeListAt = 32;
constexpr std::size_t kUserVersionAt = 60;
/// The size of pages where the file does not state one.
constexpr std::size_t kUsualPage = 4096;
constexpr std::string_view kMagic("SQLite format 3\0", 16);
/// Heads of pages that lead to others and of those that do not.
constexpr std::size_t kNodeHead = 12;
constexpr std::size_t kLeafHead = 8;
/// More columns than any table has.
constexpr std::size_t kMostColumns = std::size_t{1} << 11;
/// SQLite itself follows no way that is longer.
constexpr int kDeepest = 20;

std::uint32_t Number(std::string_view bytes, std::size_t at, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < size; ++i)
    value = (value << 8) | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

/// Takes numbers and pieces off the front of bytes; once they do not suffice nothing more is given.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}

  [[nodiscard]] bool Failed() const { return failed_; }
  [[nodiscard]] std::string_view Rest() const { return rest_; }
  std::string_view Take(std::uint64_t size) {
    if (size > rest_.size()) failed_ = true;
    if (failed_) return {};
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return taken;
  }
  /// A number of seven bits a byte, the last of nine bytes with eight.
  std::uint64_t TakeVarint() {
    std::uint64_t value = 0;
    for (int i = 0; i < 9; ++i) {
      const std::string_view byte = Take(1);
      if (failed_) return 0;
      const auto bits = static_cast<unsigned char>(byte.front());
      if (i == 8) return (value << 8) | bits;
      value = (value << 7) | (bits & 0x7F);
      if (bits < 0x80) break;
    }
    return value;
  }
  /// A signed number of so many bytes.
  std::int64_t TakeInteger(std::size_t size) {
    const std::string_view bytes = Take(size);
    if (failed_) return 0;
    std::uint64_t value = (static_cast<unsigned char>(bytes.front()) & 0x80) != 0 ? ~0ULL : 0;
    for (const char c : bytes)
      value = (value << 8) | static_cast<unsigned char>(c);
    return static_cast<std::int64_t>(value);
  }

 private:
  std::string_view rest_;
  bool failed_ = false;
};

/// A column whose kind and size the number tells.
StoredValue TakeValue(std::uint64_t type, Reader* body) {
  constexpr std::size_t kSizes[] = {0, 1, 2, 3, 4, 6, 8};
  if (type == 0) return {};
  if (type <= 6) return body->TakeInteger(kSizes[type]);
  if (type == 7) return std::bit_cast<double>(body->TakeInteger(8));
  if (type < 10) return static_cast<std::int64_t>(type - 8);
  const std::string_view bytes = body->Take((type - 12) / 2);
  if (type % 2 == 0) return StoredBytes{std::string(bytes)};
  return std::string(bytes);
}

std::optional<StoredRecord> ReadRecord(std::string_view payload, std::int64_t id) {
  Reader head(payload);
  const std::uint64_t headSize = head.TakeVarint();
  const std::size_t numberSize = payload.size() - head.Rest().size();
  if (head.Failed() || headSize < numberSize || headSize > payload.size()) return std::nullopt;
  Reader types(payload.substr(numberSize, headSize - numberSize));
  Reader body(payload.substr(headSize));
  StoredRecord record{id, {}};
  while (!types.Rest().empty() && record.values.size() < kMostColumns) {
    const std::uint64_t type = types.TakeVarint();
    if (types.Failed() || type == 10 || type == 11) return std::nullopt;
    record.values.push_back(TakeValue(type, &body));
  }
  // What is left over would be the end of another record.
  if (body.Failed() || !body.Rest().empty() || record.values.empty()) return std::nullopt;
  return record;
}

}  // namespace

PageFile::PageFile(std::string bytes) : bytes_(std::move(bytes)) {
  pageSize_ = kUsualPage;
  if (bytes_.size() >= kFileHead) {
    const std::size_t stated = Number(bytes_, kPageSizeAt, 2);
    const std::size_t size = stated == 1 ? 65536 : stated;
    if (size >= 512 && std::has_single_bit(size)) pageSize_ = size;
  }
  const bool sound = bytes_.starts_with(kMagic);
  const std::size_t reserved =
      sound ? std::min<std::size_t>(Number(bytes_, kReservedAt, 1), 32) : 0;
  usable_ = pageSize_ - reserved;
  // A page that is cut short is read as far as it goes.
  bytes_.resize((bytes_.size() + pageSize_ - 1) / pageSize_ * pageSize_);
}

std::uint32_t PageFile::PageCount() const {
  return static_cast<std::uint32_t>(bytes_.size() / pageSize_);
}

std::uint32_t PageFile::UserVersion() const {
  return bytes_.starts_with(kMagic) ? Number(bytes_, kUserVersionAt, 4) : 0;
}

std::string_view PageFile::Bytes(std::uint32_t page) const {
  if (page == 0 || page > PageCount()) return {};
  return std::string_view(bytes_).substr((page - 1) * pageSize_, usable_);
}

PageFile::Page PageFile::Open(std::uint32_t number) const {
  Page page;
  page.number = number;
  page.bytes = Bytes(number);
  page.head = number == 1 ? kFileHead : 0;
  if (page.bytes.size() < page.head + kNodeHead) return page;
  const std::map<int, Kind> kinds{
      {2, Kind::kIndexNode}, {5, Kind::kTableNode}, {10, Kind::kIndexLeaf}, {13, Kind::kTableLeaf}};
  const auto kind = kinds.find(page.bytes[page.head]);
  if (kind == kinds.end()) return page;
  page.kind = kind->second;
  const bool leads = page.kind == Kind::kIndexNode || page.kind == Kind::kTableNode;
  page.cells = page.head + (leads ? kNodeHead : kLeafHead);
  page.cellCount =
      std::min<std::size_t>(Number(page.bytes, page.head + 3, 2), (usable_ - page.cells) / 2);
  return page;
}

std::optional<std::size_t> PageFile::Cell(const Page& page, std::size_t index) const {
  const std::size_t at = Number(page.bytes, page.cells + 2 * index, 2);
  const bool inside = at >= page.cells + 2 * page.cellCount && at + 4 <= page.bytes.size();
  return inside ? std::optional(at) : std::nullopt;
}

std::optional<std::string> PageFile::Payload(std::string_view cell, std::uint64_t size,
                                             bool ofTable) const {
  if (size > bytes_.size()) return std::nullopt;
  const std::size_t most = ofTable ? usable_ - 35 : (usable_ - 12) * 64 / 255 - 23;
  if (size <= most) {
    if (size > cell.size()) return std::nullopt;
    return std::string(cell.substr(0, size));
  }
  const std::size_t least = (usable_ - 12) * 32 / 255 - 23;
  const std::size_t fitting = least + (size - least) % (usable_ - 4);
  const std::size_t here = fitting <= most ? fitting : least;
  if (here + 4 > cell.size()) return std::nullopt;
  std::string payload(cell.substr(0, here));
  std::uint32_t next = Number(cell, here, 4);
  while (payload.size() < size) {
    const std::string_view page = Bytes(next);
    if (page.empty()) return std::nullopt;
    payload += page.substr(4, size - payload.size());
    next = Number(page, 0, 4);
  }
  return payload;
}

std::optional<StoredRecord> PageFile::ReadTableCell(std::string_view cell) const {
  Reader reader(cell);
  const std::uint64_t size = reader.TakeVarint();
  const auto id = static_cast<std::int64_t>(reader.TakeVarint());
  if (reader.Failed()) return std::nullopt;
  const std::optional<std::string> payload = Payload(reader.Rest(), size, true);
  return payload ? ReadRecord(*payload, id) : std::nullopt;
}

std::optional<StoredRecord> PageFile::ReadIndexCell(std::string_view cell, bool inner) const {
  Reader reader(cell);
  if (inner) static_cast<void>(reader.Take(4));
  const std::uint64_t size = reader.TakeVarint();
  if (reader.Failed()) return std::nullopt;
  const std::optional<std::string> payload = Payload(reader.Rest(), size, false);
  return payload ? ReadRecord(*payload, 0) : std::nullopt;
}

void PageFile::ReadLeaf(const Page& page, StoredTable* table) const {
  for (std::size_t i = 0; i < page.cellCount; ++i) {
    const std::optional<std::size_t> at = Cell(page, i);
    std::optional<StoredRecord> record;
    if (at) record = ReadTableCell(page.bytes.substr(*at));
    if (record) {
      table->records.push_back(*std::move(record));
    } else {
      table->damaged.insert(page.number);
    }
  }
}

std::vector<std::uint32_t> PageFile::Children(const Page& page, StoredTable* table) const {
  std::vector<std::uint32_t> children;
  for (std::size_t i = 0; i < page.cellCount; ++i) {
    if (const std::optional<std::size_t> at = Cell(page, i)) {
      children.push_back(Number(page.bytes, *at, 4));
    } else {
      table->damaged.insert(page.number);
    }
  }
  children.push_back(Number(page.bytes, page.head + 8, 4));
  return children;
}

void PageFile::Walk(std::uint32_t number, int depth, Visit* visited, StoredTable* table) const {
  // A page that is met twice would give its records twice, and a round never end.
  if (depth > kDeepest || !visited->insert(number).second) {
    table->damaged.insert(number);
    return;
  }
  const Page page = Open(number);
  if (page.kind == Kind::kTableLeaf) {
    ReadLeaf(page, table);
  } else if (page.kind == Kind::kTableNode) {
    for (const std::uint32_t child : Children(page, table))
      Walk(child, depth + 1, visited, table);
  } else {
    table->damaged.insert(number);
  }
}

StoredTable PageFile::ReadTable(std::uint32_t root) const {
  StoredTable table;
  Visit visited;
  Walk(root, 0, &visited, &table);
  return table;
}

std::vector<StoredRecord> PageFile::ReadIndexes() const {
  std::vector<StoredRecord> records;
  for (std::uint32_t number = 1; number <= PageCount(); ++number) {
    const Page page = Open(number);
    const bool inner = page.kind == Kind::kIndexNode;
    if (!inner && page.kind != Kind::kIndexLeaf) continue;
    for (std::size_t i = 0; i < page.cellCount; ++i) {
      const std::optional<std::size_t> at = Cell(page, i);
      if (!at) continue;
      if (auto record = ReadIndexCell(page.bytes.substr(*at), inner)) {
        records.push_back(*std::move(record));
      }
    }
  }
  return records;
}

std::map<std::string, std::uint32_t> PageFile::ReadRoots(bool* whole) const {
  // The columns are type, name, name of the table, first page and SQL.
  constexpr std::size_t kColumns = 5;
  const StoredTable schema = ReadTable(1);
  *whole = schema.damaged.empty();
  std::map<std::string, std::uint32_t> roots;
  for (const StoredRecord& record : schema.records) {
    if (record.values.size() != kColumns) continue;
    const auto* name = std::get_if<std::string>(&record.values[1]);
    const auto* root = std::get_if<std::int64_t>(&record.values[3]);
    if (name == nullptr || root == nullptr || *root < 2 || *root > PageCount()) {
      *whole = false;
    } else {
      roots[LowerAscii(*name)] = static_cast<std::uint32_t>(*root);
    }
  }
  return roots;
}

PageFile::Visit PageFile::FreePages() const {
  Visit free;
  if (!bytes_.starts_with(kMagic)) return free;
  std::uint32_t trunk = Number(bytes_, kFreeListAt, 4);
  while (trunk != 0 && trunk <= PageCount() && free.insert(trunk).second) {
    const std::string_view page = Bytes(trunk);
    const std::size_t count = std::min<std::size_t>(Number(page, 4, 4), page.size() / 4 - 2);
    for (std::size_t i = 0; i < count; ++i)
      free.insert(Number(page, 8 + 4 * i, 4));
    trunk = Number(page, 0, 4);
  }
  return free;
}

std::vector<StoredRecord> PageFile::ReadStrays(
    const std::map<std::string, std::uint32_t>& roots) const {
  Visit known = FreePages();
  known.insert(1);
  StoredTable passed;
  for (const auto& [name, root] : roots)
    Walk(root, 0, &known, &passed);
  StoredTable strays;
  for (std::uint32_t number = 1; number <= PageCount(); ++number) {
    if (known.contains(number)) continue;
    const Page page = Open(number);
    if (page.kind == Kind::kTableLeaf) ReadLeaf(page, &strays);
  }
  return std::move(strays.records);
}

std::string ReadDamagedFile(const std::string& path, bool* whole) {
  constexpr std::size_t kPiece = 4096;
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (descriptor < 0 || fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    const int reason = errno;
    if (descriptor >= 0) close(descriptor);
    throw StorageError("\"" + path + "\" cannot be read: " + std::strerror(reason));
  }
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  *whole = true;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t size = std::min(kPiece, bytes.size() - at);
    const ssize_t count = pread(descriptor, &bytes[at], size, static_cast<off_t>(at));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) *whole = false;
    at += count > 0 ? static_cast<std::size_t>(count) : size;
  }
  close(descriptor);
  return bytes;
}

}  // namespace QvPlatform::detail
