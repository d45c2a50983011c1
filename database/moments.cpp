#include "database/moments.h"

#include <map>
#include <set>

#include "database/storage_files.h"

namespace QvRefSystem {

std::vector<std::string> TablesOfOlderMoments(TdatamoduleQvRfData& data) {
  if (data.ResourceForm) return {};
  std::map<std::string, QvPlatform::GroupMark> marks;
  for (QvPlatform::TQvDataSet* table : data.OpenedTables())
    marks[StorageShortName(table->DataBuff->StreamName, false)] = table->LastGroup();
  std::set<std::string> older;
  for (const auto& [file, mark] : marks) {
    for (const std::string& other : mark.files) {
      const auto found = marks.find(other);
      if (found != marks.end() && found->second.number < mark.number) older.insert(other);
    }
  }
  return {older.begin(), older.end()};
}

}  // namespace QvRefSystem
