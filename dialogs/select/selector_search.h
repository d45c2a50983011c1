#pragma once

#include <QString>
#include <string>

#include "processors/name_filter.h"

namespace QvPlatform {
class DataSetTableModel;
}

namespace QvRefSystem {

struct SelectorControls;
class TQvRfDataProcessor;

/// The search of a selector. While its field holds a text, the list shows only the rows whose name
/// contains it; the label beside it tells how many these are.
class SelectorSearch {
 public:
  /// `controls`, `rows` and `processor` must outlive the search.
  SelectorSearch(const SelectorControls& controls, QvPlatform::DataSetTableModel& rows,
                 TQvRfDataProcessor& processor);

  /// Shows the rows that the text leaves. Where the current record is not among them, the first of
  /// them becomes current.
  void Apply();
  /// Goes to the next record, or to the previous one, whose name contains the text, and keeps the
  /// text in the history. The user is told if there is none.
  void Find(bool down);
  /// Keeps the text in the history of the field.
  void Remember();
  /// Tells how many rows show, and on an empty list why it is empty. With `trouble`, why the
  /// database cannot be read, it tells that the rows are those that were last read.
  void ShowCount(const QString& trouble);
  /// Where the current record has gone out of sight, the row at its place becomes current, or else
  /// the last one.
  void KeepCurrentInSight();
  /// Whether there is a current record that shows.
  [[nodiscard]] bool HasVisibleCurrent() const;
  /// How many rows show.
  [[nodiscard]] int RowCount() const;

 private:
  [[nodiscard]] std::string Text() const;

  const SelectorControls& controls_;
  QvPlatform::DataSetTableModel& rows_;
  TQvRfDataProcessor& processor_;
  NameFilter names_;
};

}  // namespace QvRefSystem
