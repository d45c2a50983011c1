#include "platform/geocore/model_from_tree.h"

#include <utility>

#include "platform/geocore/projection_methods.h"
#include "platform/geocore/tree_reader.h"

namespace QvRefSystem {
namespace {

using QvCommonUtils::TStringTree;

UnitModel ReadUnit(const TreeReader& tree) {
  UnitModel unit;
  unit.code = tree.Integer(TreeIds::kUnitCode);
  unit.factorB = tree.Double(TreeIds::kUnitFactorB);
  unit.factorC = tree.Double(TreeIds::kUnitFactorC);
  unit.name = tree.Text(TreeIds::kUnitName);
  unit.abbreviation = tree.Text(TreeIds::kUnitAbbreviation);
  unit.description = tree.Text(TreeIds::kUnitDescription);
  if (!(unit.factorB > 0) || !(unit.factorC > 0)) tree.Refuse("a unit's factors must be positive");
  return unit;
}

UnitModel ReadLinearUnit(const TreeReader& tree) {
  UnitModel unit = ReadUnit(tree);
  unit.geoTiffCode = tree.IntegerOr(TreeIds::kGeoTiffLinearUnit, 0);
  unit.mifName = tree.TextOr(TreeIds::kMifUnit, {});
  return unit;
}

UnitModel ReadAngularUnit(const TreeReader& tree) {
  UnitModel unit = ReadUnit(tree);
  unit.geoTiffCode = tree.IntegerOr(TreeIds::kGeoTiffAngularUnit, 0);
  return unit;
}

EllipsoidModel ReadEllipsoid(const TreeReader& tree) {
  EllipsoidModel ellipsoid;
  ellipsoid.name = tree.Text(TreeIds::kEllipsoidName);
  ellipsoid.description = tree.Text(TreeIds::kEllipsoidDescription);
  ellipsoid.a = tree.Text(TreeIds::kEllipsoidA);
  ellipsoid.b = tree.Text(TreeIds::kEllipsoidB);
  ellipsoid.useF = tree.Integer(TreeIds::kEllipsoidUseF) != 0;
  ellipsoid.sphere = tree.Integer(TreeIds::kEllipsoidSphere) != 0;
  if (ellipsoid.useF) ellipsoid.f = tree.Double(TreeIds::kEllipsoidF);
  ellipsoid.unit = ReadLinearUnit(tree.Level(TreeIds::kEllipsoidUnit));
  ellipsoid.geoTiffCode = tree.IntegerOr(TreeIds::kGeoTiffEllipsoid, 0);
  ellipsoid.mifCode = tree.TextOr(TreeIds::kMifEllipsoid, {});
  return ellipsoid;
}

PrimeMeridianModel ReadPrimeMeridian(const TreeReader& tree) {
  PrimeMeridianModel meridian;
  meridian.name = tree.Text(TreeIds::kMeridianName);
  meridian.description = tree.Text(TreeIds::kMeridianDescription);
  meridian.longitude = tree.Text(TreeIds::kMeridianLongitude);
  meridian.unit = ReadAngularUnit(tree.Level(TreeIds::kMeridianUnit));
  meridian.geoTiffCode = tree.IntegerOr(TreeIds::kGeoTiffPrimeMeridian, 0);
  return meridian;
}

void ReadSevenParameters(const TreeReader& tree, DatumShiftModel* shift) {
  shift->rx = tree.Text(TreeIds::kShiftRx);
  shift->ry = tree.Text(TreeIds::kShiftRy);
  shift->rz = tree.Text(TreeIds::kShiftRz);
  shift->s = tree.Text(TreeIds::kShiftS);
  shift->angularUnit = ReadAngularUnit(tree.Level(TreeIds::kShiftAngularUnit));
  shift->scaleUnit = ReadUnit(tree.Level(TreeIds::kShiftScaleUnit));
}

DatumShiftModel ReadShift(const TreeReader& tree) {
  DatumShiftModel shift;
  shift.name = tree.Text(TreeIds::kShiftName);
  shift.description = tree.Text(TreeIds::kShiftDescription);
  shift.abbreviation = tree.Text(TreeIds::kShiftAbbreviation);
  shift.type = tree.Level(TreeIds::kShiftType).Integer(TreeIds::kShiftTypeNumber);
  if (shift.type < 1 || shift.type > 3) tree.Refuse("the type of a datum shift must be 1, 2 or 3");
  shift.tx = tree.Text(TreeIds::kShiftTx);
  shift.ty = tree.Text(TreeIds::kShiftTy);
  shift.tz = tree.Text(TreeIds::kShiftTz);
  shift.linearUnit = ReadLinearUnit(tree.Level(TreeIds::kShiftLinearUnit));
  if (shift.type != 1) ReadSevenParameters(tree, &shift);
  return shift;
}

DatumModel ReadDatum(const TreeReader& tree) {
  DatumModel datum;
  datum.name = tree.Text(TreeIds::kDatumName);
  datum.description = tree.Text(TreeIds::kDatumDescription);
  datum.abbreviation = tree.Text(TreeIds::kDatumAbbreviation);
  datum.shift = ReadShift(tree.Level(TreeIds::kDatumShift));
  datum.ellipsoid = ReadEllipsoid(tree.Level(TreeIds::kDatumEllipsoid));
  datum.geoTiffCode = tree.IntegerOr(TreeIds::kGeoTiffDatum, 0);
  datum.mifCode = tree.TextOr(TreeIds::kMifDatum, {});
  return datum;
}

// The parameters of a method that the table does not have stand in the tree of its type.
std::vector<TreeIds::Item> ParametersOf(const TreeReader& tree, int method) {
  std::vector<TreeIds::Item> parameters;
  if (const ProjectionMethod* known = FindProjectionMethod(method)) {
    for (const int code : known->parameters) {
      parameters.push_back({code, FindProjectionParameter(code)->name});
    }
    return parameters;
  }
  const auto type = tree.LevelIfAny(TreeIds::kProjectionType);
  if (!type) return parameters;
  for (const auto& field : type->Tree()->Fields) {
    if (field->Id == TreeIds::kProjectionTypeParameter.id && field->Count > 0) {
      parameters.push_back({field->Index, field->Values[0]});
    }
  }
  return parameters;
}

ProjectionModel ReadProjection(const TreeReader& tree) {
  ProjectionModel projection;
  projection.method = tree.Integer(TreeIds::kProjectionMethod);
  projection.name = tree.Text(TreeIds::kProjectionName);
  projection.description = tree.Text(TreeIds::kProjectionDescription);
  for (int i = 0; i < 2; ++i) {
    projection.axisAbbreviation[i] = tree.Text(TreeIds::kProjectionAxis, i);
    projection.axisDirection[i] = tree.Text(TreeIds::kProjectionDirection, i);
    projection.axisSign[i] = tree.Integer(TreeIds::kProjectionSign, i) > 0 ? 1 : -1;
  }
  projection.swap = tree.Integer(TreeIds::kProjectionSwap) != 0;
  for (const TreeIds::Item& parameter : ParametersOf(tree, projection.method)) {
    projection.parameters.push_back(
        {parameter.id, std::string(parameter.label), tree.Text(parameter)});
  }
  if (const auto unit = tree.LevelIfAny(TreeIds::kProjectionLinearUnit)) {
    projection.linearUnit = ReadLinearUnit(*unit);
  }
  if (const auto unit = tree.LevelIfAny(TreeIds::kProjectionAngularUnit)) {
    projection.angularUnit = ReadAngularUnit(*unit);
  }
  if (const auto unit = tree.LevelIfAny(TreeIds::kProjectionScaleUnit)) {
    projection.scaleUnit = ReadUnit(*unit);
  }
  projection.geoTiffCode = tree.IntegerOr(TreeIds::kGeoTiffProjection, 0);
  return projection;
}

void ReadDatumOrEllipsoid(const TreeReader& tree, SystemModel* model) {
  if (const auto datum = tree.LevelIfAny(TreeIds::kDatum)) {
    model->datum = ReadDatum(*datum);
  } else {
    model->ellipsoid = ReadEllipsoid(tree.Level(TreeIds::kEllipsoid));
  }
}

HeightSystemModel ReadStoredHeights(const TreeReader& tree, HeightKind kind) {
  HeightSystemModel heights;
  heights.kind = kind;
  heights.name = tree.TextOr(TreeIds::kHeightSystemName, {});
  heights.description = tree.TextOr(TreeIds::kHeightSystemDescription, {});
  heights.abbreviation = tree.TextOr(TreeIds::kHeightSystemAbbreviation, {});
  if (kind == HeightKind::kOffset) {
    heights.offset = tree.Text(TreeIds::kHeightSystemOffset);
    heights.offsetUnit = ReadLinearUnit(tree.Level(TreeIds::kHeightSystemUnit));
  }
  const TreeIds::Item limits[] = {TreeIds::kHeightSystemNorth, TreeIds::kHeightSystemEast,
                                  TreeIds::kHeightSystemSouth, TreeIds::kHeightSystemWest};
  for (int i = 0; i < 4; ++i)
    heights.limits[i] = tree.TextOr(limits[i], {});
  heights.cells[0] = tree.TextOr(TreeIds::kHeightSystemCellNorthSouth, {});
  heights.cells[1] = tree.TextOr(TreeIds::kHeightSystemCellEastWest, {});
  return heights;
}

void ReadHeightSystem(const TreeReader& tree, SystemModel* model) {
  const auto heights = tree.LevelIfAny(TreeIds::kHeightSystem);
  if (!heights) return;
  const auto kind = HeightKindOf(heights->Integer(TreeIds::kHeightSystemKind));
  if (!kind) {
    heights->Refuse("the type of a height system must be 1, 2 or 3");
  } else if (*kind == HeightKind::kSystemGeoid) {
    model->geoidCode = heights->Integer(TreeIds::kHeightSystemCode);
  } else {
    model->heights = ReadStoredHeights(*heights, *kind);
  }
}

SystemModel ReadSystem(const TreeReader& tree);

void ReadPrimary(const TreeReader& tree, SystemModel* model) {
  SystemModel primary = ReadSystem(tree);
  if (primary.name == TreeIds::kGeneratedPrimaryName &&
      primary.description == TreeIds::kGeneratedPrimaryDescription) {
    return;
  }
  model->primary = std::make_shared<SystemModel>(std::move(primary));
}

void ReadGeocentric(const TreeReader& tree, SystemModel* model) {
  model->linearUnit = ReadLinearUnit(tree.Level(TreeIds::kLinearUnit));
  model->primeMeridian = ReadPrimeMeridian(tree.Level(TreeIds::kPrimeMeridian));
  if (const auto datum = tree.LevelIfAny(TreeIds::kDatum)) model->datum = ReadDatum(*datum);
}

void ReadGeodetic(const TreeReader& tree, SystemModel* model) {
  model->positiveLongitude = tree.IntegerOr(TreeIds::kPositiveLongitude, 0) != 0;
  model->angularUnit = ReadAngularUnit(tree.Level(TreeIds::kAngularUnit));
  model->linearUnit = ReadLinearUnit(tree.Level(TreeIds::kVertical).Level(TreeIds::kLinearUnit));
  model->primeMeridian = ReadPrimeMeridian(tree.Level(TreeIds::kPrimeMeridian));
  ReadDatumOrEllipsoid(tree, model);
  ReadHeightSystem(tree, model);
}

void ReadProjected(const TreeReader& tree, SystemModel* model) {
  model->linearUnit = ReadLinearUnit(tree.Level(TreeIds::kLinearUnit));
  if (const auto primary = tree.LevelIfAny(TreeIds::kPrimary)) ReadPrimary(*primary, model);
  model->projection = ReadProjection(tree.Level(TreeIds::kProjection));
  model->primeMeridian = ReadPrimeMeridian(tree.Level(TreeIds::kPrimeMeridian));
  ReadDatumOrEllipsoid(tree, model);
  ReadHeightSystem(tree, model);
}

void ReadCartesian(const TreeReader& tree, SystemModel* model) {
  model->swap = tree.Integer(TreeIds::kSwap) != 0;
  model->linearUnit = ReadLinearUnit(tree.Level(TreeIds::kLinearUnit));
}

void ReadLocal(const TreeReader& tree, SystemModel* model) {
  ReadCartesian(tree, model);
  model->ellipsoid = ReadEllipsoid(tree.Level(TreeIds::kEllipsoid));
  // The origin stays behind when a database is exchanged without origins.
  for (int i = 0; i < 2; ++i)
    model->origin[i] = tree.TextOr(TreeIds::kOrigin, {}, i);
}

void ReadTopocentric(const TreeReader& tree, SystemModel* model) {
  ReadCartesian(tree, model);
  model->primary = std::make_shared<SystemModel>(ReadSystem(tree.Level(TreeIds::kPrimary)));
  for (int i = 0; i < 3; ++i)
    model->origin[i] = tree.Text(TreeIds::kOrigin, i);
  model->azimuth = tree.TextOr(TreeIds::kAzimuth, {});
}

void ReadBody(const TreeReader& tree, SystemModel* model) {
  switch (model->kind) {
    case SystemKind::kLocalCartesian:
      return ReadCartesian(tree, model);
    case SystemKind::kLocal:
      return ReadLocal(tree, model);
    case SystemKind::kGeocentric:
      return ReadGeocentric(tree, model);
    case SystemKind::kGeodetic:
      return ReadGeodetic(tree, model);
    case SystemKind::kProjected:
      return ReadProjected(tree, model);
    case SystemKind::kTopocentric:
      return ReadTopocentric(tree, model);
  }
}

SystemModel ReadSystem(const TreeReader& tree) {
  SystemModel model;
  const int number = tree.Integer(TreeIds::kKind);
  model.name = tree.Text(TreeIds::kName);
  model.description = tree.Text(TreeIds::kDescription);
  model.abbreviation = tree.Text(TreeIds::kAbbreviation);
  for (int i = 0; i < 3; ++i)
    model.axisAbbreviation[i] = tree.Text(TreeIds::kAxis, i);
  if (tree.Failed()) return model;
  const std::optional<SystemKind> kind = SystemKindOf(number);
  if (!kind) {
    tree.Refuse("the type of a reference system must be 1 to 6, not " + std::to_string(number));
    return model;
  }
  model.kind = *kind;
  ReadBody(tree, &model);
  model.geoTiffCode = tree.IntegerOr(TreeIds::kGeoTiffSystem, 0);
  return model;
}

}  // namespace

bool ModelFromTree(const TStringTree* tree, SystemModel* model, std::string* error) {
  std::string reason;
  SystemModel read = ReadSystem(TreeReader(tree, "reference system", &reason));
  if (!reason.empty()) {
    *error = std::move(reason);
    return false;
  }
  *model = std::move(read);
  return true;
}

}  // namespace QvRefSystem
