#pragma once

#include <QString>
#include <QStringList>

class MainWindow;
class QApplication;
class QSplashScreen;
class QTextStream;

// What main() does before the window exists, kept apart so that each step can be tested.
namespace Startup {

// Reads `kelvaro [DIRECTORY...]` and returns the given directories as absolute paths. --help and
// --version print their text on standard output and end the program with 0; an unknown option
// is a usage error: a note on `errors` and exit code 2. Arguments that are not directories are
// left out with a note and the reason on `errors` ("x.jpg: Not a directory").
// --no-catalogue sets *catalogueSwitchedOff (when given): this run neither uses nor updates the
// photo catalogue.
QStringList startDirectories(const QStringList &arguments, QTextStream &errors,
                             bool *catalogueSwitchedOff = nullptr);

// The splash screen with the version message; it closes itself after three seconds and is never
// deleted by the program.
QSplashScreen *showSplashScreen();

// Makes the sheet at `resourcePath` the application's style sheet. Without it the program runs
// unstyled and says so once on `out`.
bool applyStyleSheet(QApplication &app, const QString &resourcePath, QTextStream &out);

// The environment variable that makes the program print the status line of its first scan on
// standard output and quit (for scripts and CI). The window is closed without the quit question
// and without writing the settings store.
inline constexpr char quitAfterFirstScanVariable[] = "KELVARO_QUIT_AFTER_FIRST_SCAN";

// Connects the window so that, when quitAfterFirstScanVariable is set, its first finished scan
// prints the status line on `out` and ends the application's event loop.
void quitAfterFirstScanWhenAsked(MainWindow &window, QTextStream &out);

} // namespace Startup
