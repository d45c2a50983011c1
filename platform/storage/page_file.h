#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// Reads the file of an SQLite database page by page, without SQLite, which gives up a whole table
/// for one page that it cannot read. The format is that of https://sqlite.org/fileformat2.html.
namespace QvPlatform::detail {

/// Content of a column that is bytes and no text.
struct StoredBytes {
  /// The bytes themselves.
  std::string data;
};
/// Content of a column as it is stored; an integer may stand for a number.
using StoredValue = std::variant<std::monostate, std::int64_t, double, std::string, StoredBytes>;

/// A record as it is stored.
struct StoredRecord {
  /// Its identity in a table; 0 in an index.
  std::int64_t id = 0;
  /// The columns in the order of the declaration. The one that holds the identity is empty.
  std::vector<StoredValue> values;
};

/// What was read of a table.
struct StoredTable {
  /// The records that could be read, each identity once.
  std::vector<StoredRecord> records;
  /// The pages of the table that hold, or led to, what could not be read. 0 stands for a beginning
  /// that is not known.
  std::set<std::uint32_t> damaged;
};

/// A database file whose pages may be damaged in any way. Nothing that it holds is trusted.
class PageFile {
 public:
  /// Takes the bytes of the file over. Sizes that its header does not state sensibly are those with
  /// which this system makes its files.
  explicit PageFile(std::string bytes);

  /// Reads the records of a table from its first page on.
  [[nodiscard]] StoredTable ReadTable(std::uint32_t root) const;
  /// Reads all records of all tables without a rowid, and of all indexes, that can be read.
  [[nodiscard]] std::vector<StoredRecord> ReadIndexes() const;
  /// First pages of the tables and indexes by their names in lower case, as far as the list of them
  /// can be read. `whole` is false where it cannot be read to its end.
  [[nodiscard]] std::map<std::string, std::uint32_t> ReadRoots(bool* whole) const;
  /// Reads the records of the pages to which neither these first pages lead nor the list of free
  /// pages: those whose way from the first page is lost. A sound file has none.
  [[nodiscard]] std::vector<StoredRecord> ReadStrays(
      const std::map<std::string, std::uint32_t>& roots) const;
  /// The number that the file gives as the version of its layout; 0 where its head is lost.
  [[nodiscard]] std::uint32_t UserVersion() const;

 private:
  enum class Kind { kOther, kIndexNode, kTableNode, kIndexLeaf, kTableLeaf };
  struct Page {
    std::uint32_t number = 0;
    Kind kind = Kind::kOther;
    std::string_view bytes;
    // Where the head begins and where the list of its cells does.
    std::size_t head = 0;
    std::size_t cells = 0;
    std::size_t cellCount = 0;
  };
  using Visit = std::set<std::uint32_t>;

  [[nodiscard]] std::uint32_t PageCount() const;
  [[nodiscard]] std::string_view Bytes(std::uint32_t page) const;
  [[nodiscard]] Page Open(std::uint32_t number) const;
  [[nodiscard]] std::optional<std::size_t> Cell(const Page& page, std::size_t index) const;
  [[nodiscard]] std::vector<std::uint32_t> Children(const Page& page, StoredTable* table) const;
  void Walk(std::uint32_t number, int depth, Visit* visited, StoredTable* table) const;
  void ReadLeaf(const Page& page, StoredTable* table) const;
  [[nodiscard]] std::optional<std::string> Payload(std::string_view cell, std::uint64_t size,
                                                   bool ofTable) const;
  [[nodiscard]] std::optional<StoredRecord> ReadTableCell(std::string_view cell) const;
  [[nodiscard]] std::optional<StoredRecord> ReadIndexCell(std::string_view cell, bool inner) const;
  [[nodiscard]] Visit FreePages() const;

  std::string bytes_;
  std::size_t pageSize_ = 0;
  // Bytes of a page that hold content.
  std::size_t usable_ = 0;
};

/// The bytes of a file; pieces that the medium does not give are zeros, and `whole` is then false.
/// Throws StorageError where the file cannot be opened at all.
[[nodiscard]] std::string ReadDamagedFile(const std::string& path, bool* whole);

}  // namespace QvPlatform::detail
