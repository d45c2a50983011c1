#include "registry/proj_database.h"

#include <proj.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "platform/storage/sqlite.h"

namespace QvRefSystem {
namespace {

// The layout that the queries below are written for.
constexpr std::string_view kLayoutMajor = "1";

using QvPlatform::detail::Connection;
using QvPlatform::detail::SqliteError;
using QvPlatform::detail::Statement;

// A row of a query's result; columns from 0.
class Row {
 public:
  explicit Row(const Statement& query) : query_(query) {}
  [[nodiscard]] bool Has(int column) const {
    return query_.ColumnKind(column) != Statement::Kind::kNull;
  }
  // Codes are texts in some tables, and integers all the same.
  [[nodiscard]] int Int(int column) const { return static_cast<int>(query_.ColumnInteger(column)); }
  [[nodiscard]] double Real(int column) const { return query_.ColumnFloat(column); }
  [[nodiscard]] std::optional<double> OptionalReal(int column) const {
    return Has(column) ? std::optional(Real(column)) : std::nullopt;
  }
  [[nodiscard]] std::string Text(int column) const {
    return std::string(query_.ColumnText(column));
  }
  // A value and, in another column, its unit.
  [[nodiscard]] EpsgMeasure Measure(int value, int unit) const {
    return Has(value) ? EpsgMeasure{Real(value), Int(unit)} : EpsgMeasure{};
  }

 private:
  const Statement& query_;
};

class ProjDatabase {
 public:
  explicit ProjDatabase(const std::string& path) : connection_(Connection::OpenReadOnly(path)) {}

  void ForEach(const std::string& sql, const std::function<void(const Row&)>& take) {
    Statement query = connection_.Prepare(sql);
    while (query.Step())
      take(Row(query));
  }

 private:
  Connection connection_;
};

// The usages of all objects of a table, in the order of the registry.
template <typename Objects>
void ReadUsages(ProjDatabase& database, const std::string& table, Objects* objects) {
  database.ForEach(
      "SELECT u.object_code, e.name, s.scope, e.south_lat, e.north_lat, e.west_lon, e.east_lon "
      "FROM usage u "
      "JOIN extent e ON e.auth_name = u.extent_auth_name AND e.code = u.extent_code "
      "JOIN scope s ON s.auth_name = u.scope_auth_name AND s.code = u.scope_code "
      "WHERE u.object_table_name = '" +
          table +
          "' AND u.object_auth_name = 'EPSG' "
          "ORDER BY u.code",
      [objects](const Row& row) {
        const auto object = objects->find(row.Int(0));
        if (object == objects->end()) return;
        EpsgUsage usage{row.Text(1), row.Text(2), std::nullopt};
        if (row.Has(3) && row.Has(4) && row.Has(5) && row.Has(6)) {
          usage.box = EpsgBox{row.Real(3), row.Real(4), row.Real(5), row.Real(6)};
        }
        object->second.usages.push_back(std::move(usage));
      });
}

void ReadMetadata(ProjDatabase& database, EpsgDataset* dataset) {
  std::string layout;
  database.ForEach("SELECT key, value FROM metadata", [&](const Row& row) {
    if (row.Text(0) == "EPSG.VERSION") dataset->version = row.Text(1);
    if (row.Text(0) == "DATABASE.LAYOUT.VERSION.MAJOR") layout = row.Text(1);
  });
  if (layout != kLayoutMajor) {
    throw std::runtime_error("layout " + layout + " of the database is not known");
  }
}

void ReadEllipsoids(ProjDatabase& database, EpsgDataset* dataset) {
  database.ForEach(
      "SELECT code, name, semi_major_axis, uom_code, inv_flattening, semi_minor_axis "
      "FROM ellipsoid WHERE auth_name = 'EPSG' AND deprecated = 0",
      [dataset](const Row& row) {
        dataset->ellipsoids[row.Int(0)] = {row.Int(0), row.Text(1),         row.Real(2),
                                           row.Int(3), row.OptionalReal(4), row.OptionalReal(5)};
      });
}

void ReadPrimeMeridians(ProjDatabase& database, EpsgDataset* dataset) {
  database.ForEach(
      "SELECT code, name, longitude, uom_code FROM prime_meridian "
      "WHERE auth_name = 'EPSG' AND deprecated = 0",
      [dataset](const Row& row) {
        dataset->primeMeridians[row.Int(0)] = {row.Int(0), row.Text(1), row.Real(2), row.Int(3)};
      });
}

void ReadDatums(ProjDatabase& database, EpsgDataset* dataset) {
  database.ForEach(
      "SELECT code, name, ellipsoid_code, prime_meridian_code, ensemble_accuracy "
      "FROM geodetic_datum WHERE auth_name = 'EPSG' AND deprecated = 0",
      [dataset](const Row& row) {
        EpsgDatum& datum = dataset->datums[row.Int(0)];
        datum.code = row.Int(0);
        datum.name = row.Text(1);
        datum.ellipsoid = row.Int(2);
        datum.primeMeridian = row.Int(3);
        datum.ensemble = row.Has(4);
      });
  database.ForEach(
      "SELECT ensemble_code, member_code FROM geodetic_datum_ensemble_member "
      "WHERE ensemble_auth_name = 'EPSG' AND member_auth_name = 'EPSG' "
      "ORDER BY ensemble_code, sequence",
      [dataset](const Row& row) {
        const auto datum = dataset->datums.find(row.Int(0));
        if (datum != dataset->datums.end()) datum->second.members.push_back(row.Int(1));
      });
  ReadUsages(database, "geodetic_datum", &dataset->datums);
}

void ReadCoordinateSystems(ProjDatabase& database, EpsgDataset* dataset) {
  database.ForEach(
      "SELECT coordinate_system_code, name, abbrev, orientation, uom_code FROM axis "
      "WHERE auth_name = 'EPSG' AND coordinate_system_auth_name = 'EPSG' "
      "ORDER BY coordinate_system_code, coordinate_system_order",
      [dataset](const Row& row) {
        dataset->coordinateSystems[row.Int(0)].push_back(
            {row.Text(1), row.Text(2), row.Text(3), row.Int(4)});
      });
}

void ReadSystems(ProjDatabase& database, EpsgDataset* dataset) {
  database.ForEach(
      "SELECT code, name, type, datum_code, coordinate_system_code FROM geodetic_crs "
      "WHERE auth_name = 'EPSG' AND deprecated = 0 AND datum_auth_name = 'EPSG' "
      "AND type IN ('geographic 2D', 'geographic 3D', 'geocentric')",
      [dataset](const Row& row) {
        const std::string type = row.Text(2);
        const EpsgGeodeticKind kind = type == "geocentric"      ? EpsgGeodeticKind::kGeocentric
                                      : type == "geographic 3D" ? EpsgGeodeticKind::kGeographic3D
                                                                : EpsgGeodeticKind::kGeographic2D;
        dataset->geodeticSystems[row.Int(0)] = {row.Int(0), row.Text(1), kind,
                                                row.Int(3), row.Int(4),  {}};
      });
  ReadUsages(database, "geodetic_crs", &dataset->geodeticSystems);
  database.ForEach(
      "SELECT code, name, geodetic_crs_code, conversion_code, coordinate_system_code "
      "FROM projected_crs WHERE auth_name = 'EPSG' AND deprecated = 0 "
      "AND geodetic_crs_auth_name = 'EPSG' AND conversion_auth_name = 'EPSG'",
      [dataset](const Row& row) {
        dataset->projectedSystems[row.Int(0)] = {row.Int(0), row.Text(1), row.Int(2),
                                                 row.Int(3), row.Int(4),  {}};
      });
  ReadUsages(database, "projected_crs", &dataset->projectedSystems);
}

// A conversion's row holds up to seven parameters side by side.
void ReadConversions(ProjDatabase& database, EpsgDataset* dataset) {
  constexpr int kParameters = 7;
  std::string columns;
  for (int i = 1; i <= kParameters; ++i) {
    for (const char* suffix : {"_code", "_value", "_uom_code"}) {
      columns.append(", param").append(std::to_string(i)).append(suffix);
    }
  }
  database.ForEach("SELECT code, name, method_code" + columns +
                       " FROM conversion_table WHERE auth_name = 'EPSG' AND deprecated = 0",
                   [dataset](const Row& row) {
                     EpsgConversion& conversion = dataset->conversions[row.Int(0)];
                     conversion.code = row.Int(0);
                     conversion.name = row.Text(1);
                     conversion.method = row.Int(2);
                     for (int column = 3; column < 3 + 3 * kParameters && row.Has(column);
                          column += 3) {
                       conversion.parameters.push_back(
                           {row.Int(column), row.Real(column + 1), row.Int(column + 2)});
                     }
                   });
  ReadUsages(database, "conversion", &dataset->conversions);
}

// Query of the live operations of a table, their source and target as datums.
std::string OperationQuery(const std::string& columns, const std::string& table,
                           const std::string& condition = "") {
  return "SELECT " + columns + " FROM " + table +
         " o JOIN geodetic_crs s "
         "ON s.auth_name = o.source_crs_auth_name AND s.code = o.source_crs_code "
         "JOIN geodetic_crs t "
         "ON t.auth_name = o.target_crs_auth_name AND t.code = o.target_crs_code "
         "WHERE o.auth_name = 'EPSG' AND o.deprecated = 0 "
         "AND s.datum_auth_name = 'EPSG' AND t.datum_auth_name = 'EPSG'" +
         condition;
}

// The columns that AddOperation reads.
const char* const kHeadColumns =
    "o.code, o.name, o.method_code, s.datum_code, t.datum_code, o.accuracy, ";

EpsgShiftOperation& AddOperation(const Row& row, EpsgDataset* dataset) {
  EpsgShiftOperation& operation = dataset->shiftOperations[row.Int(0)];
  operation.code = row.Int(0);
  operation.name = row.Text(1);
  operation.method = row.Int(2);
  operation.sourceDatum = row.Int(3);
  operation.targetDatum = row.Int(4);
  operation.accuracy = row.Real(5);
  return operation;
}

void ReadHelmertOperations(ProjDatabase& database, EpsgDataset* dataset) {
  database.ForEach(
      OperationQuery(
          std::string(kHeadColumns) +
              "o.tx, o.ty, o.tz, o.translation_uom_code, o.rx, o.ry, o.rz, o.rotation_uom_code, "
              "o.scale_difference, o.scale_difference_uom_code, "
              "o.rate_tx, o.rate_ty, o.rate_tz, o.rate_translation_uom_code, "
              "o.rate_rx, o.rate_ry, o.rate_rz, o.rate_rotation_uom_code, "
              "o.rate_scale_difference, o.rate_scale_difference_uom_code, "
              "o.epoch, o.px, o.py, o.pz, o.pivot_uom_code",
          "helmert_transformation_table"),
      [dataset](const Row& row) {
        EpsgShiftOperation& operation = AddOperation(row, dataset);
        const auto readSeven = [&row](EpsgMeasure(&seven)[7], int first) {
          for (int i = 0; i < 3; ++i) {
            seven[i] = row.Measure(first + i, first + 3);
            seven[i + 3] = row.Measure(first + 4 + i, first + 7);
          }
          seven[6] = row.Measure(first + 8, first + 9);
        };
        readSeven(operation.parameters, 6);
        readSeven(operation.rates, 16);
        operation.epoch = row.OptionalReal(26);
        for (int i = 0; i < 3; ++i)
          operation.pivot[i] = row.Measure(27 + i, 30);
      });
  ReadUsages(database, "helmert_transformation", &dataset->shiftOperations);
  database.ForEach(
      "SELECT superseded_code, replacement_code FROM supersession "
      "WHERE superseded_table_name = 'helmert_transformation' AND superseded_auth_name = 'EPSG' "
      "AND replacement_table_name = 'helmert_transformation' AND replacement_auth_name = 'EPSG' "
      "AND same_source_target_crs = 1",
      [dataset](const Row& row) {
        const auto superseded = dataset->shiftOperations.find(row.Int(0));
        if (superseded == dataset->shiftOperations.end()) return;
        if (!dataset->shiftOperations.contains(row.Int(1))) return;
        superseded->second.replacements.push_back(row.Int(1));
      });
}

void ReadLongitudeRotations(ProjDatabase& database, EpsgDataset* dataset) {
  EpsgDataset collected;
  database.ForEach(
      OperationQuery(std::string(kHeadColumns) + "o.param1_value, o.param1_uom_code",
                     "other_transformation",
                     " AND o.method_auth_name = 'EPSG' AND o.method_code = 9601"),
      [&collected](const Row& row) { AddOperation(row, &collected).rotation = row.Measure(6, 7); });
  ReadUsages(database, "other_transformation", &collected.shiftOperations);
  dataset->shiftOperations.merge(collected.shiftOperations);
}

void ReadOtherRoads(ProjDatabase& database, EpsgDataset* dataset) {
  const auto note = [&](const std::string& table, const std::string& condition,
                        EpsgOtherRoad road) {
    database.ForEach(OperationQuery("s.datum_code, t.datum_code", table, condition),
                     [dataset, road](const Row& row) {
                       dataset->otherRoads.emplace(row.Int(0), road);
                       dataset->otherRoads.emplace(row.Int(1), road);
                     });
  };
  note("grid_transformation", "", EpsgOtherRoad::kGrid);
  note("other_transformation", " AND o.method_code IN (9618, 9619)", EpsgOtherRoad::kOffsets);
}

EpsgDataset ReadAll(const std::string& path) {
  ProjDatabase database(path);
  EpsgDataset dataset;
  ReadMetadata(database, &dataset);
  ReadEllipsoids(database, &dataset);
  ReadPrimeMeridians(database, &dataset);
  ReadDatums(database, &dataset);
  ReadCoordinateSystems(database, &dataset);
  ReadSystems(database, &dataset);
  ReadConversions(database, &dataset);
  ReadHelmertOperations(database, &dataset);
  ReadLongitudeRotations(database, &dataset);
  ReadOtherRoads(database, &dataset);
  return dataset;
}

}  // namespace

std::string ProjDatabasePath() {
  const std::unique_ptr<PJ_CONTEXT, decltype(&proj_context_destroy)> context(proj_context_create(),
                                                                             proj_context_destroy);
  const char* path = proj_context_get_database_path(context.get());
  return path ? path : "";
}

bool ReadEpsgDataset(const std::string& path, EpsgDataset* dataset, std::string* error) {
  std::string reason;
  try {
    *dataset = ReadAll(path);
    return true;
  } catch (const SqliteError& failure) {
    // The message names the path in full already.
    reason = failure.Reason();
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  *error = "PROJ's database \"" + path + "\" cannot be read: " + reason;
  return false;
}

const EpsgDataset* InstalledEpsgDataset(std::string* error) {
  struct Installed {
    EpsgDataset dataset;
    std::string error;
    bool read = false;
  };
  static const Installed installed = [] {
    Installed made;
    const std::string path = ProjDatabasePath();
    if (path.empty()) {
      made.error = "PROJ finds no database on this machine";
    } else {
      made.read = ReadEpsgDataset(path, &made.dataset, &made.error);
    }
    return made;
  }();
  if (installed.read) return &installed.dataset;
  *error = installed.error;
  return nullptr;
}

}  // namespace QvRefSystem
