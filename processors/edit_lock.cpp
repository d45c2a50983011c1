#include "processors/edit_lock.h"

#include <algorithm>

namespace QvRefSystem {

void EditLock::Lock(int key) {
  EditKeys.push_back(key);
}

void EditLock::Unlock(int key) {
  const auto at = std::ranges::find(EditKeys, key);
  if (at != EditKeys.end()) EditKeys.erase(at);
}

bool EditLock::IsLocked(int key) const {
  return std::ranges::find(EditKeys, key) != EditKeys.end();
}

}  // namespace QvRefSystem
