#include "registry/epsg_registry.h"

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "assembly/processor_set.h"
#include "platform/data/tree_ids.h"
#include "platform/dbset/write_group.h"
#include "platform/text/text.h"
#include "processors/ref_system_processor.h"
#include "registry/database_making.h"
#include "registry/delivered_tables.h"
#include "registry/epsg_model_maker.h"
#include "registry/model_tree.h"
#include "registry/model_values.h"
#include "registry/registry_units.h"

namespace QvRefSystem {
namespace {

using QvCommonUtils::TStringTree;
using QvPlatform::TQvDataSet;
using QvPlatform::TQvWriteGroup;

// Another name of unity, of which the registry makes no use.
constexpr int kCoefficient = 9203;

// "EPSG:9003; 12/39.37 metre".
std::string DescribeUnit(const UnitModel& unit, UnitKind kind) {
  std::string text = "EPSG:" + std::to_string(unit.code);
  if (unit.factorB == 1 && unit.factorC == 1) return text;
  text += "; " + FormatNumber(unit.factorB);
  if (unit.factorC != 1) text += "/" + FormatNumber(unit.factorC);
  switch (kind) {
    case UnitKind::kLinear:
      return text + " metre";
    case UnitKind::kAngular:
      return text + " radian";
    case UnitKind::kScale:
      break;
  }
  return text;
}

// Puts the registry's objects into an open database that holds none.
class RegistryWriter {
 public:
  RegistryWriter(const EpsgModelMaker& maker, TdatamoduleQvRfData& data, RegistryReport* report)
      : maker_(maker), data_(data), report_(report) {}

  // Throws std::runtime_error (or what the store throws) if the database cannot be filled.
  void Fill() {
    const std::vector<int> codes = maker_.SystemCodes();
    const auto progress = data_.Ui().StartProgress(
        0, "Making the database of the EPSG registry " + maker_.Dataset().version,
        static_cast<int>(codes.size()));
    AddUnits();
    AddEllipsoids();
    AddPrimeMeridians();
    for (const int code : codes) {
      AddSystem(code);
      if (progress && !progress->Next()) throw std::runtime_error("cancelled by the user");
    }
    OfferCommonest();
  }

 private:
  // A whole geodetic system, of which one part is put in and the rest is left.
  SystemModel Carrier() const {
    SystemModel carrier;
    std::string error;
    constexpr int kWgs84 = 4326;
    if (!maker_.System(kWgs84, &carrier, &error)) throw std::runtime_error(error);
    carrier.datum->shift.type = 2;
    return carrier;
  }

  // Puts in the part of a system's tree that lies at the end of a path of subtrees.
  void AddPart(const SystemModel& system, std::initializer_list<TreeIds::Item> path,
               TObjectType type) {
    ModelToTree(system, &tree_);
    TStringTree* part = &tree_;
    const bool there = std::ranges::all_of(
        path, [&part](const TreeIds::Item& item) { return EnterSubtree(&part, item.id, 0); });
    TQvRfDataProcessor& processor = *ProcessorFor(data_, static_cast<int>(type));
    if (!there || processor.InsertFromTree(part) == 0) {
      throw std::runtime_error("the database does not take a " + processor.TypeName);
    }
  }

  void AddUnits() {
    SystemModel carrier = Carrier();
    for (UnitModel unit : RegistryUnits()) {
      if (unit.code == kCoefficient) continue;
      const UnitKind kind = RegistryUnitKind(unit.code);
      unit.description = DescribeUnit(unit, kind);
      switch (kind) {
        case UnitKind::kLinear:
          carrier.linearUnit = unit;
          AddPart(carrier, {TreeIds::kVertical, TreeIds::kLinearUnit}, TObjectType::kLinearUnit);
          break;
        case UnitKind::kAngular:
          carrier.angularUnit = unit;
          AddPart(carrier, {TreeIds::kAngularUnit}, TObjectType::kAngularUnit);
          break;
        case UnitKind::kScale:
          carrier.datum->shift.scaleUnit = unit;
          AddPart(carrier, {TreeIds::kDatum, TreeIds::kDatumShift, TreeIds::kShiftScaleUnit},
                  TObjectType::kScaleUnit);
          break;
      }
    }
  }

  void AddEllipsoids() {
    SystemModel carrier = Carrier();
    for (const auto& [code, ellipsoid] : maker_.Dataset().ellipsoids) {
      carrier.datum->ellipsoid = maker_.Ellipsoid(ellipsoid);
      AddPart(carrier, {TreeIds::kDatum, TreeIds::kDatumEllipsoid}, TObjectType::kEllipsoid);
    }
  }

  void AddPrimeMeridians() {
    SystemModel carrier = Carrier();
    for (const auto& [code, meridian] : maker_.Dataset().primeMeridians) {
      carrier.primeMeridian = maker_.PrimeMeridian(meridian);
      AddPart(carrier, {TreeIds::kPrimeMeridian}, TObjectType::kPrimeMeridian);
    }
  }

  void AddSystem(int code) {
    SystemModel model;
    std::string error;
    if (!maker_.System(code, &model, &error)) return Refuse(code, "", error);
    ModelToTree(model, &tree_);
    const int before = data_.datasetRefSystem.RecordCount();
    const int key = data_.RefSystemProcessor->InsertFromTree(&tree_);
    if (key == 0) return Refuse(code, model.name, "the database does not take its tree");
    // A base system goes in ahead of those on it, so nothing but this system can be new or found.
    if (data_.datasetRefSystem.RecordCount() != before + 1) {
      return Refuse(code, model.name, "an equal system is there already");
    }
    ++report_->systems;
    const auto solid = maker_.MergedSystems().find(code);
    if (solid != maker_.MergedSystems().end()) AddFurtherCode(key, solid->second);
  }

  // The row stands behind the one with the system's own code, which is the code that it exports.
  void AddFurtherCode(int key, int code) {
    TQvDataSet& values = data_.datasetParamValue;
    values.Append();
    values.FieldByName("OWNER_CONTENT").SetInteger(static_cast<int>(TObjectType::kReferenceSystem));
    values.FieldByName("OWNER_ID").SetInteger(key);
    values.FieldByName("PARAM_TAG").SetInteger(static_cast<int>(ParamTag::kGeoTiff));
    values.FieldByName("PARAM_GROUP").SetInteger(0);
    values.FieldByName("PARAM_CODE").SetInteger(0);
    values.FieldByName("VALUE").SetString(std::to_string(code));
    values.Post();
  }

  // New records are offered what was used last: the commonest of each, to begin with.
  void OfferCommonest() {
    for (const auto& [table, name] : {std::pair(&data_.datasetLinearUnit, "metre"),
                                      std::pair(&data_.datasetAngularUnit, "degree"),
                                      std::pair(&data_.datasetScaleUnit, "unity"),
                                      std::pair(&data_.datasetPrimeMeridian, "Greenwich"),
                                      std::pair(&data_.datasetEllipsoid, "WGS 84")}) {
      const int field = table->FieldByName("NAME").GetIndex();
      if (!table->MoveTo(table->FindFirst({QvPlatform::RowMatch::Text(field, name)}))) continue;
      table->Edit();
      table->FieldByName("LAST_USE").SetFloat(QvPlatform::CurrentMoment());
      table->Post();
    }
  }

  void Refuse(int code, const std::string& name, const std::string& reason) {
    report_->refused.push_back({code, name, reason});
  }

  const EpsgModelMaker& maker_;
  TdatamoduleQvRfData& data_;
  RegistryReport* report_;
  TStringTree tree_;
};

// Without a maker no objects are put in.
void FillDatabase(const EpsgModelMaker* maker, const std::string& place, bool resourceForm,
                  QvPlatform::TUserInterface& ui, RegistryReport* report) {
  const std::unique_ptr<TdatamoduleQvRfData> data = MakeDataModule(ui);
  data->DatabasePath = place;
  if (!data->OpenDatabase(place, kFullMode, resourceForm)) {
    throw std::runtime_error("the new tables do not open: " + data->LastError());
  }
  // Two groups: what comes with a database is not among the tables that one group of objects
  // writes, and all tables are more than a group takes.
  TQvWriteGroup delivered(DeliveredTables(*data));
  FillDeliveredTables(*data);
  delivered.Commit();
  if (maker == nullptr) return;
  TQvWriteGroup objects(data->WritableTables());
  RegistryWriter(*maker, *data, report).Fill();
  objects.Commit();
}

}  // namespace

bool BuildRegistryDatabase(const std::string& path, const RegistryOptions& options,
                           QvPlatform::TUserInterface& ui, RegistryReport* report,
                           std::string* error) {
  const EpsgModelMaker* maker = options.empty ? nullptr : EpsgModelMaker::Installed(error);
  if (maker == nullptr && !options.empty) return false;
  try {
    RegistryReport made;
    DatabaseMaking making(path, options.resourceForm, ui);
    FillDatabase(maker, making.Place(), options.resourceForm, ui, &made);
    making.Deliver();
    if (report) *report = std::move(made);
    return true;
  } catch (const std::exception& failure) {
    *error = failure.what();
    return false;
  }
}

}  // namespace QvRefSystem
