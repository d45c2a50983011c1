// The tables in the sources against the fact files that they were made from.

#include "registry/exchange_codes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "platform/geocore/projection_methods.h"
#include "registry/registry_units.h"
#include "tests/registry/installed.h"

namespace QvRefSystem {
namespace {

using Row = std::vector<std::string>;

// The rows of a fact file, its heading left out.
std::vector<Row> Facts(const std::string& name) {
  const auto folder = std::filesystem::path(REFFRAME_SOURCE_DIR);
  std::ifstream file(folder / "registry" / "facts" / name);
  EXPECT_TRUE(file.is_open()) << name;
  std::vector<Row> rows;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    Row row;
    std::istringstream cells(line);
    for (std::string cell; std::getline(cells, cell, ',');)
      row.push_back(cell);
    if (line.ends_with(',')) row.emplace_back();
    rows.push_back(std::move(row));
  }
  EXPECT_FALSE(rows.empty()) << name;
  return rows;
}

int CodeOf(const std::string& cell) {
  return cell.empty() ? 0 : std::stoi(cell);
}

TEST(MifEllipsoids, AreTheFirstNumbersOfTheFactFile) {
  std::map<int, std::string> first;
  for (const Row& row : Facts("mapinfo_ellipsoid.csv"))
    first.emplace(CodeOf(row[1]), row[0]);
  for (const auto& [code, ellipsoid] : Dataset().ellipsoids) {
    const auto known = first.find(code);
    EXPECT_EQ(MifEllipsoidCode(code), known == first.end() ? "" : known->second) << code;
  }
}

TEST(MifDatums, AreThoseThatTheFactFileTellsForCertain) {
  std::map<std::string, int> ellipsoids;
  for (const Row& row : Facts("mapinfo_ellipsoid.csv"))
    ellipsoids[row[0]] = CodeOf(row[1]);
  std::map<int, std::vector<std::string>> numbers;
  for (const Row& row : Facts("mapinfo_datum.csv")) {
    const auto datum = Dataset().datums.find(CodeOf(row[1]));
    if (datum == Dataset().datums.end()) continue;
    if (ellipsoids[row[3]] == datum->second.ellipsoid) numbers[datum->first].push_back(row[0]);
  }
  int known = 0;
  for (const auto& [code, datum] : Dataset().datums) {
    const std::vector<std::string>& found = numbers[code];
    const std::string expected = found.size() == 1 ? found.front() : "";
    EXPECT_EQ(MifDatumCode(code), expected) << code << " " << datum.name;
    known += expected.empty() ? 0 : 1;
  }
  EXPECT_GT(known, 100);
}

TEST(Units, HaveTheFactorsOfTheFactFile) {
  for (const Row& row : Facts("epsg_unit_bc.csv")) {
    const UnitModel* unit = FindRegistryUnit(CodeOf(row[0]));
    ASSERT_NE(unit, nullptr) << row[1];
    EXPECT_EQ(unit->factorB, std::stod(row[3])) << row[1];
    EXPECT_EQ(unit->factorC, std::stod(row[4])) << row[1];
  }
}

TEST(Methods, HaveNumbersOfTheFactFilesOrNone) {
  using Number = int ProjectionMethod::*;
  for (const auto& [name, number] :
       {std::pair<const char*, Number>{"geotiff_method.csv", &ProjectionMethod::geoTiffCode},
        {"mapinfo_projection.csv", &ProjectionMethod::mifCode}}) {
    std::set<std::pair<int, int>> facts;
    for (const Row& row : Facts(name))
      facts.emplace(CodeOf(row[1]), CodeOf(row[0]));
    int known = 0;
    for (const ProjectionMethod& method : ProjectionMethods()) {
      if (method.*number == kNoExchangeCode) continue;
      EXPECT_TRUE(facts.contains({method.code, method.*number})) << name << ": " << method.name;
      ++known;
    }
    EXPECT_GT(known, 15) << name;
  }
}

}  // namespace
}  // namespace QvRefSystem
