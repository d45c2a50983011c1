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
  /// Holds the search row: label, field, arrows and count.
  QWidget* pnlSearch = nullptr;
  /// The label of the search field, with its shortcut.
  QLabel* lblSearch = nullptr;
  /// The search field, whose items are the texts of earlier searches.
  QComboBox* comboSearch = nullptr;
  /// Goes to the next record that the text fits.
  QToolButton* bitbtnSearchDown = nullptr;
  /// Goes to the previous record that the text fits.
  QToolButton* bitbtnSearchUp = nullptr;
  /// Tells how many of the rows the search text leaves.
  QLabel* lblCount = nullptr;
  /// The list: names and descriptions of the records that the search leaves.
  QvPlatform::DataGrid* dbgridList = nullptr;
  /// The details of the current record; hidden while the list shows.
  DetailsView* tabDetails = nullptr;
  /// The description of the current record, the first page of the details view.
  QPlainTextEdit* memoDetails = nullptr;
  /// Covers the form with all fields of the table; hidden until a key asks for it.
  QvPlatform::DataGrid* dbgridShowAll = nullptr;
  /// Chooses the current record and ends the run.
  QPushButton* bitbtnOk = nullptr;
  /// Shows the list in the place of the details.
  QPushButton* bitbtnList = nullptr;
  /// Shows the details in the place of the list.
  QPushButton* bitbtnDetails = nullptr;
  /// Makes a record.
  QPushButton* bitbtnNew = nullptr;
  /// Changes the current record.
  QPushButton* bitbtnEdit = nullptr;
  /// Removes the current record.
  QPushButton* bitbtnRemove = nullptr;
  /// Writes the current object to a file, or with Shift held all objects to a folder.
  QPushButton* bitbtnExport = nullptr;
  /// Takes an object from a file.
  QPushButton* bitbtnImport = nullptr;
  /// Ends a choice without one.
  QPushButton* bitbtnCancel = nullptr;
  /// Ends a run in which nothing is chosen.
  QPushButton* bitbtnClose = nullptr;

  /// Makes all controls and lays them out in the order in which Tab walks them.
  void BuildControls(QDialog* form);

 private:
  void BuildSearchRow(QDialog* form);
  void BuildViews(QDialog* form);
  void BuildButtons(QDialog* form);
};

}  // namespace QvRefSystem
