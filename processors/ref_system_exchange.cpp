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

namespace {

constexpr int kExportId = 101000;

}  // namespace

TQvRfMapProjDataProcessor& TQvRfRefSystemDataProcessor::MapProjections() const {
  return *data_.MapProjProcessor;
}

VerticalRecords& TQvRfRefSystemDataProcessor::VerticalSystems() const {
  return dynamic_cast<VerticalRecords&>(ProcessorOf(TObjectType::kVerticalReferenceSystem));
}

bool TQvRfRefSystemDataProcessor::WriteGeneratedRadian(TStringTree* primary) {
  struct Member {
    int id;
    std::string_view label;
    std::string_view value;
  };
  static constexpr Member kRadian[] = {{5301, "code", "0"},        {5312, "type", "2"},
                                       {5310, "f_b", "1"},         {5311, "f_c", "1"},
                                       {5320, "name", "Radian"},   {5321, "abbr", "rad"},
                                       {5322, "desc", "Generated"}};
  TStringTree* unit = primary;
  if (!EnsureSubtree(primary, 1106, 0, "angular unit") || !EnterSubtree(&unit, 1106, 0)) {
    return false;
  }
  for (const Member& member : kRadian) {
    if (!EnsureField(unit, member.id, 0, member.value, member.label)) return false;
  }
  return true;
}

bool TQvRfRefSystemDataProcessor::WriteSystemGeoid(TStringTree* tree, int code) {
  std::string name;
  if (!GetSystemGeoidName(code, &name)) return false;
  TStringTree* geoid = tree;
  return EnsureSubtree(tree, 1500, 0,
                       DescriptorOf(TObjectType::kVerticalReferenceSystem).typeName) &&
         EnterSubtree(&geoid, 1500, 0) && EnsureField(geoid, 1502, 0, name, "name") &&
         EnsureField(geoid, 1503, 0, "SystemGeoid; Code=" + std::to_string(code), "description") &&
         EnsureField(geoid, 1504, 0, name, "abbreviation") &&
         EnsureField(geoid, 1501, 0, std::to_string(kSystemGeoid), "type") &&
         EnsureField(geoid, 1521, 0, std::to_string(code), "code");
}

void TQvRfRefSystemDataProcessor::WriteMifExport(TStringTree* tree, const Record& record) {
  // A host finds a whole subtree or none.
  bool whole = false;
  try {
    TStringTree* exported = tree;
    whole = EnsureSubtree(tree, kExportId, 0, "MIF/MID export subtree") &&
            EnterSubtree(&exported, kExportId, 0) && FillMifExport(tree, exported, record);
  } catch (const std::exception&) {
    whole = false;
  }
  if (!whole) RemoveSubtree(tree, kExportId, 0);
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
      exported, 101002, 0, *name,
      record.kind == kGeodetic ? "MIF/MID unit (angular?!) name" : "MIF/MID unit (linear) name");
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
  EnsureField(tree, 101001, 0, text, "MIF/MID reference system type");
  return EnsureField(exported, 101001, 0, text, "MIF/MID reference system type");
}

bool TQvRfRefSystemDataProcessor::WriteMifDatum(TStringTree* exported, const Record& record) {
  const std::string* value =
      FindCode(static_cast<int>(TObjectType::kDatum), record.datum, ParamTag::kMif);
  int code = -1;
  if (value != nullptr && QvPlatform::TextToInteger(*value, &code) && code >= 0) {
    return EnsureField(exported, 101003, 0, std::to_string(code), "MIF/MID datum code");
  }
  TQvRfDatumDataProcessor& datums = *data_.DatumProcessor;
  return datums.LocateKey(record.datum) && datums.WriteMifUserDatumEllipsoid(exported);
}

}  // namespace QvRefSystem
