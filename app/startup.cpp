#include "startup.h"

#include "mainwindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QPixmap>
#include <QSplashScreen>
#include <QTextStream>
#include <QTimer>

#include <cstdlib>

namespace Startup {

QStringList startDirectories(const QStringList &arguments, QTextStream &errors,
                             bool *catalogueSwitchedOff)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("Startup", "Statistics of the shooting data of photos."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(
        "directories",
        QCoreApplication::translate("Startup", "Directories to scan instead of the last one."),
        "[DIRECTORY...]");
    const QCommandLineOption noCatalogue(
        QStringLiteral("no-catalogue"),
        QCoreApplication::translate(
            "Startup", "Read every photo; neither use nor update the photo catalogue."));
    parser.addOption(noCatalogue);
    // parse() rather than process(): an unknown option exits with 2, as the manual page says.
    if (!parser.parse(arguments)) {
        errors << "kelvaro: " << parser.errorText() << "\nTry 'kelvaro --help'." << Qt::endl;
        std::exit(2);
    }
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(0);

    if (catalogueSwitchedOff)
        *catalogueSwitchedOff = parser.isSet(noCatalogue);

    QStringList directories;
    for (const QString &argument : parser.positionalArguments()) {
        const QFileInfo info(argument);
        if (info.isDir())
            directories.append(info.absoluteFilePath());
        else
            errors << "kelvaro: " << argument << ": "
                   << (info.exists() ? "Not a directory" : "No such file or directory") << Qt::endl;
    }
    return directories;
}

QSplashScreen *showSplashScreen()
{
    auto *splash =
        new QSplashScreen(QPixmap(":/ressourcen/SplashScreen.png"), Qt::WindowStaysOnTopHint);
    splash->setFixedSize(542, 302);
    splash->show();
    splash->showMessage("Version " + QCoreApplication::applicationVersion(),
                        Qt::AlignBottom | Qt::AlignLeft, Qt::lightGray);
    QTimer::singleShot(3000, splash, &QSplashScreen::close);
    return splash;
}

bool applyStyleSheet(QApplication &app, const QString &resourcePath, QTextStream &out)
{
    QFile file(resourcePath);
    if (!file.exists()) {
        out << "Unable to set stylesheet, file not found" << Qt::endl;
        return false;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    QTextStream in(&file);
    app.setStyleSheet(in.readAll());
    return true;
}

void quitAfterFirstScanWhenAsked(MainWindow &window, QTextStream &out)
{
    if (!qEnvironmentVariableIsSet(quitAfterFirstScanVariable))
        return;
    QObject::connect(
        &window, &MainWindow::scanFinished, &window,
        [&out](const QString &status) {
            out << status << Qt::endl;
            // exit(), not quit(): quit() would close the window first, and its close asks the
            // quit question.
            QCoreApplication::exit(0);
        },
        Qt::SingleShotConnection);
}

} // namespace Startup
