// How heights are made from their source, and stored.

#include "platform/ui/progress_display.h"
#include "platform/ui/texts.h"
#include "vertical/height_creation.h"

namespace QvRefSystem {

using QvPlatform::SystemText;
using QvPlatform::TextId;

namespace {

constexpr std::uint32_t kFewestNodes = 2;

}  // namespace

std::optional<HeightCreation::HeightMaking> HeightCreation::MakingOf() const {
  if (target_ == nullptr || !CanMake(HeightDataKind::kTable)) return std::nullopt;
  if (source_.Kind == HeightSourceKind::kSystem) {
    return HeightMaking{source_.System.get(), nullptr, source_.System->Name()};
  }
  return HeightMaking{source_.FilePlaneSystem.get(), source_.FileTable.get(), source_.FileName};
}

HeightRefusal HeightCreation::Create(HeightDataKind kind, const OffsetAcceptance& accept) {
  ClearData();
  HeightRefusal refusal = HeightRefusal::kNone;
  if (source_.Kind == HeightSourceKind::kOffset) {
    isCurrent_ = kind == HeightDataKind::kOffset && CopyOffset();
  } else if (const std::optional<HeightMaking> making = MakingOf()) {
    isCurrent_ = (kind == HeightDataKind::kTable && MakeTable(*making, &refusal)) ||
                 (kind == HeightDataKind::kOffset && MakeOffset(*making, accept, &refusal));
  }
  return refusal;
}

void HeightCreation::InitializeGrid(THeightTable* table) const {
  target_->InitializeHeightTableGrid(grid_.North, grid_.South, grid_.East, grid_.West,
                                     grid_.CellNorthSouth, grid_.CellEastWest, table);
}

bool HeightCreation::MakeTable(const HeightMaking& making, HeightRefusal* refusal) {
  auto table = std::make_unique<THeightTable>();
  InitializeGrid(table.get());
  const bool fewNodes = table->CountX < kFewestNodes || table->CountY < kFewestNodes;
  if (making.Heights != nullptr && fewNodes) {
    *refusal = HeightRefusal::kCellTooGreat;
    return false;
  }
  if (table->Data == nullptr) {
    *refusal = HeightRefusal::kUnusableGrid;
    return false;
  }
  ProgressDisplay progress(data_.Ui(), ProgressDisplay::kFree,
                           SystemText(TextId::kRecalculatingHeights));
  try {
    if (making.Heights != nullptr) {
      making.System->InterpolateHeights(making.Heights, target_.get(), table.get(),
                                        ProgressDisplay::Next);
    } else {
      making.System->InterpolateHeights(target_.get(), table.get(), ProgressDisplay::Next);
    }
  } catch (const std::exception& error) {
    if (!progress.Cancelled()) failure_ = error.what();
    return false;
  }
  made_.Table = std::move(table);
  made_.Grid = grid_;
  return true;
}

bool HeightCreation::MakeOffset(const HeightMaking& making, const OffsetAcceptance& accept,
                                HeightRefusal* refusal) {
  HeightApproximation result;
  InitializeGrid(&result.Errors);
  if (result.Errors.Data == nullptr) {
    *refusal = HeightRefusal::kUnusableGrid;
    return false;
  }
  const auto approximate = [&](const auto&... source) {
    ProgressDisplay progress(data_.Ui(), ProgressDisplay::kCounted,
                             SystemText(TextId::kApproximatingHeights));
    return making.System->ApproximateHeights(source..., target_.get(), &result.Offset, &result.Rms,
                                             &result.Max, &result.Errors, progress.Interface());
  };
  if (!(making.Heights != nullptr ? approximate(making.Heights) : approximate())) return false;
  const std::optional<UnitTexts> unit = LinearUnitTexts(data_, heightUnitKey_);
  if (!unit) return false;
  result.UnitLabel = unit->Label();
  result.SourceName = making.Name;
  if (accept && accept(result)) {
    made_.Offset = result.Offset;
    made_.OffsetUnit = heightUnitKey_;
  }
  return true;
}

bool HeightCreation::CopyOffset() {
  if (!CanMake(HeightDataKind::kOffset) || !LinearUnitTexts(data_, source_.OffsetUnit)) {
    return false;
  }
  made_.Offset = source_.Offset;
  made_.OffsetUnit = source_.OffsetUnit;
  return true;
}

bool HeightCreation::Store(const HeightRecord& texts, bool append) {
  HeightRecord record = texts;
  record.Table = made_.Table.get();
  record.Grid = made_.Grid;
  record.Offset = made_.Offset;
  record.OffsetUnit = made_.OffsetUnit;
  if (!processor_.Store(record, append)) return false;
  storedTarget_ = std::move(target_);
  KeepSource();
  storedTable_ = std::move(made_.Table);
  return true;
}

void HeightCreation::KeepSource() {
  HeightSource kept;
  switch (kept.Kind = source_.Kind) {
    case HeightSourceKind::kNone:
      // The data were loaded: what they were once made from is still what is known of them.
      return;
    case HeightSourceKind::kSystem:
      kept.System = std::move(source_.System);
      break;
    case HeightSourceKind::kFile:
      kept.FileName = source_.FileName;
      kept.FileTable = std::move(source_.FileTable);
      kept.FilePlaneSystem = std::move(source_.FilePlaneSystem);
      break;
    case HeightSourceKind::kOffset:
      kept.Offset = source_.Offset;
      kept.OffsetUnit = source_.OffsetUnit;
      break;
  }
  kept_ = std::move(kept);
}

}  // namespace QvRefSystem
