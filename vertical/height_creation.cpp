#include "vertical/height_creation.h"

#include "database/storage_files.h"
#include "platform/geocore/shell_grids.h"
#include "platform/text/text.h"
#include "platform/ui/texts.h"
#include "processors/ref_system_processor.h"
#include "vertical/height_table_text.h"

namespace QvRefSystem {

using QvPlatform::SystemText;
using QvPlatform::TextId;

namespace {

// Reads a height file with a progress display.
THeightRefusal ReadTable(const std::string& path, bool useResource, THeightTable* table,
                         QvPlatform::TUserInterface& ui) {
  std::string text;
  try {
    if (!LoadStorageFile(path, useResource, &text)) {
      if (StorageFileOpens(path, useResource)) return THeightRefusal::kNotRead;
      TellCannotCreate(path, useResource, ui);
      return THeightRefusal::kNotOpened;
    }
  } catch (const std::exception&) {
    return THeightRefusal::kNotRead;
  }
  TProgressDisplay progress(ui, TProgressDisplay::kCounted, SystemText(TextId::kLoadingHeights));
  if (ParseHeightTable(table, text, progress.Interface())) return THeightRefusal::kNone;
  if (progress.Cancelled()) return THeightRefusal::kCancelled;
  THeightTableHeader header;
  return ReadHeightTableHeader(text, &header) ? THeightRefusal::kNoValues : THeightRefusal::kNoGrid;
}

std::unique_ptr<TShellReferenceSystem> CopyOf(const std::unique_ptr<TShellReferenceSystem>& from) {
  return from == nullptr ? nullptr : from->CreateCopy();
}

bool IsNumber(const std::string& text) {
  double value = 0;
  return QvPlatform::TextToDouble(text, &value);
}

}  // namespace

THeightDataKind THeightData::Kind() const {
  if (Table != nullptr) return THeightDataKind::kTable;
  return !Offset.empty() && OffsetUnit != 0 ? THeightDataKind::kOffset : THeightDataKind::kNone;
}

std::optional<TUnitTexts> LinearUnitTexts(TdatamoduleQvRfData& data, int key) {
  QvPlatform::TQvDataSet& units = data.datasetLinearUnit;
  const auto column = [&](std::string_view name) { return units.FieldByName(name).GetIndex(); };
  const auto rows = units.FindAll(
      {QvPlatform::TMatch::Integer(column(TableOf(TableId::kLinearUnit).keyField), key)},
      QvPlatform::TRowScope::kAll);
  if (key == 0 || rows.empty()) return std::nullopt;
  return TUnitTexts{rows.front().GetText(column("NAME")),
                    rows.front().GetText(column("ABBREVIATION"))};
}

THeightCreation::THeightCreation(TdatamoduleQvRfData& data)
    : data_(data), processor_(*data.VerticalRefSystemProcessor) {}

std::string THeightCreation::FieldText(const char* field) const {
  return processor_.DataSet->FieldByName(field).AsString();
}

// What the owner asks.

bool THeightCreation::SetPlaneSystem(std::string_view treeText, int unitKey) {
  target_.reset();
  heightUnitKey_ = 0;
  try {
    TStringTree tree;
    ReadTreeText(treeText, &tree);
    target_ = CreateShellReferenceSystem(&tree, nullptr);
  } catch (const std::exception&) {
    return false;
  }
  if (target_ != nullptr) heightUnitKey_ = unitKey;
  return heightUnitKey_ != 0;
}

bool THeightCreation::LoadForReferenceSystem(int refSystemKey) {
  kept_ = {};
  storedTarget_.reset();
  storedTable_.reset();
  if (refSystemKey == 0) return true;
  TQvRfDataProcessor& systems = *data_.RefSystemProcessor;
  if (!systems.LocateKey(refSystemKey)) return false;
  if (systems.DataSet->FieldByName("VERT_SYSTEM_AUTOKEY").AsInteger() == 0) return true;
  TStringTree tree;
  if (!systems.WriteToTree(&tree, 0, 0)) return false;
  storedTarget_ = CreateShellReferenceSystem(&tree, nullptr);
  return storedTarget_ != nullptr;
}

bool THeightCreation::IsStoredPlaneSame(const TShellReferenceSystem* system) const {
  return storedTarget_ != nullptr && storedTarget_->IsSameAs(system);
}

// Runs.

void THeightCreation::StartNew() {
  source_ = {};
  kept_ = {};
  storedTarget_.reset();
  storedTable_.reset();
  grid_ = {};
  ClearData();
}

THeightRefusal THeightCreation::StartEdit() {
  RestoreSource();
  if (LoadGrid()) return LoadData();
  ClearData();
  return THeightRefusal::kNone;
}

void THeightCreation::RestoreSource() {
  source_ = {};
  if (kept_.FileTable != nullptr && !kept_.FileName.empty() && kept_.FilePlaneSystem != nullptr) {
    source_.Kind = THeightSourceKind::kFile;
    source_.FileTable = std::make_unique<THeightTable>(*kept_.FileTable);
    source_.FileName = kept_.FileName;
    source_.FilePlaneSystem = CopyOf(kept_.FilePlaneSystem);
  } else if (kept_.System != nullptr) {
    source_.Kind = THeightSourceKind::kSystem;
    source_.System = CopyOf(kept_.System);
  } else if (!kept_.Offset.empty() && kept_.OffsetUnit != 0) {
    source_.Kind = THeightSourceKind::kOffset;
    source_.Offset = kept_.Offset;
    TakeOffsetUnit(kept_.OffsetUnit);
  }
}

bool THeightCreation::LoadGrid() {
  grid_ = {};
  if (storedTarget_ == nullptr || target_ == nullptr) return false;
  const TShell2DTableExtents stored{.West = FieldText("VDATA_EXTENTS_WEST"),
                                    .East = FieldText("VDATA_EXTENTS_EAST"),
                                    .South = FieldText("VDATA_EXTENTS_SOUTH"),
                                    .North = FieldText("VDATA_EXTENTS_NORTH"),
                                    .CellEastWest = FieldText("VDATA_CELL_EAST_WEST"),
                                    .CellNorthSouth = FieldText("VDATA_CELL_NORTH_SOUTH")};
  if (storedTarget_->IsSameAs(target_.get())) {
    grid_ = stored;
    return true;
  }
  TShell2DTableExtents seen;
  try {
    if (storedTarget_->RecalculateTableGrid(&stored, target_.get(), &seen)) grid_ = seen;
  } catch (const GeodesyError&) {
    grid_ = {};
  }
  return false;
}

THeightRefusal THeightCreation::LoadData() {
  ClearData();
  THeightRefusal refusal = THeightRefusal::kNone;
  const bool sameUnit = *target_ ^ *storedTarget_;
  if (storedTable_ != nullptr && sameUnit) {
    made_.Table = std::make_unique<THeightTable>(*storedTable_);
  } else if (processor_.DataSet->FieldByName("VDATA_TYPE").AsInteger() == kHeightTable) {
    refusal = LoadTable();
  } else {
    LoadOffset();
  }
  if (made_.Table != nullptr) made_.Grid = grid_;
  // A table has no unit of its own: under another one its heights would be other heights.
  isCurrent_ = made_.Kind() == THeightDataKind::kOffset ||
               (made_.Kind() == THeightDataKind::kTable && sameUnit);
  return refusal;
}

THeightRefusal THeightCreation::LoadTable() {
  const std::optional<std::string> path = processor_.CurrentHeightFile();
  if (!path) return THeightRefusal::kNoFile;
  auto table = std::make_unique<THeightTable>();
  const THeightRefusal refusal = ReadTable(*path, data_.ResourceForm, table.get(), data_.Ui());
  if (refusal == THeightRefusal::kNone) made_.Table = std::move(table);
  return refusal;
}

void THeightCreation::LoadOffset() {
  made_.Offset = FieldText("VDATA_OFFSET");
  if (made_.Offset.empty()) return;
  source_.Offset = made_.Offset;
  const int unit = processor_.DataSet->FieldByName("VDATA_UNIT_AUTOKEY").AsInteger();
  made_.OffsetUnit = LinearUnitTexts(data_, unit) ? unit : 0;
}

void THeightCreation::ClearData() {
  made_ = {};
  isCurrent_ = false;
  failure_.clear();
}

// Changes of the source and the grid.

void THeightCreation::ChooseKind(THeightSourceKind kind) {
  if (kind == source_.Kind) return;
  source_.Kind = kind;
  isCurrent_ = false;
}

void THeightCreation::SetGrid(const TShell2DTableExtents& grid) {
  grid_ = grid;
  isCurrent_ = false;
}

std::unique_ptr<TShellReferenceSystem> THeightCreation::SystemOf(TStringTree* tree) {
  isCurrent_ = false;
  failure_.clear();
  TProgressDisplay progress(data_.Ui(), TProgressDisplay::kCounted,
                            SystemText(TextId::kLoadingHeights));
  return CreateShellReferenceSystem(tree, progress.Interface(), &failure_);
}

THeightRefusal THeightCreation::TakeSystem(TStringTree* tree) {
  source_.System = SystemOf(tree);
  if (source_.System == nullptr) return THeightRefusal::kNoSystem;
  if (!TakeGridFrom(*source_.System, nullptr) && source_.FileTable != nullptr) TakeGridOfFile();
  return source_.System->HasHeightSystem() ? THeightRefusal::kNone : THeightRefusal::kNoHeights;
}

THeightRefusal THeightCreation::TakeFile(const std::string& path) {
  auto table = std::make_unique<THeightTable>();
  const THeightRefusal refusal = ReadTable(path, false, table.get(), data_.Ui());
  if (refusal == THeightRefusal::kNotOpened || refusal == THeightRefusal::kNotRead) return refusal;
  isCurrent_ = false;
  if (refusal != THeightRefusal::kNone) {
    source_.FileTable.reset();
    source_.FileName.clear();
    return refusal;
  }
  source_.FileTable = std::move(table);
  source_.FileName = path;
  if (source_.FilePlaneSystem != nullptr &&
      TakeGridFrom(*source_.FilePlaneSystem, source_.FileTable.get())) {
    return THeightRefusal::kNone;
  }
  TakeGridOfFile();
  return source_.FilePlaneSystem == nullptr ? THeightRefusal::kNone : THeightRefusal::kNoImage;
}

THeightRefusal THeightCreation::TakeFilePlane(TStringTree* tree) {
  source_.FilePlaneSystem = SystemOf(tree);
  if (source_.FilePlaneSystem == nullptr) return THeightRefusal::kNoSystem;
  if (source_.FilePlaneSystem->HasHeightSystem()) {
    source_.FilePlaneSystem.reset();
    return THeightRefusal::kHasHeights;
  }
  if (source_.FileTable != nullptr) {
    // Without an image the grid stays as it is.
    (void)TakeGridFrom(*source_.FilePlaneSystem, source_.FileTable.get());
  }
  return THeightRefusal::kNone;
}

bool THeightCreation::TakeGridFrom(const TShellReferenceSystem& system,
                                   const THeightTable* heights) {
  TShell2DTableExtents seen;
  const auto ask = [&](const auto&... source) {
    return system.RecalculateHeightTableGrid(source..., target_.get(), &seen.North, &seen.South,
                                             &seen.East, &seen.West, &seen.CellNorthSouth,
                                             &seen.CellEastWest);
  };
  try {
    if (target_ == nullptr || !(heights == nullptr ? ask() : ask(heights))) return false;
  } catch (const GeodesyError&) {
    return false;
  }
  grid_ = seen;
  return true;
}

void THeightCreation::TakeGridOfFile() {
  constexpr int kDigits = 15;
  grid_ = FormatExtents(ExtentsOf(*source_.FileTable), kDigits);
}

THeightRefusal THeightCreation::TakeOffset(const std::string& text) {
  const bool isNumber = IsNumber(text);
  source_.Offset = isNumber ? text : std::string();
  return isNumber ? THeightRefusal::kNone : THeightRefusal::kNoNumber;
}

void THeightCreation::TakeOffsetUnit(int key) {
  source_.OffsetUnit = LinearUnitTexts(data_, key) ? key : 0;
  isCurrent_ = false;
}

THeightDataKind THeightCreation::UsualKind() const {
  switch (source_.Kind) {
    case THeightSourceKind::kSystem:
      if (source_.System != nullptr) return THeightDataKind::kTable;
      break;
    case THeightSourceKind::kFile:
      if (source_.FileTable != nullptr && source_.FilePlaneSystem != nullptr) {
        return THeightDataKind::kTable;
      }
      break;
    case THeightSourceKind::kOffset:
      if (source_.OffsetUnit != 0 && IsNumber(source_.Offset)) return THeightDataKind::kOffset;
      break;
    case THeightSourceKind::kNone:
      break;
  }
  return THeightDataKind::kNone;
}

bool THeightCreation::CanMake(THeightDataKind kind) const {
  const THeightDataKind usual = UsualKind();
  // Heights can be taken for an offset, but an offset gives no table.
  return kind != THeightDataKind::kNone && usual != THeightDataKind::kNone &&
         (kind == THeightDataKind::kOffset || usual == THeightDataKind::kTable);
}

}  // namespace QvRefSystem
