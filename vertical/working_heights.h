#pragma once

#include "database/data_module.h"

namespace QvRefSystem {

class TQvRfVerticalRefSystemDataProcessor;

/// The height system that an edit dialog works on, beside the stored one of its reference system.
/// It is a record like any other, and so it can outlive its dialog, where the disk is full or the
/// program ends. Therefore it bears a note of who works on it until it is stored with a system, and
/// DropLeft removes those whose dialog is gone.
class WorkingHeights {
 public:
  /// The database must be open, and outlive this.
  explicit WorkingHeights(TdatamoduleQvRfData& data) : data_(data) {}
  /// Forgets the record, and leaves it as it is.
  ~WorkingHeights() { Forget(); }
  WorkingHeights(const WorkingHeights&) = delete;
  WorkingHeights& operator=(const WorkingHeights&) = delete;

  /// Copies the stored height system of that key, and makes the copy current. False, with nothing
  /// copied, if there is none or storage refuses; the user was told then.
  [[nodiscard]] bool Copy(int key);
  /// A height system was made in the dialog, and is worked on from now on. Throws what the table
  /// throws.
  void Take(int key);
  /// The record is stored with a system, in the group of changes that is open, and is no longer
  /// worked on. Throws what the table throws.
  void Keep();
  /// Removes the record that is worked on. Where that cannot be done the user is told, and
  /// DropLeft does it later.
  void Drop();
  /// Removes the records whose dialog has ended without, in this program or in one on this machine
  /// that is not running any more. One that a reference system uses stays, and loses its note. What
  /// storage refuses waits for the next call.
  void DropLeft();

 private:
  void Mark(int key, std::string_view note);
  void Forget();
  [[nodiscard]] bool IsLeft(int key, const std::string& note) const;
  [[nodiscard]] bool IsUsed(int key) const;
  [[nodiscard]] TQvRfVerticalRefSystemDataProcessor& Heights() const;

  TdatamoduleQvRfData& data_;
  int key_ = 0;
};

}  // namespace QvRefSystem
