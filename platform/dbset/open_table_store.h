#pragma once

#include <memory>
#include <string>

#include "platform/dbset/data_buffer.h"
#include "platform/dbset/table_store.h"

namespace QvPlatform::detail {

/// The store of a table, by the name of its file or the full name of its resource. Throws
/// StorageError where there is none.
[[nodiscard]] std::shared_ptr<TableStore> OpenTableStore(QvDataBufferType type,
                                                         const std::string& name);

}  // namespace QvPlatform::detail
