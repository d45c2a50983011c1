#include "assembly/checks/findings.h"

#include "platform/text/text.h"

namespace QvRefSystem {

void Findings::Add(const CheckedRow& row, const std::string& what) {
  if (!row.Table().HasKeys()) return Add(row.Table(), what);
  lines_->push_back(std::string(row.Table().Spec().streamName) + ", key " +
                    std::to_string(row.Key()) + ", \"" + row.Text("NAME") + "\": " + what);
}

void Findings::Add(const CheckedTable& table, const std::string& what) {
  lines_->push_back(std::string(table.Spec().streamName) + ": " + what);
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
