#pragma once

#include <string>
#include <utility>

namespace QvPlatform {

/// One condition of a look-up: a field, and what its content has to equal.
struct RowMatch {
  /// How the content is compared: as an integer, as a text character for character, or as a text
  /// after trimming and upper-casing.
  enum class Kind { kInteger, kText, kFolded };
  /// Number of the field, from 0.
  int field = -1;
  /// Which of the two values below counts, and how.
  Kind kind = Kind::kInteger;
  /// The value of a condition of kind kInteger.
  int integer = 0;
  /// The value of the other kinds; of kFolded it is folded already.
  std::string text;

  /// Content equal to an integer; what is no number counts as 0.
  static RowMatch Integer(int field, int value) { return {field, Kind::kInteger, value, {}}; }
  /// Text equal character for character.
  static RowMatch Text(int field, std::string value) {
    return {field, Kind::kText, 0, std::move(value)};
  }
  /// Text equal after trimming and upper-casing; `folded` is FoldName of the text looked for.
  static RowMatch Folded(int field, std::string folded) {
    return {field, Kind::kFolded, 0, std::move(folded)};
  }
};

/// Which rows a look-up sees: those that show under the filter, or all of the table.
enum class RowScope { kShown, kAll };

}  // namespace QvPlatform
