#include "database/conversion.h"

#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "database/storage_files.h"
#include "database/table_catalogue.h"
#include "database/table_files.h"
#include "platform/dbset/write_group.h"
#include "platform/ui/texts.h"

namespace QvRefSystem {

using QvPlatform::FieldType;
using QvPlatform::TField;
using QvPlatform::TQvDataBuffer;
using QvPlatform::TQvDataSet;

namespace {

/// How the user sees the course of it: the number of steps is known from the start.
constexpr int kConversionProgress = 0x61;
/// Behind the table's name: the table that is being made. One that a stop left behind is replaced.
constexpr std::string_view kUnfinished = "_converting";

constexpr std::string_view kKey = "AUTOKEY";
constexpr std::string_view kFirstNewField = "VERT_SYSTEM_AUTOKEY";

// What becomes of the records: fields ahead of those for heights are copied by name, numbers behind
// them begin at 0, and texts stay empty. The tables must stay open while this lives.
class ConvertedRecords {
 public:
  ConvertedRecords(TQvDataSet& from, TQvDataSet& to)
      : to_(to), fromKey_(from.FieldByName(kKey)), toKey_(to.FieldByName(kKey)) {
    bool newer = false;
    for (const FieldSpec& field : TableOf(TableId::kRefSystem).fields) {
      if (field.name == kKey) continue;
      newer = newer || field.name == kFirstNewField;
      if (!newer) {
        copied_.push_back({field.type, &from.FieldByName(field.name), &to.FieldByName(field.name)});
      } else if (field.type == FieldType::kInteger && field.name != "TRANSFORM_AUTOKEY") {
        begun_.push_back(&to.FieldByName(field.name));
      }
    }
  }

  // Adds what the current older record becomes.
  void Append() {
    to_.Append();
    for (const Copy& copy : copied_)
      copy.Run();
    for (TField* field : begun_)
      field->SetInteger(0);
    to_.Post();
    // The first Post has given the record a key of its own; others refer to it by the old one.
    to_.Edit();
    toKey_.SetInteger(fromKey_.AsInteger());
    to_.Post();
  }

 private:
  struct Copy {
    FieldType type;
    TField* from;
    TField* to;

    void Run() const {
      switch (type) {
        case FieldType::kInteger:
          to->SetInteger(from->AsInteger());
          break;
        case FieldType::kFloat:
        case FieldType::kDateTime:
          to->SetFloat(from->AsFloat());
          break;
        case FieldType::kText:
          to->SetString(from->AsString());
          break;
      }
    }
  };

  TQvDataSet& to_;
  TField& fromKey_;
  TField& toKey_;
  std::vector<Copy> copied_;
  std::vector<TField*> begun_;
};

void CloseTable(TQvDataSet& dataSet) {
  dataSet.Close();
  dataSet.DataBuff->Close();
}

// Closes the two tables of a conversion, however it ends.
class OpenedTables {
 public:
  OpenedTables(TQvDataSet& from, TQvDataSet& to) : from_(from), to_(to) {
    from_.Open();
    to_.Open();
  }
  ~OpenedTables() {
    CloseTable(from_);
    CloseTable(to_);
  }
  OpenedTables(const OpenedTables&) = delete;
  OpenedTables& operator=(const OpenedTables&) = delete;
  [[nodiscard]] bool Active() const { return from_.GetActive() && to_.GetActive(); }

 private:
  TQvDataSet& from_;
  TQvDataSet& to_;
};

}  // namespace

RefSystemConversion::RefSystemConversion(TQvDataSet& table, TQvDataSet& scratch,
                                         QvPlatform::TUserInterface& ui)
    : table_(table), scratch_(scratch), ui_(ui) {
  CloseTable(table_);
}

void RefSystemConversion::FillFrom(const std::string& backup) {
  TQvDataBuffer& source = *scratch_.DataBuff;
  CloseTable(scratch_);
  source.SetDataBufferType(table_.DataBuff->GetDataBufferType());
  source.StreamName = backup;
  source.SetSortField(0, false, true);
  const OpenedTables tables(scratch_, table_);
  if (!tables.Active()) throw std::runtime_error("the tables of the conversion did not open");

  const auto progress = ui_.StartProgress(kConversionProgress,
                                          QvPlatform::SystemText(QvPlatform::TextId::kConversion),
                                          scratch_.RecordCount());
  // In a container all is part of the transaction that is open already.
  std::optional<QvPlatform::TQvWriteGroup> group;
  if (source.GetDataBufferType() != QvPlatform::QvDataBufferType::kResource) {
    group.emplace(std::vector{&table_});
  }
  ConvertedRecords records(scratch_, table_);
  for (scratch_.First(); !scratch_.Eof(); scratch_.Next()) {
    records.Append();
    // There is no half converted database to stop at.
    if (progress != nullptr) (void)progress->Next();
  }
  // The last record may have been deleted: its key is not given again.
  table_.RaiseLastKey(scratch_.LastKey());
  if (group) group->Commit();
}

bool RefSystemConversion::Run(const std::string& backup, const std::string& place) {
  TQvDataBuffer& buffer = *table_.DataBuff;
  const bool resourceForm = buffer.GetDataBufferType() == QvPlatform::QvDataBufferType::kResource;
  const std::string name = buffer.StreamName;
  const std::string unfinished = place + std::string(kUnfinished);
  if (!CreateTable(unfinished, resourceForm, TableOf(TableId::kRefSystem).tag, ui_)) return false;

  buffer.StreamName = unfinished;
  buffer.SetSortField(-1, false, true);
  const auto restore = [&] {
    buffer.StreamName = name;
    buffer.SetSortField(TableOf(TableId::kRefSystem).sortField, false, true);
  };
  try {
    FillFrom(backup);
  } catch (...) {
    restore();
    DeleteStorageFile(unfinished, resourceForm);
    throw;
  }
  restore();
  try {
    WriteStorageFile(name, resourceForm, ReadStorageFile(unfinished, resourceForm));
  } catch (...) {
    DeleteStorageFile(unfinished, resourceForm);
    throw;
  }
  DeleteStorageFile(unfinished, resourceForm);
  table_.Open();
  return table_.GetActive();
}

}  // namespace QvRefSystem
