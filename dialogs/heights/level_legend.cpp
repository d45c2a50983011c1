#include "dialogs/heights/level_legend.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/widgets/qt_text.h"

namespace QvRefSystem {
namespace {
constexpr int kSteps = 4;  // between the values beside the bar
constexpr int kMostDecimals = 3;
}  // namespace

LevelLegend::LevelLegend(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::MinimumExpanding);
  setAccessibleName(QvPlatform::Translated("Heights by colour"));
}

QSize LevelLegend::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  return {metrics.horizontalAdvance(QStringLiteral("-00000.000")) + metrics.height() * 3,
          metrics.height() * (kSteps + 1) * 2};
}

QSize LevelLegend::minimumSizeHint() const {
  return {sizeHint().width(), fontMetrics().height() * (kSteps + 1)};
}

void LevelLegend::ShowRaster(const QvCommonUtils::TTableDibData<double>* raster) {
  raster_ = raster;
  update();
}

void LevelLegend::PointAt(double value) {
  value_ = value;
  update();
}

// The decimals tell a hundredth of the way between two neighbours.
int LevelLegend::DecimalsNeeded() const {
  const double step = raster_->LevelStep * 255 / kSteps;
  if (!(step > 0)) return kMostDecimals;
  return std::clamp(2 - static_cast<int>(std::floor(std::log10(step))), 0, kMostDecimals);
}

void LevelLegend::DrawBar(QPainter* painter, const QRect& bar) const {
  const QvCommonUtils::RasterPalette& palette = raster_->Palette();
  for (int y = 0; y < bar.height(); ++y) {
    const int level = 255 - y * 256 / bar.height();
    const QvCommonUtils::PaletteColour& colour =
        palette[static_cast<std::size_t>(std::clamp(level, 0, 255))];
    painter->fillRect(bar.left(), bar.top() + y, bar.width(), 1,
                      QColor(colour.Red, colour.Green, colour.Blue));
  }
  painter->setPen(QvRefSystem::LevelLegend::palette().color(QPalette::WindowText));
  painter->drawRect(bar.adjusted(-1, -1, 0, 0));
}

void LevelLegend::paintEvent(QPaintEvent* /*event*/) {
  if (raster_ == nullptr || raster_->Table == nullptr) return;
  QPainter painter(this);
  const int line = fontMetrics().height();
  // A pointer's width stays free on the left, half a line above and below.
  const QRect bar(line, line / 2 + 1, line, std::max(height() - line - 2, 1));
  DrawBar(&painter, bar);

  const double range = raster_->LevelStep * 255;
  const int decimals = DecimalsNeeded();
  const int steps = range > 0 ? kSteps : 0;
  for (int n = 0; n <= steps; ++n) {
    const double part = steps == 0 ? 0 : static_cast<double>(n) / steps;
    const int y = bar.bottom() - static_cast<int>(part * (bar.height() - 1));
    painter.drawLine(bar.right(), y, bar.right() + line / 4, y);
    painter.drawText(QRect(bar.right() + line / 2, y - line / 2, width(), line),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     QString::number(raster_->LevelBase + part * range, 'f', decimals));
  }

  const double place = range > 0 ? std::clamp((value_ - raster_->LevelBase) / range, 0.0, 1.0) : 0;
  if (std::isnan(place)) return;
  const double y = bar.bottom() - place * (bar.height() - 1) + 0.5;
  const double half = line / 3.0;
  const double tip = bar.left() - 2;
  const QPointF pointer[] = {{tip, y}, {tip - half * 1.5, y - half}, {tip - half * 1.5, y + half}};
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(palette().windowText());
  painter.setPen(Qt::NoPen);
  painter.drawPolygon(pointer, 3);
}

}  // namespace QvRefSystem
