#include "registry/object_files.h"

#include <algorithm>
#include <array>

#include "database/storage_files.h"
#include "platform/geocore/wkt2.h"
#include "platform/storage/file_stream.h"
#include "platform/storage/stream.h"
#include "platform/text/text.h"
#include "registry/proj_bridge.h"

namespace QvRefSystem {

using QvCommonUtils::TStringTree;
using QvPlatform::QvOpenMode;
using QvPlatform::StorageError;
using QvPlatform::TQvFileStream;

namespace {

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

void WriteTreeFile(const TStringTree& tree, const std::string& path, ObjectFileForm form) {
  if (form != ObjectFileForm::kXml) return SaveObjectFile(path, form, WriteTreeText(&tree));
  TQvFileStream stream;
  OpenStream(&stream, path, QvOpenMode::kCreate);
  QvCommonUtils::WriteTreeXml(&tree, &stream);
  stream.Commit();
}

void SaveObjectFile(const std::string& path, ObjectFileForm form, std::string_view content) {
  TQvFileStream stream;
  OpenStream(&stream, path, QvOpenMode::kCreate);
  stream.Write(content.data(), content.size());
  if (form == ObjectFileForm::kText) {
    stream.Write("", 1);
  } else if (!content.ends_with('\n')) {
    stream.Write("\n", 1);
  }
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

}  // namespace QvRefSystem
