#pragma once

#include <QString>

class QWidget;

namespace QvPlatform {

/// What a file dialog is given.
struct FileDialogOptions {
  /// Pairs of text and mask, all parted by "|": "Text files (*.txt)|*.txt|All files (*.*)|*.*".
  QString filter;
  /// The filter offered first, numbered from 1.
  int filterIndex = 1;
  /// The name that the dialog proposes, with or without a folder; empty for none.
  QString defaultFileName;
};

/// What the user answered to a file dialog.
struct FileDialogResult {
  /// Empty if the user cancelled.
  QString path;
  /// The filter chosen, numbered from 1.
  int filterIndex = 0;
};

/// Asks for a file to write; an existing one is confirmed. A name without an extension gets that of
/// the filter's mask. The dialogs bear the object name "fileDialog".
[[nodiscard]] FileDialogResult GetSaveFileName(QWidget* parent, const QString& title,
                                               const FileDialogOptions& options);
/// Asks for a file that exists.
[[nodiscard]] FileDialogResult GetOpenFileName(QWidget* parent, const QString& title,
                                               const FileDialogOptions& options);
/// Asks for a folder; empty if the user cancelled.
[[nodiscard]] QString SelectFolder(QWidget* parent, const QString& title);

}  // namespace QvPlatform
