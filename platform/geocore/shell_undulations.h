#pragma once

#include <optional>
#include <string>

#include "platform/geocore/shell_definition.h"
#include "platform/ui/progress_interface.h"

/// Undulations of one system on a grid in another one.
namespace QvRefSystem {

/// Which undulations are wanted where. It refers to both systems and the table, which must outlive
/// it.
struct UndulationWay {
  /// The system in whose plane the table lies.
  const ShellDefinition& from;
  /// The undulations; null for those of the system's own heights.
  const THeightTable* table = nullptr;
  /// The system in whose plane the nodes lie, and above whose ellipsoid their undulations count.
  const ShellDefinition& to;
};

/// Fills the nodes of `grid`. `next` may be null; a result other than 0 cancels. Throws
/// GeodesyError if it is cancelled or cannot be computed.
void InterpolateUndulations(const UndulationWay& way, THeightTable* grid, int (*next)());

/// A constant in place of undulations, in the height unit and rounded to a millimetre.
struct OffsetFit {
  /// The constant that minimises the sum of squared errors.
  std::string offset;
  /// The root mean square of the errors.
  std::string rms;
  /// The greatest magnitude of an error.
  std::string max;
};

/// Fits a constant on the grid of `errors`, which gets undulation less constant at each node.
/// Nothing if it is cancelled. `progress` may be null. Throws GeodesyError if it cannot be
/// computed, and std::bad_alloc.
[[nodiscard]] std::optional<OffsetFit> FitOffset(const UndulationWay& way, THeightTable* errors,
                                                 TProgressInterface* progress);

}  // namespace QvRefSystem
