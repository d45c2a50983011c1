#pragma once

#include <QMainWindow>
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

/// A small host: it holds one reference system as a tree, shows it, and calls the editor to choose,
/// store and maintain systems.
class TMainWindow final : public QMainWindow {
 public:
  /// `settings` keeps the window's place, the options and the last database; it must outlive the
  /// window, as must `ui`.
  TMainWindow(QSettings& settings, QvPlatform::TUserInterface& ui);
  ~TMainWindow() override;

  /// A folder, or the file of a container. False after the user was told why.
  bool OpenDatabase(const QString& path);
  /// The database that was open when the program last ended, if there is one.
  void OpenLastDatabase();
  /// A tree in either file form.
  bool OpenTree(const QString& path);
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
                     void (TMainWindow::*slot)());
  void LoadOptions();
  void SaveOptions();

  QSettings& settings_;
  QvPlatform::TUserInterface& ui_;
  TQvGeoRefFrameEditor editor_;
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
