#include "platform/geocore/shell_coords.h"

#include <utility>

namespace QvRefSystem {

void TShellCoords::Get(std::string* x, std::string* y, std::string* z) const {
  *x = texts_[0];
  *y = texts_[1];
  *z = texts_[2];
}

void TShellCoords::Set(std::string x, std::string y, std::string z) {
  texts_[0] = std::move(x);
  texts_[1] = std::move(y);
  texts_[2] = std::move(z);
}

}  // namespace QvRefSystem
