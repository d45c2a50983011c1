#include "dialogs/edit/local_system_edit.h"

#include <QLabel>
#include <QLineEdit>

#include "dialogs/base/chooser.h"
#include "dialogs/edit/origin_grid.h"
#include "platform/widgets/limited_text.h"

namespace QvRefSystem {

TformQvRfRefSystemLocalEdit::TformQvRfRefSystemLocalEdit(QWidget* owner, const Chooser& chooser)
    : OriginEdit(owner, chooser, kLocalSystemForm) {
  const auto follow = [this](const char* control, auto&& show) {
    connect(RowOf(control).Line(), &QLineEdit::textChanged, this, show);
  };
  follow("edXname", [this](const QString& name) { Origin().SetAxisName(0, name); });
  follow("edYname", [this](const QString& name) { Origin().SetAxisName(1, name); });
  follow("edLinearUnit", [this](const QString& name) { SetOriginHint(name); });
  if (!Data().ShowImportExport) return;
  // Systems that travel have no origin. The cells keep what an edited record has there.
  Origin().setFixedHeight(0);
  Origin().hide();
  RowOf("pnlOrigin").Control()->hide();
  RowOf("pnlOrigin").Lead()->hide();
}

bool TformQvRfRefSystemLocalEdit::Choose(const FormRow& row) {
  if (row.object != TObjectType::kEllipsoid) return OriginEdit::Choose(row);
  return ListOf(row.object).SelectWhere(kSpheres, {});
}

}  // namespace QvRefSystem
