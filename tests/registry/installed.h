#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "registry/epsg_models.h"
#include "registry/proj_database.h"

namespace QvRefSystem {

/// The data set of the installed PROJ.
inline const EpsgDataset& Dataset() {
  std::string error;
  const EpsgDataset* dataset = InstalledEpsgDataset(&error);
  if (!dataset) throw std::runtime_error(error);
  return *dataset;
}

/// The registry's model of a live system.
inline SystemModel Epsg(int code) {
  SystemModel model;
  std::string error;
  EXPECT_TRUE(ModelFromEpsg(code, &model, &error)) << error;
  return model;
}

}  // namespace QvRefSystem
