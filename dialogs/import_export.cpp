#include "dialogs/import_export.h"

#include "database/storage_files.h"
#include "platform/storage/stream.h"
#include "platform/widgets/file_dialogs.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::FromQt;
using QvPlatform::SystemText;
using QvPlatform::TextId;
using QvPlatform::TFileDialogOptions;
using QvPlatform::TFileDialogResult;
using QvPlatform::ToQt;
using QvPlatform::TQvFileStream;

namespace {

constexpr char kXmlExtension[] = ".x-ref-system";
// Under its first filter an import offers files of reference systems, whatever the object.
constexpr char kImportMask[] = "reference?system";
constexpr int kTextFilter = 1;
constexpr int kXmlFilter = 2;

TObjectFileForm FormOfFilter(int filterIndex) {
  return filterIndex == kTextFilter ? TObjectFileForm::kText : TObjectFileForm::kXml;
}

void OpenStream(TQvFileStream* stream, const std::string& path, QvPlatform::QvOpenMode mode) {
  if (!stream->Open(path, mode)) throw QvPlatform::StorageError(stream->LastError());
}

TFileDialogOptions DialogOptions(const TQvRfDataProcessor& processor, const std::string& mask) {
  std::string typeText;
  processor.GetDisplayNames(&typeText, nullptr);
  return {
      .filter = ToQt(typeText + " (*." + processor.TypeName + ")|*." + mask +
                     SystemText(TextId::kXmlFilter) + SystemText(TextId::kAllFiles) + " (*.*)|*.*"),
      .filterIndex = kXmlFilter,
      .defaultFileName = {}};
}

}  // namespace

void WriteTreeFile(const TStringTree& tree, const std::string& path, TObjectFileForm form) {
  TQvFileStream stream;
  OpenStream(&stream, path, QvPlatform::QvOpenMode::kCreate);
  if (form == TObjectFileForm::kXml) {
    QvCommonUtils::WriteTreeXml(&tree, &stream);
  } else {
    const std::string text = QvCommonUtils::WriteTreeText(&tree);
    stream.Write(text.c_str(), text.size() + 1);  // with the zero byte that ends a text file
  }
  stream.Commit();
}

bool WriteObjectFile(TQvRfDataProcessor& processor, const std::string& path, TObjectFileForm form) {
  TStringTree tree;
  if (!processor.WriteToTree(&tree, 0, 0)) return false;
  WriteTreeFile(tree, path, form);
  return true;
}

void ReadTreeFile(const std::string& path, TObjectFileForm form, TStringTree* tree) {
  TQvFileStream stream;
  OpenStream(&stream, path, QvPlatform::QvOpenMode::kRead);
  if (form == TObjectFileForm::kXml) {
    QvCommonUtils::ReadTreeXml(&stream, tree);
  } else {
    QvCommonUtils::ReadTreeText(stream.ReadAll(), tree);
  }
}

void ReadTreeFile(const std::string& path, TStringTree* tree) {
  TQvFileStream stream;
  OpenStream(&stream, path, QvPlatform::QvOpenMode::kRead);
  const std::string content = stream.ReadAll();
  // The text form begins with an address in brackets, perhaps behind a byte order mark.
  if (content.find('<') < content.find('(')) {
    QvCommonUtils::ReadTreeXml(content, tree);
  } else {
    QvCommonUtils::ReadTreeText(content, tree);
  }
}

void ExportObject(QWidget* window, TQvRfDataProcessor& processor) {
  std::string name;
  processor.GetNames(nullptr, &name);
  TFileDialogOptions options = DialogOptions(processor, processor.TypeName);
  options.defaultFileName = ToQt(MakeFileName(name));
  const TFileDialogResult file =
      GetSaveFileName(window, QvPlatform::SystemQText(TextId::kSaveTitle), options);
  if (file.path.isEmpty()) return;
  (void)WriteObjectFile(processor, FromQt(file.path), FormOfFilter(file.filterIndex));
}

void ExportTable(QWidget* window, TQvRfDataProcessor& processor) {
  const QString title = QvPlatform::SystemQText(TextId::kExportFolder);
  const std::string folder = FromQt(QvPlatform::SelectFolder(window, title));
  if (folder.empty()) return;
  QvPlatform::TQvDataSet& dataSet = *processor.DataSet;
  const TControlsGuard quiet(dataSet);
  const auto progress =
      processor.Data().Ui().StartProgress(0, FromQt(title), dataSet.RecordCount());
  for (dataSet.First(); !dataSet.Eof(); dataSet.Next()) {
    std::string name;
    processor.GetNames(nullptr, &name);
    (void)WriteObjectFile(processor, folder + "/" + MakeFileName(name) + kXmlExtension,
                          TObjectFileForm::kXml);
    if (progress != nullptr && !progress->Next()) break;
  }
}

void ImportObject(QWidget* window, TQvRfDataProcessor& processor) {
  const TFileDialogResult file = GetOpenFileName(
      window, QvPlatform::SystemQText(TextId::kLoadTitle), DialogOptions(processor, kImportMask));
  if (file.path.isEmpty()) return;
  TStringTree tree;
  ReadTreeFile(FromQt(file.path), FormOfFilter(file.filterIndex), &tree);
  if (processor.InsertFromTree(&tree) != 0) return;
  std::string typeText;
  processor.GetDisplayNames(&typeText, nullptr);
  processor.Data().Ui().ShowMessage(QvPlatform::MessageKind::kError,
                                    SystemText(TextId::kImportFailed) + "(" + typeText + ")",
                                    QvPlatform::MessageButtons::kOk);
}

}  // namespace QvRefSystem
