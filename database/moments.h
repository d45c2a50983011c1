#pragma once

#include <string>
#include <vector>

#include "database/data_module.h"

namespace QvRefSystem {

/// The files of a folder's tables that are older than a change which was made to them together with
/// others, such as those of a folder that was copied without its journals or into which one file
/// was put back alone. Nothing where all tables are of one moment, and in a container. The database
/// has to be open; throws what the tables throw.
[[nodiscard]] std::vector<std::string> TablesOfOlderMoments(TdatamoduleQvRfData& data);

}  // namespace QvRefSystem
