#pragma once

#include "platform/dbset/row.h"

namespace QvPlatform::detail {

/// The order of a table: by the sort field, equals in the order of their making.
class RowOrder {
 public:
  /// The order of making.
  RowOrder() = default;
  /// By Row::sortText, by Row::sortNumber, or by neither; never by both.
  RowOrder(bool byText, bool byNumber, bool descending)
      : byText_(byText), byNumber_(byNumber), descending_(descending) {}

  /// Whether `a` stands ahead of `b`. Equals in everything but their identity go by that, also in
  /// a descending order.
  [[nodiscard]] bool Before(const Row& a, const Row& b) const {
    if (byText_) {
      const int order = a.sortText.compare(b.sortText);
      if (order != 0) return (order < 0) != descending_;
    } else if (byNumber_ && a.sortNumber != b.sortNumber) {
      return (a.sortNumber < b.sortNumber) != descending_;
    }
    return a.id < b.id;
  }

 private:
  bool byText_ = false;
  bool byNumber_ = false;
  bool descending_ = false;
};

}  // namespace QvPlatform::detail
