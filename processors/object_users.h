#pragma once

#include <vector>

#include "database/data_module.h"
#include "platform/ui/user_interface.h"
#include "processors/object_descriptor.h"

/// Who refers to a record, also from rows that a filter hides.
namespace QvRefSystem {

/// The users for whom the deletion of an object asks, in the order of its descriptor's scans.
[[nodiscard]] std::vector<QvPlatform::UsedByRow> UsersByDescriptor(
    TdatamoduleQvRfData& data, const ObjectDescriptor& descriptor, int key);
/// All objects with a field that refers to the record of that key, each once. The catalogue also
/// knows who uses what nobody asks for: the kinds and the height systems.
[[nodiscard]] std::vector<QvPlatform::UsedByRow> UsersByCatalogue(TdatamoduleQvRfData& data,
                                                                  TableId table, int key);

}  // namespace QvRefSystem
