#include "assembly/checks/values_check.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <tuple>
#include <utility>

#include "platform/geocore/epsg_twins.h"
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

RemovedValue Removal(const ValueRow& it) {
  return {it.content, it.owner, it.tag, it.group, it.code, it.value};
}

// What the rows of owners that are there hold together.
class RepeatedValues {
 public:
  explicit RepeatedValues(const CheckedDatabase& database) {
    for (const ObjectDescriptor& descriptor : ObjectDescriptors()) {
      // The types share what the exchange format does not tell apart.
      if (TableOf(descriptor.table).keyField != "AUTOKEY") continue;
      for (const CheckedRow row : database.Of(descriptor.table))
        names_[{static_cast<int>(descriptor.type), row.Key()}] = &row.Text("NAME");
    }
  }

  void Check(const ValueRow& it, Findings& findings) {
    const auto [first, isNew] =
        values_.emplace(std::tuple(it.content, it.owner, it.tag, it.group, it.code), it.value);
    if (isNew) return CheckClaim(it, findings);
    if (first->second == it.value) {
      return findings.Add(it.row, it.Which() + " stands twice", Removal(it));
    }
    // The first row answers for the owner, whichever of the two is right.
    if (it.tag == static_cast<int>(ParamTag::kProjectionParameter) || IsTwin(it, first->second)) {
      return;
    }
    findings.Add(it.row, it.Which() + " holds \"" + it.value + "\" beside \"" + first->second +
                             "\", and an owner has one code");
  }

 private:
  // A system with and without heights is one record with both codes of the registry.
  static bool IsTwin(const ValueRow& it, const std::string& first) {
    int code = 0;
    int other = 0;
    return it.content == static_cast<int>(TObjectType::kReferenceSystem) &&
           it.tag == static_cast<int>(ParamTag::kGeoTiff) &&
           QvPlatform::TextToInteger(it.value, &code) && QvPlatform::TextToInteger(first, &other) &&
           AreEpsgTwins(code, other);
  }

  // Objects of one name share a code: a system may be there with heights and without.
  void CheckClaim(const ValueRow& it, Findings& findings) {
    int code = 0;
    const auto name = names_.find({it.content, it.owner});
    const bool isClaim = it.tag == static_cast<int>(ParamTag::kGeoTiff) && name != names_.end() &&
                         QvPlatform::TextToInteger(it.value, &code) && code > 0 &&
                         code != kUserDefined;
    if (!isClaim) return;
    const std::string& first =
        *claims_.emplace(std::pair(it.content, code), name->second).first->second;
    if (QvPlatform::FoldName(first) == QvPlatform::FoldName(*name->second)) return;
    findings.Note(it.row, it.Which() + " claims the code " + it.value + ", which is that of \"" +
                              first + "\"");
  }

  // What the exchange format writes for an object that its registry does not know.
  static constexpr int kUserDefined = 32767;

  /// The names of the objects that may claim a code, by type and key.
  std::map<std::pair<int, int>, const std::string*> names_;
  /// The first value of each owner, tag, group and code.
  std::map<std::tuple<int, int, int, int, int>, std::string> values_;
  /// The name of the first owner of each code, by type of the owner.
  std::map<std::pair<int, int>, const std::string*> claims_;
};

// An ordinary deletion leaves the rows of codes, and where a projection goes with its system also
// those of parameters.
void NoteLeft(const ValueRow& it, Findings& findings) {
  findings.Note(it.row, it.Which() + " was left by a record that is gone", Removal(it));
}

void CheckParameter(const CheckedDatabase& database, const ValueRow& it, RepeatedValues& repeated,
                    Findings& findings) {
  if (it.content != kProjectionParameterOwner) {
    findings.Add(it.row, it.Which() + " belongs to no map projection");
  } else if (!database.Has(TableId::kMapProj, it.owner)) {
    return NoteLeft(it, findings);
  }
  double number = 0;
  if (!QvPlatform::TextToDouble(it.value, &number)) {
    findings.Add(it.row, it.Which() + " holds \"" + it.value + "\", which is no number");
  }
  repeated.Check(it, findings);
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

void CheckCode(const CheckedDatabase& database, const ValueRow& it, RepeatedValues& repeated,
               Findings& findings) {
  const auto* const form = std::ranges::find_if(kCodeForms, [&](const CodeForm& known) {
    return static_cast<int>(known.tag) == it.tag && static_cast<int>(known.owner) == it.content;
  });
  if (form == std::end(kCodeForms)) {
    return findings.Add(it.row, it.Which() + " is of no known form");
  }
  if (!HasOwner(database, it, *form)) return NoteLeft(it, findings);
  if (!IsCode(it.value, *form)) {
    findings.Add(it.row, it.Which() + " holds \"" + it.value + "\", which is no code");
  }
  repeated.Check(it, findings);
}

}  // namespace

void CheckValues(const CheckedDatabase& database, Findings& findings) {
  RepeatedValues repeated(database);
  for (const CheckedRow row : database.Of(TableId::kParamValue)) {
    const ValueRow it{row};
    const bool isParameter = it.tag == static_cast<int>(ParamTag::kProjectionParameter);
    (isParameter ? CheckParameter : CheckCode)(database, it, repeated, findings);
  }
}

}  // namespace QvRefSystem
