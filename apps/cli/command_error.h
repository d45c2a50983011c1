#pragma once

#include <stdexcept>

namespace RefframeCli {

/// The operation failed: what was wrong, and where. An empty text says nothing that the user was
/// not told already.
class CommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The arguments make no command.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace RefframeCli
