#include "platform/text/trim.h"

#include <algorithm>

namespace QvPlatform {

namespace {

bool IsBlankByte(char c) {
  return static_cast<unsigned char>(c) <= 0x20;
}

}  // namespace

std::string_view TrimView(std::string_view text) {
  while (!text.empty() && IsBlankByte(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && IsBlankByte(text.back()))
    text.remove_suffix(1);
  return text;
}

std::string Trim(std::string_view text) {
  return std::string(TrimView(text));
}

bool IsBlank(std::string_view text) {
  return std::all_of(text.begin(), text.end(), IsBlankByte);
}

}  // namespace QvPlatform
