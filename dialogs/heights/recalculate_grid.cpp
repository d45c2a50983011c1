#include "dialogs/heights/recalculate_grid.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <algorithm>
#include <utility>

#include "assembly/processor_set.h"
#include "dialogs/base/chooser.h"
#include "dialogs/base/guarded.h"
#include "dialogs/base/row_controls.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::ToQt;
using QvPlatform::Translatable;
using QvPlatform::Translated;

namespace {

constexpr int kMemoLines = 3;

QPushButton* MakeButton(QWidget* parent, const char* objectName, const QString& caption) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(objectName);
  return button;
}

bool IsWhole(const TShell2DTableExtents& grid) {
  const std::string* parts[] = {&grid.West,  &grid.East,         &grid.South,
                                &grid.North, &grid.CellEastWest, &grid.CellNorthSouth};
  return std::none_of(std::begin(parts), std::end(parts),
                      [](const std::string* part) { return part->empty(); });
}

}  // namespace

TformQvRfRecalculateGridParams::TformQvRfRecalculateGridParams(QWidget* owner,
                                                               const Chooser& chooser)
    : ModalForm(owner), chooser_(chooser) {
  setWindowTitle(Translated("Recalculate height system data grid"));
  auto* column = new QVBoxLayout(this);
  auto* sides = new QHBoxLayout;
  column->addLayout(sides, 1);
  BuildSource(sides);
  bitbtnRecalculate = MakeButton(this, "bitbtnRecalculate", QStringLiteral(">>"));
  bitbtnRecalculate->setToolTip(Translated("Recalculate from source to target"));
  bitbtnRecalculate->setAccessibleName(bitbtnRecalculate->toolTip());
  // An arrow between the two sides, no wider than it has to be.
  bitbtnRecalculate->setMaximumWidth(bitbtnRecalculate->fontMetrics().horizontalAdvance("MMMM"));
  sides->addWidget(bitbtnRecalculate);
  BuildTarget(sides);
  BuildButtons();
}

TformQvRfRecalculateGridParams::~TformQvRfRecalculateGridParams() = default;

// --- controls --------------------------------------------------------------------------------

void TformQvRfRecalculateGridParams::BuildSystem(QWidget* box, const char* prefix, Side* side) {
  const QString name = QLatin1String(prefix);
  side->edRefSystemName = new QLineEdit(box);
  side->edRefSystemName->setObjectName(QStringLiteral("ed") + name + "RefSystemName");
  side->edRefSystemName->setAccessibleName(Translated("Reference system"));
  side->edRefSystemName->setReadOnly(true);
  auto* memo = new QPlainTextEdit(box);
  memo->setObjectName(QStringLiteral("memo") + name + "RefSystemDescription");
  memo->setAccessibleName(Translated("Description"));
  memo->setReadOnly(true);
  memo->setTabChangesFocus(true);
  memo->setMinimumHeight(memo->fontMetrics().lineSpacing() * kMemoLines + 2 * memo->frameWidth() +
                         2 * static_cast<int>(memo->document()->documentMargin()));
  side->memoRefSystemDescription = memo;
}

void TformQvRfRecalculateGridParams::BuildSource(QHBoxLayout* place) {
  auto* grboxSource = new QGroupBox(Translated(" Source "), this);
  grboxSource->setObjectName("grboxSource");
  place->addWidget(grboxSource, 1);
  auto* column = new QVBoxLayout(grboxSource);
  auto* plane = new QWidget(grboxSource);
  column->addWidget(plane);
  source_.grid.emplace(plane, QStringLiteral("Src"));

  auto* grboxSrcRefSystem = new QGroupBox(Translated(" Reference System "), grboxSource);
  grboxSrcRefSystem->setObjectName("grboxSrcRefSystem");
  BuildSystem(grboxSrcRefSystem, "Src", &source_);
  btnSrcRefSystemSelect = MakeChoiceButton(grboxSrcRefSystem, "btnSrcRefSystemSelect",
                                           Translatable("Reference system"));
  btnSrcRefSystemSelect->setAutoDefault(false);
  auto* system = new QGridLayout(grboxSrcRefSystem);
  system->addWidget(source_.edRefSystemName, 0, 0);
  system->addWidget(btnSrcRefSystemSelect, 0, 1);
  system->addWidget(source_.memoRefSystemDescription, 1, 0, 1, 2);
  column->addWidget(grboxSrcRefSystem, 1);
  connect(btnSrcRefSystemSelect, &QPushButton::clicked, this,
          [this] { btnSrcRefSystemSelectClick(); });
}

void TformQvRfRecalculateGridParams::BuildTarget(QHBoxLayout* place) {
  auto* grboxTarget = new QGroupBox(Translated(" Target "), this);
  grboxTarget->setObjectName("grboxTarget");
  place->addWidget(grboxTarget, 1);
  auto* column = new QVBoxLayout(grboxTarget);
  auto* plane = new QWidget(grboxTarget);
  column->addWidget(plane);
  target_.grid.emplace(plane, QStringLiteral("Dst"));
  target_.grid->SetReadOnly();
  auto* box = new QGroupBox(Translated(" Reference System "), grboxTarget);
  BuildSystem(box, "Dst", &target_);
  auto* system = new QVBoxLayout(box);
  system->addWidget(target_.edRefSystemName);
  system->addWidget(target_.memoRefSystemDescription);
  column->addWidget(box, 1);
}

void TformQvRfRecalculateGridParams::BuildButtons() {
  btnApply = MakeButton(this, "btnApply", Translated("&Apply"));
  btnClose = MakeButton(this, "btnClose", Translated("Close"));
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(btnApply);
  row->addWidget(btnClose);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  // Enter in a field computes; only a button ends the run.
  bitbtnRecalculate->setDefault(true);
  connect(bitbtnRecalculate, &QPushButton::clicked, this, [this] { bitbtnRecalculateClick(); });
  connect(btnApply, &QPushButton::clicked, this, &QDialog::accept);
  connect(btnClose, &QPushButton::clicked, this, &QDialog::reject);
}

// --- the run ---------------------------------------------------------------------------------

bool TformQvRfRecalculateGridParams::Side::Show(const TShellReferenceSystem& system) {
  edRefSystemName->setText(ToQt(system.Name()));
  edRefSystemName->setCursorPosition(0);
  memoRefSystemDescription->setPlainText(ToQt(system.Description()));
  return grid->ShowAxes(system);
}

void TformQvRfRecalculateGridParams::Side::Clear() {
  edRefSystemName->clear();
  memoRefSystemDescription->clear();
  grid->ShowExtents({});
  grid->ClearAxes();
}

bool TformQvRfRecalculateGridParams::SetTarget(TShellReferenceSystem* target) {
  targetSystem_ = target;
  return target != nullptr && target_.Show(*target);
}

bool TformQvRfRecalculateGridParams::SetSource(std::unique_ptr<TShellReferenceSystem> source) {
  sourceSystem_ = std::move(source);
  return source_.Show(*sourceSystem_);
}

bool TformQvRfRecalculateGridParams::Run(TShellReferenceSystem* target,
                                         TShell2DTableExtents* result) {
  if (IsRunning()) return false;
  bool applied = false;
  if (SetTarget(target) && result != nullptr) {
    bitbtnRecalculateClick();
    applied = RunModal() == QDialog::Accepted;
    if (applied) *result = target_.grid->Extents();
  }
  sourceSystem_.reset();
  targetSystem_ = nullptr;
  return applied;
}

void TformQvRfRecalculateGridParams::FormShow(bool first) {
  ModalForm::FormShow(first);
  // Back from the choice of a system, the form keeps what was typed.
  if (!first) return;
  source_.Clear();
  source_.grid->Edit(GridControls::kNorth)->setFocus();
}

void TformQvRfRecalculateGridParams::btnSrcRefSystemSelectClick() {
  Guarded(datamoduleQvRfData->Ui(), [this] {
    ObjectList* systems = chooser_.ListFor(this, TObjectType::kReferenceSystem);
    TStringTree tree;
    if (systems == nullptr || !systems->Select({.tree = &tree})) return;
    std::string reason;
    auto source = CreateShellReferenceSystem(&tree, nullptr, &reason);
    if (source == nullptr) throw GeodesyError(reason);
    (void)SetSource(std::move(source));
    bitbtnRecalculateClick();
  });
}

void TformQvRfRecalculateGridParams::bitbtnRecalculateClick() {
  TShell2DTableExtents computed;
  const TShell2DTableExtents known = source_.grid->Extents();
  const bool done =
      sourceSystem_ != nullptr && IsWhole(known) && Guarded(datamoduleQvRfData->Ui(), [&] {
        if (!sourceSystem_->RecalculateTableGrid(&known, targetSystem_, &computed)) computed = {};
      });
  target_.grid->ShowExtents(done ? computed : TShell2DTableExtents{});
}

}  // namespace QvRefSystem
