#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/geocore/shell_reference_system.h"
#include "vertical/vertical_processor.h"

namespace QvRefSystem {

/// What heights are made from.
enum class HeightSourceKind : unsigned char { kNone, kSystem, kFile, kOffset };
/// What becomes of them.
enum class HeightDataKind : unsigned char { kNone, kTable, kOffset };

/// Why a part of a source, a file or a wish cannot be used.
enum class HeightRefusal : unsigned char {
  kNone,
  /// A source system must have a height system, and the plane system of a file none.
  kNoHeights,
  kHasHeights,
  /// A chosen system cannot be computed; the failure tells why.
  kNoSystem,
  /// The ground of the heights has no image in the plane.
  kNoImage,
  /// An offset is no number in the C notation.
  kNoNumber,
  /// A file is none that the record names; cannot be opened, which the user was told; cannot be
  /// read or is empty; begins with no grid; has too few values, or one that is no number.
  kNoFile,
  kNotOpened,
  kNotRead,
  kNoGrid,
  kNoValues,
  /// The user has cancelled.
  kCancelled,
  /// A new grid has less than two nodes along an axis, or is none at all.
  kCellTooGreat,
  kUnusableGrid,
};

/// All sources that were chosen in a run; which one counts, its kind says.
struct HeightSource {
  HeightSourceKind Kind = HeightSourceKind::kNone;
  std::unique_ptr<TShellReferenceSystem> System;
  std::string FileName;
  std::unique_ptr<THeightTable> FileTable;
  /// The plane in which the grid of the file lies.
  std::unique_ptr<TShellReferenceSystem> FilePlaneSystem;
  /// A decimal number in the C notation, and the key of its linear unit.
  std::string Offset;
  int OffsetUnit = 0;
};

/// Heights as they are stored: a table on its grid, or an offset.
struct HeightData {
  std::unique_ptr<THeightTable> Table;
  TShell2DTableExtents Grid;
  std::string Offset;
  int OffsetUnit = 0;

  [[nodiscard]] HeightDataKind Kind() const;
};

/// How well a constant offset stands in for heights; texts as ApproximateHeights gives them.
struct HeightApproximation {
  std::string Offset;
  std::string Rms;
  std::string Max;
  std::string UnitLabel;
  std::string SourceName;
  THeightTable Errors;
};

/// The making of heights for one reference system, in whose plane they lie: what they are made
/// from, the grid, and what became of it. The dialog of height systems shows it and drives it.
///
/// It outlives the runs of the dialog. What a run stored, and from what, is kept in mind, so that
/// an owner that is not stored itself yet can show its last work again.
class HeightCreation {
 public:
  explicit HeightCreation(TdatamoduleQvRfData& data);
  HeightCreation(const HeightCreation&) = delete;
  HeightCreation& operator=(const HeightCreation&) = delete;

  // What the owner asks.

  /// Takes the plane from the text of a reference system's tree, and the key of the linear unit in
  /// which its heights are. False, with no plane, if there is no such system, or no unit.
  [[nodiscard]] bool SetPlaneSystem(std::string_view treeText, int unitKey);
  /// Forgets what was stored and kept. The plane of a stored reference system that has a height
  /// system of its own is kept in mind; false if it cannot be computed. Key 0: a new system.
  [[nodiscard]] bool LoadForReferenceSystem(int refSystemKey);
  /// Whether the stored heights lie in the plane of that system.
  [[nodiscard]] bool IsStoredPlaneSame(const TShellReferenceSystem* system) const;

  // Runs.

  /// Empties everything but the plane.
  void StartNew();
  /// Shows the current height system: the source of the last store, the grid as far as it can be
  /// brought into the plane, and the data if they lie in it. A height file that cannot be used is
  /// the result.
  [[nodiscard]] HeightRefusal StartEdit();

  // What there is. The plane is null after a store, until it is set anew.

  [[nodiscard]] TShellReferenceSystem* Target() const { return target_.get(); }
  [[nodiscard]] const HeightSource& Source() const { return source_; }
  [[nodiscard]] const TShell2DTableExtents& Grid() const { return grid_; }
  [[nodiscard]] const HeightData& MadeData() const { return made_; }
  /// Whether the data agree with the source and the grid.
  [[nodiscard]] bool IsCurrent() const { return isCurrent_; }
  /// Why the last Create made nothing, or why a system was not taken, in the words of what refused;
  /// may be empty.
  [[nodiscard]] const std::string& Failure() const { return failure_; }

  // Changes of the source and the grid; after each of them the data are not current.

  /// The kind that is chosen already is no change.
  void ChooseKind(HeightSourceKind kind);
  void SetGrid(const TShell2DTableExtents& grid);
  /// Takes the system of a tree, and its grid as seen in the plane.
  [[nodiscard]] HeightRefusal TakeSystem(TStringTree* tree);
  /// Reads a plain file. One that cannot be read leaves the old table.
  [[nodiscard]] HeightRefusal TakeFile(const std::string& path);
  [[nodiscard]] HeightRefusal TakeFilePlane(TStringTree* tree);
  /// The text as typed; one that is no number empties the offset.
  [[nodiscard]] HeightRefusal TakeOffset(const std::string& text);
  void TakeOffsetUnit(int key);
  /// The offset is being typed.
  void Outdate() { isCurrent_ = false; }

  /// Whether the source is whole, so that data of that kind can be made from it.
  [[nodiscard]] bool CanMake(HeightDataKind kind) const;
  /// What would be made without another wish.
  [[nodiscard]] HeightDataKind UsualKind() const;

  // Data.

  /// Whether the user accepts an offset in place of the heights.
  using OffsetAcceptance = std::function<bool(HeightApproximation&)>;
  /// Makes data of that kind from the source, with a progress display. What was made before is
  /// gone in any case. Refuses a grid (kCellTooGreat, kUnusableGrid); whatever else went wrong,
  /// Failure tells, and no data are there.
  [[nodiscard]] HeightRefusal Create(HeightDataKind kind, const OffsetAcceptance& accept);

  /// Writes a record with the three texts and the data: a new one, or the current one anew with its
  /// old height file gone. The data and the source are kept in mind, and the plane is used up.
  /// False, with nothing changed, if the user cancels. Throws what the tables throw.
  [[nodiscard]] bool Store(const HeightRecord& texts, bool append);

 private:
  /// Where heights come from while they are made: their plane, and the table or the system's own.
  struct HeightMaking {
    const TShellReferenceSystem* System;
    const THeightTable* Heights;
    std::string Name;
  };
  [[nodiscard]] std::unique_ptr<TShellReferenceSystem> SystemOf(TStringTree* tree);
  void RestoreSource();
  [[nodiscard]] bool LoadGrid();
  [[nodiscard]] HeightRefusal LoadData();
  [[nodiscard]] HeightRefusal LoadTable();
  void LoadOffset();
  void ClearData();
  /// The grid of the file as it is, where its plane is not known or has no image in the target.
  void TakeGridOfFile();
  [[nodiscard]] bool TakeGridFrom(const TShellReferenceSystem& system, const THeightTable* heights);
  [[nodiscard]] std::optional<HeightMaking> MakingOf() const;
  void InitializeGrid(THeightTable* table) const;
  // Each tells whether the work was done; an offset that is rejected is work done as well.
  [[nodiscard]] bool MakeTable(const HeightMaking& making, HeightRefusal* refusal);
  [[nodiscard]] bool MakeOffset(const HeightMaking& making, const OffsetAcceptance& accept,
                                HeightRefusal* refusal);
  [[nodiscard]] bool CopyOffset();
  void KeepSource();

  [[nodiscard]] std::string FieldText(const char* field) const;

  TdatamoduleQvRfData& data_;
  TQvRfVerticalRefSystemDataProcessor& processor_;

  std::unique_ptr<TShellReferenceSystem> target_;
  int heightUnitKey_ = 0;
  HeightSource source_;
  TShell2DTableExtents grid_;
  HeightData made_;
  bool isCurrent_ = false;
  std::string failure_;

  // The last store.
  HeightSource kept_;
  std::unique_ptr<TShellReferenceSystem> storedTarget_;
  std::unique_ptr<THeightTable> storedTable_;
};

/// A linear unit as it is shown; nothing if there is none of that key. Moves no cursor.
struct UnitTexts {
  std::string Name;
  std::string Abbreviation;
  /// "metre (m)".
  [[nodiscard]] std::string Label() const { return Name + " (" + Abbreviation + ")"; }
};
[[nodiscard]] std::optional<UnitTexts> LinearUnitTexts(TdatamoduleQvRfData& data, int key);

}  // namespace QvRefSystem
