#include "processors/form_descriptions.h"

#include <array>

#include "processors/axis_directions.h"
#include "processors/system_forms.h"

namespace QvRefSystem {
namespace {

using enum TObjectType;

// Units: so many base units are so many of this unit.

constexpr std::array kUnitRows{kNameRow,
                               kAbbreviationRow,
                               TFormRow{.kind = TRowKind::kNumber,
                                        .control = "edFactorB",
                                        .caption = "Base units",
                                        .column = "FACTOR_B",
                                        .rule = TRule::kNotZero,
                                        .inPanel = true},
                               TFormRow{.kind = TRowKind::kNumber,
                                        .control = "edFactorC",
                                        .caption = "These units",
                                        .column = "FACTOR_C",
                                        .rule = TRule::kNotZero,
                                        .inPanel = true},
                               PanelRow("pnlEquation"),
                               kDescriptionRow};
static_assert(IsSound(kUnitRows));

constexpr std::array kNewLinearUnit{TFixedValue{"CODE", 1}, TFixedValue{"TYPE", 1}};
constexpr std::array kNewAngularUnit{TFixedValue{"CODE", 1}, TFixedValue{"TYPE", 2}};
constexpr std::array kNewScaleUnit{TFixedValue{"CODE", 1}, TFixedValue{"TYPE", 3}};

// Ellipsoids: of the three ways to tell the shape one is chosen.

constexpr std::array kEllipsoidRows{
    kNameRow,
    TextRow("edA", "lblA", "Major semi-axis", "A", TRule::kNotEmpty),
    [] {
      TFormRow row = TextRow("edB", "radiobtnB", "Minor semi-axis", "B", TRule::kNotEmpty);
      row.trimmed = true;
      return Led(row, TLeadKind::kRadio, kEllipsoidShape);
    }(),
    [] {
      TFormRow row = TextRow("edF", "radiobtnF", "Flattening", "F", TRule::kNotEmpty);
      row.trimmed = true;
      return Led(row, TLeadKind::kRadio, kEllipsoidShape);
    }(),
    TFormRow{.kind = TRowKind::kChoice,
             .lead = "radiobtnSpheroid",
             .caption = "Spheroid",
             .leadKind = TLeadKind::kRadio,
             .choice = kEllipsoidShape},
    ReferenceRow("edUnit", "btnUnit", "lblUnit", "Units", "UNIT_AUTOKEY", kLinearUnit,
                 TNewKey::kLastUsed),
    kDescriptionRow};
static_assert(IsSound(kEllipsoidRows));

constexpr std::array kPrimeMeridianRows{
    kNameRow, TextRow("edLongitude", "lblLongitude", "Longitude", "LONGITUDE", TRule::kNotEmpty),
    ReferenceRow("edUnit", "btnUnit", "lblUnit", "Units", "UNIT_AUTOKEY", kAngularUnit,
                 TNewKey::kLastUsed),
    kDescriptionRow};
static_assert(IsSound(kPrimeMeridianRows));

// Datums and their shifts.

constexpr std::array kDatumRows{kNameRow, kAbbreviationRow,
                                ReferenceRow("edDatumShift", "btnDatumShift", "lblDatumShift",
                                             "Datum shift", "DATUM_SHIFT_AUTOKEY", kDatumShift),
                                ReferenceRow("edEllipsoid", "btnEllipsoid", "lblEllipsoid",
                                             "Ellipsoid", "ELLIPSOID_AUTOKEY", kEllipsoid),
                                kDescriptionRow};
static_assert(IsSound(kDatumRows));

constexpr TFormRow kTxRow = TextRow("edTx", "lblTx", "Tx", "TX", TRule::kNotEmpty);
constexpr TFormRow kTyRow = TextRow("edTy", "lblTy", "Ty", "TY", TRule::kNotEmpty);
constexpr TFormRow kTzRow = TextRow("edTz", "lblTz", "Tz", "TZ", TRule::kNotEmpty);

constexpr std::array kMolodenskyRows{
    kNameRow,
    kAbbreviationRow,
    kTxRow,
    kTyRow,
    kTzRow,
    ReferenceRow("edUnit", "btnUnit", "lblUnit", "Units", "LINEAR_UNIT_AUTOKEY", kLinearUnit,
                 TNewKey::kLastUsed),
    kDescriptionRow};
static_assert(IsSound(kMolodenskyRows));
constexpr std::array kNewMolodensky{TFixedValue{"TYPE", 1}, TFixedValue{"ANGULAR_UNIT_AUTOKEY", 0},
                                    TFixedValue{"SCALE_UNIT_AUTOKEY", 0}};

constexpr std::array kBursaWolfRows{
    kNameRow,
    kAbbreviationRow,
    ColumnRow("lblTranslation", "Translation"),
    kTxRow,
    kTyRow,
    kTzRow,
    ReferenceRow("edLinearUnit", "btnLinearUnit", "lblLinearUnit", "Units", "LINEAR_UNIT_AUTOKEY",
                 kLinearUnit, TNewKey::kLastUsed),
    ColumnRow("lblRotation", "Rotation"),
    TextRow("edRx", "lblRx", "Rx", "RX", TRule::kNotEmpty),
    TextRow("edRy", "lblRy", "Ry", "RY", TRule::kNotEmpty),
    TextRow("edRz", "lblRz", "Rz", "RZ", TRule::kNotEmpty),
    ReferenceRow("edAngularUnit", "btnAngularUnit", "lblAngularUnit", "Units",
                 "ANGULAR_UNIT_AUTOKEY", kAngularUnit, TNewKey::kLastUsed),
    ColumnRow("lblScale", "Scale"),
    TextRow("edS", "lblS", "S", "S", TRule::kNotEmpty),
    ReferenceRow("edScaleUnit", "btnScaleUnit", "lblScaleUnit", "Units", "SCALE_UNIT_AUTOKEY",
                 kScaleUnit, TNewKey::kLastUsed),
    kEndColumns,
    kDescriptionRow};
static_assert(IsSound(kBursaWolfRows));

// Map projections: the units are needed by the parameters of the type, which the data says.

constexpr std::array kMapProjRows{
    kNameRow,
    [] {
      TFormRow row = ReferenceRow("edProjectionType", "btnProjectionType", "lblProjectionType",
                                  "Projection type", "TYPE", kMapProjectionType);
      row.keepsKey = true;
      return row;
    }(),
    ColumnRow(),
    ReferenceRow("edLinearUnit", "btnLinearUnit", "lblLinearUnit", "Linear units",
                 "LINEAR_UNIT_AUTOKEY", kLinearUnit),
    ReferenceRow("edAngularUnit", "btnAngularUnit", "lblAngularUnit", "Angular units",
                 "ANGULAR_UNIT_AUTOKEY", kAngularUnit),
    ReferenceRow("edScaleUnit", "btnScaleUnit", "lblScaleUnit", "Scale units", "SCALE_UNIT_AUTOKEY",
                 kScaleUnit),
    ColumnRow(),
    TextRow("edFirstAxisName", "lblFirstAxisName", "First axis name", "COORD1_ABBR",
            TRule::kNotEmpty),
    ListRow("comboFirstAxisDir", "lblFirstAxisDir", "First axis direction", kDirectionNames),
    TextRow("edSecondAxisName", "lblSecondAxisName", "Second axis name", "COORD2_ABBR",
            TRule::kNotEmpty),
    ListRow("comboSecondAxisDir", "lblSecondAxisDir", "Second axis direction", kDirectionNames),
    kEndColumns,
    PanelRow("pnlProjParam", "lblProjParam", "Parameters", 3),
    kSpacedDescriptionRow};
static_assert(IsSound(kMapProjRows));

// Types: only their words can be changed.

constexpr std::array kTypeRows{kNameRow, kDescriptionRow};
static_assert(IsSound(kTypeRows));

constexpr TFormDescription TypeForm(TObjectType object, const char* caption) {
  return {.object = object,
          .caption = caption,
          .rows = kTypeRows,
          .height = 1.0 / 3,
          .makesRecords = false};
}

}  // namespace

constexpr TFormDescription kLinearUnitForm{.object = kLinearUnit,
                                           .caption = "Edit linear unit",
                                           .rows = kUnitRows,
                                           .fixed = kNewLinearUnit};
constexpr TFormDescription kAngularUnitForm{.object = kAngularUnit,
                                            .caption = "Edit angular unit",
                                            .rows = kUnitRows,
                                            .fixed = kNewAngularUnit};
constexpr TFormDescription kScaleUnitForm{
    .object = kScaleUnit, .caption = "Edit scale unit", .rows = kUnitRows, .fixed = kNewScaleUnit};
constexpr TFormDescription kEllipsoidForm{
    .object = kEllipsoid, .caption = "Edit reference ellipsoid", .rows = kEllipsoidRows};
constexpr TFormDescription kPrimeMeridianForm{.object = kPrimeMeridian,
                                              .caption = "Edit prime meridian",
                                              .rows = kPrimeMeridianRows,
                                              .stamp = TEditStamp::kZero};
constexpr TFormDescription kDatumForm{
    .object = kDatum, .caption = "Edit geodetic datum", .rows = kDatumRows, .height = 1.0 / 3};
constexpr TFormDescription kMolodenskyForm{.object = kDatumShift,
                                           .type = 1,
                                           .caption = "Edit datum shift",
                                           .rows = kMolodenskyRows,
                                           .fixed = kNewMolodensky};
constexpr TFormDescription kBursaWolfForm{.object = kDatumShift,
                                          .type = 2,
                                          .caption = "Edit datum shift",
                                          .rows = kBursaWolfRows,
                                          .width = 1.0 / 3,
                                          .height = 1.0 / 3};
constexpr TFormDescription kMapProjForm{.object = kMapProjection,
                                        .caption = "Edit map projection",
                                        .rows = kMapProjRows,
                                        .width = 1.0 / 2,
                                        .height = 2.0 / 3};
constexpr TFormDescription kDatumShiftTypeForm = TypeForm(kDatumShiftType, "Edit datum shift type");
constexpr TFormDescription kMapProjTypeForm =
    TypeForm(kMapProjectionType, "Edit map projection type info");
constexpr TFormDescription kRefSystemTypeForm =
    TypeForm(kReferenceSystemType, "Edit reference system type info");

std::span<const TFormDescription* const> FormDescriptions() {
  static constexpr std::array kForms{
      &kLinearUnitForm,    &kAngularUnitForm,  &kScaleUnitForm,  &kEllipsoidForm,
      &kPrimeMeridianForm, &kDatumForm,        &kMolodenskyForm, &kBursaWolfForm,
      &kMapProjForm,       &kCartSystemForm,   &kGeocSystemForm, &kLocalSystemForm,
      &kTopoSystemForm,    &kGeodSystemForm,   &kProjSystemForm, &kDatumShiftTypeForm,
      &kMapProjTypeForm,   &kRefSystemTypeForm};
  return kForms;
}

}  // namespace QvRefSystem
