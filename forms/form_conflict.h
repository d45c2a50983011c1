#pragma once

#include "platform/dbset/data_set_error.h"

namespace QvRefSystem {

/// Somebody else has changed what a record says, or removed it, since a form was filled from it.
/// Nothing was stored.
class FormConflict : public QvPlatform::StaleRecordError {
 public:
  /// `removed`: the record is not there any more.
  explicit FormConflict(bool removed)
      : StaleRecordError(removed ? "the record was deleted by somebody else in the meantime"
                                 : "the record was changed by somebody else in the meantime"),
        removed_(removed) {}

  /// Whether the record is not there any more.
  [[nodiscard]] bool IsRemoved() const { return removed_; }

 private:
  bool removed_;
};

}  // namespace QvRefSystem
