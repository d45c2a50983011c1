#pragma once

#include <string>

namespace QvRefSystem {

/// A point in a system's own notation, one text for each axis, in the order of the axes.
class TShellCoords {
 public:
  /// Copies the three texts out; none of the pointers may be null.
  void Get(std::string* x, std::string* y, std::string* z) const;
  /// Takes the texts of the first, second and third axis over.
  void Set(std::string x, std::string y, std::string z);

 private:
  std::string texts_[3];
};

}  // namespace QvRefSystem
