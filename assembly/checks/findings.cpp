#include "assembly/checks/findings.h"

#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

std::string LineOf(const CheckedTable& table, const std::string& what) {
  return std::string(table.Spec().streamName) + ": " + what;
}

std::string LineOf(const CheckedRow& row, const std::string& what) {
  if (!row.Table().HasKeys()) return LineOf(row.Table(), what);
  return std::string(row.Table().Spec().streamName) + ", key " + std::to_string(row.Key()) +
         ", \"" + row.Text("NAME") + "\": " + what;
}

std::string Counted(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

std::vector<std::string> CheckReport::Lines() const {
  std::vector<std::string> lines;
  for (const FindingRank rank : {FindingRank::kError, FindingRank::kNote}) {
    for (const Finding& finding : findings) {
      if (finding.rank != rank) continue;
      lines.push_back((rank == FindingRank::kNote ? "note: " : "") + finding.text);
    }
  }
  return lines;
}

std::string CheckReport::Summary() const {
  const std::size_t unlisted = errors + notes - findings.size();
  return Counted(errors, "error") + ", " + Counted(notes, "note") +
         (unlisted == 0 ? std::string() : ", " + std::to_string(unlisted) + " of them not listed");
}

void Findings::Put(Finding finding) {
  ++(finding.rank == FindingRank::kError ? report_->errors : report_->notes);
  if (finding.mending) report_->mendings.push_back(*finding.mending);
  if (++listed_[finding.rank] <= CheckReport::kMostOfAKind) {
    report_->findings.push_back(std::move(finding));
  }
}

void Findings::Add(const CheckedRow& row, const std::string& what, std::optional<Mending> mending) {
  Put({FindingRank::kError, LineOf(row, what), std::move(mending)});
}

void Findings::Add(const CheckedTable& table, const std::string& what,
                   std::optional<Mending> mending) {
  Put({FindingRank::kError, LineOf(table, what), std::move(mending)});
}

void Findings::Note(const CheckedRow& row, const std::string& what,
                    std::optional<Mending> mending) {
  Put({FindingRank::kNote, LineOf(row, what), std::move(mending)});
}

void Findings::Note(const CheckedTable& table, const std::string& what,
                    std::optional<Mending> mending) {
  Put({FindingRank::kNote, LineOf(table, what), std::move(mending)});
}

void Findings::NeedReference(const CheckedRow& row, std::string_view field) {
  if (row.Integer(field) == 0) Add(row, std::string(field) + " is missing");
}

void Findings::NeedNumber(const CheckedRow& row, std::string_view field) {
  const std::string& text = row.Text(field);
  double number = 0;
  if (QvPlatform::TextToDouble(text, &number)) return;
  Add(row, std::string(field) + " \"" + text + "\" is no number");
}

}  // namespace QvRefSystem
