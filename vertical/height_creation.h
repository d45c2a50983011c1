#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/geocore/shell_reference_system.h"
#include "vertical/height_data.h"
#include "vertical/height_maker.h"
#include "vertical/height_record.h"
#include "vertical/height_refusal.h"
#include "vertical/height_source.h"
#include "vertical/vertical_processor.h"

namespace QvRefSystem {

/// The making of heights for one reference system, in whose plane they lie: what they are made
/// from, the grid, and what became of it. The dialog of height systems shows it and drives it.
///
/// It outlives the runs of the dialog. What a run stored, and from what, is kept in mind, so that
/// an owner that is not stored itself yet can show its last work again.
class HeightCreation {
 public:
  /// Over an open database, which must outlive this.
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

  // What there is.

  /// The plane in which the heights lie; null after a store, until it is set anew.
  [[nodiscard]] TShellReferenceSystem* Target() const { return target_.get(); }
  /// What was chosen as the source.
  [[nodiscard]] const HeightSource& Source() const { return source_; }
  /// The grid for the next table, as decimal texts in the C notation.
  [[nodiscard]] const TShell2DTableExtents& Grid() const { return grid_; }
  /// The heights that were made or loaded last, on the grid of their making.
  [[nodiscard]] const HeightData& MadeData() const { return made_; }
  /// Whether the data agree with the source and the grid.
  [[nodiscard]] bool IsCurrent() const { return isCurrent_; }
  /// Why the last Create made nothing, or why a system was not taken, in the words of what refused;
  /// may be empty.
  [[nodiscard]] const std::string& Failure() const { return failure_; }

  // Changes of the source and the grid. After each of them the data are not current.

  /// Has a source of that kind count. The kind that counts already is no change.
  void ChooseKind(HeightSourceKind kind);
  /// Takes a grid as typed; whether it is one, Create finds.
  void SetGrid(const TShell2DTableExtents& grid);
  /// Takes the system of a tree, and its grid as seen in the plane. Refuses what cannot be computed
  /// (kNoSystem) and a system without heights of its own (kNoHeights).
  [[nodiscard]] HeightRefusal TakeSystem(TStringTree* tree);
  /// Reads a plain file, and takes its grid as seen in the plane. The results are those of
  /// ReadHeightTable, and kNoImage. A file that cannot be opened or read leaves the old table.
  [[nodiscard]] HeightRefusal TakeFile(const std::string& path);
  /// Takes the system of a tree as the plane of the file. Refuses what cannot be computed
  /// (kNoSystem) and a system with heights of its own (kHasHeights); then there is no such plane.
  [[nodiscard]] HeightRefusal TakeFilePlane(TStringTree* tree);
  /// Takes an offset as typed; one that is no number (kNoNumber) empties it.
  [[nodiscard]] HeightRefusal TakeOffset(const std::string& text);
  /// Takes the linear unit of the offset by its key; one that is not there counts as none.
  void TakeOffsetUnit(int key);
  /// Says that the offset is being typed, so that the data are not current any more.
  void Outdate() { isCurrent_ = false; }

  // Data.

  /// Makes heights of that kind from the source, as HeightMaker does. What was made before is gone
  /// in any case. Refuses a grid (kCellTooGreat, kUnusableGrid); whatever else went wrong, Failure
  /// tells, and no data are there.
  [[nodiscard]] HeightRefusal Create(std::optional<HeightKind> kind,
                                     const OffsetAcceptance& accept);

  /// Writes a record with the three texts and the data: a new one, or the current one anew with its
  /// old height file gone. The data and the source are kept in mind, and the plane is used up.
  /// False, with nothing changed, if the user cancels. Throws what the tables throw.
  [[nodiscard]] bool Store(const HeightRecord& texts, bool append);

 private:
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

}  // namespace QvRefSystem
