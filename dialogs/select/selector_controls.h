#pragma once

class QComboBox;
class QDialog;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QToolButton;
class QWidget;

namespace QvPlatform {
class DataGrid;
}

namespace QvRefSystem {

class DetailsView;

/// The controls of a selector; each bears its name as object name. They belong to the form.
struct SelectorControls {
  QWidget* pnlSearch = nullptr;
  QLabel* lblSearch = nullptr;
  QComboBox* comboSearch = nullptr;
  QToolButton* bitbtnSearchDown = nullptr;
  QToolButton* bitbtnSearchUp = nullptr;
  /// How many of the rows the search text leaves.
  QLabel* lblCount = nullptr;
  QvPlatform::DataGrid* dbgridList = nullptr;
  /// The details view, of which memoDetails is the first page.
  DetailsView* tabDetails = nullptr;
  QPlainTextEdit* memoDetails = nullptr;
  QvPlatform::DataGrid* dbgridShowAll = nullptr;
  QPushButton* bitbtnOk = nullptr;
  QPushButton* bitbtnList = nullptr;
  QPushButton* bitbtnDetails = nullptr;
  QPushButton* bitbtnNew = nullptr;
  QPushButton* bitbtnEdit = nullptr;
  QPushButton* bitbtnRemove = nullptr;
  QPushButton* bitbtnExport = nullptr;
  QPushButton* bitbtnImport = nullptr;
  QPushButton* bitbtnCancel = nullptr;
  QPushButton* bitbtnClose = nullptr;

  /// Makes all controls and lays them out in the order in which Tab walks them.
  void BuildControls(QDialog* form);

 private:
  void BuildSearchRow(QDialog* form);
  void BuildViews(QDialog* form);
  void BuildButtons(QDialog* form);
};

}  // namespace QvRefSystem
