#include "platform/storage/journal_names.h"

#include <sys/stat.h>

#include <algorithm>

namespace QvPlatform::detail {

namespace {

constexpr std::string_view kSuperMark = "-mj";
constexpr std::size_t kSuperDigits = 9;
/// The digit of a super-journal's name that is always the same.
constexpr std::size_t kFixedDigitAt = 6;
constexpr char kFixedDigit = '9';

bool IsHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
}

/// The path has a name of its own in front of the ending.
bool HasNameBefore(std::string_view path, std::size_t ending) {
  return path.size() > ending && path[path.size() - ending - 1] != '/';
}

}  // namespace

bool IsJournalName(std::string_view path) {
  return path.ends_with(kJournalEnding) && HasNameBefore(path, kJournalEnding.size());
}

bool IsSuperJournalName(std::string_view path) {
  constexpr std::size_t kSize = kSuperMark.size() + kSuperDigits;
  if (path.size() <= kSize || !HasNameBefore(path, kSize)) return false;
  const std::string_view ending = path.substr(path.size() - kSize);
  const std::string_view digits = ending.substr(kSuperMark.size());
  return ending.starts_with(kSuperMark) && std::ranges::all_of(digits, IsHexDigit) &&
         digits[kFixedDigitAt] == kFixedDigit;
}

std::string FolderOf(std::string_view path) {
  const std::size_t separator = path.rfind('/');
  if (separator == std::string_view::npos) return ".";
  return std::string(separator == 0 ? "/" : path.substr(0, separator));
}

bool IsSameFolder(const std::string& one, const std::string& other) {
  if (one == other) return true;
  struct stat first {};
  struct stat second {};
  return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
         S_ISDIR(first.st_mode) && first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace QvPlatform::detail
