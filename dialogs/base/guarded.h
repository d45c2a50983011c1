#pragma once

#include <exception>
#include <utility>

#include "platform/ui/user_interface.h"

namespace QvRefSystem {

/// Runs an operation at the border to the toolkit or to a host, which know nothing of exceptions:
/// one that comes out is told to the user, and the answer is false.
template <typename Operation>
bool Guarded(QvPlatform::TUserInterface& ui, Operation&& operation) {
  try {
    std::forward<Operation>(operation)();
    return true;
  } catch (const std::exception& error) {
    ui.ShowMessage(QvPlatform::MessageKind::kError, error.what(), QvPlatform::MessageButtons::kOk);
    return false;
  }
}

}  // namespace QvRefSystem
