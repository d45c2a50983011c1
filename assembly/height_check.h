#pragma once

#include <functional>
#include <string>

#include "database/data_module.h"

namespace QvRefSystem {

/// Told of each find: the table and the row that it is about, or no row, and what it is.
using TellFinding =
    std::function<void(TableId table, QvPlatform::RowView row, const std::string& what)>;

/// The part of the check of a database that concerns heights: records without what their kind
/// needs, height files that are missing, shared, changed since they were written, or left by a
/// record that is gone, and height systems that do not belong to exactly one reference system.
void CheckHeights(TdatamoduleQvRfData& data, const TellFinding& tell);

}  // namespace QvRefSystem
