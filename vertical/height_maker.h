#pragma once

#include <functional>
#include <optional>
#include <string>

#include "database/data_module.h"
#include "vertical/height_data.h"
#include "vertical/height_refusal.h"
#include "vertical/height_source.h"

namespace QvRefSystem {

/// Where heights are made for: a plane, and a grid in it.
struct HeightGround {
  /// The reference system in whose plane the grid lies; null where it is not known, so that nothing
  /// but an offset can be made.
  const TShellReferenceSystem* Plane = nullptr;
  /// The key of the linear unit in which the heights of the plane's system are.
  int UnitKey = 0;
  /// The grid, as decimal texts in the C notation.
  const TShell2DTableExtents& Grid;
};

/// What became of a making.
struct MadeHeights {
  /// Whether the work was done; an offset that is rejected is work done as well, and leaves no
  /// data.
  bool IsDone = false;
  /// The heights.
  HeightData Data;
  /// Why the grid was refused: kCellTooGreat, kUnusableGrid, or kNone where it was not.
  HeightRefusal Refusal = HeightRefusal::kNone;
  /// What else went wrong, in the words of what refused; empty where the user has cancelled.
  std::string Failure;
};

/// Whether the user accepts an offset in place of the heights.
using OffsetAcceptance = std::function<bool(HeightApproximation&)>;

/// Makes heights from their source for a ground, with a progress display. All that it is given must
/// outlive it; it changes none of it.
class HeightMaker {
 public:
  /// Works over an open database, which has the units and the user.
  HeightMaker(TdatamoduleQvRfData& data, const HeightSource& source, const HeightGround& ground)
      : data_(data), source_(source), ground_(ground) {}

  /// Makes heights of that kind, if the source can. An offset that stands in for heights is kept
  /// only if `accept`, which may be empty, takes it.
  [[nodiscard]] MadeHeights Make(std::optional<HeightKind> kind, const OffsetAcceptance& accept);

 private:
  /// What the heights are taken from: their plane, and a table in it or else the plane's own
  /// heights.
  struct Origin {
    const TShellReferenceSystem* Plane;
    const THeightTable* Heights;
    std::string Name;
  };
  [[nodiscard]] std::optional<Origin> OriginOf() const;
  [[nodiscard]] bool CanUse(const Origin& origin, const THeightTable& table);
  void InitializeGrid(THeightTable* table) const;
  void MakeTable(const Origin& origin);
  void MakeOffset(const Origin& origin, const OffsetAcceptance& accept);
  void CopyOffset();

  TdatamoduleQvRfData& data_;
  const HeightSource& source_;
  HeightGround ground_;
  MadeHeights made_;
};

}  // namespace QvRefSystem
