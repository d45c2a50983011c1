#include "platform/geocore/wgs84.h"

#include <numbers>
#include <string>

namespace QvRefSystem::Wgs84 {

EllipsoidModel Ellipsoid() {
  EllipsoidModel ellipsoid;
  ellipsoid.name = kName;
  ellipsoid.a = std::to_string(kSemiMajorAxis);
  ellipsoid.useF = true;
  ellipsoid.f = 1 / kInverseFlattening;
  return ellipsoid;
}

SystemModel Geographic() {
  SystemModel model;
  model.kind = SystemKind::kGeodetic;
  model.name = kName;
  model.angularUnit.factorB = std::numbers::pi;
  model.angularUnit.factorC = 180;
  model.primeMeridian.longitude = "0";
  model.primeMeridian.unit = model.angularUnit;
  model.ellipsoid = Ellipsoid();
  return model;
}

}  // namespace QvRefSystem::Wgs84
