#include <algorithm>
#include <array>

#include "platform/text/text.h"
#include "processors/ref_system_steps.h"
#include "processors/vertical_records.h"

namespace QvRefSystem {

bool TQvRfRefSystemDataProcessor::ReadContent(TStringTree* tree, RecordImage* image) {
  if (!ReadItems(tree, Descriptor().items, image) ||
      !ReadColumns(tree, TreeIds::kAxis.id, columns_.axes, image)) {
    return false;
  }
  const Kind* kind = KindOf(image->Integer(columns_.type));
  return kind != nullptr &&
         std::ranges::all_of(kind->read, [&](Step step) { return ReadStep(tree, step, image); });
}

bool TQvRfRefSystemDataProcessor::ReadStep(TStringTree* tree, Step step, RecordImage* image) {
  using enum Step;
  switch (step) {
    case kSwap: {
      int swap = 0;
      if (!GetInteger(*tree, TreeIds::kSwap, &swap)) return false;
      image->SetInteger(columns_.swap, swap);
      return true;
    }
    case kLinearUnit:
      return StoreInto(tree, TObjectType::kLinearUnit, TreeIds::kLinearUnit.id, false,
                       columns_.linearUnit, image);
    case kAngularUnit:
      return StoreInto(tree, TObjectType::kAngularUnit, TreeIds::kAngularUnit.id, false,
                       columns_.angularUnit, image);
    case kHeightsWithUnit: {
      TStringTree* heights = tree;
      return EnterSubtree(&heights, TreeIds::kVertical) &&
             StoreInto(heights, TObjectType::kLinearUnit, TreeIds::kLinearUnit.id, false,
                       columns_.linearUnit, image);
    }
    case kPrimeMeridian:
      return StoreInto(tree, TObjectType::kPrimeMeridian, TreeIds::kPrimeMeridian.id, false,
                       columns_.primeMeridian, image);
    case kEllipsoid:
      return StoreInto(tree, TObjectType::kEllipsoid, TreeIds::kEllipsoid.id, false,
                       columns_.ellipsoid, image);
    case kDatumIfAny:
      return StoreInto(tree, TObjectType::kDatum, TreeIds::kDatum.id, true, columns_.datum, image);
    case kDatumOrEllipsoid:
      return ReadDatumOrEllipsoid(tree, image);
    case kPositiveLongitude: {
      int flag = 0;
      if (GetInteger(*tree, TreeIds::kPositiveLongitude, &flag) && flag != 0)
        image->Beside[TreeIds::kPositiveLongitude.id] = "1";
      return true;
    }
    case kProjection:
      return StoreInto(tree, TObjectType::kMapProjection, TreeIds::kProjection.id, false,
                       columns_.mapProjection, image);
    case kPrimary:
      return StoreInto(tree, TObjectType::kReferenceSystem, TreeIds::kPrimary.id, false,
                       columns_.primary, image);
    case kOptionalPrimary:
      return ReadOptionalPrimary(tree, image);
    case kPlaneOrigin:
      return data_.ShowImportExport ||
             ReadColumns(tree, TreeIds::kOrigin.id, std::span(columns_.origin).first(2), image);
    case kSpaceOrigin:
      return ReadColumns(tree, TreeIds::kOrigin.id, columns_.origin, image);
    case kAzimuth: {
      std::string azimuth;
      (void)GetString(*tree, TreeIds::kAzimuth, &azimuth);
      image->SetText(columns_.azimuth, std::move(azimuth));
      return true;
    }
    case kVertical:
      return ReadVertical(tree, image);
    case kAxes:
    case kHeights:
    case kUnitInHeights:
    case kMifProjectionType:
      break;  // written only, or read with the head
  }
  return true;
}

bool TQvRfRefSystemDataProcessor::ReadColumns(TStringTree* tree, int id,
                                              std::span<const int> columns, RecordImage* image) {
  int index = 0;
  return std::ranges::all_of(columns, [&](int column) {
    std::string text;
    if (!tree->GetString(id, index++, &text)) return false;
    image->SetText(column, std::move(text));
    return true;
  });
}

bool TQvRfRefSystemDataProcessor::StoreInto(TStringTree* tree, TObjectType object, int id,
                                            bool optional, int column, RecordImage* image) {
  int key = 0;
  if (!StoreSubobject(tree, object, id, optional, &key)) return false;
  image->SetInteger(column, key);
  return true;
}

bool TQvRfRefSystemDataProcessor::ReadDatumOrEllipsoid(TStringTree* tree, RecordImage* image) {
  TStringTree* datum = tree;
  if (!EnterSubtree(&datum, TreeIds::kDatum)) {
    image->SetInteger(columns_.datum, 0);
    return StoreInto(tree, TObjectType::kEllipsoid, TreeIds::kEllipsoid.id, false,
                     columns_.ellipsoid, image);
  }
  // The system keeps the key of its datum's ellipsoid beside that of the datum.
  return StoreInto(tree, TObjectType::kDatum, TreeIds::kDatum.id, false, columns_.datum, image) &&
         StoreInto(datum, TObjectType::kEllipsoid, TreeIds::kDatumEllipsoid.id, false,
                   columns_.ellipsoid, image);
}

bool TQvRfRefSystemDataProcessor::ReadOptionalPrimary(TStringTree* tree, RecordImage* image) {
  image->SetInteger(columns_.primary, 0);
  TStringTree* primary = tree;
  int code = 0;
  // Only a primary with a code of its own is a system to keep; one made up for the way is not.
  if (!EnterSubtree(&primary, TreeIds::kPrimary) ||
      !GetInteger(*primary, TreeIds::kGeoTiffSystem, &code) || code == 0) {
    return true;
  }
  return StoreInto(tree, TObjectType::kReferenceSystem, TreeIds::kPrimary.id, false,
                   columns_.primary, image);
}

bool TQvRfRefSystemDataProcessor::ReadVertical(TStringTree* tree, RecordImage* image) {
  image->SetInteger(columns_.verticalSystem, 0);
  image->SetInteger(columns_.verticalCode, 0);
  TStringTree* vertical = tree;
  if (!EnterSubtree(&vertical, TreeIds::kHeightSystem)) return true;
  int kind = 0;
  if (!GetInteger(*vertical, TreeIds::kHeightSystemKind, &kind)) return false;
  if (VerticalRecords::IsStoredKind(kind)) {
    // Heights that are not whole leave a system of ellipsoidal heights.
    int key = 0;
    (void)StoreSubobject(tree, TObjectType::kVerticalReferenceSystem, TreeIds::kHeightSystem.id,
                         true, &key);
    image->SetInteger(columns_.verticalSystem, key);
    return true;
  }
  int code = 0;
  if (!GetInteger(*vertical, TreeIds::kHeightSystemCode, &code)) return false;
  image->SetInteger(columns_.verticalCode, code);
  return true;
}

bool TQvRfRefSystemDataProcessor::IsEqualBeside(const RecordImage& image,
                                                QvPlatform::RowView row) const {
  if (image.Integer(columns_.type) == kGeodetic &&
      IsPositiveLongitude(row.GetInteger(Column("AUTOKEY"))) !=
          image.Beside.contains(TreeIds::kPositiveLongitude.id)) {
    return false;
  }
  return HasSameHeights(image, row);
}

bool TQvRfRefSystemDataProcessor::HasSameHeights(const RecordImage& image,
                                                 QvPlatform::RowView row) const {
  // Kinds that read no heights do not compare them.
  if (!image.Has(columns_.verticalSystem)) return true;
  const int given = image.Integer(columns_.verticalSystem);
  const int stored = row.GetInteger(columns_.verticalSystem);
  if (given != 0) {
    return VerticalSystems().LocateKey(given) && VerticalSystems().IsSameRecord(stored);
  }
  return stored == 0 &&
         row.GetInteger(columns_.verticalCode) == image.Integer(columns_.verticalCode);
}

void TQvRfRefSystemDataProcessor::DropBeside(const RecordImage& image) {
  // The system that was found keeps the heights that it has.
  VerticalSystems().Remove(image.Integer(columns_.verticalSystem));
}

void TQvRfRefSystemDataProcessor::AppendBeside(TStringTree* tree, const RecordImage& image,
                                               int key) {
  const int kind = image.Integer(columns_.type);
  if (image.Beside.contains(TreeIds::kPositiveLongitude.id)) {
    AppendParamValue(ObjectType, key, ParamTag::kPositiveLongitude, 0, 0, "1");
  }
  int code = 0;
  if (kind >= kGeocentric && kind <= kProjected &&
      GetInteger(*tree, TreeIds::kGeoTiffSystem, &code)) {
    AppendParamValue(ObjectType, key, ParamTag::kGeoTiff, 0, 0, std::to_string(code));
  }
}

}  // namespace QvRefSystem
