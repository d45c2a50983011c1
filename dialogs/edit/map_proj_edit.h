#pragma once

#include <functional>

#include "dialogs/base/described_edit.h"
#include "forms/axis_directions.h"
#include "forms/form_descriptions.h"
#include "processors/map_projection_processor.h"

namespace QvPlatform {
class DataGrid;
class DataSetTableModel;
}  // namespace QvPlatform

namespace QvRefSystem {

class ParamGrid;

/// The dialog of map projections. The tables say of the chosen type which parameters and which
/// units it has; the values are rows beside the record, and are stored with it or not at all.
class TformQvRfMapProjEdit final : public DescribedEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfMapProjEdit(QWidget* owner, const Chooser& chooser);
  ~TformQvRfMapProjEdit() override;

 protected:
  void OnNewRecord() override;
  void OnShowRecord() override;
  void OnChosen(const FormRow& row) override;
  [[nodiscard]] bool CheckMore() override;
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;
  [[nodiscard]] std::vector<QvPlatform::TQvDataSet*> TablesBeside() override;
  void StoreBeside(int key) override;
  [[nodiscard]] std::vector<BesideText> BesideTexts() override;
  void ShowBeside(const std::vector<BesideText>& texts) override;
  [[nodiscard]] std::string_view BesidePanel() const override { return "pnlProjParam"; }
  void Take(const FormRow& row, const RowState& theirs) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// The value of the parameter of that code.
  using ValueOfCode = std::function<std::string(int code)>;
  /// Shows the parameters of the chosen type with those values.
  void FillGrid(const ValueOfCode& valueOf);
  /// The axes that the record of a type offers, in the order of the dialog.
  void TakeAxesOfType();
  void SetDirections(const AxisDirections& axes);
  [[nodiscard]] AxisDirections Directions();
  [[nodiscard]] TQvRfMapProjDataProcessor& Projections() const;
  void ShowRows(TableId table);
  void HideRows();

  ParamGrid* strgridProjParam_ = nullptr;
  // The grid looks at the model, and goes with the form.
  QvPlatform::DataGrid* dbgridParamValue_ = nullptr;
};

}  // namespace QvRefSystem
