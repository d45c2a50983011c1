#pragma once

#include <stdexcept>

/// A small structured document of sections and items in XML, which xini_writer.h writes and
/// xini_reader.h reads.
///
/// The root is <xini version="1">. A section is an element <s>, an item an element <i>; a name
/// stands in the attribute "n" and is left out for unnamed ones. The text of an item is its value
/// in UTF-8, where some bytes stand as a backslash and two hexadecimal digits: the backslash
/// itself, control characters, a blank at either end, U+FFFE and U+FFFF, and bytes that are not
/// UTF-8. So any bytes at all survive, and white space at the ends of an item's text is layout.
/// Compact mode changes only the layout (no line breaks inside).
namespace QvPlatform {

/// A document that cannot be read; the message tells the path to the place.
class XIniError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Deepest nesting of sections, for the writer and the reader.
inline constexpr int kMaxXIniDepth = 1024;

}  // namespace QvPlatform
