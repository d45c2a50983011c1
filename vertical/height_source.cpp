#include "vertical/height_source.h"

#include <exception>

#include "database/storage_files.h"
#include "platform/data/height_table_reader.h"
#include "platform/text/text.h"
#include "platform/ui/progress_display.h"
#include "platform/ui/texts.h"

namespace QvRefSystem {
namespace {

bool IsNumber(const std::string& text) {
  double value = 0;
  return QvPlatform::TextToDouble(text, &value);
}

}  // namespace

std::optional<HeightKind> HeightSource::UsualKind() const {
  const auto ifWhole = [](bool isWhole, HeightKind kind) {
    return isWhole ? std::optional(kind) : std::nullopt;
  };
  switch (Kind) {
    case HeightSourceKind::kSystem:
      return ifWhole(System != nullptr, HeightKind::kTable);
    case HeightSourceKind::kFile:
      return ifWhole(FileTable != nullptr && FilePlaneSystem != nullptr, HeightKind::kTable);
    case HeightSourceKind::kOffset:
      return ifWhole(OffsetUnit != 0 && IsNumber(Offset), HeightKind::kOffset);
    case HeightSourceKind::kNone:
      break;
  }
  return std::nullopt;
}

bool HeightSource::CanMake(HeightKind kind) const {
  const std::optional<HeightKind> usual = UsualKind();
  return usual && (kind == HeightKind::kOffset || kind == *usual);
}

HeightRefusal ReadHeightText(const std::string& path, bool useResource, std::string* text,
                             QvPlatform::TUserInterface& ui) {
  try {
    *text = ReadStorageFile(path, useResource);
    return HeightRefusal::kNone;
  } catch (const QvPlatform::StorageError& error) {
    if (StorageFileOpens(path, useResource)) return HeightRefusal::kNotRead;
    TellCannotCreate(path, useResource, ui, error.what());
    return HeightRefusal::kNotOpened;
  } catch (const std::exception&) {
    return HeightRefusal::kNotRead;
  }
}

HeightRefusal TableOfText(const std::string& text, THeightTable* table,
                          QvPlatform::TUserInterface& ui) {
  ProgressDisplay progress(ui, ProgressDisplay::kCounted,
                           QvPlatform::SystemText(QvPlatform::TextId::kLoadingHeights));
  if (ParseHeightTable(table, text, progress.Interface())) return HeightRefusal::kNone;
  if (progress.Cancelled()) return HeightRefusal::kCancelled;
  HeightTableHeader header;
  return ReadHeightTableHeader(text, &header) ? HeightRefusal::kNoValues : HeightRefusal::kNoGrid;
}

HeightRefusal ReadHeightTable(const std::string& path, bool useResource, THeightTable* table,
                              QvPlatform::TUserInterface& ui) {
  std::string text;
  const HeightRefusal refusal = ReadHeightText(path, useResource, &text, ui);
  return refusal == HeightRefusal::kNone ? TableOfText(text, table, ui) : refusal;
}

}  // namespace QvRefSystem
