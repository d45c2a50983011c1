#include "registry/database_making.h"

#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

#include "database/data_module.h"
#include "database/table_files.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kContainerExtension = ".qvdb";

// Calls `take` with the table and its stream name for every table that is opened.
template <typename Take>
void ForEachTable(const std::string& place, bool resourceForm, const Take& take) {
  for (const TableSpec& table : TableCatalogue()) {
    if (table.tag == kUnopenedTag) continue;
    const std::string base = ExtractTableBaseName(table.streamName);
    std::string name = resourceForm ? place : place + "/";
    name.append(resourceForm ? "." : "").append(base).append(resourceForm ? "" : ".dat");
    take(table, name);
  }
}

// The path without what a data module puts behind it.
std::string PlainPath(const std::string& path, bool resourceForm) {
  std::string plain = QvPlatform::Trim(path);
  const char last = resourceForm ? '.' : '/';
  while (plain.size() > 1 && plain.back() == last)
    plain.pop_back();
  if (plain.empty()) throw std::runtime_error("no path is given for the database");
  return plain;
}

// Beside the target, under a name that tells what it is.
std::string AsideOf(const std::string& target, bool resourceForm) {
  if (!resourceForm) return target + ".making";
  if (!target.ends_with(kContainerExtension)) {
    throw std::runtime_error("\"" + target +
                             "\" is no container; the name of a new one ends in \"" +
                             std::string(kContainerExtension) + "\"");
  }
  const std::string stem = target.substr(0, target.size() - kContainerExtension.size());
  return stem + "-making" + std::string(kContainerExtension);
}

}  // namespace

DatabaseMaking::DatabaseMaking(const std::string& path, bool resourceForm,
                               QvPlatform::TUserInterface& ui)
    : target_(PlainPath(path, resourceForm)), resourceForm_(resourceForm) {
  ForEachTable(target_, resourceForm_, [&](const TableSpec&, const std::string& name) {
    if (StorageFileExists(name, resourceForm_)) {
      throw std::runtime_error("there is a database already: " + name);
    }
  });
  aside_ = !resourceForm_ || !fs::exists(target_);
  place_ = aside_ ? AsideOf(target_, resourceForm_) : target_;
  // What an interrupted attempt has left.
  if (aside_) RemoveTables();
  try {
    if (!resourceForm_) fs::create_directories(place_);
    MakeTables(ui);
  } catch (...) {
    RemoveTables();
    throw;
  }
}

DatabaseMaking::~DatabaseMaking() {
  if (!delivered_) RemoveTables();
}

void DatabaseMaking::MakeTables(QvPlatform::TUserInterface& ui) const {
  ForEachTable(place_, resourceForm_, [&](const TableSpec& table, const std::string& name) {
    if (!CreateCatalogueTable(name, resourceForm_, table, ui)) {
      throw std::runtime_error("\"" + name + "\" cannot be made");
    }
  });
}

void DatabaseMaking::RemoveTables() const noexcept {
  std::error_code ignored;
  if (resourceForm_ && aside_) {
    fs::remove(place_, ignored);
    return;
  }
  try {
    ForEachTable(place_, resourceForm_, [this](const TableSpec&, const std::string& name) {
      if (StorageFileExists(name, resourceForm_)) DeleteStorageFile(name, resourceForm_);
    });
  } catch (const std::exception&) {
    // What cannot be removed now will be when a database is next made here.
  }
  // Only an empty folder goes.
  if (!resourceForm_ && aside_) fs::remove(place_, ignored);
}

void DatabaseMaking::Deliver() {
  if (!aside_) {
    delivered_ = true;
    return;
  }
  if (resourceForm_ || !fs::exists(target_)) {
    fs::rename(place_, target_);
    delivered_ = true;
    return;
  }
  std::vector<fs::path> moved;
  try {
    ForEachTable(place_, false, [&](const TableSpec&, const std::string& name) {
      const fs::path there = fs::path(target_) / fs::path(name).filename();
      fs::rename(name, there);
      moved.push_back(there);
    });
  } catch (const fs::filesystem_error&) {
    std::error_code ignored;
    for (const fs::path& there : moved)
      fs::remove(there, ignored);
    throw;
  }
  delivered_ = true;
  std::error_code ignored;
  fs::remove(place_, ignored);
}

}  // namespace QvRefSystem
