#include "processors/form_descriptions.h"

#include <array>

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
constexpr TFormDescription kDatumShiftTypeForm = TypeForm(kDatumShiftType, "Edit datum shift type");
constexpr TFormDescription kMapProjTypeForm =
    TypeForm(kMapProjectionType, "Edit map projection type info");
constexpr TFormDescription kRefSystemTypeForm =
    TypeForm(kReferenceSystemType, "Edit reference system type info");

std::span<const TFormDescription* const> FormDescriptions() {
  static constexpr std::array kForms{&kLinearUnitForm,  &kAngularUnitForm,   &kScaleUnitForm,
                                     &kEllipsoidForm,   &kPrimeMeridianForm, &kDatumShiftTypeForm,
                                     &kMapProjTypeForm, &kRefSystemTypeForm, &kCartSystemForm,
                                     &kGeocSystemForm,  &kLocalSystemForm,   &kTopoSystemForm};
  return kForms;
}

}  // namespace QvRefSystem
