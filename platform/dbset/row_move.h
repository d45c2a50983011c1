#pragma once

namespace QvPlatform::detail {

/// The places of a row in the order before and after a change; -1 where it does not show.
struct RowMove {
  /// The place before; -1 also for a new row.
  int from = -1;
  /// The place after; -1 also for a row that is gone.
  int to = -1;
};

}  // namespace QvPlatform::detail
