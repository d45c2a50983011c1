#pragma once

#include <string>
#include <vector>

#include "database/data_module.h"

namespace QvRefSystem {

/// Looks through all tables of an open database for what does not hold together: references to
/// records that are not there, objects without what their kind needs, numbers that are none,
/// parameters that a projection lacks or has twice, code rows without an owner, and records that
/// are equal by the rules by which a tree finds them, and heights that are not whole or nobody's.
/// Changes nothing.
///
/// One line is added to `findings` for each find: table, key, name, what; for what concerns no one
/// record the table and what. True if there is none.
[[nodiscard]] bool CheckDatabase(TdatamoduleQvRfData& data, std::vector<std::string>* findings);

}  // namespace QvRefSystem
