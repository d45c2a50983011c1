#include "platform/dbset/store_transaction.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/dbset/container_store.h"
#include "platform/dbset/file_group.h"
#include "platform/dbset/file_store.h"

namespace QvPlatform::detail {

namespace {

/// A transaction of one connection, begun at the first write.
class SessionTransaction final : public StoreTransaction {
 public:
  explicit SessionTransaction(Session& session) : session_(session) {}
  ~SessionTransaction() override { Undo(); }
  SessionTransaction(const SessionTransaction&) = delete;
  SessionTransaction& operator=(const SessionTransaction&) = delete;

  void BeforeWrite() override {
    if (begun_) {
      session_.CheckAlive();
      return;
    }
    session_.Begin();
    begun_ = true;
    for (int level = 0; level < levels_; ++level)
      session_.PushMark();
  }
  void PushLevel() override {
    if (begun_) session_.PushMark();
    ++levels_;
  }
  void ReleaseLevel() override {
    if (begun_) session_.ReleaseMark();
    --levels_;
  }
  void UndoLevel() noexcept override {
    if (begun_) session_.RollbackToMark();
    --levels_;
  }
  void Commit() override {
    if (std::exchange(begun_, false)) session_.Commit();
  }
  void Undo() noexcept override {
    if (std::exchange(begun_, false)) session_.Rollback();
  }

 private:
  Session& session_;
  int levels_ = 0;
  bool begun_ = false;
};

/// Keeps alive whatever the transaction works on, and takes the stores back from a shared
/// connection when it is over.
class JoinedTransaction final : public StoreTransaction {
 public:
  JoinedTransaction(std::vector<std::shared_ptr<TableStore>> stores, Session& session,
                    std::shared_ptr<FileGroup> group)
      : stores_(std::move(stores)), group_(std::move(group)), transaction_(session) {}
  ~JoinedTransaction() override { Unbind(); }
  JoinedTransaction(const JoinedTransaction&) = delete;
  JoinedTransaction& operator=(const JoinedTransaction&) = delete;

  void BeforeWrite() override {
    transaction_.BeforeWrite();
    Bind();
  }
  void PushLevel() override { transaction_.PushLevel(); }
  void ReleaseLevel() override { transaction_.ReleaseLevel(); }
  void UndoLevel() noexcept override { transaction_.UndoLevel(); }
  void Commit() override {
    if (group_ != nullptr) NoteGroup();
    transaction_.Commit();
  }
  void Undo() noexcept override { transaction_.Undo(); }

 private:
  /// Tells each file that the transaction has changed of the others, so that one that is put back
  /// alone, or copied without its journal, is noticed.
  void NoteGroup() {
    std::vector<std::string> changed;
    for (const auto& store : stores_) {
      if (store->TakesPart()) changed.push_back(static_cast<FileStore&>(*store).Path());
    }
    if (changed.size() > 1) group_->NoteCommit(changed);
  }
  void Bind() {
    if (group_ == nullptr) return;
    for (const auto& store : stores_) {
      auto& file = static_cast<FileStore&>(*store);
      file.UseLink(group_->LinkTo(file.Path()));
    }
  }
  void Unbind() {
    if (group_ == nullptr) return;
    for (const auto& store : stores_)
      static_cast<FileStore&>(*store).UseLink(nullptr);
  }

  std::vector<std::shared_ptr<TableStore>> stores_;
  std::shared_ptr<FileGroup> group_;
  // Ends first, while the stores are still there to be told.
  SessionTransaction transaction_;
};

std::unique_ptr<StoreTransaction> JoinFiles(const std::vector<std::shared_ptr<TableStore>>& stores,
                                            const std::vector<FileStore*>& files) {
  std::vector<std::string> paths;
  paths.reserve(files.size());
  for (const FileStore* file : files)
    paths.push_back(file->Path());
  std::ranges::sort(paths);
  paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
  if (stores.size() == 1) {
    return std::make_unique<JoinedTransaction>(stores, files.front()->Own(), nullptr);
  }
  std::shared_ptr<FileGroup> group = files.front()->Group();
  if (group == nullptr || !group->IsFor(paths)) group = std::make_shared<FileGroup>(paths);
  for (FileStore* file : files)
    file->SetGroup(group);
  return std::make_unique<JoinedTransaction>(stores, group->Transactions(), group);
}

}  // namespace

std::unique_ptr<StoreTransaction> BeginTransaction(
    const std::vector<std::shared_ptr<TableStore>>& stores) {
  std::vector<FileStore*> files;
  std::vector<ContainerStore*> tables;
  for (const auto& store : stores) {
    if (auto* file = dynamic_cast<FileStore*>(store.get())) files.push_back(file);
    if (auto* table = dynamic_cast<ContainerStore*>(store.get())) tables.push_back(table);
  }
  if (files.size() == stores.size()) return JoinFiles(stores, files);
  const auto inFirst = [&tables](const ContainerStore* table) {
    return table->Owner() == tables.front()->Owner();
  };
  if (tables.size() != stores.size() || !std::ranges::all_of(tables, inFirst)) {
    throw std::logic_error("a group of changes has to stay in one folder or in one container");
  }
  Session& session = tables.front()->Owner()->Transactions();
  if (session.Active()) {
    throw std::logic_error("another group of changes is open on this container");
  }
  return std::make_unique<JoinedTransaction>(stores, session, nullptr);
}

}  // namespace QvPlatform::detail
