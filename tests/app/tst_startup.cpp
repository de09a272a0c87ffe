// main()'s steps before the window: command line, splash screen and style sheet.
#include "apptestsupport.h"
#include "kelvaroversion.h"
#include "mainwindowprobe.h"
#include "startup.h"
#include "testutils.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QSplashScreen>
#include <QTest>
#include <QTextStream>

#include <memory>

using namespace apptest;

class tst_Startup : public QObject
{
    Q_OBJECT

private slots:
    void styleSheet_data();
    void styleSheet();
    void splashScreenShowsVersionAndClosesItself();
    void startDirectories_data();
    void startDirectories();
    void quitAfterFirstScanOnlyWhenAsked_data();
    void quitAfterFirstScanOnlyWhenAsked();
    void programPrintsFirstScansStatusAndQuits();
    void commandLineWithoutDisplay_data();
    void commandLineWithoutDisplay();
};

void tst_Startup::styleSheet_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("applied");
    QTest::addColumn<QString>("printed");

    QTest::newRow("missing resource: says so and goes on unstyled")
        << ":/qdarkstyle/no-such-sheet.qss" << false
        << "Unable to set stylesheet, file not found\n";
    QTest::newRow("sheet on disk is applied") << "DISK" << true << "";
#ifdef KELVARO_HAS_QDARKSTYLE
    QTest::newRow("compiled-in dark sheet is applied") << ":/qdarkstyle/style.qss" << true << "";
#endif
}

void tst_Startup::styleSheet()
{
    QFETCH(QString, path);
    QFETCH(bool, applied);
    QFETCH(QString, printed);

    testutils::Sandbox sandbox;
    const QString sheet = "QLabel { color: rgb(1, 2, 3); }";
    if (path == "DISK") {
        path = sandbox.filePath("style.qss");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(sheet.toUtf8());
    }

    qApp->setStyleSheet(QString());
    QString output;
    QTextStream out(&output);
    QCOMPARE(Startup::applyStyleSheet(*qApp, path, out), applied);
    out.flush();
    QCOMPARE(output, printed);
    QVERIFY2(qApp->styleSheet().isEmpty() != applied, qPrintable(qApp->styleSheet().left(80)));
    if (path == sandbox.filePath("style.qss"))
        QCOMPARE(qApp->styleSheet(), sheet);
    qApp->setStyleSheet(QString());
}

void tst_Startup::splashScreenShowsVersionAndClosesItself()
{
    testutils::Sandbox sandbox;
    std::unique_ptr<QSplashScreen> splash(Startup::showSplashScreen());
    QVERIFY(splash->isVisible());
    QCOMPARE(splash->message(), QString("Version " KELVARO_VERSION));
    QCOMPARE(splash->size(), QSize(542, 302));
    QCOMPARE(splash->minimumSize(), splash->maximumSize());
    QVERIFY(splash->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY2(!splash->pixmap().isNull(), "the splash image is a compiled-in resource");
    QTRY_VERIFY_WITH_TIMEOUT(!splash->isVisible(), 6000);
}

void tst_Startup::startDirectories_data()
{
    QTest::addColumn<QStringList>("arguments"); // "SANDBOX" stands for the scratch folder
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("notes");
    QTest::addColumn<bool>("noCatalogue");

    QTest::newRow("no arguments: the remembered directory is used")
        << QStringList { "kelvaro" } << QStringList {} << QStringList {} << false;
    QTest::newRow("--no-catalogue before a directory")
        << QStringList { "kelvaro", "--no-catalogue", "SANDBOX/a" } << QStringList { "SANDBOX/a" }
        << QStringList {} << true;
    QTest::newRow("--no-catalogue alone")
        << QStringList { "kelvaro", "--no-catalogue" } << QStringList {} << QStringList {} << true;
    QTest::newRow("two directories in the given order")
        << QStringList { "kelvaro", "SANDBOX/b", "SANDBOX/a" }
        << QStringList { "SANDBOX/b", "SANDBOX/a" } << QStringList {} << false;
    QTest::newRow("relative directory becomes absolute")
        << QStringList { "kelvaro", "REL" } << QStringList { "SANDBOX/a" } << QStringList {}
        << false;
    QTest::newRow("a file and a missing path are left out with the reason")
        << QStringList { "kelvaro", "SANDBOX/file.txt", "SANDBOX/missing", "SANDBOX/a" }
        << QStringList { "SANDBOX/a" }
        << QStringList { "kelvaro: SANDBOX/file.txt: Not a directory",
                         "kelvaro: SANDBOX/missing: No such file or directory" }
        << false;
}

void tst_Startup::startDirectories()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, notes);
    QFETCH(bool, noCatalogue);

    testutils::Sandbox sandbox;
    sandbox.makeDir("a");
    sandbox.makeDir("b");
    QFile file(sandbox.filePath("file.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();

    const QString root = QDir(sandbox.path()).canonicalPath();
    const QString previous = QDir::currentPath();
    QDir::setCurrent(root);
    for (QString &argument : arguments)
        argument.replace("SANDBOX", root).replace("REL", "a");
    for (QString &path : expected)
        path.replace("SANDBOX", root);
    for (QString &note : notes)
        note.replace("SANDBOX", root);

    QString printed;
    QTextStream errors(&printed);
    bool catalogueSwitchedOff = !noCatalogue;
    const QStringList directories =
        Startup::startDirectories(arguments, errors, &catalogueSwitchedOff);
    QDir::setCurrent(previous);
    errors.flush();
    QCOMPARE(directories, expected);
    QCOMPARE(catalogueSwitchedOff, noCatalogue);
    QCOMPARE(printed.split('\n', Qt::SkipEmptyParts), notes);
}

void tst_Startup::commandLineWithoutDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("errorOutput");

    QTest::newRow("--version") << QStringList { "--version" } << 0
                               << "Kelvaro " KELVARO_VERSION "\n"
                               << "";
    QTest::newRow("-v") << QStringList { "-v" } << 0 << "Kelvaro " KELVARO_VERSION "\n"
                        << "";
    QTest::newRow("--help lists the options") << QStringList { "--help" } << 0 << "--version"
                                              << "";
    QTest::newRow("unknown option: usage error on standard error")
        << QStringList { "--bogus" } << 2 << ""
        << "kelvaro: Unknown option 'bogus'.";
}

// The real program, with no display to connect to: were the GUI application made before the
// options are read, it would abort instead of answering.
void tst_Startup::commandLineWithoutDisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, output);
    QFETCH(QString, errorOutput);

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    environment.remove("QT_QPA_PLATFORM");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(KELVARO_PROGRAM, arguments);
    QVERIFY2(process.waitForFinished(60000), qPrintable(process.errorString()));
    const QString printed = QString::fromLocal8Bit(process.readAllStandardOutput());
    const QString errors = QString::fromLocal8Bit(process.readAllStandardError());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QVERIFY2(process.exitCode() == exitCode, qPrintable(errors));
    if (output.startsWith("--"))
        QVERIFY2(printed.startsWith("Usage: ") && printed.contains(output), qPrintable(printed));
    else
        QCOMPARE(printed, output);
    if (errorOutput.isEmpty())
        QCOMPARE(errors, QString());
    else
        QVERIFY2(errors.startsWith(errorOutput), qPrintable(errors));
}

void tst_Startup::quitAfterFirstScanOnlyWhenAsked_data()
{
    QTest::addColumn<bool>("asked");
    QTest::newRow("variable set: connected") << true;
    QTest::newRow("variable not set: the window stays") << false;
}

void tst_Startup::quitAfterFirstScanOnlyWhenAsked()
{
    struct ReleaseDatabase
    {
        ~ReleaseDatabase() { releaseDatabase(); }
    } releaseAfterwards;
    QFETCH(bool, asked);
    testutils::Sandbox sandbox;
    writeStore({ { "OtherSettings/lastDirectory", sandbox.path() } });
    if (asked)
        qputenv(Startup::quitAfterFirstScanVariable, "1");
    else
        qunsetenv(Startup::quitAfterFirstScanVariable);
    MainWindow window;
    QString printed;
    QTextStream out(&printed);
    Startup::quitAfterFirstScanWhenAsked(window, out);
    qunsetenv(Startup::quitAfterFirstScanVariable);
    QCOMPARE(MainWindowProbe(window).scanFinishedReceivers(), asked ? 1 : 0);
    // Quitting is the program's business (see below), not this test run's.
    QObject::disconnect(&window, &MainWindow::scanFinished, nullptr, nullptr);
    QVERIFY(waitForScanEnd(window));
    QCOMPARE(printed, QString());
}

// What CI relies on for the README's run command: the real program, started on a folder with no
// file type on in a fresh configuration, prints its first scan's status line and ends by itself.
void tst_Startup::programPrintsFirstScansStatusAndQuits()
{
    testutils::Sandbox sandbox;
    const QString photos = sandbox.makeDir("photos");
    QVERIFY(writePhotos(photos, 3, fixture::typicalTags(), "IMG_"));
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", sandbox.makeDir("config"));
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert(Startup::quitAfterFirstScanVariable, "1");
    program.setProcessEnvironment(environment);
    program.start(KELVARO_PROGRAM, { photos });
    QVERIFY2(program.waitForFinished(120000), "the program did not end after its first scan");
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    const QStringList lines = QString::fromUtf8(program.readAllStandardOutput()).split('\n');
    QVERIFY2(
        lines.contains("Valid files: 3 (no file type is switched on: this run reads every type)"),
        qPrintable(lines.join(" | ")));
}

std::unique_ptr<QObject> makeStartupTest()
{
    return std::make_unique<tst_Startup>();
}

#include "tst_startup.moc"
