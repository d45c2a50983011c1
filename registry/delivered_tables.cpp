#include "registry/delivered_tables.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/geocore/projection_methods.h"
#include "platform/text/text.h"
#include "processors/object_descriptor.h"
#include "registry/delivered_types.h"

namespace QvRefSystem {
namespace {

using QvPlatform::TQvDataSet;

constexpr int kMifGroupOfGeodetic = 4;
constexpr int kMifGroupOfProjected = 5;
constexpr int kKindOfChoice = 1;
constexpr int kKindOfFreeText = 0;

// Axes that a new projection of a type starts with. The first stands for the east-west axis and the
// second for the north-south one, whatever their order; swap: the north-south axis comes first.
struct TypeAxes {
  int method;
  std::string_view eastAbbreviation;
  std::string_view northAbbreviation;
  int eastSign;
  int northSign;
  bool swap;
};

constexpr TypeAxes kUsualAxes{0, "E", "N", 1, 1, false};

// Axes of the systems that the registry has of these methods.
constexpr TypeAxes kAxesOfTypes[] = {
    {1041, "X", "Y", 1, 1, false},   {1042, "Y", "X", -1, -1, true}, {1043, "X", "Y", 1, 1, false},
    {9808, "Y", "X", -1, -1, false}, {9813, "Y", "X", 1, 1, true},   {9819, "Y", "X", -1, -1, true},
    {9826, "W", "N", -1, 1, false},  {9828, "M", "P", -1, -1, true},
};

// Values that are offered for a parameter of a projection type. What stands in brackets explains a
// value and is cut off when it is taken, so no blank may come ahead of it. Lengths and angles name
// their unit: the list does not know which one the projection has.
struct Choice {
  int method;
  int parameter;
  std::string_view value;
};

constexpr int kLatitudeOfNaturalOrigin = 8801;
constexpr int kScaleAtNaturalOrigin = 8805;
constexpr int kFalseEasting = 8806;
constexpr int kFalseNorthing = 8807;
constexpr int kScaleOnInitialLine = 8815;
constexpr int kFirstParallel = 8823;
constexpr int kLatitudeOfParallel = 8832;

constexpr Choice kChoices[] = {
    {9804, kLatitudeOfNaturalOrigin, "0(equator)"},
    {9804, kScaleAtNaturalOrigin, "1"},
    {9807, kLatitudeOfNaturalOrigin, "0(equator)"},
    {9807, kScaleAtNaturalOrigin, "0.9996(UTM)"},
    {9807, kScaleAtNaturalOrigin, "1(Gauss-Kruger)"},
    {9807, kScaleAtNaturalOrigin, "0.9999(3-degree zones of several countries)"},
    {9807, kFalseEasting, "500000(metres: UTM)"},
    {9807, kFalseEasting, "0"},
    {9807, kFalseNorthing, "0(UTM, northern hemisphere)"},
    {9807, kFalseNorthing, "10000000(metres: UTM, southern hemisphere)"},
    {9808, kLatitudeOfNaturalOrigin, "0(equator)"},
    {9808, kScaleAtNaturalOrigin, "1"},
    {9801, kScaleAtNaturalOrigin, "1"},
    {9809, kScaleAtNaturalOrigin, "1"},
    {9809, kScaleAtNaturalOrigin, "0.9999079(Netherlands)"},
    {9810, kLatitudeOfNaturalOrigin, "90(degrees: north pole)"},
    {9810, kLatitudeOfNaturalOrigin, "-90(degrees: south pole)"},
    {9810, kScaleAtNaturalOrigin, "0.994(UPS)"},
    {9810, kScaleAtNaturalOrigin, "1"},
    {9810, kFalseEasting, "2000000(metres: UPS)"},
    {9810, kFalseEasting, "0"},
    {9810, kFalseNorthing, "2000000(metres: UPS)"},
    {9810, kFalseNorthing, "0"},
    {9812, kScaleOnInitialLine, "1"},
    {9815, kScaleOnInitialLine, "1"},
    {9829, kLatitudeOfParallel, "-71(degrees: Antarctica)"},
    {9829, kLatitudeOfParallel, "70(degrees: Arctic)"},
    {9829, kLatitudeOfParallel, "75(degrees: Arctic)"},
    {1028, kFirstParallel, "0(equator)"},
    {9835, kFirstParallel, "0(equator)"},
    {9835, kFirstParallel, "30(degrees)"},
    {9835, kFirstParallel, "45(degrees)"},
};

bool HasChoices(int method, int parameter) {
  return std::ranges::any_of(kChoices, [=](const Choice& choice) {
    return choice.method == method && choice.parameter == parameter;
  });
}

// Appends one row: fields are set by name between construction and Post.
class NewRow {
 public:
  explicit NewRow(TQvDataSet& dataSet) : dataSet_(dataSet) { dataSet_.Append(); }
  NewRow& Set(std::string_view field, int value) {
    dataSet_.FieldByName(field).SetInteger(value);
    return *this;
  }
  NewRow& Set(std::string_view field, std::string_view value) {
    dataSet_.FieldByName(field).SetString(value);
    return *this;
  }
  // What every row of a type table begins with.
  NewRow& SetHead(int type, std::string_view name, std::string_view description) {
    dataSet_.FieldByName("LAST_USE").SetFloat(QvPlatform::CurrentMoment());
    return Set("FAVOUR", 0).Set("TYPE", type).Set("NAME", name).Set("DESCRIPTION", description);
  }
  void Post() { dataSet_.Post(); }

 private:
  TQvDataSet& dataSet_;
};

struct OwnedValue {
  TObjectType owner;
  int ownerId;
  ParamTag tag;
  int group;
  int code;
};

void AddOwnedValue(TQvDataSet& dataSet, const OwnedValue& key, std::string_view value) {
  NewRow(dataSet)
      .Set("OWNER_CONTENT", static_cast<int>(key.owner))
      .Set("OWNER_ID", key.ownerId)
      .Set("PARAM_TAG", static_cast<int>(key.tag))
      .Set("PARAM_GROUP", key.group)
      .Set("PARAM_CODE", key.code)
      .Set("VALUE", value)
      .Post();
}

void FillReferenceSystemTypes(TdatamoduleQvRfData& data) {
  for (const ReferenceSystemType& type : ReferenceSystemTypes()) {
    NewRow(data.datasetRefSystemType)
        .SetHead(type.number, type.name, type.description)
        .Set("SWAP_COORDS", type.swap ? 1 : 0)
        .Set("COORD1_ABBR", type.axisAbbreviation[0])
        .Set("COORD2_ABBR", type.axisAbbreviation[1])
        .Set("COORD3_ABBR", type.axisAbbreviation[2])
        .Post();
    if (type.geoTiffModelType == 0) continue;
    AddOwnedValue(data.datasetParamValue,
                  {TObjectType::kReferenceSystemType, type.number, ParamTag::kGeoTiff, 0, 0},
                  std::to_string(type.geoTiffModelType));
  }
}

void FillDatumShiftTypes(TdatamoduleQvRfData& data) {
  for (const DatumShiftType& type : DatumShiftTypes()) {
    NewRow(data.datasetDatumShiftType).SetHead(type.number, type.name, type.description).Post();
  }
}

void AddProjectionType(TdatamoduleQvRfData& data, const ProjectionMethod& method) {
  const auto own = std::ranges::find(kAxesOfTypes, method.code, &TypeAxes::method);
  const TypeAxes& axes = own == std::end(kAxesOfTypes) ? kUsualAxes : *own;
  NewRow(data.datasetMapProjType)
      .SetHead(method.code, method.name, ProjectionTypeDescription(method.code))
      .Set("COORD1_ABBR", axes.eastAbbreviation)
      .Set("COORD2_ABBR", axes.northAbbreviation)
      .Set("COORD1_SIGN", axes.eastSign)
      .Set("COORD2_SIGN", axes.northSign)
      .Set("SWAP_COORDS", axes.swap ? 1 : 0)
      .Post();
}

void AddProjectionParameters(TdatamoduleQvRfData& data, const ProjectionMethod& method) {
  for (const int code : method.parameters) {
    const ProjectionParameter& parameter = *FindProjectionParameter(code);
    NewRow(data.datasetMapProjParam)
        .Set("PROJ_TYPE", method.code)
        .Set("TAG", code)
        .Set("NAME", parameter.name)
        .Set("KIND", HasChoices(method.code, code) ? kKindOfChoice : kKindOfFreeText)
        .Set("UNIT_TYPE", static_cast<int>(parameter.unit))
        .Set("PARAM_CODE", code)
        .Post();
  }
}

void AddProjectionCodes(TdatamoduleQvRfData& data, const ProjectionMethod& method) {
  constexpr TObjectType kOwner = TObjectType::kMapProjectionType;
  if (method.geoTiffCode != kNoExchangeCode) {
    AddOwnedValue(data.datasetParamValue, {kOwner, method.code, ParamTag::kGeoTiff, 0, 0},
                  std::to_string(method.geoTiffCode));
  }
  if (method.mifCode != kNoExchangeCode) {
    AddOwnedValue(data.datasetParamValue,
                  {kOwner, method.code, ParamTag::kMif, kMifGroupOfProjected, 0},
                  std::to_string(method.mifCode));
  }
}

void AddChoices(TdatamoduleQvRfData& data) {
  for (const Choice& choice : kChoices) {
    AddOwnedValue(data.datasetSystemValue,
                  {TObjectType::kMapProjectionType, choice.method, ParamTag::kAllowedValue,
                   choice.parameter, 0},
                  choice.value);
  }
}

void FillProjectionTypes(TdatamoduleQvRfData& data) {
  for (const ProjectionMethod& method : ProjectionMethods()) {
    AddProjectionType(data, method);
    AddProjectionParameters(data, method);
    AddProjectionCodes(data, method);
  }
  AddChoices(data);
  // The number of all geodetic systems; it belongs to no projection type.
  AddOwnedValue(data.datasetParamValue,
                {TObjectType::kMapProjectionType, 0, ParamTag::kMif, kMifGroupOfGeodetic, 0},
                std::to_string(kMifLongitudeLatitude));
}

consteval bool ChoicesAreWellFormed() {
  return std::ranges::none_of(kChoices, [](const Choice& choice) {
    const std::size_t bracket = choice.value.find('(');
    return bracket != std::string_view::npos && (bracket == 0 || choice.value[bracket - 1] == ' ');
  });
}
static_assert(ChoicesAreWellFormed());

}  // namespace

void FillDeliveredTables(TdatamoduleQvRfData& data) {
  FillReferenceSystemTypes(data);
  FillDatumShiftTypes(data);
  FillProjectionTypes(data);
}

std::vector<TQvDataSet*> DeliveredTables(TdatamoduleQvRfData& data) {
  return {&data.datasetRefSystemType, &data.datasetDatumShiftType, &data.datasetMapProjType,
          &data.datasetMapProjParam,  &data.datasetSystemValue,    &data.datasetParamValue};
}

}  // namespace QvRefSystem
