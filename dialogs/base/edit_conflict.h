#pragma once

#include <span>
#include <vector>

#include "dialogs/base/form_state.h"
#include "forms/form_description.h"
#include "platform/ui/user_interface.h"

namespace QvRefSystem {

/// What two users have made of one form: what it showed when one of them began, what it would show
/// of what the other has stored since, and what the first has put there.
class EditConflict {
 public:
  /// All three are states of the form of these rows, which must outlive this.
  EditConflict(std::span<const FormRow> rows, FormState before, FormState theirs, FormState mine);

  /// Places of the rows in which the other has changed something to what mine do not hold.
  [[nodiscard]] const std::vector<std::size_t>& Rows() const { return changed_; }
  /// Whether he has done so with what stands beside the rows.
  [[nodiscard]] bool IsChangedBeside() const { return !beside_.empty(); }
  /// Whether the user would lose nothing of the other's by storing his form as it is.
  [[nodiscard]] bool IsSettled() const { return changed_.empty() && beside_.empty(); }
  /// What the other has made of the form.
  [[nodiscard]] const FormState& Theirs() const { return theirs_; }
  /// What stands beside the rows with the other's changes in it.
  [[nodiscard]] std::vector<BesideText> MergedBeside() const;
  /// What differs, for the user to read: the rows, and behind them what stands beside them.
  [[nodiscard]] std::vector<QvPlatform::ConflictRow> Texts() const;
  /// What the other's row says, for the user to read.
  [[nodiscard]] std::string TheirText(std::size_t row) const;

 private:
  void FindRows();
  void FindBeside();
  [[nodiscard]] bool IsSameBeside() const;

  std::span<const FormRow> rows_;
  FormState before_;
  FormState theirs_;
  FormState mine_;
  std::vector<std::size_t> changed_;
  std::vector<QvPlatform::ConflictRow> beside_;
};

}  // namespace QvRefSystem
