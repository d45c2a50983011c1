#include "assembly/checks/mending.h"

namespace QvRefSystem {
namespace {

std::string StreamOf(TableId table) {
  return std::string(TableOf(table).streamName);
}

std::string InWords(const RaisedCounter& counter) {
  return StreamOf(counter.table) + ": new keys begin behind " + std::to_string(counter.key);
}

std::string InWords(const RemovedValue& row) {
  return StreamOf(TableId::kParamValue) + ": row of tag " + std::to_string(row.tag) + " of owner " +
         std::to_string(row.content) + "/" + std::to_string(row.owner) + ", \"" + row.value +
         "\": removed";
}

std::string InWords(const FileSetAside& file) {
  return "the height file \"" + file.name + "\": moved to the backups";
}

std::string InWords(const MergedRecord& record) {
  return StreamOf(record.table) + ", key " + std::to_string(record.key) + ", \"" + record.name +
         "\": merged into key " + std::to_string(record.into) + ", to which " +
         std::to_string(record.references) + " references go over";
}

}  // namespace

std::string StepOf(const Mending& mending) {
  return std::visit([](const auto& step) { return InWords(step); }, mending);
}

}  // namespace QvRefSystem
