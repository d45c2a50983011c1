#pragma once

#include <string>

#include "platform/storage/sqlite.h"

namespace QvPlatform::detail {

/// Gives the file of a schema, which has none yet, its checksums and its state, inside the
/// transaction that is open. Throws StorageError where it cannot be written or is not sound.
void AddSums(Connection& connection, const std::string& schema);

}  // namespace QvPlatform::detail
