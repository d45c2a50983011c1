#pragma once

#include <string>

namespace QvPlatform {

/// A hidden folder in which files are made out of sight, on the medium of the place where they
/// belong. It goes, with all that is left in it, when the object goes.
class AsideFolder {
 public:
  /// Makes it in the folder `beside`, which is made with all that is missing of its path. Throws
  /// StorageError where that cannot be.
  explicit AsideFolder(const std::string& beside);
  ~AsideFolder();
  AsideFolder(const AsideFolder&) = delete;
  AsideFolder& operator=(const AsideFolder&) = delete;

  /// The path of a name in it.
  [[nodiscard]] std::string Path(const std::string& name) const { return path_ + "/" + name; }
  /// All that was written in it is on the medium when this returns: one flush, however many files
  /// there are. Throws StorageError.
  void Sync() const;

 private:
  std::string path_;
};

/// What belongs into a folder but is written without a flush of its own: what a path's folder is,
/// "." for a bare name.
[[nodiscard]] std::string FolderOf(const std::string& path);
/// Moves a file or a folder to a path under which nothing stands, in one step. Throws StorageError,
/// also where something came into the place first.
void MoveToFreePlace(const std::string& from, const std::string& to);
/// Lets two files, or two folders, take each other's place in one step, so that something whole
/// stands under both paths at any moment. Throws StorageError; both are then as they were.
void ExchangePlaces(const std::string& one, const std::string& other);
/// The names in a folder are on the medium when this returns, as far as its owner may flush it.
void SyncFolder(const std::string& folder) noexcept;
/// Writes a file that has no place to lose: nothing may stand under the path yet, and the flush is
/// left to AsideFolder::Sync. Throws StorageError.
void WriteUnflushed(const std::string& path, const void* data, std::size_t size);

}  // namespace QvPlatform
