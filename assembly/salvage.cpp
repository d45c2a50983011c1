#include "assembly/salvage.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

#include "assembly/salvaged_file.h"
#include "database/storage_files.h"
#include "platform/data/height_kind.h"
#include "platform/data/height_table_writer.h"
#include "platform/dbset/field_descriptions.h"
#include "platform/storage/crc32.h"
#include "platform/storage/database_recovery.h"
#include "platform/storage/resource_group.h"
#include "platform/storage/table_image.h"
#include "platform/storage/work_folder.h"

namespace QvRefSystem {
namespace {

namespace fs = std::filesystem;
using QvPlatform::StorageError;
using QvPlatform::TQvResourceGroup;
using QvPlatform::WorkFolder;
using QvPlatform::detail::StoredRecord;
using QvPlatform::detail::StoredValue;
using QvPlatform::detail::TableImage;

constexpr std::array<char, 3> kSeparators{'/', '\\', ':'};

bool Stands(const std::string& path) {
  std::error_code error;
  return fs::symlink_status(path, error).type() != fs::file_type::not_found;
}

std::size_t FieldOf(TableId table, std::string_view name) {
  const std::span<const FieldSpec> fields = TableOf(table).fields;
  return static_cast<std::size_t>(std::ranges::find(fields, name, &FieldSpec::name) -
                                  fields.begin());
}

std::int64_t IntegerAt(const StoredRecord& record, std::size_t field) {
  const auto* integer = std::get_if<std::int64_t>(&record.values[field]);
  return integer != nullptr ? *integer : 0;
}

class Salvage {
 public:
  // `tables` is where the tables are read, which may be a copy.
  Salvage(DatabasePlace damaged, DatabasePlace tables, DatabasePlace made)
      : damaged_(std::move(damaged)), from_(std::move(tables)), made_(std::move(made)) {}

  SalvageReport Run() {
    ReadTables();
    RaiseLastKeys();
    if (made_.resourceForm) {
      TQvResourceGroup group(made_.path);
      WriteAll();
      group.Commit();
    } else {
      WriteAll();
    }
    return std::move(report_);
  }

 private:
  void Lose(const std::string& what) {
    report_.notes.push_back(what);
    report_.whole = false;
  }

  std::unique_ptr<SalvagedFile> OpenFile(const std::string& path) {
    auto file = std::make_unique<SalvagedFile>(path);
    for (const std::string& note : file->Notes())
      Lose(fs::path(path).filename().string() + ": " + note);
    return file;
  }

  void ReadTables() {
    if (damaged_.resourceForm) container_ = OpenFile(from_.path);
    for (const TableSpec& table : TableCatalogue()) {
      if (table.tag != kUnopenedTag) tables_.push_back(ReadTable(table));
    }
    const auto hasRecords = [](const SalvagedTable& table) { return !table.records.empty(); };
    if (!std::ranges::any_of(tables_, hasRecords)) {
      throw StorageError("\"" + damaged_.path + "\": no record of it can be read");
    }
  }

  SalvagedTable ReadTable(const TableSpec& table) {
    const std::string name = ExtractTableBaseName(table.streamName);
    SalvagedTable read;
    try {
      read = container_ != nullptr ? container_->Read(table, name)
                                   : OpenFile(from_.path + "/" + std::string(table.streamName))
                                         ->Read(table, QvPlatform::detail::kRecordTable);
    } catch (const StorageError& error) {
      read.lost = error.what();
    }
    read.name = name;
    return read;
  }

  // A new object must not get the key of one that is lost, to which others may still refer.
  void RaiseLastKeys() {
    std::size_t at = 0;
    for (const TableSpec& table : TableCatalogue()) {
      if (table.tag == kUnopenedTag) continue;
      const SalvagedTable& from = tables_[at++];
      for (const auto& [id, record] : from.records) {
        Raise(table.id, id);
        for (std::size_t field = 0; field < table.fields.size(); ++field) {
          if (table.fields[field].refersTo == TableId::kNone) continue;
          Raise(table.fields[field].refersTo, IntegerAt(record, field));
        }
        if (table.id == TableId::kParamValue) RaiseOwner(record);
      }
    }
  }

  void RaiseOwner(const StoredRecord& record) {
    const std::int64_t tag = IntegerAt(record, FieldOf(TableId::kParamValue, "OWNER_CONTENT"));
    for (const TableSpec& table : TableCatalogue()) {
      if (table.tag != tag || table.keyField != "AUTOKEY") continue;
      Raise(table.id, IntegerAt(record, FieldOf(TableId::kParamValue, "OWNER_ID")));
    }
  }

  void Raise(TableId id, std::int64_t key) {
    std::size_t at = 0;
    for (const TableSpec& table : TableCatalogue()) {
      if (table.tag == kUnopenedTag) continue;
      if (table.id == id) tables_[at].lastKey = std::max(tables_[at].lastKey, key);
      ++at;
    }
  }

  void WriteAll() {
    WriteHeights();
    std::size_t at = 0;
    for (const TableSpec& table : TableCatalogue()) {
      if (table.tag != kUnopenedTag) WriteTable(table, &tables_[at++]);
    }
  }

  void WriteTable(const TableSpec& table, SalvagedTable* read) {
    if (table.id == TableId::kVerticalRefSystem) CheckHeights(read);
    TableImage image(QvPlatform::detail::Describe(HeaderOf(table)));
    int records = 0;
    for (const auto& [id, record] : read->records) {
      if (image.Add(id, read->versions.at(id), record.values)) {
        ++records;
      } else {
        read->lost = "records are lost";
      }
    }
    const std::string bytes = image.Finish(read->lastKey);
    const std::string place = made_.path + (made_.resourceForm ? "." : "/") + read->name +
                              (made_.resourceForm ? "" : ".dat");
    Write(place, bytes);
    report_.whole = report_.whole && read->lost.empty();
    report_.tables.push_back({read->name, records, read->lost});
  }

  void Write(const std::string& place, const std::string& bytes) const {
    const auto stream = CreateStream(place, made_.resourceForm);
    if (stream == nullptr) throw StorageError("\"" + place + "\" cannot be made");
    stream->Write(bytes.data(), bytes.size());
    stream->Commit();
  }

  // The height files by their names.
  std::map<std::string, std::optional<std::string>> ReadHeights() {
    if (container_ != nullptr) return container_->Blobs("heights.");
    std::map<std::string, std::optional<std::string>> files;
    const std::string folder = damaged_.path + "/Heights/";
    for (const std::string& name : ListStorageFiles(folder, false)) {
      bool whole = true;
      std::string content = QvPlatform::detail::ReadDamagedFile(folder + name, &whole);
      files[name] = whole ? std::optional(std::move(content)) : std::nullopt;
    }
    return files;
  }

  void WriteHeights() {
    const std::string prefix = made_.path + (made_.resourceForm ? ".Heights." : "/Heights/");
    for (auto& [name, content] : ReadHeights()) {
      const bool leadsAway = std::ranges::any_of(
          kSeparators, [&name](char c) { return name.find(c) != std::string::npos; });
      if (!content || name.empty() || name.starts_with('.') || leadsAway) {
        Lose("the height file \"" + name + "\" is lost");
        continue;
      }
      std::string to = prefix + name;
      if (StorageFileExists(to, made_.resourceForm)) {
        to = MakeUniqueStorageName(to, made_.resourceForm);
      }
      Write(to, *content);
      heights_[name] = {to.substr(prefix.size()), std::move(*content)};
    }
  }

  // Tells the records whose files are lost or are not what they were, and follows those that have
  // a new name.
  void CheckHeights(SalvagedTable* read) {
    const std::size_t kind = FieldOf(TableId::kVerticalRefSystem, "VDATA_TYPE");
    const std::size_t file = FieldOf(TableId::kVerticalRefSystem, "VDATA_FILENAME");
    const std::size_t sum = FieldOf(TableId::kVerticalRefSystem, "VDATA_CRC32");
    for (auto& [id, record] : read->records) {
      const auto* name = std::get_if<std::string>(&record.values[file]);
      if (HeightKindOf(static_cast<int>(IntegerAt(record, kind))) != HeightKind::kTable ||
          name == nullptr) {
        continue;
      }
      const std::string which =
          "height system " + std::to_string(id) + ": its file \"" + *name + "\" ";
      const auto found = heights_.find(*name);
      if (found == heights_.end()) {
        Lose(which + "is lost");
      } else {
        if (!HasChecksum(found->second.second, IntegerAt(record, sum))) Lose(which + "is damaged");
        record.values[file] = found->second.first;
      }
    }
  }

  [[nodiscard]] static bool HasChecksum(const std::string& text, std::int64_t recorded) {
    const auto checksum = static_cast<std::uint32_t>(recorded);
    if (QvPlatform::Crc32(text) == checksum) return true;
    const std::optional<std::string> lines = HeightTableInLines(text);
    return lines && QvPlatform::Crc32(*lines) == checksum;
  }

  const DatabasePlace damaged_;
  const DatabasePlace from_;
  const DatabasePlace made_;
  std::unique_ptr<SalvagedFile> container_;
  // The tables that are opened, in the order of the catalogue.
  std::vector<SalvagedTable> tables_;
  // New name and content of each height file.
  std::map<std::string, std::pair<std::string, std::string>> heights_;
  SalvageReport report_;
};

// The files of a database that hold its tables, and the journals beside them.
std::vector<fs::path> FilesOf(const DatabasePlace& place) {
  const fs::path path(place.path);
  const std::string name = path.filename().string();
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(place.resourceForm ? path.parent_path() : path)) {
    const bool belongs = !place.resourceForm || entry.path().filename().string().starts_with(name);
    if (belongs && entry.is_regular_file()) files.push_back(entry.path());
  }
  return files;
}

// Where a stopped change was left half done, a copy in which it is taken back. The damaged database
// itself is only read.
DatabasePlace Settled(const DatabasePlace& damaged, const WorkFolder& work, CopyNotes* notes) {
  const DatabasePlace copy{work.Path(fs::path(damaged.path).filename().string()),
                           damaged.resourceForm};
  try {
    const DatabasePlace whole{fs::absolute(damaged.path).string(), damaged.resourceForm};
    const std::vector<fs::path> files = FilesOf(whole);
    const bool left = std::ranges::any_of(files, [](const fs::path& file) {
      return file.string().ends_with("-journal") || file.string().ends_with("-wal");
    });
    if (!left) return damaged;
    const std::string folder = copy.resourceForm ? QvPlatform::FolderOf(copy.path) : copy.path;
    fs::create_directories(folder);
    for (const fs::path& file : files)
      fs::copy_file(file, fs::path(folder) / file.filename());
    QvPlatform::detail::RecoverDatabase(copy.path, [](const std::string&) {});
    return copy;
  } catch (const std::runtime_error& error) {
    notes->push_back(std::string("what a stopped change left half done cannot be taken back: ") +
                     error.what());
    return damaged;
  }
}

}  // namespace

SalvageReport SalvageDatabase(const DatabasePlace& damaged, const DatabasePlace& target,
                              QvPlatform::TUserInterface& ui) {
  if (!Stands(damaged.path)) {
    throw StorageError("\"" + damaged.path + "\": there is no such database");
  }
  if (Stands(target.path)) throw StorageError("\"" + target.path + "\" is there already");
  const std::string folder = QvPlatform::FolderOf(target.path);
  const WorkFolder aside(folder);
  const WorkFolder work(folder);
  const std::string made = aside.Path(fs::path(target.path).filename().string());
  CopyNotes notes;
  const DatabasePlace tables = Settled(damaged, work, &notes);
  SalvageReport report = Salvage(damaged, tables, {made, target.resourceForm}).Run();
  report.whole = report.whole && notes.empty();
  report.notes.insert(report.notes.end(), notes.begin(), notes.end());
  (void)OpenPlace({made, target.resourceForm}, ui);
  aside.Sync();
  QvPlatform::TakeFreePlace(made, target.path);
  return report;
}

}  // namespace QvRefSystem
