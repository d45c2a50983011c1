#include "assembly/checks/values_check.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <tuple>

#include "platform/text/text.h"
#include "processors/object_descriptor.h"

namespace QvRefSystem {
namespace {

// The forms of a code row: whose it may be, and whether its value is a whole number.
struct CodeForm {
  ParamTag tag;
  TObjectType owner;
  bool number;
};

constexpr CodeForm kCodeForms[] = {
    {ParamTag::kMif, TObjectType::kDatum, true},
    {ParamTag::kMif, TObjectType::kEllipsoid, true},
    {ParamTag::kMif, TObjectType::kLinearUnit, false},
    {ParamTag::kMif, TObjectType::kMapProjectionType, true},
    {ParamTag::kGeoTiff, TObjectType::kReferenceSystem, true},
    {ParamTag::kGeoTiff, TObjectType::kDatum, true},
    {ParamTag::kGeoTiff, TObjectType::kEllipsoid, true},
    {ParamTag::kGeoTiff, TObjectType::kPrimeMeridian, true},
    {ParamTag::kGeoTiff, TObjectType::kMapProjection, true},
    {ParamTag::kGeoTiff, TObjectType::kLinearUnit, true},
    {ParamTag::kGeoTiff, TObjectType::kAngularUnit, true},
    {ParamTag::kGeoTiff, TObjectType::kMapProjectionType, true},
    {ParamTag::kGeoTiff, TObjectType::kReferenceSystemType, true},
    {ParamTag::kPositiveLongitude, TObjectType::kReferenceSystem, true},
};

constexpr int kMifGroupOfGeodetic = 4;

// A row of the table of values, read once. The value stays in the table.
struct ValueRow {
  CheckedRow row;
  int content = row.Integer("OWNER_CONTENT");
  int owner = row.Integer("OWNER_ID");
  int tag = row.Integer("PARAM_TAG");
  int group = row.Integer("PARAM_GROUP");
  int code = row.Integer("PARAM_CODE");
  const std::string& value = row.Text("VALUE");

  // The words by which a find tells the row apart.
  [[nodiscard]] std::string Which() const {
    return "row of tag " + std::to_string(tag) + " of owner " + std::to_string(content) + "/" +
           std::to_string(owner);
  }
};

void CheckParameter(const CheckedDatabase& database, const ValueRow& it, Findings& findings) {
  if (it.content != kProjectionParameterOwner || !database.Has(TableId::kMapProj, it.owner)) {
    findings.Add(it.row, it.Which() + " belongs to no map projection");
  }
  double number = 0;
  if (QvPlatform::TextToDouble(it.value, &number)) return;
  findings.Add(it.row, it.Which() + " holds \"" + it.value + "\", which is no number");
}

bool IsCode(const std::string& value, const CodeForm& form) {
  int number = 0;
  return form.number ? QvPlatform::TextToInteger(value, &number) : !QvPlatform::IsBlank(value);
}

bool HasOwner(const CheckedDatabase& database, const ValueRow& it, const CodeForm& form) {
  // The number of all geodetic systems is nobody's.
  const bool ofGeodetic = form.tag == ParamTag::kMif &&
                          form.owner == TObjectType::kMapProjectionType &&
                          it.group == kMifGroupOfGeodetic;
  return ofGeodetic || database.Has(DescriptorOf(form.owner).table, it.owner);
}

void CheckCode(const CheckedDatabase& database, const ValueRow& it, Findings& findings) {
  const auto* const form = std::ranges::find_if(kCodeForms, [&](const CodeForm& known) {
    return static_cast<int>(known.tag) == it.tag && static_cast<int>(known.owner) == it.content;
  });
  if (form == std::end(kCodeForms)) {
    return findings.Add(it.row, it.Which() + " is of no known form");
  }
  if (!IsCode(it.value, *form)) {
    findings.Add(it.row, it.Which() + " holds \"" + it.value + "\", which is no code");
  }
  if (HasOwner(database, it, *form)) return;
  findings.Add(it.row, it.Which() + " was left by a record that is gone");
}

}  // namespace

void CheckValues(const CheckedDatabase& database, Findings& findings) {
  std::set<std::tuple<int, int, int, int, int, std::string>> seen;
  for (const CheckedRow row : database.Of(TableId::kParamValue)) {
    const ValueRow it{row};
    if (!seen.emplace(it.content, it.owner, it.tag, it.group, it.code, it.value).second) {
      findings.Add(row, it.Which() + " stands twice");
    }
    const bool isParameter = it.tag == static_cast<int>(ParamTag::kProjectionParameter);
    (isParameter ? CheckParameter : CheckCode)(database, it, findings);
  }
}

}  // namespace QvRefSystem
