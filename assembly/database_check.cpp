#include "assembly/database_check.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "assembly/height_check.h"
#include "platform/text/text.h"
#include "processors/object_descriptor.h"
#include "processors/system_bodies.h"
#include "processors/vertical_records.h"

namespace QvRefSystem {
namespace {

using QvPlatform::RowView;
using QvPlatform::TQvDataSet;

constexpr int kMifGroupOfGeodetic = 4;

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

bool IsNumber(const std::string& text, double* number) {
  return QvPlatform::TextToDouble(text, number);
}
bool IsNumber(const std::string& text) {
  double number = 0;
  return IsNumber(text, &number);
}
bool IsInteger(const std::string& text) {
  int number = 0;
  return QvPlatform::TextToInteger(text, &number);
}

// One table of an open database, read by field name.
class Table {
 public:
  Table(TdatamoduleQvRfData& data, TableId id) : spec_(&TableOf(id)), dataSet_(&data.DataSet(id)) {
    for (const FieldSpec& field : spec_->fields) {
      fields_[field.name] = dataSet_->FieldByName(field.name).GetIndex();
    }
  }

  [[nodiscard]] const TableSpec& Spec() const { return *spec_; }
  [[nodiscard]] int Rows() const { return dataSet_->RecordCount(); }
  [[nodiscard]] RowView Row(int position) const { return dataSet_->Row(position); }
  [[nodiscard]] RowView WithKey(int key) const {
    return dataSet_->FindFirst({QvPlatform::RowMatch::Integer(fields_.at(spec_->keyField), key)});
  }
  [[nodiscard]] int Integer(RowView row, std::string_view field) const {
    return row.GetInteger(fields_.at(field));
  }
  [[nodiscard]] double Float(RowView row, std::string_view field) const {
    return row.GetFloat(fields_.at(field));
  }
  [[nodiscard]] const std::string& Text(RowView row, std::string_view field) const {
    return row.GetText(fields_.at(field));
  }
  [[nodiscard]] std::string AsText(RowView row, std::string_view field) const {
    return row.GetString(fields_.at(field));
  }
  [[nodiscard]] int Key(RowView row) const {
    return spec_->keyField.empty() ? 0 : Integer(row, spec_->keyField);
  }

 private:
  const TableSpec* spec_;
  TQvDataSet* dataSet_;
  std::map<std::string_view, int> fields_;
};

struct Parameter {
  int code = 0;
  int unitType = 0;
  std::string name;
};

class Checker {
 public:
  Checker(TdatamoduleQvRfData& data, std::vector<std::string>* findings)
      : data_(data), findings_(findings) {
    for (const TableSpec& spec : TableCatalogue()) {
      if (spec.tag == kUnopenedTag) continue;
      tables_.emplace(spec.id, Table(data, spec.id));
    }
  }

  void Check() {
    CollectKeys();
    CollectParameters();
    for (const auto& [id, table] : tables_)
      CheckReferences(table);
    CheckUnits();
    CheckEllipsoids();
    CheckPrimeMeridians();
    CheckDatums();
    CheckDatumShifts();
    CheckReferenceSystems();
    CheckValues();
    CheckProjections();
    CheckChoices();
    CheckHeights(data_, [this](TableId table, RowView row, const std::string& what) {
      Find(Of(table), row, what);
    });
    for (const ObjectDescriptor& descriptor : ObjectDescriptors())
      CheckDuplicates(descriptor);
  }

 private:
  void Find(const Table& table, RowView row, const std::string& what) {
    std::string line(table.Spec().streamName);
    // Rows of the service tables have neither key nor name; `what` tells them apart.
    if (row && !table.Spec().keyField.empty()) {
      line += ", key " + std::to_string(table.Key(row)) + ", \"" + table.Text(row, "NAME") + "\"";
    }
    findings_->push_back(line + ": " + what);
  }

  [[nodiscard]] const Table& Of(TableId id) const { return tables_.at(id); }

  template <typename Take>
  void ForEachRow(TableId id, const Take& take) const {
    const Table& table = Of(id);
    for (int i = 0; i < table.Rows(); ++i)
      take(table, table.Row(i));
  }

  void CollectKeys() {
    for (const auto& [id, table] : tables_) {
      if (table.Spec().keyField.empty()) continue;
      std::set<int>& keys = keys_[id];
      for (int i = 0; i < table.Rows(); ++i) {
        const RowView row = table.Row(i);
        const int key = table.Key(row);
        if (key < 1) Find(table, row, "the key is not above 0");
        if (!keys.insert(key).second) Find(table, row, "the key stands twice");
        if (QvPlatform::IsBlank(table.Text(row, "NAME"))) Find(table, row, "there is no name");
      }
    }
  }

  void CollectParameters() {
    std::set<std::pair<int, int>> tags;
    ForEachRow(TableId::kMapProjParam, [&](const Table& table, RowView row) {
      const int type = table.Integer(row, "PROJ_TYPE");
      const int unitType = table.Integer(row, "UNIT_TYPE");
      const std::string& name = table.Text(row, "NAME");
      const std::string which = "parameter \"" + name + "\" of type " + std::to_string(type);
      std::map<int, Parameter>& parameters = parameters_[type];
      const int code = table.Integer(row, "PARAM_CODE");
      if (!parameters.emplace(code, Parameter{code, unitType, name}).second) {
        Find(table, row, which + " shares its code " + std::to_string(code) + " with another");
      }
      if (!tags.emplace(type, table.Integer(row, "TAG")).second) {
        Find(table, row, which + " shares its tag with another");
      }
      if (unitType < 1 || unitType > 3) Find(table, row, which + " has no kind of unit");
      constexpr int kChoice = 1;
      if (table.Integer(row, "KIND") == kChoice) choices_[{type, code}] = 0;
    });
  }

  [[nodiscard]] bool Exists(TableId table, int key) const {
    const auto keys = keys_.find(table);
    return keys != keys_.end() && keys->second.contains(key);
  }

  void CheckReferences(const Table& table) {
    for (const FieldSpec& field : table.Spec().fields) {
      if (field.refersTo == TableId::kNone) continue;
      for (int i = 0; i < table.Rows(); ++i) {
        const RowView row = table.Row(i);
        const int key = table.Integer(row, field.name);
        if (key == 0 || Exists(field.refersTo, key)) continue;
        Find(table, row,
             std::string(field.name) + " refers to " + std::to_string(key) + ", which is not in " +
                 std::string(TableOf(field.refersTo).streamName));
      }
    }
  }

  void Need(const Table& table, RowView row, std::string_view field) {
    if (table.Integer(row, field) == 0) Find(table, row, std::string(field) + " is missing");
  }

  void NeedNumber(const Table& table, RowView row, std::string_view field) {
    const std::string& text = table.Text(row, field);
    if (!IsNumber(text)) Find(table, row, std::string(field) + " \"" + text + "\" is no number");
  }

  void CheckUnits() {
    for (const TableId id : {TableId::kLinearUnit, TableId::kAngularUnit, TableId::kScaleUnit}) {
      ForEachRow(id, [this](const Table& table, RowView row) {
        // Written so that a factor that is no number is found, too.
        const bool positive = table.Float(row, "FACTOR_B") > 0 && table.Float(row, "FACTOR_C") > 0;
        if (!positive) Find(table, row, "a factor is not above 0");
      });
    }
  }

  void CheckEllipsoids() {
    ForEachRow(TableId::kEllipsoid, [this](const Table& table, RowView row) {
      Need(table, row, "UNIT_AUTOKEY");
      double a = 0;
      if (!IsNumber(table.Text(row, "A"), &a) || a <= 0) {
        Find(table, row, "A \"" + table.Text(row, "A") + "\" is no length");
      }
      if (table.Integer(row, "SPHEROID") != 0) return;
      double shape = 0;
      if (table.Integer(row, "USE_F") != 0) {
        if (!IsNumber(table.Text(row, "F"), &shape) || shape <= 0 || shape >= 1) {
          Find(table, row, "F \"" + table.Text(row, "F") + "\" is no flattening");
        }
      } else if (!IsNumber(table.Text(row, "B"), &shape) || shape <= 0) {
        Find(table, row, "B \"" + table.Text(row, "B") + "\" is no length");
      }
    });
  }

  void CheckPrimeMeridians() {
    ForEachRow(TableId::kPrimeMeridian, [this](const Table& table, RowView row) {
      Need(table, row, "UNIT_AUTOKEY");
      NeedNumber(table, row, "LONGITUDE");
    });
  }

  void CheckDatums() {
    ForEachRow(TableId::kDatum, [this](const Table& table, RowView row) {
      Need(table, row, "ELLIPSOID_AUTOKEY");
      Need(table, row, "DATUM_SHIFT_AUTOKEY");
    });
  }

  void CheckDatumShifts() {
    constexpr int kTranslation = 1;
    ForEachRow(TableId::kDatumShift, [this](const Table& table, RowView row) {
      Need(table, row, "TYPE");
      Need(table, row, "LINEAR_UNIT_AUTOKEY");
      for (const auto field : {"TX", "TY", "TZ"})
        NeedNumber(table, row, field);
      if (table.Integer(row, "TYPE") == kTranslation) return;
      Need(table, row, "ANGULAR_UNIT_AUTOKEY");
      Need(table, row, "SCALE_UNIT_AUTOKEY");
      for (const auto field : {"RX", "RY", "RZ", "S"})
        NeedNumber(table, row, field);
    });
  }

  void CheckReferenceSystems() {
    ForEachRow(TableId::kRefSystem, [this](const Table& table, RowView row) {
      const int type = table.Integer(row, "TYPE");
      if (const auto kind = SystemKindOf(type)) {
        for (const std::string_view field : RequiredReferences(*kind))
          Need(table, row, field);
      } else {
        Find(table, row, "TYPE " + std::to_string(type) + " is no kind of system");
      }
      if (table.Integer(row, "PRIMARY_REFSYSTEM_AUTOKEY") == table.Key(row)) {
        Find(table, row, "the system is its own primary system");
      }
    });
  }

  void CheckValues() {
    std::set<std::tuple<int, int, int, int, int, std::string>> seen;
    ForEachRow(TableId::kParamValue, [&](const Table& table, RowView row) {
      const int content = table.Integer(row, "OWNER_CONTENT");
      const int owner = table.Integer(row, "OWNER_ID");
      const int tag = table.Integer(row, "PARAM_TAG");
      const int group = table.Integer(row, "PARAM_GROUP");
      const int code = table.Integer(row, "PARAM_CODE");
      const std::string& value = table.Text(row, "VALUE");
      const std::string which = "row of tag " + std::to_string(tag) + " of owner " +
                                std::to_string(content) + "/" + std::to_string(owner);
      if (!seen.emplace(content, owner, tag, group, code, value).second) {
        Find(table, row, which + " stands twice");
      }
      if (tag == static_cast<int>(ParamTag::kProjectionParameter)) {
        CheckParameterRow(table, row, which);
      } else {
        CheckCodeRow(table, row, which);
      }
    });
  }

  void CheckParameterRow(const Table& table, RowView row, const std::string& which) {
    const int projection = table.Integer(row, "OWNER_ID");
    if (table.Integer(row, "OWNER_CONTENT") != kProjectionParameterOwner ||
        !Exists(TableId::kMapProj, projection)) {
      Find(table, row, which + " belongs to no map projection");
    }
    const int type = table.Integer(row, "PARAM_GROUP");
    ++values_[{projection, type, table.Integer(row, "PARAM_CODE")}];
    std::string& signature = projectionValues_[projection];
    signature += std::to_string(table.Integer(row, "PARAM_CODE")) + '=' +
                 QvPlatform::Trim(table.Text(row, "VALUE")) + '\n';
    if (!IsNumber(table.Text(row, "VALUE"))) {
      Find(table, row, which + " holds \"" + table.Text(row, "VALUE") + "\", which is no number");
    }
  }

  void CheckCodeRow(const Table& table, RowView row, const std::string& which) {
    const int content = table.Integer(row, "OWNER_CONTENT");
    const int tag = table.Integer(row, "PARAM_TAG");
    const auto form = std::ranges::find_if(kCodeForms, [=](const CodeForm& it) {
      return static_cast<int>(it.tag) == tag && static_cast<int>(it.owner) == content;
    });
    if (form == std::end(kCodeForms)) return Find(table, row, which + " is of no known form");
    const std::string& value = table.Text(row, "VALUE");
    if (form->number ? !IsInteger(value) : QvPlatform::IsBlank(value)) {
      Find(table, row, which + " holds \"" + value + "\", which is no code");
    }
    if (form->tag == ParamTag::kPositiveLongitude) {
      positiveLongitude_.insert(table.Integer(row, "OWNER_ID"));
    }
    // The number of all geodetic systems is nobody's.
    const bool ofGeodetic = form->tag == ParamTag::kMif &&
                            form->owner == TObjectType::kMapProjectionType &&
                            table.Integer(row, "PARAM_GROUP") == kMifGroupOfGeodetic;
    if (ofGeodetic || Exists(DescriptorOf(form->owner).table, table.Integer(row, "OWNER_ID"))) {
      return;
    }
    Find(table, row, which + " was left by a record that is gone");
  }

  void CheckProjections() {
    ForEachRow(TableId::kMapProj, [this](const Table& table, RowView row) {
      Need(table, row, "TYPE");
      for (const auto sign : {"COORD1_SIGN", "COORD2_SIGN"}) {
        const int value = table.Integer(row, sign);
        if (value != 1 && value != -1) Find(table, row, std::string(sign) + " is not 1 or -1");
      }
      const int type = table.Integer(row, "TYPE");
      for (const auto& [code, parameter] : parameters_[type]) {
        CheckProjectionParameter(table, row, parameter);
      }
    });
  }

  void CheckProjectionParameter(const Table& table, RowView row, const Parameter& parameter) {
    constexpr std::string_view kUnitFields[] = {"LINEAR_UNIT_AUTOKEY", "ANGULAR_UNIT_AUTOKEY",
                                                "SCALE_UNIT_AUTOKEY"};
    const auto found = values_.find({table.Key(row), table.Integer(row, "TYPE"), parameter.code});
    const int count = found == values_.end() ? 0 : found->second;
    if (count != 1) {
      Find(table, row,
           "parameter \"" + parameter.name + "\" has " + std::to_string(count) + " values");
    }
    if (parameter.unitType < 1 || parameter.unitType > 3) return;
    const std::string_view field = kUnitFields[parameter.unitType - 1];
    if (table.Integer(row, field) == 0) {
      Find(table, row, "parameter \"" + parameter.name + "\" has no unit");
    }
  }

  void CheckChoices() {
    ForEachRow(TableId::kSystemValue, [this](const Table& table, RowView row) {
      const int type = table.Integer(row, "OWNER_ID");
      const int code = table.Integer(row, "PARAM_GROUP");
      const std::string& value = table.Text(row, "VALUE");
      const std::string which = "choice \"" + value + "\" of type " + std::to_string(type);
      const auto choice = choices_.find({type, code});
      if (choice == choices_.end()) {
        return Find(table, row, which + " belongs to no parameter that is chosen from a list");
      }
      ++choice->second;
      if (!IsNumber(value.substr(0, value.find('(')))) {
        Find(table, row, which + " is no number");
      }
    });
    const Table& parameters = Of(TableId::kMapProjParam);
    for (int i = 0; i < parameters.Rows(); ++i) {
      const RowView row = parameters.Row(i);
      const auto choice = choices_.find(
          {parameters.Integer(row, "PROJ_TYPE"), parameters.Integer(row, "PARAM_CODE")});
      if (choice == choices_.end() || choice->second != 0) continue;
      Find(parameters, row,
           "parameter \"" + parameters.Text(row, "NAME") + "\" of type " +
               std::to_string(parameters.Integer(row, "PROJ_TYPE")) +
               " is chosen from a list that is empty");
    }
  }

  [[nodiscard]] static std::string Comparable(const Table& table, RowView row,
                                              const EqualityColumn& column) {
    switch (column.compare) {
      case Compare::kFoldedName:
        return QvPlatform::FoldName(table.Text(row, column.column));
      case Compare::kTrimmedText:
        return QvPlatform::Trim(table.Text(row, column.column));
      case Compare::kText:
      case Compare::kInteger:
      case Compare::kDouble:
        break;
    }
    return table.AsText(row, column.column);
  }

  // What an object's equality looks at beside its columns.
  [[nodiscard]] std::string ComparableBeside(TObjectType type, const Table& table,
                                             RowView row) const {
    if (type == TObjectType::kEllipsoid) {
      if (table.Integer(row, "SPHEROID") != 0) return "sphere";
      return table.Integer(row, "USE_F") != 0
                 ? "f " + QvPlatform::DoubleToText(table.Float(row, "F"))
                 : "b " + table.Text(row, "B");
    }
    if (type == TObjectType::kMapProjection) {
      const auto values = projectionValues_.find(table.Key(row));
      return values == projectionValues_.end() ? std::string() : values->second;
    }
    if (type == TObjectType::kReferenceSystem) {
      return ComparableHeights(table, row) +
             (positiveLongitude_.contains(table.Key(row)) ? "positive longitude" : "");
    }
    return "";
  }

  // What a reference system's heights say, wherever they lie.
  [[nodiscard]] std::string ComparableHeights(const Table& systems, RowView row) const {
    const int key = systems.Integer(row, "VERT_SYSTEM_AUTOKEY");
    if (key == 0) return "code " + std::to_string(systems.Integer(row, "VERT_SYSTEM_CODE")) + '\n';
    const Table& heights = Of(TableId::kVerticalRefSystem);
    const RowView record = heights.WithKey(key);
    if (!record) return "key " + std::to_string(key) + '\n';
    std::string signature;
    for (const EqualityColumn& column : VerticalEqualityOf(heights.Integer(record, "VDATA_TYPE"))) {
      signature += Comparable(heights, record, column) + '\n';
    }
    return signature;
  }

  void CheckDuplicates(const ObjectDescriptor& descriptor) {
    if (descriptor.equality.empty()) return;
    const Table& table = Of(descriptor.table);
    std::map<std::string, int> seen;
    for (int i = 0; i < table.Rows(); ++i) {
      const RowView row = table.Row(i);
      std::string signature;
      for (const EqualityColumn& column : descriptor.equality) {
        signature += Comparable(table, row, column) + '\n';
      }
      signature += ComparableBeside(descriptor.type, table, row);
      const auto [first, isNew] = seen.emplace(std::move(signature), table.Key(row));
      if (!isNew) Find(table, row, "equal to key " + std::to_string(first->second));
    }
  }

  TdatamoduleQvRfData& data_;
  std::vector<std::string>* findings_;
  std::map<TableId, Table> tables_;
  std::map<TableId, std::set<int>> keys_;
  /// By projection type and code.
  std::map<int, std::map<int, Parameter>> parameters_;
  /// Number of choices by projection type and parameter code.
  std::map<std::pair<int, int>, int> choices_;
  /// Number of values by projection, type and parameter code.
  std::map<std::tuple<int, int, int>, int> values_;
  /// All values of a projection in the order of their codes.
  std::map<int, std::string> projectionValues_;
  std::set<int> positiveLongitude_;
};

}  // namespace

bool CheckDatabase(TdatamoduleQvRfData& data, std::vector<std::string>* findings) {
  const std::size_t before = findings->size();
  Checker(data, findings).Check();
  return findings->size() == before;
}

}  // namespace QvRefSystem
