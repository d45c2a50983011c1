#pragma once

#include "dialogs/described_edit.h"
#include "processors/axis_directions.h"
#include "processors/form_descriptions.h"
#include "processors/map_projection_processor.h"

namespace QvPlatform {
class TDataGrid;
class TDataSetTableModel;
}  // namespace QvPlatform

namespace QvRefSystem {

class TParamGrid;

/// The dialog of map projections. Its parameters, and which units it needs, are what the tables say
/// of the chosen type; the values are rows beside the record.
class TformQvRfMapProjEdit final : public TDescribedEdit {
 public:
  explicit TformQvRfMapProjEdit(QWidget* owner);
  ~TformQvRfMapProjEdit() override;

 protected:
  void OnNewRecord() override;
  void OnEditRecord() override;
  void OnChosen(const TFormRow& row) override;
  [[nodiscard]] bool CheckMore() override;
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;
  [[nodiscard]] std::vector<QvPlatform::TQvDataSet*> TablesBeside() override;
  void StoreBeside(int key) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// Shows the parameters of the chosen type, with the values of the record or without.
  void FillGrid(bool withValues);
  /// The axes that the record of a type offers, in the order of the dialog.
  void TakeAxesOfType();
  void SetDirections(const TAxisDirections& axes);
  [[nodiscard]] TAxisDirections Directions();
  [[nodiscard]] TQvRfMapProjDataProcessor& Projections() const;
  void ShowRows(TableId table);
  void HideRows();

  TParamGrid* strgridProjParam_ = nullptr;
  // The grid looks at the model, and goes with the form.
  QvPlatform::TDataGrid* dbgridParamValue_ = nullptr;
};

}  // namespace QvRefSystem
