// kelvaro-stats [--format text|csv|json] [--statistic TITLE]... [--type SUFFIX]...
//               [--no-subdirectories] [--merge-names] [--friendly-makers] [--no-catalogue]
//               [--maker TEXT]... [--model TEXT]... [--lens TEXT]... [--from DAY] [--to DAY]
//               [--pairs-once] DIRECTORY...
//
// Scans the directories with the window's worker, the user's exclusion lists and range groups,
// and prints every statistic (or the named ones) computed by the window's own statements, over
// the photos the filter options keep. Exit
// code 0, 1 when a directory could not be scanned (the rest are), 2 on bad usage
// (docs/man/kelvaro-stats.1).
#include "headlessscan.h"
#include "kelvaroversion.h"
#include "namerules.h"
#include "rawjpegpairs.h"
#include "statsoptions.h"
#include "statsreport.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>

#include <unistd.h>

namespace {

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

// The directories that can be scanned; the others are named on standard error.
QList<QString> readableDirectories(const QStringList &given)
{
    QList<QString> directories;
    for (const QString &path : given) {
        const QFileInfo info(path);
        QString reason;
        if (!info.exists())
            reason = QStringLiteral("No such file or directory");
        else if (!info.isDir())
            reason = QStringLiteral("Not a directory");
        else if (!info.isReadable() || !info.isExecutable())
            reason = QStringLiteral("Permission denied");
        if (reason.isEmpty())
            directories << info.absoluteFilePath();
        else
            err() << "kelvaro-stats: " << path << ": " << reason << '\n';
    }
    err().flush();
    return directories;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Kelvaro"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KELVARO_VERSION));
    QTextStream out(stdout);

    const ParsedOptions parsed = parseStatsOptions(app.arguments().mid(1));
    switch (parsed.outcome) {
    case ParsedOptions::Outcome::Help:
        out << statsUsage();
        return 0;
    case ParsedOptions::Outcome::Version:
        out << "kelvaro-stats " << KELVARO_VERSION << '\n';
        return 0;
    case ParsedOptions::Outcome::UsageError:
        err() << "kelvaro-stats: " << parsed.message << '\n' << statsUsage();
        return 2;
    case ParsedOptions::Outcome::Run:
        break;
    }
    const StatsOptions &options = parsed.options;

    const QList<QString> directories = readableDirectories(options.directories);
    const bool allScanned = directories.size() == options.directories.size();

    HeadlessScan scan;
    if (!scan.isOpen()) {
        err() << "kelvaro-stats: the in-memory photo database could not be opened\n";
        return 1;
    }
    const StoredScanSettings settings = StoredScanSettings::read();
    const bool showProgress = isatty(STDERR_FILENO);
    scan.run(
        directories, options.patterns, options.includeSubDirs, settings,
        [&](int count) {
            if (showProgress)
                err() << "\rScanned files... " << count << Qt::flush;
        },
        options.useCatalogue);
    if (showProgress)
        err() << '\r' << QString(40, QLatin1Char(' ')) << '\r' << Qt::flush;
    if (!scan.catalogueNote().isEmpty())
        err() << "kelvaro-stats: " << scan.catalogueNote() << Qt::endl;

    NameRules names;
    names.mergeBlanksAndCase = options.mergeNames;
    names.friendlyMakers = options.friendlyMakers;
    names.makerAliases = MakerNames::parseAliases(settings.makerAliases);
    NameRulesSql::setActive(names);

    StatsReport report;
    report.photos = scan.photoCount();
    if (options.filter.pairsOnce)
        report.pairsMerged = RawJpegPairs::markCompanions(scan.database());
    PhotoSelection selection;
    QString error;
    if (!selection.select(scan.database(), StatementFilter(options.filter, {}, names), &error)) {
        err() << "kelvaro-stats: the filter: " << error << '\n';
        return 1;
    }
    if (selection.isFiltered()) {
        report.filter = options.filter.description();
        report.shown = selection.count(scan.database());
    }
    for (const Statistic *statistic : options.statistics) {
        StatsReport::Table table { statistic->tabTitle, {} };
        const QList<QString> ranges = statistic->rangeGroups
            ? settings.rangeGroups.value(statistic->rangeGroups->settingsKey)
            : QList<QString>();
        if (!readStatisticRows(*statistic, scan.database(), ranges, selection, table.rows,
                               &error)) {
            err() << "kelvaro-stats: " << statistic->tabTitle << ": " << error << '\n';
            return 1;
        }
        report.tables.append(table);
    }

    switch (options.format) {
    case StatsOptions::Format::Text:
        out << report.text();
        break;
    case StatsOptions::Format::Csv:
        out << report.csv();
        break;
    case StatsOptions::Format::Json:
        out << report.json();
        break;
    }
    return allScanned ? 0 : 1;
}
