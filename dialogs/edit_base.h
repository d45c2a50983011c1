#pragma once

#include "platform/widgets/modal_form.h"

namespace QvRefSystem {

/// An edit dialog, as its selector drives it. Both operations act on the current record of the
/// object's data set, and leave the saved record current when they return true.
class TformQvRfEdit : public QvPlatform::TModalForm {
 public:
  using TModalForm::TModalForm;

  [[nodiscard]] virtual bool EditCurrent() = 0;
  [[nodiscard]] virtual bool CreateNew() = 0;
};

}  // namespace QvRefSystem
