// The manual pages under docs/man are the source of the installed ones. Each program's --help
// and its page must name the same options, and the exit codes the page documents must be the
// ones the program gives.
#include "testrunner.h"
#include "testutils.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

namespace {

struct Run
{
    QStringList arguments; // "MISSING" stands for a file that does not exist
    int exitCode;
};

struct Finished
{
    int exitCode = -1;
    QString output;
};

// Without a display: the programs must answer their options in a bare terminal.
Finished runProgram(const QString &program, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    Finished finished;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
        finished.exitCode = process.exitCode();
    finished.output = QString::fromLocal8Bit(process.readAllStandardOutput());
    return finished;
}

// Options as they are written in a help text or a page's term line: "-h", "--help-all".
QSet<QString> optionsIn(const QString &text)
{
    static const QRegularExpression option(
        QStringLiteral("(?:^|[\\s\\[,])(--?[A-Za-z][A-Za-z-]*)"));
    QSet<QString> options;
    for (const QRegularExpressionMatch &match : option.globalMatch(text))
        options.insert(match.captured(1));
    return options;
}

// The lines of one .SH section of a roff page.
QStringList section(const QString &page, const QString &name)
{
    QStringList lines;
    bool inside = false;
    for (const QString &line : page.split(u'\n')) {
        if (line.startsWith(QLatin1String(".SH ")))
            inside = line.mid(4).remove(u'"') == name;
        else if (inside)
            lines.append(line);
    }
    return lines;
}

// The term lines of a section: each line after a .TP, with the font escapes and \- undone.
QStringList terms(const QStringList &lines)
{
    QStringList result;
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        if (lines.at(i) == QLatin1String(".TP")) {
            QString term = lines.at(i + 1);
            term.replace(QLatin1String("\\-"), QLatin1String("-"));
            term.remove(QRegularExpression(QStringLiteral("\\\\f[BRI]")));
            result.append(term);
        }
    }
    return result;
}

} // namespace

Q_DECLARE_METATYPE(QList<Run>)

class tst_ManPages : public QObject
{
    Q_OBJECT

private slots:
    void pageMatchesProgram_data();
    void pageMatchesProgram();
};

void tst_ManPages::pageMatchesProgram_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QList<Run>>("runs");

    QTest::newRow("kelvaro") << QStringLiteral(KELVARO_PROGRAM) << QStringLiteral("kelvaro.1")
                             << QList<Run> { { { "--version" }, 0 }, { { "--bogus" }, 2 } };
    QTest::newRow("kelvaro-exif") << QStringLiteral(KELVARO_EXIF_TOOL)
                                  << QStringLiteral("kelvaro-exif.1")
                                  << QList<Run> { { { "--help" }, 0 },
                                                  { { "MISSING" }, 1 },
                                                  { {}, 2 } };
    QTest::newRow("kelvaro-stats")
        << QStringLiteral(KELVARO_STATS_TOOL) << QStringLiteral("kelvaro-stats.1")
        << QList<Run> { { { "--version" }, 0 }, { { "MISSING" }, 1 }, { {}, 2 } };
}

void tst_ManPages::pageMatchesProgram()
{
    QFETCH(QString, program);
    QFETCH(QString, page);
    QFETCH(QList<Run>, runs);

    QFile file(QStringLiteral(KELVARO_MAN_DIR "/") + page);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
    const QString source = QString::fromUtf8(file.readAll());

    const Finished help = runProgram(program, { QStringLiteral("--help") });
    QCOMPARE(help.exitCode, 0);
    const QSet<QString> listed = optionsIn(help.output);
    QVERIFY2(!listed.isEmpty(), qPrintable(help.output));
    const QSet<QString> documented =
        optionsIn(terms(section(source, QStringLiteral("OPTIONS"))).join(u'\n'));
    const QSet<QString> undocumented = listed - documented;
    const QSet<QString> unlisted = documented - listed;
    QVERIFY2(undocumented.isEmpty(),
             qPrintable("not in the page: " + QStringList(undocumented.values()).join(' ')));
    QVERIFY2(unlisted.isEmpty(),
             qPrintable("not in --help: " + QStringList(unlisted.values()).join(' ')));

    QSet<int> documentedCodes;
    for (const QString &term : terms(section(source, QStringLiteral("EXIT STATUS")))) {
        bool number = false;
        documentedCodes.insert(term.mid(3).toInt(&number));
        QVERIFY2(term.startsWith(QLatin1String(".B ")) && number, qPrintable(term));
    }
    testutils::Sandbox sandbox;
    QSet<int> givenCodes;
    for (Run run : runs) {
        run.arguments.replaceInStrings(QStringLiteral("MISSING"),
                                       sandbox.filePath(QStringLiteral("nonexistent.jpg")));
        QCOMPARE(runProgram(program, run.arguments).exitCode, run.exitCode);
        givenCodes.insert(run.exitCode);
    }
    QCOMPARE(documentedCodes, givenCodes);
}

// The programs are run as processes and their output read: no GUI here.
int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    tst_ManPages test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_manpages.moc"
