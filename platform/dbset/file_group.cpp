#include "platform/dbset/file_group.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "platform/storage/table_format.h"
#include "platform/storage/table_state.h"

namespace QvPlatform::detail {

namespace {

/// SQLite's own default; the library that is installed may have been built with no more.
constexpr std::size_t kMaxFiles = 11;

std::string SchemaName(std::size_t index) {
  return index == 0 ? std::string("main") : "file" + std::to_string(index);
}

}  // namespace

FileGroup::FileGroup(const std::vector<std::string>& paths) {
  if (paths.size() > kMaxFiles) {
    throw std::logic_error("a group of changes may span " + std::to_string(kMaxFiles) +
                           " table files at most");
  }
  Connection connection = Connection::OpenFile(paths.front());
  std::vector<std::string> schemas;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    schemas.push_back(SchemaName(i));
    if (i > 0) connection.Attach(paths[i], schemas[i]);
    connection.Execute("PRAGMA " + schemas[i] + ".synchronous=EXTRA");
  }
  session_ = std::make_unique<Session>(std::move(connection), schemas);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    links_[paths[i]] = std::make_unique<TableLink>(*session_, schemas[i], kRecordTable);
  }
}

bool FileGroup::IsFor(const std::vector<std::string>& paths) const {
  return session_ != nullptr &&
         std::ranges::equal(paths, links_, {}, {}, [](const auto& link) { return link.first; });
}

TableLink* FileGroup::LinkTo(const std::string& path) {
  return links_.at(path).get();
}

void FileGroup::NoteCommit(const std::vector<std::string>& changed) {
  Connection& db = session_->Db();
  std::int64_t last = 0;
  for (const auto& [path, link] : links_) {
    if (!HasSums(db, link->Schema())) continue;
    last = std::max(
        last, db.QueryInteger("SELECT max(seq) FROM " + QuoteName(link->Schema()) + ".qv_state"));
  }
  std::string names;
  for (const std::string& path : changed)
    names += std::filesystem::path(path).filename().string() + '/';
  for (const std::string& path : changed) {
    db.Execute("UPDATE " + QuoteName(links_.at(path)->Schema()) +
               ".qv_state SET seq = " + std::to_string(last + 1) + ", names = " + QuoteText(names));
  }
}

void FileGroup::Close() {
  links_.clear();
  session_.reset();
}

}  // namespace QvPlatform::detail
