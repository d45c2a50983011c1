#include "processors/vertical_records.h"

#include <algorithm>
#include <array>
#include <string>

namespace QvRefSystem {

using QvPlatform::TMatch;
using QvPlatform::TRowView;

namespace {

constexpr TEqualityColumn kName{"NAME", TCompare::kText};
constexpr TEqualityColumn kKind{"VDATA_TYPE", TCompare::kInteger};

// Where the file lies is nothing of what a system says.
constexpr std::array kTableEquality{kName,
                                    kKind,
                                    TEqualityColumn{"VDATA_FORMAT", TCompare::kInteger},
                                    TEqualityColumn{"VDATA_CRC32", TCompare::kInteger},
                                    TEqualityColumn{"VDATA_EXTENTS_NORTH", TCompare::kText},
                                    TEqualityColumn{"VDATA_EXTENTS_EAST", TCompare::kText},
                                    TEqualityColumn{"VDATA_EXTENTS_SOUTH", TCompare::kText},
                                    TEqualityColumn{"VDATA_EXTENTS_WEST", TCompare::kText},
                                    TEqualityColumn{"VDATA_CELL_NORTH_SOUTH", TCompare::kText},
                                    TEqualityColumn{"VDATA_CELL_EAST_WEST", TCompare::kText}};
constexpr std::array kOffsetEquality{kName, kKind,
                                     TEqualityColumn{"VDATA_UNIT_AUTOKEY", TCompare::kInteger},
                                     TEqualityColumn{"VDATA_OFFSET", TCompare::kText}};
constexpr std::array kOtherEquality{kName, kKind};

}  // namespace

std::span<const TEqualityColumn> VerticalEqualityOf(int kind) {
  switch (kind) {
    case kHeightTable:
      return kTableEquality;
    case kHeightOffset:
      return kOffsetEquality;
    default:
      return kOtherEquality;
  }
}

bool TVerticalRecords::IsStoredKind(int kind) {
  if (kind == kHeightTable || kind == kHeightOffset) return true;
  if (kind == kSystemGeoid) return false;
  throw InvalidTypeError("a height system of kind " + std::to_string(kind) + " is not known");
}

bool TVerticalRecords::IsSameRecord(int otherKey) const {
  const TRowView row = DataSet->CurrentRow();
  if (!row || otherKey < 1) return false;
  const TRowView other = DataSet->FindFirst({TMatch::Integer(Column("AUTOKEY"), otherKey)});
  if (!other) return false;
  return std::ranges::all_of(VerticalEqualityOf(CurrentInteger("VDATA_TYPE")),
                             [&](const TEqualityColumn& equality) {
                               const int column = Column(equality.column);
                               return equality.compare == TCompare::kInteger
                                          ? row.GetInteger(column) == other.GetInteger(column)
                                          : row.GetText(column) == other.GetText(column);
                             });
}

void TVerticalRecords::Remove(int key) {
  const TControlsGuard guard(*DataSet);
  if (LocateKey(key)) RemoveCurrent();
}

}  // namespace QvRefSystem
