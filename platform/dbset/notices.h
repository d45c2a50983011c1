#pragma once

#include <functional>
#include <vector>

#include "platform/dbset/row_move.h"

namespace QvPlatform {

class TDataSetObserver;
class TQvDataSet;

namespace detail {

/// The observers of one data source, with the data set that they observe.
struct Audience {
  /// Null once the data set is gone.
  TQvDataSet* dataSet = nullptr;
  /// Observers of a disabled source are told nothing.
  bool enabled = true;
  /// Not owned, each once, in the order in which they are told.
  std::vector<TDataSetObserver*> observers;
};

/// Tells the observers of one data set what happens to it, or keeps it while controls are disabled.
/// Whoever is told may add and remove observers, and end sources.
class Notices {
 public:
  /// `position` is where the data set keeps the place of its cursor, which outlives the notices.
  explicit Notices(const int& position) : position_(position) {}
  /// Cuts the data set off from all of its audiences.
  ~Notices();
  Notices(const Notices&) = delete;
  Notices& operator=(const Notices&) = delete;

  /// The audience stays the caller's, who removes it before it goes.
  void Add(Audience* audience) { audiences_.push_back(audience); }
  /// Tells the audience nothing more.
  void Remove(Audience* audience) { std::erase(audiences_, audience); }

  /// Holds notices back until as many calls of Enable.
  void Disable();
  /// The last Enable tells what changed meanwhile, at once. One too many does nothing.
  void Enable();
  /// Whether notices are held back.
  [[nodiscard]] bool Disabled() const { return disabled_ > 0; }

  /// Everything may have changed.
  void TellReset();
  /// The same, to one audience, also while controls are disabled.
  void TellReset(Audience* audience);
  /// The cursor has moved.
  void TellMoved();
  /// A row was inserted, changed or removed, and the cursor stands where it stands.
  void TellPlaces(const RowMove& move);

 private:
  using Telling = std::function<void(TDataSetObserver&)>;
  void Tell(Audience* audience, const Telling& tell) const;
  void TellAll(const Telling& tell) const;

  const int& position_;
  std::vector<Audience*> audiences_;
  int disabled_ = 0;
  bool rowsChangedSilently_ = false;
  int positionWhenDisabled_ = -1;
};

}  // namespace detail
}  // namespace QvPlatform
