#include "processors/ref_system_unstored.h"

#include <algorithm>
#include <array>

#include "processors/ref_system_steps.h"

// A system that is being edited, as the tree that its record would give, without codes and heights.
namespace QvRefSystem {

bool TQvRfRefSystemDataProcessor::WriteUnstored(TStringTree* tree, const UnstoredSystem& system) {
  using enum Step;
  static constexpr std::array kGeodeticSteps{kAngularUnit, kPrimeMeridian, kHeightsWithUnit,
                                             kDatumOrEllipsoid};
  static constexpr std::array kProjectedSteps{kPrimeMeridian,   kHeights,    kLinearUnit,
                                              kUnitInHeights,   kProjection, kOptionalPrimary,
                                              kDatumOrEllipsoid};
  const bool geodetic = system.kind == SystemKind::kGeodetic;
  if (!geodetic && system.kind != SystemKind::kProjected) return false;
  const std::span<const Step> steps =
      geodetic ? std::span<const Step>(kGeodeticSteps) : std::span<const Step>(kProjectedSteps);
  const Record record{.kind = static_cast<int>(system.kind),
                      .linearUnit = system.linearUnit,
                      .angularUnit = system.angularUnit,
                      .ellipsoid = system.ellipsoid,
                      .datum = system.datum,
                      .primeMeridian = system.primeMeridian,
                      .mapProjection = system.mapProjection};
  const auto write = [&](Step step) { return WriteStep(tree, step, record); };
  return WriteHead(tree, system) && std::ranges::all_of(steps, write) &&
         (!system.positiveLongitude || WritePositiveLongitude(tree));
}

bool TQvRfRefSystemDataProcessor::WriteHead(TStringTree* tree, const UnstoredSystem& system) {
  TQvRfDataProcessor& types = ProcessorOf(TObjectType::kReferenceSystemType);
  const int kind = static_cast<int>(system.kind);
  const bool written = EnsureField(tree, TreeIds::kName, system.name) &&
                       EnsureField(tree, TreeIds::kDescription, system.description) &&
                       EnsureField(tree, TreeIds::kAbbreviation, system.abbreviation) &&
                       EnsureField(tree, TreeIds::kKind, std::to_string(kind)) &&
                       types.LocateKey(kind) && types.WriteToTree(tree, TreeIds::kSystemType.id, 0);
  int index = 0;
  return written && std::ranges::all_of(system.axes, [&](const std::string& axis) {
           return EnsureField(tree, TreeIds::kAxis, index++, axis);
         });
}

void TQvRfRefSystemDataProcessor::StorePositiveLongitude(int key, bool on) {
  const std::initializer_list<QvPlatform::RowMatch> rows = {
      ParamMatch(kOwnerContent, ObjectType), ParamMatch(kOwnerId, key),
      ParamMatch(kParamTag, static_cast<int>(ParamTag::kPositiveLongitude))};
  if (!on) return DeleteParamValues(rows, true);
  if (IsPositiveLongitude(key)) return;
  QvPlatform::TQvDataSet& values = data_.datasetParamValue;
  if (const QvPlatform::RowView row = values.FindFirst(rows)) {
    values.MoveTo(row);
    values.Edit();
    values.Fields(ParamField(kValue)).SetString("1");
    values.Post();
  } else {
    AppendParamValue(ObjectType, key, ParamTag::kPositiveLongitude, 0, 0, "1");
  }
}

}  // namespace QvRefSystem
