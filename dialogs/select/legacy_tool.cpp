#include "dialogs/select/legacy_tool.h"

#include <filesystem>

#include "database/storage_files.h"
#include "platform/ctui/ctui.h"
#include "platform/storage/file_stream.h"
#include "platform/ui/texts.h"
#include "platform/widgets/file_dialogs.h"
#include "platform/widgets/qt_text.h"
#include "platform/xini/ini_file.h"
#include "registry/legacy_bridge.h"
#include "registry/object_files.h"

namespace QvRefSystem {

using QvPlatform::StorageError;
using QvPlatform::TQvFileStream;
using QvPlatform::TQvIniFileManager;
using QvPlatform::Translated;

namespace {

constexpr char kSection[] = "CoordSystem";
constexpr char kOutputName[] = "legacy system.reference system";
// The label of the tree's root, by which the tool knows a file that it wrote.
constexpr char kOwnLabel[] = "converted legacy system";

struct Mean {
  double x, y, z;
};

void OpenOrThrow(TQvFileStream* stream, const std::string& path) {
  if (!stream->Open(path, QvPlatform::QvOpenMode::kRead)) throw StorageError(stream->LastError());
}

QvPlatform::SQvCTUI_ProjectionInfo1 ReadSystem(const TQvIniFileManager& ini, const Mean& mean) {
  const std::string bytes = ini.ReadBinary(kSection, "BinData").value_or("");
  const auto reader = QvPlatform::CreateCTUI({bytes.data(), bytes.size()});
  QvPlatform::TProjectionInfo311 read;
  std::uint32_t flags = 0;
  QvPlatform::SQvCTUI_ProjectionInfo1 info;
  if (reader != nullptr && reader->GetUserSystemProjectionInfo311(&read, &flags) && flags != 0) {
    info = MakeProjectionInfo1(read, flags);
  }
  info.Zone = LegacyZone(info, mean.x, mean.y);
  return info;
}

bool IsOwnFile(const std::string& path) {
  TQvFileStream stream;
  OpenOrThrow(&stream, path);
  char head[64];
  const std::string wanted = std::string("(0,0)") + kOwnLabel + "\n";
  const std::size_t size = stream.Read(head, sizeof head);
  return std::string_view(head, size).starts_with(wanted);
}

}  // namespace

std::string LegacyOutputPath(const TdatamoduleQvRfData& data) {
  const std::filesystem::path place(data.DatabasePath);
  return (data.ResourceForm ? place.parent_path() / kOutputName : place / kOutputName).string();
}

bool ConvertLegacySystem(const std::string& iniPath, const std::string& outputPath) {
  TQvFileStream stream;
  OpenOrThrow(&stream, iniPath);
  const TQvIniFileManager ini(&stream);
  const Mean mean{.x = ini.ReadDouble(kSection, "AverX_U", 0),
                  .y = ini.ReadDouble(kSection, "AverY_U", 0),
                  .z = ini.ReadDouble(kSection, "AverZ_U", 0)};
  const auto info = ReadSystem(ini, mean);
  QvCommonUtils::TStringTree tree;
  if (!FillReferenceSystemTree(&info, &tree, mean.x, mean.y, mean.z)) return false;
  if (std::filesystem::exists(outputPath) && !IsOwnFile(outputPath)) {
    throw StorageError(QvPlatform::FromQt(
        Translated("\"%1\" was not written by this tool, and is kept. Move it away first.")
            .arg(QvPlatform::ToQt(outputPath))));
  }
  tree.Label = kOwnLabel;
  // Beside the tables of a database, where no object file is written but this one.
  if (!SaveStorageFile(outputPath, false, WriteTreeText(&tree) + '\0')) {
    throw StorageError(QvPlatform::SystemText(QvPlatform::TextId::kCannotCreateFile) + " " +
                       outputPath);
  }
  return true;
}

void RunLegacyTool(QWidget* window, const TdatamoduleQvRfData& data) {
  const auto file = QvPlatform::GetOpenFileName(
      window, Translated("Open ini file"),
      {Translated("Ini files (*.ini)|*.ini|All files (*.*)|*.*"), 0, QString()});
  if (file.path.isEmpty()) return;
  (void)ConvertLegacySystem(QvPlatform::FromQt(file.path), LegacyOutputPath(data));
}

}  // namespace QvRefSystem
