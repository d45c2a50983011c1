#pragma once

#include <optional>
#include <string>

#include "platform/storage/aside_folder.h"
#include "platform/ui/user_interface.h"

namespace QvRefSystem {

/// A place where a database is made out of sight, and moved to where it belongs once it is whole.
/// Until Deliver has succeeded nothing stands at the target, and what was made goes with this
/// object. Of two that make a database in one place at once, the first to deliver wins. What a
/// killed one has left goes when the next begins, unless it was about to move tables into a folder
/// that was there before: then the next one moves the rest.
class DatabaseMaking {
 public:
  /// Makes the empty tables of all that the catalogue opens. `path` is a folder or a container; a
  /// database that stands there is left alone. The folders above are made, and the logs and
  /// journals of a database that is gone are settled, the user being told. Throws
  /// std::runtime_error or StorageError.
  DatabaseMaking(const std::string& path, bool resourceForm, QvPlatform::TUserInterface& ui);

  /// Where the tables lie now, in the form in which a data module opens them.
  [[nodiscard]] const std::string& Place() const { return place_; }
  /// Moves them to the target, where they are on the medium when it returns; the tables are closed.
  /// Throws std::runtime_error or StorageError; the target is then as it was.
  void Deliver();

 private:
  void SettleTarget(QvPlatform::TUserInterface& ui) const;
  void ClearLeft(const std::string& parent) const;
  void MakeTables(QvPlatform::TUserInterface& ui) const;
  void DeliverIntoFolder() const;
  void DeliverIntoContainer() const;

  std::string target_;
  bool resourceForm_;
  /// The target is there already, and holds other things.
  bool exists_;
  std::optional<QvPlatform::detail::AsideFolder> aside_;
  std::string place_;
};

}  // namespace QvRefSystem
