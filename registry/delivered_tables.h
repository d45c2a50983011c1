#pragma once

#include <vector>

#include "database/data_module.h"

namespace QvRefSystem {

/// Fills the tables that only ever come with a database: the three type tables, the parameters of
/// the projection types, their choice lists, and the exchange codes of the types. The database is
/// open and these tables are empty. Throws DataSetError or StorageError if the store refuses.
void FillDeliveredTables(TdatamoduleQvRfData& data);

/// The tables that FillDeliveredTables writes.
[[nodiscard]] std::vector<QvPlatform::TQvDataSet*> DeliveredTables(TdatamoduleQvRfData& data);

}  // namespace QvRefSystem
