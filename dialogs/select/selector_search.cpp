#include "dialogs/select/selector_search.h"

#include <QComboBox>
#include <QLabel>
#include <QLocale>
#include <QSignalBlocker>
#include <algorithm>

#include "dialogs/select/selector_controls.h"
#include "platform/text/text.h"
#include "platform/widgets/data_grid.h"
#include "platform/widgets/data_set_model.h"
#include "platform/widgets/qt_text.h"
#include "processors/data_processor.h"

namespace QvRefSystem {

using QvPlatform::FromQt;
using QvPlatform::TextId;
using QvPlatform::Translated;

SelectorSearch::SelectorSearch(const SelectorControls& controls,
                               QvPlatform::DataSetTableModel& rows, TQvRfDataProcessor& processor)
    : controls_(controls), rows_(rows), processor_(processor), names_(*processor.DataSet) {}

std::string SelectorSearch::Text() const {
  return FromQt(controls_.comboSearch->currentText());
}

void SelectorSearch::Apply() {
  const std::string text = Text();
  if (text.empty()) {
    rows_.SetRowFilter({});
  } else {
    rows_.SetRowFilter([this, text](bool rowsChanged) {
      if (rowsChanged) names_.Invalidate();
      return names_.Match(text);
    });
  }
  if (!HasVisibleCurrent()) rows_.MoveToRow(0);
}

void SelectorSearch::Find(bool down) {
  const std::string text = Text();
  const bool found = down ? processor_.FindNextByName(text) : processor_.FindPriorByName(text);
  if (!found) {
    std::string message = QvPlatform::SystemText(TextId::kNotFound);
    const std::size_t place = message.find("%s");
    if (place != std::string::npos) message.replace(place, 2, text);
    processor_.Data().Ui().ShowMessage(QvPlatform::MessageKind::kPlain, message,
                                       QvPlatform::MessageButtons::kOk);
  }
  Remember();
}

// The history keeps a text as it was first typed.
void SelectorSearch::Remember() {
  QComboBox& field = *controls_.comboSearch;
  const QString text = field.currentText();
  const std::string folded = QvPlatform::UpperCase(FromQt(text));
  for (int i = 0; i < field.count(); ++i) {
    if (QvPlatform::UpperCase(FromQt(field.itemText(i))) == folded) return;
  }
  // The first item of a combo box becomes its text, whatever was typed.
  const QSignalBlocker quiet(field);
  field.insertItem(0, text);
  field.setEditText(text);
}

void SelectorSearch::ShowCount(const QString& trouble) {
  const bool active = processor_.DataSet->GetActive();
  const int all = active ? processor_.DataSet->RecordCount() : 0;
  const QString text = controls_.comboSearch->currentText();
  const QLocale locale;
  const QString total = locale.toString(all);
  const QString part = Translated("%1 of %2");
  QLabel& count = *controls_.lblCount;
  // The label has room for its widest text, so that the search field keeps its width meanwhile.
  count.setMinimumWidth(count.fontMetrics().horizontalAdvance(part.arg(total, total)));
  count.setText(text.isEmpty() ? Translated("All %1").arg(total)
                               : part.arg(locale.toString(RowCount()), total));
  count.setToolTip(Translated("Rows that show, of all rows"));
  if (!trouble.isEmpty()) {
    count.setText(Translated("The database cannot be read"));
    count.setToolTip(QStringLiteral("<qt>%1</qt>").arg(trouble.toHtmlEscaped()));
  }
  controls_.dbgridList->SetEmptyText(
      !trouble.isEmpty() ? Translated("The database cannot be read: %1").arg(trouble)
      : all == 0         ? Translated("There is nothing here yet.")
                         : Translated("No name contains \"%1\".").arg(text));
}

void SelectorSearch::KeepCurrentInSight() {
  const int rows = RowCount();
  if (rows == 0 || HasVisibleCurrent()) return;
  rows_.MoveToRow(std::min(rows_.RowAtOrBehind(processor_.DataSet->Position()), rows - 1));
}

bool SelectorSearch::HasVisibleCurrent() const {
  return rows_.CurrentRow() >= 0;
}

int SelectorSearch::RowCount() const {
  return rows_.rowCount();
}

}  // namespace QvRefSystem
