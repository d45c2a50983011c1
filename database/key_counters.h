#pragma once

#include <functional>

#include "database/table_catalogue.h"
#include "platform/dbset/data_set.h"

namespace QvRefSystem {

/// Gives the open data set of a table.
using OpenedTable = std::function<QvPlatform::TQvDataSet&(TableId)>;

/// The greatest key of the table that a record of it has, or that a reference or a row of
/// param_value still names; 0 for none. The tables must be open and without a filter.
[[nodiscard]] int GreatestNamedKey(const OpenedTable& opened, TableId table);

/// Raises the counters of tables that have never given a key away, as one that was lost and made
/// anew has not, behind every key that is still named: a new record must not come to the codes, the
/// users or the heights of a former one. Where the database cannot be written nothing is done,
/// since nothing can be added there either.
void RaiseNewCounters(const OpenedTable& opened);

}  // namespace QvRefSystem
