#include "vertical/height_maker.h"

#include <exception>
#include <memory>
#include <utility>

#include "platform/ui/progress_display.h"
#include "platform/ui/texts.h"
#include "vertical/linear_unit_texts.h"

namespace QvRefSystem {

using QvPlatform::SystemText;
using QvPlatform::TextId;

MadeHeights HeightMaker::Make(std::optional<HeightKind> kind, const OffsetAcceptance& accept) {
  made_ = {};
  if (source_.Kind == HeightSourceKind::kOffset) {
    if (kind == HeightKind::kOffset) CopyOffset();
  } else if (const std::optional<Origin> origin = OriginOf()) {
    if (kind == HeightKind::kTable) MakeTable(*origin);
    if (kind == HeightKind::kOffset) MakeOffset(*origin, accept);
  }
  return std::move(made_);
}

std::optional<HeightMaker::Origin> HeightMaker::OriginOf() const {
  if (ground_.Plane == nullptr || !source_.CanMake(HeightKind::kTable)) return std::nullopt;
  if (source_.Kind == HeightSourceKind::kSystem) {
    return Origin{source_.System.get(), nullptr, source_.System->Name()};
  }
  return Origin{source_.FilePlaneSystem.get(), source_.FileTable.get(), source_.FileName};
}

void HeightMaker::InitializeGrid(THeightTable* table) const {
  const TShell2DTableExtents& grid = ground_.Grid;
  ground_.Plane->InitializeHeightTableGrid(grid.North, grid.South, grid.East, grid.West,
                                           grid.CellNorthSouth, grid.CellEastWest, table);
}

bool HeightMaker::CanUse(const Origin& origin, const THeightTable& table) {
  constexpr std::uint32_t kFewestNodes = 2;
  const bool fewNodes = table.CountX < kFewestNodes || table.CountY < kFewestNodes;
  if (origin.Heights != nullptr && fewNodes) {
    made_.Refusal = HeightRefusal::kCellTooGreat;
  } else if (table.Data == nullptr) {
    made_.Refusal = HeightRefusal::kUnusableGrid;
  }
  return made_.Refusal == HeightRefusal::kNone;
}

void HeightMaker::MakeTable(const Origin& origin) {
  auto table = std::make_unique<THeightTable>();
  InitializeGrid(table.get());
  if (!CanUse(origin, *table)) return;
  ProgressDisplay progress(data_.Ui(), ProgressDisplay::kFree,
                           SystemText(TextId::kRecalculatingHeights));
  const auto interpolate = [&](const auto&... heights) {
    origin.Plane->InterpolateHeights(heights..., ground_.Plane, table.get(), ProgressDisplay::Next);
  };
  try {
    origin.Heights != nullptr ? interpolate(origin.Heights) : interpolate();
  } catch (const std::exception& error) {
    if (!progress.Cancelled()) made_.Failure = error.what();
    return;
  }
  made_.Data.Table = std::move(table);
  made_.Data.Grid = ground_.Grid;
  made_.IsDone = true;
}

void HeightMaker::MakeOffset(const Origin& origin, const OffsetAcceptance& accept) {
  HeightApproximation result;
  InitializeGrid(&result.Errors);
  if (result.Errors.Data == nullptr) {
    made_.Refusal = HeightRefusal::kUnusableGrid;
    return;
  }
  const auto approximate = [&](const auto&... heights) {
    ProgressDisplay progress(data_.Ui(), ProgressDisplay::kCounted,
                             SystemText(TextId::kApproximatingHeights));
    return origin.Plane->ApproximateHeights(heights..., ground_.Plane, &result.Offset, &result.Rms,
                                            &result.Max, &result.Errors, progress.Interface());
  };
  if (!(origin.Heights != nullptr ? approximate(origin.Heights) : approximate())) return;
  const std::optional<UnitTexts> unit = LinearUnitTexts(data_, ground_.UnitKey);
  if (!unit) return;
  result.UnitLabel = unit->Label();
  result.SourceName = origin.Name;
  if (accept && accept(result)) {
    made_.Data.Offset = result.Offset;
    made_.Data.OffsetUnit = ground_.UnitKey;
  }
  made_.IsDone = true;
}

void HeightMaker::CopyOffset() {
  if (!source_.CanMake(HeightKind::kOffset) || !LinearUnitTexts(data_, source_.OffsetUnit)) return;
  made_.Data.Offset = source_.Offset;
  made_.Data.OffsetUnit = source_.OffsetUnit;
  made_.IsDone = true;
}

}  // namespace QvRefSystem
