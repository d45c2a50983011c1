#pragma once

#include <QColor>
#include <QString>
#include <vector>

#include "dialogs/base/form_state.h"
#include "forms/form_record.h"

class QAbstractButton;
class QAction;
class QButtonGroup;
class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QPlainTextEdit;
class QPushButton;
class QSplitter;
class QToolButton;
class QVBoxLayout;
class QWidget;

namespace QvPlatform {
class LimitedLine;
}

namespace QvRefSystem {

/// The controls of one row of an edit dialog: what stands in front, what holds the value, the "..."
/// of a reference, and the mark that somebody else has changed the row. The background tells the
/// row's state: refused, not in use, or normal.
class RowControls : public QObject {
  Q_OBJECT

 public:
  /// Makes the controls as children of the form. `row` must outlive them.
  RowControls(const FormRow& row, QWidget* form);

  /// Shows a value in the control; what the row's kind has no use for is left out.
  void Show(const FormValue& value);
  /// Takes over what the user has typed or picked. The key of a reference is not in the control and
  /// stays as it is.
  void Read(FormValue* value) const;
  /// Whether the row is needed, and its lead lets it be used; only then is it checked.
  [[nodiscard]] bool IsUsed() const;
  /// A row that is not needed is disabled, its lead and its button with it.
  void SetNeeded(bool needed);
  /// A control that is not in use shows its text, and cannot be changed.
  void SetUsable(bool usable);
  /// Gives the control that background, and the reason as its tip, until ClearMark.
  void Refuse(const QColor& colour, const QString& reason);
  /// Takes the mark of a refusal away; the hint is the tip again.
  void ClearMark();
  /// What the controls show. The key of a reference is not among them.
  [[nodiscard]] RowState State() const;
  /// Shows that again, but for the lead.
  void Put(const RowState& state);
  /// Shows the mark that somebody else has changed the row, with his value in its tip, until
  /// ClearTheirs. A click on it emits TheirsWanted.
  void ShowTheirs(const QString& value);
  /// Takes that mark away.
  void ClearTheirs();
  /// What the control tells about itself while it is not refused.
  void SetHint(const QString& hint);
  /// Sets the colours anew, after a change of the desktop's.
  void Paint();
  /// Limits what can be typed, to the width of a field.
  void SetLimit(int characters);

  /// The description that the controls were made from.
  [[nodiscard]] const FormRow& Row() const { return *row_; }
  /// What stands in front: a label, a radio button or a check box; null for a row without one.
  [[nodiscard]] QWidget* Lead() const { return lead_; }
  /// What holds the value, or the box or panel of the row; null for a row without one.
  [[nodiscard]] QWidget* Control() const { return control_; }
  /// The "..." of a reference; null for all other rows.
  [[nodiscard]] QPushButton* Button() const { return button_; }
  /// The mark of ShowTheirs beside the control; null for rows that have it inside of the control,
  /// or none.
  [[nodiscard]] QToolButton* Mark() const { return mark_; }
  /// Null for a row whose lead is a label.
  [[nodiscard]] QAbstractButton* LeadButton() const;
  /// Null for a row that is not one line of text.
  [[nodiscard]] QvPlatform::LimitedLine* Line() const;
  /// Null for a row that is not a list of given items.
  [[nodiscard]] QComboBox* List() const;
  /// Whether Refuse has marked the control, and ClearMark has not been called since.
  [[nodiscard]] bool IsRefused() const { return refused_; }

 signals:
  /// The user wants the other's value in the row.
  void TheirsWanted();

 private:
  void MakeMark(QWidget* form);
  void MakeLead(QWidget* form);
  void MakeControl(QWidget* form);
  void MakeButton(QWidget* form);

  const FormRow* row_;
  QWidget* lead_ = nullptr;
  QWidget* control_ = nullptr;
  QPushButton* button_ = nullptr;
  QToolButton* mark_ = nullptr;
  /// The mark of a line that a panel places.
  QAction* markInside_ = nullptr;
  bool usable_ = true;
  bool needed_ = true;
  bool refused_ = false;
  QColor errorColour_;
  QString hint_;
};

/// Lays rows out: leads in one column, controls in the other, columns and boxes side by side.
class RowLayout {
 public:
  /// Lays the rows out in `place`, which must outlive the layout.
  explicit RowLayout(QVBoxLayout* place);
  /// Puts the controls of a row below those of the row before. To be called in the form's order.
  void Add(const RowControls& row);
  /// Brings the rows above and below the columns in line. To be called when all rows are in.
  void Align();

 private:
  void AddColumn(QWidget* column);
  void AddBox(QWidget* box);
  void BeginColumn(const RowControls& row);
  void EndColumns();

  QVBoxLayout* place_;
  QGridLayout* grid_ = nullptr;
  QHBoxLayout* columns_ = nullptr;
  QSplitter* boxes_ = nullptr;
  /// The grids that take the whole width, and the width of their widest lead.
  std::vector<QGridLayout*> wholes_;
  int leadWidth_ = 0;
};

/// Gives a control a background, and a colour of text that can be read on it; an invalid colour
/// gives it those of the desktop.
void SetBackground(QWidget* control, const QColor& colour);

/// A tip with that text. Names of records show as they are: a tip takes no markup from them, and
/// breaks its lines.
[[nodiscard]] QString TipOf(const QString& text);

/// Brings what stands in front of a memo in line with the first line of its text.
void AlignWithText(QWidget* lead, const QPlainTextEdit& memo);

/// A "..." that chooses what its tip calls by `caption`.
[[nodiscard]] QPushButton* MakeChoiceButton(QWidget* parent, const char* objectName,
                                            const char* caption);

}  // namespace QvRefSystem
