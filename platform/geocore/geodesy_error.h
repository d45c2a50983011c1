#pragma once

#include <stdexcept>

namespace QvRefSystem {

/// A computation is not possible; the message tells why in words for the user.
class GeodesyError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace QvRefSystem
