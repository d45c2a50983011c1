#include <algorithm>

#include "platform/dbset/data_set_impl.h"

namespace QvPlatform {

void DataSetImpl::DisableControls() {
  if (disabled_++ > 0) return;
  rowsChangedSilently_ = false;
  positionWhenDisabled_ = position_;
}

void DataSetImpl::EnableControls() {
  if (disabled_ == 0 || --disabled_ > 0) return;
  if (rowsChangedSilently_) {
    TellReset();
  } else if (position_ != positionWhenDisabled_) {
    TellMoved();
  }
}

void DataSetImpl::TellSource(TDataSource* source,
                             const std::function<void(TDataSetObserver&)>& tell) {
  // Who is told may remove observers, or the source itself.
  const std::vector<TDataSetObserver*> observers = source->observers_;
  for (TDataSetObserver* observer : observers) {
    const bool bound = std::ranges::find(sources_, source) != sources_.end();
    if (!bound || !source->enabled_) return;
    if (std::ranges::find(source->observers_, observer) == source->observers_.end()) continue;
    tell(*observer);
  }
}

void DataSetImpl::TellAll(const std::function<void(TDataSetObserver&)>& tell) {
  const std::vector<TDataSource*> sources = sources_;
  for (TDataSource* source : sources) {
    if (std::ranges::find(sources_, source) != sources_.end()) TellSource(source, tell);
  }
}

void DataSetImpl::TellReset() {
  if (ControlsDisabled()) {
    rowsChangedSilently_ = true;
    return;
  }
  TellAll([](TDataSetObserver& observer) { observer.OnRowsReset(); });
}

void DataSetImpl::TellMoved() {
  if (ControlsDisabled()) return;
  const int position = position_;
  TellAll([position](TDataSetObserver& observer) { observer.OnCurrentMoved(position); });
}

void DataSetImpl::TellPlaces(const detail::RowSet::Move& move) {
  if (ControlsDisabled()) {
    rowsChangedSilently_ = rowsChangedSilently_ || move.from >= 0 || move.to >= 0;
    return;
  }
  const int position = position_;
  if (move.from == move.to) {
    if (move.to < 0) return;
    TellAll([&move](TDataSetObserver& observer) { observer.OnRowChanged(move.to); });
    return;
  }
  TellAll([&move, position](TDataSetObserver& observer) {
    if (move.from >= 0) observer.OnRowRemoved(move.from);
    if (move.to >= 0) observer.OnRowInserted(move.to);
    observer.OnCurrentMoved(position);
  });
}

TDataSource::TDataSource(TQvDataSet* dataSet) : dataSet_(dataSet) {
  if (dataSet_ != nullptr) dataSet_->impl_->AddSource(this);
}

TDataSource::~TDataSource() {
  if (dataSet_ != nullptr) dataSet_->impl_->RemoveSource(this);
}

void TDataSource::SetEnabled(bool enabled) {
  const bool wakes = enabled && !enabled_;
  enabled_ = enabled;
  if (!wakes || dataSet_ == nullptr) return;
  dataSet_->impl_->TellSource(this, [](TDataSetObserver& observer) { observer.OnRowsReset(); });
}

void TDataSource::AddObserver(TDataSetObserver* observer) {
  if (std::ranges::find(observers_, observer) == observers_.end()) observers_.push_back(observer);
}

void TDataSource::RemoveObserver(TDataSetObserver* observer) {
  std::erase(observers_, observer);
}

}  // namespace QvPlatform
