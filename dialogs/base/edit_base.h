#pragma once

#include <QColor>

#include "dialogs/base/chooser.h"
#include "platform/widgets/modal_form.h"
#include "processors/data_processor.h"

class QPushButton;

namespace QvRefSystem {

/// An edit dialog, as its selector drives it. Both drivers act on the current record of the
/// object's data set, and leave the saved record current when they return true.
///
/// While the dialog of a record runs, the record's key is locked in its processor: no dialog
/// further down can edit or remove it.
class TformQvRfEdit : public QvPlatform::ModalForm {
 public:
  /// The data module must be open, and outlive the dialog, as must `chooser`. Throws
  /// std::invalid_argument for an object type without a processor.
  TformQvRfEdit(QWidget* owner, const Chooser& chooser, TObjectType object);

  /// Lets the user change the current record. False if nothing was saved, also for a record that is
  /// under editing already (which is told) and on an empty table.
  [[nodiscard]] bool EditCurrent();
  /// Lets the user make a record. Without one, the record that was current is current again.
  [[nodiscard]] bool CreateNew();

  /// Tells what the run is for: with 1 an existing record is edited, with 0 a new one is made.
  unsigned char EditMode = 0;
  /// The last run ended by a successful Save.
  bool Saved = false;
  /// Background of a control whose content is refused.
  const QColor ErrorColour;
  /// Key of the record under edit; 0 for a new one.
  int Key = 0;
  /// The processor of the objects that the dialog edits; never null.
  TQvRfDataProcessor* const Processor;

 protected:
  /// Validates and writes; whether the record now stands in the table.
  [[nodiscard]] virtual bool StoreRecord() = 0;
  /// Called when a run ends without Save.
  virtual void CancelEdit() {}
  /// Fills the controls from the current record and runs the dialog; the result is Saved.
  [[nodiscard]] virtual bool EditRecord() { return false; }
  /// Fills the controls with the defaults of a new record and runs the dialog; the result is Saved.
  /// The dialogs of tables that get no new records do not override it.
  [[nodiscard]] virtual bool NewRecord() { return false; }

  void bitbtnSaveClick();
  /// Tells in the tip of the Save button why nothing was saved. No box: the dialog stays as it is.
  static void TellNotSaved(QPushButton* bitbtnSave, const QString& why);
  void bitbtnCloseClick() { reject(); }
  /// Sets the state of a run over that record, 0 for a new one.
  void BeginRun(int key);
  /// Runs the filled dialog, however it ends; the result is Saved.
  [[nodiscard]] bool RunEdit();
  /// Gives the form the place and the size that the user gave a dialog of its class earlier in the
  /// run of the program; what he left alone is PlaceUsually, and `usual` or as much as is needed.
  void PlaceAndSize(const QSize& usual);
  virtual void PlaceUsually() { PlaceAtOwner(); }
  void FormHide() override;
  [[nodiscard]] TdatamoduleQvRfData& Data() const { return Processor->Data(); }
  /// The way to lists and dialogs, for what this dialog owns.
  [[nodiscard]] const Chooser& GetChooser() const { return chooser_; }
  /// This dialog's own list of that object type. Throws std::invalid_argument if there is none.
  [[nodiscard]] ObjectList& ListOf(TObjectType object);

 private:
  const Chooser& chooser_;
  /// Where the form stood, and how large it was, when its run began.
  QRect placed_;
};

}  // namespace QvRefSystem
