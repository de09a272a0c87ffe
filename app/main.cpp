#include "kelvaroversion.h"
#include "mainwindow.h"
#include "startup.h"

#include <QApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QApplication::setApplicationName("Kelvaro");
    QApplication::setApplicationVersion(KELVARO_VERSION);

    // The options are read before the GUI application exists, so that --help, --version and
    // usage errors are answered in a terminal without a display.
    QStringList directories;
    bool catalogueSwitchedOff = false;
    {
        QCoreApplication commandLine(argc, argv);
        QTextStream errors(stderr);
        directories =
            Startup::startDirectories(commandLine.arguments(), errors, &catalogueSwitchedOff);
    }

    QApplication app(argc, argv);
    QTextStream out(stdout);
    Startup::showSplashScreen();
    Startup::applyStyleSheet(app, ":/qdarkstyle/style.qss", out);

    // The whole construction, the first scan's start included, runs while the splash is up.
    MainWindow window(directories,
                      catalogueSwitchedOff ? MainWindow::Catalogue::SwitchedOff
                                           : MainWindow::Catalogue::AsSet);
    Startup::quitAfterFirstScanWhenAsked(window, out);
    window.show();
    return app.exec();
}
