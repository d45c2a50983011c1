#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/geocore/system_model.h"
#include "registry/helmert.h"
#include "registry/proj_database.h"

/// One shift to WGS 84 for each datum of the registry.
namespace QvRefSystem {

/// How a datum's shift was come by, from the best road to the last.
enum class ShiftRoad {
  /// WGS 84 itself and its realizations: nothing to shift.
  kIdentical,
  /// One operation to WGS 84 by three or seven parameters.
  kDirect,
  /// The same to a realization of WGS 84.
  kRealization,
  /// The shift of the datum from which it differs by its prime meridian (or by a turn in
  /// longitude).
  kRotation,
  /// One operation to a datum with a shift of its own, joined to that one.
  kTwoSteps,
  /// The same with parameters that change with time, taken at the epoch of their publication.
  kTimeDependent,
  // The rest have a null shift.
  /// Only an operation by a grid leads to WGS 84.
  kNeedsGrid,
  /// Only an operation by offsets of coordinates leads there.
  kNeedsOffsets,
  /// No operation leads there.
  kNone
};

/// The shift of a datum to WGS 84, with the road on which it was found.
struct DatumShiftChoice {
  /// The roads from kNeedsGrid on have a null shift.
  ShiftRoad road = ShiftRoad::kNone;
  /// The shift as a record holds it: of one operation in that one's own units and digits.
  DatumShiftModel shift;
  /// EPSG codes of the operations in order, negative where one is applied backwards.
  std::vector<int> operations;
  /// The same in words: direction and epoch of each.
  std::vector<std::string> steps;
  /// The same shift as numbers.
  HelmertParameters parameters;
  /// Metres, the steps' accuracies added up; nothing for a null shift of the last roads.
  std::optional<double> accuracy;
  /// Where all steps hold, as far as boxes can tell; empty for everywhere.
  std::vector<EpsgBox> areas;
};

/// The choice for every live datum, by its code.
///
/// The best road that a datum has is taken; on it an operation that nothing has replaced before one
/// that is superseded, then the one that covers most of the areas of the datum's systems, then the
/// most accurate one, then the one with the highest code. Steps with parameters that change with
/// time come last, but before chains that hold for less than half of the area.
[[nodiscard]] std::map<int, DatumShiftChoice> ChooseDatumShifts(const EpsgDataset& dataset);

}  // namespace QvRefSystem
