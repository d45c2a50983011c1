#pragma once

#include <string>

#include "platform/data/string_tree.h"
#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// Writes a model as a reference system's tree: the same ids, labels and order in which a record
/// of the database is written, so that InsertFromTree takes it. `tree` is cleared first.
/// Types are written by their number with the name and description of the delivered type tables.
void ModelToTree(const SystemModel& model, QvCommonUtils::TStringTree* tree);

}  // namespace QvRefSystem
