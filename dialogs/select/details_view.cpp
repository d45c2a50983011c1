#include "dialogs/select/details_view.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QToolButton>
#include <memory>
#include <utility>

#include "dialogs/select/area_map.h"
#include "platform/data/tree_ids.h"
#include "platform/geocore/projjson.h"
#include "platform/geocore/wkt2.h"
#include "platform/widgets/qt_text.h"
#include "registry/area_of_use.h"

namespace QvRefSystem {

using QvCommonUtils::TStringTree;
using QvPlatform::ToQt;
using QvPlatform::Translated;

DetailsView::DetailsView(QWidget* parent) : QTabWidget(parent) {
  setObjectName("tabDetails");
  setDocumentMode(true);
  copy_ = new QAction(Translated("&Copy as text"), this);
  copy_->setToolTip(Translated("The text of this page goes to the clipboard"));
  connect(copy_, &QAction::triggered, this, [this] { CopyAsText(); });
  auto* btnCopy = new QToolButton(this);
  btnCopy->setObjectName("btnCopy");
  btnCopy->setDefaultAction(copy_);
  btnCopy->setToolButtonStyle(Qt::ToolButtonTextOnly);
  btnCopy->setAutoRaise(true);
  btnCopy->setFocusPolicy(Qt::StrongFocus);
  setCornerWidget(btnCopy);
  BuildDescription();
  connect(this, &QTabWidget::currentChanged, this, [this] { FillPage(); });
}

QPlainTextEdit* DetailsView::MakeMemo(const char* objectName, const QString& accessibleName) {
  auto* memo = new QPlainTextEdit(this);
  memo->setObjectName(objectName);
  memo->setAccessibleName(accessibleName);
  memo->setReadOnly(true);
  memo->setTabChangesFocus(true);
  memo->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  memo->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(memo, &QWidget::customContextMenuRequested, this,
          [this, memo](const QPoint& place) { ShowContextMenu(memo, place); });
  return memo;
}

void DetailsView::BuildDescription() {
  auto* page = new QWidget(this);
  auto* row = new QHBoxLayout(page);
  row->setContentsMargins(0, 0, 0, 0);
  memoDetails = MakeMemo("memoDetails", Translated("Details"));
  row->addWidget(memoDetails, 3);
  addTab(page, Translated("D&escription"));
}

void DetailsView::SetSystemSource(TreeSource source) {
  source_ = std::move(source);
  if (pnlMap == nullptr) BuildSystemPages();
}

void DetailsView::BuildSystemPages() {
  pnlMap = new QWidget(this);
  auto* column = new QVBoxLayout(pnlMap);
  column->setContentsMargins(0, 0, 0, 0);
  mapArea = new AreaMap(pnlMap);
  lblArea = new QLabel(pnlMap);
  lblArea->setObjectName("lblArea");
  lblArea->setWordWrap(true);
  lblArea->setTextFormat(Qt::PlainText);
  lblArea->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lblArea->setAlignment(Qt::AlignLeading | Qt::AlignTop);
  // A long name leaves the map its place, and can be read whole by pointing at it.
  constexpr int kMostLines = 4;
  lblArea->setMaximumHeight(kMostLines * lblArea->fontMetrics().lineSpacing());
  column->addWidget(mapArea, 1);
  column->addWidget(lblArea);
  static_cast<QHBoxLayout*>(widget(0)->layout())->addWidget(pnlMap, 2);
  pnlMap->hide();
  memoWkt = MakeMemo("memoWkt", Translated("WKT 2"));
  memoWkt->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  memoWkt->setLineWrapMode(QPlainTextEdit::NoWrap);
  addTab(memoWkt, Translated("&WKT 2"));
}

void DetailsView::ShowObject(const std::vector<std::string>& lines) {
  QStringList text;
  for (const std::string& line : lines)
    text << ToQt(line);
  memoDetails->setPlainText(text.join(QLatin1Char('\n')));
  tree_.reset();
  mapIsStale_ = true;
  wktIsStale_ = true;
  FillPage();
}

void DetailsView::FillPage() {
  if (!source_) return;
  if (PageMemo() == memoWkt) {
    if (std::exchange(wktIsStale_, false)) FillWkt();
  } else if (std::exchange(mapIsStale_, false)) {
    FillMap();
  }
}

const TStringTree* DetailsView::Tree() {
  if (!tree_) {
    tree_.emplace();
    whole_ = source_(&*tree_);
  }
  return whole_ ? &*tree_ : nullptr;
}

void DetailsView::FillMap() {
  const TStringTree* tree = Tree();
  int code = 0;
  std::optional<AreaOfUse> area;
  if (tree != nullptr && tree->GetInteger(TreeIds::kGeoTiffSystem.id, 0, &code)) {
    area = AreaOfUseOf(code);
  }
  pnlMap->setVisible(area.has_value());
  if (!area) return;
  mapArea->SetArea(*area);
  lblArea->setText(
      Translated("Area of use of EPSG:%1: %2").arg(QString::number(code), ToQt(area->name)));
  lblArea->setToolTip(lblArea->text().toHtmlEscaped());
}

void DetailsView::FillWkt() {
  const TStringTree* tree = Tree();
  std::string wkt;
  std::string error;
  if (tree == nullptr) {
    memoWkt->setPlainText(
        Translated("The system refers to an object that is not in the database."));
  } else if (TreeToWkt2(tree, Dimension::kTwo, &wkt, &error)) {
    memoWkt->setPlainText(ToQt(wkt));
  } else {
    memoWkt->setPlainText(Translated("There is no WKT 2 of this system: %1").arg(ToQt(error)));
  }
}

QPlainTextEdit* DetailsView::PageMemo() const {
  return memoWkt != nullptr && currentWidget() == memoWkt ? memoWkt : memoDetails;
}

void DetailsView::FocusPage() {
  PageMemo()->setFocus();
}

void DetailsView::CopyAsText() {
  QApplication::clipboard()->setText(PageMemo()->toPlainText());
}

void DetailsView::ShowContextMenu(QPlainTextEdit* memo, const QPoint& place) {
  const std::unique_ptr<QMenu> menu(memo->createStandardContextMenu(place));
  menu->addSeparator();
  menu->addAction(copy_);
  menu->exec(memo->viewport()->mapToGlobal(place));
}

}  // namespace QvRefSystem
