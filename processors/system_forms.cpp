#include "processors/system_forms.h"

#include <array>

#include "platform/geocore/system_model.h"

namespace QvRefSystem {
namespace {

using enum TObjectType;

constexpr TFormRow kXRow =
    TextRow("edXname", "lblXname", "X axis name", "COORD1_ABBR", TRule::kNotEmpty);
constexpr TFormRow kYRow =
    TextRow("edYname", "lblYname", "Y axis name", "COORD2_ABBR", TRule::kNotEmpty);
constexpr TFormRow kZRow =
    TextRow("edZname", "lblZname", "Z axis name", "COORD3_ABBR", TRule::kNotEmpty);

constexpr TFormRow kLinearUnitRow =
    ReferenceRow("edLinearUnit", "btnLinearUnit", "lblLinearUnit", "Linear units",
                 "LINEAR_UNIT_AUTOKEY", kLinearUnit, TNewKey::kLastUsed);

constexpr TFormRow HandRow(const char* radio, const char* caption) {
  return {.kind = TRowKind::kChoice,
          .lead = radio,
          .caption = caption,
          .leadKind = TLeadKind::kRadio,
          .choice = kHandedness};
}

/// A cell of the grid of origin coordinates. Any text may stand there.
constexpr TFormRow OriginRow(const char* control, const char* column) {
  TFormRow row = TextRow(control, "", "Origin coordinates", column);
  row.inPanel = true;
  return row;
}
constexpr TFormRow kOrigin1Row = OriginRow("edOrigin1", "ORIGIN_COORD1");
constexpr TFormRow kOrigin2Row = OriginRow("edOrigin2", "ORIGIN_COORD2");
constexpr TFormRow kOrigin3Row = OriginRow("edOrigin3", "ORIGIN_COORD3");
constexpr TFormRow kOriginRow = PanelRow("pnlOrigin", "lblOrigin", "Origin coordinates");

/// A new record's TYPE, and references that a kind of system has not.
constexpr TFixedValue TypeOf(SystemKind kind) {
  return {"TYPE", static_cast<int>(kind)};
}
constexpr TFixedValue No(const char* column) {
  return {.column = column, .value = 0, .always = true};
}
constexpr TFixedValue kNoAngularUnit = No("ANGULAR_UNIT_AUTOKEY");
constexpr TFixedValue kNoDatum = No("DATUM_AUTOKEY");
constexpr TFixedValue kNoEllipsoid = No("ELLIPSOID_AUTOKEY");
constexpr TFixedValue kNoPrimeMeridian = No("PRIME_MERIDIAN_AUTOKEY");

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
    ReferenceRow("edPrimeMeridian", "btnPrimeMeridian", "lblPrimeMeridian", "Prime meridian",
                 "PRIME_MERIDIAN_AUTOKEY", kPrimeMeridian, TNewKey::kLastUsed),
    Led(ReferenceRow("edDatum", "btnDatum", "chboxDatum", "Datum", "DATUM_AUTOKEY", kDatum,
                     TNewKey::kNone, TRule::kNone),
        TLeadKind::kCheck),
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
                                ReferenceRow("edEllipsoid", "btnEllipsoid", "lblEllipsoid",
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
    ReferenceRow("edOriginRefSystem", "btnOriginRefSystem", "lblOriginRefSystem",
                 "Primary Reference System", "PRIMARY_REFSYSTEM_AUTOKEY", kReferenceSystem),
    kOrigin1Row,
    kOrigin2Row,
    kOrigin3Row,
    kOriginRow,
    [] {
      TFormRow row = TextRow("edAzimuth", "lblAzimuth", "Azimuth", "AZIMUTH");
      row.trimmed = true;
      return row;
    }(),
    kDescriptionRow};
static_assert(IsSound(kTopoRows));
constexpr std::array kTopoFixed{TypeOf(SystemKind::kTopocentric), kNoAngularUnit, kNoDatum,
                                kNoEllipsoid, kNoPrimeMeridian};

// Geodetic and projected systems.

constexpr TFormRow PlaneAxis(const char* control, const char* lead, const char* caption,
                             const char* column) {
  return TextRow(control, lead, caption, column, TRule::kNotEmpty);
}
constexpr TFormRow kDatumRow =
    Led(ReferenceRow("edDatum", "btnDatum", "radiobtnDatum", "Datum", "DATUM_AUTOKEY", kDatum),
        TLeadKind::kRadio, kGround);
constexpr TFormRow kEllipsoidRow =
    Led(ReferenceRow("edEllipsoid", "btnEllipsoid", "radiobtnEllipsoid", "Ellipsoid",
                     "ELLIPSOID_AUTOKEY", kEllipsoid),
        TLeadKind::kRadio, kGround);
constexpr TFormRow kMeridianRow =
    ReferenceRow("edPrimeMeridian", "btnPrimeMeridian", "lblPrimeMeridian", "Prime meridian",
                 "PRIME_MERIDIAN_AUTOKEY", kPrimeMeridian, TNewKey::kLastUsed);

constexpr TFormRow kHeightBox = BoxRow("grboxHeightSystem", " Height System ");
constexpr TFormRow kHeightEllipsoidRow{.kind = TRowKind::kChoice,
                                       .lead = "radiobtnHeightEllipsoid",
                                       .caption = "Heights above ellipsoid",
                                       .leadKind = TLeadKind::kRadio,
                                       .choice = kHeightSurface};
constexpr TFormRow kGeoidRow =
    Led(ReferenceRow("Edit1", "Button1", "radiobtnHeightGeoid", "User-defined geoid",
                     "VERT_SYSTEM_AUTOKEY", kVerticalReferenceSystem),
        TLeadKind::kRadio, kHeightSurface);
/// The geoids of the machine are its items; the dialog itself refuses that none is chosen.
constexpr TFormRow kSystemGeoidRow = [] {
  TFormRow row = ListRow("comboSystemGeoids", "radiobtnHeightSystemGeoid", "Predefined geoid", {});
  row.rule = TRule::kNone;
  return Led(row, TLeadKind::kRadio, kHeightSurface);
}();

constexpr std::array kGeodRows{
    kNameRow,
    kAbbreviationRow,
    kDatumRow,
    kEllipsoidRow,
    kMeridianRow,
    BoxRow("grboxLatLon", " Latitude/Longitude "),
    ReferenceRow("edAngularUnit", "btnAngularUnit", "lblAngularUnit", "Unit",
                 "ANGULAR_UNIT_AUTOKEY", kAngularUnit, TNewKey::kLastUsed),
    PlaneAxis("edLatitudeAbbr", "lblLatitudeAbbr", "Latitude Abbreviation", "COORD1_ABBR"),
    PlaneAxis("edLongitudeAbbr", "lblLongitudeAbbr", "Longitude Abbreviation", "COORD2_ABBR"),
    TFormRow{.kind = TRowKind::kChoice,
             .lead = "chboxPositiveLongitude",
             .caption = "Positive Longitude",
             .leadKind = TLeadKind::kCheck},
    BoxRow("grboxHeight", " Height "),
    ReferenceRow("edLinearUnit", "btnLinearUnit", "lblLinearUnit", "Unit", "LINEAR_UNIT_AUTOKEY",
                 kLinearUnit, TNewKey::kLastUsed),
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
    ReferenceRow("edMapProjection", "btnMapProjection", "lblMapProjection", "Map projection",
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
                                TFixedValue{.column = "ANGULAR_UNIT_AUTOKEY", .value = 0}};

constexpr TFormDescription SystemForm(SystemKind kind, const char* caption,
                                      std::span<const TFormRow> rows,
                                      std::span<const TFixedValue> fixed, double height) {
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

constexpr TFormDescription kCartSystemForm =
    SystemForm(SystemKind::kLocalCartesian, "Edit Local Cartesian Reference System", kCartRows,
               kCartFixed, kHalf);
constexpr TFormDescription kGeocSystemForm = SystemForm(
    SystemKind::kGeocentric, "Edit geocentric reference system", kGeocRows, kGeocFixed, kThird);
constexpr TFormDescription kLocalSystemForm =
    SystemForm(SystemKind::kLocal, "Edit Local Reference System", kLocalRows, kLocalFixed, kThird);
constexpr TFormDescription kTopoSystemForm =
    SystemForm(SystemKind::kTopocentric, "Edit Topocentric Horizontal Reference System", kTopoRows,
               kTopoFixed, kThird);
// These two are as large as what they hold.
constexpr TFormDescription kGeodSystemForm =
    SystemForm(SystemKind::kGeodetic, "Edit geodetic reference system", kGeodRows, kGeodFixed, 0);
constexpr TFormDescription kProjSystemForm =
    SystemForm(SystemKind::kProjected, "Edit projected reference system", kProjRows, kProjFixed, 0);

}  // namespace QvRefSystem
