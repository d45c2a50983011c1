// A small host of the editor: one window that holds one reference system.

#include <QApplication>
#include <QCommandLineParser>
#include <QLibraryInfo>
#include <QLocale>
#include <QSettings>
#include <QTimer>
#include <QTranslator>

#include "apps/host/main_window.h"
#include "dialogs/select/used_by_list.h"

namespace {

// The editor's libraries, up for as long as the window lives.
struct Libraries {
  Libraries() { QvRefSystem::_QvGeoRefFrameEditor_Initialize(); }
  ~Libraries() { QvRefSystem::_QvGeoRefFrameEditor_Finalize(); }
  Libraries(const Libraries&) = delete;
  Libraries& operator=(const Libraries&) = delete;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setOrganizationName("refframe");
  QApplication::setApplicationName("refframe-host");

  QCommandLineParser parser;
  parser.setApplicationDescription("Shows, chooses and stores reference systems.");
  parser.addHelpOption();
  const QCommandLineOption database(
      "database", "Open this database: a folder, or the file of a container.", "PATH");
  const QCommandLineOption tree("tree", "Show the system in this file.", "FILE");
  const QCommandLineOption choose("choose", "Open the list of systems at once.");
  const QCommandLineOption screenshot("screenshot", "Save a picture of the window and leave.",
                                      "FILE");
  parser.addOptions({database, tree, choose, screenshot});
  parser.process(application);

  // The toolkit's own texts, such as those of its file dialogs; ours come with the library.
  QTranslator toolkit;
  if (toolkit.load(QLocale(), "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(&toolkit);
  }
  const Libraries libraries;
  const auto ui = QvRefSystem::MakeDialogInterface();
  QSettings settings;
  QvRefSystem::TMainWindow window(settings, *ui);
  window.show();
  if (parser.isSet(database)) {
    (void)window.OpenDatabase(parser.value(database));
  } else {
    window.OpenLastDatabase();
  }
  if (parser.isSet(tree)) (void)window.OpenTree(parser.value(tree));
  if (parser.isSet(choose)) QTimer::singleShot(0, &window, [&window] { window.Choose(); });
  if (parser.isSet(screenshot)) {
    // A moment later, when the window has been laid out and drawn.
    QTimer::singleShot(1000, &window, [&] {
      QApplication::exit(window.grab().save(parser.value(screenshot)) ? 0 : 1);
    });
  }
  return QApplication::exec();
}
