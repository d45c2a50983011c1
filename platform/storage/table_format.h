#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/storage/sqlite.h"

/// How record tables lie in SQLite, the same in a table file and in a container: the records in a
/// table of their own, whose fields a row each in `qv_fields` describes.
namespace QvPlatform::detail {

/// Mark of a table file in SQLite's application id: "QvTb".
constexpr std::uint32_t kTableFileId = 0x51765462;
/// Mark of a container in SQLite's application id: "QvDb".
constexpr std::uint32_t kContainerId = 0x51764462;
/// Version of both layouts, in SQLite's user version.
constexpr int kFormatVersion = 2;
/// The oldest version that is still read: its records have no checksums until they are next
/// written.
constexpr int kOldestVersion = 1;

/// The one record table of a table file.
constexpr const char* kRecordTable = "records";
/// Identity of the records of a table without a generated key.
constexpr const char* kHiddenKey = "ROW_ID";
/// Raised by each change of a record.
constexpr const char* kVersionColumn = "ROW_VERSION";

/// One row of `qv_fields`; the numbers are those of the table's declaration.
struct FieldDescription {
  /// An identifier.
  std::string name;
  /// Code of FieldType.
  int type = 0;
  /// Code of FieldNeed.
  int need = 0;
  /// Characters that a user may type into a text field, from 0 to 255.
  int length = 0;
  bool operator==(const FieldDescription&) const = default;
};

/// Whether the name consists of letters, digits and "_", no digit in front, 64 characters at most.
[[nodiscard]] bool IsIdentifier(std::string_view name);

/// Column that identifies a record: the generated key, or the hidden one.
[[nodiscard]] std::string KeyColumn(const std::vector<FieldDescription>& fields);

/// Makes `qv_fields`, without rows, in a new file.
void CreateDescriptions(Connection& connection);
/// Makes a record table without records, and describes its fields.
void CreateRecordTable(Connection& connection, const std::string& table,
                       const std::vector<FieldDescription>& fields);
/// Whether a table of this name is described, whatever the case of its letters.
[[nodiscard]] bool HasRecordTable(Connection& connection, const std::string& table);
/// Drops a record table, which has to be there, with its description.
void DropRecordTable(Connection& connection, const std::string& table);
/// Throws StorageError unless the description is there, sound, and that of the table's columns.
[[nodiscard]] std::vector<FieldDescription> ReadFields(Connection& connection,
                                                       const std::string& table,
                                                       std::string_view schema = "main");
/// Copies a table with its keys, its record versions, its notes and the last key that it gave away.
/// Throws StorageError where the records are not those whose checksums are stated.
void CopyRecordTable(Connection& from, const std::string& fromTable, Connection& to,
                     const std::string& toTable);

/// Throws StorageError unless the open file begins as a file of this kind. Takes no lock.
void CheckMark(const Connection& connection, std::uint32_t applicationId, std::string_view kind);
/// Throws StorageError unless a file with the right mark is of the right version and whole.
void CheckFile(Connection& connection, std::string_view kind);

/// Bytes of a table file without records, in which `kind` is noted unless it is empty.
[[nodiscard]] std::string MakeTableImage(const std::vector<FieldDescription>& fields,
                                         const std::string& kind = {});
/// Bytes of a container that holds nothing.
[[nodiscard]] std::string MakeContainerImage();
/// Bytes of a table file with the records of a table of a container.
[[nodiscard]] std::string MakeTableImage(Connection& from, const std::string& table);
/// A connection to such bytes, which have to outlive it; null if they are no sound table file.
[[nodiscard]] std::unique_ptr<Connection> OpenTableImage(std::string_view bytes);
/// The mark of an SQLite file, from its first bytes; 0 if it is none.
[[nodiscard]] std::uint32_t ApplicationIdOf(std::string_view header);

}  // namespace QvPlatform::detail
