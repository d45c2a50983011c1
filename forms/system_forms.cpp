#include "forms/system_forms.h"

#include <array>

#include "platform/geocore/system_model.h"

namespace QvRefSystem {
namespace {

using enum TObjectType;

constexpr FormRow kXRow =
    TextRow("edXname", "lblXname", "X axis name", "COORD1_ABBR", Rule::kNotEmpty);
constexpr FormRow kYRow =
    TextRow("edYname", "lblYname", "Y axis name", "COORD2_ABBR", Rule::kNotEmpty);
constexpr FormRow kZRow =
    TextRow("edZname", "lblZname", "Z axis name", "COORD3_ABBR", Rule::kNotEmpty);

constexpr FormRow kLinearUnitRow =
    ReferenceRow({"edLinearUnit", "btnLinearUnit", "lblLinearUnit"}, "Linear units",
                 "LINEAR_UNIT_AUTOKEY", kLinearUnit, NewKey::kLastUsed);

constexpr FormRow HandRow(const char* radio, const char* caption) {
  return {.kind = RowKind::kChoice,
          .lead = radio,
          .caption = caption,
          .leadKind = LeadKind::kRadio,
          .choice = kHandedness};
}

/// A cell of the grid of origin coordinates. Any text may stand there.
constexpr FormRow OriginRow(const char* control, const char* column) {
  FormRow row = TextRow(control, "", "Origin coordinates", column);
  row.inPanel = true;
  return row;
}
constexpr FormRow kOrigin1Row = OriginRow("edOrigin1", "ORIGIN_COORD1");
constexpr FormRow kOrigin2Row = OriginRow("edOrigin2", "ORIGIN_COORD2");
constexpr FormRow kOrigin3Row = OriginRow("edOrigin3", "ORIGIN_COORD3");
constexpr FormRow kOriginRow = PanelRow("pnlOrigin", "lblOrigin", "Origin coordinates");

/// A new record's TYPE, and references that a kind of system has not.
constexpr FixedValue TypeOf(SystemKind kind) {
  return {"TYPE", static_cast<int>(kind)};
}
constexpr FixedValue No(const char* column) {
  return {.column = column, .value = 0, .always = true};
}
constexpr FixedValue kNoAngularUnit = No("ANGULAR_UNIT_AUTOKEY");
constexpr FixedValue kNoDatum = No("DATUM_AUTOKEY");
constexpr FixedValue kNoEllipsoid = No("ELLIPSOID_AUTOKEY");
constexpr FixedValue kNoPrimeMeridian = No("PRIME_MERIDIAN_AUTOKEY");

constexpr std::array kCartRows{Unmarked(kNameRow),
                               kAbbreviationRow,
                               Unmarked(kXRow),
                               Unmarked(kYRow),
                               Unmarked(kZRow),
                               HandRow("radiobtnLeft", "Left handed"),
                               HandRow("radiobtnRight", "Right handed"),
                               kLinearUnitRow,
                               kDescriptionRow};
static_assert(IsSound(kCartRows));
constexpr std::array kCartFixed{TypeOf(SystemKind::kLocalCartesian), kNoAngularUnit, kNoDatum,
                                kNoEllipsoid, kNoPrimeMeridian};

constexpr std::array kGeocRows{
    kNameRow,
    kAbbreviationRow,
    kXRow,
    kYRow,
    kZRow,
    kLinearUnitRow,
    ReferenceRow({"edPrimeMeridian", "btnPrimeMeridian", "lblPrimeMeridian"}, "Prime meridian",
                 "PRIME_MERIDIAN_AUTOKEY", kPrimeMeridian, NewKey::kLastUsed),
    Led(ReferenceRow({"edDatum", "btnDatum", "chboxDatum"}, "Datum", "DATUM_AUTOKEY", kDatum,
                     NewKey::kNone, Rule::kNone),
        LeadKind::kCheck),
    kDescriptionRow};
static_assert(IsSound(kGeocRows));
constexpr std::array kGeocFixed{TypeOf(SystemKind::kGeocentric), kNoAngularUnit, kNoEllipsoid};

constexpr std::array kLocalRows{kNameRow,
                                kAbbreviationRow,
                                Unmarked(kXRow),
                                Unmarked(kYRow),
                                Unmarked(kZRow),
                                HandRow("radiobtnLeft", "Left-handed"),
                                HandRow("radiobtnRight", "Right-handed"),
                                kLinearUnitRow,
                                ReferenceRow({"edEllipsoid", "btnEllipsoid", "lblEllipsoid"},
                                             "Spheroid", "ELLIPSOID_AUTOKEY", kEllipsoid),
                                kOrigin1Row,
                                kOrigin2Row,
                                kOriginRow,
                                kDescriptionRow};
static_assert(IsSound(kLocalRows));
constexpr std::array kLocalFixed{TypeOf(SystemKind::kLocal), kNoAngularUnit, kNoDatum,
                                 kNoPrimeMeridian};

constexpr std::array kTopoRows{
    kNameRow,
    kAbbreviationRow,
    Unmarked(kXRow),
    Unmarked(kYRow),
    Unmarked(kZRow),
    HandRow("radiobtnLeft", "Left-handed"),
    HandRow("radiobtnRight", "Right-handed"),
    kLinearUnitRow,
    ReferenceRow({"edOriginRefSystem", "btnOriginRefSystem", "lblOriginRefSystem"},
                 "Primary Reference System", "PRIMARY_REFSYSTEM_AUTOKEY", kReferenceSystem),
    kOrigin1Row,
    kOrigin2Row,
    kOrigin3Row,
    kOriginRow,
    [] {
      FormRow row = TextRow("edAzimuth", "lblAzimuth", "Azimuth", "AZIMUTH");
      row.trimmed = true;
      return row;
    }(),
    kDescriptionRow};
static_assert(IsSound(kTopoRows));
constexpr std::array kTopoFixed{TypeOf(SystemKind::kTopocentric), kNoAngularUnit, kNoDatum,
                                kNoEllipsoid, kNoPrimeMeridian};

// Geodetic and projected systems.

constexpr FormRow PlaneAxis(const char* control, const char* lead, const char* caption,
                            const char* column) {
  return TextRow(control, lead, caption, column, Rule::kNotEmpty);
}
constexpr FormRow kDatumRow =
    Led(ReferenceRow({"edDatum", "btnDatum", "radiobtnDatum"}, "Datum", "DATUM_AUTOKEY", kDatum),
        LeadKind::kRadio, kGround);
constexpr FormRow kEllipsoidRow =
    Led(ReferenceRow({"edEllipsoid", "btnEllipsoid", "radiobtnEllipsoid"}, "Ellipsoid",
                     "ELLIPSOID_AUTOKEY", kEllipsoid),
        LeadKind::kRadio, kGround);
constexpr FormRow kMeridianRow =
    ReferenceRow({"edPrimeMeridian", "btnPrimeMeridian", "lblPrimeMeridian"}, "Prime meridian",
                 "PRIME_MERIDIAN_AUTOKEY", kPrimeMeridian, NewKey::kLastUsed);

constexpr FormRow kHeightBox = BoxRow("grboxHeightSystem", " Height System ");
constexpr FormRow kHeightEllipsoidRow{.kind = RowKind::kChoice,
                                      .lead = "radiobtnHeightEllipsoid",
                                      .caption = "Heights above ellipsoid",
                                      .leadKind = LeadKind::kRadio,
                                      .choice = kHeightSurface};
constexpr FormRow kGeoidRow =
    Led(ReferenceRow({"Edit1", "Button1", "radiobtnHeightGeoid"}, "User-defined geoid",
                     "VERT_SYSTEM_AUTOKEY", kVerticalReferenceSystem),
        LeadKind::kRadio, kHeightSurface);
/// The geoids of the machine are its items; the dialog itself refuses that none is chosen.
constexpr FormRow kSystemGeoidRow = [] {
  FormRow row = ListRow("comboSystemGeoids", "radiobtnHeightSystemGeoid", "Predefined geoid", {});
  row.rule = Rule::kNone;
  return Led(row, LeadKind::kRadio, kHeightSurface);
}();

constexpr std::array kGeodRows{
    kNameRow,
    kAbbreviationRow,
    kDatumRow,
    kEllipsoidRow,
    kMeridianRow,
    BoxRow("grboxLatLon", " Latitude/Longitude "),
    ReferenceRow({"edAngularUnit", "btnAngularUnit", "lblAngularUnit"}, "Unit",
                 "ANGULAR_UNIT_AUTOKEY", kAngularUnit, NewKey::kLastUsed),
    PlaneAxis("edLatitudeAbbr", "lblLatitudeAbbr", "Latitude Abbreviation", "COORD1_ABBR"),
    PlaneAxis("edLongitudeAbbr", "lblLongitudeAbbr", "Longitude Abbreviation", "COORD2_ABBR"),
    FormRow{.kind = RowKind::kChoice,
            .lead = "chboxPositiveLongitude",
            .caption = "Positive Longitude",
            .leadKind = LeadKind::kCheck},
    BoxRow("grboxHeight", " Height "),
    ReferenceRow({"edLinearUnit", "btnLinearUnit", "lblLinearUnit"}, "Unit", "LINEAR_UNIT_AUTOKEY",
                 kLinearUnit, NewKey::kLastUsed),
    PlaneAxis("edHeightAbbr", "lblHeightAbbr", "Abbreviation", "COORD3_ABBR"),
    kEndColumns,
    kHeightBox,
    kHeightEllipsoidRow,
    kGeoidRow,
    kSystemGeoidRow,
    kEndColumns,
    kDescriptionRow};
static_assert(IsSound(kGeodRows));
constexpr std::array kGeodFixed{TypeOf(SystemKind::kGeodetic)};

constexpr std::array kProjRows{
    kNameRow,
    kAbbreviationRow,
    kDatumRow,
    kEllipsoidRow,
    kLinearUnitRow,
    kMeridianRow,
    ReferenceRow({"edMapProjection", "btnMapProjection", "lblMapProjection"}, "Map projection",
                 "MAP_PROJ_AUTOKEY", kMapProjection),
    PlaneAxis("edFirstCoordName", "lblFirstCoordName", "First plane axis name", "COORD1_ABBR"),
    PlaneAxis("edSecondCoordName", "lblSecondCoordName", "Second plane axis name", "COORD2_ABBR"),
    PlaneAxis("edHeightAbbr", "lblHeightAbbr", "Height axis name", "COORD3_ABBR"),
    kHeightBox,
    kHeightEllipsoidRow,
    kGeoidRow,
    kSystemGeoidRow,
    kEndColumns,
    kSpacedDescriptionRow};
static_assert(IsSound(kProjRows));
constexpr std::array kProjFixed{TypeOf(SystemKind::kProjected),
                                FixedValue{.column = "ANGULAR_UNIT_AUTOKEY", .value = 0}};

constexpr FormDescription SystemForm(SystemKind kind, const char* caption,
                                     std::span<const FormRow> rows,
                                     std::span<const FixedValue> fixed, double height) {
  return {.object = kReferenceSystem,
          .type = static_cast<int>(kind),
          .caption = caption,
          .rows = rows,
          .fixed = fixed,
          .height = height};
}

constexpr double kHalf = 1.0 / 2;
constexpr double kThird = 1.0 / 3;

}  // namespace

constexpr FormDescription kCartSystemForm =
    SystemForm(SystemKind::kLocalCartesian, "Edit Local Cartesian Reference System", kCartRows,
               kCartFixed, kHalf);
constexpr FormDescription kGeocSystemForm = SystemForm(
    SystemKind::kGeocentric, "Edit geocentric reference system", kGeocRows, kGeocFixed, kThird);
constexpr FormDescription kLocalSystemForm =
    SystemForm(SystemKind::kLocal, "Edit Local Reference System", kLocalRows, kLocalFixed, kThird);
constexpr FormDescription kTopoSystemForm =
    SystemForm(SystemKind::kTopocentric, "Edit Topocentric Horizontal Reference System", kTopoRows,
               kTopoFixed, kThird);
// The next two dialogs are as large as what they hold.
constexpr FormDescription kGeodSystemForm =
    SystemForm(SystemKind::kGeodetic, "Edit geodetic reference system", kGeodRows, kGeodFixed, 0);
constexpr FormDescription kProjSystemForm =
    SystemForm(SystemKind::kProjected, "Edit projected reference system", kProjRows, kProjFixed, 0);

}  // namespace QvRefSystem
