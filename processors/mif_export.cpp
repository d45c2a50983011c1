#include "processors/mif_export.h"

#include <exception>
#include <string>

#include "platform/data/tree_members.h"
#include "platform/text/text.h"
#include "processors/datum_processor.h"
#include "processors/map_projection_processor.h"

namespace QvRefSystem {
namespace {

constexpr int kLinearUnitOwner = static_cast<int>(TObjectType::kLinearUnit);
constexpr int kDatumOwner = static_cast<int>(TObjectType::kDatum);
constexpr int kProjectionTypeOwner = static_cast<int>(TObjectType::kMapProjectionType);

}  // namespace

void MifExport::Write(TStringTree* tree, const MifSystem& system) const {
  // A host finds a whole subtree or none.
  bool whole = false;
  try {
    TStringTree* exported = tree;
    whole = AddSubtree(&exported, TreeIds::kMifExport) && Fill(tree, exported, system);
  } catch (const std::exception&) {
    whole = false;
  }
  if (!whole) RemoveSubtree(tree, TreeIds::kMifExport.id, TreeIds::kMifExport.index);
}

bool MifExport::Fill(TStringTree* tree, TStringTree* exported, const MifSystem& system) const {
  switch (system.kind) {
    case SystemKind::kGeodetic:
      return WriteGeodeticType(tree, exported) && WriteDatum(exported, system.datum) &&
             WriteUnit(exported, system);
    case SystemKind::kProjected:
      return WriteProjectionType(exported, system.mapProjection) &&
             WriteDatum(exported, system.datum) && WriteUnit(exported, system);
    default:
      return WriteUnit(exported, system);
  }
}

bool MifExport::WriteUnit(TStringTree* exported, const MifSystem& system) const {
  const std::string* name = codes_.Find(kLinearUnitOwner, system.linearUnit, ParamTag::kMif);
  if (name == nullptr || name->empty()) return false;
  const bool geodetic = system.kind == SystemKind::kGeodetic;
  return EnsureField(
      exported, geodetic ? TreeIds::kMifExportAngularUnit : TreeIds::kMifExportLinearUnit, *name);
}

bool MifExport::WriteGeodeticType(TStringTree* tree, TStringTree* exported) const {
  // One row holds the number of all geodetic systems; nobody owns it.
  const QvPlatform::RowView row = codes_.FindRow(
      {codes_.Match(CodeRows::kOwnerContent, kProjectionTypeOwner), codes_.Match(ParamTag::kMif),
       codes_.Match(CodeRows::kGroup, static_cast<int>(SystemKind::kGeodetic))});
  int code = -1;
  if (!row || !QvPlatform::TextToInteger(codes_.ValueOf(row), &code) || code < 0) return false;
  const std::string text = std::to_string(code);
  EnsureField(tree, TreeIds::kMifSystemType, text);
  return EnsureField(exported, TreeIds::kMifSystemType, text);
}

bool MifExport::WriteProjectionType(TStringTree* exported, int key) const {
  TQvRfMapProjDataProcessor& projections = *data_.MapProjProcessor;
  return projections.LocateKey(key) && projections.WriteMifProjectionType(exported);
}

bool MifExport::WriteDatum(TStringTree* exported, int key) const {
  const std::string* value = codes_.Find(kDatumOwner, key, ParamTag::kMif);
  int code = -1;
  if (value != nullptr && QvPlatform::TextToInteger(*value, &code) && code >= 0) {
    return EnsureField(exported, TreeIds::kMifDatum, std::to_string(code));
  }
  // A datum that the format does not number travels as one of the user's, told by its ellipsoid.
  TQvRfDatumDataProcessor& datums = *data_.DatumProcessor;
  return datums.LocateKey(key) && datums.WriteMifUserDatumEllipsoid(exported);
}

}  // namespace QvRefSystem
