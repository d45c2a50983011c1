#pragma once

#include <string>
#include <vector>

#include "assembly/checks/findings.h"
#include "database/data_module.h"

namespace QvRefSystem {

/// Looks through all tables of an open database for what does not hold together: references to
/// records that are not there, objects without what their kind needs, numbers that are none,
/// parameters that a projection lacks or has twice, codes that stand twice, records that say the
/// same, heights that are not whole, and damage of the files. What ordinary work leaves behind is
/// noted. Changes nothing; all tables are read as they stand at one moment, and nobody commits
/// meanwhile. Throws what the tables throw.
[[nodiscard]] CheckReport CheckDatabase(TdatamoduleQvRfData& data);
/// The same, with the listed finds as lines behind those that `findings` holds; true if there is no
/// error.
[[nodiscard]] bool CheckDatabase(TdatamoduleQvRfData& data, std::vector<std::string>* findings);

}  // namespace QvRefSystem
