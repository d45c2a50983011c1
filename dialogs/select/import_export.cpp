#include "dialogs/select/import_export.h"

#include <new>

#include "database/storage_files.h"
#include "platform/storage/stream.h"
#include "platform/widgets/file_dialogs.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::FileDialogOptions;
using QvPlatform::FileDialogResult;
using QvPlatform::FromQt;
using QvPlatform::SystemText;
using QvPlatform::TextId;
using QvPlatform::ToQt;
using QvPlatform::Translated;

namespace {

// Under its first filter an import offers files of reference systems, whatever the object.
constexpr char kImportMask[] = ".reference?system";
constexpr int kTextFilter = 1;
constexpr int kXmlFilter = 2;

ObjectFileForm FormOfFilter(int filterIndex) {
  return filterIndex == kTextFilter ? ObjectFileForm::kText : ObjectFileForm::kXml;
}

std::string CannotRead(const std::string& path, const QString& reason) {
  return FromQt(Translated("\"%1\" cannot be read: %2").arg(ToQt(path), reason));
}

std::string ReadContent(const std::string& path) {
  try {
    return LoadObjectFile(path, kLargestObjectFile);
  } catch (const ObjectFileTooLarge&) {
    throw QvPlatform::StorageError(
        CannotRead(path, Translated("it is too large for the file of an object.")));
  }
}

void ParseTree(const std::string& path, const std::string& content, ObjectFileForm form,
               TStringTree* tree) {
  try {
    ReadTree(content, form, tree);
  } catch (const QvCommonUtils::TreeFormatError& error) {
    throw QvCommonUtils::TreeFormatError(CannotRead(path, ToQt(error.what())));
  } catch (const std::bad_alloc&) {
    throw QvCommonUtils::TreeFormatError(
        CannotRead(path, Translated("there is not enough memory for it.")));
  }
}

// The objects of a whole table that could not be written, of which a message tells the first ones.
class ExportFailures {
 public:
  void Add(const std::string& name, const QString& reason) {
    constexpr int kMostTold = 10;
    if (++count_ <= kMostTold) told_ += QStringLiteral("\n\"%1\": %2").arg(ToQt(name), reason);
    if (count_ == kMostTold + 1) told_ += QStringLiteral("\n...");
  }
  void Tell(QvPlatform::TUserInterface& ui) const {
    if (count_ == 0) return;
    const QString head = Translated("Objects that could not be written: %1").arg(count_);
    ui.ShowMessage(QvPlatform::MessageKind::kError, FromQt(head + told_),
                   QvPlatform::MessageButtons::kOk);
  }

 private:
  int count_ = 0;
  QString told_;
};

// `mask` is what the first filter looks for, in place of the extension that it names.
FileDialogOptions DialogOptions(const TQvRfDataProcessor& processor, const std::string& mask) {
  const std::string extension = ObjectFileExtension(ObjectFileForm::kText, processor.TypeName);
  std::string typeText;
  processor.GetDisplayNames(&typeText, nullptr);
  return {
      .filter = ToQt(typeText + " (*" + extension + ")|*" + mask + SystemText(TextId::kXmlFilter) +
                     SystemText(TextId::kAllFiles) + " (*.*)|*.*"),
      .filterIndex = kXmlFilter,
      .defaultFileName = {}};
}

}  // namespace

bool WriteObjectFile(TQvRfDataProcessor& processor, const std::string& path, ObjectFileForm form) {
  TStringTree tree;
  if (!processor.WriteToTree(&tree, 0, 0)) return false;
  WriteTreeFile(tree, path, form);
  return true;
}

void ReadTreeFile(const std::string& path, ObjectFileForm form, TStringTree* tree) {
  const std::string content = ReadContent(path);
  if (TreeFormOfContent(content) != form) {
    throw QvCommonUtils::TreeFormatError(
        CannotRead(path, form == ObjectFileForm::kXml
                             ? Translated("it holds no XML. A file in the text form is read under "
                                          "the first filter of the file dialog.")
                             : Translated("it is in the XML form, which is not read under the "
                                          "first filter of the file dialog.")));
  }
  ParseTree(path, content, form, tree);
}

void ReadTreeFile(const std::string& path, TStringTree* tree) {
  const std::string content = ReadContent(path);
  ParseTree(path, content, TreeFormOfContent(content), tree);
}

void ExportObject(QWidget* window, TQvRfDataProcessor& processor) {
  std::string name;
  processor.GetNames(nullptr, &name);
  FileDialogOptions options =
      DialogOptions(processor, ObjectFileExtension(ObjectFileForm::kText, processor.TypeName));
  options.defaultFileName = ToQt(MakeFileName(name));
  const FileDialogResult file =
      GetSaveFileName(window, QvPlatform::SystemQText(TextId::kSaveTitle), options);
  if (file.path.isEmpty()) return;
  (void)WriteObjectFile(processor, FromQt(file.path), FormOfFilter(file.filterIndex));
}

void ExportTable(QWidget* window, TQvRfDataProcessor& processor) {
  const QString title = QvPlatform::SystemQText(TextId::kExportFolder);
  const std::string folder = FromQt(QvPlatform::SelectFolder(window, title));
  if (folder.empty()) return;
  const std::string extension = ObjectFileExtension(ObjectFileForm::kXml, processor.TypeName);
  QvPlatform::TQvDataSet& dataSet = *processor.DataSet;
  const ControlsGuard quiet(dataSet);
  ExportFailures failures;
  auto progress = processor.Data().Ui().StartProgress(0, FromQt(title), dataSet.RecordCount());
  for (dataSet.First(); !dataSet.Eof(); dataSet.Next()) {
    std::string name;
    processor.GetNames(nullptr, &name);
    std::string path = folder;
    path.append("/").append(MakeFileName(name)).append(extension);
    try {
      if (!WriteObjectFile(processor, path, ObjectFileForm::kXml)) {
        failures.Add(name, Translated("it refers to an object that is not in the database"));
      }
    } catch (const std::exception& error) {
      failures.Add(name, ToQt(error.what()));
    }
    if (progress != nullptr && !progress->Next()) break;
  }
  progress.reset();
  failures.Tell(processor.Data().Ui());
}

void ImportObject(QWidget* window, TQvRfDataProcessor& processor) {
  const FileDialogResult file = GetOpenFileName(window, QvPlatform::SystemQText(TextId::kLoadTitle),
                                                DialogOptions(processor, kImportMask));
  if (file.path.isEmpty()) return;
  const std::string path = FromQt(file.path);
  TStringTree tree;
  ReadTreeFile(path, FormOfFilter(file.filterIndex), &tree);
  try {
    if (processor.InsertFromTree(&tree) != 0 || processor.StorageFailed()) return;
  } catch (const InvalidTypeError& error) {
    throw InvalidTypeError(CannotRead(path, ToQt(error.what())));
  }
  std::string typeText;
  processor.GetDisplayNames(&typeText, nullptr);
  processor.Data().Ui().ShowMessage(QvPlatform::MessageKind::kError,
                                    SystemText(TextId::kImportFailed) + "(" + typeText + ")",
                                    QvPlatform::MessageButtons::kOk);
}

}  // namespace QvRefSystem
