#pragma once

#include <exception>
#include <functional>
#include <string>
#include <string_view>

/// The texts that the system shows, in one catalogue. Those with a number below 100000 keep the
/// number by which hosts know them.
namespace QvPlatform {

/// Numbers of the texts.
enum class TextId : int {
  kNotFound = 36769,
  kConfirmDelete = 36770,
  kAllFiles = 36771,
  kXmlFilter = 36772,
  kSaveTitle = 36773,
  kLoadTitle = 36774,
  kSelect = 36775,
  kView = 36776,
  kImportFailed = 36777,
  kColumnObjectType = 36778,
  kColumnName = 36779,
  kColumnDescription = 36780,
  kInfoName = 36781,
  kInfoDescription = 36782,
  kInfoAbbreviation = 36783,
  kInfoLongitude = 36784,
  kPlaneNotDefined = 36788,
  kLoadingHeights = 36789,
  kRecalculatingHeights = 36790,
  kCellTooGreat = 36791,
  kApproximatingHeights = 36792,
  kSavingHeights = 36793,
  kHeightsNotCurrent = 36794,
  kNoHeights = 36795,
  kExportFolder = 36796,
  kScaleUnit = 36797,
  kDatum = 36798,
  kDatumShift = 36799,
  kDatumShiftType = 36800,
  kEllipsoid = 36801,
  kLinearUnit = 36802,
  kMapProjection = 36803,
  kMapProjectionType = 36804,
  kPrimeMeridian = 36805,
  kReferenceSystem = 36806,
  kReferenceSystemType = 36807,
  kAngularUnit = 36808,
  kVerticalReferenceSystem = 36809,
  kConversion = 36810,
  kCannotCreateResource = 36811,
  kCannotCreateFile = 36812,

  kCannotOpenTable = 100001,
  kCannotOpenDatabase,
  kUnderEditing,
  kUsedBy,
  kObjectList,
  kViewButton,
  kNoParameterCalculation,
  kNoLatitudeLongitude,
  kLinearUnits,
  kAngularUnits,
  kHeightUnits,
  kCannotWriteDatabase,
  kOlderTables,
  kNoMemory,
  kTableMadeAnew,
};

/// The text in the language of the user. Unknown numbers give "".
[[nodiscard]] std::string SystemText(TextId id);
/// The text as it stands in the catalogue, the key under which translations find it.
[[nodiscard]] std::string_view SourceText(TextId id);
/// What an exception says, for users to read: want of memory in words of ours.
[[nodiscard]] std::string ReasonOf(const std::exception& error);
/// Translates a source text; an empty function restores the catalogue's own language.
void SetTextTranslator(std::function<std::string(std::string_view source)> translator);

}  // namespace QvPlatform
