#include "platform/xini/ini_file.h"

#include <algorithm>

#include "platform/text/ascii.h"
#include "platform/text/numbers.h"
#include "platform/text/trim.h"

namespace QvPlatform {

namespace {

std::optional<std::string> BytesOfHex(std::string_view digits) {
  if (digits.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const int high = HexDigit(digits[i]);
    const int low = HexDigit(digits[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes += static_cast<char>(high * 16 + low);
  }
  return bytes;
}

std::optional<std::string> BytesOfBase64(std::string_view text) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t padding = 0;
  while (padding < 2 && text.ends_with('=')) {
    text.remove_suffix(1);
    ++padding;
  }
  std::string bytes;
  unsigned bits = 0;
  int count = 0;
  for (const char c : text) {
    const std::size_t digit = kDigits.find(c);
    if (digit == std::string_view::npos) return std::nullopt;
    bits = (bits << 6U | static_cast<unsigned>(digit)) & 0xFFFFFU;
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> static_cast<unsigned>(count) & 0xFFU);
  }
  // What is left of the last digit is not used, and is 0.
  const unsigned rest = bits & ((1U << static_cast<unsigned>(count)) - 1U);
  if (rest != 0) return std::nullopt;
  return bytes;
}

}  // namespace

TQvIniFileManager::TQvIniFileManager(TQvStream* stream) {
  if (stream->Size() > kLargestIniFile) throw StorageError("the ini file is larger than 1 MiB");
  const std::string content = stream->ReadAll();
  std::string_view rest = content;
  if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);
  std::string section;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = TrimView(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.empty() || line.front() == ';' || line.front() == '#') continue;
    if (line.front() == '[' && line.back() == ']') {
      section = LowerAscii(TrimView(line.substr(1, line.size() - 2)));
      continue;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    values_.push_back({section, LowerAscii(TrimView(line.substr(0, equals))),
                       std::string(TrimView(line.substr(equals + 1)))});
  }
}

std::optional<std::string> TQvIniFileManager::ReadString(std::string_view section,
                                                         std::string_view name) const {
  const auto found = std::ranges::find_if(
      values_, [section = LowerAscii(section), name = LowerAscii(name)](const Value& v) {
        return v.section == section && v.name == name;
      });
  return found == values_.end() ? std::nullopt : std::optional(found->text);
}

double TQvIniFileManager::ReadDouble(std::string_view section, std::string_view name,
                                     double fallback) const {
  double value = fallback;
  const auto text = ReadString(section, name);
  return text && TextToDouble(*text, &value) ? value : fallback;
}

std::optional<std::string> TQvIniFileManager::ReadBinary(std::string_view section,
                                                         std::string_view name) const {
  auto text = ReadString(section, name);
  if (!text) return std::nullopt;
  std::erase_if(*text, [](char c) { return c == ' ' || c == '\t'; });
  auto bytes = BytesOfHex(*text);
  return bytes ? bytes : BytesOfBase64(*text);
}

}  // namespace QvPlatform
