#pragma once

#include <set>
#include <string>
#include <string_view>

#include "processors/data_processor.h"
#include "processors/ref_system_unstored.h"

namespace QvRefSystem {

class VerticalRecords;

/// Reference systems: the object that hosts ask for. The six kinds share a head and differ in the
/// members of their bodies, which stand as rows in system_bodies.
class TQvRfRefSystemDataProcessor final : public TQvRfDataProcessor {
 public:
  explicit TQvRfRefSystemDataProcessor(TdatamoduleQvRfData& data);

  /// The lines of all objects, and those of the units of the system.
  bool GetInfoLines(TStrings* lines) override;
  /// A null tree writes nothing and answers whether the current record can be located again.
  bool WriteToTree(TStringTree* tree, int id, int index) override;
  /// Writes a geodetic or projected system into an empty tree as its record would be, without
  /// codes and heights; a projected one with a geodetic primary that is made up for it. False if
  /// something that it refers to is missing. The current record stays.
  [[nodiscard]] bool WriteUnstored(TStringTree* tree, const UnstoredSystem& system);
  /// Whether the longitudes of the geodetic system with that key run from 0 to 360 degrees; the
  /// first row beside the record that tells it decides.
  [[nodiscard]] bool IsPositiveLongitude(int key) const;
  /// Writes that row, or removes it; one that tells the same is left as it is. Throws what the
  /// table throws.
  void StorePositiveLongitude(int key, bool on);

 protected:
  [[nodiscard]] bool WriteContent(TStringTree* tree) override;
  [[nodiscard]] bool WriteOwnItem(TStringTree* tree, const TreeItem& item,
                                  const RecordView& record) override;
  [[nodiscard]] bool ReadContent(TStringTree* tree, RecordImage* image) override;
  [[nodiscard]] bool ReadOwnItem(TStringTree* tree, const TreeItem& item,
                                 RecordImage* image) override;
  [[nodiscard]] bool IsEqualBeside(const RecordImage& image,
                                   QvPlatform::RowView row) const override;
  [[nodiscard]] std::string ComparableBeside(QvPlatform::RowView row) const override;
  void AppendBeside(TStringTree* tree, const RecordImage& image, int key) override;
  void DropBeside(const RecordImage& image) override;
  void DeleteBeside(int key) override;

 private:
  [[nodiscard]] VerticalRecords& VerticalSystems() const;
  [[nodiscard]] int KeyIn(const RecordView& record) const;
  /// The head and the axes of an image, whose columns it finds by the rows.
  void SetHead(RecordImage* image, const UnstoredSystem& system) const;

  [[nodiscard]] bool WriteDatumOrEllipsoid(TStringTree* tree, const RecordView& record);
  [[nodiscard]] bool WritePrimary(TStringTree* tree, const RecordView& record);
  [[nodiscard]] bool WriteGeneratedPrimary(TStringTree* tree, const RecordView& record);
  [[nodiscard]] bool WriteMifProjectionType(TStringTree* tree, const RecordView& record) const;
  [[nodiscard]] bool WriteVertical(TStringTree* tree, const RecordView& record);
  void WriteMifExport(TStringTree* tree, const RecordView& record) const;
  void WriteSystemType(TStringTree* tree, int kind) const;

  [[nodiscard]] bool ReadDatumOrEllipsoid(TStringTree* tree, RecordImage* image);
  [[nodiscard]] bool ReadPrimary(TStringTree* tree, const TreeItem& item, RecordImage* image);
  [[nodiscard]] bool ReadVertical(TStringTree* tree, const TreeItem& item, RecordImage* image);
  void AppendPositiveLongitude(int key);
  [[nodiscard]] bool HasSameHeights(const RecordImage& image, QvPlatform::RowView row) const;

  // Field numbers in the file.
  struct Columns {
    int type, azimuth, linearUnit, angularUnit, ellipsoid, datum, primeMeridian, mapProjection,
        primary, verticalSystem, verticalCode;
  };
  Columns fields_;
  // Keys of the records that are being written: a primary that is one of them has no end.
  std::set<int> writing_;
};

}  // namespace QvRefSystem
