#include "platform/geocore/shell_reference_system.h"

#include <utility>

#include "platform/data/height_table_reader.h"
#include "platform/data/tree_ids.h"
#include "platform/geocore/projjson.h"
#include "platform/geocore/shell_definition.h"
#include "platform/geocore/shell_machine.h"
#include "platform/geocore/shell_notation.h"

namespace QvRefSystem {

void TShellCoords::Get(std::string* x, std::string* y, std::string* z) const {
  *x = texts_[0];
  *y = texts_[1];
  *z = texts_[2];
}

void TShellCoords::Set(std::string x, std::string y, std::string z) {
  texts_[0] = std::move(x);
  texts_[1] = std::move(y);
  texts_[2] = std::move(z);
}

TShellReferenceSystem::TShellReferenceSystem(std::shared_ptr<const Definition> definition)
    : definition_(std::move(definition)) {}

TShellReferenceSystem::TShellReferenceSystem(const TShellReferenceSystem& other) = default;
TShellReferenceSystem::~TShellReferenceSystem() = default;

const std::string& TShellReferenceSystem::Name() const {
  return definition_->Model().name;
}

const std::string& TShellReferenceSystem::Description() const {
  return definition_->Model().description;
}

const std::string& TShellReferenceSystem::AxisName(int axis) const {
  const SystemModel& model = definition_->Model();
  const std::string& own = model.axisAbbreviation[axis];
  // A projected system may leave the names of its plane to the projection.
  if (axis < 2 && own.empty() && model.projection) return model.projection->axisAbbreviation[axis];
  return own;
}

bool TShellReferenceSystem::HasHeightSystem() const {
  return definition_->Heights() != HeightSurface::kEllipsoid;
}

bool TShellReferenceSystem::IsFirstAxisNorth() const {
  return definition_->IsNorthFirst();
}

bool TShellReferenceSystem::IsSameAs(const TShellReferenceSystem* system) const {
  return system != nullptr && definition_->HasSamePlane(*system->definition_);
}

bool TShellReferenceSystem::operator^(const TShellReferenceSystem& other) const {
  return IsSameAs(&other) && SameNumber(definition_->HeightUnit(), other.definition_->HeightUnit());
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
  const double metres = definition_->HeightUnit();
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
  using Third = Definition::Third;
  return Definition::Move(*definition_, Third::kHeight, *target.definition_, Third::kHeight,
                          points);
}

std::string TShellReferenceSystem::ExplainFailure(const TShellReferenceSystem& target,
                                                  const TShellPoint& point) const {
  return Definition::WhyFailed(*definition_, *target.definition_, point);
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
          TShellReferenceSystem::Definition::Make(std::move(model), std::move(table)));
    }
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  if (error) *error = std::move(reason);
  return nullptr;
}

}  // namespace QvRefSystem
