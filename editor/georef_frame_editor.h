#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dialogs/select/dialog_options.h"
#include "editor/library_chain.h"
#include "platform/data/string_tree.h"

namespace QvPlatform {
class TUserInterface;
class WindowWaiter;
}  // namespace QvPlatform

namespace QvRefSystem {

class TdatamoduleQvRfData;
class TformQvRfRefSystemSelector;
using TStrings = std::vector<std::string>;
using QvCommonUtils::TStringTree;

/// The class that a host calls. While another program writes to the database, an operation waits
/// until it is done or the user cancels, with a window that tells so. One editor lives at a time in
/// a process, on the host's user-interface thread, where a QApplication exists.
class TQvGeoRefFrameEditor {
 public:
  /// An editor that asks its user by message boxes and dialogs. Nothing is open yet.
  TQvGeoRefFrameEditor();
  /// An editor that asks its user in a way of the host's own; `ui` must outlive it.
  explicit TQvGeoRefFrameEditor(QvPlatform::TUserInterface& ui);
  ~TQvGeoRefFrameEditor();
  TQvGeoRefFrameEditor(const TQvGeoRefFrameEditor&) = delete;
  TQvGeoRefFrameEditor& operator=(const TQvGeoRefFrameEditor&) = delete;

  /// Opens the database; undoes an earlier Initialize first. False, after the user was told, if it
  /// cannot be opened; silently for an empty path.
  [[nodiscard]] bool Initialize(const TQvGeoRefFrameDialogOptions* options);
  /// Undoes Initialize; harmless otherwise. No dialog made over the database may be left.
  void Finalize();
  /// Whether a database is open.
  [[nodiscard]] bool DatabaseIsActive() const;

  /// Stores the tree's system, opens the selector on it, and on OK replaces the tree's content by
  /// the chosen system. With rejectGeodetic a geodetic choice is told to be unsupported and gives
  /// false, the tree holding it already.
  [[nodiscard]] bool Edit(TStringTree* tree, bool rejectGeodetic);
  /// True if the tree's system was found in or added to the database.
  [[nodiscard]] bool Insert(TStringTree* tree);
  /// Whether the last Insert has failed at the database, of which the user was told, and not for
  /// what the tree holds.
  [[nodiscard]] bool InsertFailureWasTold() const { return insertFailureWasTold_; }
  /// The description of the current reference system. False, with `lines` unchanged, if there is
  /// none.
  [[nodiscard]] bool GetInfo(TStrings* lines);
  /// Shows the objects of a type with full rights. Always true, also for a code that is no object
  /// type, which shows nothing, and after a failure, which the user was told.
  bool Browse(int objectType);
  /// Lists the object types and shows the objects of those that the user opens, with full rights,
  /// until the user closes the list. False, and nothing is shown, without an open database.
  bool ManageDatabase();
  /// Tells that it is not there yet; false.
  bool CalculateMapProjectionParameters();

 private:
  [[nodiscard]] bool Open(const TQvGeoRefFrameDialogOptions& options);

  template <typename Operation>
  bool Run(Operation&& operation);

  std::unique_ptr<QvPlatform::TUserInterface> ownUi_;
  std::unique_ptr<QvPlatform::WindowWaiter> waiter_;
  QvPlatform::TUserInterface& ui_;
  bool insertFailureWasTold_ = false;
  std::unique_ptr<TdatamoduleQvRfData> data_;
  std::unique_ptr<TformQvRfRefSystemSelector> selector_;
};

}  // namespace QvRefSystem
