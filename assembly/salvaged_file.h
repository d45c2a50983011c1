#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "database/table_catalogue.h"
#include "platform/storage/page_file.h"

namespace QvRefSystem {

/// What could be read of a table.
struct SalvagedTable {
  /// The name of the table, without the extension of its file.
  std::string name;
  /// The records by their keys, each with a value for each field of the catalogue.
  std::map<std::int64_t, QvPlatform::detail::StoredRecord> records;
  /// Their versions, by the same keys.
  std::map<std::int64_t, std::int64_t> versions;
  /// The last key that the table gave away, as far as it is known.
  std::int64_t lastKey = 0;
  /// Sum of their checksums.
  std::int64_t digest = 0;
  /// What is not there any more, in words; "" for a table that was read whole.
  std::string lost;
};

/// One file of a damaged database, a table or a container.
class SalvagedFile {
 public:
  /// Reads the file as it lies there, without any journal. Throws StorageError where there is no
  /// such file or it cannot be opened.
  explicit SalvagedFile(const std::string& path);

  /// The records of a table that lies in the file under that name.
  [[nodiscard]] SalvagedTable Read(const TableSpec& table, const std::string& name) const;
  /// The blobs of a container whose names begin with the prefix (in lower case), by the rest of
  /// their names; nothing for one that lacks a part.
  [[nodiscard]] std::map<std::string, std::optional<std::string>> Blobs(
      const std::string& prefix) const;
  /// What concerns the file as a whole.
  [[nodiscard]] const std::vector<std::string>& Notes() const { return notes_; }

 private:
  using Records = std::vector<QvPlatform::detail::StoredRecord>;

  [[nodiscard]] std::string Load(const std::string& path);
  void ReadSequence();
  [[nodiscard]] Records OfTree(const std::string& name, bool* whole) const;
  void ReadStates();
  [[nodiscard]] std::uint32_t FindLayout() const;
  [[nodiscard]] std::string LostOf(const SalvagedTable& table, const std::string& name,
                                   bool whole) const;

  std::vector<std::string> notes_;
  QvPlatform::detail::PageFile file_;
  std::map<std::string, std::uint32_t> roots_;
  Records strays_;
  // Version of the layout of the records.
  std::uint32_t layout_ = 0;
  // Count and digest of each table's records, by its name in lower case. What is left of former
  // states may be among them.
  std::multimap<std::string, std::pair<std::int64_t, std::int64_t>> states_;
  std::map<std::string, std::int64_t> sequence_;
};

}  // namespace QvRefSystem
