#include "platform/geocore/shell_definition.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "platform/geocore/geoids.h"
#include "platform/geocore/projection_methods.h"
#include "platform/geocore/shell_machine.h"
#include "platform/text/text.h"

namespace QvRefSystem {

using Definition = TShellReferenceSystem::Definition;

namespace {

constexpr int kEquidistantCylindrical = 1028;

}  // namespace

std::shared_ptr<const Definition> Definition::Make(SystemModel model,
                                                   std::shared_ptr<const THeightTable> table) {
  std::shared_ptr<Definition> definition(new Definition(std::move(model)));
  switch (definition->Kind()) {
    case SystemKind::kGeodetic:
      definition->ReadGeodetic();
      break;
    case SystemKind::kProjected:
      definition->ReadProjected();
      break;
    case SystemKind::kGeocentric:
      definition->ReadGeocentric();
      break;
    case SystemKind::kTopocentric:
      definition->ReadTopocentric(table);
      break;
    case SystemKind::kLocal:
      definition->shape_ = ShapeOf(definition->model_.ellipsoid.value());
      [[fallthrough]];
    case SystemKind::kLocalCartesian:
      definition->northFirst_ = definition->model_.swap;
      break;
  }
  if (definition->HasLatitude()) definition->ReadHeights(std::move(table));
  return definition;
}

Definition::Definition(SystemModel model)
    : model_(std::move(model)), linear_(FactorOf(model_.linearUnit)) {}

Definition::~Definition() = default;

bool Definition::IsOnEarth() const {
  return Kind() != SystemKind::kLocal && Kind() != SystemKind::kLocalCartesian;
}

bool Definition::HasLatitude() const {
  return Kind() == SystemKind::kGeodetic || Kind() == SystemKind::kProjected;
}

// Datum or ellipsoid and prime meridian.
void Definition::ReadBase(const SystemModel& base) {
  if (base.datum) {
    shape_ = ShapeOf(base.datum->ellipsoid);
    frame_ = FrameOf(base.datum->shift);
  } else if (base.ellipsoid) {
    shape_ = ShapeOf(*base.ellipsoid);
  } else if (HasLatitude()) {
    throw GeodesyError(model_.name + " has neither a datum nor an ellipsoid");
  }
  const PrimeMeridianModel& meridian = base.primeMeridian;
  meridian_ = NumberOf(meridian.longitude, "the longitude of the prime meridian " + meridian.name) *
              FactorOf(meridian.unit);
}

void Definition::ReadGeodetic() {
  ReadBase(model_);
  angular_ = FactorOf(model_.angularUnit);
  northFirst_ = true;
}

void Definition::ReadProjected() {
  if (!model_.projection) throw GeodesyError(model_.name + " has no map projection");
  const ProjectionModel& projection = *model_.projection;
  // The same base as the one of exchange formats: the primary system where there is one.
  ReadBase(model_.primary ? *model_.primary : model_);
  northFirst_ = projection.swap;
  if (const ProjectionMethod* method = FindProjectionMethod(projection.method)) {
    for (const int code : method->parameters)
      parameters_.push_back(ProjectionParameterValue(projection, code));
  }
  if (projection.method == kEquidistantCylindrical) {
    equidistant_.emplace(projection, shape_);
    return;
  }
  projection_ = ProjectionOperation(projection, shape_);
  // PROJ refuses some parameters only when it makes the operation.
  TShellPoint probe{0, 0, 0};
  QvRefSystem::Project(projection_, {&probe, 1});
}

void Definition::ReadGeocentric() {
  ReadBase(model_);
}

void Definition::ReadTopocentric(std::shared_ptr<const THeightTable> primaryTable) {
  if (!model_.primary || model_.primary->kind != SystemKind::kGeodetic) {
    throw GeodesyError(model_.name + " has no geodetic primary system");
  }
  const auto primary = Make(*model_.primary, std::move(primaryTable));
  TShellPoint origin{NumberOf(model_.origin[0], "the first coordinate of the origin"),
                     NumberOf(model_.origin[1], "the second coordinate of the origin"),
                     NumberOf(model_.origin[2], "the third coordinate of the origin")};
  primary->Enter({&origin, 1}, Third::kHeight);
  if (origin.First == HUGE_VAL) throw GeodesyError("the origin of " + model_.name + " is no place");
  double azimuth = 0;
  if (!QvPlatform::IsBlank(model_.azimuth)) {
    azimuth = NumberOf(model_.azimuth, "the azimuth") * primary->angular_;
  }
  shape_ = primary->shape_;
  frame_ = primary->frame_;
  northFirst_ = model_.swap;
  horizon_ = HorizonAt(shape_, origin, azimuth, model_.swap);
}

void Definition::ReadHeights(std::shared_ptr<const THeightTable> table) {
  if (model_.geoidCode != 0) {
    geoid_ = FindSystemGeoid(model_.geoidCode);
    if (!geoid_) {
      throw GeodesyError("the geoid " + std::to_string(model_.geoidCode) +
                         " is not known on this machine");
    }
    surface_ = HeightSurface::kGeoid;
  } else if (model_.heights && model_.heights->kind == HeightKind::kOffset) {
    offset_ = NumberOf(model_.heights->offset, "the offset of the heights") *
              FactorOf(model_.heights->offsetUnit) / linear_;
    surface_ = HeightSurface::kOffset;
  } else if (model_.heights) {
    if (!table || table->CountX == 0 || table->CountY == 0) {
      throw GeodesyError("the height table of " + model_.name + " is empty");
    }
    table_ = std::move(table);
    surface_ = HeightSurface::kTable;
  }
}

TShellPoint Definition::FromPlane(double x, double y, double h) const {
  return northFirst_ ? TShellPoint{y, x, h} : TShellPoint{x, y, h};
}

TShellPoint Definition::ToPlane(const TShellPoint& point) const {
  return FromPlane(point.First, point.Second, point.Third);
}

double Definition::PlaneUnit() const {
  return Kind() == SystemKind::kGeodetic ? angular_ : linear_;
}

double Definition::FullTurn() const {
  return Kind() == SystemKind::kGeodetic ? 2 * std::numbers::pi / angular_ : 0;
}

bool Definition::HasSameDatum(const Definition& other) const {
  return SameShape(shape_, other.shape_) && SameFrame(frame_, other.frame_);
}

bool Definition::HasSameProjection(const Definition& other) const {
  const ProjectionModel& a = *model_.projection;
  const ProjectionModel& b = *other.model_.projection;
  if (a.method != b.method || a.swap != b.swap || a.axisSign[0] != b.axisSign[0] ||
      a.axisSign[1] != b.axisSign[1]) {
    return false;
  }
  return std::ranges::equal(parameters_, other.parameters_, SameNumber);
}

bool Definition::HasSameOrigin(const Definition& other) const {
  for (int i = 0; i < 3; ++i) {
    // A tenth of a micrometre and the angle that it spans on the Earth.
    if (std::abs(horizon_.origin[i] - other.horizon_.origin[i]) > 1e-7) return false;
    for (int j = 0; j < 3; ++j) {
      if (std::abs(horizon_.axes[i][j] - other.horizon_.axes[i][j]) > 1e-14) return false;
    }
  }
  return true;
}

namespace {

// Origins of local systems are texts that nobody checks: two that are no numbers are one if they
// read the same.
bool SameText(const std::string& a, const std::string& b) {
  double first = 0;
  double second = 0;
  if (!QvPlatform::TextToDouble(a, &first) || !QvPlatform::TextToDouble(b, &second)) {
    return QvPlatform::TrimView(a) == QvPlatform::TrimView(b);
  }
  return SameNumber(first, second);
}

}  // namespace

bool Definition::HasSamePlane(const Definition& other) const {
  if (Kind() != other.Kind() || northFirst_ != other.northFirst_) return false;
  if (!SameNumber(PlaneUnit(), other.PlaneUnit())) return false;
  switch (Kind()) {
    case SystemKind::kGeodetic:
      return SameNumber(meridian_, other.meridian_) && HasSameDatum(other) &&
             model_.positiveLongitude == other.model_.positiveLongitude;
    case SystemKind::kProjected:
      return SameNumber(meridian_, other.meridian_) && HasSameDatum(other) &&
             HasSameProjection(other);
    case SystemKind::kGeocentric:
      return SameNumber(meridian_, other.meridian_) && SameFrame(frame_, other.frame_);
    case SystemKind::kTopocentric:
      return SameFrame(frame_, other.frame_) && HasSameOrigin(other);
    case SystemKind::kLocal:
      return SameShape(shape_, other.shape_) &&
             SameText(model_.origin[0], other.model_.origin[0]) &&
             SameText(model_.origin[1], other.model_.origin[1]);
    case SystemKind::kLocalCartesian:
      break;
  }
  return true;
}

bool Definition::HasSameHeights(const Definition& other) const {
  if (!SameNumber(linear_, other.linear_) || surface_ != other.surface_) return false;
  switch (surface_) {
    case HeightSurface::kEllipsoid:
      return true;
    case HeightSurface::kOffset:
      return SameNumber(offset_, other.offset_);
    case HeightSurface::kGeoid:
      return geoid_ == other.geoid_;
    case HeightSurface::kTable:
      // Two tables of the same values are rare enough to be treated as two.
      return table_ == other.table_;
  }
  return false;
}

}  // namespace QvRefSystem
