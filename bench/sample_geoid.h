#pragma once

#include <cmath>
#include <memory>

#include "platform/data/height_table.h"

/// A table as large as the finest geoids of the whole Earth: 8640 x 4321 nodes, made once.
inline const QvCommonUtils::T2DTable<double>& SampleGeoid() {
  static const std::unique_ptr<QvCommonUtils::T2DTable<double>> table = [] {
    auto made = std::make_unique<QvCommonUtils::T2DTable<double>>();
    made->Resize(8640, 4321, 1.0 / 24, 1.0 / 24, 0, -90);
    for (std::uint32_t i = 0; i < made->CountX; ++i) {
      for (std::uint32_t j = 0; j < made->CountY; ++j) {
        made->Set(i, j, 60 * std::sin(i * 0.003) * std::cos(j * 0.005) + std::sin(i * 0.7 + j));
      }
    }
    return made;
  }();
  return *table;
}
