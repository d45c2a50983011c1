#include "processors/ref_system_processor.h"

#include <algorithm>
#include <array>

#include "platform/text/text.h"
#include "platform/ui/texts.h"
#include "processors/map_projection_processor.h"
#include "processors/ref_system_steps.h"
#include "processors/vertical_records.h"

namespace QvRefSystem {

using QvPlatform::SystemText;
using QvPlatform::TextId;

TQvRfRefSystemDataProcessor::TQvRfRefSystemDataProcessor(TdatamoduleQvRfData& data)
    : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kReferenceSystem)) {
  columns_ = {
      .type = Column("TYPE"),
      .swap = Column("SWAP_COORDS"),
      .azimuth = Column("AZIMUTH"),
      .linearUnit = Column("LINEAR_UNIT_AUTOKEY"),
      .angularUnit = Column("ANGULAR_UNIT_AUTOKEY"),
      .ellipsoid = Column("ELLIPSOID_AUTOKEY"),
      .datum = Column("DATUM_AUTOKEY"),
      .primeMeridian = Column("PRIME_MERIDIAN_AUTOKEY"),
      .mapProjection = Column("MAP_PROJ_AUTOKEY"),
      .primary = Column("PRIMARY_REFSYSTEM_AUTOKEY"),
      .verticalSystem = Column("VERT_SYSTEM_AUTOKEY"),
      .verticalCode = Column("VERT_SYSTEM_CODE"),
      .axes = {Column("COORD1_ABBR"), Column("COORD2_ABBR"), Column("COORD3_ABBR")},
      .origin = {Column("ORIGIN_COORD1"), Column("ORIGIN_COORD2"), Column("ORIGIN_COORD3")}};
}

TQvRfRefSystemDataProcessor::Record TQvRfRefSystemDataProcessor::CurrentRecord() const {
  const QvPlatform::RowView row = DataSet->CurrentRow();
  if (!row) return {};
  return {.key = GetCurrentKey(),
          .kind = row.GetInteger(columns_.type),
          .linearUnit = row.GetInteger(columns_.linearUnit),
          .angularUnit = row.GetInteger(columns_.angularUnit),
          .ellipsoid = row.GetInteger(columns_.ellipsoid),
          .datum = row.GetInteger(columns_.datum),
          .primeMeridian = row.GetInteger(columns_.primeMeridian),
          .mapProjection = row.GetInteger(columns_.mapProjection),
          .primary = row.GetInteger(columns_.primary),
          .verticalSystem = row.GetInteger(columns_.verticalSystem),
          .verticalCode = row.GetInteger(columns_.verticalCode)};
}

bool TQvRfRefSystemDataProcessor::GetInfoLines(TStrings* lines) {
  if (!TQvRfDataProcessor::GetInfoLines(lines)) return false;
  const Record record = CurrentRecord();
  if (KindOf(record.kind) == nullptr) return false;
  const auto addUnit = [&](TObjectType type, int key, TextId label) {
    TQvRfDataProcessor& units = ProcessorOf(type);
    if (units.LocateKey(key)) {
      lines->push_back(SystemText(label) + ": " + units.DataSet->FieldByName("NAME").AsString());
    }
  };
  const bool geodetic = record.kind == kGeodetic;
  if (geodetic) addUnit(TObjectType::kAngularUnit, record.angularUnit, TextId::kAngularUnits);
  addUnit(TObjectType::kLinearUnit, record.linearUnit,
          geodetic ? TextId::kHeightUnits : TextId::kLinearUnits);
  return true;
}

bool TQvRfRefSystemDataProcessor::WriteToTree(TStringTree* tree, int id, int index) {
  const ControlsGuard guard(*DataSet);
  const int own = GetCurrentKey();
  // The primary system moves the cursor of this same table; the record is brought back.
  const bool written = tree == nullptr || TQvRfDataProcessor::WriteToTree(tree, id, index);
  return LocateKey(own) && written;
}

bool TQvRfRefSystemDataProcessor::WriteContent(TStringTree* tree) {
  const Record record = CurrentRecord();
  const Kind* kind = KindOf(record.kind);
  if (kind == nullptr || !WriteItems(tree, Descriptor().items)) return false;
  const auto write = [&](Step step) { return WriteStep(tree, step, record); };
  if (!std::ranges::all_of(kind->written, write)) return false;
  WriteMifExport(tree, record);
  if (!WriteVertical(tree, record)) return false;
  WriteGeoTiffCodes(tree, record.kind, record.key);
  return true;
}

bool TQvRfRefSystemDataProcessor::WriteStep(TStringTree* tree, Step step, const Record& record) {
  using enum Step;
  switch (step) {
    case kSwap:
      return EnsureField(tree, TreeIds::kSwap,
                         std::to_string(DataSet->CurrentRow().GetInteger(columns_.swap)));
    case kAxes:
      return WriteColumns(tree, TreeIds::kAxis, columns_.axes);
    case kLinearUnit:
      return WriteSubobject(tree, TObjectType::kLinearUnit, record.linearUnit,
                            TreeIds::kLinearUnit.id);
    case kAngularUnit:
      return WriteSubobject(tree, TObjectType::kAngularUnit, record.angularUnit,
                            TreeIds::kAngularUnit.id);
    case kHeights:
      return EnsureSubtree(tree, TreeIds::kVertical.id, 0, TreeIds::kVertical.label);
    case kUnitInHeights:
      return WriteUnitInHeights(tree, record, false);
    case kHeightsWithUnit:
      return WriteUnitInHeights(tree, record, true);
    case kPrimeMeridian:
      return WriteSubobject(tree, TObjectType::kPrimeMeridian, record.primeMeridian,
                            TreeIds::kPrimeMeridian.id);
    case kEllipsoid:
      return WriteSubobject(tree, TObjectType::kEllipsoid, record.ellipsoid,
                            TreeIds::kEllipsoid.id);
    case kDatumIfAny:
      return record.datum == 0 || WriteDatumOrEllipsoid(tree, record);
    case kDatumOrEllipsoid:
      return WriteDatumOrEllipsoid(tree, record);
    case kPositiveLongitude:
      return !IsPositiveLongitude(record.key) || WritePositiveLongitude(tree);
    case kProjection:
      return WriteSubobject(tree, TObjectType::kMapProjection, record.mapProjection,
                            TreeIds::kProjection.id);
    case kMifProjectionType:
      // A projection without a code is no failure.
      if (!MapProjections().LocateKey(record.mapProjection)) return false;
      (void)MapProjections().WriteMifProjectionType(tree);
      return true;
    case kPrimary:
    case kOptionalPrimary:
      return WritePrimary(tree, record);
    case kPlaneOrigin:
      // Where systems are exchanged while choosing, local ones carry no origin.
      return data_.ShowImportExport ||
             WriteColumns(tree, TreeIds::kOrigin, std::span(columns_.origin).first(2));
    case kSpaceOrigin:
      return WriteColumns(tree, TreeIds::kOrigin, columns_.origin);
    case kAzimuth: {
      const std::string_view azimuth =
          QvPlatform::TrimView(DataSet->CurrentRow().GetText(columns_.azimuth));
      return azimuth.empty() || EnsureField(tree, TreeIds::kAzimuth, azimuth);
    }
    case kVertical:
      break;  // is written behind the exchange codes
  }
  return true;
}

bool TQvRfRefSystemDataProcessor::WriteColumns(TStringTree* tree, const TreeIds::Item& member,
                                               std::span<const int> columns) {
  const QvPlatform::RowView row = DataSet->CurrentRow();
  int index = 0;
  return std::ranges::all_of(columns, [&](int column) {
    return EnsureField(tree, member, index++, row.GetString(column));
  });
}

bool TQvRfRefSystemDataProcessor::WriteDatumOrEllipsoid(TStringTree* tree, const Record& record) {
  return record.datum == 0
             ? WriteSubobject(tree, TObjectType::kEllipsoid, record.ellipsoid,
                              TreeIds::kEllipsoid.id)
             : WriteSubobject(tree, TObjectType::kDatum, record.datum, TreeIds::kDatum.id);
}

bool TQvRfRefSystemDataProcessor::WriteUnitInHeights(TStringTree* tree, const Record& record,
                                                     bool addSubtree) {
  TStringTree* heights = tree;
  return (!addSubtree || EnsureSubtree(tree, TreeIds::kVertical.id, 0, TreeIds::kVertical.label)) &&
         EnterSubtree(&heights, TreeIds::kVertical) &&
         WriteSubobject(heights, TObjectType::kLinearUnit, record.linearUnit,
                        TreeIds::kLinearUnit.id);
}

bool TQvRfRefSystemDataProcessor::WritePrimary(TStringTree* tree, const Record& record) {
  if (record.primary == 0 && record.kind == kProjected) return WriteGeneratedPrimary(tree, record);
  // A chain of primaries that comes back to this record would never end.
  if (writing_.contains(record.key)) return false;
  writing_.insert(record.key);
  const bool written = LocateKey(record.primary) && WriteToTree(tree, TreeIds::kPrimary.id, 0);
  writing_.erase(record.key);
  return LocateKey(record.key) && written;
}

// A projected system without a primary of its own travels with a geodetic one made up for it. No
// record ever comes of it but where it carries a code.
bool TQvRfRefSystemDataProcessor::WriteGeneratedPrimary(TStringTree* tree, const Record& record) {
  TStringTree* primary = tree;
  TQvRfDataProcessor& types = ProcessorOf(TObjectType::kReferenceSystemType);
  const bool written =
      AddSubtree(&primary, TreeIds::kGeneratedPrimary) &&
      EnsureField(primary, TreeIds::kName, TreeIds::kGeneratedPrimaryName) &&
      EnsureField(primary, TreeIds::kDescription, TreeIds::kGeneratedPrimaryDescription) &&
      EnsureField(primary, TreeIds::kAbbreviation, TreeIds::kGeneratedPrimaryAbbreviation) &&
      EnsureField(primary, TreeIds::kKind, std::to_string(kGeodetic)) &&
      types.LocateKey(kGeodetic) && types.WriteToTree(primary, TreeIds::kSystemType.id, 0) &&
      EnsureField(primary, TreeIds::kAxis, 0, "Lat") &&
      EnsureField(primary, TreeIds::kAxis, 1, "Lon") &&
      EnsureField(primary, TreeIds::kAxis, 2, "H") && WriteGeneratedRadian(primary) &&
      WriteSubobject(primary, TObjectType::kPrimeMeridian, record.primeMeridian,
                     TreeIds::kPrimeMeridian.id) &&
      WriteUnitInHeights(primary, record, true) && WriteDatumOrEllipsoid(primary, record);
  // A system that is not stored has no codes yet.
  if (written && record.key != 0) WriteGeoTiffCodes(primary, kGeodetic, record.key);
  return written;
}

bool TQvRfRefSystemDataProcessor::WriteVertical(TStringTree* tree, const Record& record) {
  if (record.verticalSystem != 0 &&
      !WriteSubobject(tree, TObjectType::kVerticalReferenceSystem, record.verticalSystem,
                      TreeIds::kHeightSystem.id)) {
    return false;
  }
  // A record with both cannot be written: the tree takes no second subtree.
  return record.verticalCode == 0 || WriteSystemGeoid(tree, record.verticalCode);
}

void TQvRfRefSystemDataProcessor::WriteCode(TStringTree* tree, const TreeIds::Item& member,
                                            const std::string* code) {
  if (code != nullptr) EnsureField(tree, member, *code);
}

void TQvRfRefSystemDataProcessor::WriteGeoTiffCodes(TStringTree* tree, int kind, int owner) {
  constexpr int kTypes = static_cast<int>(TObjectType::kReferenceSystemType);
  WriteCode(tree, TreeIds::kGeoTiffSystemType, FindFilledCode(kTypes, kind, ParamTag::kGeoTiff));
  WriteCode(tree, TreeIds::kGeoTiffSystem, FindFilledCode(ObjectType, owner, ParamTag::kGeoTiff));
}

bool TQvRfRefSystemDataProcessor::WritePositiveLongitude(TStringTree* tree) {
  return EnsureField(tree, TreeIds::kPositiveLongitude, "1");
}

bool TQvRfRefSystemDataProcessor::IsPositiveLongitude(int key) const {
  const std::string* value = FindCode(ObjectType, key, ParamTag::kPositiveLongitude);
  int flag = 0;
  return value != nullptr && QvPlatform::TextToInteger(*value, &flag) && flag != 0;
}

void TQvRfRefSystemDataProcessor::DeleteBeside(int key) {
  const int kind = CurrentInteger("TYPE");
  if (kind == kGeodetic) {
    DeleteParamValues({ParamMatch(kParamTag, static_cast<int>(ParamTag::kPositiveLongitude)),
                       ParamMatch(kOwnerId, key), ParamMatch(kOwnerContent, ObjectType)},
                      false);
  }
  if (data_.DialogMode == kSimpleMode && kind == kProjected) {
    DeleteIfUsedOnce(TObjectType::kMapProjection, "MAP_PROJ_AUTOKEY");
  }
  VerticalSystems().Remove(CurrentInteger("VERT_SYSTEM_AUTOKEY"));
}

}  // namespace QvRefSystem
