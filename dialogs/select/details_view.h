#pragma once

#include <QTabWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/data/string_tree.h"

class QAction;
class QLabel;
class QPlainTextEdit;

namespace QvRefSystem {

class AreaMap;

/// What is known of one object: its description, and for a reference system the area of its use on
/// a map and its WKT. A page is worked out when it shows, not before.
class DetailsView final : public QTabWidget {
 public:
  /// Writes the tree of the object that is shown; false if it cannot be written whole. The tree
  /// may then hold a part of it.
  using TreeSource = std::function<bool(QvCommonUtils::TStringTree* tree)>;

  /// The view has the one page of the description at first.
  explicit DetailsView(QWidget* parent);

  /// The objects are reference systems from now on, and have their trees from `source`.
  void SetSystemSource(TreeSource source);
  /// Shows another object, or the same one after a change, on the page that is open.
  void ShowObject(const std::vector<std::string>& lines);
  /// Gives the keyboard to the page that is open.
  void FocusPage();
  /// The text of the page that is open goes to the clipboard.
  void CopyAsText();
  /// The memo of the description, which the view owns.
  [[nodiscard]] QPlainTextEdit* Description() const { return memoDetails; }

 private:
  QPlainTextEdit* MakeMemo(const char* objectName, const QString& accessibleName);
  void BuildDescription();
  void BuildSystemPages();
  void ShowContextMenu(QPlainTextEdit* memo, const QPoint& place);
  [[nodiscard]] QPlainTextEdit* PageMemo() const;
  void FillPage();
  void FillMap();
  void FillWkt();
  /// The tree of the object that is shown, written once; null if it has none.
  [[nodiscard]] const QvCommonUtils::TStringTree* Tree();

  QPlainTextEdit* memoDetails = nullptr;
  QPlainTextEdit* memoWkt = nullptr;
  QWidget* pnlMap = nullptr;
  AreaMap* mapArea = nullptr;
  QLabel* lblArea = nullptr;
  QAction* copy_ = nullptr;
  TreeSource source_;
  std::optional<QvCommonUtils::TStringTree> tree_;
  bool whole_ = false;
  bool mapIsStale_ = true;
  bool wktIsStale_ = true;
};

}  // namespace QvRefSystem
