#include "platform/storage/journal_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "platform/storage/retried.h"
#include "platform/storage/stream.h"

namespace QvPlatform::detail {

namespace {

constexpr std::string_view kJournalMagic("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8);
constexpr std::size_t kJournalHeaderSize = 28;
constexpr std::string_view kDatabaseMagic("SQLite format 3\0", 16);
constexpr std::size_t kDatabaseHeaderSize = 100;
/// Number of records of a journal that was never flushed: as many as there are.
constexpr std::uint32_t kUncounted = 0xFFFFFFFF;
/// Behind the name of a super-journal: its length, a sum and the magic.
constexpr off_t kSuperTail = 16;
constexpr std::uint32_t kLongestPath = 4096;

/// An open file of which parts are read.
class Bytes {
 public:
  explicit Bytes(std::string path)
      : path_(std::move(path)), descriptor_(Retried([this] {
          return open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
        })) {
    if (descriptor_ < 0 && errno == ENOENT) return;
    if (descriptor_ < 0 || fstat(descriptor_, &status_) != 0) Fail(std::strerror(errno));
    if (!S_ISREG(status_.st_mode)) Fail("it is no plain file");
  }
  ~Bytes() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;

  [[nodiscard]] bool IsThere() const { return descriptor_ >= 0; }
  [[nodiscard]] const struct stat& Status() const { return status_; }
  /// Fewer at the end of the file.
  [[nodiscard]] std::string At(off_t offset, std::size_t size) const {
    std::string bytes(size, '\0');
    const ssize_t count =
        Retried([&] { return pread(descriptor_, bytes.data(), bytes.size(), offset); });
    if (count < 0) Fail(std::strerror(errno));
    bytes.resize(static_cast<std::size_t>(count));
    return bytes;
  }

 private:
  [[noreturn]] void Fail(const std::string& reason) const {
    if (descriptor_ >= 0) close(descriptor_);
    throw StorageError("\"" + path_ + "\" cannot be read: " + reason);
  }

  std::string path_;
  int descriptor_;
  struct stat status_ {};
};

/// A number of four bytes; 0 behind the end.
std::uint32_t Number(std::string_view bytes, std::size_t at) {
  if (bytes.size() < at + 4) return 0;
  std::uint32_t number = 0;
  for (std::size_t i = at; i < at + 4; ++i)
    number = (number << 8) | static_cast<unsigned char>(bytes[i]);
  return number;
}

bool IsPowerOfTwo(std::uint32_t number, std::uint32_t least) {
  return number >= least && number <= 65536 && (number & (number - 1)) == 0;
}

/// The header of a database within its first bytes.
std::optional<DatabaseHeader> ParseDatabaseHeader(std::string_view bytes) {
  if (bytes.size() < kDatabaseHeaderSize || !bytes.starts_with(kDatabaseMagic)) return {};
  DatabaseHeader header;
  header.changeCounter = Number(bytes, 24);
  // A page of 65,536 bytes does not fit the two bytes and is written as 1.
  const std::uint32_t pageSize = Number(bytes, 16) >> 16;
  header.pageSize = pageSize == 1 ? 65536 : pageSize;
  constexpr char kLogVersion = 2;
  header.isLogged = bytes[18] == kLogVersion || bytes[19] == kLogVersion;
  const bool counted = Number(bytes, 92) == header.changeCounter;
  header.pageCount = counted ? Number(bytes, 28) : 0;
  return header;
}

/// A run of records in a journal, each of a page's number, its bytes and a sum, behind a header of
/// its own that fills a sector.
struct Segment {
  off_t first = 0;
  off_t records = 0;
  bool isSound = false;
};

Segment SegmentAt(const Bytes& bytes, off_t at, JournalFile* journal, std::uint32_t* sector) {
  const std::string header = bytes.At(at, kJournalHeaderSize);
  Segment segment;
  if (header.size() < kJournalHeaderSize || !header.starts_with(kJournalMagic)) return segment;
  if (at == 0) {
    journal->pageCount = Number(header, 16);
    *sector = Number(header, 20);
    journal->pageSize = Number(header, 24);
    if (!IsPowerOfTwo(*sector, 32) || !IsPowerOfTwo(journal->pageSize, 512)) return segment;
  }
  segment.isSound = true;
  segment.first = at + *sector;
  const off_t record = static_cast<off_t>(journal->pageSize) + 8;
  const off_t whole = std::max<off_t>(0, (bytes.Status().st_size - segment.first) / record);
  const std::uint32_t told = Number(header, 8);
  segment.records = told == kUncounted ? whole : std::min<off_t>(whole, told);
  return segment;
}

void FindPageOne(const Bytes& bytes, JournalFile* journal) {
  std::uint32_t sector = 0;
  off_t at = 0;
  for (;;) {
    const Segment segment = SegmentAt(bytes, at, journal, &sector);
    if (!segment.isSound) return;
    journal->isSound = true;
    const off_t record = static_cast<off_t>(journal->pageSize) + 8;
    for (off_t i = 0; i < segment.records; ++i) {
      const off_t page = segment.first + i * record;
      if (Number(bytes.At(page, 4), 0) != 1) continue;
      const auto header = ParseDatabaseHeader(bytes.At(page + 4, kDatabaseHeaderSize));
      if (header) journal->changeCounter = header->changeCounter;
      return;
    }
    const off_t end = segment.first + segment.records * record;
    at = (end + sector - 1) / sector * sector;
  }
}

void FindSuperJournal(const Bytes& bytes, JournalFile* journal) {
  const off_t size = bytes.Status().st_size;
  if (size < kSuperTail) return;
  const std::string tail = bytes.At(size - kSuperTail, static_cast<std::size_t>(kSuperTail));
  const std::uint32_t length = Number(tail, 0);
  if (!tail.ends_with(kJournalMagic) || length == 0) return;
  if (length > kLongestPath || length > size - kSuperTail) return;
  const std::string name = bytes.At(size - kSuperTail - length, length);
  std::uint32_t sum = 0;
  for (const char c : name)
    sum += static_cast<std::uint32_t>(static_cast<signed char>(c));
  if (name.size() != length || sum != Number(tail, 4)) return;
  // What stands behind a zero SQLite does not see.
  journal->superJournal = name.c_str();
  // In front of the name stands the number of a page that there never is.
  journal->superJournalAt = std::max<off_t>(0, size - kSuperTail - length - 4);
}

}  // namespace

JournalFile ReadJournalFile(const std::string& path) {
  JournalFile journal;
  const Bytes bytes(path);
  if (!bytes.IsThere()) return journal;
  journal.device = bytes.Status().st_dev;
  journal.number = bytes.Status().st_ino;
  const std::string first = bytes.At(0, 1);
  journal.isHot = !first.empty() && first.front() != '\0';
  if (!journal.isHot) return journal;
  FindSuperJournal(bytes, &journal);
  FindPageOne(bytes, &journal);
  return journal;
}

std::optional<DatabaseHeader> ReadDatabaseHeader(const std::string& path) {
  const Bytes bytes(path);
  if (!bytes.IsThere()) return {};
  return ParseDatabaseHeader(bytes.At(0, kDatabaseHeaderSize));
}

bool Fits(const JournalFile& journal, const std::optional<DatabaseHeader>& database) {
  if (!journal.isSound) return true;
  if (!database || journal.pageSize != database->pageSize) return false;
  if (journal.changeCounter) {
    const std::uint32_t before = *journal.changeCounter;
    return database->changeCounter == before || database->changeCounter == before + 1;
  }
  // Page 1 was not written to yet: the file itself still says how many pages there were.
  return database->pageCount == 0 || journal.pageCount == database->pageCount;
}

}  // namespace QvPlatform::detail
