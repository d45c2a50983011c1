#include "platform/storage/resource_group.h"

#include "platform/storage/container.h"

namespace QvPlatform {

struct TQvResourceGroup::Impl {
  std::shared_ptr<detail::Container> container;
};

TQvResourceGroup::TQvResourceGroup(const std::string& container) : impl_(std::make_unique<Impl>()) {
  impl_->container = detail::Container::OpenOrCreate(container);
  impl_->container->Transactions().Begin();
}

TQvResourceGroup::~TQvResourceGroup() {
  detail::Session& session = impl_->container->Transactions();
  if (session.Active()) session.Rollback();
}

void TQvResourceGroup::Commit() {
  impl_->container->Transactions().Commit();
}

}  // namespace QvPlatform
