#include "platform/geocore/ground_cover.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "platform/geocore/readable_step.h"

namespace QvRefSystem {
namespace {

struct Range {
  double least = std::numeric_limits<double>::infinity();
  double greatest = -std::numeric_limits<double>::infinity();

  void Add(double value) {
    least = std::min(least, value);
    greatest = std::max(greatest, value);
  }
  [[nodiscard]] bool IsEmpty() const { return !(least <= greatest); }
};

// The copy of a longitude that lies nearest to another one.
double NearestTurn(double longitude, double to, double fullCircle) {
  return fullCircle == 0 ? longitude
                         : longitude + fullCircle * std::round((to - longitude) / fullCircle);
}

/// The outline of the ground, walked once around: south, east, north and west edge, each a unit of
/// the parameter.
class Outline {
 public:
  explicit Outline(const GridExtents& source) : source_(source) {}

  [[nodiscard]] TShellPoint At(double t) const {
    const int edge = std::min(3, static_cast<int>(t));
    const double s = t - edge;
    const double width = source_.East - source_.West;
    const double height = source_.North - source_.South;
    switch (edge) {
      case 0:
        return {source_.West + s * width, source_.South, 0};
      case 1:
        return {source_.East, source_.South + s * height, 0};
      case 2:
        return {source_.East - s * width, source_.North, 0};
      default:
        return {source_.West, source_.North - s * height, 0};
    }
  }

  // A place for each cell of the source, but no fewer than 64 and no more than 2048 an edge.
  [[nodiscard]] std::vector<double> Parameters() const {
    const double across = (source_.East - source_.West) / source_.CellEastWest;
    const double along = (source_.North - source_.South) / source_.CellNorthSouth;
    std::vector<double> parameters;
    for (int edge = 0; edge < 4; ++edge) {
      const double cells = std::clamp(std::ceil(edge % 2 == 0 ? across : along), 64.0, 2048.0);
      for (double i = 0; i < cells; ++i)
        parameters.push_back(edge + i / cells);
    }
    parameters.push_back(4);
    return parameters;
  }

 private:
  GridExtents source_;
};

/// The images of an outline's places and the ranges of their coordinates.
class OutlineImage {
 public:
  OutlineImage(const GridExtents& source, const GroundMap& map) : outline_(source), map_(map) {
    parameters_ = outline_.Parameters();
    for (const double t : parameters_)
      images_.push_back(outline_.At(t));
    map_.forward(Points<TablePlane>(images_));
    Unroll();
    for (const TShellPoint& image : images_) {
      if (IsFailed(image)) continue;
      if (!NearPole(image)) x_.Add(image.First);
      y_.Add(image.Second);
    }
    if (y_.IsEmpty()) return;
    if (x_.IsEmpty()) x_.Add(0);
    Sharpen();
  }

  /// X is continuous along the outline: longitudes may lie beyond the half circle.
  [[nodiscard]] const Range& X() const { return x_; }
  [[nodiscard]] const Range& Y() const { return y_; }

 private:
  // Two kilometres from a pole a longitude tells no place, but leaps with every datum shift.
  [[nodiscard]] bool NearPole(const TShellPoint& image) const {
    return map_.target.IsGeographic() &&
           map_.target.Pole() - std::abs(image.Second) < map_.target.fullCircle * (0.02 / 360);
  }

  // Longitudes follow those of the source, or else the place before: ahead of the seam and behind
  // it they go on without a leap.
  void Unroll() {
    const bool followsSource = map_.source.IsGeographic() && map_.target.IsGeographic();
    const double ratio = followsSource ? map_.target.fullCircle / map_.source.fullCircle : 0;
    bool first = true;
    double last = 0;
    for (std::size_t i = 0; i < images_.size(); ++i) {
      TShellPoint& image = images_[i];
      if (IsFailed(image) || NearPole(image)) continue;
      const double wanted = ratio * outline_.At(parameters_[i]).First;
      if (!first) image.First = NearestTurn(image.First, wanted + last, map_.target.fullCircle);
      first = false;
      last = image.First - wanted;
    }
  }

  // An extreme between two places of an edge: the place next to it, and which coordinate it is of.
  struct Peak {
    double from;
    double to;
    double image;
    bool ofX;
    double sign;
  };

  [[nodiscard]] double Coordinate(std::size_t i, bool ofX) const {
    return ofX ? images_[i].First : images_[i].Second;
  }

  [[nodiscard]] bool Usable(std::size_t i, bool ofX) const {
    return !IsFailed(images_[i]) && !(ofX && NearPole(images_[i]));
  }

  // Places that are higher than both neighbours, where the curve between them could rise above the
  // greatest place: not by more than it falls to the neighbours.
  void GatherPeaks(bool ofX, double sign, std::vector<Peak>* peaks) const {
    const double best = sign > 0 ? (ofX ? x_ : y_).greatest : -(ofX ? x_ : y_).least;
    for (std::size_t i = 1; i + 1 < images_.size(); ++i) {
      if (!Usable(i - 1, ofX) || !Usable(i, ofX) || !Usable(i + 1, ofX)) continue;
      const double here = sign * Coordinate(i, ofX);
      const double before = sign * Coordinate(i - 1, ofX);
      const double after = sign * Coordinate(i + 1, ofX);
      const double fall = std::max(here - before, here - after);
      if (here < before || here < after || here + fall < best) continue;
      peaks->push_back({parameters_[i - 1], parameters_[i + 1], images_[i].First, ofX, sign});
    }
  }

  // Golden section over all peaks at once. The corners of the outline are places themselves.
  void Sharpen() {
    constexpr double kGolden = 0.6180339887498949;
    constexpr int kRounds = 32;
    std::vector<Peak> peaks;
    for (const bool ofX : {true, false}) {
      GatherPeaks(ofX, 1, &peaks);
      GatherPeaks(ofX, -1, &peaks);
    }
    if (peaks.empty()) return;
    std::vector<TShellPoint> inner(2 * peaks.size());
    for (int round = 0; round < kRounds; ++round) {
      for (std::size_t i = 0; i < peaks.size(); ++i) {
        const double width = peaks[i].to - peaks[i].from;
        inner[2 * i] = outline_.At(peaks[i].to - kGolden * width);
        inner[2 * i + 1] = outline_.At(peaks[i].from + kGolden * width);
      }
      map_.forward(Points<TablePlane>(inner));
      for (std::size_t i = 0; i < peaks.size(); ++i)
        Narrow(inner[2 * i], inner[2 * i + 1], &peaks[i]);
    }
  }

  void Narrow(const TShellPoint& left, const TShellPoint& right, Peak* peak) {
    constexpr double kGolden = 0.6180339887498949;
    const double a = Take(left, *peak);
    const double b = Take(right, *peak);
    const double width = peak->to - peak->from;
    if (a > b) {
      peak->to = peak->from + kGolden * width;
    } else {
      peak->from = peak->to - kGolden * width;
    }
  }

  double Take(const TShellPoint& image, const Peak& peak) {
    if (IsFailed(image)) return -std::numeric_limits<double>::infinity();
    const double value =
        peak.ofX ? NearestTurn(image.First, peak.image, map_.target.fullCircle) : image.Second;
    (peak.ofX ? x_ : y_).Add(value);
    return peak.sign * value;
  }

  Outline outline_;
  const GroundMap& map_;
  std::vector<double> parameters_;
  std::vector<TShellPoint> images_;
  Range x_;
  Range y_;
};

// The places of a lattice over the ground, both edges among them.
constexpr int kLattice = 33;

double LatticePlace(double from, double to, int i) {
  return from + (to - from) * i / (kLattice - 1);
}

/// How a cell of the source lies in the target plane, at places all over the ground.
class CellImages {
 public:
  CellImages(const GridExtents& source, const GroundMap& map) : source_(source), map_(map) {
    Measure(true);
    if (steps_.empty()) Measure(false);
  }

  /// The greatest target cells (X, Y) that are nowhere longer than a cell of the source; nothing if
  /// no place has an image.
  [[nodiscard]] std::optional<std::array<double, 2>> Cells() const {
    if (steps_.empty()) return std::nullopt;
    const double slimmest = Slimmest();
    std::array<double, 2> cells{std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::infinity()};
    for (Step step : steps_) {
      if (slimmest > 0) step.Widen(slimmest);
      const double area = std::abs(step.eastX * step.northY - step.northX * step.eastY);
      // Steps of one target unit, in cells of the source.
      const double x = std::hypot(step.northY, step.eastY) / area;
      const double y = std::hypot(step.northX, step.eastX) / area;
      if (!(x > 0) || !std::isfinite(x) || !(y > 0) || !std::isfinite(y)) continue;
      cells[0] = std::min(cells[0], 1 / x);
      cells[1] = std::min(cells[1], 1 / y);
    }
    if (!std::isfinite(cells[0]) || !std::isfinite(cells[1])) return std::nullopt;
    return cells;
  }

 private:
  // What a step of one source cell to the east, and one to the north, is in the target plane.
  struct Step {
    double eastX, eastY;
    double northX, northY;

    [[nodiscard]] double Slimness() const {
      const double east = std::hypot(eastX, eastY);
      const double north = std::hypot(northX, northY);
      return std::min(east, north) / std::max(east, north);
    }
    void Widen(double slimmest) {
      const double east = std::hypot(eastX, eastY);
      const double north = std::hypot(northX, northY);
      if (east < slimmest * north && east > 0) {
        eastX *= slimmest * north / east;
        eastY *= slimmest * north / east;
      } else if (north < slimmest * east && north > 0) {
        northX *= slimmest * east / north;
        northY *= slimmest * east / north;
      }
    }
  };

  // Degrees of longitude and latitude are no lengths to compare; there no cell grows endless.
  [[nodiscard]] double Slimmest() const {
    if (map_.target.IsGeographic()) return 0;
    double widest = 0;
    for (const Step& step : steps_)
      widest = std::max(widest, step.Slimness());
    return widest / 4;
  }

  // Around a pole a datum shift turns longitudes and stretches their steps; five degrees away, by
  // no more than a thousandth.
  [[nodiscard]] static bool AtPole(const TShellPoint& place, const GridPlane& plane) {
    return plane.IsGeographic() &&
           std::abs(place.Second) > plane.Pole() - plane.fullCircle * (5.0 / 360);
  }

  void Measure(bool awayFromPoles) {
    // Central differences over a thousandth of a cell each way, which stay within the ground.
    const double dx = std::min(source_.CellEastWest * 1e-3, (source_.East - source_.West) / 2);
    const double dy = std::min(source_.CellNorthSouth * 1e-3, (source_.North - source_.South) / 2);
    const double stepX = dx > 0 ? dx : source_.CellEastWest * 1e-3;
    const double stepY = dy > 0 ? dy : source_.CellNorthSouth * 1e-3;
    for (int i = 0; i < kLattice; ++i) {
      for (int j = 0; j < kLattice; ++j) {
        const double x = LatticePlace(source_.West + dx, source_.East - dx, i);
        const double y = LatticePlace(source_.South + dy, source_.North - dy, j);
        std::array<TShellPoint, 4> around{
            {{x - stepX, y, 0}, {x + stepX, y, 0}, {x, y - stepY, 0}, {x, y + stepY, 0}}};
        if (awayFromPoles && AtPole({x, y, 0}, map_.source)) continue;
        map_.forward(Points<TablePlane>(around));
        if (std::ranges::any_of(around, [](const auto& place) { return IsFailed(place); }))
          continue;
        if (awayFromPoles && AtPole(around[0], map_.target)) continue;
        steps_.push_back(
            StepOf(around, 2 * stepX / source_.CellEastWest, 2 * stepY / source_.CellNorthSouth));
      }
    }
  }

  [[nodiscard]] Step StepOf(const std::array<TShellPoint, 4>& around, double cellsEast,
                            double cellsNorth) const {
    const double circle = map_.target.fullCircle;
    return {(NearestTurn(around[1].First, around[0].First, circle) - around[0].First) / cellsEast,
            (around[1].Second - around[0].Second) / cellsEast,
            (NearestTurn(around[3].First, around[2].First, circle) - around[2].First) / cellsNorth,
            (around[3].Second - around[2].Second) / cellsNorth};
  }

  GridExtents source_;
  const GroundMap& map_;
  std::vector<Step> steps_;
};

/// Whether the pole of the target plane lies on the ground of the source.
bool PoleIsOnGround(const GridExtents& source, const GroundMap& map, double side) {
  TShellPoint pole{0, side * map.target.Pole(), 0};
  map.backward(Points<TablePlane>(&pole));
  if (IsFailed(pole)) return false;
  const double slackX = 1e-9 * (std::abs(source.West) + std::abs(source.East));
  const double slackY = 1e-9 * (std::abs(source.South) + std::abs(source.North));
  const double x = NearestTurn(pole.First, (source.West + source.East) / 2, map.source.fullCircle);
  return x >= source.West - slackX && x <= source.East + slackX &&
         pole.Second >= source.South - slackY && pole.Second <= source.North + slackY;
}

// Images of places inside, for planes that break the ground apart or have no image of its edge.
void AddInside(const GridExtents& source, const GroundMap& map, Range* x, Range* y) {
  std::vector<TShellPoint> places;
  for (int i = 0; i < kLattice; ++i) {
    for (int j = 0; j < kLattice; ++j) {
      places.push_back({LatticePlace(source.West, source.East, i),
                        LatticePlace(source.South, source.North, j), 0});
    }
  }
  map.forward(Points<TablePlane>(places));
  for (const TShellPoint& place : places) {
    if (IsFailed(place)) continue;
    x->Add(place.First);
    y->Add(place.Second);
  }
}

/// Rounds ranges outward to the cells.
class Rounding {
 public:
  Rounding(const GridExtents& source, const GroundMap& map) : source_(source), map_(map) {}

  void PutY(Range y, double cell, GridExtents* result) const {
    ReadableStep step = ReadableStep::AtMost(cell);
    const double pole = map_.target.Pole();
    if (pole != 0 && (step.Multiple(step.CountBelow(y.least)) < -pole ||
                      step.Multiple(step.CountAbove(y.greatest)) > pole)) {
      step = ReadableStep::AtMost(cell, pole);
    }
    result->CellNorthSouth = step.Value();
    result->South = step.Multiple(step.CountBelow(y.least));
    result->North = step.Multiple(step.CountAbove(y.greatest));
    if (pole == 0) return;
    result->South = std::max(result->South, -pole);
    result->North = std::min(result->North, pole);
  }

  void PutX(Range x, double cell, bool allAround, GridExtents* result) const {
    const double circle = map_.target.fullCircle;
    ReadableStep step = ReadableStep::AtMost(cell);
    double west = 0;
    double east = 0;
    if (circle != 0) {
      Turn(&x);
      west = step.CountBelow(x.least);
      east = step.CountAbove(x.greatest);
      allAround = allAround || step.Multiple(east) - step.Multiple(west) > circle;
    }
    if (allAround) {
      step = ReadableStep::AtMost(cell, circle);
      west = std::round(WestOfAll(x) / step.Value());
      east = west + std::round(circle / step.Value());
    } else {
      west = step.CountBelow(x.least);
      east = step.CountAbove(x.greatest);
    }
    result->CellEastWest = step.Value();
    result->West = step.Multiple(west);
    result->East = step.Multiple(east);
  }

 private:
  // Where source and target write longitudes alike, the target keeps to the turn of the source,
  // which may go on across the seam; otherwise the middle lies in the target's own turn.
  [[nodiscard]] bool KeepsTurn() const {
    return map_.source.IsGeographic() && map_.source.positive == map_.target.positive;
  }

  // A longitude of the source in the unit of the target.
  [[nodiscard]] double InTarget(double longitude) const {
    return longitude * map_.target.fullCircle / map_.source.fullCircle;
  }

  void Turn(Range* x) const {
    const double circle = map_.target.fullCircle;
    const double middle = (x->least + x->greatest) / 2;
    const double wanted = KeepsTurn() ? InTarget((source_.West + source_.East) / 2)
                                      : map_.target.FirstLongitude() + circle / 2;
    const double turn = NearestTurn(middle, wanted, circle) - middle;
    x->least += turn;
    x->greatest += turn;
  }

  [[nodiscard]] double WestOfAll(const Range& x) const {
    const bool wholeSource =
        KeepsTurn() &&
        source_.East - source_.West + 1.5 * source_.CellEastWest > map_.source.fullCircle;
    if (!wholeSource) return map_.target.FirstLongitude();
    // Another prime meridian starts elsewhere; a datum shift alone is no reason to.
    const double wanted = InTarget(source_.West);
    return std::abs(x.least - wanted) < InTarget(source_.CellEastWest) ? wanted : x.least;
  }

  GridExtents source_;
  const GroundMap& map_;
};

}  // namespace

std::optional<GridExtents> CoverGround(const GridExtents& source, const GroundMap& map) {
  const OutlineImage outline(source, map);
  Range x = outline.X();
  Range y = outline.Y();
  bool allAround = false;
  if (map.target.IsGeographic()) {
    for (const double side : {-1.0, 1.0}) {
      if (!PoleIsOnGround(source, map, side)) continue;
      allAround = true;
      y.Add(side * map.target.Pole());
    }
  } else {
    AddInside(source, map, &x, &y);
  }
  const auto cells = CellImages(source, map).Cells();
  if (y.IsEmpty() || !cells) return std::nullopt;
  const Rounding rounding(source, map);
  GridExtents result;
  rounding.PutX(x, (*cells)[0], allAround, &result);
  rounding.PutY(y, (*cells)[1], &result);
  return result;
}

}  // namespace QvRefSystem
