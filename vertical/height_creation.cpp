#include "vertical/height_creation.h"

#include "platform/data/grid_extents.h"
#include "platform/data/height_table_reader.h"
#include "platform/text/text.h"
#include "platform/ui/progress_display.h"
#include "platform/ui/texts.h"
#include "processors/ref_system_processor.h"
#include "vertical/linear_unit_texts.h"

namespace QvRefSystem {

using QvPlatform::SystemText;
using QvPlatform::TextId;

namespace {

std::unique_ptr<TShellReferenceSystem> CopyOf(const std::unique_ptr<TShellReferenceSystem>& from) {
  return from == nullptr ? nullptr : from->CreateCopy();
}

}  // namespace

HeightCreation::HeightCreation(TdatamoduleQvRfData& data)
    : data_(data), processor_(*data.VerticalRefSystemProcessor) {}

std::string HeightCreation::FieldText(const char* field) const {
  return processor_.DataSet->FieldByName(field).AsString();
}

// What the owner asks.

bool HeightCreation::SetPlaneSystem(std::string_view treeText, int unitKey) {
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

bool HeightCreation::LoadForReferenceSystem(int refSystemKey) {
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

bool HeightCreation::IsStoredPlaneSame(const TShellReferenceSystem* system) const {
  return storedTarget_ != nullptr && storedTarget_->IsSameAs(system);
}

// Runs.

void HeightCreation::StartNew() {
  source_ = {};
  kept_ = {};
  storedTarget_.reset();
  storedTable_.reset();
  grid_ = {};
  ClearData();
}

HeightRefusal HeightCreation::StartEdit() {
  RestoreSource();
  if (LoadGrid()) return LoadData();
  ClearData();
  return HeightRefusal::kNone;
}

void HeightCreation::RestoreSource() {
  source_ = {};
  if (kept_.FileTable != nullptr && !kept_.FileName.empty() && kept_.FilePlaneSystem != nullptr) {
    source_.Kind = HeightSourceKind::kFile;
    source_.FileTable = std::make_unique<THeightTable>(*kept_.FileTable);
    source_.FileName = kept_.FileName;
    source_.FilePlaneSystem = CopyOf(kept_.FilePlaneSystem);
  } else if (kept_.System != nullptr) {
    source_.Kind = HeightSourceKind::kSystem;
    source_.System = CopyOf(kept_.System);
  } else if (!kept_.Offset.empty() && kept_.OffsetUnit != 0) {
    source_.Kind = HeightSourceKind::kOffset;
    source_.Offset = kept_.Offset;
    TakeOffsetUnit(kept_.OffsetUnit);
  }
}

bool HeightCreation::LoadGrid() {
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

HeightRefusal HeightCreation::LoadData() {
  ClearData();
  HeightRefusal refusal = HeightRefusal::kNone;
  const bool sameUnit = *target_ ^ *storedTarget_;
  if (storedTable_ != nullptr && sameUnit) {
    made_.Table = std::make_unique<THeightTable>(*storedTable_);
  } else if (processor_.CurrentKind() == HeightKind::kTable) {
    refusal = LoadTable();
  } else {
    LoadOffset();
  }
  if (made_.Table != nullptr) made_.Grid = grid_;
  // A table has no unit of its own: under another one its heights would be other heights.
  isCurrent_ =
      made_.Kind() == HeightKind::kOffset || (made_.Kind() == HeightKind::kTable && sameUnit);
  return refusal;
}

HeightRefusal HeightCreation::LoadTable() {
  const std::optional<std::string> path = processor_.CurrentHeightFile();
  if (!path) return HeightRefusal::kNoFile;
  std::string text;
  HeightRefusal refusal = ReadHeightText(*path, data_.ResourceForm, &text, data_.Ui());
  if (refusal != HeightRefusal::kNone) return refusal;
  if (const std::optional<std::string> damage = processor_.DamageOf(text)) {
    TellCannotCreate(*path, data_.ResourceForm, data_.Ui(), *damage);
    return HeightRefusal::kNotOpened;
  }
  auto table = std::make_unique<THeightTable>();
  refusal = TableOfText(text, table.get(), data_.Ui());
  if (refusal == HeightRefusal::kNone) made_.Table = std::move(table);
  return refusal;
}

void HeightCreation::LoadOffset() {
  made_.Offset = FieldText("VDATA_OFFSET");
  if (made_.Offset.empty()) return;
  source_.Offset = made_.Offset;
  const int unit = processor_.DataSet->FieldByName("VDATA_UNIT_AUTOKEY").AsInteger();
  made_.OffsetUnit = LinearUnitTexts(data_, unit) ? unit : 0;
}

void HeightCreation::ClearData() {
  made_ = {};
  isCurrent_ = false;
  failure_.clear();
}

// Changes of the source and the grid.

void HeightCreation::ChooseKind(HeightSourceKind kind) {
  if (kind == source_.Kind) return;
  source_.Kind = kind;
  isCurrent_ = false;
}

void HeightCreation::SetGrid(const TShell2DTableExtents& grid) {
  grid_ = grid;
  isCurrent_ = false;
}

std::unique_ptr<TShellReferenceSystem> HeightCreation::SystemOf(TStringTree* tree) {
  isCurrent_ = false;
  failure_.clear();
  ProgressDisplay progress(data_.Ui(), ProgressDisplay::kCounted,
                           SystemText(TextId::kLoadingHeights));
  return CreateShellReferenceSystem(tree, progress.Interface(), &failure_);
}

HeightRefusal HeightCreation::TakeSystem(TStringTree* tree) {
  source_.System = SystemOf(tree);
  if (source_.System == nullptr) return HeightRefusal::kNoSystem;
  if (!TakeGridFrom(*source_.System, nullptr) && source_.FileTable != nullptr) TakeGridOfFile();
  return source_.System->HasHeightSystem() ? HeightRefusal::kNone : HeightRefusal::kNoHeights;
}

HeightRefusal HeightCreation::TakeFile(const std::string& path) {
  auto table = std::make_unique<THeightTable>();
  const HeightRefusal refusal = ReadHeightTable(path, false, table.get(), data_.Ui());
  if (refusal == HeightRefusal::kNotOpened || refusal == HeightRefusal::kNotRead) return refusal;
  isCurrent_ = false;
  if (refusal != HeightRefusal::kNone) {
    source_.FileTable.reset();
    source_.FileName.clear();
    return refusal;
  }
  source_.FileTable = std::move(table);
  source_.FileName = path;
  if (source_.FilePlaneSystem != nullptr &&
      TakeGridFrom(*source_.FilePlaneSystem, source_.FileTable.get())) {
    return HeightRefusal::kNone;
  }
  TakeGridOfFile();
  return source_.FilePlaneSystem == nullptr ? HeightRefusal::kNone : HeightRefusal::kNoImage;
}

HeightRefusal HeightCreation::TakeFilePlane(TStringTree* tree) {
  source_.FilePlaneSystem = SystemOf(tree);
  if (source_.FilePlaneSystem == nullptr) return HeightRefusal::kNoSystem;
  if (source_.FilePlaneSystem->HasHeightSystem()) {
    source_.FilePlaneSystem.reset();
    return HeightRefusal::kHasHeights;
  }
  if (source_.FileTable != nullptr) {
    // Without an image the grid stays as it is.
    (void)TakeGridFrom(*source_.FilePlaneSystem, source_.FileTable.get());
  }
  return HeightRefusal::kNone;
}

bool HeightCreation::TakeGridFrom(const TShellReferenceSystem& system,
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

void HeightCreation::TakeGridOfFile() {
  constexpr int kDigits = 15;
  grid_ = FormatExtents(ExtentsOf(*source_.FileTable), kDigits);
}

HeightRefusal HeightCreation::TakeOffset(const std::string& text) {
  double number = 0;
  const bool isNumber = QvPlatform::TextToDouble(text, &number);
  source_.Offset = isNumber ? text : std::string();
  return isNumber ? HeightRefusal::kNone : HeightRefusal::kNoNumber;
}

void HeightCreation::TakeOffsetUnit(int key) {
  source_.OffsetUnit = LinearUnitTexts(data_, key) ? key : 0;
  isCurrent_ = false;
}

// Data.

HeightRefusal HeightCreation::Create(std::optional<HeightKind> kind,
                                     const OffsetAcceptance& accept) {
  ClearData();
  HeightMaker maker(data_, source_, {target_.get(), heightUnitKey_, grid_});
  MadeHeights made = maker.Make(kind, accept);
  made_ = std::move(made.Data);
  isCurrent_ = made.IsDone;
  failure_ = std::move(made.Failure);
  return made.Refusal;
}

bool HeightCreation::Store(const HeightRecord& texts, bool append) {
  HeightRecord record = texts;
  record.Table = made_.Table.get();
  record.Grid = made_.Grid;
  record.Offset = made_.Offset;
  record.OffsetUnit = made_.OffsetUnit;
  if (!processor_.Store(record, append)) return false;
  storedTarget_ = std::move(target_);
  KeepSource();
  storedTable_ = std::move(made_.Table);
  return true;
}

void HeightCreation::KeepSource() {
  HeightSource kept;
  switch (kept.Kind = source_.Kind) {
    case HeightSourceKind::kNone:
      // The data were loaded: what they were once made from is still what is known of them.
      return;
    case HeightSourceKind::kSystem:
      kept.System = std::move(source_.System);
      break;
    case HeightSourceKind::kFile:
      kept.FileName = source_.FileName;
      kept.FileTable = std::move(source_.FileTable);
      kept.FilePlaneSystem = std::move(source_.FilePlaneSystem);
      break;
    case HeightSourceKind::kOffset:
      kept.Offset = source_.Offset;
      kept.OffsetUnit = source_.OffsetUnit;
      break;
  }
  kept_ = std::move(kept);
}

}  // namespace QvRefSystem
