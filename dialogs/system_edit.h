#pragma once

#include "dialogs/described_edit.h"
#include "processors/system_forms.h"

namespace QvRefSystem {

/// The dialog of a reference system: a new one has the names and the handedness of axes that its
/// type tells.
class TSystemEdit : public TDescribedEdit {
 public:
  TSystemEdit(QWidget* owner, const TFormDescription& form);

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

class TformQvRfRefSystemCartEdit final : public TSystemEdit {
 public:
  explicit TformQvRfRefSystemCartEdit(QWidget* owner) : TSystemEdit(owner, kCartSystemForm) {}
};

/// A geocentric system may stand on a datum, and need not.
class TformQvRfRefSystemGeocEdit final : public TSystemEdit {
 public:
  explicit TformQvRfRefSystemGeocEdit(QWidget* owner) : TSystemEdit(owner, kGeocSystemForm) {}

 protected:
  void OnEditRecord() override;
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;
};

}  // namespace QvRefSystem
