#pragma once

#include <functional>
#include <memory>
#include <string>

#include "dialogs/base/edit_base.h"
#include "dialogs/heights/vertical_controls.h"

namespace QvRefSystem {

class TformQvRfRecalculateGridParams;

/// The dialog of height systems. A reference system's dialog owns it and opens it over the plane of
/// that system, in which its heights lie; what was made last is shown again at the next opening.
class TformQvRfVerticalRefSystemEdit final : public TformQvRfEdit, protected VerticalControls {
  Q_OBJECT

 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfVerticalRefSystemEdit(QWidget* owner, const Chooser& chooser);
  ~TformQvRfVerticalRefSystemEdit() override;

  /// Sets the plane of the heights. The owner calls it ahead of each opening; without a plane the
  /// dialog does not open. `treeText` is the text of the reference system's tree, `unitKey` the key
  /// of the linear unit of its heights. Returns false if there is no such system, or no unit.
  [[nodiscard]] bool SetPlaneSystem(const std::string& treeText, int unitKey);
  /// Takes the plane of the stored heights of a reference system. The owner calls it when it starts
  /// on a system, with key 0 on a new one. Returns false if that plane cannot be computed.
  [[nodiscard]] bool LoadForReferenceSystem(int refSystemKey);
  /// Whether the stored heights lie in the plane of that system.
  [[nodiscard]] bool IsStoredPlaneSame(const TShellReferenceSystem* system) const;

 protected:
  [[nodiscard]] bool StoreRecord() override;
  [[nodiscard]] bool EditRecord() override;
  [[nodiscard]] bool NewRecord() override;
  void FormShow(bool first) override;
  void PlaceUsually() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void ConnectControls();
  void ConnectSources();
  void OnClick(QPushButton* button, void (TformQvRfVerticalRefSystemEdit::*handler)());
  [[nodiscard]] bool RunFilled(HeightRefusal loading);

  void btnDataSourceParamsVertRefsystemClick();
  void btnDataSourceParamsFileNameClick();
  void btnDataSourceParamsFilePlaneRefsystemClick();
  void btnDataSourceParamsVertOffsetUnitsClick();
  void btnDataSourceViewClick();
  void Button1Click();
  void btnDataCreateClick();
  void btnDataViewClick();
  void edDataSourceParamsVertOffsetValueExit();

  void ShowPlane();
  void ShowSource();
  void ShowGrid() { grid_->ShowExtents(heights_.Grid()); }
  void UpdateCreateControls();
  void RefreshDataState(HeightRefusal refusal = HeightRefusal::kNone);
  [[nodiscard]] bool AcceptOffset(HeightApproximation& result);
  [[nodiscard]] bool ConfirmData();
  [[nodiscard]] QString WordsOf(HeightRefusal refusal) const;
  void TellFile(const std::string& name, HeightRefusal refusal);

  HeightCreation heights_;
  std::unique_ptr<TformQvRfRecalculateGridParams> gridDialog_;
};

}  // namespace QvRefSystem
