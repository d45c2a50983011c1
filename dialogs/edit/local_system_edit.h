#pragma once

#include "dialogs/edit/origin_edit.h"

namespace QvRefSystem {

/// The dialog of local systems. A local system is a plane on a sphere; its origin is told in its
/// own axes and unit. Where systems travel in files, the origin does not show, and an edited record
/// keeps what it has there.
class TformQvRfRefSystemLocalEdit final : public OriginEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfRefSystemLocalEdit(QWidget* owner, const Chooser& chooser);

 protected:
  [[nodiscard]] bool Choose(const FormRow& row) override;
};

}  // namespace QvRefSystem
