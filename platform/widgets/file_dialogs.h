#pragma once

#include <QString>

class QWidget;

namespace QvPlatform {

/// What a file dialog is given.
struct TFileDialogOptions {
  /// Pairs of text and mask, all parted by "|": "Text files (*.txt)|*.txt|All files (*.*)|*.*".
  QString filter;
  /// The filter offered first, numbered from 1.
  int filterIndex = 1;
  QString defaultFileName;
};

struct TFileDialogResult {
  /// Empty if the user cancelled.
  QString path;
  /// The filter chosen, numbered from 1.
  int filterIndex = 0;
};

/// Asks for a file to write; an existing one is confirmed. A name without an extension gets that of
/// the filter's mask. The dialogs bear the object name "fileDialog".
[[nodiscard]] TFileDialogResult GetSaveFileName(QWidget* parent, const QString& title,
                                                const TFileDialogOptions& options);
/// Asks for a file that exists.
[[nodiscard]] TFileDialogResult GetOpenFileName(QWidget* parent, const QString& title,
                                                const TFileDialogOptions& options);
/// Asks for a folder; empty if the user cancelled.
[[nodiscard]] QString SelectFolder(QWidget* parent, const QString& title);

}  // namespace QvPlatform
