#pragma once

#include <cerrno>

namespace QvPlatform::detail {

/// Calls the system anew while it says that a signal has interrupted it, at most a hundred times:
/// none of the calls of this room waits for anything that could keep it. Gives what the last call
/// gave, negative for a failure with errno.
template <typename Call>
[[nodiscard]] auto Retried(const Call& call) noexcept {
  constexpr int kMostInterruptions = 100;
  auto result = call();
  for (int tries = 1; result < 0 && errno == EINTR && tries < kMostInterruptions; ++tries)
    result = call();
  return result;
}

}  // namespace QvPlatform::detail
