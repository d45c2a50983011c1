#include "assembly/salvaged_file.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/dbset/field_descriptions.h"
#include "platform/geocore/system_model.h"
#include "platform/storage/table_image.h"
#include "platform/storage/table_state.h"
#include "platform/text/ascii.h"
#include "platform/text/text.h"
#include "processors/object_descriptor.h"

namespace QvRefSystem {

namespace {

using QvPlatform::FieldNeed;
using QvPlatform::FieldType;
using QvPlatform::detail::FieldDescription;
using QvPlatform::detail::kSummedVersion;
using QvPlatform::detail::RecordSum;
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
};

/// Knows how the records of a table lie in a file.
class RecordShape {
 public:
  // `layout` is the version of the file's layout.
  RecordShape(const TableSpec& table, std::uint32_t layout) : table_(table), layout_(layout) {
    fields_ = QvPlatform::detail::Describe(HeaderOf(table));
    hasKey_ = std::ranges::any_of(table.fields, [](const FieldSpec& field) {
      return field.need == FieldNeed::kGeneratedKey;
    });
  }

  // Nothing for a record that is not one of this table, or damaged.
  [[nodiscard]] std::optional<FittingRecord> Fit(const StoredRecord& stored) const {
    for (const std::size_t count : {table_.fields.size(), CountOfOlder()}) {
      if (auto fitting = Fit(stored, count)) return fitting;
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
  // As one of so many fields; behind them stand the version and, in a layout that has them, the
  // checksum.
  [[nodiscard]] std::optional<FittingRecord> Fit(const StoredRecord& stored,
                                                 std::size_t count) const {
    const std::size_t first = hasKey_ ? 0 : 1;
    const bool summed = layout_ >= kSummedVersion;
    if (stored.values.size() != first + count + (summed ? 2 : 1)) return std::nullopt;
    FittingRecord fitting;
    fitting.record.id = stored.id;
    fitting.version = IntegerOf(stored.values[first + count]);
    const auto begin = stored.values.begin() + static_cast<std::ptrdiff_t>(first);
    fitting.record.values.assign(begin, begin + static_cast<std::ptrdiff_t>(count));
    if (!IsSound(&fitting)) return std::nullopt;
    if (summed && SumOf(fitting) != IntegerOf(stored.values.back())) return std::nullopt;
    FillUp(&fitting.record.values);
    return fitting;
  }

  [[nodiscard]] std::int64_t SumOf(const FittingRecord& fitting) const {
    const std::vector<FieldDescription> fields(
        fields_.begin(),
        fields_.begin() + static_cast<std::ptrdiff_t>(fitting.record.values.size()));
    return SumOfRecord(fields, fitting.record.id, fitting.version, fitting.record.values);
  }

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
    return true;
  }

  // What an older layout did not have begins as it does when one is brought up to date.
  void FillUp(std::vector<StoredValue>* values) const {
    for (std::size_t i = values->size(); i < table_.fields.size(); ++i) {
      const bool begins = table_.fields[i].type == FieldType::kInteger &&
                          table_.fields[i].name != "TRANSFORM_AUTOKEY";
      values->push_back(begins ? StoredValue(std::int64_t{0}) : StoredValue());
    }
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
  std::uint32_t layout_;
  std::vector<FieldDescription> fields_;
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
  ReadStates();
  strays_ = file_.ReadStrays(roots_);
  layout_ = FindLayout();
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

// Where the head is lost, a record with the right checksum proves that records have them.
std::uint32_t SalvagedFile::FindLayout() const {
  if (file_.UserVersion() != 0) return file_.UserVersion();
  for (const TableSpec& table : TableCatalogue()) {
    const RecordShape shape(table, kSummedVersion);
    const auto fits = [&shape](const StoredRecord& record) {
      return shape.Fit(record).has_value();
    };
    if (std::ranges::any_of(strays_, fits)) return kSummedVersion;
  }
  return 1;
}

void SalvagedFile::ReadStates() {
  // The columns are name, changes, rows, digest, number and files of the last group.
  constexpr std::size_t kColumns = 6;
  for (const StoredRecord& record : file_.ReadIndexes()) {
    const std::vector<StoredValue>& values = record.values;
    if (values.size() != kColumns || TextOf(values[0]) == nullptr || TextOf(values[5]) == nullptr) {
      continue;
    }
    states_.emplace(QvPlatform::LowerAscii(*TextOf(values[0])),
                    std::pair(IntegerOf(values[2]), IntegerOf(values[3])));
  }
}

std::string SalvagedFile::LostOf(const SalvagedTable& table, const std::string& name,
                                 bool whole) const {
  const auto [first, last] = states_.equal_range(QvPlatform::LowerAscii(name));
  const auto found = std::pair(static_cast<std::int64_t>(table.records.size()), table.digest);
  if (std::any_of(first, last, [&](const auto& state) { return state.second == found; })) return "";
  const bool summed = layout_ >= kSummedVersion;
  if (first == last && whole) return summed ? "it is not known whether records are lost" : "";
  if (first == last) return "records are lost";
  const std::int64_t missing = first->second.first - found.first;
  if (missing > 0) return std::to_string(missing) + " records are lost";
  return "some records may be those of another moment";
}

SalvagedTable SalvagedFile::Read(const TableSpec& table, const std::string& name) const {
  const RecordShape shape(table, layout_);
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
  const std::vector<FieldDescription> fields = QvPlatform::detail::Describe(HeaderOf(table));
  for (const auto& [id, record] : read.records) {
    const std::int64_t sum = SumOfRecord(fields, id, read.versions.at(id), record.values);
    read.digest = (read.digest + sum) & RecordSum::kMask;
  }
  read.lost = LostOf(read, name, whole);
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
