#pragma once

#include <QColor>
#include <QString>
#include <map>
#include <optional>

#include "dialogs/heights/grid_controls.h"
#include "vertical/height_creation.h"

class QBoxLayout;
class QButtonGroup;
class QDialog;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QStackedWidget;

namespace QvPlatform {
class LimitedLine;
class LimitedMemo;
}  // namespace QvPlatform

namespace QvRefSystem {

/// The controls of the dialog of height systems, and how each of them shows what it is told. What
/// they are told, the dialog decides.
class VerticalControls {
 protected:
  /// Makes all controls as children of the form. `errorColour` is that of a state without data.
  void BuildControls(QDialog* form, const QColor& errorColour);

  /// The kind of source whose radio button is checked.
  [[nodiscard]] HeightSourceKind CheckedSource() const;
  /// Checks the radio button of a kind of source, and shows its panel.
  void CheckSource(HeightSourceKind kind);
  /// Shows the panel of the source that is checked, and lets the grid be used if it needs one.
  void ShowSourcePanel();
  /// The kind of data whose radio button is checked; none if neither is enabled.
  [[nodiscard]] std::optional<HeightKind> CheckedData() const;
  /// Enables what can be made of the source as it stands.
  void EnableData(const HeightCreation& heights);
  /// Shows which kind of data there is; the tip tells why there is none.
  void ShowState(std::optional<HeightKind> kind, const QString& why);

  /// Puts a control on the colour of a refusal; its tip says why.
  void Refuse(QWidget* control, const QColor& colour, const QString& why);
  /// Takes the mark of a refusal off a control.
  void ClearMark(QWidget* control);
  /// Takes all marks off.
  void ClearMarks();
  /// Sets the colours anew, after a change of the desktop's.
  void PaintControls();

  QvPlatform::LimitedLine* edName = nullptr;
  QvPlatform::LimitedLine* edAbbreviation = nullptr;
  QvPlatform::LimitedMemo* memoDescription = nullptr;

  QLineEdit* comboDataSourceParamsVertRefsystem = nullptr;
  QPlainTextEdit* memoDataSourceParamsVertRefsystem = nullptr;
  QPushButton* btnDataSourceParamsVertRefsystem = nullptr;
  QLineEdit* edDataSourceParamsFileName = nullptr;
  QPushButton* btnDataSourceParamsFileName = nullptr;
  QLineEdit* comboDataSourceParamsFilePlaneRefsystem = nullptr;
  QPushButton* btnDataSourceParamsFilePlaneRefsystem = nullptr;
  QPushButton* btnDataSourceView = nullptr;
  QLineEdit* edDataSourceParamsVertOffsetValue = nullptr;
  QLineEdit* comboDataSourceParamsVertOffsetUnits = nullptr;
  QLabel* lblDataSourceParamsVertOffsetUnitsAbbr = nullptr;
  QPushButton* btnDataSourceParamsVertOffsetUnits = nullptr;

  QGroupBox* grboxDataGrid = nullptr;
  std::optional<GridControls> grid_;
  QPushButton* Button1 = nullptr;

  QPushButton* btnDataCreate = nullptr;
  QRadioButton* radiobtnDataTable = nullptr;
  QRadioButton* radiobtnDataOffset = nullptr;
  QLabel* pnlDataType = nullptr;
  QPushButton* btnDataView = nullptr;
  QLineEdit* edDataOffset = nullptr;

  QPushButton* bitbtnSave = nullptr;
  QPushButton* bitbtnClose = nullptr;
  QButtonGroup* sources_ = nullptr;

 private:
  struct Mark {
    QColor colour;
    QString why;
  };
  void BuildTexts(QBoxLayout* place);
  void BuildSources(QBoxLayout* place);
  void BuildSystemPanel();
  void BuildFilePanel();
  void BuildOffsetPanel();
  void BuildGrid(QBoxLayout* place);
  void BuildData(QBoxLayout* place);
  void BuildButtons(QBoxLayout* place);
  QWidget* AddPanel(const char* name);
  void PaintMark(QWidget* control);

  QDialog* form_ = nullptr;
  QStackedWidget* panels_ = nullptr;
  std::map<QWidget*, Mark> marks_;
  QColor errorColour_;
  bool gridIsUsed_ = false;
};

}  // namespace QvRefSystem
