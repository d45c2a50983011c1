// The window over the image of a geoid of 8640 x 4321 nodes, painted at 1080p. A frame at 60 Hz has
// 16 ms; the peer is a viewer that holds the whole image and lets the toolkit draw the part in
// sight.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <memory>

#include "bench/sample_geoid.h"
#include "dialogs/heights/big_image_scroll.h"

namespace {

using Table = QvCommonUtils::T2DTable<double>;
using QvRefSystem::HeightRaster;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

QApplication& Application() {
  static int argc = 1;
  static char name[] = "bench";
  static char* argv[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static QApplication application(argc, argv);
  return application;
}

// A view over the image at the zoom of the data of the first argument, and steps of the window's
// zoom from 1:1 of the second. It is dragged, or jumps from corner to corner, so that all of it is
// read anew.
void BM_PaintView(benchmark::State& state) {
  Application();
  HeightRaster raster;
  raster.Setup(&SampleGeoid(), false, false, true, static_cast<int>(state.range(0)));
  QvRefSystem::TMarker marker;
  QvRefSystem::TBigImageScroll view(nullptr);
  view.SetMarker(&marker);
  view.resize(kWidth, kHeight);
  view.SetDibData(&raster);
  view.StartRasterShow();
  view.show();
  view.ZoomBy(static_cast<int>(state.range(1)));
  const bool jumps = state.range(2) != 0;
  QImage screen(kWidth, kHeight, QImage::Format_RGB32);
  double place = 0;
  for (auto _ : state) {
    place = jumps ? (place > 0 ? 0 : 1) : std::fmod(place + 0.01, 1);
    view.CentreOn(QPointF(raster.Width() * place, raster.Height() * place));
    view.viewport()->render(&screen, {}, {}, {});
    benchmark::DoNotOptimize(screen.bits());
  }
}
BENCHMARK(BM_PaintView)
    ->ArgNames({"data_zoom", "steps", "jumps"})
    ->ArgsProduct({{1}, {0, -1, -2, 1, 4}, {0, 1}})
    ->Args({2, 0, 1})
    ->Args({8, 0, 1})
    ->Args({25, 0, 1})
    ->Args({25, -4, 1})
    ->Unit(benchmark::kMillisecond);

// The marker moves over a view that stands still.
void BM_PaintMarker(benchmark::State& state) {
  Application();
  HeightRaster raster;
  raster.Setup(&SampleGeoid(), false, false, true, 1);
  QvRefSystem::TMarker marker;
  QvRefSystem::TBigImageScroll view(nullptr);
  view.SetMarker(&marker);
  view.resize(kWidth, kHeight);
  view.SetDibData(&raster);
  view.StartRasterShow();
  view.show();
  QImage screen(kWidth, kHeight, QImage::Format_RGB32);
  int place = 0;
  for (auto _ : state) {
    place = (place + 7) % 1000;
    marker.MoveTo(QPointF(place, place));
    view.viewport()->render(&screen, {}, {}, {});
    benchmark::DoNotOptimize(screen.bits());
  }
}
BENCHMARK(BM_PaintMarker)->Unit(benchmark::kMillisecond);

void BM_PeerPaintOfAHeldImage(benchmark::State& state) {
  Application();
  HeightRaster raster;
  raster.Setup(&SampleGeoid(), false, false, true, 1);
  QImage whole(raster.Width(), raster.Height(), QImage::Format_Indexed8);
  QList<QRgb> colours;
  for (const auto& colour : raster.Palette())
    colours << qRgb(colour.Red, colour.Green, colour.Blue);
  whole.setColorTable(colours);
  for (int y = 0; y < whole.height(); ++y)
    raster.ReadPixels({0, y}, {1, 1}, {whole.width(), 1}, whole.scanLine(y));
  const int reduced = static_cast<int>(state.range(0));
  QImage screen(kWidth, kHeight, QImage::Format_RGB32);
  int place = 0;
  for (auto _ : state) {
    place = (place + 97) % 400;
    QPainter painter(&screen);
    painter.drawImage(QRect(0, 0, kWidth, kHeight), whole,
                      QRect(place, place, kWidth * reduced, kHeight * reduced));
    benchmark::DoNotOptimize(screen.bits());
  }
}
BENCHMARK(BM_PeerPaintOfAHeldImage)
    ->ArgName("reduced")
    ->Arg(1)
    ->Arg(3)
    ->Unit(benchmark::kMillisecond);

}  // namespace
