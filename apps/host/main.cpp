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

// What the command line asks of the window.
struct Wishes {
  QCommandLineOption database{"database",
                              "Open this database: a folder, or the file of a container.", "PATH"};
  QCommandLineOption tree{"tree", "Show the system in this file.", "FILE"};
  QCommandLineOption choose{"choose", "Open the list of systems at once."};
  QCommandLineOption screenshot{"screenshot", "Save a picture of the window and leave.", "FILE"};
};

void Parse(QCommandLineParser* parser, const Wishes& wishes) {
  parser->setApplicationDescription("Shows, chooses and stores reference systems.");
  parser->addHelpOption();
  parser->addOptions({wishes.database, wishes.tree, wishes.choose, wishes.screenshot});
  parser->process(*QCoreApplication::instance());
}

// The toolkit's own texts, such as those of its file dialogs; ours come with the library.
void TranslateToolkit(QTranslator* toolkit) {
  if (toolkit->load(QLocale(), "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(toolkit);
  }
}

void SavePictureAndLeave(QvRefSystem::MainWindow& window, const QString& path) {
  // A moment later, when the window has been laid out and drawn.
  QTimer::singleShot(1000, &window,
                     [&window, path] { QApplication::exit(window.grab().save(path) ? 0 : 1); });
}

void Fulfil(const QCommandLineParser& parser, const Wishes& wishes,
            QvRefSystem::MainWindow& window) {
  if (parser.isSet(wishes.database)) {
    (void)window.OpenDatabase(parser.value(wishes.database));
  } else {
    window.OpenLastDatabase();
  }
  if (parser.isSet(wishes.tree)) (void)window.OpenTree(parser.value(wishes.tree));
  if (parser.isSet(wishes.choose)) QTimer::singleShot(0, &window, [&window] { window.Choose(); });
  if (parser.isSet(wishes.screenshot)) SavePictureAndLeave(window, parser.value(wishes.screenshot));
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setOrganizationName("refframe");
  QApplication::setApplicationName("refframe-host");
  QCommandLineParser parser;
  const Wishes wishes;
  Parse(&parser, wishes);
  QTranslator toolkit;
  TranslateToolkit(&toolkit);
  const Libraries libraries;
  const auto ui = QvRefSystem::MakeDialogInterface();
  QSettings settings;
  QvRefSystem::MainWindow window(settings, *ui);
  window.show();
  Fulfil(parser, wishes, window);
  return QApplication::exec();
}
