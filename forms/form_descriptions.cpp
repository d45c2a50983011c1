#include "forms/form_descriptions.h"

#include <array>

#include "forms/axis_directions.h"
#include "forms/system_forms.h"

namespace QvRefSystem {
namespace {

using enum TObjectType;

// Units: so many base units are so many of this unit.

constexpr std::array kUnitRows{kNameRow,
                               kAbbreviationRow,
                               FormRow{.kind = RowKind::kNumber,
                                       .control = "edFactorB",
                                       .caption = "Base units",
                                       .column = "FACTOR_B",
                                       .rule = Rule::kNotZero,
                                       .inPanel = true},
                               FormRow{.kind = RowKind::kNumber,
                                       .control = "edFactorC",
                                       .caption = "These units",
                                       .column = "FACTOR_C",
                                       .rule = Rule::kNotZero,
                                       .inPanel = true},
                               PanelRow("pnlEquation"),
                               kDescriptionRow};
static_assert(IsSound(kUnitRows));

constexpr std::array kNewLinearUnit{FixedValue{"CODE", 1}, FixedValue{"TYPE", 1}};
constexpr std::array kNewAngularUnit{FixedValue{"CODE", 1}, FixedValue{"TYPE", 2}};
constexpr std::array kNewScaleUnit{FixedValue{"CODE", 1}, FixedValue{"TYPE", 3}};

// Ellipsoids: of the three ways to tell the shape one is chosen.

constexpr std::array kEllipsoidRows{
    kNameRow,
    TextRow("edA", "lblA", "Major semi-axis", "A", Rule::kNotEmpty),
    [] {
      FormRow row = TextRow("edB", "radiobtnB", "Minor semi-axis", "B", Rule::kNotEmpty);
      row.trimmed = true;
      return Led(row, LeadKind::kRadio, kEllipsoidShape);
    }(),
    [] {
      FormRow row = TextRow("edF", "radiobtnF", "Flattening", "F", Rule::kNotEmpty);
      row.trimmed = true;
      return Led(row, LeadKind::kRadio, kEllipsoidShape);
    }(),
    FormRow{.kind = RowKind::kChoice,
            .lead = "radiobtnSpheroid",
            .caption = "Spheroid",
            .leadKind = LeadKind::kRadio,
            .choice = kEllipsoidShape},
    ReferenceRow({"edUnit", "btnUnit", "lblUnit"}, "Units", "UNIT_AUTOKEY", kLinearUnit,
                 NewKey::kLastUsed),
    kDescriptionRow};
static_assert(IsSound(kEllipsoidRows));

constexpr std::array kPrimeMeridianRows{
    kNameRow, TextRow("edLongitude", "lblLongitude", "Longitude", "LONGITUDE", Rule::kNotEmpty),
    ReferenceRow({"edUnit", "btnUnit", "lblUnit"}, "Units", "UNIT_AUTOKEY", kAngularUnit,
                 NewKey::kLastUsed),
    kDescriptionRow};
static_assert(IsSound(kPrimeMeridianRows));

// Datums and their shifts.

constexpr std::array kDatumRows{kNameRow, kAbbreviationRow,
                                ReferenceRow({"edDatumShift", "btnDatumShift", "lblDatumShift"},
                                             "Datum shift", "DATUM_SHIFT_AUTOKEY", kDatumShift),
                                ReferenceRow({"edEllipsoid", "btnEllipsoid", "lblEllipsoid"},
                                             "Ellipsoid", "ELLIPSOID_AUTOKEY", kEllipsoid),
                                kDescriptionRow};
static_assert(IsSound(kDatumRows));

constexpr FormRow kTxRow = TextRow("edTx", "lblTx", "Tx", "TX", Rule::kNotEmpty);
constexpr FormRow kTyRow = TextRow("edTy", "lblTy", "Ty", "TY", Rule::kNotEmpty);
constexpr FormRow kTzRow = TextRow("edTz", "lblTz", "Tz", "TZ", Rule::kNotEmpty);

constexpr std::array kMolodenskyRows{
    kNameRow,
    kAbbreviationRow,
    kTxRow,
    kTyRow,
    kTzRow,
    ReferenceRow({"edUnit", "btnUnit", "lblUnit"}, "Units", "LINEAR_UNIT_AUTOKEY", kLinearUnit,
                 NewKey::kLastUsed),
    kDescriptionRow};
static_assert(IsSound(kMolodenskyRows));
constexpr std::array kNewMolodensky{FixedValue{"TYPE", 1}, FixedValue{"ANGULAR_UNIT_AUTOKEY", 0},
                                    FixedValue{"SCALE_UNIT_AUTOKEY", 0}};

constexpr std::array kBursaWolfRows{
    kNameRow,
    kAbbreviationRow,
    ColumnRow("lblTranslation", "Translation"),
    kTxRow,
    kTyRow,
    kTzRow,
    ReferenceRow({"edLinearUnit", "btnLinearUnit", "lblLinearUnit"}, "Units", "LINEAR_UNIT_AUTOKEY",
                 kLinearUnit, NewKey::kLastUsed),
    ColumnRow("lblRotation", "Rotation"),
    TextRow("edRx", "lblRx", "Rx", "RX", Rule::kNotEmpty),
    TextRow("edRy", "lblRy", "Ry", "RY", Rule::kNotEmpty),
    TextRow("edRz", "lblRz", "Rz", "RZ", Rule::kNotEmpty),
    ReferenceRow({"edAngularUnit", "btnAngularUnit", "lblAngularUnit"}, "Units",
                 "ANGULAR_UNIT_AUTOKEY", kAngularUnit, NewKey::kLastUsed),
    ColumnRow("lblScale", "Scale"),
    TextRow("edS", "lblS", "S", "S", Rule::kNotEmpty),
    ReferenceRow({"edScaleUnit", "btnScaleUnit", "lblScaleUnit"}, "Units", "SCALE_UNIT_AUTOKEY",
                 kScaleUnit, NewKey::kLastUsed),
    kEndColumns,
    kDescriptionRow};
static_assert(IsSound(kBursaWolfRows));

// Map projections: the units are needed by the parameters of the type, which the data says.

constexpr std::array kMapProjRows{
    kNameRow,
    [] {
      FormRow row = ReferenceRow({"edProjectionType", "btnProjectionType", "lblProjectionType"},
                                 "Projection type", "TYPE", kMapProjectionType);
      row.keepsKey = true;
      return row;
    }(),
    ColumnRow(),
    ReferenceRow({"edLinearUnit", "btnLinearUnit", "lblLinearUnit"}, "Linear units",
                 "LINEAR_UNIT_AUTOKEY", kLinearUnit),
    ReferenceRow({"edAngularUnit", "btnAngularUnit", "lblAngularUnit"}, "Angular units",
                 "ANGULAR_UNIT_AUTOKEY", kAngularUnit),
    ReferenceRow({"edScaleUnit", "btnScaleUnit", "lblScaleUnit"}, "Scale units",
                 "SCALE_UNIT_AUTOKEY", kScaleUnit),
    ColumnRow(),
    TextRow("edFirstAxisName", "lblFirstAxisName", "First axis name", "COORD1_ABBR",
            Rule::kNotEmpty),
    ListRow("comboFirstAxisDir", "lblFirstAxisDir", "First axis direction", kDirectionNames),
    TextRow("edSecondAxisName", "lblSecondAxisName", "Second axis name", "COORD2_ABBR",
            Rule::kNotEmpty),
    ListRow("comboSecondAxisDir", "lblSecondAxisDir", "Second axis direction", kDirectionNames),
    kEndColumns,
    PanelRow("pnlProjParam", "lblProjParam", "Parameters", 3),
    kSpacedDescriptionRow};
static_assert(IsSound(kMapProjRows));

// Types: only their words can be changed.

constexpr std::array kTypeRows{kNameRow, kDescriptionRow};
static_assert(IsSound(kTypeRows));

constexpr FormDescription TypeForm(TObjectType object, const char* caption) {
  return {.object = object,
          .caption = caption,
          .rows = kTypeRows,
          .height = 1.0 / 3,
          .makesRecords = false};
}

}  // namespace

constexpr FormDescription kLinearUnitForm{.object = kLinearUnit,
                                          .caption = "Edit linear unit",
                                          .rows = kUnitRows,
                                          .fixed = kNewLinearUnit};
constexpr FormDescription kAngularUnitForm{.object = kAngularUnit,
                                           .caption = "Edit angular unit",
                                           .rows = kUnitRows,
                                           .fixed = kNewAngularUnit};
constexpr FormDescription kScaleUnitForm{
    .object = kScaleUnit, .caption = "Edit scale unit", .rows = kUnitRows, .fixed = kNewScaleUnit};
constexpr FormDescription kEllipsoidForm{
    .object = kEllipsoid, .caption = "Edit reference ellipsoid", .rows = kEllipsoidRows};
constexpr FormDescription kPrimeMeridianForm{.object = kPrimeMeridian,
                                             .caption = "Edit prime meridian",
                                             .rows = kPrimeMeridianRows,
                                             .stamp = EditStamp::kZero};
constexpr FormDescription kDatumForm{
    .object = kDatum, .caption = "Edit geodetic datum", .rows = kDatumRows, .height = 1.0 / 3};
constexpr FormDescription kMolodenskyForm{.object = kDatumShift,
                                          .type = 1,
                                          .caption = "Edit datum shift",
                                          .rows = kMolodenskyRows,
                                          .fixed = kNewMolodensky};
constexpr FormDescription kBursaWolfForm{.object = kDatumShift,
                                         .type = 2,
                                         .caption = "Edit datum shift",
                                         .rows = kBursaWolfRows,
                                         .width = 1.0 / 3,
                                         .height = 1.0 / 3};
constexpr FormDescription kMapProjForm{.object = kMapProjection,
                                       .caption = "Edit map projection",
                                       .rows = kMapProjRows,
                                       .width = 1.0 / 2,
                                       .height = 2.0 / 3};
constexpr FormDescription kDatumShiftTypeForm = TypeForm(kDatumShiftType, "Edit datum shift type");
constexpr FormDescription kMapProjTypeForm =
    TypeForm(kMapProjectionType, "Edit map projection type info");
constexpr FormDescription kRefSystemTypeForm =
    TypeForm(kReferenceSystemType, "Edit reference system type info");

std::span<const FormDescription* const> FormDescriptions() {
  static constexpr std::array kForms{
      &kLinearUnitForm,    &kAngularUnitForm,  &kScaleUnitForm,  &kEllipsoidForm,
      &kPrimeMeridianForm, &kDatumForm,        &kMolodenskyForm, &kBursaWolfForm,
      &kMapProjForm,       &kCartSystemForm,   &kGeocSystemForm, &kLocalSystemForm,
      &kTopoSystemForm,    &kGeodSystemForm,   &kProjSystemForm, &kDatumShiftTypeForm,
      &kMapProjTypeForm,   &kRefSystemTypeForm};
  return kForms;
}

}  // namespace QvRefSystem
