#include "platform/dbset/data_source.h"

#include <algorithm>

#include "platform/dbset/data_set.h"

namespace QvPlatform {

TDataSource::TDataSource(TQvDataSet* dataSet) {
  audience_.dataSet = dataSet;
  if (dataSet != nullptr) dataSet->Notices().Add(&audience_);
}

TDataSource::~TDataSource() {
  if (DataSet() != nullptr) DataSet()->Notices().Remove(&audience_);
}

void TDataSource::SetEnabled(bool enabled) {
  const bool wakes = enabled && !audience_.enabled;
  audience_.enabled = enabled;
  if (wakes && DataSet() != nullptr) DataSet()->Notices().TellReset(&audience_);
}

void TDataSource::AddObserver(TDataSetObserver* observer) {
  std::vector<TDataSetObserver*>& observers = audience_.observers;
  if (std::ranges::find(observers, observer) == observers.end()) observers.push_back(observer);
}

void TDataSource::RemoveObserver(TDataSetObserver* observer) {
  std::erase(audience_.observers, observer);
}

}  // namespace QvPlatform
