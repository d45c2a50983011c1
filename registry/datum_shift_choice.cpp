#include "registry/datum_shift_choice.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "registry/model_values.h"
#include "registry/null_shift.h"
#include "registry/registry_units.h"

namespace QvRefSystem {
namespace {

constexpr int kWgs84 = 6326;
constexpr int kSexagesimalDms = 9110;
constexpr int kMostOfTheArea = 50;  // percent

double Radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}

double EndOf(const EpsgBox& box) {
  return box.east < box.west ? box.east + 360 : box.east;
}

// Area on the unit sphere that two boxes have in common.
double CommonArea(const EpsgBox& a, const EpsgBox& b) {
  const double south = std::max(a.south, b.south);
  const double north = std::min(a.north, b.north);
  if (south >= north) return 0;
  double degrees = 0;
  for (const double turn : {-360.0, 0.0, 360.0}) {
    degrees += std::max(0.0, std::min(EndOf(a), EndOf(b) + turn) - std::max(a.west, b.west + turn));
  }
  return Radians(std::min(degrees, 360.0)) * (std::sin(Radians(north)) - std::sin(Radians(south)));
}

double AreaOf(const EpsgBox& box) {
  return CommonArea(box, box);
}

// The area of a datum and those of the projected systems on it.
struct DatumArea {
  std::optional<EpsgBox> own;
  std::vector<EpsgBox> systems;
};

// Part of `system` that every one of `areas` covers at least.
double CoverOf(const std::vector<EpsgBox>& areas, const EpsgBox& system) {
  double cover = 1;
  for (const EpsgBox& area : areas) {
    cover = std::min(cover, CommonArea(area, system) / AreaOf(system));
  }
  return cover;
}

// How well `areas` serve a datum: the mean of the part that they cover of its own area and of the
// part that they cover of its systems on average. The area alone would prefer the larger country,
// the number of systems the one with the finer zones. 1 where there is nothing to compare.
double CoverOf(const std::vector<EpsgBox>& areas, const DatumArea& datum) {
  if (!datum.own) return 1;
  const double own = CoverOf(areas, *datum.own);
  if (datum.systems.empty()) return own;
  double systems = 0;
  for (const EpsgBox& system : datum.systems)
    systems += CoverOf(areas, system);
  return (own + systems / static_cast<double>(datum.systems.size())) / 2;
}

// Covers are compared in whole percents: boxes say no more than that.
int Percents(double cover) {
  return static_cast<int>(std::lround(cover * 100));
}

std::optional<EpsgBox> LargestBox(const std::vector<EpsgUsage>& usages) {
  std::optional<EpsgBox> largest;
  for (const EpsgUsage& usage : usages) {
    if (usage.box && (!largest || AreaOf(*usage.box) > AreaOf(*largest))) largest = usage.box;
  }
  return largest;
}

// Longitude of a datum's prime meridian from Greenwich, or an angle of an operation, in radians.
double AngleOf(double value, int unit) {
  if (unit == kSexagesimalDms) {
    double degrees = 0;
    return SexagesimalDmsToDegrees(value, &degrees) ? Radians(degrees) : 0;
  }
  const UnitModel* model = FindRegistryUnit(unit);
  return model ? value * model->factorB / model->factorC : 0;
}

// One way to get on from a datum: an operation and what lies behind it.
struct Candidate {
  const EpsgShiftOperation* operation = nullptr;
  bool backwards = false;
  const DatumShiftChoice* rest = nullptr;
  /// For a longitude rotation: what it turns beyond the difference of the prime meridians.
  double turn = 0;
  /// Percent.
  int cover = 0;
  double accuracy = 0;
  bool timed = false;

  [[nodiscard]] auto Rank() const {
    return std::tuple(timed ? 1 : 0, operation->replacements.empty() ? 0 : 1, std::abs(turn),
                      -cover, backwards ? 1 : 0, accuracy, -operation->code);
  }
};

enum StepKinds : unsigned { kStaticSteps = 1, kTimedSteps = 2, kRotations = 4 };

unsigned StepKindOf(const EpsgShiftOperation& operation) {
  const ShiftMethodTraits traits = TraitsOfShiftMethod(operation.method);
  if (traits.method == ShiftMethod::kOther) return 0;
  if (traits.method == ShiftMethod::kLongitudeRotation) return kRotations;
  return traits.time == ShiftTime::kAlways ? kStaticSteps : kTimedSteps;
}

// What the registry says of an accuracy that nobody has determined.
constexpr double kUnknownAccuracy = 999;

std::string DescribeAccuracy(double accuracy) {
  constexpr double kDecimals = 1e6;
  if (accuracy >= kUnknownAccuracy) return "accuracy unknown";
  return "accuracy " + FormatNumber(std::round(accuracy * kDecimals) / kDecimals) + " m";
}

// "EPSG:7808 reversed at epoch 1997".
std::string DescribeStep(const Candidate& candidate) {
  const EpsgShiftOperation& operation = *candidate.operation;
  std::string text = "EPSG:" + std::to_string(operation.code);
  if (candidate.backwards) text += " reversed";
  if (candidate.timed && operation.epoch) text += " at epoch " + FormatNumber(*operation.epoch);
  return text;
}

class Chooser {
 public:
  explicit Chooser(const EpsgDataset& dataset) : dataset_(dataset) {
    NoteAreas();
    for (const auto& [code, operation] : dataset.shiftOperations) {
      steps_[operation.sourceDatum].push_back(&operation);
      steps_[operation.targetDatum].push_back(&operation);
    }
  }

  std::map<int, DatumShiftChoice> Choose() {
    SettleIdentical();
    std::set<int> realizations;
    for (const auto& [code, choice] : chosen_)
      realizations.insert(code);
    Settle(ShiftRoad::kDirect, kStaticSteps, {kWgs84});
    Settle(ShiftRoad::kRealization, kStaticSteps, realizations);
    Settle(ShiftRoad::kRotation, kRotations, Settled());
    // A chain that holds for a corner of the datum's area is worse than a longer one that holds
    // for most of it.
    for (const int leastCover : {kMostOfTheArea, 0}) {
      while (Settle(ShiftRoad::kTwoSteps, kStaticSteps | kTimedSteps, Settled(), leastCover)) {
      }
    }
    Settle(ShiftRoad::kRotation, kRotations, Settled());
    SettleRest();
    return std::move(chosen_);
  }

 private:
  void NoteAreas() {
    for (const auto& [code, system] : dataset_.geodeticSystems) {
      const std::optional<EpsgBox> box = LargestBox(system.usages);
      std::optional<EpsgBox>& own = areas_[system.datum].own;
      if (box && (!own || AreaOf(*box) > AreaOf(*own))) own = box;
    }
    for (const auto& [code, system] : dataset_.projectedSystems) {
      const auto base = dataset_.geodeticSystems.find(system.base);
      const std::optional<EpsgBox> box = LargestBox(system.usages);
      if (base == dataset_.geodeticSystems.end() || !box) continue;
      areas_[base->second.datum].systems.push_back(*box);
    }
  }

  [[nodiscard]] std::set<int> Settled() const {
    std::set<int> codes;
    for (const auto& [code, choice] : chosen_)
      codes.insert(code);
    return codes;
  }

  void SettleIdentical() {
    DatumShiftChoice same;
    same.road = ShiftRoad::kIdentical;
    same.accuracy = 0;
    same.shift = ShiftModelOf(HelmertParameters{});
    same.shift.name = "Identical with WGS 84";
    same.shift.description = "WGS 84 and its realizations: nothing to shift";
    const auto ensemble = dataset_.datums.find(kWgs84);
    if (ensemble == dataset_.datums.end()) return;
    chosen_[kWgs84] = same;
    for (const int member : ensemble->second.members) {
      if (dataset_.datums.contains(member)) chosen_[member] = same;
    }
  }

  // Chooses for all datums that have none yet and one step of those kinds to one of `targets`, with
  // `leastCover` percent of their area. False if there was none.
  bool Settle(ShiftRoad road, unsigned kinds, const std::set<int>& targets, int leastCover = 0) {
    std::map<int, DatumShiftChoice> settled;
    for (const auto& [code, datum] : dataset_.datums) {
      if (chosen_.contains(code)) continue;
      std::vector<Candidate> candidates = CandidatesOf(datum, kinds, targets);
      std::erase_if(candidates, [=](const Candidate& it) { return it.cover < leastCover; });
      const auto best = std::ranges::min_element(candidates, {}, &Candidate::Rank);
      if (best != candidates.end()) settled[code] = MakeChoice(code, road, *best);
    }
    const bool any = !settled.empty();
    chosen_.merge(settled);
    return any;
  }

  [[nodiscard]] std::vector<Candidate> CandidatesOf(const EpsgDatum& datum, unsigned kinds,
                                                    const std::set<int>& targets) const {
    std::vector<Candidate> candidates;
    const auto steps = steps_.find(datum.code);
    if (steps == steps_.end()) return candidates;
    const auto area = areas_.find(datum.code);
    const DatumArea noted = area == areas_.end() ? DatumArea{} : area->second;
    for (const EpsgShiftOperation* operation : steps->second) {
      if ((StepKindOf(*operation) & kinds) == 0) continue;
      Candidate candidate;
      candidate.operation = operation;
      candidate.backwards = operation->targetDatum == datum.code;
      const int target = candidate.backwards ? operation->sourceDatum : operation->targetDatum;
      if (target == datum.code || !targets.contains(target)) continue;
      candidate.rest = &chosen_.at(target);
      candidate.turn = TurnOf(*operation);
      candidate.timed = StepKindOf(*operation) == kTimedSteps;
      candidate.cover = Percents(CoverOf(AreasOf(candidate), noted));
      candidate.accuracy = operation->accuracy + candidate.rest->accuracy.value_or(0);
      candidates.push_back(candidate);
    }
    return candidates;
  }

  [[nodiscard]] double MeridianOf(int datumCode) const {
    const auto datum = dataset_.datums.find(datumCode);
    if (datum == dataset_.datums.end()) return 0;
    const auto meridian = dataset_.primeMeridians.find(datum->second.primeMeridian);
    if (meridian == dataset_.primeMeridians.end()) return 0;
    return AngleOf(meridian->second.longitude, meridian->second.unit);
  }

  [[nodiscard]] double TurnOf(const EpsgShiftOperation& operation) const {
    if (StepKindOf(operation) != kRotations) return 0;
    constexpr double kNothing = 1e-12;  // what is left of doubles that mean the same meridian
    const double turn = AngleOf(operation.rotation.value, operation.rotation.unit) -
                        (MeridianOf(operation.sourceDatum) - MeridianOf(operation.targetDatum));
    return std::abs(turn) < kNothing ? 0 : turn;
  }

  static std::vector<EpsgBox> AreasOf(const Candidate& candidate) {
    std::vector<EpsgBox> areas = candidate.rest->areas;
    if (const auto box = LargestBox(candidate.operation->usages)) areas.push_back(*box);
    return areas;
  }

  [[nodiscard]] DatumShiftChoice MakeChoice(int datum, ShiftRoad road,
                                            const Candidate& candidate) const {
    const EpsgShiftOperation& operation = *candidate.operation;
    const DatumShiftChoice& rest = *candidate.rest;
    DatumShiftChoice choice = rest;
    choice.road = candidate.timed || rest.road == ShiftRoad::kTimeDependent
                      ? ShiftRoad::kTimeDependent
                      : road;
    choice.accuracy = candidate.accuracy;
    choice.areas = AreasOf(candidate);
    choice.operations.insert(choice.operations.begin(),
                             candidate.backwards ? -operation.code : operation.code);
    // A datum that differs by its prime meridian alone has the very shift of the other one.
    if (StepKindOf(operation) == kRotations && candidate.turn == 0) return choice;

    HelmertParameters step = ParametersOf(operation, candidate.turn);
    if (candidate.backwards) step = Inverse(step);
    choice.parameters = Compose(step, rest.parameters);
    const bool alone = rest.road == ShiftRoad::kIdentical;
    choice.shift =
        alone && !candidate.backwards ? ShiftModelOf(operation) : ShiftModelOf(choice.parameters);
    choice.shift.name = alone ? operation.name + (candidate.backwards ? " reversed" : "")
                              : ChainName(datum, choice.operations);
    choice.steps.insert(choice.steps.begin(), DescribeStep(candidate));
    choice.shift.description = Describe(choice, operation);
    return choice;
  }

  // "NAD83(PA11) to WGS 84 (EPSG:7808, 7669)".
  [[nodiscard]] std::string ChainName(int datum, const std::vector<int>& operations) const {
    std::string name = dataset_.datums.at(datum).name;
    for (const auto& [code, system] : dataset_.geodeticSystems) {
      if (system.datum != datum) continue;
      name = system.name;
      if (system.kind == EpsgGeodeticKind::kGeographic2D) break;
    }
    name += " to WGS 84 (EPSG:";
    for (const int operation : operations) {
      name += std::to_string(std::abs(operation)) + ", ";
    }
    return name.substr(0, name.size() - 2) + ")";
  }

  // Steps, accuracy, and the area of the first step, which is the datum's own.
  static std::string Describe(const DatumShiftChoice& choice, const EpsgShiftOperation& first) {
    std::string text;
    for (const std::string& step : choice.steps)
      text += (text.empty() ? "" : ", then ") + step;
    text += "; " + DescribeAccuracy(*choice.accuracy);
    if (!first.usages.empty()) text += "; " + first.usages.front().area;
    return text;
  }

  void SettleRest() {
    for (const auto& [code, datum] : dataset_.datums) {
      if (chosen_.contains(code)) continue;
      DatumShiftChoice& choice = chosen_[code];
      choice.shift = MakeNullShift(datum.name);
      const auto other = dataset_.otherRoads.find(code);
      if (other == dataset_.otherRoads.end()) continue;
      const bool grid = other->second == EpsgOtherRoad::kGrid;
      choice.road = grid ? ShiftRoad::kNeedsGrid : ShiftRoad::kNeedsOffsets;
      choice.shift.description =
          std::string("The registry leads from this datum to others by ") +
          (grid ? "grids" : "offsets of latitude and longitude") +
          " alone, which no parameters can stand for: coordinates pass unshifted and may be off "
          "by hundreds of metres";
    }
  }

  const EpsgDataset& dataset_;
  std::map<int, std::vector<const EpsgShiftOperation*>> steps_;
  std::map<int, DatumArea> areas_;
  std::map<int, DatumShiftChoice> chosen_;
};

}  // namespace

std::map<int, DatumShiftChoice> ChooseDatumShifts(const EpsgDataset& dataset) {
  return Chooser(dataset).Choose();
}

}  // namespace QvRefSystem
