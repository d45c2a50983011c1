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

/// A reference that is chosen anew loses its mark; entering it does not.
constexpr TFormRow SystemReference(const char* control, const char* button, const char* lead,
                                   const char* caption, const char* column, TObjectType object,
                                   TNewKey newKey = TNewKey::kNone, TRule rule = TRule::kChosen) {
  return Unmarked(ReferenceRow(control, button, lead, caption, column, object, newKey, rule));
}
constexpr TFormRow kLinearUnitRow =
    SystemReference("edLinearUnit", "btnLinearUnit", "lblLinearUnit", "Linear units",
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
    SystemReference("edPrimeMeridian", "btnPrimeMeridian", "lblPrimeMeridian", "Prime meridian",
                    "PRIME_MERIDIAN_AUTOKEY", kPrimeMeridian, TNewKey::kLastUsed),
    Led(SystemReference("edDatum", "btnDatum", "chboxDatum", "Datum", "DATUM_AUTOKEY", kDatum,
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
                                SystemReference("edEllipsoid", "btnEllipsoid", "lblEllipsoid",
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
    SystemReference("edOriginRefSystem", "btnOriginRefSystem", "lblOriginRefSystem",
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

}  // namespace QvRefSystem
