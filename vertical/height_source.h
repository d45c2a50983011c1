#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/data/height_kind.h"
#include "platform/geocore/shell_reference_system.h"
#include "platform/ui/user_interface.h"
#include "vertical/height_refusal.h"

namespace QvRefSystem {

/// What heights are made from.
enum class HeightSourceKind : unsigned char {
  /// Nothing is chosen yet.
  kNone,
  /// The heights of another reference system.
  kSystem,
  /// A file with a table of heights, and the plane in which its grid lies.
  kFile,
  /// One offset that the user types.
  kOffset
};

/// All sources that were chosen in a run of the making of heights; which of them counts, its kind
/// says. What was not chosen is null, empty or 0.
struct HeightSource {
  /// The source that counts.
  HeightSourceKind Kind = HeightSourceKind::kNone;
  /// The system whose heights are taken.
  std::unique_ptr<TShellReferenceSystem> System;
  /// The path of the file, as it was chosen.
  std::string FileName;
  /// The heights of the file.
  std::unique_ptr<THeightTable> FileTable;
  /// The plane in which the grid of the file lies.
  std::unique_ptr<TShellReferenceSystem> FilePlaneSystem;
  /// A decimal number in the C notation.
  std::string Offset;
  /// The key of the linear unit of the offset.
  int OffsetUnit = 0;

  /// The kind of heights that would be made without another wish; nothing while the source that
  /// counts is not whole.
  [[nodiscard]] std::optional<HeightKind> UsualKind() const;
  /// Whether the source is whole, so that heights of that kind can be made from it: an offset can
  /// stand in for any heights, but gives no table.
  [[nodiscard]] bool CanMake(HeightKind kind) const;
};

/// Reads the text of a height file: kNone, kNotOpened, which the user was told, or kNotRead.
[[nodiscard]] HeightRefusal ReadHeightText(const std::string& path, bool useResource,
                                           std::string* text, QvPlatform::TUserInterface& ui);
/// Turns the text of a height file into a table, with a progress display: kNone, kNoGrid, kNoValues
/// or kCancelled. `table` may be in any state unless the result is kNone.
[[nodiscard]] HeightRefusal TableOfText(const std::string& text, THeightTable* table,
                                        QvPlatform::TUserInterface& ui);
/// Reads a height file with a progress display. `table` may be in any state unless the result is
/// kNone. Others are kNotOpened, which the user was told, kNotRead, kNoGrid, kNoValues, kCancelled.
[[nodiscard]] HeightRefusal ReadHeightTable(const std::string& path, bool useResource,
                                            THeightTable* table, QvPlatform::TUserInterface& ui);

}  // namespace QvRefSystem
