#include "platform/text/escapes.h"

namespace QvPlatform {

namespace {

/// The letter that stands for an escaped byte, 0 for bytes that stand for themselves.
char EscapeLetter(char c) {
  switch (c) {
    case '\t':
      return 't';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\\':
      return '\\';
    default:
      return 0;
  }
}

/// The byte that an escape letter stands for, 0 for a letter of no escape.
char EscapedByte(char letter) {
  switch (letter) {
    case 't':
      return '\t';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case '\\':
      return '\\';
    default:
      return 0;
  }
}

}  // namespace

void AppendEncoded(std::string_view text, std::string* out) {
  constexpr std::string_view kEscaped = "\t\n\r\\";
  // Texts to be escaped are rare, so whole runs are copied at once.
  for (;;) {
    const std::size_t stop = text.find_first_of(kEscaped);
    if (stop == std::string_view::npos) break;
    out->append(text.substr(0, stop));
    out->push_back('\\');
    out->push_back(EscapeLetter(text[stop]));
    text.remove_prefix(stop + 1);
  }
  out->append(text);
}

std::string Encode(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  AppendEncoded(text, &result);
  return result;
}

std::string Decode(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (;;) {
    const std::size_t stop = text.find('\\');
    if (stop == std::string_view::npos) break;
    result.append(text.substr(0, stop));
    const char byte = stop + 1 < text.size() ? EscapedByte(text[stop + 1]) : char{0};
    result.push_back(byte != 0 ? byte : '\\');
    text.remove_prefix(stop + (byte != 0 ? 2 : 1));
  }
  result.append(text);
  return result;
}

}  // namespace QvPlatform
