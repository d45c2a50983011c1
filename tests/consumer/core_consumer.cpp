// Makes a tree, writes its text, and asks for a database that is not there: it takes something of
// every library below the editor to link that.
#include <iostream>
#include <memory>

#include "assembly/processor_set.h"
#include "platform/data/string_tree.h"
#include "platform/ui/user_interface.h"

namespace {

class TSilentInterface final : public QvPlatform::TUserInterface {
 public:
  QvPlatform::MessageAnswer ShowMessage(QvPlatform::MessageKind, const std::string&,
                                        QvPlatform::MessageButtons) override {
    return QvPlatform::MessageAnswer::kOk;
  }
  QvPlatform::UsedByAnswer ShowUsedBy(QvPlatform::TComponent*,
                                      std::span<const QvPlatform::UsedByRow>, bool) override {
    return QvPlatform::UsedByAnswer::kClosed;
  }
  std::unique_ptr<QvPlatform::TProgress> StartProgress(int, const std::string&, int) override {
    return nullptr;
  }
};

}  // namespace

int main() {
  QvCommonUtils::TStringTree tree;
  tree.InsertString("name", 1020, 0, "Alps");
  std::cout << WriteTreeText(&tree);

  TSilentInterface ui;
  const auto data = QvRefSystem::MakeDataModule(ui);
  data->DatabasePath = "no such folder";
  return data->OpenDatabase(data->DatabasePath, QvRefSystem::kFullMode, false) ? 1 : 0;
}
