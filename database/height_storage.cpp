#include "database/height_storage.h"

#include <algorithm>
#include <array>

#include "database/storage_files.h"
#include "platform/storage/crc32.h"
#include "platform/text/text.h"

namespace QvRefSystem {

namespace {

constexpr char kNameOfNothing[] = "heights";
/// A file name and the record's field take 255 bytes; the rest is for the number that makes a name
/// unique.
constexpr std::size_t kLongestName = 240;

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

/// The separators of all systems to which the database may be carried.
bool IsSeparator(char c) {
  return c == '/' || c == '\\' || c == ':';
}

bool IsDots(std::string_view name) {
  return name.find_first_not_of('.') == std::string_view::npos;
}

/// Whether some system takes the name, whatever its extension, for a device.
bool IsDevice(std::string_view name) {
  std::string stem = QvPlatform::Trim(name.substr(0, name.find('.')));
  for (char& c : stem) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  static constexpr std::array<std::string_view, 4> kAlone = {"CON", "PRN", "AUX", "NUL"};
  if (std::ranges::find(kAlone, stem) != kAlone.end()) return true;
  const bool isPort = stem.starts_with("COM") || stem.starts_with("LPT");
  return stem.size() == 4 && isPort && stem.back() >= '0' && stem.back() <= '9';
}

void CutToLength(std::string* name) {
  if (name->size() <= kLongestName) return;
  std::size_t end = kLongestName;
  // Bytes of this form continue a character of UTF-8.
  while (end > 0 && (static_cast<unsigned char>((*name)[end]) & 0xC0) == 0x80)
    --end;
  name->resize(end);
}

std::string NameAsItStands(std::string_view name, bool resourceForm) {
  std::string result(name);
  std::ranges::replace_if(
      result, [resourceForm](char c) { return IsSeparator(c) || (resourceForm && c == '.'); }, ' ');
  return result;
}

/// The word under which the table keeps what is known of a record's file.
constexpr std::string_view kFileNote = "height file";

/// Size in bytes and CRC-32.
std::string MarkOf(std::string_view content) {
  return std::to_string(content.size()) + ' ' + std::to_string(QvPlatform::Crc32(content));
}

}  // namespace

std::optional<std::string> HeightStoragePath(const TdatamoduleQvRfData& data,
                                             std::string_view shortName) {
  const bool refused = IsDots(shortName) || std::ranges::any_of(shortName, IsControl) ||
                       std::ranges::any_of(shortName, IsSeparator) ||
                       QvPlatform::TrimView(shortName).size() != shortName.size();
  if (refused) return std::nullopt;
  return data.GetHeightsPrefix() + std::string(shortName);
}

void NoteHeightFile(QvPlatform::TQvDataSet& heights, int key, std::string_view content) {
  heights.SetNote(key, kFileNote, MarkOf(content));
}

std::optional<std::string> HeightFileDamage(const QvPlatform::TQvDataSet& heights, int key,
                                            std::string_view content) {
  const std::optional<std::string> mark = heights.Note(key, kFileNote);
  if (!mark || *mark == MarkOf(content)) return std::nullopt;
  return "the file is not the one that was written for the height system: it was damaged or "
         "exchanged";
}

std::string NewHeightStorageName(const TdatamoduleQvRfData& data, std::string_view objectName,
                                 HeightNaming naming) {
  std::string name = naming == HeightNaming::kReplaced
                         ? MakeFileName(objectName)
                         : NameAsItStands(objectName, data.ResourceForm);
  std::ranges::replace_if(name, IsControl, ' ');
  name = QvPlatform::Trim(name);
  CutToLength(&name);
  name = QvPlatform::Trim(name);
  if (IsDots(name)) name = kNameOfNothing;
  if (IsDevice(name)) name.insert(std::min(name.find('.'), name.size()), "_");
  return MakeUniqueStorageName(data.GetHeightsPrefix() + name, data.ResourceForm);
}

}  // namespace QvRefSystem
