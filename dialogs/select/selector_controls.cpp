#include "dialogs/select/selector_controls.h"

#include <QComboBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "dialogs/select/details_view.h"
#include "platform/widgets/data_grid.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::DataGrid;
using QvPlatform::Translatable;
using QvPlatform::Translated;

namespace {

struct ButtonRow {
  QPushButton* SelectorControls::*button;
  const char* objectName;
  const char* caption;
  const char* toolTip;
};

// The bottom row from the left. List and Details share a spot, as do Cancel and Close: of each pair
// one is hidden at any time.
constexpr ButtonRow kButtons[] = {
    {&SelectorControls::bitbtnOk, "bitbtnOk", Translatable("OK"),
     Translatable("Choose the current row (Ctrl+Enter)")},
    {&SelectorControls::bitbtnList, "bitbtnList", Translatable("&List"),
     Translatable("Back to the list")},
    {&SelectorControls::bitbtnDetails, "bitbtnDetails", Translatable("&Details"),
     Translatable("Describe the current row")},
    {&SelectorControls::bitbtnNew, "bitbtnNew", Translatable("&New"),
     Translatable("Make a new object (Insert)")},
    {&SelectorControls::bitbtnEdit, "bitbtnEdit", Translatable("&Edit"),
     Translatable("Change the current object")},
    {&SelectorControls::bitbtnRemove, "bitbtnRemove", Translatable("&Remove"),
     Translatable("Remove the current object (Delete)")},
    {&SelectorControls::bitbtnExport, "bitbtnExport", Translatable("E&xport..."),
     Translatable("Write the current object to a file; with Shift held, all objects to a folder")},
    {&SelectorControls::bitbtnImport, "bitbtnImport", Translatable("&Import..."),
     Translatable("Take an object from a file")},
    {&SelectorControls::bitbtnCancel, "bitbtnCancel", Translatable("Cancel"), ""},
    {&SelectorControls::bitbtnClose, "bitbtnClose", Translatable("Close"), ""},
};

QToolButton* MakeArrow(QWidget* parent, const char* objectName, Qt::ArrowType arrow,
                       const char* name, const char* toolTip) {
  auto* button = new QToolButton(parent);
  button->setObjectName(objectName);
  button->setArrowType(arrow);
  button->setAccessibleName(Translated(name));
  button->setToolTip(Translated(toolTip));
  button->setFocusPolicy(Qt::StrongFocus);
  return button;
}

}  // namespace

void SelectorControls::BuildControls(QDialog* form) {
  auto* column = new QVBoxLayout(form);
  BuildSearchRow(form);
  BuildViews(form);
  column->addWidget(pnlSearch);
  column->addWidget(dbgridList, 1);
  column->addWidget(tabDetails, 1);
  BuildButtons(form);
}

void SelectorControls::BuildSearchRow(QDialog* form) {
  pnlSearch = new QWidget(form);
  pnlSearch->setObjectName("pnlSearch");
  auto* row = new QHBoxLayout(pnlSearch);
  row->setContentsMargins(0, 0, 0, 0);

  lblSearch = new QLabel(Translated("&Search"), pnlSearch);
  lblSearch->setObjectName("lblSearch");
  comboSearch = new QComboBox(pnlSearch);
  comboSearch->setObjectName("comboSearch");
  comboSearch->setEditable(true);
  comboSearch->setInsertPolicy(QComboBox::NoInsert);
  comboSearch->setCompleter(nullptr);
  comboSearch->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  comboSearch->setMinimumContentsLength(12);
  comboSearch->lineEdit()->setPlaceholderText(Translated("Type a part of the name, or a code"));
  comboSearch->setAccessibleName(Translated("Search"));
  lblSearch->setBuddy(comboSearch);
  bitbtnSearchDown =
      MakeArrow(pnlSearch, "bitbtnSearchDown", Qt::DownArrow, Translatable("Search down"),
                Translatable("Next row whose name contains the text (F3)"));
  bitbtnSearchUp = MakeArrow(pnlSearch, "bitbtnSearchUp", Qt::UpArrow, Translatable("Search up"),
                             Translatable("Previous row whose name contains the text (Shift+F3)"));
  lblCount = new QLabel(pnlSearch);
  lblCount->setObjectName("lblCount");
  for (QWidget* widget : std::initializer_list<QWidget*>{lblSearch, comboSearch, bitbtnSearchDown,
                                                         bitbtnSearchUp, lblCount}) {
    row->addWidget(widget);
  }
}

void SelectorControls::BuildViews(QDialog* form) {
  dbgridList = new DataGrid(form);
  dbgridList->setObjectName("dbgridList");
  dbgridList->setAccessibleName(Translated("List"));

  tabDetails = new DetailsView(form);
  tabDetails->hide();
  memoDetails = tabDetails->Description();

  // Outside the layout: it covers the whole form.
  dbgridShowAll = new DataGrid(form);
  dbgridShowAll->setObjectName("dbgridShowAll");
  dbgridShowAll->setAccessibleName(Translated("All fields"));
  dbgridShowAll->hide();
  dbgridShowAll->setEnabled(false);
}

void SelectorControls::BuildButtons(QDialog* form) {
  auto* row = new QHBoxLayout;
  int width = 0;
  for (const ButtonRow& spec : kButtons) {
    auto* button = new QPushButton(Translated(spec.caption), form);
    button->setObjectName(spec.objectName);
    button->setToolTip(Translated(spec.toolTip));
    this->*spec.button = button;
    width = std::max(width, button->sizeHint().width());
    row->addWidget(button);
  }
  for (const ButtonRow& spec : kButtons)
    (this->*spec.button)->setMinimumWidth(width);
  bitbtnList->hide();
  row->addStretch(1);
  static_cast<QVBoxLayout*>(form->layout())->addLayout(row);
}

}  // namespace QvRefSystem
