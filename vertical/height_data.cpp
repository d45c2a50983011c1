#include "vertical/height_data.h"

namespace QvRefSystem {

std::optional<HeightKind> HeightData::Kind() const {
  if (Table != nullptr) return HeightKind::kTable;
  if (!Offset.empty() && OffsetUnit != 0) return HeightKind::kOffset;
  return std::nullopt;
}

}  // namespace QvRefSystem
