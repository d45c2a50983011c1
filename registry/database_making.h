#pragma once

#include <string>

#include "platform/ui/user_interface.h"

namespace QvRefSystem {

/// A place where a database is made out of sight, and moved to where it belongs once it is whole.
/// Until Deliver has succeeded nothing stands at the target, and what was made goes with this
/// object. A container that exists already and holds other things is the exception: the tables are
/// made in it, and taken out again.
class DatabaseMaking {
 public:
  /// Makes the empty tables of all that the catalogue opens. `path` is a folder or a container; a
  /// database that stands there is left alone. Throws std::runtime_error or StorageError.
  DatabaseMaking(const std::string& path, bool resourceForm, QvPlatform::TUserInterface& ui);
  ~DatabaseMaking();
  DatabaseMaking(const DatabaseMaking&) = delete;
  DatabaseMaking& operator=(const DatabaseMaking&) = delete;

  /// Where the tables lie now, in the form in which a data module opens them.
  [[nodiscard]] const std::string& Place() const { return place_; }
  /// Moves them to the target; the tables are closed.
  void Deliver();

 private:
  void MakeTables(QvPlatform::TUserInterface& ui) const;
  void RemoveTables() const noexcept;

  std::string target_;
  bool resourceForm_;
  std::string place_;
  /// False where the tables are made in the target itself.
  bool aside_ = true;
  bool delivered_ = false;
};

}  // namespace QvRefSystem
