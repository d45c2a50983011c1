#include "platform/xini/xini_text.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

#include "platform/text/ascii.h"
#include "platform/text/locale.h"

namespace QvPlatform::detail {

namespace {

constexpr char kDigits[] = "0123456789abcdef";

void AppendEscape(char byte, std::string* out) {
  const auto value = static_cast<unsigned char>(byte);
  *out += '\\';
  *out += kDigits[value >> 4];
  *out += kDigits[value & 0xF];
}

/// A byte that goes into the document as it is, wherever it stands.
constexpr bool IsPlain(char c) {
  return c > ' ' && c != '\\' && c != '&' && c != '<' && c != '>' && c != '"' && c != 0x7F;
}

/// Length of the UTF-8 sequence that begins the text if XML allows its character, else 0.
std::size_t SequenceLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || text.size() < length) return 0;
  const std::string_view sequence = text.substr(0, length);
  if (!IsUtf8(sequence)) return 0;
  const bool isNoCharacter = sequence == "\xEF\xBF\xBE" || sequence == "\xEF\xBF\xBF";
  return isNoCharacter ? 0 : length;
}

/// Appends what begins `text` and needs care; returns how many bytes that is.
std::size_t AppendCareful(std::string_view text, bool isAtEnd, std::string* out) {
  const char c = text.front();
  switch (c) {
    case '&':
      *out += "&amp;";
      return 1;
    case '<':
      *out += "&lt;";
      return 1;
    case '>':
      *out += "&gt;";
      return 1;
    case '"':
      *out += "&quot;";
      return 1;
    case ' ':
      if (isAtEnd) break;
      *out += c;
      return 1;
    default:
      break;
  }
  const std::size_t length = static_cast<unsigned char>(c) >= 0x80 ? SequenceLength(text) : 0;
  if (length == 0) {
    AppendEscape(c, out);
    return 1;
  }
  out->append(text.substr(0, length));
  return length;
}

bool IsXmlCharacter(std::uint32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code < 0xD800 || (code >= 0xE000 && code <= 0x10FFFF && code != 0xFFFE && code != 0xFFFF);
}

void AppendUtf8(std::uint32_t code, std::string* out) {
  const auto put = [out](std::uint32_t byte) { *out += static_cast<char>(byte); };
  const auto putLow = [&](std::uint32_t shift) { put(0x80 | ((code >> shift) & 0x3F)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    putLow(0);
  } else if (code < 0x10000) {
    put(0xE0 | (code >> 12));
    putLow(6);
    putLow(0);
  } else {
    put(0xF0 | (code >> 18));
    putLow(12);
    putLow(6);
    putLow(0);
  }
}

/// `name` is what stands between the ampersand and the semicolon.
bool AppendReference(std::string_view name, std::string* out) {
  static constexpr std::array<std::pair<std::string_view, char>, 5> kEntities{
      {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
  for (const auto& [entity, character] : kEntities) {
    if (name != entity) continue;
    *out += character;
    return true;
  }
  const bool isHex = name.starts_with("#x");
  if (!isHex && !name.starts_with('#')) return false;
  name.remove_prefix(isHex ? 2 : 1);
  std::uint32_t code = 0;
  const auto result =
      std::from_chars(name.data(), name.data() + name.size(), code, isHex ? 16 : 10);
  if (result.ec != std::errc() || result.ptr != name.data() + name.size()) return false;
  if (!IsXmlCharacter(code)) return false;
  AppendUtf8(code, out);
  return true;
}

}  // namespace

void AppendItemText(std::string_view value, std::string* out) {
  std::size_t i = 0;
  while (i < value.size()) {
    std::size_t end = i;
    while (end < value.size() && IsPlain(value[end]))
      ++end;
    out->append(value.substr(i, end - i));
    if (end == value.size()) return;
    i = end + AppendCareful(value.substr(end), end == 0 || end + 1 == value.size(), out);
  }
}

std::optional<std::string> ResolveReferences(std::string_view text) {
  // The longest reference that means something is "#x10FFFF", but zeros may stand ahead.
  constexpr std::size_t kLongest = 32;
  std::string out;
  out.reserve(text.size());
  while (true) {
    const std::size_t begin = text.find('&');
    out.append(text.substr(0, begin));
    if (begin == std::string_view::npos) return out;
    text.remove_prefix(begin + 1);
    const std::size_t end = text.substr(0, kLongest).find(';');
    if (end == std::string_view::npos || !AppendReference(text.substr(0, end), &out))
      return std::nullopt;
    text.remove_prefix(end + 1);
  }
}

std::optional<std::string> UnescapeItem(std::string_view text, bool strict) {
  std::string out;
  out.reserve(text.size());
  while (true) {
    const std::size_t begin = text.find('\\');
    out.append(text.substr(0, begin));
    if (begin == std::string_view::npos) return out;
    text.remove_prefix(begin + 1);
    const int high = text.size() >= 2 ? HexDigit(text[0]) : -1;
    const int low = text.size() >= 2 ? HexDigit(text[1]) : -1;
    if (high >= 0 && low >= 0) {
      out += static_cast<char>(high * 16 + low);
      text.remove_prefix(2);
    } else if (strict) {
      return std::nullopt;
    } else {
      out += '\\';
    }
  }
}

}  // namespace QvPlatform::detail
