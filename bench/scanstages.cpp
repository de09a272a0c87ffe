// Where a scan's time goes: the same walk, read and insert as TMyWorkerObject, done in stages on
// one thread and timed per stage (median of the runs, after a warm-up):
//   walk    QDirIterator over the files, subdirectories on, with the ten types' patterns
//   read    walk + TExifFile::processFile() + the values the row takes
//   insert  read + binding and executing the prepared INSERT, one autocommit row per photo
// Then the reading alone per kind of file, over the files of the last walk: JPEG, HEIF with the
// Exif item near the start (.HEIC) and HEIF with it at the end (.HIF).
#include "benchstats.h"
#include "filenamepatterns.h"
#include "photodatabase.h"
#include "photorowinserter.h"
#include "texiffile.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>

#include <cstdlib>
#include <memory>

namespace {

enum class Stage { Walk, Read, Insert };

const QList<QString> patterns { "*.arw", "*.raf", "*.nef",  "*.cr2",  "*.cr3", "*.rw2", "*.jpg",
                                "*.dng", "*.orf", "*.heic", "*.heif", "*.hif", "*.avif" };

// Median per-file time of processFile() and the row's values over these files, in microseconds.
double readMicroseconds(const QStringList &files, int runs)
{
    std::vector<double> seconds;
    for (int run = 0; run <= runs; ++run) {
        const auto start = benchstats::Clock::now();
        for (const QString &path : files) {
            TExifFile exif(path);
            if (exif.processFile())
                PhotoRowInserter::rowValues(exif);
        }
        if (run > 0)
            seconds.push_back(benchstats::secondsBetween(start, benchstats::Clock::now()));
    }
    return files.isEmpty() ? 0.0 : benchstats::median(seconds) / files.size() * 1e6;
}

long runStage(Stage stage, const QString &root, PhotoRowInserter &inserter)
{
    const FileNamePatterns matcher(patterns);
    long files = 0;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (!matcher.matches(it.fileName()) || !it.fileInfo().isFile())
            continue;
        ++files;
        if (stage == Stage::Walk)
            continue;
        TExifFile exif(path);
        if (!exif.processFile())
            continue;
        const QVariantList values = PhotoRowInserter::rowValues(exif);
        if (stage == Stage::Read)
            continue;
        inserter.insert(values);
    }
    return files;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s ROOT [RUNS]\n", argv[0]);
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
    QSqlDatabase mainDb;
    if (!PhotoDatabase::openMainConnection(mainDb))
        return 1;
    QSqlDatabase db = PhotoDatabase::addConnection(PhotoDatabase::workerConnection);
    db.open();
    std::unique_ptr<PhotoRowInserter> inserter = PhotoRowInserter::create(db);

    std::printf("RESULT stages");
    double previous = 0;
    for (Stage stage : { Stage::Walk, Stage::Read, Stage::Insert }) {
        std::vector<double> seconds;
        long files = 0;
        for (int run = 0; run <= runs; ++run) {
            PhotoDatabase::clear(mainDb);
            const auto start = benchstats::Clock::now();
            files = runStage(stage, root, *inserter);
            if (run > 0)
                seconds.push_back(benchstats::secondsBetween(start, benchstats::Clock::now()));
        }
        const double perFile = benchstats::median(seconds) / files * 1e6;
        const char *name =
            stage == Stage::Walk ? "walk" : (stage == Stage::Read ? "read" : "insert");
        std::printf(" %s_us=%.2f %s_added_us=%.2f", name, perFile, name, perFile - previous);
        previous = perFile;
    }

    QStringList jpeg, heifStart, heifEnd;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (path.endsWith(QLatin1String(".JPG")))
            jpeg << path;
        else if (path.endsWith(QLatin1String(".HEIC")))
            heifStart << path;
        else if (path.endsWith(QLatin1String(".HIF")))
            heifEnd << path;
    }
    std::printf(" jpeg_files=%lld read_jpeg_us=%.2f heif_start_files=%lld read_heif_start_us=%.2f"
                " heif_end_files=%lld read_heif_end_us=%.2f",
                qlonglong(jpeg.size()), readMicroseconds(jpeg, runs), qlonglong(heifStart.size()),
                readMicroseconds(heifStart, runs), qlonglong(heifEnd.size()),
                readMicroseconds(heifEnd, runs));
    std::printf("\n");
    inserter.reset(); // the statement goes before its connection
    return 0;
}
