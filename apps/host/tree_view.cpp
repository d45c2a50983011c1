#include "apps/host/tree_view.h"

#include <QHeaderView>
#include <QTreeWidget>
#include <array>

#include "platform/data/tree_members.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/projection_methods.h"
#include "platform/geocore/projjson.h"
#include "platform/geocore/system_model.h"
#include "platform/geocore/wkt2.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvCommonUtils::TStringTree;
using QvPlatform::FromQt;
using QvPlatform::ToQt;
using QvPlatform::Translatable;
using QvPlatform::Translated;

namespace {

enum Column { kLabel, kValue, kId, kIndex };

QString ValuesOf(const QvCommonUtils::TDataField<std::string>& field) {
  QStringList values;
  for (const std::string& value : field.Values)
    values << ToQt(value);
  return values.join(QStringLiteral("; "));
}

template <typename Node>
QTreeWidgetItem* AddItem(const Node& node, QTreeWidgetItem* parent, const QString& value) {
  auto* item = new QTreeWidgetItem(parent);
  item->setText(kLabel, ToQt(node.Label.View()));
  item->setText(kValue, value);
  item->setToolTip(kValue, value);
  item->setText(kId, QString::number(node.Id));
  item->setText(kIndex, QString::number(node.Index));
  return item;
}

// A subtree has no value; the name that it holds tells what it is.
QString NameIn(const QvCommonUtils::TDataTree<std::string>& tree) {
  for (const auto& field : tree.Fields) {
    if (field->Label.View() == "name") return ValuesOf(*field);
  }
  return {};
}

void AddMembers(const QvCommonUtils::TDataTree<std::string>& tree, QTreeWidgetItem* parent) {
  for (const auto& field : tree.Fields)
    AddItem(*field, parent, ValuesOf(*field));
  for (const auto& subtree : tree.Subtrees) {
    QTreeWidgetItem* item = AddItem(*subtree, parent, NameIn(*subtree));
    item->setForeground(kValue, item->treeWidget()->palette().placeholderText());
    AddMembers(*subtree, item);
  }
}

QString KindText(SystemKind kind) {
  constexpr std::array kTexts{
      Translatable("local Cartesian"), Translatable("local"),
      Translatable("geocentric"),      Translatable("geodetic"),
      Translatable("projected"),       Translatable("topocentric horizontal")};
  return Translated(kTexts.at(static_cast<std::size_t>(kind) - 1));
}

class Lines {
 public:
  void Add(const char* label, const std::string& value) {
    if (!value.empty()) lines_ << Translated(label) + QStringLiteral(": ") + ToQt(value);
  }
  void AddLine(const std::string& line) { lines_ << ToQt(line); }
  void Add(const char* label, const QString& value) { Add(label, FromQt(value)); }
  [[nodiscard]] QStringList Take() { return std::move(lines_); }

 private:
  QStringList lines_;
};

// The unit of a parameter, a blank ahead of it; "" for plain numbers.
std::string UnitOf(const ProjectionModel& projection, int parameterCode) {
  const ProjectionParameter* parameter = FindProjectionParameter(parameterCode);
  if (parameter == nullptr || parameter->unit == UnitKind::kScale) return {};
  const auto& unit =
      parameter->unit == UnitKind::kLinear ? projection.linearUnit : projection.angularUnit;
  return unit ? " " + unit->name : std::string();
}

void DescribeProjection(const ProjectionModel& projection, Lines* lines) {
  lines->Add(Translatable("Map projection"), projection.name);
  for (const ProjectionParameterModel& parameter : projection.parameters) {
    lines->AddLine("    " + parameter.name + " = " + parameter.value +
                   UnitOf(projection, parameter.code));
  }
}

void DescribeEllipsoid(const EllipsoidModel& ellipsoid, Lines* lines) {
  const std::string shape = ellipsoid.useF && ellipsoid.f != 0
                                ? ", 1/f = " + QvPlatform::DoubleToText(1 / ellipsoid.f)
                                : (ellipsoid.b.empty() ? "" : ", b = " + ellipsoid.b);
  lines->Add(Translatable("Ellipsoid"),
             ellipsoid.name + " (a = " + ellipsoid.a + shape + ", " + ellipsoid.unit.name + ")");
}

void DescribeHeights(const SystemModel& model, Lines* lines) {
  constexpr auto kLabel = Translatable("Heights");
  std::string geoid = std::to_string(model.geoidCode);
  if (model.geoidCode != 0) {
    (void)GetSystemGeoidName(model.geoidCode, &geoid);
    lines->Add(kLabel, Translated("above a predefined geoid, %1").arg(ToQt(geoid)));
  } else if (!model.heights) {
    lines->Add(kLabel, Translated("above the ellipsoid"));
  } else if (const HeightSystemModel& own = *model.heights; !own.offset.empty()) {
    lines->Add(kLabel, Translated("%1, an offset of %2 %3")
                           .arg(ToQt(own.name), ToQt(own.offset), ToQt(own.offsetUnit.name)));
  } else {
    lines->Add(kLabel, Translated("%1, a table").arg(ToQt(own.name)));
    const auto& [north, east, south, west] = own.limits;
    lines->AddLine("    " +
                   FromQt(Translated("south %1, north %2, west %3, east %4, cells %5 by %6")
                              .arg(ToQt(south), ToQt(north), ToQt(west), ToQt(east),
                                   ToQt(own.cells[0]), ToQt(own.cells[1]))));
  }
}

}  // namespace

void ShowTree(const TStringTree& tree, QTreeWidget* view) {
  view->clear();
  view->setColumnCount(4);
  view->setHeaderLabels(
      {Translated("Label"), Translated("Value"), Translated("Id"), Translated("Index")});
  AddMembers(tree, view->invisibleRootItem());
  for (const int column : {kId, kIndex}) {
    view->setColumnWidth(column, view->fontMetrics().horizontalAdvance(QStringLiteral("0")) * 10);
  }
  view->header()->setStretchLastSection(false);
  view->header()->setSectionResizeMode(kValue, QHeaderView::Stretch);
  view->setColumnWidth(kLabel, view->fontMetrics().averageCharWidth() * 32);
}

QStringList DescribeTree(const TStringTree& tree) {
  SystemModel model;
  std::string error;
  if (!ModelFromTree(&tree, &model, &error)) {
    return {Translated("This tree does not hold a whole reference system: %1").arg(ToQt(error))};
  }
  Lines lines;
  lines.Add(Translatable("Name"), model.name);
  lines.Add(Translatable("Description"), model.description);
  lines.Add(Translatable("Abbreviation"), model.abbreviation);
  lines.Add(Translatable("Kind"), KindText(model.kind));
  if (model.geoTiffCode != 0) lines.Add(Translatable("Code"), std::to_string(model.geoTiffCode));
  if (model.primary) lines.Add(Translatable("Primary system"), model.primary->name);
  if (model.projection) DescribeProjection(*model.projection, &lines);
  if (model.datum) {
    lines.Add(Translatable("Datum"), model.datum->name);
    lines.Add(Translatable("Datum shift"), model.datum->shift.name);
    DescribeEllipsoid(model.datum->ellipsoid, &lines);
  } else if (model.ellipsoid) {
    DescribeEllipsoid(*model.ellipsoid, &lines);
  }
  lines.Add(Translatable("Prime meridian"), model.primeMeridian.name);
  lines.Add(Translatable("Angular unit"), model.angularUnit.name);
  lines.Add(Translatable("Linear unit"), model.linearUnit.name);
  if (model.kind == SystemKind::kGeodetic || model.kind == SystemKind::kProjected) {
    DescribeHeights(model, &lines);
  }
  return lines.Take();
}

QString WktOfTree(const TStringTree& tree) {
  std::string wkt;
  std::string error;
  if (TreeToWkt2(&tree, Dimension::kTwo, &wkt, &error)) return ToQt(wkt);
  return Translated("There is no WKT 2 of this system: %1").arg(ToQt(error));
}

QString NameOfTree(const TStringTree& tree) {
  std::string name;
  return GetString(tree, TreeIds::kName, &name) ? ToQt(name) : QString();
}

}  // namespace QvRefSystem
