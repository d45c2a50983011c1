#include "assembly/checks/choices_check.h"

#include <map>
#include <utility>

#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

// Number of choices by type of projection and parameter code, for the parameters that are chosen
// from a list.
using ChoiceCounts = std::map<std::pair<int, int>, int>;

ChoiceCounts ChosenParameters(const CheckedTable& parameters) {
  constexpr int kChosen = 1;
  ChoiceCounts counts;
  for (const CheckedRow row : parameters) {
    if (row.Integer("KIND") != kChosen) continue;
    counts[{row.Integer("PROJ_TYPE"), row.Integer("PARAM_CODE")}] = 0;
  }
  return counts;
}

void CheckChoice(const CheckedRow& row, ChoiceCounts* counts, Findings& findings) {
  const int type = row.Integer("OWNER_ID");
  const std::string& value = row.Text("VALUE");
  const std::string which = "choice \"" + value + "\" of type " + std::to_string(type);
  const auto count = counts->find({type, row.Integer("PARAM_GROUP")});
  if (count == counts->end()) {
    return findings.Add(row, which + " belongs to no parameter that is chosen from a list");
  }
  ++count->second;
  double number = 0;
  if (!QvPlatform::TextToDouble(value.substr(0, value.find('(')), &number)) {
    findings.Add(row, which + " is no number");
  }
}

}  // namespace

void CheckChoices(const CheckedDatabase& database, Findings& findings) {
  const CheckedTable& parameters = database.Of(TableId::kMapProjParam);
  ChoiceCounts counts = ChosenParameters(parameters);
  for (const CheckedRow row : database.Of(TableId::kSystemValue))
    CheckChoice(row, &counts, findings);
  for (const CheckedRow row : parameters) {
    const int type = row.Integer("PROJ_TYPE");
    const auto count = counts.find({type, row.Integer("PARAM_CODE")});
    if (count == counts.end() || count->second != 0) continue;
    findings.Add(row, "parameter \"" + row.Text("NAME") + "\" of type " + std::to_string(type) +
                          " is chosen from a list that is empty");
  }
}

}  // namespace QvRefSystem
