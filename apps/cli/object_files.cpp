#include "apps/cli/object_files.h"

#include <algorithm>
#include <array>

#include "apps/cli/command_error.h"
#include "apps/cli/object_types.h"
#include "database/storage_files.h"
#include "platform/geocore/wkt2.h"
#include "platform/storage/file_stream.h"
#include "platform/storage/stream.h"
#include "platform/text/text.h"
#include "registry/proj_bridge.h"

namespace RefframeCli {

using QvCommonUtils::TStringTree;
using QvPlatform::QvOpenMode;
using QvPlatform::StorageError;
using QvPlatform::TQvFileStream;
using QvRefSystem::Dimension;
using QvRefSystem::ObjectDescriptor;
using QvRefSystem::TObjectType;

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// What a name may be long, in bytes, so that a number and an extension still fit into the 255 that
// file systems allow.
constexpr std::size_t kLongestName = 180;

void RequireSystem(const ObjectDescriptor& type, ObjectForm form) {
  if (IsSystemForm(form) && type.type != TObjectType::kReferenceSystem) {
    throw CommandError("PROJJSON and WKT hold reference systems, not a " +
                       std::string(type.typeName));
  }
}

ObjectForm GuessForm(std::string_view content) {
  if (content.starts_with(kByteOrderMark)) content.remove_prefix(kByteOrderMark.size());
  const std::string_view body = QvPlatform::TrimView(content);
  if (body.starts_with('(')) return ObjectForm::kText;
  if (body.starts_with('<')) return ObjectForm::kXml;
  return body.starts_with('{') ? ObjectForm::kProjJson : ObjectForm::kWkt2;
}

std::string Extension(const ObjectDescriptor& type, ObjectForm form) {
  switch (form) {
    case ObjectForm::kText:
      return "." + TypeArgument(type.typeName);
    case ObjectForm::kXml:
      return ".x-ref-system";
    case ObjectForm::kProjJson:
      return ".json";
    case ObjectForm::kWkt2:
      return ".wkt";
  }
  return "";
}

// Names that some systems keep for devices, whatever their extension.
bool IsDeviceName(const std::string& upper) {
  constexpr std::array<std::string_view, 4> kDevices{"CON", "PRN", "AUX", "NUL"};
  if (std::ranges::count(kDevices, upper) > 0) return true;
  return upper.size() == 4 && (upper.starts_with("COM") || upper.starts_with("LPT")) &&
         upper.back() >= '1' && upper.back() <= '9';
}

// The name with a blank for each character that has a meaning in paths or patterns.
std::string SafeName(std::string_view objectName) {
  std::string name(objectName);
  for (char& c : name) {
    const bool control = static_cast<unsigned char>(c) < ' ' || c == '\x7f';
    if (control || std::string_view("/.\\:+*?!\"<>|").find(c) != std::string_view::npos) c = ' ';
  }
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

std::string WriteObject(const TStringTree& tree, const ObjectDescriptor& type, ObjectForm form,
                        Dimension dimension) {
  RequireSystem(type, form);
  if (form == ObjectForm::kText) return WriteTreeText(&tree);
  if (form == ObjectForm::kXml) return QvCommonUtils::WriteTreeXml(&tree);
  std::string text;
  std::string error;
  const bool written = form == ObjectForm::kProjJson
                           ? TreeToProjJson(&tree, dimension, &text, &error)
                           : TreeToWkt2(&tree, dimension, &text, &error);
  if (!written) throw CommandError(error);
  return text;
}

void ReadObject(std::string_view content, const ObjectDescriptor& type,
                std::optional<ObjectForm> form, TStringTree* tree) {
  if (QvPlatform::IsBlank(content)) throw CommandError("the file is empty");
  const ObjectForm actual = form.value_or(GuessForm(content));
  if (actual == ObjectForm::kText) return ReadTreeText(content, tree);
  if (actual == ObjectForm::kXml) return QvCommonUtils::ReadTreeXml(content, tree);
  RequireSystem(type, actual);
  std::string error;
  if (!QvRefSystem::TreeFromProjText(std::string(content), tree, &error)) {
    throw CommandError(error);
  }
}

void SaveObject(const std::string& path, ObjectForm form, std::string_view content) {
  try {
    TQvFileStream stream;
    if (!stream.Open(path, QvOpenMode::kCreate)) throw CommandError(stream.LastError());
    stream.Write(content.data(), content.size());
    if (form == ObjectForm::kText) {
      stream.Write("", 1);
    } else if (!content.ends_with('\n')) {
      stream.Write("\n", 1);
    }
    stream.Commit();
  } catch (const StorageError& error) {
    throw CommandError(error.what());
  }
}

std::string LoadObject(const std::string& path) {
  try {
    TQvFileStream stream;
    if (!stream.Open(path, QvOpenMode::kRead)) throw CommandError(stream.LastError());
    return stream.ReadAll();
  } catch (const StorageError& error) {
    throw CommandError(error.what());
  }
}

std::string FileNames::Next(std::string_view objectName, const ObjectDescriptor& type,
                            ObjectForm form) {
  const std::string stem = folder_ + "/" + SafeName(objectName);
  const std::string extension = Extension(type, form);
  std::string candidate = stem + extension;
  for (int number = 1; used_.contains(QvPlatform::UpperCase(candidate)) ||
                       QvRefSystem::StorageFileExists(candidate, false);
       ++number) {
    candidate = stem + "[" + std::to_string(number) + "]" + extension;
  }
  used_.insert(QvPlatform::UpperCase(candidate));
  return candidate;
}

}  // namespace RefframeCli
