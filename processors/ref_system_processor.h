#pragma once

#include <set>

#include "processors/data_processor.h"

namespace QvRefSystem {

class TQvRfMapProjDataProcessor;
class VerticalRecords;
struct UnstoredSystem;

/// Reference systems: the object that hosts ask for. The six kinds share a head and differ in the
/// members of their bodies, which stand as lists of steps.
class TQvRfRefSystemDataProcessor final : public TQvRfDataProcessor {
 public:
  explicit TQvRfRefSystemDataProcessor(TdatamoduleQvRfData& data);

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
  /// Writes that row, or removes it; one that tells the same is left as it is.
  void StorePositiveLongitude(int key, bool on);

 protected:
  [[nodiscard]] bool WriteContent(TStringTree* tree) override;
  [[nodiscard]] bool ReadContent(TStringTree* tree, RecordImage* image) override;
  [[nodiscard]] bool IsEqualBeside(const RecordImage& image,
                                   QvPlatform::RowView row) const override;
  void AppendBeside(TStringTree* tree, const RecordImage& image, int key) override;
  void DropBeside(const RecordImage& image) override;
  void DeleteBeside(int key) override;

 private:
  enum class Step : unsigned char;
  /// What the steps of one record need to know of it.
  struct Record {
    int key = 0;
    int kind = 0;
    int linearUnit = 0;
    int angularUnit = 0;
    int ellipsoid = 0;
    int datum = 0;
    int primeMeridian = 0;
    int mapProjection = 0;
    int primary = 0;
    int verticalSystem = 0;
    int verticalCode = 0;
  };
  struct Kind;
  [[nodiscard]] static const Kind* KindOf(int type);

  [[nodiscard]] Record CurrentRecord() const;
  [[nodiscard]] bool WriteStep(TStringTree* tree, Step step, const Record& record);
  [[nodiscard]] bool WriteColumns(TStringTree* tree, const TreeIds::Item& member,
                                  std::span<const int> columns);
  [[nodiscard]] bool WriteDatumOrEllipsoid(TStringTree* tree, const Record& record);
  [[nodiscard]] bool WriteUnitInHeights(TStringTree* tree, const Record& record, bool addSubtree);
  [[nodiscard]] bool WritePrimary(TStringTree* tree, const Record& record);
  [[nodiscard]] bool WriteGeneratedPrimary(TStringTree* tree, const Record& record);
  [[nodiscard]] bool WriteGeneratedRadian(TStringTree* primary);
  [[nodiscard]] bool WriteSystemGeoid(TStringTree* tree, int code);
  [[nodiscard]] TQvRfMapProjDataProcessor& MapProjections() const;
  [[nodiscard]] VerticalRecords& VerticalSystems() const;
  [[nodiscard]] bool WriteVertical(TStringTree* tree, const Record& record);
  void WriteCode(TStringTree* tree, const TreeIds::Item& member, const std::string* code);
  void WriteGeoTiffCodes(TStringTree* tree, int kind, int owner);
  [[nodiscard]] bool WritePositiveLongitude(TStringTree* tree);
  [[nodiscard]] bool WriteHead(TStringTree* tree, const UnstoredSystem& system);

  void WriteMifExport(TStringTree* tree, const Record& record);
  [[nodiscard]] bool FillMifExport(TStringTree* tree, TStringTree* exported, const Record& record);
  [[nodiscard]] bool WriteMifUnit(TStringTree* exported, const Record& record);
  [[nodiscard]] bool WriteMifGeodeticType(TStringTree* tree, TStringTree* exported);
  [[nodiscard]] bool WriteMifDatum(TStringTree* exported, const Record& record);

  [[nodiscard]] bool ReadStep(TStringTree* tree, Step step, RecordImage* image);
  [[nodiscard]] bool ReadColumns(TStringTree* tree, int id, std::span<const int> columns,
                                 RecordImage* image);
  [[nodiscard]] bool StoreInto(TStringTree* tree, TObjectType object, int id, bool optional,
                               int column, RecordImage* image);
  [[nodiscard]] bool ReadDatumOrEllipsoid(TStringTree* tree, RecordImage* image);
  [[nodiscard]] bool ReadOptionalPrimary(TStringTree* tree, RecordImage* image);
  [[nodiscard]] bool ReadVertical(TStringTree* tree, RecordImage* image);
  [[nodiscard]] bool HasSameHeights(const RecordImage& image, QvPlatform::RowView row) const;

  // Field numbers in the file.
  struct Columns {
    int type, swap, azimuth, linearUnit, angularUnit, ellipsoid, datum, primeMeridian,
        mapProjection, primary, verticalSystem, verticalCode;
    int axes[3];
    int origin[3];
  };
  Columns columns_;
  // Keys of the records that are being written: a primary that is one of them has no end.
  std::set<int> writing_;
};

}  // namespace QvRefSystem
