// The statements of every statistic under a filter, over a photo table of 200,000 rows built
// like the chart benchmark's (the same seeded generator, the statistic indexes built as a scan
// builds them): each filter's time for all statistics, and compare mode (the same statistics over
// a second date range). No window: what the filter engine costs on its own.
//
//   kelvaro_bench_filter [ROWS [TIMED_RUNS]]
#include "benchdata.h"
#include "benchstats.h"
#include "filetypes.h"
#include "filteredstatement.h"
#include "photodatabase.h"
#include "photodate.h"
#include "photofolders.h"
#include "photoselection.h"
#include "rawjpegpairs.h"
#include "statistic.h"
#include "statisticrows.h"

#include <QCoreApplication>
#include <QSqlQuery>

#include <cstdlib>

namespace {

// Rows with the benchmark corpus' cameras, lenses and dates; every fourth photo a JPEG beside a
// raw file of the same name, so that pairs exist.
bool fillTable(QSqlDatabase &db, int rows)
{
    using namespace benchdata;
    Random random(0x46696c746572ULL);
    db.transaction();
    QSqlQuery insert(db);
    insert.prepare(PhotoDatabase::insertStatement);
    QSqlQuery info(db);
    info.prepare(PhotoDatabase::insertInfoStatement);
    PhotoFolders folders(db);
    const QDateTime first(QDate(2020, 1, 1), QTime(0, 0));
    for (int row = 0; row < rows; ++row) {
        const QDateTime when =
            first.addDays(random.below(5 * 365)).addSecs(7 * 3600 + random.below(16 * 3600));
        const int cameraIndex = random.below(cameras().size());
        const Photo p = randomPhoto(random, cameraIndex, when);
        const fixture::PhotoTags &t = p.tags;
        const bool companion = row % 4 == 3;
        const QString path = QStringLiteral("/photos/%1/IMG_%2%3")
                                 .arg(row / 1000)
                                 .arg(companion ? row - 1 : row)
                                 .arg(companion ? ".JPG" : cameras().at(cameraIndex).rawSuffix);
        const QVariantList values {
            path.section('/', -1),
            t.dateTimeOriginal,
            t.make,
            t.model,
            random.chance(3) ? QStringLiteral("n.a.") : t.lensModel,
            double(t.focalLength->num) / t.focalLength->den,
            int(*t.iso),
            QString::number(double(t.fNumber->num) / t.fNumber->den),
            double(t.exposureTime->num) / t.exposureTime->den,
            QStringLiteral("%1/%2").arg(t.exposureTime->num).arg(t.exposureTime->den),
            QStringLiteral("Pattern"),
            QStringLiteral("Manual")
        };
        const QStringList names { ":filename", ":date",          ":maker",        ":model",
                                  ":lens",     ":focallength",   ":iso",          ":fnumber",
                                  ":exptime",  ":exptimestring", ":meteringmode", ":exposuremode" };
        for (int i = 0; i < names.size(); ++i)
            insert.bindValue(names.at(i), values.at(i));
        const auto hour = PhotoDate::hour(t.dateTimeOriginal);
        const QDate day = PhotoDate::date(t.dateTimeOriginal);
        info.bindValue(":folder", folders.idOfFile(path));
        info.bindValue(":filetype", FileTypes::nameOf(path));
        info.bindValue(":focallength35", double(t.focalLength->num) / t.focalLength->den * 1.5);
        info.bindValue(":cropfactor", 1.5);
        info.bindValue(":hour", hour ? QVariant(*hour) : QVariant());
        info.bindValue(":weekday", day.isValid() ? QVariant(day.dayOfWeek()) : QVariant());
        if (!insert.exec() || !info.exec()) {
            db.rollback();
            return false;
        }
    }
    return db.commit();
}

// Every statistic of the registry once over the filter's photos; false when one fails.
bool readEverything(const QSqlDatabase &db, const StatementFilter &filter,
                    PhotoSelection &selection)
{
    QString error;
    if (!selection.select(db, filter, &error)) {
        std::fprintf(stderr, "selecting: %s\n", qPrintable(error));
        return false;
    }
    for (const Statistic &statistic : Statistics::all()) {
        QList<StatisticRow> rows;
        if (!readStatisticRows(statistic, db, {}, selection, rows, &error)) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(statistic.key), qPrintable(error));
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int rows = argc > 1 ? std::atoi(argv[1]) : 200000;
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;

    QSqlDatabase db;
    if (!PhotoDatabase::openMainConnection(db) || !fillTable(db, rows)) {
        std::fprintf(stderr, "the photo table could not be filled\n");
        return 1;
    }
    QStringList rangeIndexes;
    for (const Statistic &statistic : Statistics::all())
        rangeIndexes << statistic.rangeIndexStatement();
    PhotoDatabase::createStatisticIndexes(db, rangeIndexes);
    const auto pairsStart = benchstats::Clock::now();
    const int pairs = RawJpegPairs::markCompanions(db);
    const double pairsMs = benchstats::secondsBetween(pairsStart, benchstats::Clock::now()) * 1000;

    PhotoFilter maker;
    maker.makers = QStringList { "Canon" };
    PhotoFilter year;
    year.from = QDate(2021, 1, 1);
    year.to = QDate(2021, 12, 31);
    PhotoFilter makerYear = year;
    makerYear.makers = maker.makers;
    PhotoFilter everything = makerYear;
    everything.fileTypes = QStringList { "CR3", "CR2", "JPG" };
    everything.pairsOnce = true;
    PhotoFilter pairsOnly;
    pairsOnly.pairsOnce = true;
    PhotoFilter otherYear = makerYear;
    otherYear.from = QDate(2023, 1, 1);
    otherYear.to = QDate(2023, 12, 31);
    const QList<std::pair<const char *, QList<PhotoFilter>>> cases {
        { "none", { PhotoFilter() } },
        { "maker", { maker } },
        { "year", { year } },
        { "maker_year", { makerYear } },
        { "pairs", { pairsOnly } },
        { "every_list", { everything } },
        { "compare_maker_years", { makerYear, otherYear } },
    };
    PhotoSelection selections[] { PhotoSelection(QStringLiteral("PeriodA")),
                                  PhotoSelection(QStringLiteral("PeriodB")) };
    std::string text;
    for (const auto &[name, filters] : cases) {
        std::vector<double> ms;
        for (int run = 0; run <= runs; ++run) {
            const auto start = benchstats::Clock::now();
            for (qsizetype i = 0; i < filters.size(); ++i) {
                if (!readEverything(db, StatementFilter(filters.at(i)), selections[i]))
                    return 1;
            }
            if (run > 0)
                ms.push_back(benchstats::secondsBetween(start, benchstats::Clock::now()) * 1000);
        }
        char item[128];
        std::snprintf(item, sizeof item, " %s_ms=%.1f %s_photos=%lld", name, benchstats::median(ms),
                      name, selections[0].count(db));
        text += item;
    }
    std::printf("RESULT filter rows=%d statistics=%d pairs=%d mark_pairs_ms=%.1f%s\n", rows,
                int(Statistics::all().size()), pairs, pairsMs, text.c_str());
    return 0;
}
