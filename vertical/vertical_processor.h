#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "processors/vertical_records.h"

namespace QvRefSystem {

/// Height systems: how the heights of a reference system lie over its ellipsoid, as a table of
/// undulations in a file of its own (kind 1) or as one offset (kind 2). Each belongs to the one
/// reference system that refers to it, so that a tree always adds a new one.
///
/// Record and height file come and go together: a file whose record was not stored is removed
/// again, and a file is removed only once its record is gone for good. In a container both are one
/// transaction; in a folder a crash between the two may leave a file without a record, never a
/// record without its file.
class TQvRfVerticalRefSystemDataProcessor final : public TVerticalRecords {
 public:
  explicit TQvRfVerticalRefSystemDataProcessor(TdatamoduleQvRfData& data)
      : TVerticalRecords(data, DescriptorOf(TObjectType::kVerticalReferenceSystem)) {}

  /// Always: whoever owns a height system decides on its end.
  bool CheckNotUsed(TComponent* /*owner*/) override { return true; }
  /// Removes the current record and its height file without a question.
  bool DeleteRecord(TComponent* owner) override;
  /// Adds a copy of the current record, with a copy of its height file, and makes it the current
  /// one. False, with nothing added and the record still current, for an empty table or if storage
  /// refuses; the user was told then.
  [[nodiscard]] bool DuplicateCurrent();
  /// The stream of the current record's height file; nothing for a kind without one, and for a
  /// name that would lead out of the place for heights. Whether the file is there is not asked.
  [[nodiscard]] std::optional<std::string> CurrentHeightFile() const;

 protected:
  [[nodiscard]] bool WriteContent(TStringTree* tree) override;
  [[nodiscard]] bool ReadContent(TStringTree* tree, TRecordImage* image) override;
  void AppendBeside(TStringTree* tree, const TRecordImage& image, int key) override;
  void RemoveCurrent() override;
  [[nodiscard]] bool AsksToDelete() const override { return false; }

 private:
  [[nodiscard]] bool HasAll(QvPlatform::TRowView row, std::span<const int> ids) const;
  void ReadGrid(TStringTree* tree, TRecordImage* image) const;
  [[nodiscard]] TRecordImage ImageOfCurrent() const;
  [[nodiscard]] bool IsNamedByRecords(std::string_view fileName, std::size_t atLeast) const;
  [[nodiscard]] std::string NewFileName(std::string_view objectName) const;
  /// False, after telling the user, if the current record's file cannot be read.
  [[nodiscard]] bool LoadTable(std::string* text);
  /// Writes the file of a record that was just added, inside the group of its changes. Throws
  /// ToldStorageError.
  void SaveTable(const std::string& fileName, const std::string& text);
  void ReportFile(const std::string& path);
  void AppendDuplicate();
};

}  // namespace QvRefSystem
