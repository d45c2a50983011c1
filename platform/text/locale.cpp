#include "platform/text/locale.h"

#include <unicode/ucasemap.h>
#include <unicode/ucol.h>
#include <unicode/uloc.h>
#include <unicode/unum.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

#include "platform/text/numbers.h"
#include "platform/text/trim.h"

namespace QvPlatform {

namespace {

constexpr UChar32 kReplacement = 0xFFFD;

/// ICU names every locale within this length.
constexpr std::size_t kLocaleNameSpace = ULOC_FULLNAME_CAPACITY;

struct CaseMapCloser {
  void operator()(UCaseMap* map) const { ucasemap_close(map); }
};
struct CollatorCloser {
  void operator()(UCollator* collator) const { ucol_close(collator); }
};
struct NumberFormatCloser {
  void operator()(UNumberFormat* format) const { unum_close(format); }
};

std::int32_t IcuLength(std::size_t size) {
  // A third of the range, since upper-casing and UTF-16 may need up to three times the room.
  if (size > std::numeric_limits<std::int32_t>::max() / 3) {
    throw std::length_error("a text is too long for the rules of a language");
  }
  return static_cast<std::int32_t>(size);
}

bool IsAscii(std::string_view text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

/// Texts up to this many bytes need no memory of their own.
constexpr std::size_t kUsualLength = 256;

/// A text in UTF-16, with the replacement character in the place of malformed bytes.
class Utf16 {
 public:
  explicit Utf16(std::string_view text) {
    // UTF-16 never has more units than UTF-8 has bytes.
    if (text.size() > kUsualLength) longer_.resize(text.size());
    const std::size_t room = std::max(text.size(), kUsualLength);
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(Units(), IcuLength(room), &size_, text.data(), IcuLength(text.size()),
                         kReplacement, nullptr, &status);
    if (U_FAILURE(status)) {
      throw std::runtime_error(std::string("ICU cannot read a text: ") + u_errorName(status));
    }
  }
  Utf16(const Utf16&) = delete;
  Utf16& operator=(const Utf16&) = delete;

  [[nodiscard]] const UChar* Data() const {
    return longer_.empty() ? usual_.data() : longer_.data();
  }
  [[nodiscard]] std::int32_t Size() const { return size_; }
  [[nodiscard]] std::string ToUtf8() const {
    std::string text(3 * static_cast<std::size_t>(size_), '\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(text.data(), IcuLength(text.size()), &length, Data(), size_, &status);
    text.resize(static_cast<std::size_t>(length));
    return text;
  }

 private:
  UChar* Units() { return longer_.empty() ? usual_.data() : longer_.data(); }

  std::array<UChar, kUsualLength> usual_;
  std::vector<UChar> longer_;
  std::int32_t size_ = 0;
};

/// The user's own choice in the order in which POSIX looks it up; ICU's view of the system where
/// nothing is chosen.
std::string EnvironmentLocale(const char* category) {
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return uloc_getDefault();
}

/// The name as ICU knows it. "C" and "POSIX" say nothing of a language and stand for the root
/// locale, whose order people can read, rather than for the order of the bytes.
std::string IcuLocale(std::string name, const char* category) {
  if (name.empty()) name = EnvironmentLocale(category);
  const std::string base = name.substr(0, name.find_first_of(".@"));
  if (base == "C" || base == "POSIX" || base == "c" || base == "en_US_POSIX") return "";
  std::array<char, kLocaleNameSpace> buffer{};
  UErrorCode status = U_ZERO_ERROR;
  if (name.find_first_of("_.@") == std::string::npos) {
    uloc_forLanguageTag(name.c_str(), buffer.data(), kLocaleNameSpace, nullptr, &status);
  } else {
    uloc_canonicalize(name.c_str(), buffer.data(), kLocaleNameSpace, &status);
  }
  return U_SUCCESS(status) ? std::string(buffer.data()) : std::string();
}

/// In these languages the upper case of "i" or "j" is not, or not always, "I" or "J".
bool HasOwnAsciiCase(const std::string& locale) {
  std::array<char, ULOC_LANG_CAPACITY> language{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_getLanguage(locale.c_str(), language.data(), ULOC_LANG_CAPACITY, &status);
  const std::string_view found(language.data());
  return U_FAILURE(status) || found == "tr" || found == "az" || found == "lt";
}

/// A locale that ICU does not know separates as C does.
std::string DecimalSeparatorOf(const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UNumberFormat, NumberFormatCloser> format(
      unum_open(UNUM_DECIMAL, nullptr, 0, locale.c_str(), nullptr, &status));
  std::array<UChar, 8> symbol{};
  const std::int32_t length =
      U_FAILURE(status) ? 0
                        : unum_getSymbol(format.get(), UNUM_DECIMAL_SEPARATOR_SYMBOL, symbol.data(),
                                         static_cast<std::int32_t>(symbol.size()), &status);
  std::array<char, 32> text{};
  std::int32_t size = 0;
  u_strToUTF8(text.data(), static_cast<std::int32_t>(text.size()), &size, symbol.data(), length,
              &status);
  return U_FAILURE(status) || size == 0 ? "." : std::string(text.data());
}

/// The rules of one language.
class UserLocale {
 public:
  explicit UserLocale(const std::string& name) {
    const std::string locale = IcuLocale(name, "LC_COLLATE");
    UErrorCode status = U_ZERO_ERROR;
    caseMap_.reset(ucasemap_open(locale.c_str(), 0, &status));
    collator_.reset(ucol_open(locale.c_str(), &status));
    if (U_FAILURE(status)) {
      throw std::runtime_error(std::string("ICU cannot load its rules for the locale \"") + locale +
                               "\": " + u_errorName(status));
    }
    asciiCase_ = !HasOwnAsciiCase(locale);
    decimalSeparator_ = DecimalSeparatorOf(IcuLocale(name, "LC_NUMERIC"));
  }

  [[nodiscard]] std::string UpperCase(std::string_view text) const;
  [[nodiscard]] std::string CollationKey(std::string_view text) const;
  [[nodiscard]] const std::string& DecimalSeparator() const { return decimalSeparator_; }

 private:
  std::unique_ptr<UCaseMap, CaseMapCloser> caseMap_;
  std::unique_ptr<UCollator, CollatorCloser> collator_;
  bool asciiCase_ = true;
  std::string decimalSeparator_;
};

std::string UserLocale::UpperCase(std::string_view text) const {
  std::string result;
  std::string repaired;
  if (asciiCase_ && IsAscii(text)) {
    result.assign(text);
    for (char& c : result) {
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return result;
  }
  // Upper-casing passes malformed bytes on as they are.
  if (!IsUtf8(text)) {
    repaired = Utf16(text).ToUtf8();
    text = repaired;
  }
  const std::int32_t length = IcuLength(text.size());
  result.resize(text.size() + text.size() / 2 + 8);
  for (;;) {
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t needed = ucasemap_utf8ToUpper(
        caseMap_.get(), result.data(), IcuLength(result.size()), text.data(), length, &status);
    result.resize(static_cast<std::size_t>(needed));
    if (status == U_BUFFER_OVERFLOW_ERROR) continue;
    if (U_FAILURE(status)) {
      throw std::runtime_error(std::string("ICU cannot upper-case a text: ") + u_errorName(status));
    }
    return result;
  }
}

std::string UserLocale::CollationKey(std::string_view text) const {
  const Utf16 units(text);
  std::array<std::uint8_t, 2 * kUsualLength> usual;
  std::vector<std::uint8_t> longer;
  std::uint8_t* key = usual.data();
  std::int32_t size = ucol_getSortKey(collator_.get(), units.Data(), units.Size(), key,
                                      static_cast<std::int32_t>(usual.size()));
  if (size > static_cast<std::int32_t>(usual.size())) {
    longer.resize(static_cast<std::size_t>(size));
    key = longer.data();
    size = ucol_getSortKey(collator_.get(), units.Data(), units.Size(), key, size);
  }
  // The closing zero carries no order.
  return {key, key + std::max(0, size - 1)};
}

struct CurrentLocale {
  std::unique_ptr<const UserLocale> rules;
  unsigned version = 1;
};

CurrentLocale& Current() {
  static CurrentLocale current{std::make_unique<UserLocale>(std::string()), 1};
  return current;
}

}  // namespace

std::string UpperCase(std::string_view text) {
  return Current().rules->UpperCase(text);
}

std::string FoldName(std::string_view text) {
  return UpperCase(TrimView(text));
}

std::string CollationKey(std::string_view text) {
  return Current().rules->CollationKey(text);
}

std::string DecimalSeparator() {
  return Current().rules->DecimalSeparator();
}

std::string DoubleToUserText(double value) {
  std::string text = DoubleToText(value);
  const std::size_t point = text.find('.');
  if (point != std::string::npos) text.replace(point, 1, DecimalSeparator());
  return text;
}

bool UserTextToDouble(std::string_view text, double* out) {
  const std::string separator = DecimalSeparator();
  std::string number(text);
  if (separator != ".") {
    if (number.find('.') != std::string::npos) return false;
    const std::size_t at = number.find(separator);
    if (at != std::string::npos) {
      number = number.substr(0, at).append(1, '.').append(number, at + separator.size());
    }
  }
  return TextToDouble(number, out);
}

void SetUserLocale(const std::string& name) {
  CurrentLocale& current = Current();
  current.rules = std::make_unique<UserLocale>(name);
  ++current.version;
}

unsigned UserLocaleVersion() {
  return Current().version;
}

bool IsUtf8(std::string_view text) {
  if (IsAscii(text)) return true;
  std::int32_t count = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(nullptr, 0, &count, text.data(), IcuLength(text.size()), &status);
  return U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR;
}

}  // namespace QvPlatform
