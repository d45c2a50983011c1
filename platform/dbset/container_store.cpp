#include "platform/dbset/container_store.h"

#include "platform/dbset/field_descriptions.h"

namespace QvPlatform::detail {

namespace {

Container::Place PlaceOf(const std::string& name) {
  Container::Place place = Container::Resolve(name);
  if (!place.exists) throw StorageError("\"" + place.path + "\": there is no such container");
  return place;
}

}  // namespace

ContainerStore::ContainerStore(const std::string& name)
    : path_(PlaceOf(name).path),
      container_(Container::Open(path_)),
      link_(container_->Transactions(), "main", PlaceOf(name).resource) {}

ContainerStore::~ContainerStore() {
  container_->Transactions().Leave(this);
}

void ContainerStore::CheckSound() {
  const std::string& table = link_.Table();
  if (!container_->HasTable(table)) {
    Container::Blob blob;
    throw StorageError("\"" + container_->Transactions().Db().Name() + "." + table +
                       (container_->FindBlob(table, &blob) ? "\" is no record table"
                                                           : "\": there is no such resource"));
  }
  SetHeader(HeaderOf(ReadFields(container_->Transactions().Db(), table)));
}

}  // namespace QvPlatform::detail
