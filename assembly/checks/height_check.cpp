#include "assembly/checks/height_check.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "database/height_storage.h"
#include "platform/data/height_kind.h"
#include "platform/data/height_table_writer.h"
#include "platform/storage/crc32.h"
#include "platform/text/ascii.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

using QvPlatform::Crc32;

// The checksum of a tree is that of the lines of the file, whatever the table looks like now.
bool HasChecksum(const std::string& text, std::uint32_t checksum) {
  if (Crc32(text) == checksum) return true;
  const std::optional<std::string> lines = HeightTableInLines(text);
  return lines && Crc32(*lines) == checksum;
}

// A container tells no ASCII letter from its capital.
std::string Comparable(const std::string& name, bool inContainer) {
  return inContainer ? QvPlatform::LowerAscii(name) : name;
}

class HeightCheck {
 public:
  HeightCheck(const CheckedDatabase& database, Findings& findings)
      : data_(database.Data()),
        systems_(database.Of(TableId::kRefSystem)),
        heights_(database.Of(TableId::kVerticalRefSystem)),
        findings_(findings) {}

  void Run() {
    CheckOwners();
    for (const CheckedRow row : heights_)
      CheckRecord(row);
    CheckLeftFiles();
  }

 private:
  void CheckOwners() {
    for (const CheckedRow row : systems_) {
      const int heights = row.Integer("VERT_SYSTEM_AUTOKEY");
      if (heights == 0) continue;
      if (row.Integer("VERT_SYSTEM_CODE") != 0) {
        findings_.Add(row, "the system has both a height system and a built-in geoid");
      }
      const auto [owner, isFirst] = owners_.emplace(heights, row.Key());
      if (isFirst) continue;
      findings_.Add(row, "VERT_SYSTEM_AUTOKEY " + std::to_string(heights) +
                             " is also that of key " + std::to_string(owner->second));
    }
  }

  void CheckRecord(const CheckedRow& row) {
    if (!owners_.contains(row.Key())) findings_.Add(row, "no reference system refers to it");
    const int number = row.Integer("VDATA_TYPE");
    const auto kind = HeightKindOf(number);
    if (kind == HeightKind::kTable) return CheckTable(row);
    if (kind == HeightKind::kOffset) {
      findings_.NeedReference(row, "VDATA_UNIT_AUTOKEY");
      return findings_.NeedNumber(row, "VDATA_OFFSET");
    }
    findings_.Add(row, "VDATA_TYPE " + std::to_string(number) + " is no kind of height system");
  }

  void CheckTable(const CheckedRow& row) {
    const std::string& fileName = row.Text("VDATA_FILENAME");
    const std::string which = "the height file \"" + fileName + "\" ";
    const auto [first, isNew] = files_.emplace(Comparable(fileName, data_.ResourceForm), row.Key());
    if (!isNew) {
      findings_.Add(row, which + "is also that of key " + std::to_string(first->second));
    }
    const std::optional<std::string> path = HeightStoragePath(data_, fileName);
    std::string text;
    if (!path || !StorageFileExists(*path, data_.ResourceForm)) {
      findings_.Add(row, which + "is missing");
    } else if (!LoadStorageFile(*path, data_.ResourceForm, &text)) {
      findings_.Add(row, which + "is empty or cannot be read");
    } else if (const auto damage = HeightFileDamage(heights_.DataSet(), row.Key(), text)) {
      findings_.Add(row, which + "cannot be used: " + *damage);
    } else if (!HasChecksum(text, static_cast<std::uint32_t>(row.Integer("VDATA_CRC32")))) {
      findings_.Add(row, which + "differs from VDATA_CRC32");
    }
  }

  void CheckLeftFiles() {
    try {
      for (const std::string& name :
           ListStorageFiles(data_.GetHeightsPrefix(), data_.ResourceForm)) {
        if (files_.contains(Comparable(name, data_.ResourceForm))) continue;
        findings_.Note(heights_, "the height file \"" + name + "\" is that of no record",
                       FileSetAside{name});
      }
    } catch (const QvPlatform::StorageError& error) {
      findings_.Add(heights_, error.what());
    }
  }

  const TdatamoduleQvRfData& data_;
  const CheckedTable& systems_;
  const CheckedTable& heights_;
  Findings& findings_;
  /// The first reference system of each height system.
  std::map<int, int> owners_;
  /// The first record that names each file.
  std::map<std::string, int> files_;
};

}  // namespace

void CheckHeights(const CheckedDatabase& database, Findings& findings) {
  HeightCheck(database, findings).Run();
}

}  // namespace QvRefSystem
