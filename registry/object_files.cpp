#include "registry/object_files.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "database/storage_files.h"
#include "platform/data/tree_members.h"
#include "platform/geocore/system_model.h"
#include "platform/geocore/wkt2.h"
#include "platform/storage/file_stream.h"
#include "platform/storage/stream.h"
#include "platform/storage/table_format.h"
#include "platform/text/text.h"
#include "registry/proj_bridge.h"

namespace QvRefSystem {

using QvCommonUtils::TStringTree;
using QvPlatform::QvOpenMode;
using QvPlatform::StorageError;
using QvPlatform::TQvFileStream;

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// What a name may be long, in bytes, so that a number and an extension still fit into the 255 that
// file systems allow.
constexpr std::size_t kLongestName = 180;

void OpenStream(TQvFileStream* stream, const std::string& path, QvOpenMode mode) {
  if (!stream->Open(path, mode)) throw StorageError(stream->LastError());
}

// Names that some systems keep for devices, whatever their extension.
bool IsDeviceName(const std::string& upper) {
  constexpr std::array<std::string_view, 4> kDevices{"CON", "PRN", "AUX", "NUL"};
  if (std::ranges::count(kDevices, upper) > 0) return true;
  return upper.size() == 4 && (upper.starts_with("COM") || upper.starts_with("LPT")) &&
         upper.back() >= '1' && upper.back() <= '9';
}

bool HasMeaningInPaths(char c) {
  const bool control = static_cast<unsigned char>(c) < ' ' || c == '\x7f';
  return control || std::string_view("/.\\:+*?!\"<>|").find(c) != std::string_view::npos;
}

// The name with a blank for each character that has a meaning in paths or patterns.
std::string SafeName(std::string_view objectName) {
  std::string name(objectName);
  std::ranges::replace_if(name, HasMeaningInPaths, ' ');
  if (name.size() > kLongestName) {
    name.resize(kLongestName);
    while (!name.empty() && !QvPlatform::IsUtf8(name))
      name.pop_back();
  }
  name = QvPlatform::Trim(name);
  if (name.empty()) name = "unnamed";
  if (name.front() == '-' || IsDeviceName(QvPlatform::UpperCase(name))) name.insert(0, "_");
  return name;
}

// What ends a file in this form.
std::string_view EndOf(ObjectFileForm form, std::string_view content) {
  if (form == ObjectFileForm::kText) return {"\0", 1};
  return content.ends_with('\n') ? "" : "\n";
}

// Whether the file is a table or a container; false for one that cannot be read.
bool IsDatabaseFile(const fs::path& path) {
  namespace storage = QvPlatform::detail;
  TQvFileStream stream;
  if (!stream.Open(path.string(), QvOpenMode::kRead)) return false;
  std::string header(storage::kFileHeaderSize, '\0');
  header.resize(stream.Read(header.data(), header.size()));
  const std::uint32_t mark = storage::ApplicationIdOf(header);
  return mark == storage::kTableFileId || mark == storage::kContainerId;
}

// The file beside which SQLite keeps such a journal; the path itself for a file that is none.
fs::path OwnerOfJournal(const fs::path& path) {
  std::string name = path.string();
  for (const std::string_view ending : {"-journal", "-wal", "-shm"}) {
    if (name.ends_with(ending)) name.resize(name.size() - ending.size());
  }
  return name;
}

bool IsDatabaseFolder(const fs::path& folder) {
  return std::ranges::any_of(TableCatalogue(), [&folder](const TableSpec& table) {
    return !table.streamName.empty() && IsDatabaseFile(folder / table.streamName);
  });
}

// The units share their members but for the number of their kind.
TObjectType UnitTypeOf(const TStringTree& tree) {
  int kind = 0;
  (void)TreeIds::GetInteger(tree, TreeIds::kUnitKind, &kind);
  if (kind == static_cast<int>(UnitKind::kLinear)) return TObjectType::kLinearUnit;
  return kind == static_cast<int>(UnitKind::kScale) ? TObjectType::kScaleUnit
                                                    : TObjectType::kAngularUnit;
}

}  // namespace

void RequireForm(ObjectFileForm form, const ObjectDescriptor& type) {
  if (IsSystemForm(form) && type.type != TObjectType::kReferenceSystem) {
    throw ObjectFormError("PROJJSON and WKT hold reference systems, not a " +
                          std::string(type.typeName));
  }
}

std::string ObjectFileExtension(ObjectFileForm form, std::string_view typeName) {
  switch (form) {
    case ObjectFileForm::kText:
      return "." + std::string(typeName);
    case ObjectFileForm::kXml:
      return ".x-ref-system";
    case ObjectFileForm::kProjJson:
      return ".json";
    case ObjectFileForm::kWkt2:
      return ".wkt";
  }
  return "";
}

ObjectFileForm FormOfContent(std::string_view content) {
  if (content.starts_with(kByteOrderMark)) content.remove_prefix(kByteOrderMark.size());
  const std::string_view body = QvPlatform::TrimView(content);
  if (body.starts_with('(')) return ObjectFileForm::kText;
  if (body.starts_with('<')) return ObjectFileForm::kXml;
  return body.starts_with('{') ? ObjectFileForm::kProjJson : ObjectFileForm::kWkt2;
}

ObjectFileForm TreeFormOfContent(std::string_view content) {
  return content.find('<') < content.find('(') ? ObjectFileForm::kXml : ObjectFileForm::kText;
}

std::string WriteTree(const TStringTree& tree, ObjectFileForm form, Dimension dimension) {
  if (form == ObjectFileForm::kText) return WriteTreeText(&tree);
  if (form == ObjectFileForm::kXml) return QvCommonUtils::WriteTreeXml(&tree);
  std::string text;
  std::string error;
  const bool written = form == ObjectFileForm::kProjJson
                           ? TreeToProjJson(&tree, dimension, &text, &error)
                           : TreeToWkt2(&tree, dimension, &text, &error);
  if (!written) throw ObjectFormError(error);
  return text;
}

void ReadTree(std::string_view content, ObjectFileForm form, TStringTree* tree) {
  if (form == ObjectFileForm::kText) return ReadTreeText(content, tree);
  if (form == ObjectFileForm::kXml) return QvCommonUtils::ReadTreeXml(content, tree);
  std::string error;
  if (!TreeFromProjText(std::string(content), tree, &error)) throw ObjectFormError(error);
}

std::optional<TObjectType> TypeOfTree(const TStringTree& tree) {
  for (const ObjectDescriptor& type : ObjectDescriptors()) {
    const auto name = std::ranges::find(type.items, "NAME", &TreeItem::column);
    std::string text;
    if (name == type.items.end() || !tree.GetString(name->id, name->index, &text)) continue;
    return name->id == TreeIds::kUnitName.id ? UnitTypeOf(tree) : type.type;
  }
  return std::nullopt;
}

void RequireOutsideDatabases(const std::string& path) {
  std::error_code error;
  const fs::path canonical = fs::weakly_canonical(path, error);
  const fs::path file = error ? fs::path(path) : canonical;
  const fs::path folder = file.parent_path();
  const bool inside = folder.filename() == "Heights" || folder.filename() == "Backup";
  const bool refused = IsDatabaseFile(OwnerOfJournal(file)) || IsDatabaseFolder(file) ||
                       IsDatabaseFolder(folder) ||
                       (inside && IsDatabaseFolder(folder.parent_path()));
  if (!refused) return;
  throw StorageError("\"" + path + "\" belongs to a database, and nothing else is written there");
}

void WriteTreeFile(const TStringTree& tree, const std::string& path, ObjectFileForm form) {
  if (form != ObjectFileForm::kXml) return SaveObjectFile(path, form, WriteTreeText(&tree));
  RequireOutsideDatabases(path);
  TQvFileStream stream;
  OpenStream(&stream, path, QvOpenMode::kCreate);
  QvCommonUtils::WriteTreeXml(&tree, &stream);
  stream.Commit();
}

void SaveObjectFile(const std::string& path, ObjectFileForm form, std::string_view content) {
  RequireOutsideDatabases(path);
  TQvFileStream stream;
  OpenStream(&stream, path, QvOpenMode::kCreate);
  stream.Write(content.data(), content.size());
  const std::string_view end = EndOf(form, content);
  stream.Write(end.data(), end.size());
  stream.Commit();
}

std::string LoadObjectFile(const std::string& path, std::optional<std::uint64_t> largest) {
  TQvFileStream stream;
  OpenStream(&stream, path, QvOpenMode::kRead);
  if (largest && stream.Size() > *largest) throw ObjectFileTooLarge(path);
  return stream.ReadAll();
}

std::string FreeFileNames::Next(std::string_view objectName, std::string_view extension) {
  const std::string stem = folder_ + "/" + SafeName(objectName);
  std::string candidate = stem + std::string(extension);
  for (int number = 1;
       used_.contains(QvPlatform::UpperCase(candidate)) || StorageFileExists(candidate, false);
       ++number) {
    candidate = stem + "[" + std::to_string(number) + "]" + std::string(extension);
  }
  used_.insert(QvPlatform::UpperCase(candidate));
  return candidate;
}

namespace {

// The folder, once it is known that it is no database's.
const std::string& FolderOfObjects(const std::string& folder) {
  RequireOutsideDatabases(folder + "/.");
  return folder;
}

}  // namespace

ObjectFolder::ObjectFolder(const std::string& folder)
    : aside_(FolderOfObjects(folder)), folder_(folder), names_(folder) {}

void ObjectFolder::Add(std::string_view objectName, std::string_view extension, ObjectFileForm form,
                       std::string_view content) {
  const std::string path = names_.Next(objectName, extension);
  const std::string name = path.substr(folder_.size() + 1);
  std::string bytes(content);
  bytes += EndOf(form, content);
  QvPlatform::WriteUnflushed(aside_.Path(name), bytes.data(), bytes.size());
  files_.push_back(name);
}

void ObjectFolder::Deliver() {
  aside_.Sync();
  for (const std::string& name : std::exchange(files_, {})) {
    QvPlatform::MoveUnflushed(aside_.Path(name), folder_ + "/" + name);
  }
  QvPlatform::FlushFolder(folder_);
}

}  // namespace QvRefSystem
