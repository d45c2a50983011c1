#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dbset/data_set.h"
#include "processors/object_descriptor.h"

namespace QvRefSystem {

/// The field numbers of one table's columns. They are found once: a search by name for each field
/// of each record would cost more than the rest of an export.
class TableColumns {
 public:
  /// A file may hold its fields in an order of its own, and may lack some.
  TableColumns(QvPlatform::TQvDataSet& dataSet, const ObjectDescriptor& descriptor);

  /// Finds the columns of these members ahead of their use. The items must outlive this object.
  void Bind(std::span<const TreeItem> items);
  /// Throws DataSetError for a column that the table lacks.
  [[nodiscard]] int Of(std::string_view name) const;
  /// The column of a member; fast for those that were bound.
  [[nodiscard]] int Of(const TreeItem& item) const {
    const std::size_t place = PlaceIn(bound_[last_], item);
    return place != kNowhere ? bound_[last_].numbers[place] : Search(item);
  }
  /// The columns of a whole list that was bound, item by item, -1 for a member without one; empty
  /// for a list that was not.
  [[nodiscard]] std::span<const int> OfAll(std::span<const TreeItem> items) const {
    for (const Bound& bound : bound_) {
      if (bound.items.data() == items.data()) return bound.numbers;
    }
    return {};
  }

 private:
  struct Bound {
    std::span<const TreeItem> items;
    std::vector<int> numbers;
  };
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
  static std::size_t PlaceIn(const Bound& bound, const TreeItem& item) {
    const std::less<> before;
    const bool inside = !before(&item, bound.items.data()) &&
                        before(&item, bound.items.data() + bound.items.size());
    return inside ? static_cast<std::size_t>(&item - bound.items.data()) : kNowhere;
  }

  [[nodiscard]] int Search(const TreeItem& item) const;

  std::string_view typeName_;
  std::vector<std::pair<std::string_view, int>> columns_;
  std::vector<Bound> bound_;
  // The list that the last member stood in: a record is written from one list, member by member.
  mutable std::size_t last_ = 0;
};

}  // namespace QvRefSystem
