#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include "platform/data/grid_extents.h"
#include "platform/data/string_tree.h"
#include "platform/geocore/geodesy_error.h"
#include "platform/geocore/shell_coords.h"
#include "platform/geocore/shell_point.h"
#include "platform/ui/progress_interface.h"

namespace QvRefSystem {

using QvCommonUtils::TStringTree;

struct ShellDefinition;

/// A reference system that computes: what a tree describes, made ready for coordinates.
///
/// All systems with a place on the Earth meet in one geocentric frame, which each reaches by the
/// shift of its own datum; a system on an ellipsoid alone counts as unshifted. Two systems whose
/// datums agree in ellipsoid and shift meet already at latitude and longitude. Local and local
/// Cartesian systems meet only systems that are the same as they. docs/geodesy.md tells the rest.
///
/// A horizon (topocentric system) has the axes east, north, up, or north, east, up if it is
/// left-handed ("swap"); the azimuth of its record, in the primary's angular unit, turns the
/// northward axis clockwise from north. Its origin is in the primary's axes and units.
///
/// Grids lie in the plane of a system: X is its east-west axis and Y its north-south one, whatever
/// their order, in the system's own sign and unit. Undulations are in its height unit, counted
/// from its ellipsoid. Extents, cells and offsets cross as decimal texts in C notation, since they
/// are stored that way.
///
/// An object may be used by one thread at a time; copies are independent. What is passed to a
/// function by pointer or reference is used until it returns, and no longer.
class TShellReferenceSystem {
 public:
  /// A system of numbers that are ready, which must not be null; copies share them.
  explicit TShellReferenceSystem(std::shared_ptr<const ShellDefinition> definition);
  virtual ~TShellReferenceSystem();
  TShellReferenceSystem& operator=(const TShellReferenceSystem&) = delete;

  /// The name in the tree; it lives as long as the system or a copy.
  [[nodiscard]] const std::string& Name() const;
  /// The description in the tree, for as long.
  [[nodiscard]] const std::string& Description() const;
  /// Abbreviation of axis 0, 1 or 2, for as long.
  [[nodiscard]] const std::string& AxisName(int axis) const;
  /// Whether heights count from a table, an offset or a built-in geoid instead of the ellipsoid.
  [[nodiscard]] bool HasHeightSystem() const;

  /// The point of set_core_coords in the system's notation: degrees, minutes and seconds with the
  /// letter of the hemisphere for latitude and longitude, plain decimals for all else.
  virtual void GetCoords(TShellCoords* coords) const;
  /// A point by its own axes in that notation.
  void WriteNotation(const TShellPoint& point, TShellCoords* coords) const;
  /// Whether axis 0 is the one to the north or south, and axis 1 the one to the west or east.
  [[nodiscard]] virtual bool IsFirstAxisNorth() const;
  /// Whether both define the same plane: everything that changes a plane coordinate agrees, and
  /// nothing is asked of names, descriptions and heights. False for null.
  [[nodiscard]] virtual bool IsSameAs(const TShellReferenceSystem* system) const;

  /// A system that computes the same; the point of set_core_coords is copied as well.
  [[nodiscard]] std::unique_ptr<TShellReferenceSystem> CreateCopy() const;
  /// Whether heights stored for one serve the other: same plane and same unit of heights.
  [[nodiscard]] bool operator^(const TShellReferenceSystem& other) const;
  /// A point of the plane as tables have it: x on the east-west axis, y on the north-south one.
  void set_core_coords(const double& x, const double& y, const double& h);

  /// Moves points from this system into `target`, in place. Heights move as well: over the height
  /// system of each, or over its ellipsoid. A point that cannot be computed (no finite number,
  /// a latitude beyond a pole, a longitude beyond two turns, no image) becomes
  /// FailedPoint; the result is the number of those. Throws GeodesyError if the two systems cannot
  /// meet at all.
  std::size_t Transform(const TShellReferenceSystem& target, std::span<TShellPoint> points) const;
  /// Why a point of this system came back as failed: PROJ's or our own words. Empty for a point
  /// that can be computed. Throws as Transform does.
  [[nodiscard]] std::string ExplainFailure(const TShellReferenceSystem& target,
                                           const TShellPoint& point) const;

  /// Sizes an empty table of zeros for the grid: counts by floor(span / cell + 0.5) + 1, cells and
  /// the south-west node as given. A text that is no number, a cell not above 0, limits in the
  /// wrong order or more nodes than can be held leave the table empty.
  void InitializeHeightTableGrid(const std::string& north, const std::string& south,
                                 const std::string& east, const std::string& west,
                                 const std::string& cellNS, const std::string& cellEW,
                                 THeightTable* table) const;
  /// The grid of `target` that covers the ground of a grid of this system with cells that keep its
  /// resolution, limits rounded outward and cells downward to readable numbers; in the same plane
  /// the grid itself. Longitudes keep to the turn of the source and may go on across the seam (170
  /// to 190). False, with `result` unchanged, if the texts are no grid or the ground has no image.
  [[nodiscard]] bool RecalculateTableGrid(const TShell2DTableExtents* source,
                                          const TShellReferenceSystem* target,
                                          TShell2DTableExtents* result) const;
  /// The same for the grid of `heights`, which lies in the plane of this system, as six texts. They
  /// are unchanged if the result is false, as it is for a table that is null or empty.
  [[nodiscard]] bool RecalculateHeightTableGrid(const THeightTable* heights,
                                                const TShellReferenceSystem* target,
                                                std::string* north, std::string* south,
                                                std::string* east, std::string* west,
                                                std::string* cellNS, std::string* cellEW) const;
  /// The same for the grid of this system's own height system; false if it has none with a grid of
  /// its own or known limits.
  [[nodiscard]] bool RecalculateHeightTableGrid(const TShellReferenceSystem* target,
                                                std::string* north, std::string* south,
                                                std::string* east, std::string* west,
                                                std::string* cellNS, std::string* cellEW) const;

  /// Fills the grid of `result`, which lies in `target`, with the undulations of `source`, a table
  /// in the plane of this system. Points of the geoid
  /// move in three dimensions, so that a datum shift changes the undulation; a node whose place in
  /// the source lies outside takes the nearest edge. `next` may be null; a result other than 0
  /// cancels. Throws GeodesyError if it is cancelled or cannot be computed.
  void InterpolateHeights(const THeightTable* source, const TShellReferenceSystem* target,
                          THeightTable* result, int (*next)()) const;
  /// The same with the undulations of this system's own height system; GeodesyError tells that it
  /// has none.
  void InterpolateHeights(const TShellReferenceSystem* target, THeightTable* result,
                          int (*next)()) const;

  /// The constant that, in place of the undulations of `source` on the grid of `errors` in
  /// `target`, minimises the sum of squared errors; with it their root mean square and greatest
  /// magnitude, in the height unit of `target` and rounded to a millimetre, and in `errors`
  /// undulation less constant at each node. False, with the three texts unchanged, if it is
  /// cancelled or cannot be computed. `progress` may be null.
  [[nodiscard]] bool ApproximateHeights(const THeightTable* source,
                                        const TShellReferenceSystem* target, std::string* offset,
                                        std::string* rms, std::string* max, THeightTable* errors,
                                        TProgressInterface* progress) const;
  /// The same with the undulations of this system's own height system; false if it has none.
  [[nodiscard]] bool ApproximateHeights(const TShellReferenceSystem* target, std::string* offset,
                                        std::string* rms, std::string* max, THeightTable* errors,
                                        TProgressInterface* progress) const;

  /// What the system computes with, for as long as the system or a copy lives.
  [[nodiscard]] const ShellDefinition& Core() const { return *definition_; }

 protected:
  /// As CreateCopy, for derived classes.
  TShellReferenceSystem(const TShellReferenceSystem& other);

 private:
  std::shared_ptr<const ShellDefinition> definition_;
  double coords_[3] = {0, 0, 0};
};

/// The system of a tree that stands in the subtree of a reference system. Null for a tree that is
/// no whole system, and for one that cannot be computed; `error`, if given, then says why.
/// `progress` (which may be null) shows the reading of a height table.
[[nodiscard]] std::unique_ptr<TShellReferenceSystem> CreateShellReferenceSystem(
    TStringTree* tree, TProgressInterface* progress, std::string* error = nullptr);

}  // namespace QvRefSystem
