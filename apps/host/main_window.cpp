#include "apps/host/main_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "apps/host/tree_view.h"
#include "database/data_module.h"
#include "database/storage_files.h"
#include "dialogs/base/guarded.h"
#include "dialogs/base/store_watch.h"
#include "dialogs/select/import_export.h"
#include "platform/data/tree_members.h"
#include "platform/widgets/file_dialogs.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::FromQt;
using QvPlatform::ToQt;
using QvPlatform::Translatable;
using QvPlatform::Translated;

namespace {

constexpr const char* kTreeFilter = Translatable(
    "Reference systems as text (*.reference system)|*.reference system|"
    "Reference systems in XML (*.x-ref-system)|*.x-ref-system|All files (*.*)|*.*");
constexpr int kXmlFilter = 2;

QPlainTextEdit* MakeMemo(QWidget* parent, const char* objectName) {
  auto* memo = new QPlainTextEdit(parent);
  memo->setObjectName(objectName);
  memo->setReadOnly(true);
  memo->setTabChangesFocus(true);
  return memo;
}

}  // namespace

MainWindow::MainWindow(QSettings& settings, QvPlatform::TUserInterface& ui)
    : settings_(settings), ui_(ui), editor_(ui), watch_(StoreWatch::Shared()) {
  setObjectName("refframeHost");
  BuildActions();
  BuildMenus();
  BuildCentre();
  lblDatabase_ = new QLabel(this);
  lblDatabase_->setObjectName("lblDatabase");
  lblDatabase_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  statusBar()->addPermanentWidget(lblDatabase_);
  LoadOptions();
  resize(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 42);
  restoreGeometry(settings_.value("window/geometry").toByteArray());
  UpdateState();
  watch_->Watch(this);
  connect(watch_.get(), &StoreWatch::Changed, this, [this] { UpdateState(); });
}

MainWindow::~MainWindow() = default;

QAction* MainWindow::AddAction(const char* objectName, const char* text, const QKeySequence& keys,
                               void (MainWindow::*slot)()) {
  auto* action = new QAction(Translated(text), this);
  action->setObjectName(objectName);
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this,
          [this, slot] { Guarded(ui_, [&] { (this->*slot)(); }); });
  return action;
}

void MainWindow::BuildActions() {
  actOpenTree_ = AddAction("actOpenTree", Translatable("&Open tree..."), QKeySequence::Open,
                           &MainWindow::AskTree);
  actSaveTree_ = AddAction("actSaveTree", Translatable("&Save tree..."), QKeySequence::Save,
                           &MainWindow::SaveTree);
  actChoose_ =
      AddAction("actChoose", Translatable("&Choose..."), Qt::CTRL | Qt::Key_R, &MainWindow::Choose);
  actInsert_ =
      AddAction("actInsert", Translatable("&Insert"), Qt::CTRL | Qt::Key_I, &MainWindow::Insert);
  actInsert_->setToolTip(Translated("Store this system in the database"));
  actInfo_ = AddAction("actInfo", Translatable("I&nfo"), QKeySequence(), &MainWindow::ShowInfo);
  actInfo_->setToolTip(Translated("Describe the system that is current in the database"));
  actOpenFolder_ = AddAction("actOpenFolder", Translatable("Open database &folder..."),
                             QKeySequence(), &MainWindow::AskFolder);
  actOpenContainer_ = AddAction("actOpenContainer", Translatable("Open database &container..."),
                                QKeySequence(), &MainWindow::AskContainer);
  actManage_ = AddAction("actManage", Translatable("&Manage database..."), Qt::CTRL | Qt::Key_M,
                         &MainWindow::ManageDatabase);
  actManage_->setToolTip(Translated("Show and change the objects of every type"));
  actOptions_ = AddAction("actOptions", Translatable("&Dialog options..."), QKeySequence(),
                          &MainWindow::AskOptions);
}

void MainWindow::BuildMenus() {
  auto* actQuit = new QAction(Translated("&Quit"), this);
  actQuit->setShortcut(QKeySequence::Quit);
  connect(actQuit, &QAction::triggered, this, &QWidget::close);

  QMenu* file = menuBar()->addMenu(Translated("&File"));
  file->addActions({actOpenTree_, actSaveTree_});
  file->addSeparator();
  file->addAction(actQuit);
  QMenu* system = menuBar()->addMenu(Translated("&System"));
  system->addActions({actChoose_, actInsert_, actInfo_});
  BuildBrowseMenu();
  QMenu* database = menuBar()->addMenu(Translated("&Database"));
  database->addActions({actOpenFolder_, actOpenContainer_});
  database->addSeparator();
  database->addActions({actManage_, actOptions_});

  QToolBar* bar = addToolBar(Translated("Commands"));
  bar->setObjectName("toolbar");
  bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
  bar->setMovable(false);
  bar->addActions({actChoose_, actInsert_, actInfo_});
  bar->addSeparator();
  bar->addActions({actOpenTree_, actSaveTree_});
  bar->addSeparator();
  bar->addAction(actManage_);
}

void MainWindow::BuildBrowseMenu() {
  QMenu* browse = menuBar()->addMenu(Translated("&Browse"));
  for (const ObjectDescriptor& object : ObjectDescriptors()) {
    QString text = QvPlatform::SystemQText(object.displayName);
    if (!text.isEmpty()) text[0] = text[0].toUpper();
    QAction* action = browse->addAction(text + QStringLiteral("..."));
    action->setObjectName(QStringLiteral("actBrowse%1").arg(static_cast<int>(object.type)));
    action->setData(static_cast<int>(object.type));
    connect(action, &QAction::triggered, this, [this, action] {
      editor_.Browse(action->data().toInt());
      UpdateState();
    });
    browseActions_.push_back(action);
  }
}

void MainWindow::BuildCentre() {
  pages_ = new QStackedWidget(this);
  auto* empty = new QWidget(pages_);
  auto* column = new QVBoxLayout(empty);
  lblPlaceholder_ = new QLabel(empty);
  lblPlaceholder_->setObjectName("lblPlaceholder");
  lblPlaceholder_->setAlignment(Qt::AlignCenter);
  lblPlaceholder_->setWordWrap(true);
  lblPlaceholder_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  btnStart_ = new QPushButton(empty);
  btnStart_->setObjectName("btnStart");
  connect(btnStart_, &QPushButton::clicked, this,
          [this] { (editor_.DatabaseIsActive() ? actChoose_ : actOpenFolder_)->trigger(); });
  column->addStretch(1);
  column->addWidget(lblPlaceholder_);
  column->addWidget(btnStart_, 0, Qt::AlignHCenter);
  column->addStretch(2);

  auto* splitter = new QSplitter(Qt::Horizontal, pages_);
  treeSystem_ = new QTreeWidget(splitter);
  treeSystem_->setObjectName("treeSystem");
  treeSystem_->setAccessibleName(Translated("Tree of the system"));
  treeSystem_->setUniformRowHeights(true);
  treeSystem_->setAlternatingRowColors(true);
  auto* tabs = new QTabWidget(splitter);
  memoInfo_ = MakeMemo(tabs, "memoInfo");
  memoWkt_ = MakeMemo(tabs, "memoWkt");
  memoWkt_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  memoWkt_->setLineWrapMode(QPlainTextEdit::NoWrap);
  tabs->addTab(memoInfo_, Translated("&Description"));
  tabs->addTab(memoWkt_, Translated("&WKT 2"));
  splitter->setStretchFactor(0, 3);
  splitter->setStretchFactor(1, 2);
  pages_->addWidget(empty);
  pages_->addWidget(splitter);
  setCentralWidget(pages_);
}

void MainWindow::LoadOptions() {
  TQvGeoRefFrameDialogOptions& dialog = options_.dialog;
  dialog.DialogMode =
      settings_.value("options/dialogMode").toInt() == kSimpleMode ? kSimpleMode : kFullMode;
  dialog.ErrorColour = settings_.value("options/errorColour", dialog.ErrorColour).toInt();
  dialog.ShowImportExport =
      settings_.value("options/showImportExport", dialog.ShowImportExport).toBool();
  options_.rejectGeodetic = settings_.value("options/rejectGeodetic", false).toBool();
}

void MainWindow::SaveOptions() {
  settings_.setValue("options/dialogMode", static_cast<int>(options_.dialog.DialogMode));
  settings_.setValue("options/errorColour", options_.dialog.ErrorColour);
  settings_.setValue("options/showImportExport", options_.dialog.ShowImportExport);
  settings_.setValue("options/rejectGeodetic", options_.rejectGeodetic);
}

bool MainWindow::OpenDatabase(const QString& path) {
  const QFileInfo place(path);
  const bool container = place.isFile() || path.endsWith(QLatin1String(".qvdb"));
  options_.dialog.DatabaseKind = container ? 2 : 1;
  options_.dialog.DatabasePath = FromQt(place.absoluteFilePath());
  bool opened = false;
  if (!place.exists()) {
    editor_.Finalize();
    ui_.ShowMessage(QvPlatform::MessageKind::kError,
                    FromQt(Translated("There is no database at \"%1\".").arg(path)),
                    QvPlatform::MessageButtons::kOk);
  } else {
    opened = editor_.Initialize(&options_.dialog);
  }
  if (opened) settings_.setValue("database/path", place.absoluteFilePath());
  UpdateState();
  return opened;
}

void MainWindow::OpenLastDatabase() {
  const QString path = settings_.value("database/path").toString();
  if (!path.isEmpty() && QFileInfo::exists(path)) (void)OpenDatabase(path);
}

bool MainWindow::OpenTree(const QString& path) {
  const bool read = Guarded(ui_, [&] { ReadTreeFile(FromQt(path), &tree_); });
  if (!read) return false;
  hasTree_ = true;
  ShowSystem();
  return true;
}

void MainWindow::Choose() {
  if (!editor_.DatabaseIsActive()) return;
  // The host's system stays as it was unless another one was chosen.
  QvCommonUtils::TStringTree tree;
  if (hasTree_) QvCommonUtils::MergeTree(&tree_, &tree);
  if (editor_.Edit(&tree, options_.rejectGeodetic)) {
    QvCommonUtils::ClearTree(&tree_);
    QvCommonUtils::MergeTree(&tree, &tree_);
    hasTree_ = true;
    ShowSystem();
  }
  UpdateState();
}

void MainWindow::Insert() {
  if (!editor_.Insert(&tree_)) {
    if (editor_.InsertFailureWasTold()) return;
    ui_.ShowMessage(QvPlatform::MessageKind::kError,
                    FromQt(Translated("The tree does not hold a whole reference system.")),
                    QvPlatform::MessageButtons::kOk);
    return;
  }
  std::string key;
  std::string inserted;
  (void)GetString(tree_, TreeIds::kFoundKeyNote, &key);
  (void)GetString(tree_, TreeIds::kInsertedNote, &inserted);
  statusBar()->showMessage((inserted == "1" ? Translated("Added to the database as number %1.")
                                            : Translated("In the database already as number %1."))
                               .arg(ToQt(key)));
  ShowSystem();
  UpdateState();
}

void MainWindow::ShowInfo() {
  TStrings lines;
  if (!editor_.GetInfo(&lines)) return;
  std::string text;
  for (const std::string& line : lines)
    text += line + "\n";
  ui_.ShowMessage(QvPlatform::MessageKind::kPlain, text, QvPlatform::MessageButtons::kOk);
}

void MainWindow::AskTree() {
  const auto file = QvPlatform::GetOpenFileName(this, Translated("Open tree"),
                                                {Translated(kTreeFilter), kXmlFilter, QString()});
  if (!file.path.isEmpty()) OpenTree(file.path);
}

void MainWindow::SaveTree() {
  const auto file = QvPlatform::GetSaveFileName(
      this, Translated("Save tree"),
      {Translated(kTreeFilter), kXmlFilter, ToQt(MakeFileName(FromQt(NameOfTree(tree_))))});
  if (file.path.isEmpty()) return;
  WriteTreeFile(tree_, FromQt(file.path),
                file.filterIndex == 1 ? ObjectFileForm::kText : ObjectFileForm::kXml);
}

void MainWindow::AskFolder() {
  const QString path = QvPlatform::SelectFolder(this, Translated("Open database folder"));
  if (!path.isEmpty()) (void)OpenDatabase(path);
}

void MainWindow::AskContainer() {
  const auto file = QvPlatform::GetOpenFileName(
      this, Translated("Open database container"),
      {Translated("Databases (*.qvdb)|*.qvdb|All files (*.*)|*.*"), 1, QString()});
  if (!file.path.isEmpty()) (void)OpenDatabase(file.path);
}

void MainWindow::AskOptions() {
  OptionsDialog dialog(options_, this);
  dialog.setObjectName("optionsDialog");
  if (dialog.exec() != QDialog::Accepted) return;
  options_ = dialog.Options();
  SaveOptions();
  // The editor takes its options when it starts.
  if (editor_.DatabaseIsActive()) (void)editor_.Initialize(&options_.dialog);
  UpdateState();
}

void MainWindow::ManageDatabase() {
  editor_.ManageDatabase();
  UpdateState();
}

void MainWindow::ShowSystem() {
  ShowTree(tree_, treeSystem_);
  memoInfo_->setPlainText(DescribeTree(tree_).join(QLatin1Char('\n')));
  memoWkt_->setPlainText(WktOfTree(tree_));
  UpdateState();
}

void MainWindow::UpdateState() {
  const bool open = editor_.DatabaseIsActive();
  const QString name = NameOfTree(tree_);
  setWindowTitle((name.isEmpty() ? QString() : name + QStringLiteral(" - ")) +
                 Translated("Reference systems"));
  actChoose_->setEnabled(open);
  actInsert_->setEnabled(open && hasTree_);
  actInfo_->setEnabled(open);
  actManage_->setEnabled(open);
  actSaveTree_->setEnabled(hasTree_);
  for (QAction* action : browseActions_) {
    // A type whose objects this database cannot show yet has no processor.
    action->setEnabled(open &&
                       ProcessorFor(*datamoduleQvRfData, action->data().toInt()) != nullptr);
  }
  pages_->setCurrentIndex(hasTree_ ? 1 : 0);
  if (!open) {
    lblDatabase_->setText(Translated("No database"));
    lblPlaceholder_->setText(
        Translated("No database of reference systems is open.\n\nMake one in a terminal:\n"
                   "refframe init DIR\n\nthen open its folder here."));
    btnStart_->setText(Translated("Open database folder..."));
    return;
  }
  const QString count = QLocale().toString(datamoduleQvRfData->datasetRefSystem.RecordCount());
  lblDatabase_->setText(
      Translated("%1: %2 systems").arg(ToQt(options_.dialog.DatabasePath), count));
  if (!watch_->Trouble().isEmpty()) {
    lblDatabase_->setText(Translated("%1 cannot be read").arg(ToQt(options_.dialog.DatabasePath)));
  }
  lblDatabase_->setToolTip(watch_->Trouble().toHtmlEscaped());
  lblPlaceholder_->setText(Translated("No system is chosen yet.\n\nThe database holds %1 reference "
                                      "systems. Choose one of them, or open a tree from a file.")
                               .arg(count));
  btnStart_->setText(Translated("Choose..."));
}

void MainWindow::closeEvent(QCloseEvent* event) {
  settings_.setValue("window/geometry", saveGeometry());
  QMainWindow::closeEvent(event);
}

}  // namespace QvRefSystem
