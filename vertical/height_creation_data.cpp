// How heights are made from their source, and stored.

#include "platform/ui/texts.h"
#include "vertical/height_creation.h"

namespace QvRefSystem {

using QvPlatform::SystemText;
using QvPlatform::TextId;

namespace {

constexpr std::uint32_t kFewestNodes = 2;

}  // namespace

std::optional<THeightCreation::TMaking> THeightCreation::MakingOf() const {
  if (target_ == nullptr || !CanMake(THeightDataKind::kTable)) return std::nullopt;
  if (source_.Kind == THeightSourceKind::kSystem) {
    return TMaking{source_.System.get(), nullptr, source_.System->Name()};
  }
  return TMaking{source_.FilePlaneSystem.get(), source_.FileTable.get(), source_.FileName};
}

THeightRefusal THeightCreation::Create(THeightDataKind kind, const TAcceptOffset& accept) {
  ClearData();
  THeightRefusal refusal = THeightRefusal::kNone;
  if (source_.Kind == THeightSourceKind::kOffset) {
    isCurrent_ = kind == THeightDataKind::kOffset && CopyOffset();
  } else if (const std::optional<TMaking> making = MakingOf()) {
    isCurrent_ = (kind == THeightDataKind::kTable && MakeTable(*making, &refusal)) ||
                 (kind == THeightDataKind::kOffset && MakeOffset(*making, accept, &refusal));
  }
  return refusal;
}

void THeightCreation::InitializeGrid(THeightTable* table) const {
  target_->InitializeHeightTableGrid(grid_.North, grid_.South, grid_.East, grid_.West,
                                     grid_.CellNorthSouth, grid_.CellEastWest, table);
}

bool THeightCreation::MakeTable(const TMaking& making, THeightRefusal* refusal) {
  auto table = std::make_unique<THeightTable>();
  InitializeGrid(table.get());
  const bool fewNodes = table->CountX < kFewestNodes || table->CountY < kFewestNodes;
  if (making.Heights != nullptr && fewNodes) {
    *refusal = THeightRefusal::kCellTooGreat;
    return false;
  }
  if (table->Data == nullptr) {
    *refusal = THeightRefusal::kUnusableGrid;
    return false;
  }
  TProgressDisplay progress(data_.Ui(), TProgressDisplay::kFree,
                            SystemText(TextId::kRecalculatingHeights));
  try {
    if (making.Heights != nullptr) {
      making.System->InterpolateHeights(making.Heights, target_.get(), table.get(),
                                        TProgressDisplay::Next);
    } else {
      making.System->InterpolateHeights(target_.get(), table.get(), TProgressDisplay::Next);
    }
  } catch (const std::exception& error) {
    if (!progress.Cancelled()) failure_ = error.what();
    return false;
  }
  made_.Table = std::move(table);
  made_.Grid = grid_;
  return true;
}

bool THeightCreation::MakeOffset(const TMaking& making, const TAcceptOffset& accept,
                                 THeightRefusal* refusal) {
  THeightApproximation result;
  InitializeGrid(&result.Errors);
  if (result.Errors.Data == nullptr) {
    *refusal = THeightRefusal::kUnusableGrid;
    return false;
  }
  const auto approximate = [&](const auto&... source) {
    TProgressDisplay progress(data_.Ui(), TProgressDisplay::kCounted,
                              SystemText(TextId::kApproximatingHeights));
    return making.System->ApproximateHeights(source..., target_.get(), &result.Offset, &result.Rms,
                                             &result.Max, &result.Errors, progress.Interface());
  };
  if (!(making.Heights != nullptr ? approximate(making.Heights) : approximate())) return false;
  const std::optional<TUnitTexts> unit = LinearUnitTexts(data_, heightUnitKey_);
  if (!unit) return false;
  result.UnitLabel = unit->Label();
  result.SourceName = making.Name;
  if (accept && accept(result)) {
    made_.Offset = result.Offset;
    made_.OffsetUnit = heightUnitKey_;
  }
  return true;
}

bool THeightCreation::CopyOffset() {
  if (!CanMake(THeightDataKind::kOffset) || !LinearUnitTexts(data_, source_.OffsetUnit)) {
    return false;
  }
  made_.Offset = source_.Offset;
  made_.OffsetUnit = source_.OffsetUnit;
  return true;
}

bool THeightCreation::Store(const THeightRecord& texts, bool append) {
  THeightRecord record = texts;
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

void THeightCreation::KeepSource() {
  THeightSource kept;
  switch (kept.Kind = source_.Kind) {
    case THeightSourceKind::kNone:
      // The data were loaded: what they were once made from is still what is known of them.
      return;
    case THeightSourceKind::kSystem:
      kept.System = std::move(source_.System);
      break;
    case THeightSourceKind::kFile:
      kept.FileName = source_.FileName;
      kept.FileTable = std::move(source_.FileTable);
      kept.FilePlaneSystem = std::move(source_.FilePlaneSystem);
      break;
    case THeightSourceKind::kOffset:
      kept.Offset = source_.Offset;
      kept.OffsetUnit = source_.OffsetUnit;
      break;
  }
  kept_ = std::move(kept);
}

}  // namespace QvRefSystem
