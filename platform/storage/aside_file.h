#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace QvPlatform::detail {

/// A name for something that stands aside until it is whole, which no other process of this moment
/// uses: the number of this one is in it.
[[nodiscard]] std::string AsideName(std::string_view ending);
/// Whether a name is one that AsideName gave to a process of this machine that is gone.
[[nodiscard]] bool IsOfDeadProcess(std::string_view name, std::string_view ending);

/// A file that is written under a name of its own and then takes its place at once, so that a
/// reader sees the old content or the new, whatever happens on the way. Without Publish it is
/// dropped; what a killed process has left in the folder is removed by the next that writes there.
class AsideFile {
 public:
  /// What may stand under the path when the file takes its place: anything that is replaced, or
  /// nothing.
  enum class Place { kReplace, kMustBeFree };

  /// Throws StorageError where the file could not be put: its folder is missing or closed to
  /// writing, the path is that of a folder, or what stands there must not be written.
  explicit AsideFile(const std::string& path);
  ~AsideFile();
  AsideFile(const AsideFile&) = delete;
  AsideFile& operator=(const AsideFile&) = delete;

  /// Appends bytes to the file aside. Throws StorageError where the medium takes no more.
  void Write(const void* data, std::size_t size);
  /// Ends the writing: the content is on the medium under the path when this returns. Throws
  /// StorageError, also where the place must be free and is not; what stands there then stays.
  void Publish(Place place);

 private:
  [[noreturn]] void Fail(const char* doing) const;
  void Sync();
  void TakePlace(Place place);
  void Close() noexcept;

  std::string path_;
  std::string aside_;
  int descriptor_ = -1;
};

}  // namespace QvPlatform::detail
