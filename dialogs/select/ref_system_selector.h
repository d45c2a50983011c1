#pragma once

#include "dialogs/select/typed_selector.h"

class QKeyEvent;

namespace QvRefSystem {

/// The selector of reference systems. It stands in the middle of the screen, over a data source of
/// its own, and can be confined to one kind of system.
class TformQvRfRefSystemSelector final : public TypedSelector {
 public:
  /// The conditions are those of TformQvRfSelector.
  TformQvRfRefSystemSelector(QWidget* owner, const Chooser& chooser);
  /// Lets the user choose among the systems of one TYPE; a new one is then of that TYPE without a
  /// question. The other arguments are those of Select.
  bool SelectFiltered(TStringTree* tree, int id, int type, bool hideOwner, int* key, int index);
  bool SelectWhere(const RowFilter& where, const Choice& choice) override;

 protected:
  [[nodiscard]] int TypeOfNew() override;
  void FormShow(bool first) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool bitbtnImportKeyDown(const QKeyEvent& event);

  /// The one TYPE that the list is confined to, 0 for all.
  int fixedType_ = 0;
};

}  // namespace QvRefSystem
