#include "platform/ui/texts.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace QvPlatform {

namespace {

struct TextRow {
  TextId id;
  std::string_view text;
};

constexpr std::array kTexts = {
    TextRow{TextId::kNotFound, "\"%s\" not found"},
    TextRow{TextId::kConfirmDelete, "Do you really want to delete"},
    TextRow{TextId::kAllFiles, "All files"},
    TextRow{TextId::kXmlFilter,
            "|Coordinate systems in XML format (*.x-ref-system)|*.x-ref-system|"},
    TextRow{TextId::kSaveTitle, "Save coordinate system"},
    TextRow{TextId::kLoadTitle, "Load coordinate system"},
    TextRow{TextId::kSelect, "Select"},
    TextRow{TextId::kView, "View"},
    TextRow{TextId::kImportFailed, "Import failed"},
    TextRow{TextId::kColumnObjectType, "Object type"},
    TextRow{TextId::kColumnName, "Name"},
    TextRow{TextId::kColumnDescription, "Description"},
    TextRow{TextId::kInfoName, "Name"},
    TextRow{TextId::kInfoDescription, "Description"},
    TextRow{TextId::kInfoAbbreviation, "Abbreviation"},
    TextRow{TextId::kInfoLongitude, "Longitude"},
    TextRow{TextId::kPlaneNotDefined,
            "Plane reference system must be completely defined before specifying height system"},
    TextRow{TextId::kLoadingHeights, "Loading geoid undulation data"},
    TextRow{TextId::kRecalculatingHeights, "Recalculating geoid undulation data"},
    TextRow{TextId::kCellTooGreat, "Cell size is greater than table size!"},
    TextRow{TextId::kApproximatingHeights, "Approximating geoid undulation data"},
    TextRow{TextId::kSavingHeights, "Saving geoid undulation data"},
    TextRow{TextId::kHeightsNotCurrent,
            "You are trying to save geoid data which do not correspond to current data creation "
            "parameters. Do you really want to save it?"},
    TextRow{TextId::kNoHeights,
            "Geoid data are not available, you should create it before saving."},
    TextRow{TextId::kExportFolder, "Export folder"},
    TextRow{TextId::kScaleUnit, "scale unit"},
    TextRow{TextId::kDatum, "datum"},
    TextRow{TextId::kDatumShift, "datum shift"},
    TextRow{TextId::kDatumShiftType, "datum shift type"},
    TextRow{TextId::kEllipsoid, "ellipsoid"},
    TextRow{TextId::kLinearUnit, "linear unit"},
    TextRow{TextId::kMapProjection, "map projection"},
    TextRow{TextId::kMapProjectionType, "map projection type"},
    TextRow{TextId::kPrimeMeridian, "prime meridian"},
    TextRow{TextId::kReferenceSystem, "reference system"},
    TextRow{TextId::kReferenceSystemType, "reference system type"},
    TextRow{TextId::kAngularUnit, "angular unit"},
    TextRow{TextId::kVerticalReferenceSystem, "vertical reference system"},
    TextRow{TextId::kConversion, "Reference systems database conversion"},
    TextRow{TextId::kCannotCreateResource, "Cannot create resource"},
    TextRow{TextId::kCannotCreateFile, "Cannot create file"},
    TextRow{TextId::kCannotOpenTable, "Cannot open table"},
    TextRow{TextId::kCannotOpenDatabase, "Cannot open database"},
    TextRow{TextId::kUnderEditing, "The object is under editing now!"},
    TextRow{TextId::kUsedBy, "The object cannot be deleted because it is used by:"},
    TextRow{TextId::kObjectList, "Object list"},
    TextRow{TextId::kViewButton, "View..."},
    TextRow{TextId::kNoParameterCalculation,
            "Map projection parameters calculation is not implemented yet!"},
    TextRow{TextId::kNoLatitudeLongitude,
            "Current version does not support latitude/longitude georeference"},
    TextRow{TextId::kLinearUnits, "Units"},
    TextRow{TextId::kAngularUnits, "Latitude & longitude units"},
    TextRow{TextId::kHeightUnits, "Height units"},
    TextRow{TextId::kCannotWriteDatabase, "Cannot write to the database"},
    TextRow{
        TextId::kOlderTables,
        "Part of the last change is missing, as in a copy that was made while it was under way. "
        "Check the database or put a backup back. Tables that are too old:"},
    TextRow{TextId::kNoMemory, "There is not enough memory"},
    TextRow{TextId::kTableMadeAnew, "A table was missing and has been made anew, empty:"},
};

static_assert(std::ranges::adjacent_find(kTexts, std::ranges::greater_equal{}, &TextRow::id) ==
                  kTexts.end(),
              "texts are found by binary search");

constexpr bool HasAll(TextId first, TextId last) {
  const auto from = std::ranges::lower_bound(kTexts, first, {}, &TextRow::id);
  const auto to = std::ranges::upper_bound(kTexts, last, {}, &TextRow::id);
  const bool named = std::ranges::none_of(from, to, &std::string_view::empty, &TextRow::text);
  return named && to - from == static_cast<int>(last) - static_cast<int>(first) + 1;
}

static_assert(HasAll(TextId::kNotFound, TextId::kInfoLongitude) &&
                  HasAll(TextId::kPlaneNotDefined, TextId::kCannotCreateFile) &&
                  HasAll(TextId::kCannotOpenTable, TextId::kTableMadeAnew),
              "each number has its text");

std::function<std::string(std::string_view)>& Translator() {
  static std::function<std::string(std::string_view)> translator;
  return translator;
}

}  // namespace

std::string_view SourceText(TextId id) {
  const auto row = std::ranges::lower_bound(kTexts, id, {}, &TextRow::id);
  return row != kTexts.end() && row->id == id ? row->text : std::string_view();
}

std::string SystemText(TextId id) {
  const std::string_view source = SourceText(id);
  return Translator() && !source.empty() ? Translator()(source) : std::string(source);
}

std::string ReasonOf(const std::exception& error) {
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
    return SystemText(TextId::kNoMemory);
  }
  return error.what();
}

void SetTextTranslator(std::function<std::string(std::string_view source)> translator) {
  Translator() = std::move(translator);
}

}  // namespace QvPlatform
