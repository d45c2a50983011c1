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
    : container_(Container::Open(PlaceOf(name).path)),
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

std::int64_t ContainerStore::DataVersion() {
  return container_->Transactions().Db().QueryInteger("PRAGMA data_version");
}

void ContainerStore::NoteLoaded() {
  version_ = DataVersion();
  changes_ = container_->ChangesOf(link_.Table());
}

void ContainerStore::NoteChange() {
  ++container_->ChangesOf(link_.Table());
  ++changes_;
}

void ContainerStore::Insert(Row* row) {
  SqliteStore::Insert(row);
  NoteChange();
}

bool ContainerStore::Update(std::int64_t id, Row* row) {
  const bool done = SqliteStore::Update(id, row);
  if (done) NoteChange();
  return done;
}

bool ContainerStore::Delete(std::int64_t id, std::int64_t version) {
  const bool done = SqliteStore::Delete(id, version);
  if (done) NoteChange();
  return done;
}

void ContainerStore::OnRolledBack() noexcept {
  // Rows that others read in the meantime hold what is undone now.
  ++container_->ChangesOf(link_.Table());
  TellUndone();
}

std::string ContainerStore::StateNow() {
  return std::to_string(container_->Serial()) + ':' + link_.Table() + ':' +
         std::to_string(DataVersion()) + ':' + std::to_string(container_->ChangesOf(link_.Table()));
}

std::string ContainerStore::MirroredState() {
  try {
    if (container_->Transactions().Active()) return {};
    const bool mirrors =
        DataVersion() == version_ && container_->ChangesOf(link_.Table()) == changes_;
    return mirrors ? StateNow() : std::string();
  } catch (const StorageError&) {
    return {};
  }
}

bool ContainerStore::TakeOver(const std::string& state, const TQvDbHeader& header) {
  if (state.empty() || container_->Transactions().Active() || StateNow() != state) return false;
  SetHeader(header);
  NoteLoaded();
  return true;
}

}  // namespace QvPlatform::detail
