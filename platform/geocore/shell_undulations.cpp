#include "platform/geocore/shell_undulations.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "platform/geocore/geodesy_error.h"
#include "platform/geocore/shell_transform.h"
#include "platform/geocore/table_sampler.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

// Nodes that are computed at once: enough to hide what a call costs, few enough for the caches.
constexpr std::size_t kBlock = 4096;

/// The undulations of a source at places in the plane of its system, in its height unit.
class Undulations {
 public:
  // `table` may be null: the system's own heights count then.
  Undulations(const ShellDefinition& system, const THeightTable* table) : system_(system) {
    if (table == nullptr) table = system.table.get();
    if (table != nullptr) {
      if (table->Data == nullptr) throw GeodesyError("the table of heights is empty");
      sampler_.emplace(*table, system.FullTurn());
    } else if (system.surface == HeightSurface::kEllipsoid) {
      throw GeodesyError(system.model.name + " has no height system");
    }
  }

  // `places` are in the system's own axes, with finite coordinates.
  void Take(ConstPoints<Axes> places, std::vector<double>* values) {
    values->resize(places.size());
    if (sampler_) {
      for (std::size_t i = 0; i < places.size(); ++i) {
        const TShellPoint plane = system_.ToPlane(places[i]);
        (*values)[i] = sampler_->At(plane.First, plane.Second);
      }
    } else if (system_.surface == HeightSurface::kOffset) {
      std::ranges::fill(*values, system_.offset);
    } else {
      scratch_.assign(places.begin(), places.end());
      PutUndulations(system_, Points<Axes>(scratch_));
      std::ranges::transform(scratch_, values->begin(), &TShellPoint::Third);
    }
  }

 private:
  const ShellDefinition& system_;
  std::optional<TableSampler> sampler_;
  std::vector<TShellPoint> scratch_;
};

/// Undulations of a source at the nodes of a grid in a target, in the target's height unit.
class NodeUndulations {
 public:
  NodeUndulations(const UndulationWay& way, const THeightTable& grid)
      : source_(way.from),
        target_(way.to),
        grid_(grid),
        undulations_(source_, way.table),
        ratio_(source_.heightUnit / target_.heightUnit),
        samePlane_(source_.HasSamePlane(target_)),
        sameDatum_(samePlane_ || source_.HasSameDatum(target_)) {
    if (grid.Data == nullptr) throw GeodesyError("the grid has no nodes");
    if (samePlane_) return;
    if (!source_.HasLatitude() || !target_.HasLatitude()) {
      throw GeodesyError("heights cannot move from " + source_.model.name + " to " +
                         target_.model.name);
    }
    RequireMeeting(source_, target_);
  }

  [[nodiscard]] std::size_t Blocks() const { return (NodeCount() + kBlock - 1) / kBlock; }

  // Puts a block of nodes into `result`, which has the grid.
  void Compute(std::size_t block, THeightTable* result) {
    const std::size_t first = block * kBlock;
    nodes_.resize(std::min(kBlock, NodeCount() - first));
    for (std::size_t k = 0; k < nodes_.size(); ++k)
      nodes_[k] = Node(first + k, 0);
    if (sameDatum_) {
      MoveToSource(first);
      undulations_.Take(ConstPoints<Axes>(nodes_), &values_);
      for (double& value : values_)
        value *= ratio_;
    } else {
      SettleInSpace(first);
    }
    Put(first, result);
  }

 private:
  [[nodiscard]] std::size_t NodeCount() const { return std::size_t{grid_.CountX} * grid_.CountY; }

  // A node by its number along the columns, with a height, in the axes of the target.
  [[nodiscard]] TShellPoint Node(std::size_t number, double height) const {
    const std::size_t column = number / grid_.CountY;
    const std::size_t row = number % grid_.CountY;
    const double x = grid_.OriginX + static_cast<double>(column) * grid_.CellX;
    const double y = grid_.OriginY + static_cast<double>(row) * grid_.CellY;
    return target_.FromPlane(x, y, height);
  }

  void MoveToSource(std::size_t first) {
    if (samePlane_) return;
    MovePoints({target_, Third::kEllipsoidal}, {source_, Third::kEllipsoidal},
               Points<Axes>(nodes_));
    const auto failed =
        std::ranges::find_if(nodes_, [](const TShellPoint& node) { return IsFailed(node); });
    if (failed == nodes_.end()) return;
    const TShellPoint node = Node(first + static_cast<std::size_t>(failed - nodes_.begin()), 0);
    throw GeodesyError("the node " + QvPlatform::DoubleToText(node.First) + ", " +
                       QvPlatform::DoubleToText(node.Second) + " of the grid has no place in " +
                       source_.model.name + ": " + WhyFailed(target_, source_, node));
  }

  // Where the datums differ, the height over the target's ellipsoid is sought that is a point of
  // the geoid in the source: by what the point lies off the geoid there, it is off here as well,
  // but for the tilt between the ellipsoids. From the height of a node nearby the second round is
  // good to a micrometre as a rule.
  void SettleInSpace(std::size_t first) {
    constexpr int kMostRounds = 12;
    const double enough = 1e-6 / target_.heightUnit;
    std::vector<double> heights(nodes_.size(), nearby_);
    for (int round = 0; round < kMostRounds; ++round) {
      for (std::size_t k = 0; k < nodes_.size(); ++k)
        nodes_[k] = Node(first + k, heights[k]);
      MoveToSource(first);
      undulations_.Take(ConstPoints<Axes>(nodes_), &values_);
      double furthest = 0;
      for (std::size_t k = 0; k < nodes_.size(); ++k) {
        const double off = (values_[k] - nodes_[k].Third) * ratio_;
        heights[k] += off;
        furthest = std::max(furthest, std::abs(off));
      }
      if (furthest < enough) {
        nearby_ = heights.back();
        values_ = std::move(heights);
        return;
      }
    }
    throw GeodesyError("the undulations of " + source_.model.name + " cannot be counted from " +
                       target_.model.name);
  }

  void Put(std::size_t first, THeightTable* result) {
    auto i = static_cast<std::uint32_t>(first / grid_.CountY);
    auto j = static_cast<std::uint32_t>(first % grid_.CountY);
    for (const double value : values_) {
      result->Set(i, j, value);
      if (++j == grid_.CountY) {
        j = 0;
        ++i;
      }
    }
  }

  const ShellDefinition& source_;
  const ShellDefinition& target_;
  const THeightTable& grid_;
  Undulations undulations_;
  double ratio_;
  bool samePlane_;
  bool sameDatum_;
  std::vector<TShellPoint> nodes_;
  std::vector<double> values_;
  // The undulation of the last node.
  double nearby_ = 0;
};

// Digits behind the point down to a millimetre, which is what height files keep.
int DecimalsFor(double unit) {
  return std::clamp(static_cast<int>(std::ceil(3 + std::log10(unit) - 1e-9)), 0, 12);
}

double RoundTo(double value, int decimals) {
  const double power = std::pow(10.0, decimals);
  return std::round(value * power) / power;
}

// Sum of many numbers without the loss of their small digits (Neumaier, 1974).
class ExactSum {
 public:
  void Add(double value) {
    const double sum = sum_ + value;
    lost_ += std::abs(sum_) >= std::abs(value) ? (sum_ - sum) + value : (value - sum) + sum_;
    sum_ = sum;
  }
  [[nodiscard]] double Value() const { return sum_ + lost_; }

 private:
  double sum_ = 0;
  double lost_ = 0;
};

template <typename Use>
void ForEachValue(const THeightTable& table, Use use) {
  for (std::uint32_t i = 0; i < table.CountX; ++i) {
    for (std::uint32_t j = 0; j < table.CountY; ++j)
      use(i, j, table.Data[i][j]);
  }
}

// Fills `grid`. False if the user cancels.
bool ComputeAll(const UndulationWay& way, THeightTable* grid, const TProgressInterface* progress) {
  NodeUndulations nodes(way, *grid);
  if (progress != nullptr && progress->SetMax != nullptr) {
    progress->SetMax(static_cast<int>(nodes.Blocks()));
  }
  for (std::size_t block = 0; block < nodes.Blocks(); ++block) {
    nodes.Compute(block, grid);
    if (progress != nullptr && progress->Next != nullptr && progress->Next() != 0) return false;
  }
  return true;
}

}  // namespace

void InterpolateUndulations(const UndulationWay& way, THeightTable* grid, int (*next)()) {
  NodeUndulations nodes(way, *grid);
  for (std::size_t block = 0; block < nodes.Blocks(); ++block) {
    nodes.Compute(block, grid);
    if (next != nullptr && next() != 0) throw GeodesyError("cancelled");
  }
}

std::optional<OffsetFit> FitOffset(const UndulationWay& way, THeightTable* errors,
                                   TProgressInterface* progress) {
  // The errors take the undulations' place, so that their limits are those of the errors alone.
  THeightTable undulations;
  const auto resizeLike = [](const THeightTable& grid, THeightTable* table) {
    table->Resize(grid.CountX, grid.CountY, grid.CellX, grid.CellY, grid.OriginX, grid.OriginY);
  };
  resizeLike(*errors, &undulations);
  if (!ComputeAll(way, &undulations, progress)) return std::nullopt;
  const double count = static_cast<double>(errors->CountX) * errors->CountY;
  ExactSum sum;
  ForEachValue(undulations, [&](auto, auto, double value) { sum.Add(value); });
  const int decimals = DecimalsFor(way.to.heightUnit);
  const double constant = RoundTo(sum.Value() / count, decimals);
  resizeLike(undulations, errors);
  ExactSum squares;
  ForEachValue(undulations, [&](auto i, auto j, double value) {
    const double error = value - constant;
    errors->Set(i, j, error);
    squares.Add(error * error);
  });
  const double furthest = std::max(std::abs(errors->MinValue), std::abs(errors->MaxValue));
  return OffsetFit{QvPlatform::DoubleToText(constant == 0 ? 0 : constant),
                   QvPlatform::DoubleToText(RoundTo(std::sqrt(squares.Value() / count), decimals)),
                   QvPlatform::DoubleToText(RoundTo(furthest, decimals))};
}

}  // namespace QvRefSystem
