#include "mainwindow.h"
#include "startup.h"

#include <QApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName("Kelvaro");
    QApplication::setApplicationVersion("0.40");

    QTextStream out(stdout);
    QTextStream errors(stderr);
    const QStringList directories = Startup::startDirectories(app.arguments(), errors);

    Startup::showSplashScreen();
    Startup::applyStyleSheet(app, ":/qdarkstyle/style.qss", out);

    // The whole construction, the first scan's start included, runs while the splash is up.
    MainWindow window(directories);
    Startup::quitAfterFirstScanWhenAsked(window, out);
    window.show();
    return app.exec();
}
