#pragma once

#include <QColor>

namespace QvPlatform {

/// The colour of a value 0x00BBGGRR, the form in which hosts hand colours over; 255 is pure red.
[[nodiscard]] inline QColor ColourFromBgr(int value) {
  return {value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF};
}

/// The reverse of ColourFromBgr; transparency is dropped.
[[nodiscard]] inline int BgrFromColour(const QColor& colour) {
  return colour.red() | (colour.green() << 8) | (colour.blue() << 16);
}

}  // namespace QvPlatform
