#include "processors/datum_shift_processor.h"

#include <algorithm>
#include <array>

namespace QvRefSystem {
namespace {

enum : int { kTranslation = 1, kPositionVector = 2, kCoordinateFrame = 3 };

constexpr int kTypeId = TreeIds::kShiftType.id;

// Members by tree id. A shift is written in the first order of its kind; all are read with the
// texts ahead, then the type, which tells the kind, then what the kind has.
constexpr std::array kTexts{TreeIds::kShiftName.id, TreeIds::kShiftDescription.id,
                            TreeIds::kShiftAbbreviation.id};
constexpr std::array kTranslationMembers{TreeIds::kShiftTx.id, TreeIds::kShiftTy.id,
                                         TreeIds::kShiftTz.id, TreeIds::kShiftLinearUnit.id};
constexpr std::array kSevenParameterMembers{
    TreeIds::kShiftTx.id,       TreeIds::kShiftTy.id,         TreeIds::kShiftTz.id,
    TreeIds::kShiftRx.id,       TreeIds::kShiftRy.id,         TreeIds::kShiftRz.id,
    TreeIds::kShiftS.id,        TreeIds::kShiftLinearUnit.id, TreeIds::kShiftAngularUnit.id,
    TreeIds::kShiftScaleUnit.id};

std::span<const int> MembersOf(int type) {
  switch (type) {
    case kTranslation:
      return kTranslationMembers;
    case kPositionVector:
    case kCoordinateFrame:
      return kSevenParameterMembers;
    default:
      return {};
  }
}

}  // namespace

bool TQvRfDatumShiftDataProcessor::WriteContent(TStringTree* tree) {
  const int type = CurrentInteger("TYPE");
  const std::span<const int> members = MembersOf(type);
  if (members.empty()) return false;
  const QvPlatform::RowView row = DataSet->CurrentRow();
  const auto write = [&](int id) { return WriteItem(tree, ItemOf(id), row); };
  if (!std::ranges::all_of(kTexts, write)) return false;
  // The type stands behind the unit of a translation, but ahead of the three units of the others.
  if (type == kTranslation) return std::ranges::all_of(members, write) && write(kTypeId);
  const auto firstUnit = std::ranges::find_if(
      members, [&](int id) { return ItemOf(id).kind == TreeItem::Kind::kSubobject; });
  return std::all_of(members.begin(), firstUnit, write) && write(kTypeId) &&
         std::all_of(firstUnit, members.end(), write);
}

bool TQvRfDatumShiftDataProcessor::ReadContent(TStringTree* tree, RecordImage* image) {
  const auto read = [&](int id) { return ReadItem(tree, ItemOf(id), image); };
  if (!std::ranges::all_of(kTexts, read) || !read(kTypeId)) return false;
  const int type = image->Integer(Column("TYPE"));
  const std::span<const int> members = MembersOf(type);
  if (members.empty()) {
    throw InvalidTypeError("a datum shift of type " + std::to_string(type) + " is not known");
  }
  return std::ranges::all_of(members, read);
}

}  // namespace QvRefSystem
