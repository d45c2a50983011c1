#pragma once

#include <QMainWindow>
#include <memory>
#include <vector>

#include "apps/host/options_dialog.h"
#include "platform/data/string_tree.h"

class QAction;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QSettings;
class QStackedWidget;
class QTreeWidget;

namespace QvRefSystem {

class StoreWatch;

/// A small host: it holds one reference system as a tree, shows it, and calls the editor to choose,
/// store and maintain systems.
class MainWindow final : public QMainWindow {
 public:
  /// `settings` keeps the window's place, the options and the last database; it must outlive the
  /// window, as must `ui`.
  MainWindow(QSettings& settings, QvPlatform::TUserInterface& ui);
  ~MainWindow() override;

  /// Opens a folder, or the file of a container, in the place of what is open. False after the user
  /// was told why.
  bool OpenDatabase(const QString& path);
  /// Opens the database that was open when the program last ended, if there is one.
  void OpenLastDatabase();
  /// Shows the system in a file of either form of a tree. False after the user was told why.
  bool OpenTree(const QString& path);
  /// Lets the user choose a system, which takes the place of the one that the window shows.
  void Choose();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildActions();
  void BuildMenus();
  void BuildBrowseMenu();
  void BuildCentre();
  void Insert();
  void ShowInfo();
  void AskTree();
  void SaveTree();
  void AskFolder();
  void AskContainer();
  void AskOptions();
  void ManageDatabase();
  void ShowSystem();
  void UpdateState();
  QAction* AddAction(const char* objectName, const char* text, const QKeySequence& keys,
                     void (MainWindow::*slot)());
  void LoadOptions();
  void SaveOptions();

  QSettings& settings_;
  QvPlatform::TUserInterface& ui_;
  TQvGeoRefFrameEditor editor_;
  std::shared_ptr<StoreWatch> watch_;
  HostOptions options_;
  QvCommonUtils::TStringTree tree_;
  bool hasTree_ = false;

  QAction* actChoose_ = nullptr;
  QAction* actInsert_ = nullptr;
  QAction* actInfo_ = nullptr;
  QAction* actOpenTree_ = nullptr;
  QAction* actSaveTree_ = nullptr;
  QAction* actOpenFolder_ = nullptr;
  QAction* actOpenContainer_ = nullptr;
  QAction* actOptions_ = nullptr;
  QAction* actManage_ = nullptr;
  std::vector<QAction*> browseActions_;
  QStackedWidget* pages_ = nullptr;
  QLabel* lblPlaceholder_ = nullptr;
  QPushButton* btnStart_ = nullptr;
  QTreeWidget* treeSystem_ = nullptr;
  QPlainTextEdit* memoInfo_ = nullptr;
  QPlainTextEdit* memoWkt_ = nullptr;
  QLabel* lblDatabase_ = nullptr;
};

}  // namespace QvRefSystem
