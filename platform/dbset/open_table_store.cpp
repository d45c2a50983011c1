#include "platform/dbset/open_table_store.h"

#include "platform/dbset/container_store.h"
#include "platform/dbset/file_store.h"

namespace QvPlatform::detail {

std::shared_ptr<TableStore> OpenTableStore(QvDataBufferType type, const std::string& name) {
  if (type == QvDataBufferType::kResource) return std::make_shared<ContainerStore>(name);
  return std::make_shared<FileStore>(name);
}

}  // namespace QvPlatform::detail
