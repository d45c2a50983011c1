#include "dialogs/base/edit_conflict.h"

#include <algorithm>
#include <utility>

#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::ConflictRow;
using QvPlatform::FromQt;
using QvPlatform::Translated;

namespace {

bool IsSameContent(const FormRow& row, const RowState& one, const RowState& other) {
  // An object that was renamed is still the one referred to.
  if (row.kind == RowKind::kReference || row.kind == RowKind::kList) return one.key == other.key;
  return one.text == other.text;
}

// Of radio buttons the one that comes to be checked tells of the change.
bool IsSameLead(const FormRow& row, const RowState& before, const RowState& after) {
  if (before.checked == after.checked) return true;
  return row.leadKind == LeadKind::kRadio && !after.checked;
}

bool IsSame(const FormRow& row, const RowState& before, const RowState& after) {
  return IsSameContent(row, before, after) && IsSameLead(row, before, after);
}

std::string Caption(const FormRow& row) {
  return FromQt(Translated(row.caption).trimmed());
}

std::string TextOf(const FormRow& row, const RowState& state) {
  if (row.leadKind == LeadKind::kLabel) return state.text;
  const std::string lead = FromQt(state.checked ? Translated("chosen") : Translated("not chosen"));
  return state.text.empty() ? lead : state.text + " (" + lead + ")";
}

bool HasSameTexts(const std::vector<BesideText>& one, const std::vector<BesideText>& other) {
  return std::ranges::equal(one, other, {}, &BesideText::code, &BesideText::code);
}

std::string Joined(const std::vector<BesideText>& texts) {
  std::string all;
  for (const BesideText& text : texts)
    all += (all.empty() ? "" : "\n") + text.caption + " = " + text.value;
  return all;
}

}  // namespace

EditConflict::EditConflict(std::span<const FormRow> rows, FormState before, FormState theirs,
                           FormState mine)
    : rows_(rows), before_(std::move(before)), theirs_(std::move(theirs)), mine_(std::move(mine)) {
  FindRows();
  FindBeside();
}

void EditConflict::FindRows() {
  for (std::size_t at = 0; at < rows_.size(); ++at) {
    const RowState& theirs = theirs_.rows[at];
    if (IsSame(rows_[at], before_.rows[at], theirs)) continue;
    if (!IsSame(rows_[at], mine_.rows[at], theirs)) changed_.push_back(at);
  }
}

bool EditConflict::IsSameBeside() const {
  return HasSameTexts(before_.beside, theirs_.beside) && HasSameTexts(mine_.beside, theirs_.beside);
}

// Texts of other codes, as of another projection type, are another thing as a whole.
void EditConflict::FindBeside() {
  const auto add = [this](const std::string& caption, const std::string& before,
                          const std::string& theirs, const std::string& mine) {
    if (before != theirs && mine != theirs) beside_.push_back({caption, before, theirs, mine});
  };
  if (!IsSameBeside()) {
    add(FromQt(Translated("Parameters")), Joined(before_.beside), Joined(theirs_.beside),
        Joined(mine_.beside));
    return;
  }
  for (std::size_t at = 0; at < theirs_.beside.size(); ++at) {
    add(theirs_.beside[at].caption, before_.beside[at].value, theirs_.beside[at].value,
        mine_.beside[at].value);
  }
}

std::vector<BesideText> EditConflict::MergedBeside() const {
  if (!IsSameBeside()) return theirs_.beside;
  std::vector<BesideText> merged = mine_.beside;
  for (std::size_t at = 0; at < merged.size(); ++at) {
    if (before_.beside[at].value != theirs_.beside[at].value)
      merged[at].value = theirs_.beside[at].value;
  }
  return merged;
}

std::string EditConflict::TheirText(std::size_t row) const {
  return TextOf(rows_[row], theirs_.rows[row]);
}

std::vector<ConflictRow> EditConflict::Texts() const {
  std::vector<ConflictRow> texts;
  for (const std::size_t at : changed_) {
    const FormRow& row = rows_[at];
    texts.push_back({Caption(row), TextOf(row, before_.rows[at]), TextOf(row, theirs_.rows[at]),
                     TextOf(row, mine_.rows[at])});
  }
  texts.insert(texts.end(), beside_.begin(), beside_.end());
  return texts;
}

}  // namespace QvRefSystem
