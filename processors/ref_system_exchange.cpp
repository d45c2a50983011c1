#include <exception>

#include "platform/geocore/geoids.h"
#include "platform/text/text.h"
#include "processors/datum_processor.h"
#include "processors/map_projection_processor.h"
#include "processors/ref_system_steps.h"
#include "processors/vertical_records.h"

// What travels beside a system for hosts that speak other formats: the MIF/MID export subtree, the
// built-in geoid, and the unit that a made-up primary system has.
namespace QvRefSystem {

TQvRfMapProjDataProcessor& TQvRfRefSystemDataProcessor::MapProjections() const {
  return *data_.MapProjProcessor;
}

VerticalRecords& TQvRfRefSystemDataProcessor::VerticalSystems() const {
  return dynamic_cast<VerticalRecords&>(ProcessorOf(TObjectType::kVerticalReferenceSystem));
}

bool TQvRfRefSystemDataProcessor::WriteGeneratedRadian(TStringTree* primary) {
  struct Member {
    TreeIds::Item item;
    std::string_view value;
  };
  static constexpr Member kRadian[] = {
      {TreeIds::kUnitCode, "0"},
      {TreeIds::kUnitKind, "2"},
      {TreeIds::kUnitFactorB, "1"},
      {TreeIds::kUnitFactorC, "1"},
      {TreeIds::kUnitName, TreeIds::kGeneratedUnitName},
      {TreeIds::kUnitAbbreviation, TreeIds::kGeneratedUnitAbbreviation},
      {TreeIds::kUnitDescription, TreeIds::kGeneratedUnitDescription}};
  TStringTree* unit = primary;
  if (!AddSubtree(&unit, TreeIds::kAngularUnit)) return false;
  for (const Member& member : kRadian) {
    if (!EnsureField(unit, member.item, member.value)) return false;
  }
  return true;
}

bool TQvRfRefSystemDataProcessor::WriteSystemGeoid(TStringTree* tree, int code) {
  std::string name;
  if (!GetSystemGeoidName(code, &name)) return false;
  TStringTree* geoid = tree;
  return AddSubtree(&geoid, TreeIds::kHeightSystem) &&
         EnsureField(geoid, TreeIds::kHeightSystemName, name) &&
         EnsureField(geoid, TreeIds::kHeightSystemDescription,
                     "SystemGeoid; Code=" + std::to_string(code)) &&
         EnsureField(geoid, TreeIds::kHeightSystemAbbreviation, name) &&
         EnsureField(geoid, TreeIds::kHeightSystemKind, std::to_string(static_cast<int>(HeightKind::kSystemGeoid))) &&
         EnsureField(geoid, TreeIds::kHeightSystemCode, std::to_string(code));
}

void TQvRfRefSystemDataProcessor::WriteMifExport(TStringTree* tree, const Record& record) {
  // A host finds a whole subtree or none.
  bool whole = false;
  try {
    TStringTree* exported = tree;
    whole = AddSubtree(&exported, TreeIds::kMifExport) && FillMifExport(tree, exported, record);
  } catch (const std::exception&) {
    whole = false;
  }
  if (!whole) RemoveSubtree(tree, TreeIds::kMifExport.id, TreeIds::kMifExport.index);
}

bool TQvRfRefSystemDataProcessor::FillMifExport(TStringTree* tree, TStringTree* exported,
                                                const Record& record) {
  switch (record.kind) {
    case kGeodetic:
      return WriteMifGeodeticType(tree, exported) && WriteMifDatum(exported, record) &&
             WriteMifUnit(exported, record);
    case kProjected:
      return MapProjections().LocateKey(record.mapProjection) &&
             MapProjections().WriteMifProjectionType(exported) && WriteMifDatum(exported, record) &&
             WriteMifUnit(exported, record);
    default:
      return WriteMifUnit(exported, record);
  }
}

bool TQvRfRefSystemDataProcessor::WriteMifUnit(TStringTree* exported, const Record& record) {
  const std::string* name =
      FindCode(static_cast<int>(TObjectType::kLinearUnit), record.linearUnit, ParamTag::kMif);
  if (name == nullptr || name->empty()) return false;
  return EnsureField(
      exported,
      record.kind == kGeodetic ? TreeIds::kMifExportAngularUnit : TreeIds::kMifExportLinearUnit,
      *name);
}

bool TQvRfRefSystemDataProcessor::WriteMifGeodeticType(TStringTree* tree, TStringTree* exported) {
  constexpr int kMifGeodeticGroup = 4;
  const QvPlatform::RowView row = data_.datasetParamValue.FindFirst(
      {ParamMatch(kOwnerContent, static_cast<int>(TObjectType::kMapProjectionType)),
       ParamMatch(kParamTag, static_cast<int>(ParamTag::kMif)),
       ParamMatch(kParamGroup, kMifGeodeticGroup)});
  int code = -1;
  if (!row || !QvPlatform::TextToInteger(row.GetText(ParamField(kValue)), &code) || code < 0) {
    return false;
  }
  const std::string text = std::to_string(code);
  EnsureField(tree, TreeIds::kMifSystemType, text);
  return EnsureField(exported, TreeIds::kMifSystemType, text);
}

bool TQvRfRefSystemDataProcessor::WriteMifDatum(TStringTree* exported, const Record& record) {
  const std::string* value =
      FindCode(static_cast<int>(TObjectType::kDatum), record.datum, ParamTag::kMif);
  int code = -1;
  if (value != nullptr && QvPlatform::TextToInteger(*value, &code) && code >= 0) {
    return EnsureField(exported, TreeIds::kMifDatum, std::to_string(code));
  }
  TQvRfDatumDataProcessor& datums = *data_.DatumProcessor;
  return datums.LocateKey(record.datum) && datums.WriteMifUserDatumEllipsoid(exported);
}

}  // namespace QvRefSystem
