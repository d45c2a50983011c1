#pragma once

#include <deque>

namespace QvRefSystem {

/// The keys of the records that are open in edit dialogs. What is open is neither removed nor
/// opened again; it lives in memory alone, so that two programs do not know of each other's.
class EditLock {
 public:
  /// A key stands as many times as dialogs have its record open.
  std::deque<int> EditKeys;

 protected:
  void Lock(int key);
  /// Takes off one lock of the key, if it has one.
  void Unlock(int key);
  [[nodiscard]] bool IsLocked(int key) const;
};

}  // namespace QvRefSystem
