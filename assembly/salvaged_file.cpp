#include "assembly/salvaged_file.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/geocore/system_model.h"
#include "platform/text/ascii.h"
#include "platform/text/text.h"
#include "processors/object_descriptor.h"

namespace QvRefSystem {

namespace {

using QvPlatform::FieldNeed;
using QvPlatform::FieldType;
using QvPlatform::detail::StoredBytes;
using QvPlatform::detail::StoredRecord;
using QvPlatform::detail::StoredTable;
using QvPlatform::detail::StoredValue;

constexpr std::int64_t kLargestKey = std::numeric_limits<int>::max();

std::int64_t IntegerOf(const StoredValue& value, std::int64_t otherwise = -1) {
  const auto* integer = std::get_if<std::int64_t>(&value);
  return integer != nullptr ? *integer : otherwise;
}

const std::string* TextOf(const StoredValue& value) {
  return std::get_if<std::string>(&value);
}

/// A record as the table takes it, with what stands beside its fields.
struct FittingRecord {
  StoredRecord record;
  std::int64_t version = 0;
  /// Nothing in a file of a layout without checksums.
  std::optional<std::int64_t> sum;
};

/// Knows how the records of a table lie in a file.
class RecordShape {
 public:
  explicit RecordShape(const TableSpec& table) : table_(table) {
    hasKey_ = std::ranges::any_of(table.fields, [](const FieldSpec& field) {
      return field.need == FieldNeed::kGeneratedKey;
    });
  }

  // Nothing for a record that is not one of this table, or damaged.
  [[nodiscard]] std::optional<FittingRecord> Fit(const StoredRecord& stored) const {
    const std::size_t first = hasKey_ ? 0 : 1;
    for (const std::size_t count : {table_.fields.size(), CountOfOlder()}) {
      // Behind the fields stand the version and, in the present layout, the checksum.
      const std::size_t behind = stored.values.size() - first - count;
      if (stored.values.size() < first + count || behind < 1 || behind > 2) continue;
      FittingRecord fitting;
      fitting.record.id = stored.id;
      fitting.version = IntegerOf(stored.values[first + count]);
      if (behind == 2) fitting.sum = IntegerOf(stored.values.back());
      const auto begin = stored.values.begin() + static_cast<std::ptrdiff_t>(first);
      fitting.record.values.assign(begin, begin + static_cast<std::ptrdiff_t>(count));
      if (IsSound(&fitting)) return fitting;
    }
    return std::nullopt;
  }

  // Of tables whose records look alike only one holds this.
  [[nodiscard]] bool Belongs(const StoredRecord& record) const {
    if (table_.id == TableId::kParamValue || table_.id == TableId::kSystemValue) {
      const bool offered = Number(record, "PARAM_TAG") == static_cast<int>(ParamTag::kAllowedValue);
      return offered == (table_.id == TableId::kSystemValue);
    }
    const std::pair<TableId, UnitKind> units[] = {{TableId::kLinearUnit, UnitKind::kLinear},
                                                  {TableId::kAngularUnit, UnitKind::kAngular},
                                                  {TableId::kScaleUnit, UnitKind::kScale}};
    return std::ranges::all_of(units, [&](const auto& unit) {
      return unit.first != table_.id || Number(record, "TYPE") == static_cast<int>(unit.second);
    });
  }

 private:
  [[nodiscard]] std::size_t CountOfOlder() const {
    const auto first = std::ranges::find(table_.fields, "VERT_SYSTEM_AUTOKEY", &FieldSpec::name);
    return static_cast<std::size_t>(first - table_.fields.begin());
  }

  [[nodiscard]] std::int64_t Number(const StoredRecord& record, std::string_view name) const {
    const auto field = std::ranges::find(table_.fields, name, &FieldSpec::name);
    return IntegerOf(record.values.at(static_cast<std::size_t>(field - table_.fields.begin())));
  }

  [[nodiscard]] bool IsSound(FittingRecord* fitting) const {
    std::vector<StoredValue>& values = fitting->record.values;
    if (fitting->record.id < 1 || fitting->record.id > kLargestKey || fitting->version < 1) {
      return false;
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (!IsSound(table_.fields[i], &values[i])) return false;
    }
    // What an older layout did not have begins as it does when one is brought up to date.
    for (std::size_t i = values.size(); i < table_.fields.size(); ++i) {
      const bool begins = table_.fields[i].type == FieldType::kInteger &&
                          table_.fields[i].name != "TRANSFORM_AUTOKEY";
      values.push_back(begins ? StoredValue(std::int64_t{0}) : StoredValue());
    }
    return true;
  }

  [[nodiscard]] static bool IsSound(const FieldSpec& field, StoredValue* value) {
    const bool empty = std::holds_alternative<std::monostate>(*value);
    if (field.need == FieldNeed::kGeneratedKey) return empty;
    if (empty) return field.need != FieldNeed::kMandatory;
    switch (field.type) {
      case FieldType::kText:
        return TextOf(*value) != nullptr && QvPlatform::IsUtf8(*TextOf(*value));
      case FieldType::kInteger: {
        const auto* integer = std::get_if<std::int64_t>(value);
        return integer != nullptr && std::in_range<int>(*integer);
      }
      case FieldType::kFloat:
      case FieldType::kDateTime:
        // A number without a fraction is stored as an integer.
        if (const auto* integer = std::get_if<std::int64_t>(value)) {
          *value = static_cast<double>(*integer);
        }
        return std::holds_alternative<double>(*value);
    }
    return false;
  }

  const TableSpec& table_;
  bool hasKey_ = false;
};

void Add(FittingRecord fitting, bool replaces, SalvagedTable* table) {
  const std::int64_t id = fitting.record.id;
  const auto there = table->versions.find(id);
  if (there != table->versions.end() && (!replaces || there->second >= fitting.version)) return;
  table->versions[id] = fitting.version;
  table->records[id] = std::move(fitting.record);
}

}  // namespace

SalvagedFile::SalvagedFile(const std::string& path) : file_(Load(path)) {
  bool whole = true;
  roots_ = file_.ReadRoots(&whole);
  if (!whole) notes_.emplace_back("the list of its tables is damaged");
  indexes_ = file_.ReadIndexes();
  strays_ = file_.ReadStrays(roots_);
  ReadSequence();
}

std::string SalvagedFile::Load(const std::string& path) {
  bool whole = true;
  std::string bytes = QvPlatform::detail::ReadDamagedFile(path, &whole);
  if (!whole) notes_.emplace_back("the medium does not give all of it");
  return bytes;
}

SalvagedFile::Records SalvagedFile::OfTree(const std::string& name, bool* whole) const {
  const auto root = roots_.find(QvPlatform::LowerAscii(name));
  *whole = root != roots_.end();
  if (!*whole) return {};
  StoredTable table = file_.ReadTable(root->second);
  *whole = table.damaged.empty();
  return std::move(table.records);
}

void SalvagedFile::ReadSequence() {
  bool whole = true;
  for (const StoredRecord& record : OfTree("sqlite_sequence", &whole)) {
    if (record.values.size() != 2 || TextOf(record.values[0]) == nullptr) continue;
    sequence_[QvPlatform::LowerAscii(*TextOf(record.values[0]))] = IntegerOf(record.values[1], 0);
  }
}

SalvagedTable SalvagedFile::Read(const TableSpec& table, const std::string& name) const {
  const RecordShape shape(table);
  SalvagedTable read;
  bool whole = true;
  for (const StoredRecord& record : OfTree(name, &whole)) {
    if (auto fitting = shape.Fit(record)) {
      Add(*std::move(fitting), false, &read);
    } else {
      whole = false;
    }
  }
  for (const StoredRecord& record : strays_) {
    auto fitting = shape.Fit(record);
    if (fitting && shape.Belongs(fitting->record)) Add(*std::move(fitting), true, &read);
  }
  const auto last = sequence_.find(QvPlatform::LowerAscii(name));
  if (last != sequence_.end() && last->second <= kLargestKey) read.lastKey = last->second;
  if (!whole) read.lost = "records are lost";
  return read;
}

std::map<std::string, std::optional<std::string>> SalvagedFile::Blobs(
    const std::string& prefix) const {
  bool whole = true;
  Records all = OfTree("qv_blobs", &whole);
  const Records parts = OfTree("qv_blob_parts", &whole);
  all.insert(all.end(), parts.begin(), parts.end());
  all.insert(all.end(), strays_.begin(), strays_.end());
  std::map<std::pair<std::int64_t, std::int64_t>, const std::string*> contents;
  for (const StoredRecord& record : all) {
    const auto* data =
        record.values.size() == 3 ? std::get_if<StoredBytes>(&record.values[2]) : nullptr;
    if (data == nullptr) continue;
    contents[{IntegerOf(record.values[0]), IntegerOf(record.values[1])}] = &data->data;
  }
  std::map<std::string, std::optional<std::string>> blobs;
  for (const StoredRecord& record : all) {
    const std::string* name = record.values.size() == 3 ? TextOf(record.values[1]) : nullptr;
    if (name == nullptr || !QvPlatform::LowerAscii(*name).starts_with(prefix)) continue;
    std::string content;
    for (std::int64_t part = 0; contents.contains({record.id, part}); ++part)
      content += *contents[{record.id, part}];
    const bool isWhole = std::cmp_equal(content.size(), IntegerOf(record.values[2]));
    blobs[name->substr(prefix.size())] = isWhole ? std::optional(content) : std::nullopt;
  }
  return blobs;
}

}  // namespace QvRefSystem
