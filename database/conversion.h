#pragma once

#include <string>

#include "platform/dbset/data_set.h"
#include "platform/ui/user_interface.h"

namespace QvRefSystem {

/// Brings an older reference system table, one without the fields for heights, up to date.
///
/// The old table keeps its place until the new one stands whole beside it and takes that place in
/// one step, so that a stop at any moment leaves one of the two under the table's name, and the
/// next opening goes on from there. It works under the lock of a writer, and in a container inside
/// an open group of changes, so that only one of those who open the database converts it.
class RefSystemConversion {
 public:
  /// Closes `table`, the data set of the old table, whose buffer names its stream. `scratch` is a
  /// data set that is free meanwhile. All must outlive this.
  RefSystemConversion(QvPlatform::TQvDataSet& table, QvPlatform::TQvDataSet& scratch,
                      QvPlatform::TUserInterface& ui);

  /// Makes the new table out of `backup`, the stream of a copy of the old one, beside the stream
  /// name `place`, puts it under the table's name and opens it. The user sees the course of it and
  /// cannot stop it. False, or what the tables throw, with the old table as it was and closed.
  [[nodiscard]] bool Run(const std::string& backup, const std::string& place);

 private:
  void FillFrom(const std::string& backup);

  QvPlatform::TQvDataSet& table_;
  QvPlatform::TQvDataSet& scratch_;
  QvPlatform::TUserInterface& ui_;
};

}  // namespace QvRefSystem
