#include "processors/ref_system_processor.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/geocore/geoids.h"
#include "platform/text/text.h"
#include "platform/ui/texts.h"
#include "processors/map_projection_processor.h"
#include "processors/mif_export.h"
#include "processors/system_bodies.h"
#include "processors/vertical_records.h"

namespace QvRefSystem {

using QvPlatform::RowView;
using QvPlatform::SystemText;
using QvPlatform::TextId;

namespace {

constexpr int kGeodetic = static_cast<int>(SystemKind::kGeodetic);
constexpr int kProjected = static_cast<int>(SystemKind::kProjected);

constexpr int kPositiveLongitude = TreeIds::kPositiveLongitude.id;

// The ellipsoid of a system stands at its own level, or in its datum.
constexpr std::array kSurfaces{
    SubobjectItem(TreeIds::kEllipsoid, TObjectType::kEllipsoid, "ELLIPSOID_AUTOKEY"),
    SubobjectItem(TreeIds::kDatumEllipsoid, TObjectType::kEllipsoid, "ELLIPSOID_AUTOKEY"),
    SubobjectItem(TreeIds::kDatum, TObjectType::kDatum, "DATUM_AUTOKEY")};
constexpr const TreeItem& kOwnEllipsoid = kSurfaces[0];
constexpr const TreeItem& kDatumEllipsoid = kSurfaces[1];
constexpr const TreeItem& kDatum = kSurfaces[2];

constexpr std::array kAxes{"COORD1_ABBR", "COORD2_ABBR", "COORD3_ABBR"};

// A record in the chain of those that are being written, as long as it is: also a writing that
// fails on the way takes it out.
class ChainLink {
 public:
  ChainLink(std::set<int>* chain, int key)
      : chain_(chain), key_(key), isNew_(chain->insert(key).second) {}
  ~ChainLink() {
    if (isNew_) chain_->erase(key_);
  }
  ChainLink(const ChainLink&) = delete;
  ChainLink& operator=(const ChainLink&) = delete;
  [[nodiscard]] bool IsNew() const { return isNew_; }

 private:
  std::set<int>* chain_;
  int key_;
  bool isNew_;
};

bool WriteGeneratedRadian(TStringTree* primary) {
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
  return AddSubtree(&unit, TreeIds::kAngularUnit) &&
         std::ranges::all_of(kRadian, [unit](const Member& member) {
           return EnsureField(unit, member.item, member.value);
         });
}

bool WriteSystemGeoid(TStringTree* tree, int code) {
  std::string name;
  if (!GetSystemGeoidName(code, &name)) return false;
  const std::string number = std::to_string(code);
  TStringTree* geoid = tree;
  return AddSubtree(&geoid, TreeIds::kHeightSystem) &&
         EnsureField(geoid, TreeIds::kHeightSystemName, name) &&
         EnsureField(geoid, TreeIds::kHeightSystemDescription, "SystemGeoid; Code=" + number) &&
         EnsureField(geoid, TreeIds::kHeightSystemAbbreviation, name) &&
         EnsureField(geoid, TreeIds::kHeightSystemKind,
                     std::to_string(static_cast<int>(HeightKind::kSystemGeoid))) &&
         EnsureField(geoid, TreeIds::kHeightSystemCode, number);
}

}  // namespace

TQvRfRefSystemDataProcessor::TQvRfRefSystemDataProcessor(TdatamoduleQvRfData& data)
    : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kReferenceSystem)) {
  for (const SystemKind kind : kSystemKinds)
    columns_.Bind(BodyOf(kind));
  columns_.Bind(kSurfaces);
  fields_ = {.type = Column("TYPE"),
             .azimuth = Column("AZIMUTH"),
             .linearUnit = Column("LINEAR_UNIT_AUTOKEY"),
             .angularUnit = Column("ANGULAR_UNIT_AUTOKEY"),
             .ellipsoid = Column("ELLIPSOID_AUTOKEY"),
             .datum = Column("DATUM_AUTOKEY"),
             .primeMeridian = Column("PRIME_MERIDIAN_AUTOKEY"),
             .mapProjection = Column("MAP_PROJ_AUTOKEY"),
             .primary = Column("PRIMARY_REFSYSTEM_AUTOKEY"),
             .verticalSystem = Column("VERT_SYSTEM_AUTOKEY"),
             .verticalCode = Column("VERT_SYSTEM_CODE")};
}

VerticalRecords& TQvRfRefSystemDataProcessor::VerticalSystems() const {
  return dynamic_cast<VerticalRecords&>(ProcessorOf(TObjectType::kVerticalReferenceSystem));
}

int TQvRfRefSystemDataProcessor::KeyIn(const RecordView& record) const {
  return record.IsStored() ? record.Integer(KeyColumn()) : 0;
}

bool TQvRfRefSystemDataProcessor::GetInfoLines(TStrings* lines) {
  if (!TQvRfDataProcessor::GetInfoLines(lines)) return false;
  const RowView row = DataSet->CurrentRow();
  const auto kind = SystemKindOf(row.GetInteger(fields_.type));
  if (!kind) return false;
  const auto addUnit = [&](TObjectType type, int key, TextId label) {
    TQvRfDataProcessor& units = ProcessorOf(type);
    if (units.LocateKey(key)) {
      lines->push_back(SystemText(label) + ": " + units.DataSet->FieldByName("NAME").AsString());
    }
  };
  const bool geodetic = kind == SystemKind::kGeodetic;
  if (geodetic) {
    addUnit(TObjectType::kAngularUnit, row.GetInteger(fields_.angularUnit), TextId::kAngularUnits);
  }
  addUnit(TObjectType::kLinearUnit, row.GetInteger(fields_.linearUnit),
          geodetic ? TextId::kHeightUnits : TextId::kLinearUnits);
  return true;
}

// Records to tree.

bool TQvRfRefSystemDataProcessor::WriteToTree(TStringTree* tree, int id, int index) {
  const ControlsGuard guard(*DataSet);
  const int own = GetCurrentKey();
  // The primary system moves the cursor of this same table; the record is brought back.
  const bool written = tree == nullptr || TQvRfDataProcessor::WriteToTree(tree, id, index);
  return LocateKey(own) && written;
}

bool TQvRfRefSystemDataProcessor::WriteContent(TStringTree* tree) {
  const RowView row = DataSet->CurrentRow();
  const auto kind = row ? SystemKindOf(row.GetInteger(fields_.type)) : std::nullopt;
  return kind && writer_.WriteItems(tree, Descriptor().items, row) &&
         writer_.WriteItems(tree, BodyOf(*kind), row);
}

bool TQvRfRefSystemDataProcessor::WriteOwnItem(TStringTree* tree, const TreeItem& item,
                                               const RecordView& record) {
  switch (item.id) {
    case TreeIds::kDatum.id:
      return WriteDatumOrEllipsoid(tree, record);
    case TreeIds::kPrimary.id:
      return WritePrimary(tree, record);
    case TreeIds::kOrigin.id:
      // Where systems are exchanged while choosing, local ones carry no origin.
      return data_.ShowImportExport || writer_.WriteField(tree, item, record);
    case TreeIds::kAzimuth.id: {
      const std::string_view azimuth = QvPlatform::TrimView(record.Text(fields_.azimuth));
      return azimuth.empty() || EnsureField(tree, TreeIds::kAzimuth, azimuth);
    }
    case TreeIds::kPositiveLongitude.id:
      return !record.IsStored() || !IsPositiveLongitude(KeyIn(record)) ||
             EnsureField(tree, TreeIds::kPositiveLongitude, "1");
    case TreeIds::kMifSystemType.id:
      return !record.IsStored() || WriteMifProjectionType(tree, record);
    case TreeIds::kMifExport.id:
      if (record.IsStored()) WriteMifExport(tree, record);
      return true;
    case TreeIds::kHeightSystem.id:
      return WriteVertical(tree, record);
    case TreeIds::kGeoTiffSystemType.id:
      if (record.IsStored()) WriteSystemType(tree, record.Integer(fields_.type));
      return true;
    default:
      return false;
  }
}

bool TQvRfRefSystemDataProcessor::WriteDatumOrEllipsoid(TStringTree* tree,
                                                        const RecordView& record) {
  const int datum = record.Integer(fields_.datum);
  if (datum != 0) return WriteSubobject(tree, TObjectType::kDatum, datum, TreeIds::kDatum.id);
  return WriteSubobject(tree, TObjectType::kEllipsoid, record.Integer(fields_.ellipsoid),
                        TreeIds::kEllipsoid.id);
}

bool TQvRfRefSystemDataProcessor::WritePrimary(TStringTree* tree, const RecordView& record) {
  const int primary = record.Integer(fields_.primary);
  if (primary == 0 && record.Integer(fields_.type) == kProjected) {
    return WriteGeneratedPrimary(tree, record);
  }
  // A chain of primaries that comes back to this record would never end.
  const int key = KeyIn(record);
  const ChainLink link(&writing_, key);
  if (!link.IsNew()) return false;
  try {
    const bool written = LocateKey(primary) && WriteToTree(tree, TreeIds::kPrimary.id, 0);
    return LocateKey(key) && written;
  } catch (const QvCommonUtils::TreeFormatError&) {
    throw QvCommonUtils::TreeFormatError(
        "the chain of primary systems is longer than a tree can be deep");
  }
}

// A projected system without a primary of its own travels with a geodetic one made up for it. No
// record ever comes of it but where it carries a code.
bool TQvRfRefSystemDataProcessor::WriteGeneratedPrimary(TStringTree* tree,
                                                        const RecordView& record) {
  RecordImage image;
  SetHead(&image, {.kind = SystemKind::kGeodetic,
                   .name = std::string(TreeIds::kGeneratedPrimaryName),
                   .description = std::string(TreeIds::kGeneratedPrimaryDescription),
                   .abbreviation = std::string(TreeIds::kGeneratedPrimaryAbbreviation),
                   .axes = {"Lat", "Lon", "H"}});
  for (const int shared :
       {fields_.linearUnit, fields_.primeMeridian, fields_.datum, fields_.ellipsoid})
    image.SetInteger(shared, record.Integer(shared));
  TStringTree* primary = tree;
  const RecordView generated(image);
  const auto write = [&](const TreeItem& item) {
    return item.id == TreeIds::kAngularUnit.id ? WriteGeneratedRadian(primary)
                                               : WriteItem(primary, item, generated);
  };
  if (!AddSubtree(&primary, TreeIds::kGeneratedPrimary) ||
      !writer_.WriteItems(primary, Descriptor().items, generated) ||
      !std::ranges::all_of(BodyOf(SystemKind::kGeodetic), write)) {
    return false;
  }
  // It bears the code of the projected system; one that is not stored has none yet.
  if (KeyIn(record) == 0) return true;
  WriteSystemType(primary, kGeodetic);
  return WriteItem(primary, BodyOf(SystemKind::kGeodetic).back(), record);
}

bool TQvRfRefSystemDataProcessor::WriteMifProjectionType(TStringTree* tree,
                                                         const RecordView& record) const {
  TQvRfMapProjDataProcessor& projections = *data_.MapProjProcessor;
  if (!projections.LocateKey(record.Integer(fields_.mapProjection))) return false;
  // A projection without a code is no failure.
  (void)projections.WriteMifProjectionType(tree);
  return true;
}

void TQvRfRefSystemDataProcessor::WriteMifExport(TStringTree* tree,
                                                 const RecordView& record) const {
  const auto kind = SystemKindOf(record.Integer(fields_.type));
  if (!kind) return;
  MifExport(data_, codes_)
      .Write(tree, {.kind = *kind,
                    .linearUnit = record.Integer(fields_.linearUnit),
                    .datum = record.Integer(fields_.datum),
                    .mapProjection = record.Integer(fields_.mapProjection)});
}

bool TQvRfRefSystemDataProcessor::WriteVertical(TStringTree* tree, const RecordView& record) {
  const int key = record.Integer(fields_.verticalSystem);
  if (key != 0 && !WriteSubobject(tree, TObjectType::kVerticalReferenceSystem, key,
                                  TreeIds::kHeightSystem.id)) {
    return false;
  }
  // A record with both cannot be written: the tree takes no second subtree.
  const int code = record.Integer(fields_.verticalCode);
  return code == 0 || WriteSystemGeoid(tree, code);
}

void TQvRfRefSystemDataProcessor::WriteSystemType(TStringTree* tree, int kind) const {
  const std::string* code = codes_.FindFilled(static_cast<int>(TObjectType::kReferenceSystemType),
                                              kind, ParamTag::kGeoTiff);
  if (code != nullptr) EnsureField(tree, TreeIds::kGeoTiffSystemType, *code);
}

// Systems that are not stored.

void TQvRfRefSystemDataProcessor::SetHead(RecordImage* image, const UnstoredSystem& system) const {
  image->SetText(NameColumn(), system.name);
  image->SetText(Column("DESCRIPTION"), system.description);
  image->SetText(Column("ABBREVIATION"), system.abbreviation);
  image->SetInteger(fields_.type, static_cast<int>(system.kind));
  for (std::size_t i = 0; i < kAxes.size(); ++i)
    image->SetText(Column(kAxes[i]), system.axes[i]);
}

bool TQvRfRefSystemDataProcessor::WriteUnstored(TStringTree* tree, const UnstoredSystem& system) {
  if (system.kind != SystemKind::kGeodetic && system.kind != SystemKind::kProjected) return false;
  RecordImage image;
  SetHead(&image, system);
  image.SetInteger(fields_.linearUnit, system.linearUnit);
  image.SetInteger(fields_.angularUnit, system.angularUnit);
  image.SetInteger(fields_.ellipsoid, system.ellipsoid);
  image.SetInteger(fields_.datum, system.datum);
  image.SetInteger(fields_.primeMeridian, system.primeMeridian);
  image.SetInteger(fields_.mapProjection, system.mapProjection);
  const RecordView record(image);
  return writer_.WriteItems(tree, Descriptor().items, record) &&
         writer_.WriteItems(tree, BodyOf(system.kind), record) &&
         (!system.positiveLongitude || EnsureField(tree, TreeIds::kPositiveLongitude, "1"));
}

// A tree to records.

bool TQvRfRefSystemDataProcessor::ReadContent(TStringTree* tree, RecordImage* image) {
  if (!reader_.ReadItems(tree, Descriptor().items, image)) return false;
  const auto kind = SystemKindOf(image->Integer(fields_.type));
  return kind && reader_.ReadItems(tree, BodyOf(*kind), image);
}

bool TQvRfRefSystemDataProcessor::ReadOwnItem(TStringTree* tree, const TreeItem& item,
                                              RecordImage* image) {
  switch (item.id) {
    case TreeIds::kDatum.id:
      return ReadDatumOrEllipsoid(tree, image);
    case TreeIds::kPrimary.id:
      return ReadPrimary(tree, item, image);
    case TreeIds::kOrigin.id:
      return data_.ShowImportExport || reader_.ReadField(*tree, item, image);
    case TreeIds::kAzimuth.id: {
      std::string azimuth;
      (void)GetString(*tree, TreeIds::kAzimuth, &azimuth);
      image->SetText(fields_.azimuth, std::move(azimuth));
      return true;
    }
    case TreeIds::kPositiveLongitude.id: {
      int flag = 0;
      (void)GetInteger(*tree, TreeIds::kPositiveLongitude, &flag);
      if (flag != 0) image->Beside[kPositiveLongitude] = "1";
      return true;
    }
    case TreeIds::kHeightSystem.id:
      return ReadVertical(tree, item, image);
    default:
      return true;  // written only
  }
}

bool TQvRfRefSystemDataProcessor::ReadDatumOrEllipsoid(TStringTree* tree, RecordImage* image) {
  TStringTree* datum = tree;
  if (!EnterSubtree(&datum, TreeIds::kDatum)) {
    image->SetInteger(fields_.datum, 0);
    return reader_.ReadSubobject(tree, kOwnEllipsoid, image);
  }
  // The system keeps the key of its datum's ellipsoid beside that of the datum.
  return reader_.ReadSubobject(tree, kDatum, image) &&
         reader_.ReadSubobject(datum, kDatumEllipsoid, image);
}

bool TQvRfRefSystemDataProcessor::ReadPrimary(TStringTree* tree, const TreeItem& item,
                                              RecordImage* image) {
  if (item.optional) {
    image->SetInteger(fields_.primary, 0);
    TStringTree* primary = tree;
    int code = 0;
    // Only a primary with a code of its own is a system to keep; one made up for the way is not.
    if (!EnterSubtree(&primary, TreeIds::kPrimary) ||
        !GetInteger(*primary, TreeIds::kGeoTiffSystem, &code) || code == 0) {
      return true;
    }
  }
  return reader_.ReadSubobject(tree, item, image);
}

bool TQvRfRefSystemDataProcessor::ReadVertical(TStringTree* tree, const TreeItem& item,
                                               RecordImage* image) {
  image->SetInteger(fields_.verticalSystem, 0);
  image->SetInteger(fields_.verticalCode, 0);
  TStringTree* vertical = tree;
  if (!EnterSubtree(&vertical, TreeIds::kHeightSystem)) return true;
  int kind = 0;
  if (!GetInteger(*vertical, TreeIds::kHeightSystemKind, &kind)) return false;
  int value = 0;
  if (VerticalRecords::IsStoredKind(kind)) {
    // Heights that are not whole leave a system of ellipsoidal heights.
    (void)StoreSubobject(tree, item, &value);
    image->SetInteger(fields_.verticalSystem, value);
    return true;
  }
  if (!GetInteger(*vertical, TreeIds::kHeightSystemCode, &value)) return false;
  image->SetInteger(fields_.verticalCode, value);
  return true;
}

// Equality, and what lies beside a record.

bool TQvRfRefSystemDataProcessor::IsEqualBeside(const RecordImage& image, RowView row) const {
  if (image.Integer(fields_.type) == kGeodetic &&
      IsPositiveLongitude(KeyOf(row)) != image.Beside.contains(kPositiveLongitude)) {
    return false;
  }
  return HasSameHeights(image, row);
}

bool TQvRfRefSystemDataProcessor::HasSameHeights(const RecordImage& image, RowView row) const {
  // Kinds that read no heights do not compare them.
  if (!image.Has(fields_.verticalSystem)) return true;
  const int given = image.Integer(fields_.verticalSystem);
  const int stored = row.GetInteger(fields_.verticalSystem);
  if (given != 0) {
    return VerticalSystems().LocateKey(given) && VerticalSystems().IsSameRecord(stored);
  }
  return stored == 0 && row.GetInteger(fields_.verticalCode) == image.Integer(fields_.verticalCode);
}

std::string TQvRfRefSystemDataProcessor::ComparableBeside(RowView row) const {
  const int heights = row.GetInteger(fields_.verticalSystem);
  return (heights != 0 ? VerticalSystems().ComparableHeights(heights)
                       : "code " + std::to_string(row.GetInteger(fields_.verticalCode)) + '\n') +
         (IsPositiveLongitude(KeyOf(row)) ? "positive longitude" : "");
}

void TQvRfRefSystemDataProcessor::DropBeside(const RecordImage& image) {
  // The system that was found keeps the heights that it has.
  VerticalSystems().Remove(image.Integer(fields_.verticalSystem));
}

void TQvRfRefSystemDataProcessor::AppendBeside(TStringTree* tree, const RecordImage& image,
                                               int key) {
  if (image.Beside.contains(kPositiveLongitude)) AppendPositiveLongitude(key);
  const auto kind = SystemKindOf(image.Integer(fields_.type));
  if (kind) AppendCodes(*tree, BodyOf(*kind), key);
}

void TQvRfRefSystemDataProcessor::DeleteBeside(int key) {
  const int kind = CurrentInteger("TYPE");
  if (kind == kGeodetic) {
    codes_.Delete(
        {codes_.Match(ParamTag::kPositiveLongitude), codes_.Match(CodeRows::kOwnerId, key),
         codes_.Match(CodeRows::kOwnerContent, ObjectType)},
        false);
  }
  if (data_.DialogMode == kSimpleMode && kind == kProjected) {
    DeleteIfUsedOnce(TObjectType::kMapProjection, "MAP_PROJ_AUTOKEY");
  }
  VerticalSystems().Remove(CurrentInteger("VERT_SYSTEM_AUTOKEY"));
}

bool TQvRfRefSystemDataProcessor::IsPositiveLongitude(int key) const {
  const std::string* value = codes_.Find(ObjectType, key, ParamTag::kPositiveLongitude);
  int flag = 0;
  return value != nullptr && QvPlatform::TextToInteger(*value, &flag) && flag != 0;
}

void TQvRfRefSystemDataProcessor::StorePositiveLongitude(int key, bool on) {
  const std::initializer_list<QvPlatform::RowMatch> rows = {
      codes_.Match(CodeRows::kOwnerContent, ObjectType), codes_.Match(CodeRows::kOwnerId, key),
      codes_.Match(ParamTag::kPositiveLongitude)};
  if (!on) return codes_.Delete(rows, true);
  if (IsPositiveLongitude(key)) return;
  if (const RowView row = codes_.FindRow(rows)) {
    codes_.Change(row, "1");
  } else {
    AppendPositiveLongitude(key);
  }
}

void TQvRfRefSystemDataProcessor::AppendPositiveLongitude(int key) {
  codes_.Append({.ownerContent = ObjectType, .ownerId = key, .tag = ParamTag::kPositiveLongitude},
                "1");
}

}  // namespace QvRefSystem
