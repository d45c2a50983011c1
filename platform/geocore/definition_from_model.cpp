#include "platform/geocore/definition_from_model.h"

#include <string>
#include <utility>

#include "platform/geocore/geodesy_error.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/projection_methods.h"
#include "platform/geocore/shell_machine.h"
#include "platform/geocore/shell_projection.h"
#include "platform/geocore/shell_transform.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

constexpr int kEquidistantCylindrical = 1028;

/// Reads a model into a definition, kind by kind.
class DefinitionMaker {
 public:
  explicit DefinitionMaker(SystemModel model) {
    made_.model = std::move(model);
    made_.heightUnit = FactorOf(made_.model.linearUnit);
  }

  [[nodiscard]] ShellDefinition Make(std::shared_ptr<const THeightTable> table) && {
    switch (made_.Kind()) {
      case SystemKind::kGeodetic:
        ReadGeodetic();
        break;
      case SystemKind::kProjected:
        ReadProjected();
        break;
      case SystemKind::kGeocentric:
        ReadBase(made_.model);
        break;
      case SystemKind::kTopocentric:
        ReadTopocentric(table);
        break;
      case SystemKind::kLocal:
        made_.shape = ShapeOf(made_.model.ellipsoid.value());
        [[fallthrough]];
      case SystemKind::kLocalCartesian:
        made_.isNorthFirst = made_.model.swap;
        break;
    }
    if (made_.HasLatitude()) ReadHeights(std::move(table));
    return std::move(made_);
  }

 private:
  // Datum or ellipsoid and prime meridian.
  void ReadBase(const SystemModel& base) {
    if (base.datum) {
      made_.shape = ShapeOf(base.datum->ellipsoid);
      made_.frame = FrameOf(base.datum->shift);
    } else if (base.ellipsoid) {
      made_.shape = ShapeOf(*base.ellipsoid);
    } else if (made_.HasLatitude()) {
      throw GeodesyError(made_.model.name + " has neither a datum nor an ellipsoid");
    }
    const PrimeMeridianModel& meridian = base.primeMeridian;
    made_.primeMeridian =
        NumberOf(meridian.longitude, "the longitude of the prime meridian " + meridian.name) *
        FactorOf(meridian.unit);
  }

  void ReadGeodetic() {
    ReadBase(made_.model);
    made_.angularUnit = FactorOf(made_.model.angularUnit);
    made_.isNorthFirst = true;
  }

  void ReadProjected() {
    if (!made_.model.projection) throw GeodesyError(made_.model.name + " has no map projection");
    const ProjectionModel& projection = *made_.model.projection;
    // The same base as the one of exchange formats: the primary system where there is one.
    ReadBase(made_.model.primary ? *made_.model.primary : made_.model);
    made_.isNorthFirst = projection.swap;
    if (const ProjectionMethod* method = FindProjectionMethod(projection.method)) {
      for (const int code : method->parameters)
        made_.parameters.push_back(ProjectionParameterValue(projection, code));
    }
    if (projection.method == kEquidistantCylindrical) {
      made_.equidistant.emplace(projection, made_.shape);
      return;
    }
    made_.projection = ProjectionOperation(projection, made_.shape);
    // PROJ refuses some parameters only when it makes the operation.
    TShellPoint probe{0, 0, 0};
    Project(made_.projection, Points<Geographic>(&probe));
  }

  void ReadTopocentric(std::shared_ptr<const THeightTable> primaryTable) {
    if (!made_.model.primary || made_.model.primary->kind != SystemKind::kGeodetic) {
      throw GeodesyError(made_.model.name + " has no geodetic primary system");
    }
    const auto primary = DefinitionFromModel(*made_.model.primary, std::move(primaryTable));
    const TShellPoint axes{NumberOf(made_.model.origin[0], "the first coordinate of the origin"),
                           NumberOf(made_.model.origin[1], "the second coordinate of the origin"),
                           NumberOf(made_.model.origin[2], "the third coordinate of the origin")};
    const TShellPoint origin = PlaceOf(*primary, axes);
    if (IsFailed(origin)) throw GeodesyError("the origin of " + made_.model.name + " is no place");
    double azimuth = 0;
    if (!QvPlatform::IsBlank(made_.model.azimuth)) {
      azimuth = NumberOf(made_.model.azimuth, "the azimuth") * primary->angularUnit;
    }
    made_.shape = primary->shape;
    made_.frame = primary->frame;
    made_.isNorthFirst = made_.model.swap;
    made_.horizon = HorizonAt(made_.shape, origin, azimuth, made_.model.swap);
  }

  void ReadHeights(std::shared_ptr<const THeightTable> table) {
    if (made_.model.geoidCode != 0) {
      made_.geoid = FindSystemGeoid(made_.model.geoidCode);
      if (!made_.geoid) {
        throw GeodesyError("the geoid " + std::to_string(made_.model.geoidCode) +
                           " is not known on this machine");
      }
      made_.surface = HeightSurface::kGeoid;
    } else if (made_.model.heights && made_.model.heights->kind == HeightKind::kOffset) {
      made_.offset = NumberOf(made_.model.heights->offset, "the offset of the heights") *
                     FactorOf(made_.model.heights->offsetUnit) / made_.heightUnit;
      made_.surface = HeightSurface::kOffset;
    } else if (made_.model.heights) {
      if (!table || table->CountX == 0 || table->CountY == 0) {
        throw GeodesyError("the height table of " + made_.model.name + " is empty");
      }
      made_.table = std::move(table);
      made_.surface = HeightSurface::kTable;
    }
  }

  ShellDefinition made_;
};

}  // namespace

std::shared_ptr<const ShellDefinition> DefinitionFromModel(
    SystemModel model, std::shared_ptr<const THeightTable> table) {
  return std::make_shared<const ShellDefinition>(
      DefinitionMaker(std::move(model)).Make(std::move(table)));
}

}  // namespace QvRefSystem
