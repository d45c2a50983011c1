#include "assembly/height_check.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "database/height_storage.h"
#include "platform/storage/crc32.h"
#include "platform/text/text.h"
#include "processors/vertical_records.h"

namespace QvRefSystem {
namespace {

using QvPlatform::Crc32;
using QvPlatform::RowView;

std::vector<std::string_view> Split(std::string_view text) {
  constexpr std::string_view kSeparators = " \n\r\t";
  std::vector<std::string_view> tokens;
  for (std::size_t at = text.find_first_not_of(kSeparators); at != text.npos;) {
    const std::size_t end = std::min(text.find_first_of(kSeparators, at), text.size());
    tokens.push_back(text.substr(at, end - at));
    at = text.find_first_not_of(kSeparators, end);
  }
  return tokens;
}

// The layout in which tables are written: the limits and cell sizes on a line of their own, then a
// line for each row of values, each with a tab behind. A tree holds a table as one line, beside the
// checksum of these lines. Nothing for a text that is no table.
std::optional<std::string> InLines(std::string_view text) {
  enum : std::size_t { kWest = 2, kEast = 3, kCellEastWest = 5, kHeader = 6 };
  const std::vector<std::string_view> tokens = Split(text);
  double west = 0;
  double east = 0;
  double cell = 0;
  if (tokens.size() <= kHeader || !QvPlatform::TextToDouble(tokens[kWest], &west) ||
      !QvPlatform::TextToDouble(tokens[kEast], &east) ||
      !QvPlatform::TextToDouble(tokens[kCellEastWest], &cell)) {
    return std::nullopt;
  }
  const double columns = std::floor((east - west) / cell + 0.5) + 1;
  const std::size_t values = tokens.size() - kHeader;
  if (!(columns >= 1 && columns <= static_cast<double>(values))) return std::nullopt;
  const auto rowLength = static_cast<std::size_t>(columns);
  std::string lines;
  lines.reserve(text.size() + tokens.size());
  for (std::size_t i = 0; i < kHeader; ++i)
    lines.append(tokens[i]).append(1, i + 1 < kHeader ? ' ' : '\n');
  for (std::size_t i = 0; i < values; ++i) {
    lines.append(tokens[kHeader + i]).append(1, '\t');
    if ((i + 1) % rowLength == 0) lines.append(1, '\n');
  }
  return lines;
}

bool HasChecksum(const std::string& text, std::uint32_t checksum) {
  if (Crc32(text) == checksum) return true;
  const std::optional<std::string> lines = InLines(text);
  return lines && Crc32(*lines) == checksum;
}

class HeightCheck {
 public:
  HeightCheck(TdatamoduleQvRfData& data, const TellFinding& tell)
      : data_(data),
        tell_(tell),
        systems_(data.datasetRefSystem),
        heights_(data.datasetVerticalRefSystem) {}

  void Check() {
    CheckOwners();
    for (int i = 0; i < heights_.RecordCount(); ++i)
      CheckRecord(heights_.Row(i));
    CheckLeftFiles();
  }

 private:
  [[nodiscard]] int Number(RowView row, std::string_view field) const {
    return row.GetInteger(heights_.FieldByName(field).GetIndex());
  }
  [[nodiscard]] const std::string& Text(RowView row, std::string_view field) const {
    return row.GetText(heights_.FieldByName(field).GetIndex());
  }
  void Tell(RowView row, const std::string& what) { tell_(TableId::kVerticalRefSystem, row, what); }

  void CheckOwners() {
    const int key = systems_.FieldByName("AUTOKEY").GetIndex();
    const int vertical = systems_.FieldByName("VERT_SYSTEM_AUTOKEY").GetIndex();
    const int code = systems_.FieldByName("VERT_SYSTEM_CODE").GetIndex();
    for (int i = 0; i < systems_.RecordCount(); ++i) {
      const RowView row = systems_.Row(i);
      const int heights = row.GetInteger(vertical);
      if (heights == 0) continue;
      if (row.GetInteger(code) != 0) {
        tell_(TableId::kRefSystem, row, "the system has both a height system and a built-in geoid");
      }
      const auto [owner, isFirst] = owners_.emplace(heights, row.GetInteger(key));
      if (isFirst) continue;
      tell_(TableId::kRefSystem, row,
            "VERT_SYSTEM_AUTOKEY " + std::to_string(heights) + " is also that of key " +
                std::to_string(owner->second));
    }
  }

  void CheckRecord(RowView row) {
    if (!owners_.contains(Number(row, "AUTOKEY"))) Tell(row, "no reference system refers to it");
    switch (const int kind = Number(row, "VDATA_TYPE")) {
      case kHeightTable:
        return CheckTable(row);
      case kHeightOffset: {
        double offset = 0;
        if (Number(row, "VDATA_UNIT_AUTOKEY") == 0) Tell(row, "VDATA_UNIT_AUTOKEY is missing");
        if (QvPlatform::TextToDouble(Text(row, "VDATA_OFFSET"), &offset)) return;
        return Tell(row, "VDATA_OFFSET \"" + Text(row, "VDATA_OFFSET") + "\" is no number");
      }
      default:
        Tell(row, "VDATA_TYPE " + std::to_string(kind) + " is no kind of height system");
    }
  }

  void CheckTable(RowView row) {
    const std::string& fileName = Text(row, "VDATA_FILENAME");
    const std::string which = "the height file \"" + fileName + "\" ";
    const auto [first, isNew] = files_.emplace(Comparable(fileName), Number(row, "AUTOKEY"));
    if (!isNew) Tell(row, which + "is also that of key " + std::to_string(first->second));
    const std::optional<std::string> path = HeightStoragePath(data_, fileName);
    std::string text;
    if (!path || !StorageFileExists(*path, data_.ResourceForm)) {
      Tell(row, which + "is missing");
    } else if (!LoadStorageFile(*path, data_.ResourceForm, &text)) {
      Tell(row, which + "is empty or cannot be read");
    } else if (!HasChecksum(text, static_cast<std::uint32_t>(Number(row, "VDATA_CRC32")))) {
      Tell(row, which + "differs from VDATA_CRC32");
    }
  }

  void CheckLeftFiles() {
    try {
      for (const std::string& name :
           ListStorageFiles(data_.GetHeightsPrefix(), data_.ResourceForm)) {
        if (files_.contains(Comparable(name))) continue;
        Tell({}, "the height file \"" + name + "\" is that of no record");
      }
    } catch (const QvPlatform::StorageError& error) {
      Tell({}, error.what());
    }
  }

  // A container tells no ASCII letter from its capital.
  [[nodiscard]] std::string Comparable(std::string name) const {
    if (!data_.ResourceForm) return name;
    std::ranges::transform(name, name.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; });
    return name;
  }

  TdatamoduleQvRfData& data_;
  const TellFinding& tell_;
  QvPlatform::TQvDataSet& systems_;
  QvPlatform::TQvDataSet& heights_;
  /// The first reference system of each height system.
  std::map<int, int> owners_;
  /// The first record that names each file.
  std::map<std::string, int> files_;
};

}  // namespace

void CheckHeights(TdatamoduleQvRfData& data, const TellFinding& tell) {
  HeightCheck(data, tell).Check();
}

}  // namespace QvRefSystem
