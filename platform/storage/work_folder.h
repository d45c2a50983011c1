#pragma once

#include <cstddef>
#include <string>

#include "platform/storage/aside_folder.h"

namespace QvPlatform {

/// A hidden folder in which files and databases are made out of sight, on the medium of the place
/// where they belong. It goes, with all that is left in it, when the object goes.
class WorkFolder {
 public:
  /// Makes it in the folder `beside`, which is made with all that is missing of its path. Throws
  /// StorageError where that cannot be.
  explicit WorkFolder(const std::string& beside);

  /// The path of a name in it.
  [[nodiscard]] std::string Path(const std::string& name) const {
    return folder_.Path() + "/" + name;
  }
  /// All that was written in it is on the medium when this returns: one flush, however many files
  /// there are. Throws StorageError.
  void Sync() const;

 private:
  detail::AsideFolder folder_;
};

/// The folder that a path lies in, "." for a bare name.
[[nodiscard]] std::string FolderOf(const std::string& path);
/// Moves a file or a folder to a path under which nothing stands, in one step. Throws StorageError,
/// also where something came into the place first.
void MoveUnflushed(const std::string& from, const std::string& to);
/// The names in a folder are on the medium when this returns. Throws StorageError.
void FlushFolder(const std::string& folder);
/// Does both: the move is on the medium when this returns.
void TakeFreePlace(const std::string& from, const std::string& to);
/// Lets two files, or two folders, take each other's place in one step, so that something whole
/// stands under both paths at any moment. Throws StorageError; both are then as they were.
void ExchangePlaces(const std::string& one, const std::string& other);
/// Writes a file where none stands yet, and leaves the flush to WorkFolder::Sync. Throws
/// StorageError.
void WriteUnflushed(const std::string& path, const void* data, std::size_t size);

}  // namespace QvPlatform
