#include "dialogs/edit/origin_edit.h"

#include <QLabel>
#include <QLineEdit>

#include "dialogs/edit/origin_grid.h"
#include "platform/widgets/limited_text.h"

namespace QvRefSystem {

OriginEdit::OriginEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form)
    : SystemEdit(owner, chooser, form) {
  RowControls& panel = RowOf("pnlOrigin");
  std::vector<QLineEdit*> cells;
  for (const FormRow& row : form.rows) {
    if (row.inPanel) cells.push_back(RowOf(row.control).Line());
  }
  strgridOrigin_ = new OriginGrid(panel.Control(), cells);
  FillPanel("pnlOrigin", strgridOrigin_);
  // Beside the first row of the grid.
  static_cast<QLabel*>(panel.Lead())->setAlignment(Qt::AlignLeading | Qt::AlignTop);
}

void OriginEdit::SetOriginHint(const QString& units) {
  strgridOrigin_->setToolTip(TipOf(units));
}

}  // namespace QvRefSystem
