#pragma once

#include <QObject>
#include <QTimer>
#include <memory>
#include <vector>

class QWidget;

namespace QvRefSystem {

/// Brings the tables of the open database up to date while a window shows them, when it comes to
/// the front and twice a second: what other programs store is seen, and a database that was away
/// for a while heals when it is back. Cursors, and so the places in the lists, stay.
///
/// It keeps still while a dialog on top asks or edits, while controls are disabled or a change is
/// pending, and while an operation waits for another program.
class StoreWatch final : public QObject {
  Q_OBJECT

 public:
  /// The one watch of the process, which lives as long as somebody holds it.
  [[nodiscard]] static std::shared_ptr<StoreWatch> Shared();

  /// Looks while that window shows and is not covered by another modal one, as long as it lives.
  void Watch(QWidget* window);
  /// Looks now, unless something of the above keeps it still.
  void Look();
  /// Why the database cannot be read at present, for the user to read; empty while it can.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }

 signals:
  /// The tables were brought up to date, or Trouble has changed.
  void Changed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  StoreWatch();
  [[nodiscard]] bool MayLook() const;

  QTimer timer_;
  std::vector<QObject*> windows_;
  QString trouble_;
  bool looking_ = false;
};

}  // namespace QvRefSystem
