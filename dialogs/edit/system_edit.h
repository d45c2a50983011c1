#pragma once

#include "dialogs/base/described_edit.h"
#include "forms/system_forms.h"

namespace QvRefSystem {

/// The dialog of a reference system: a new one has the names and the handedness of axes that its
/// type tells.
class SystemEdit : public DescribedEdit {
 public:
  SystemEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form);

 protected:
  void OnNewRecord() override;
  void OnEditRecord() override;
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;
  /// The controls of the axes that the type names.
  [[nodiscard]] virtual std::vector<const char*> AxesOfType() const {
    return {"edXname", "edYname", "edZname"};
  }
  /// NAME of the object with that key; "" if there is none. Moves no cursor.
  [[nodiscard]] QString NameOf(TObjectType object, int key) const;

 private:
  const int type_;
  const bool hasHandedness_;
};

class TformQvRfRefSystemCartEdit final : public SystemEdit {
 public:
  TformQvRfRefSystemCartEdit(QWidget* owner, const Chooser& chooser)
      : SystemEdit(owner, chooser, kCartSystemForm) {}
};

/// A geocentric system may stand on a datum, and need not.
class TformQvRfRefSystemGeocEdit final : public SystemEdit {
 public:
  TformQvRfRefSystemGeocEdit(QWidget* owner, const Chooser& chooser)
      : SystemEdit(owner, chooser, kGeocSystemForm) {}

 protected:
  void OnEditRecord() override;
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;
};

}  // namespace QvRefSystem
