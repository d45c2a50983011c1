#include "registry/model_tree.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/data/tree_ids.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/projection_methods.h"
#include "registry/delivered_types.h"
#include "registry/model_values.h"

namespace QvRefSystem {
namespace {

using QvCommonUtils::TStringTree;

// Writes into one level of a tree.
class TreeWriter {
 public:
  explicit TreeWriter(TStringTree* tree) : tree_(tree) {}

  void Text(const TreeIds::Item& item, std::string_view value, int index = 0) const {
    tree_->InsertString(item.label, item.id, index, value);
  }
  void TextIfAny(const TreeIds::Item& item, std::string_view value) const {
    if (!value.empty()) Text(item, value);
  }
  void Integer(const TreeIds::Item& item, int value, int index = 0) const {
    tree_->InsertInteger(item.label, item.id, index, value);
  }
  // Exchange codes: one that is not known is not written.
  void Code(const TreeIds::Item& item, int code) const {
    if (code > 0) Integer(item, code);
  }
  [[nodiscard]] TreeWriter Level(const TreeIds::Item& item) const {
    auto* below = tree_->Subtrees.push_back(tree_->CreateSubtree(item.id, 0, item.label));
    return TreeWriter(static_cast<TStringTree*>(below));
  }

 private:
  TStringTree* tree_;
};

void WriteUnit(const TreeWriter& tree, const UnitModel& unit, UnitKind kind) {
  tree.Integer(TreeIds::kUnitCode, unit.code);
  tree.Integer(TreeIds::kUnitKind, static_cast<int>(kind));
  tree.Text(TreeIds::kUnitFactorB, FormatNumber(unit.factorB));
  tree.Text(TreeIds::kUnitFactorC, FormatNumber(unit.factorC));
  tree.Text(TreeIds::kUnitName, unit.name);
  tree.Text(TreeIds::kUnitAbbreviation, unit.abbreviation);
  tree.Text(TreeIds::kUnitDescription, unit.description);
  if (kind == UnitKind::kLinear) {
    tree.Code(TreeIds::kGeoTiffLinearUnit, unit.geoTiffCode);
    tree.TextIfAny(TreeIds::kMifUnit, unit.mifName);
  } else if (kind == UnitKind::kAngular) {
    tree.Code(TreeIds::kGeoTiffAngularUnit, unit.geoTiffCode);
  }
}

void WriteEllipsoid(const TreeWriter& tree, const EllipsoidModel& ellipsoid) {
  tree.Text(TreeIds::kEllipsoidName, ellipsoid.name);
  tree.Text(TreeIds::kEllipsoidDescription, ellipsoid.description);
  tree.Text(TreeIds::kEllipsoidA, ellipsoid.a);
  tree.Text(TreeIds::kEllipsoidB, ellipsoid.b);
  tree.Text(TreeIds::kEllipsoidF, FormatNumber(ellipsoid.f));
  tree.Integer(TreeIds::kEllipsoidUseF, ellipsoid.useF);
  tree.Integer(TreeIds::kEllipsoidSphere, ellipsoid.sphere);
  WriteUnit(tree.Level(TreeIds::kEllipsoidUnit), ellipsoid.unit, UnitKind::kLinear);
  tree.Code(TreeIds::kGeoTiffEllipsoid, ellipsoid.geoTiffCode);
  tree.TextIfAny(TreeIds::kMifEllipsoid, ellipsoid.mifCode);
}

void WritePrimeMeridian(const TreeWriter& tree, const PrimeMeridianModel& meridian) {
  tree.Text(TreeIds::kMeridianName, meridian.name);
  tree.Text(TreeIds::kMeridianDescription, meridian.description);
  tree.Text(TreeIds::kMeridianLongitude, meridian.longitude);
  WriteUnit(tree.Level(TreeIds::kMeridianUnit), meridian.unit, UnitKind::kAngular);
  tree.Code(TreeIds::kGeoTiffPrimeMeridian, meridian.geoTiffCode);
}

void WriteShiftType(const TreeWriter& tree, int number) {
  const DatumShiftType* type = FindDatumShiftType(number);
  tree.Integer(TreeIds::kShiftTypeNumber, number);
  tree.Text(TreeIds::kShiftTypeName, type ? type->name : std::string_view());
  tree.Text(TreeIds::kShiftTypeDescription, type ? type->description : std::string_view());
}

void WriteShift(const TreeWriter& tree, const DatumShiftModel& shift) {
  tree.Text(TreeIds::kShiftName, shift.name);
  tree.Text(TreeIds::kShiftDescription, shift.description);
  tree.Text(TreeIds::kShiftAbbreviation, shift.abbreviation);
  tree.Text(TreeIds::kShiftTx, shift.tx);
  tree.Text(TreeIds::kShiftTy, shift.ty);
  tree.Text(TreeIds::kShiftTz, shift.tz);
  if (shift.type == 1) {
    WriteUnit(tree.Level(TreeIds::kShiftLinearUnit), shift.linearUnit, UnitKind::kLinear);
    WriteShiftType(tree.Level(TreeIds::kShiftType), shift.type);
    return;
  }
  tree.Text(TreeIds::kShiftRx, shift.rx);
  tree.Text(TreeIds::kShiftRy, shift.ry);
  tree.Text(TreeIds::kShiftRz, shift.rz);
  tree.Text(TreeIds::kShiftS, shift.s);
  WriteShiftType(tree.Level(TreeIds::kShiftType), shift.type);
  WriteUnit(tree.Level(TreeIds::kShiftLinearUnit), shift.linearUnit, UnitKind::kLinear);
  WriteUnit(tree.Level(TreeIds::kShiftAngularUnit), shift.angularUnit, UnitKind::kAngular);
  WriteUnit(tree.Level(TreeIds::kShiftScaleUnit), shift.scaleUnit, UnitKind::kScale);
}

void WriteDatum(const TreeWriter& tree, const DatumModel& datum) {
  tree.Text(TreeIds::kDatumName, datum.name);
  tree.Text(TreeIds::kDatumDescription, datum.description);
  tree.Text(TreeIds::kDatumAbbreviation, datum.abbreviation);
  tree.Code(TreeIds::kGeoTiffDatum, datum.geoTiffCode);
  tree.TextIfAny(TreeIds::kMifDatum, datum.mifCode);
  WriteShift(tree.Level(TreeIds::kDatumShift), datum.shift);
  WriteEllipsoid(tree.Level(TreeIds::kDatumEllipsoid), datum.ellipsoid);
}

void WriteDatumOrEllipsoid(const TreeWriter& tree, const SystemModel& model) {
  if (model.datum) {
    WriteDatum(tree.Level(TreeIds::kDatum), *model.datum);
  } else {
    WriteEllipsoid(tree.Level(TreeIds::kEllipsoid), model.ellipsoid.value_or(EllipsoidModel{}));
  }
}

void WriteProjectionType(const TreeWriter& tree, const ProjectionModel& projection) {
  const ProjectionMethod* method = FindProjectionMethod(projection.method);
  tree.Integer(TreeIds::kProjectionTypeNumber, projection.method);
  tree.Text(TreeIds::kProjectionTypeName, method ? method->name : projection.name);
  tree.Text(TreeIds::kProjectionTypeDescription, ProjectionTypeDescription(projection.method));
  for (const ProjectionParameterModel& parameter : projection.parameters) {
    tree.Text(TreeIds::kProjectionTypeParameter, parameter.name, parameter.code);
  }
}

void WriteProjectionUnit(const TreeWriter& tree, const TreeIds::Item& item,
                         const std::optional<UnitModel>& unit, UnitKind kind) {
  if (unit) WriteUnit(tree.Level(item), *unit, kind);
}

void WriteProjection(const TreeWriter& tree, const ProjectionModel& projection) {
  tree.Integer(TreeIds::kProjectionMethod, projection.method);
  tree.Text(TreeIds::kProjectionName, projection.name);
  tree.Text(TreeIds::kProjectionDescription, projection.description);
  for (int i = 0; i < 2; ++i) {
    tree.Text(TreeIds::kProjectionAxis, projection.axisAbbreviation[i], i);
  }
  for (int i = 0; i < 2; ++i) {
    tree.Text(TreeIds::kProjectionDirection, projection.axisDirection[i], i);
  }
  for (int i = 0; i < 2; ++i)
    tree.Integer(TreeIds::kProjectionSign, projection.axisSign[i], i);
  tree.Integer(TreeIds::kProjectionSwap, projection.swap);
  WriteProjectionType(tree.Level(TreeIds::kProjectionType), projection);
  tree.Integer(TreeIds::kSwap, projection.swap);
  for (int i = 0; i < 2; ++i)
    tree.Integer(TreeIds::kSign, projection.axisSign[i], i);
  for (const ProjectionParameterModel& parameter : projection.parameters) {
    tree.Text({parameter.code, parameter.name}, parameter.value);
  }
  WriteProjectionUnit(tree, TreeIds::kProjectionLinearUnit, projection.linearUnit,
                      UnitKind::kLinear);
  WriteProjectionUnit(tree, TreeIds::kProjectionAngularUnit, projection.angularUnit,
                      UnitKind::kAngular);
  WriteProjectionUnit(tree, TreeIds::kProjectionScaleUnit, projection.scaleUnit, UnitKind::kScale);
  tree.Code(TreeIds::kGeoTiffProjection, projection.geoTiffCode);
  const ProjectionMethod* method = FindProjectionMethod(projection.method);
  if (method) tree.Code(TreeIds::kGeoTiffProjectionType, method->geoTiffCode);
}

void WriteSystemType(const TreeWriter& tree, const ReferenceSystemType& type) {
  tree.Integer(TreeIds::kSystemTypeNumber, type.number);
  tree.Text(TreeIds::kSystemTypeName, type.name);
  tree.Text(TreeIds::kSystemTypeDescription, type.description);
  for (int i = 0; i < 3; ++i) {
    tree.Text(TreeIds::kSystemTypeAxis, type.axisAbbreviation[i], i);
  }
  tree.Integer(TreeIds::kSystemTypeSwap, type.swap);
}

const ReferenceSystemType& TypeOf(SystemKind kind) {
  return *FindReferenceSystemType(static_cast<int>(kind));
}

void WriteHead(const TreeWriter& tree, const SystemModel& model) {
  tree.Text(TreeIds::kName, model.name);
  tree.Text(TreeIds::kDescription, model.description);
  tree.Text(TreeIds::kAbbreviation, model.abbreviation);
  tree.Integer(TreeIds::kKind, static_cast<int>(model.kind));
  WriteSystemType(tree.Level(TreeIds::kSystemType), TypeOf(model.kind));
}

void WriteAxes(const TreeWriter& tree, const SystemModel& model) {
  for (int i = 0; i < 3; ++i)
    tree.Text(TreeIds::kAxis, model.axisAbbreviation[i], i);
}

void WriteLinearUnit(const TreeWriter& tree, const SystemModel& model) {
  WriteUnit(tree.Level(TreeIds::kLinearUnit), model.linearUnit, UnitKind::kLinear);
}

void WriteOrigin(const TreeWriter& tree, const SystemModel& model, int count) {
  for (int i = 0; i < count; ++i)
    tree.Text(TreeIds::kOrigin, model.origin[i], i);
}

void WriteSystem(const TreeWriter& tree, const SystemModel& model);

// The fields that stand in a generated primary's angular unit.
UnitModel GeneratedRadian() {
  UnitModel radian;
  radian.name = TreeIds::kGeneratedUnitName;
  radian.abbreviation = TreeIds::kGeneratedUnitAbbreviation;
  radian.description = TreeIds::kGeneratedUnitDescription;
  return radian;
}

// What stands for the primary system of a projected one that refers to none.
SystemModel GeneratedPrimary(const SystemModel& projected) {
  SystemModel primary;
  primary.kind = SystemKind::kGeodetic;
  primary.name = TreeIds::kGeneratedPrimaryName;
  primary.description = TreeIds::kGeneratedPrimaryDescription;
  primary.abbreviation = TreeIds::kGeneratedPrimaryAbbreviation;
  std::ranges::copy(TypeOf(SystemKind::kGeodetic).axisAbbreviation, primary.axisAbbreviation);
  primary.angularUnit = GeneratedRadian();
  primary.linearUnit = projected.linearUnit;
  primary.primeMeridian = projected.primeMeridian;
  primary.datum = projected.datum;
  primary.ellipsoid = projected.ellipsoid;
  primary.geoTiffCode = projected.geoTiffCode;
  return primary;
}

void WriteGeodeticBody(const TreeWriter& tree, const SystemModel& model) {
  WriteAxes(tree, model);
  WriteUnit(tree.Level(TreeIds::kAngularUnit), model.angularUnit, UnitKind::kAngular);
  WritePrimeMeridian(tree.Level(TreeIds::kPrimeMeridian), model.primeMeridian);
  WriteLinearUnit(tree.Level(TreeIds::kVertical), model);
  WriteDatumOrEllipsoid(tree, model);
  if (model.positiveLongitude) tree.Integer(TreeIds::kPositiveLongitude, 1);
}

void WriteGeoTiffCodes(const TreeWriter& tree, const SystemModel& model) {
  tree.Code(TreeIds::kGeoTiffSystemType, TypeOf(model.kind).geoTiffModelType);
  tree.Code(TreeIds::kGeoTiffSystem, model.geoTiffCode);
}

void WritePrimary(const TreeWriter& tree, const SystemModel& model) {
  if (model.primary) return WriteSystem(tree.Level(TreeIds::kPrimary), *model.primary);
  const SystemModel primary = GeneratedPrimary(model);
  const TreeWriter below = tree.Level(TreeIds::kGeneratedPrimary);
  WriteHead(below, primary);
  WriteGeodeticBody(below, primary);
  WriteGeoTiffCodes(below, primary);
}

void WriteProjectedBody(const TreeWriter& tree, const SystemModel& model) {
  WriteAxes(tree, model);
  WritePrimeMeridian(tree.Level(TreeIds::kPrimeMeridian), model.primeMeridian);
  const TreeWriter vertical = tree.Level(TreeIds::kVertical);
  WriteLinearUnit(tree, model);
  WriteLinearUnit(vertical, model);
  const ProjectionModel projection = model.projection.value_or(ProjectionModel{});
  WriteProjection(tree.Level(TreeIds::kProjection), projection);
  const ProjectionMethod* method = FindProjectionMethod(projection.method);
  if (method) tree.Code(TreeIds::kMifSystemType, method->mifCode);
  WritePrimary(tree, model);
  WriteDatumOrEllipsoid(tree, model);
}

void WriteBody(const TreeWriter& tree, const SystemModel& model) {
  switch (model.kind) {
    case SystemKind::kGeocentric:
      WriteAxes(tree, model);
      WritePrimeMeridian(tree.Level(TreeIds::kPrimeMeridian), model.primeMeridian);
      WriteLinearUnit(tree, model);
      if (model.datum) WriteDatum(tree.Level(TreeIds::kDatum), *model.datum);
      return;
    case SystemKind::kGeodetic:
      WriteGeodeticBody(tree, model);
      tree.Integer(TreeIds::kMifSystemType, kMifLongitudeLatitude);
      return;
    case SystemKind::kProjected:
      return WriteProjectedBody(tree, model);
    case SystemKind::kLocalCartesian:
    case SystemKind::kLocal:
    case SystemKind::kTopocentric:
      break;
  }
  tree.Integer(TreeIds::kSwap, model.swap);
  WriteAxes(tree, model);
  WriteLinearUnit(tree, model);
  if (model.kind == SystemKind::kLocal) {
    WriteEllipsoid(tree.Level(TreeIds::kEllipsoid), model.ellipsoid.value_or(EllipsoidModel{}));
    WriteOrigin(tree, model, 2);
  } else if (model.kind == SystemKind::kTopocentric) {
    WriteSystem(tree.Level(TreeIds::kPrimary), model.primary ? *model.primary : SystemModel{});
    WriteOrigin(tree, model, 3);
    tree.TextIfAny(TreeIds::kAzimuth, model.azimuth);
  }
}

void WriteGeoid(const TreeWriter& tree, int code) {
  std::string name;
  // A geoid of another machine keeps its code, which is all that is read back.
  if (!GetSystemGeoidName(code, &name)) name = "EPSG:" + std::to_string(code);
  tree.Text(TreeIds::kHeightSystemName, name);
  tree.Text(TreeIds::kHeightSystemDescription, "SystemGeoid; Code=" + std::to_string(code));
  tree.Text(TreeIds::kHeightSystemAbbreviation, name);
  tree.Integer(TreeIds::kHeightSystemKind, static_cast<int>(HeightKind::kSystemGeoid));
  tree.Integer(TreeIds::kHeightSystemCode, code);
}

void WriteSystem(const TreeWriter& tree, const SystemModel& model) {
  WriteHead(tree, model);
  WriteBody(tree, model);
  if (model.geoidCode != 0) WriteGeoid(tree.Level(TreeIds::kHeightSystem), model.geoidCode);
  WriteGeoTiffCodes(tree, model);
}

}  // namespace

void ModelToTree(const SystemModel& model, TStringTree* tree) {
  ClearTree(tree);
  WriteSystem(TreeWriter(tree), model);
}

}  // namespace QvRefSystem
