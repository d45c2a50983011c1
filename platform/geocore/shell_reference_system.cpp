#include "platform/geocore/shell_reference_system.h"

#include <optional>
#include <utility>

#include "platform/data/height_table_reader.h"
#include "platform/data/tree_ids.h"
#include "platform/geocore/definition_from_model.h"
#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/shell_grids.h"
#include "platform/geocore/shell_notation.h"
#include "platform/geocore/shell_transform.h"
#include "platform/geocore/shell_undulations.h"

namespace QvRefSystem {

TShellReferenceSystem::TShellReferenceSystem(std::shared_ptr<const ShellDefinition> definition)
    : definition_(std::move(definition)) {}

TShellReferenceSystem::TShellReferenceSystem(const TShellReferenceSystem& other) = default;
TShellReferenceSystem::~TShellReferenceSystem() = default;

const std::string& TShellReferenceSystem::Name() const {
  return definition_->model.name;
}

const std::string& TShellReferenceSystem::Description() const {
  return definition_->model.description;
}

const std::string& TShellReferenceSystem::AxisName(int axis) const {
  const SystemModel& model = definition_->model;
  const std::string& own = model.axisAbbreviation[axis];
  // A projected system may leave the names of its plane to the projection.
  if (axis < 2 && own.empty() && model.projection) return model.projection->axisAbbreviation[axis];
  return own;
}

bool TShellReferenceSystem::HasHeightSystem() const {
  return definition_->surface != HeightSurface::kEllipsoid;
}

bool TShellReferenceSystem::IsFirstAxisNorth() const {
  return definition_->isNorthFirst;
}

bool TShellReferenceSystem::IsSameAs(const TShellReferenceSystem* system) const {
  return system != nullptr && definition_->HasSamePlane(*system->definition_);
}

bool TShellReferenceSystem::operator^(const TShellReferenceSystem& other) const {
  return IsSameAs(&other) && SameNumber(definition_->heightUnit, other.definition_->heightUnit);
}

std::unique_ptr<TShellReferenceSystem> TShellReferenceSystem::CreateCopy() const {
  return std::unique_ptr<TShellReferenceSystem>(new TShellReferenceSystem(*this));
}

void TShellReferenceSystem::set_core_coords(const double& x, const double& y, const double& h) {
  coords_[0] = x;
  coords_[1] = y;
  coords_[2] = h;
}

void TShellReferenceSystem::GetCoords(TShellCoords* coords) const {
  WriteNotation(definition_->FromPlane(coords_[0], coords_[1], coords_[2]), coords);
}

void TShellReferenceSystem::WriteNotation(const TShellPoint& point, TShellCoords* coords) const {
  const double metres = definition_->heightUnit;
  const std::string height = PlainDecimals(point.Third, metres);
  if (definition_->Kind() == SystemKind::kGeodetic) {
    const double radians = definition_->PlaneUnit();
    coords->Set(DegreesMinutesSeconds(point.First * radians, "NS"),
                DegreesMinutesSeconds(point.Second * radians, "EW"), height);
  } else {
    coords->Set(PlainDecimals(point.First, metres), PlainDecimals(point.Second, metres), height);
  }
}

std::size_t TShellReferenceSystem::Transform(const TShellReferenceSystem& target,
                                             std::span<TShellPoint> points) const {
  return MovePoints({*definition_}, {*target.definition_}, Points<Axes>(points));
}

std::string TShellReferenceSystem::ExplainFailure(const TShellReferenceSystem& target,
                                                  const TShellPoint& point) const {
  return WhyFailed(*definition_, *target.definition_, point);
}

void TShellReferenceSystem::InitializeHeightTableGrid(
    const std::string& north, const std::string& south, const std::string& east,
    const std::string& west, const std::string& cellNS, const std::string& cellEW,
    THeightTable* table) const {
  SizeTable({west, east, south, north, cellEW, cellNS}, table);
}

bool TShellReferenceSystem::RecalculateTableGrid(const TShell2DTableExtents* source,
                                                 const TShellReferenceSystem* target,
                                                 TShell2DTableExtents* result) const {
  if (source == nullptr || target == nullptr) return false;
  auto cover = CoverTable(Core(), *source, target->Core());
  if (cover) *result = std::move(*cover);
  return cover.has_value();
}

namespace {

/// Six texts of the caller in which a grid comes out.
struct GridTexts {
  std::string* north;
  std::string* south;
  std::string* east;
  std::string* west;
  std::string* cellNS;
  std::string* cellEW;

  // Whether there is a grid; nothing changes without one.
  [[nodiscard]] bool Take(std::optional<TShell2DTableExtents> texts) const {
    if (!texts) return false;
    *north = std::move(texts->North);
    *south = std::move(texts->South);
    *east = std::move(texts->East);
    *west = std::move(texts->West);
    *cellNS = std::move(texts->CellNorthSouth);
    *cellEW = std::move(texts->CellEastWest);
    return true;
  }
};

/// Three texts of the caller in which a constant and its errors come out.
struct FitTexts {
  std::string* offset;
  std::string* rms;
  std::string* max;
};

// Whether there is a constant; `texts` are unchanged without one.
bool Approximate(const UndulationWay& way, const FitTexts& texts, THeightTable* errors,
                 TProgressInterface* progress) {
  if (errors == nullptr || errors->Data == nullptr) return false;
  try {
    auto fit = FitOffset(way, errors, progress);
    if (!fit) return false;
    *texts.offset = std::move(fit->offset);
    *texts.rms = std::move(fit->rms);
    *texts.max = std::move(fit->max);
    return true;
  } catch (const GeodesyError&) {
    return false;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void Interpolate(const ShellDefinition& from, const THeightTable* table,
                 const TShellReferenceSystem* target, THeightTable* result, int (*next)()) {
  if (target == nullptr || result == nullptr) throw GeodesyError("there is no grid to fill");
  InterpolateUndulations({from, table, target->Core()}, result, next);
}

}  // namespace

bool TShellReferenceSystem::RecalculateHeightTableGrid(const THeightTable* heights,
                                                       const TShellReferenceSystem* target,
                                                       std::string* north, std::string* south,
                                                       std::string* east, std::string* west,
                                                       std::string* cellNS,
                                                       std::string* cellEW) const {
  return heights != nullptr && heights->Data != nullptr && target != nullptr &&
         GridTexts{north, south, east, west, cellNS, cellEW}.Take(
             CoverTable(Core(), *heights, target->Core()));
}

bool TShellReferenceSystem::RecalculateHeightTableGrid(const TShellReferenceSystem* target,
                                                       std::string* north, std::string* south,
                                                       std::string* east, std::string* west,
                                                       std::string* cellNS,
                                                       std::string* cellEW) const {
  return target != nullptr && GridTexts{north, south, east, west, cellNS, cellEW}.Take(
                                  CoverOwnHeights(Core(), target->Core()));
}

void TShellReferenceSystem::InterpolateHeights(const THeightTable* source,
                                               const TShellReferenceSystem* target,
                                               THeightTable* result, int (*next)()) const {
  if (source == nullptr) throw GeodesyError("there is no table of heights");
  Interpolate(Core(), source, target, result, next);
}

void TShellReferenceSystem::InterpolateHeights(const TShellReferenceSystem* target,
                                               THeightTable* result, int (*next)()) const {
  Interpolate(Core(), nullptr, target, result, next);
}

bool TShellReferenceSystem::ApproximateHeights(const THeightTable* source,
                                               const TShellReferenceSystem* target,
                                               std::string* offset, std::string* rms,
                                               std::string* max, THeightTable* errors,
                                               TProgressInterface* progress) const {
  return source != nullptr && target != nullptr &&
         Approximate({Core(), source, target->Core()}, {offset, rms, max}, errors, progress);
}

bool TShellReferenceSystem::ApproximateHeights(const TShellReferenceSystem* target,
                                               std::string* offset, std::string* rms,
                                               std::string* max, THeightTable* errors,
                                               TProgressInterface* progress) const {
  return target != nullptr &&
         Approximate({Core(), nullptr, target->Core()}, {offset, rms, max}, errors, progress);
}

namespace {

// The values of a height table stand in the tree as the whole text of its file.
const std::string* TableText(const TStringTree* tree) {
  const TStringTree* heights = FindSubtree(tree, TreeIds::kHeightSystem.id, 0);
  const auto* field = heights ? FindField(heights, TreeIds::kHeightSystemTable.id, 0) : nullptr;
  return field && field->Count > 0 ? &field->Values[0] : nullptr;
}

bool HasTable(const SystemModel& model) {
  return model.heights && model.heights->kind == HeightKind::kTable;
}

std::shared_ptr<const THeightTable> ReadTable(const TStringTree* tree, const SystemModel& model,
                                              TProgressInterface* progress) {
  // A topocentric system needs the heights of its primary.
  if (model.kind == SystemKind::kTopocentric) {
    const TStringTree* primary = FindSubtree(tree, TreeIds::kPrimary.id, 0);
    if (!primary || !model.primary) return nullptr;
    return ReadTable(primary, *model.primary, progress);
  }
  if (!HasTable(model)) return nullptr;
  const std::string* text = TableText(tree);
  auto table = std::make_shared<THeightTable>();
  if (!text || !ParseHeightTable(table.get(), *text, progress)) {
    throw GeodesyError("the height table of " + model.name + " cannot be read");
  }
  return table;
}

}  // namespace

std::unique_ptr<TShellReferenceSystem> CreateShellReferenceSystem(TStringTree* tree,
                                                                  TProgressInterface* progress,
                                                                  std::string* error) {
  std::string reason;
  try {
    SystemModel model;
    if (ModelFromTree(tree, &model, &reason)) {
      auto table = ReadTable(tree, model, progress);
      return std::make_unique<TShellReferenceSystem>(
          DefinitionFromModel(std::move(model), std::move(table)));
    }
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  if (error) *error = std::move(reason);
  return nullptr;
}

}  // namespace QvRefSystem
