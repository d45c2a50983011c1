#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "database/height_storage.h"
#include "platform/data/height_kind.h"
#include "platform/dbset/write_group.h"
#include "processors/vertical_records.h"
#include "vertical/height_record.h"

namespace QvRefSystem {

/// Height systems: how the heights of a reference system lie over its ellipsoid, as a table of
/// undulations in a file of its own (kind 1) or as one offset (kind 2). Each belongs to the one
/// reference system that refers to it, so that a tree always adds a new one.
///
/// Record and height file come and go together: a file whose record was not stored is removed
/// again, and a file is removed only once its record is gone for good. A file is never put in the
/// place of another. In a container both are one
/// transaction; in a folder a crash between the two may leave a file without a record, never a
/// record without its file.
class TQvRfVerticalRefSystemDataProcessor final : public VerticalRecords {
 public:
  /// Over an open database, which must outlive this.
  explicit TQvRfVerticalRefSystemDataProcessor(TdatamoduleQvRfData& data)
      : VerticalRecords(data, DescriptorOf(TObjectType::kVerticalReferenceSystem)) {}

  /// Always: whoever owns a height system decides on its end.
  bool CheckNotUsed(TComponent* /*owner*/) override { return true; }
  /// Adds a copy of the current record, with a copy of its height file, and makes it the current
  /// one. False, with nothing added and the record still current, for an empty table or if storage
  /// refuses; the user was told then.
  [[nodiscard]] bool DuplicateCurrent();
  /// Adds a height system, or changes the current one, whose old height file goes then, and opens
  /// the table anew on it. False if the user cancels or the table cannot be put into text; throws
  /// StorageError or DataSetError, also for a current record that somebody has removed, and a
  /// ToldStorageError if the user knows. On failure record and file
  /// are as they were, but the cursor may stand elsewhere.
  ///
  /// In a folder the new file gets a name beside the old one, so that no moment is without the file
  /// that the record names.
  [[nodiscard]] bool Store(const HeightRecord& record, bool append);
  /// The kind of the current record; nothing for a number that is no kind, or without a record.
  [[nodiscard]] std::optional<HeightKind> CurrentKind() const;
  /// The stream of the current record's height file; nothing for a kind without one, and for a
  /// name that would lead out of the place for heights. Whether the file is there is not asked.
  [[nodiscard]] std::optional<std::string> CurrentHeightFile() const;
  /// Why that text is not what was written into the current record's height file; nothing if it is.
  [[nodiscard]] std::optional<std::string> DamageOf(std::string_view text) const;

 protected:
  [[nodiscard]] bool WriteContent(TStringTree* tree) override;
  [[nodiscard]] bool ReadContent(TStringTree* tree, RecordImage* image) override;
  void AppendBeside(TStringTree* tree, const RecordImage& image, int key) override;
  void RemoveKey(int key, QvPlatform::TQvWriteGroup& group) override;
  [[nodiscard]] bool AsksToDelete() const override { return false; }

 private:
  [[nodiscard]] bool HasAll(QvPlatform::RowView row, std::span<const int> ids) const;
  void ReadGrid(TStringTree* tree, RecordImage* image) const;
  [[nodiscard]] RecordImage ImageOfCurrent() const;
  /// How many records name the height file.
  [[nodiscard]] int CountNaming(const std::string& fileName) const;
  [[nodiscard]] std::string NewFileName(std::string_view objectName, HeightNaming naming) const;
  [[nodiscard]] RecordImage ImageOf(const HeightRecord& record) const;
  /// The stream of the current record's height file, unless another record names it as well.
  [[nodiscard]] std::optional<std::string> OwnHeightFile() const;
  /// Removes a height file with the group, or once it is committed.
  void DeleteFile(QvPlatform::TQvWriteGroup& group, const std::string& path) const;
  /// Reads the current record's file. False, after telling the user, if it cannot be read.
  [[nodiscard]] bool LoadTable(std::string* text);
  /// Writes the file of the record of that key, which was just posted, inside the group of its
  /// changes. Throws ToldStorageError.
  void SaveTable(int key, const std::string& fileName, const std::string& text);
  /// Tells that the file could not be read or written; `reason` may be empty.
  void ReportFile(const std::string& path, const std::string& reason);
  /// Moves to a record that is to be changed or copied. Throws DataSetError if somebody has removed
  /// it.
  void RequireKey(int key);
  void AppendDuplicate(int key);
  /// Writes a record, a new one or that of the key that is changed, with the text of its table, if
  /// it has one, in one group.
  void StoreImage(RecordImage image, const std::string* text, std::optional<int> changed);
};

}  // namespace QvRefSystem
