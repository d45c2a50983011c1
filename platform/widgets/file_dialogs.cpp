#include "platform/widgets/file_dialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QMimeDatabase>
#include <QStringList>

namespace QvPlatform {
namespace {

struct Filters {
  QStringList names;     // as the toolkit takes them: text and mask in brackets
  QStringList suffixes;  // what the mask adds to a bare name; "" for a mask of everything
};

// The toolkit reads the mask out of the last brackets of a filter's text; texts that end otherwise
// get their mask in brackets.
Filters SplitFilters(const QString& filter) {
  Filters result;
  const QStringList parts = filter.split(QLatin1Char('|'));
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString& mask = parts[i + 1];
    const qsizetype bracket = parts[i].lastIndexOf(QLatin1Char('('));
    const QString text = bracket > 0 ? parts[i].left(bracket).trimmed() : parts[i];
    // A blank parts masks in the toolkit's form, and an extension may hold one: "?" meets it.
    QString single = mask;
    single.replace(QLatin1Char(' '), QLatin1Char('?'));
    result.names << text + QStringLiteral(" (") + single + QLatin1Char(')');
    const bool open = mask == QLatin1String("*.*");
    result.suffixes << (open ? QString() : mask.mid(mask.indexOf(QLatin1Char('.')) + 1));
  }
  return result;
}

// Tells what a file is by its name. The toolkit's own way, like that of the desktop's dialogs,
// reads the files that are listed, and closing a file again can cost the process its locks on it.
class NamesOnly final : public QFileIconProvider {
 public:
  [[nodiscard]] QIcon icon(const QFileInfo& file) const override {
    return QFileIconProvider::icon(file.isDir() ? Folder : File);
  }
  [[nodiscard]] QIcon icon(IconType type) const override { return QFileIconProvider::icon(type); }
  [[nodiscard]] QString type(const QFileInfo& file) const override {
    const QMimeDatabase types;
    const QMimeType type =
        file.isDir() ? types.mimeTypeForName(QStringLiteral("inode/directory"))
                     : types.mimeTypeForFile(file.fileName(), QMimeDatabase::MatchExtension);
    return type.comment();
  }
};

// Lists files without opening any.
class PlainFileDialog final : public QFileDialog {
 public:
  PlainFileDialog(QWidget* parent, const QString& title) : QFileDialog(parent, title) {
    setObjectName(QStringLiteral("fileDialog"));
    setOption(DontUseNativeDialog);
    setOption(DontUseCustomDirectoryIcons);
    setIconProvider(&names_);
  }

 private:
  NamesOnly names_;
};

FileDialogResult Run(QFileDialog* dialog, const FileDialogOptions& options) {
  const Filters filters = SplitFilters(options.filter);
  const auto chosen = [&] { return filters.names.indexOf(dialog->selectedNameFilter()); };
  // The dialog itself adds the extension, so that it also asks before it overwrites that file. A
  // file to read is taken by the name that it has.
  const bool saves = dialog->acceptMode() == QFileDialog::AcceptSave;
  const auto followFilter = [&] {
    if (saves) dialog->setDefaultSuffix(filters.suffixes.value(chosen()));
  };
  dialog->setNameFilters(filters.names);
  dialog->selectNameFilter(filters.names.value(options.filterIndex - 1));
  followFilter();
  QObject::connect(dialog, &QFileDialog::filterSelected, dialog, followFilter);
  if (!options.defaultFileName.isEmpty()) dialog->selectFile(options.defaultFileName);
  if (dialog->exec() != QDialog::Accepted || dialog->selectedFiles().isEmpty()) return {};
  return {dialog->selectedFiles().constFirst(), static_cast<int>(chosen()) + 1};
}

}  // namespace

FileDialogResult GetSaveFileName(QWidget* parent, const QString& title,
                                 const FileDialogOptions& options) {
  PlainFileDialog dialog(parent, title);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  return Run(&dialog, options);
}

FileDialogResult GetOpenFileName(QWidget* parent, const QString& title,
                                 const FileDialogOptions& options) {
  PlainFileDialog dialog(parent, title);
  dialog.setFileMode(QFileDialog::ExistingFile);
  return Run(&dialog, options);
}

QString SelectFolder(QWidget* parent, const QString& title) {
  PlainFileDialog dialog(parent, title);
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  if (dialog.exec() != QDialog::Accepted) return {};
  return dialog.selectedFiles().value(0);
}

}  // namespace QvPlatform
