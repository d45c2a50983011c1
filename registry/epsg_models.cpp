#include "registry/epsg_models.h"

#include "registry/epsg_model_maker.h"

namespace QvRefSystem {

bool ModelFromEpsg(int code, SystemModel* model, std::string* error) {
  const EpsgModelMaker* maker = EpsgModelMaker::Installed(error);
  return maker && maker->System(code, model, error);
}

}  // namespace QvRefSystem
