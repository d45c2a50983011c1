#include "vertical/vertical_processor.h"

#include <algorithm>
#include <array>

#include "database/storage_files.h"
#include "platform/storage/crc32.h"
#include "platform/text/ascii.h"
#include "platform/text/text.h"
#include "vertical/height_file.h"

namespace QvRefSystem {

using QvPlatform::FieldType;
using QvPlatform::RowMatch;
using QvPlatform::RowView;
using QvPlatform::StorageError;
using QvPlatform::TQvWriteGroup;

namespace {

// Members by tree id, in writing order. The grid follows, as far as the record has it.
constexpr int kKindMember = TreeIds::kHeightSystemKind.id;
constexpr int kTableMember = TreeIds::kHeightSystemTable.id;
constexpr int kCrcMember = TreeIds::kHeightSystemChecksum.id;
constexpr int kOffsetMember = TreeIds::kHeightSystemOffset.id;
constexpr int kUnitMember = TreeIds::kHeightSystemUnit.id;
constexpr std::array kTexts{TreeIds::kHeightSystemName.id, TreeIds::kHeightSystemDescription.id,
                            TreeIds::kHeightSystemAbbreviation.id};
constexpr std::array kTableMembers{kTexts[0],   kTexts[1],  kTexts[2],
                                   kKindMember, kCrcMember, kTableMember};
constexpr std::array kOffsetMembers{kTexts[0],   kTexts[1],     kTexts[2],
                                    kKindMember, kOffsetMember, kUnitMember};
constexpr std::array kExtents{TreeIds::kHeightSystemNorth.id, TreeIds::kHeightSystemEast.id,
                              TreeIds::kHeightSystemSouth.id, TreeIds::kHeightSystemWest.id};
constexpr std::array kCells{TreeIds::kHeightSystemCellNorthSouth.id,
                            TreeIds::kHeightSystemCellEastWest.id};

// A tree holds the table as one line; those who read it split it at blanks as well.
void PutOnOneLine(std::string* text) {
  std::ranges::replace_if(
      *text, [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
}

}  // namespace

std::optional<HeightKind> TQvRfVerticalRefSystemDataProcessor::CurrentKind() const {
  return HeightKindOf(CurrentInteger("VDATA_TYPE"));
}

std::optional<std::string> TQvRfVerticalRefSystemDataProcessor::CurrentHeightFile() const {
  if (CurrentKind() != HeightKind::kTable) return std::nullopt;
  return HeightStoragePath(data_, CurrentText("VDATA_FILENAME"));
}

void TQvRfVerticalRefSystemDataProcessor::ReportFile(const std::string& path,
                                                     const std::string& reason) {
  TellCannotCreate(path, data_.ResourceForm, data_.Ui(), reason);
}

bool TQvRfVerticalRefSystemDataProcessor::LoadTable(std::string* text) {
  const std::optional<std::string> path = CurrentHeightFile();
  try {
    if (!path) throw StorageError("this is no name of a file");
    std::string content = ReadStorageFile(*path, data_.ResourceForm);
    if (const auto damage = DamageOf(content)) throw StorageError(*damage);
    *text = std::move(content);
    return true;
  } catch (const StorageError& error) {
    ReportFile(path.value_or(CurrentText("VDATA_FILENAME")), error.what());
    return false;
  }
}

std::optional<std::string> TQvRfVerticalRefSystemDataProcessor::DamageOf(
    std::string_view text) const {
  return HeightFileDamage(*DataSet, GetCurrentKey(), text);
}

void TQvRfVerticalRefSystemDataProcessor::SaveTable(int key, const std::string& fileName,
                                                    const std::string& text) {
  TQvWriteGroup group(data_.WritableTables());
  const std::string path = data_.GetHeightsPrefix() + fileName;
  try {
    CreateStorageFile(path, data_.ResourceForm, text);
  } catch (const StorageError& error) {
    ReportFile(path, error.what());
    throw ToldStorageError("the height file \"" + path + "\" cannot be written");
  }
  // The record is written already, so that in a container the file is part of its transaction.
  if (!data_.ResourceForm) {
    group.AtEnd({}, [path] { DeleteStorageFile(path, false); });
  }
  NoteHeightFile(*DataSet, key, text);
  group.Commit();
}

int TQvRfVerticalRefSystemDataProcessor::CountNaming(const std::string& fileName) const {
  const int column = Column("VDATA_FILENAME");
  // Two files of a folder may differ by case alone; a container tells no ASCII letter from its
  // capital.
  const RowMatch match = data_.ResourceForm
                             ? RowMatch::Folded(column, QvPlatform::FoldName(fileName))
                             : RowMatch::Text(column, fileName);
  const auto rows = DataSet->FindAll({match}, QvPlatform::RowScope::kAll);
  return static_cast<int>(std::ranges::count_if(rows, [&](RowView row) {
    return !data_.ResourceForm || QvPlatform::EqualAscii(row.GetText(column), fileName);
  }));
}

std::string TQvRfVerticalRefSystemDataProcessor::NewFileName(std::string_view objectName,
                                                             HeightNaming naming) const {
  std::string name(objectName);
  for (int number = 1;; ++number) {
    const std::string path = NewHeightStorageName(data_, name, naming);
    std::string fileName = StorageShortName(path, data_.ResourceForm);
    // A record whose file was lost must not come to name the file of another.
    if (CountNaming(fileName) == 0) return fileName;
    name = std::to_string(number) + " " + std::string(objectName);
  }
}

// Records to tree.

bool TQvRfVerticalRefSystemDataProcessor::HasAll(RowView row, std::span<const int> ids) const {
  return std::ranges::none_of(
      ids, [&](int id) { return row.GetText(Column(ItemOf(id).column)).empty(); });
}

bool TQvRfVerticalRefSystemDataProcessor::WriteContent(TStringTree* tree) {
  const RowView row = DataSet->CurrentRow();
  if (!row) return false;
  const auto kind = CurrentKind();
  if (kind != HeightKind::kTable && kind != HeightKind::kOffset) return true;
  const bool hasTable = kind == HeightKind::kTable;
  std::string table;
  if (hasTable) {
    if (!LoadTable(&table)) return false;
    PutOnOneLine(&table);
  }
  const auto write = [&](int id) {
    const TreeItem& item = ItemOf(id);
    return id == kTableMember ? EnsureField(tree, id, 0, table, item.label)
                              : WriteItem(tree, item, row);
  };
  const std::span<const int> members = hasTable ? kTableMembers : kOffsetMembers;
  if (!std::ranges::all_of(members, write)) return false;
  if (HasAll(row, kExtents) && !std::ranges::all_of(kExtents, write)) return false;
  return !hasTable || !HasAll(row, kCells) || std::ranges::all_of(kCells, write);
}

// Tree to records.

void TQvRfVerticalRefSystemDataProcessor::ReadGrid(TStringTree* tree, RecordImage* image) const {
  // A part of a grid is none: all of it is stored or nothing.
  const auto read = [&](std::span<const int> ids, bool wanted) {
    std::vector<std::string> texts(ids.size());
    for (std::size_t i = 0; i < ids.size(); ++i)
      (void)tree->GetString(ids[i], 0, &texts[i]);
    const bool whole =
        wanted && std::ranges::none_of(texts, [](const auto& text) { return text.empty(); });
    for (std::size_t i = 0; i < ids.size(); ++i)
      image->SetText(Column(ItemOf(ids[i]).column), whole ? texts[i] : std::string());
    return whole;
  };
  const bool hasExtents = read(kExtents, true);
  (void)read(kCells, hasExtents);
}

bool TQvRfVerticalRefSystemDataProcessor::ReadContent(TStringTree* tree, RecordImage* image) {
  const auto read = [&](int id) { return ReadItem(tree, ItemOf(id), image); };
  if (!std::ranges::all_of(kTexts, read) || !read(kKindMember)) return false;
  for (const auto column : {"VDATA_UNIT_AUTOKEY", "VDATA_FORMAT", "VDATA_CRC32"})
    image->SetInteger(Column(column), 0);
  for (const auto column : {"VDATA_FILENAME", "VDATA_OFFSET"})
    image->SetText(Column(column), {});
  ReadGrid(tree, image);
  const auto kind = HeightKindOf(image->Integer(Column("VDATA_TYPE")));
  if (kind == HeightKind::kOffset) return read(kOffsetMember) && read(kUnitMember);
  if (kind != HeightKind::kTable) return false;
  if (!read(kCrcMember) || !tree->GetString(kTableMember, 0, &image->Beside[kTableMember])) {
    return false;
  }
  image->SetText(Column("VDATA_FILENAME"),
                 NewFileName(image->Text(NameColumn()), HeightNaming::kAsNamed));
  return true;
}

void TQvRfVerticalRefSystemDataProcessor::AppendBeside(TStringTree* /*tree*/,
                                                       const RecordImage& image, int key) {
  const auto table = image.Beside.find(kTableMember);
  if (table == image.Beside.end()) return;
  SaveTable(key, image.Text(Column("VDATA_FILENAME")), table->second);
}

// Heights that are made here.

RecordImage TQvRfVerticalRefSystemDataProcessor::ImageOf(const HeightRecord& record) const {
  const bool isTable = record.Table != nullptr;
  RecordImage image;
  const auto setText = [&](const char* column, const std::string& text) {
    image.SetText(Column(column), text);
  };
  image.SetInteger(Column("FAVOUR"), 0);
  image.SetDouble(Column("LAST_USE"), QvPlatform::CurrentMoment());
  setText("NAME", record.Name);
  setText("ABBREVIATION", record.Abbreviation);
  setText("DESCRIPTION", record.Description);
  image.SetInteger(Column("VDATA_TYPE"),
                   static_cast<int>(isTable ? HeightKind::kTable : HeightKind::kOffset));
  image.SetInteger(Column("VDATA_UNIT_AUTOKEY"), isTable ? 0 : record.OffsetUnit);
  image.SetInteger(Column("VDATA_FORMAT"), 0);
  image.SetInteger(Column("VDATA_CRC32"), 0);
  setText("VDATA_FILENAME", {});
  setText("VDATA_OFFSET", isTable ? std::string() : record.Offset);
  setText("VDATA_EXTENTS_NORTH", record.Grid.North);
  setText("VDATA_EXTENTS_EAST", record.Grid.East);
  setText("VDATA_EXTENTS_SOUTH", record.Grid.South);
  setText("VDATA_EXTENTS_WEST", record.Grid.West);
  setText("VDATA_CELL_NORTH_SOUTH", record.Grid.CellNorthSouth);
  setText("VDATA_CELL_EAST_WEST", record.Grid.CellEastWest);
  return image;
}

void TQvRfVerticalRefSystemDataProcessor::RequireKey(int key) {
  if (!LocateKey(key)) {
    throw QvPlatform::DataSetError("the height system was deleted by somebody else");
  }
}

void TQvRfVerticalRefSystemDataProcessor::StoreImage(RecordImage image, const std::string* text,
                                                     std::optional<int> changed) {
  TQvWriteGroup group(data_.WritableTables());
  std::optional<std::string> old;
  if (changed) {
    RequireKey(*changed);
    old = OwnHeightFile();
  }
  std::string fileName;
  if (text != nullptr) {
    fileName = NewFileName(image.Text(NameColumn()), HeightNaming::kReplaced);
    image.SetText(Column("VDATA_FILENAME"), fileName);
    image.SetInteger(Column("VDATA_CRC32"), static_cast<int>(QvPlatform::Crc32(*text)));
  }
  changed ? DataSet->Edit() : DataSet->Append();
  image.Store(*DataSet);
  const int key = KeyOf(DataSet->Post());
  if (text != nullptr) SaveTable(key, fileName, *text);
  if (old) DeleteFile(group, *old);
  group.Commit();
}

bool TQvRfVerticalRefSystemDataProcessor::Store(const HeightRecord& record, bool append) {
  std::string text;
  const bool isTable = record.Table != nullptr;
  // The text is made ahead of the transaction: it takes its time, and the user may cancel it.
  if (isTable && !MakeHeightText(record.Table, &text, data_.Ui())) return false;
  const std::optional<int> changed = append ? std::nullopt : std::optional(GetCurrentKey());
  try {
    StoreImage(ImageOf(record), isTable ? &text : nullptr, changed);
  } catch (...) {
    DataSet->Cancel();
    throw;
  }
  Reopen();
  return true;
}

// Copies and removal.

RecordImage TQvRfVerticalRefSystemDataProcessor::ImageOfCurrent() const {
  RecordImage image;
  const RowView row = DataSet->CurrentRow();
  const auto& fields = DataSet->Header().Fields();
  for (int number = 0; number < static_cast<int>(fields.size()); ++number) {
    const QvPlatform::TQvDbField& field = fields[static_cast<std::size_t>(number)];
    if (field.need == QvPlatform::FieldNeed::kGeneratedKey) continue;
    if (field.type == FieldType::kText) {
      image.SetText(number, row.GetText(number));
    } else if (field.type == FieldType::kInteger) {
      image.SetInteger(number, row.GetInteger(number));
    } else {
      image.SetDouble(number, row.GetFloat(number));
    }
  }
  return image;
}

void TQvRfVerticalRefSystemDataProcessor::AppendDuplicate(int key) {
  TQvWriteGroup group(data_.WritableTables());
  RequireKey(key);
  RecordImage image = ImageOfCurrent();
  std::string table;
  std::string fileName;
  const bool hasFile = CurrentKind() == HeightKind::kTable;
  if (hasFile) {
    if (!LoadTable(&table)) throw ToldStorageError("the height file cannot be read");
    fileName = NewFileName(image.Text(NameColumn()), HeightNaming::kAsNamed);
    image.SetText(Column("VDATA_FILENAME"), fileName);
  }
  image.SetDouble(Column("LAST_USE"), QvPlatform::CurrentMoment());
  DataSet->Append();
  image.Store(*DataSet);
  const int copy = KeyOf(DataSet->Post());
  if (hasFile) SaveTable(copy, fileName, table);
  group.Commit();
}

bool TQvRfVerticalRefSystemDataProcessor::DuplicateCurrent() {
  const int key = GetCurrentKey();
  if (key == 0) return false;
  const ControlsGuard guard(*DataSet);
  try {
    AppendDuplicate(key);
    return true;
  } catch (const ToldStorageError&) {
    DataSet->Cancel();
  } catch (const std::runtime_error& error) {
    DataSet->Cancel();
    ReportStorage(error);
  }
  LocateKey(key);
  return false;
}

std::optional<std::string> TQvRfVerticalRefSystemDataProcessor::OwnHeightFile() const {
  std::optional<std::string> path = CurrentHeightFile();
  if (path && CountNaming(CurrentText("VDATA_FILENAME")) > 1) path.reset();
  return path;
}

void TQvRfVerticalRefSystemDataProcessor::DeleteFile(TQvWriteGroup& group,
                                                     const std::string& path) const {
  if (data_.ResourceForm) {
    DeleteStorageFile(path, true);
  } else {
    group.AtEnd([path] { DeleteStorageFile(path, false); }, {});
  }
}

void TQvRfVerticalRefSystemDataProcessor::RemoveKey(int key, TQvWriteGroup& group) {
  if (!LocateKey(key)) return;
  const std::optional<std::string> path = OwnHeightFile();
  VerticalRecords::RemoveKey(key, group);
  if (path) DeleteFile(group, *path);
}

}  // namespace QvRefSystem
