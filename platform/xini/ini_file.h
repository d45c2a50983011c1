#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/storage/stream.h"

namespace QvPlatform {

/// Largest ini file that is read, in bytes.
inline constexpr std::uint64_t kLargestIniFile = std::uint64_t{1} << 20;

/// The values of an ini file: "[section]" and below it "name=value". Names are compared without
/// regard to the case of Latin letters, blanks around names and values do not count, and of equal
/// names the first one wins. Lines that begin with ";" or "#" are remarks; a line that is none of
/// these is passed over.
class TQvIniFileManager {
 public:
  /// Reads the stream to its end. Throws StorageError if it fails or is larger than
  /// kLargestIniFile.
  explicit TQvIniFileManager(TQvStream* stream);

  /// The value of a name in a section; nothing if there is none.
  [[nodiscard]] std::optional<std::string> ReadString(std::string_view section,
                                                      std::string_view name) const;
  /// A number in C notation; `fallback` for a value that is missing or no finite number.
  [[nodiscard]] double ReadDouble(std::string_view section, std::string_view name,
                                  double fallback) const;
  /// Bytes as hexadecimal digits, which blanks may part, or else as base64 (RFC 4648, with its
  /// padding). Nothing for a value that is missing or neither of them.
  [[nodiscard]] std::optional<std::string> ReadBinary(std::string_view section,
                                                      std::string_view name) const;

 private:
  struct Value {
    std::string section;
    std::string name;
    std::string text;
  };
  std::vector<Value> values_;
};

}  // namespace QvPlatform
