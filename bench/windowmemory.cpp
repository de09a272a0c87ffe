// The real main window over a photo library: its resident memory once the first scan is done and
// the chart of the current tab has been painted, and the time from the start of that scan to the
// painted chart. Built and shown as main() does it (style sheet, window), with a settings store of
// its own in which only "Include SubDirectories" is on; the directory is given on the command
// line, so every file type is read. Needs a display (xvfb-run).
//
//   kelvaro_bench_window DIRECTORY
//
// Prints one line: RESULT photos=N rss_kib=K hwm_kib=H first_chart_ms=T scan_ms=S db_kib=D
// dateien_kib=A photoinfo_kib=B indexes_kib=I sort_ms=O (the photo database's pages: all, the two
// tables, their indexes; then, after the memory was read, the Data tab sorted by file name
// descending through its header and its last row read).
#include "mainwindow.h"
#include "photodatabase.h"
#include "startup.h"

#include <QApplication>
#include <QChartView>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSettings>
#include <QSqlQuery>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <cstdio>
#include <functional>

namespace {

// A field of /proc/self/status in KiB ("VmRSS", "VmHWM"), -1 when not found.
qint64 statusKib(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly | QIODevice::Text))
        return -1;
    const QByteArray prefix = QByteArray(field) + ':';
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(prefix))
            return line.mid(prefix.size()).trimmed().split(' ').first().toLongLong();
    }
    return -1;
}

// Bytes of the photo database's pages, in KiB: "db" all of them, "dateien" and "photoinfo" the
// tables, "indexes" every index. Read from SQLite's page statistics on a connection of its own.
QMap<QString, qint64> databaseKib()
{
    QMap<QString, qint64> kib;
    {
        QSqlDatabase db = PhotoDatabase::addConnection(QStringLiteral("WindowBench"));
        QSqlQuery query(db);
        if (db.open()
            && query.exec(
                QStringLiteral("SELECT s.name, m.type, sum(s.pgsize) FROM dbstat s "
                               "LEFT JOIN sqlite_master m ON m.name = s.name GROUP BY s.name"))) {
            while (query.next()) {
                const qint64 size = query.value(2).toLongLong() / 1024;
                kib["db"] += size;
                if (query.value(1).toString() == QLatin1String("index")
                    || query.value(0).toString().startsWith(QLatin1String("sqlite_autoindex")))
                    kib["indexes"] += size;
                else
                    kib[query.value(0).toString().toLower()] += size;
            }
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("WindowBench"));
    return kib;
}

// Lets the first paint of any chart view's viewport after `armed` call `painted`.
class FirstChartPaint : public QObject
{
public:
    bool armed = false;
    std::function<void()> painted;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (armed && event->type() == QEvent::Paint) {
            armed = false;
            // After the chart view's own paint, so that what is measured includes the drawing.
            QTimer::singleShot(0, this, painted);
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: kelvaro_bench_window DIRECTORY\n");
        return 2;
    }
    QTemporaryDir configHome;
    if (!configHome.isValid())
        return 1;
    qputenv("XDG_CONFIG_HOME", configHome.path().toLocal8Bit());
    qputenv("XDG_CACHE_HOME", (configHome.path() + "/cache").toLocal8Bit());

    QApplication::setApplicationName("Kelvaro");
    QApplication app(argc, argv);
    QTextStream out(stdout);
    Startup::applyStyleSheet(app, ":/qdarkstyle/style.qss", out);
    {
        QSettings store(QSettings::IniFormat, QSettings::UserScope, "Kelvaro", "Kelvaro");
        store.setValue("OtherSettings/includeSubDirs", true);
    }

    FirstChartPaint paintWatch;
    QElapsedTimer clock;
    qint64 scanMs = -1;
    QString status;
    int result = 1;

    // The constructor starts the first scan.
    clock.start();
    MainWindow window(QStringList { QString::fromLocal8Bit(argv[1]) });
    for (QChartView *view : window.findChildren<QChartView *>())
        view->viewport()->installEventFilter(&paintWatch);
    QObject::connect(&window, &MainWindow::scanFinished, &window, [&](const QString &text) {
        scanMs = clock.elapsed();
        status = text;
        paintWatch.armed = true;
    });
    paintWatch.painted = [&] {
        result = 0;
        const qint64 firstChartMs = clock.elapsed();
        const qint64 rssKib = statusKib("VmRSS");
        const qint64 hwmKib = statusKib("VmHWM");
        const QString photos =
            QRegularExpression(QStringLiteral("(\\d+)")).match(status).captured(1);
        out << "RESULT photos=" << photos << " rss_kib=" << rssKib << " hwm_kib=" << hwmKib
            << " first_chart_ms=" << firstChartMs << " scan_ms=" << scanMs;
        const QMap<QString, qint64> kib = databaseKib();
        for (const char *part : { "db", "dateien", "photoinfo", "indexes" })
            out << ' ' << part << "_kib=" << kib.value(QLatin1String(part));
        auto *rawData = window.findChild<QTableView *>(QStringLiteral("tableViewRawData"));
        QElapsedTimer sortClock;
        sortClock.start();
        rawData->sortByColumn(1, Qt::DescendingOrder);
        const QAbstractItemModel *model = rawData->model();
        const QVariant lastName = model->index(model->rowCount() - 1, 1).data();
        out << " sort_ms=" << sortClock.elapsed() << Qt::endl;
        if (!lastName.isValid())
            result = 1;
        // exit(), not quit(): closing the window would ask the quit question.
        QCoreApplication::exit(0);
    };
    window.show();
    app.exec();
    return result;
}
