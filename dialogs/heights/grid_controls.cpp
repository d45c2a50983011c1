#include "dialogs/heights/grid_controls.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <exception>

#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::ToQt;
using QvPlatform::Translatable;
using QvPlatform::Translated;

namespace {

struct PartRow {
  GridControls::Part part;
  const char* objectName;
  /// What a part is called. The name of its axis stands beside a side.
  const char* name;
  /// The caption over a step; empty for a side.
  const char* caption;
  std::string TShell2DTableExtents::*field;
  int row;
  int column;
  [[nodiscard]] bool IsSide() const { return part < GridControls::kStepWE; }
};

constexpr PartRow kParts[] = {
    {GridControls::kNorth, "DataGridExtentsNorth", Translatable("North"), "",
     &TShell2DTableExtents::North, 0, 1},
    {GridControls::kWest, "DataGridExtentsWest", Translatable("West"), "",
     &TShell2DTableExtents::West, 1, 0},
    {GridControls::kEast, "DataGridExtentsEast", Translatable("East"), "",
     &TShell2DTableExtents::East, 1, 2},
    {GridControls::kSouth, "DataGridExtentsSouth", Translatable("South"), "",
     &TShell2DTableExtents::South, 2, 1},
    {GridControls::kStepWE, "DataGridStepWE", Translatable("Step from west to east"),
     Translatable("Step W-E"), &TShell2DTableExtents::CellEastWest, 3, 0},
    {GridControls::kStepNS, "DataGridStepNS", Translatable("Step from north to south"),
     Translatable("Step N-S"), &TShell2DTableExtents::CellNorthSouth, 3, 2},
};

// The index of the one of the first two axes that runs through a side.
int AxisOf(GridControls::Part side, bool firstIsNorth) {
  const bool northSouth = side == GridControls::kNorth || side == GridControls::kSouth;
  return northSouth == firstIsNorth ? 0 : 1;
}

}  // namespace

GridControls::GridControls(QWidget* box, const QString& prefix) : layout_(new QGridLayout(box)) {
  for (const PartRow& row : kParts) {
    const QString name = prefix + QLatin1String(row.objectName);
    const QString called = Translated(row.name);
    auto* label = new QLabel(box);
    label->setTextFormat(Qt::PlainText);
    label->setObjectName(QStringLiteral("lbl") + name);
    if (!row.IsSide()) label->setText(Translated(row.caption));
    auto* edit = new QLineEdit(box);
    edit->setObjectName(QStringLiteral("ed") + name);
    edit->setAccessibleName(called);
    edit->setToolTip(called);
    if (row.IsSide()) edit->setPlaceholderText(called);
    edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("-0000000.00")));
    // Each label stands over its edit.
    layout_->addWidget(label, 2 * row.row, row.column);
    layout_->addWidget(edit, 2 * row.row + 1, row.column);
    edits_[row.part] = edit;
    labels_[row.part] = label;
    layout_->setColumnStretch(row.column, 1);
  }
}

TShell2DTableExtents GridControls::Extents() const {
  TShell2DTableExtents extents;
  for (const PartRow& row : kParts)
    extents.*row.field = QvPlatform::FromQt(edits_[row.part]->text());
  return extents;
}

void GridControls::ShowExtents(const TShell2DTableExtents& extents) {
  for (const PartRow& row : kParts)
    edits_[row.part]->setText(ToQt(extents.*row.field));
}

bool GridControls::ShowAxes(const TShellReferenceSystem& system) {
  try {
    const QString names[] = {ToQt(system.AxisName(0)), ToQt(system.AxisName(1))};
    const bool firstIsNorth = system.IsFirstAxisNorth();
    for (const PartRow& row : kParts) {
      if (row.IsSide()) labels_[row.part]->setText(names[AxisOf(row.part, firstIsNorth)]);
    }
    return true;
  } catch (const std::exception&) {
    ClearAxes();
    return false;
  }
}

void GridControls::ClearAxes() {
  for (const PartRow& row : kParts) {
    if (row.IsSide()) labels_[row.part]->clear();
  }
}

void GridControls::SetReadOnly() {
  for (QLineEdit* edit : edits_) {
    edit->setReadOnly(true);
    edit->setPlaceholderText({});
  }
}

}  // namespace QvRefSystem
