#pragma once

#include <QWidget>

#include "vertical/table_raster.h"

namespace QvRefSystem {

/// What the colours of a table's image mean: the palette as a bar, the greatest value on top, with
/// values beside it and a pointer at one of them.
class LevelLegend : public QWidget {
 public:
  /// Makes a legend of no raster.
  explicit LevelLegend(QWidget* parent);

  /// Shows the colours of a raster, or with null nothing. The raster must stay alive until another
  /// one is shown.
  void ShowRaster(const QvCommonUtils::TTableDibData<double>* raster);
  /// Puts the pointer at a height, in the unit of the table; one outside the raster's range stands
  /// at the end of the bar, and with NaN there is no pointer.
  void PointAt(double value);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] int DecimalsNeeded() const;
  void DrawBar(QPainter* painter, const QRect& bar) const;

  const QvCommonUtils::TTableDibData<double>* raster_ = nullptr;
  double value_ = 0;
};

}  // namespace QvRefSystem
