#pragma once

#include "dialogs/base/described_edit.h"
#include "forms/system_forms.h"

namespace QvRefSystem {

/// The dialog of a reference system: a new one has the names and the handedness of axes that its
/// type tells.
class SystemEdit : public DescribedEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` and `form` must outlive it.
  SystemEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form);

 protected:
  void OnNewRecord() override;
  void OnShowRecord() override;
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;
  /// The controls that a new record fills with the names that its type gives the axes.
  [[nodiscard]] virtual std::vector<const char*> AxesOfType() const {
    return {"edXname", "edYname", "edZname"};
  }
  /// The NAME of the object with that key, or an empty text if there is none. The call moves no
  /// cursor.
  [[nodiscard]] QString NameOf(TObjectType object, int key) const;

 private:
  const int type_;
  const bool hasHandedness_;
};

}  // namespace QvRefSystem
