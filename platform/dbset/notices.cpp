#include "platform/dbset/notices.h"

#include <algorithm>

#include "platform/dbset/data_set_observer.h"

namespace QvPlatform::detail {

Notices::~Notices() {
  for (Audience* audience : audiences_)
    audience->dataSet = nullptr;
}

void Notices::Disable() {
  if (disabled_++ > 0) return;
  rowsChangedSilently_ = false;
  positionWhenDisabled_ = position_;
}

void Notices::Enable() {
  if (disabled_ == 0 || --disabled_ > 0) return;
  if (rowsChangedSilently_) {
    TellReset();
  } else if (position_ != positionWhenDisabled_) {
    TellMoved();
  }
}

void Notices::Tell(Audience* audience, const Telling& tell) const {
  // Who is told may remove observers, or the source itself.
  const std::vector<TDataSetObserver*> observers = audience->observers;
  for (TDataSetObserver* observer : observers) {
    const bool bound = std::ranges::find(audiences_, audience) != audiences_.end();
    if (!bound || !audience->enabled) return;
    if (std::ranges::find(audience->observers, observer) == audience->observers.end()) continue;
    tell(*observer);
  }
}

void Notices::TellAll(const Telling& tell) const {
  // Where nobody listens nothing is allocated: tables are also closed while memory is short.
  const auto isEmpty = [](const Audience* audience) { return audience->observers.empty(); };
  if (std::ranges::all_of(audiences_, isEmpty)) return;
  const std::vector<Audience*> audiences = audiences_;
  for (Audience* audience : audiences) {
    if (std::ranges::find(audiences_, audience) != audiences_.end()) Tell(audience, tell);
  }
}

void Notices::TellReset() {
  if (Disabled()) {
    rowsChangedSilently_ = true;
    return;
  }
  TellAll([](TDataSetObserver& observer) { observer.OnRowsReset(); });
}

void Notices::TellReset(Audience* audience) {
  Tell(audience, [](TDataSetObserver& observer) { observer.OnRowsReset(); });
}

void Notices::TellMoved() {
  if (Disabled()) return;
  const int position = position_;
  TellAll([position](TDataSetObserver& observer) { observer.OnCurrentMoved(position); });
}

void Notices::TellPlaces(const RowMove& move) {
  if (Disabled()) {
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

}  // namespace QvPlatform::detail
