#include "platform/dbset/read_group.h"

#include <algorithm>

#include "platform/dbset/data_set.h"
#include "platform/dbset/data_set_impl.h"

namespace QvPlatform {

TQvReadGroup::TQvReadGroup(const std::vector<TQvDataSet*>& dataSets) {
  std::vector<TQvDataSet*> tables;
  for (TQvDataSet* dataSet : dataSets) {
    if (dataSet == nullptr || !dataSet->GetActive()) continue;
    if (dataSet->impl_->Group() == nullptr) tables.push_back(dataSet);
  }
  // In the order in which writers lock the files, so that neither waits for the other.
  std::ranges::sort(tables, {}, [](const TQvDataSet* set) { return set->DataBuff->StreamName; });
  for (TQvDataSet* table : tables)
    table->impl_->ReattachIfReplaced();
  for (TQvDataSet* table : tables)
    holds_.push_back(table->impl_->Store()->Hold());
  for (TQvDataSet* table : tables)
    table->Refresh();
}

TQvReadGroup::~TQvReadGroup() = default;

}  // namespace QvPlatform
