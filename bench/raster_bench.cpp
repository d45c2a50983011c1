// The image of a geoid of 8640 x 4321 nodes, read by windows of a full screen. A frame at 60 Hz has
// 16 ms; the peer is what no reader can undercut, a copy of as many bytes.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "bench/sample_geoid.h"
#include "vertical/table_raster.h"

namespace {

using Table = QvCommonUtils::T2DTable<double>;
using Raster = QvCommonUtils::TTableDibData<double>;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

// A window that wanders over the image, at the zoom of the first argument, of every pixel that the
// second one says.
void BM_ReadWindow(benchmark::State& state) {
  Raster raster;
  raster.Setup(&SampleGeoid(), false, false, true, static_cast<int>(state.range(0)));
  const int step = static_cast<int>(state.range(1));
  QvCommonUtils::BitmapHeader header;
  std::vector<std::uint8_t> pixels;
  int place = 0;
  for (auto _ : state) {
    place = (place + 97) % 400;
    raster.Read({place, place, place + kWidth, place + kHeight}, &header, &pixels, step);
    benchmark::DoNotOptimize(pixels.data());
  }
}
BENCHMARK(BM_ReadWindow)
    ->ArgNames({"zoom", "step"})
    ->Args({1, 1})
    ->Args({1, 3})
    ->Args({2, 1})
    ->Args({8, 1})
    ->Args({25, 1})
    ->Args({25, 20})
    ->Unit(benchmark::kMillisecond);

void BM_PeerCopyOfAsManyBytes(benchmark::State& state) {
  std::vector<char> from(kWidth * kHeight, 1);
  std::vector<char> to(from.size());
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_PeerCopyOfAsManyBytes)->Unit(benchmark::kMillisecond);

}  // namespace
