#pragma once

#include <string>

#include "database/table_catalogue.h"
#include "platform/ui/user_interface.h"

namespace QvRefSystem {

/// Makes an empty table: tag 1 reference systems, 16 vertical systems, 17 transformations. Any
/// other tag gives false. `name` is a path, or a resource name of a container; a target that cannot
/// be opened is told to the user.
[[nodiscard]] bool CreateTable(const std::string& name, bool resourceForm, int tag,
                               QvPlatform::TUserInterface& ui);
/// The same for a table that is missing. Throws StorageError where anything has come to stand under
/// the name.
[[nodiscard]] bool CreateMissingTable(const std::string& name, bool resourceForm, int tag,
                                      QvPlatform::TUserInterface& ui);
/// The same for any table of the catalogue, for those who deliver a database. Throws StorageError
/// where the table cannot be written.
[[nodiscard]] bool CreateCatalogueTable(const std::string& name, bool resourceForm,
                                        const TableSpec& table, QvPlatform::TUserInterface& ui);

}  // namespace QvRefSystem
