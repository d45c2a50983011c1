#include "processors/vertical_records.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/dbset/write_group.h"
#include "processors/record_equality.h"

namespace QvRefSystem {

using QvPlatform::RowMatch;
using QvPlatform::RowView;

namespace {

constexpr EqualityColumn kName{"NAME", Compare::kText};
constexpr EqualityColumn kKind{"VDATA_TYPE", Compare::kInteger};

// Where the file lies is nothing of what a system says.
constexpr std::array kTableEquality{kName,
                                    kKind,
                                    EqualityColumn{"VDATA_FORMAT", Compare::kInteger},
                                    EqualityColumn{"VDATA_CRC32", Compare::kInteger},
                                    EqualityColumn{"VDATA_EXTENTS_NORTH", Compare::kText},
                                    EqualityColumn{"VDATA_EXTENTS_EAST", Compare::kText},
                                    EqualityColumn{"VDATA_EXTENTS_SOUTH", Compare::kText},
                                    EqualityColumn{"VDATA_EXTENTS_WEST", Compare::kText},
                                    EqualityColumn{"VDATA_CELL_NORTH_SOUTH", Compare::kText},
                                    EqualityColumn{"VDATA_CELL_EAST_WEST", Compare::kText}};
constexpr std::array kOffsetEquality{kName, kKind,
                                     EqualityColumn{"VDATA_UNIT_AUTOKEY", Compare::kInteger},
                                     EqualityColumn{"VDATA_OFFSET", Compare::kText}};
constexpr std::array kOtherEquality{kName, kKind};

}  // namespace

std::span<const EqualityColumn> VerticalEqualityOf(int kind) {
  const auto known = HeightKindOf(kind);
  if (known == HeightKind::kTable) return kTableEquality;
  if (known == HeightKind::kOffset) return kOffsetEquality;
  return kOtherEquality;
}

bool VerticalRecords::IsStoredKind(int kind) {
  if (const auto known = HeightKindOf(kind)) return *known != HeightKind::kSystemGeoid;
  throw InvalidTypeError("a height system of kind " + std::to_string(kind) + " is not known");
}

bool VerticalRecords::IsSameRecord(int otherKey) const {
  const RowView row = DataSet->CurrentRow();
  if (!row || otherKey < 1) return false;
  const RowView other = DataSet->FindFirst({RowMatch::Integer(KeyColumn(), otherKey)});
  if (!other) return false;
  const auto equality = VerticalEqualityOf(CurrentInteger("VDATA_TYPE"));
  return std::ranges::all_of(equality, [&](const EqualityColumn& one) {
    const int column = Column(one.column);
    return one.compare == Compare::kInteger ? row.GetInteger(column) == other.GetInteger(column)
                                            : row.GetText(column) == other.GetText(column);
  });
}

std::string VerticalRecords::ComparableHeights(int key) const {
  const RowView row = DataSet->FindFirst({RowMatch::Integer(KeyColumn(), key)});
  if (!row) return "key " + std::to_string(key) + '\n';
  return ComparableText(VerticalEqualityOf(row.GetInteger(Column("VDATA_TYPE"))), columns_, row);
}

void VerticalRecords::Remove(int key) {
  const ControlsGuard guard(*DataSet);
  QvPlatform::TQvWriteGroup group(data_.WritableTables());
  RemoveKey(key, group);
  group.Commit();
}

}  // namespace QvRefSystem
