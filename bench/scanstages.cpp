// Where a scan's time goes: the same walk, read and insert as TMyWorkerObject, done in stages on
// one thread and timed per stage (median of the runs, after a warm-up):
//   walk    QDirIterator with the nine patterns, subdirectories on
//   read    walk + TExifFile::processFile() + the values the row takes
//   insert  read + binding and executing the prepared INSERT, one autocommit row per photo
#include "benchstats.h"
#include "photodatabase.h"
#include "texiffile.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QSqlQuery>
#include <QVariant>

#include <cstdlib>

namespace {

enum class Stage { Walk, Read, Insert };

const QList<QString> patterns { "*.arw", "*.raf", "*.nef", "*.cr2", "*.cr3",
                                "*.rw2", "*.jpg", "*.dng", "*.orf" };

long runStage(Stage stage, const QString &root, QSqlQuery &insert)
{
    long files = 0;
    QDirIterator it(root, patterns, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        ++files;
        if (stage == Stage::Walk)
            continue;
        TExifFile exif(path);
        if (!exif.processFile())
            continue;
        const QString fileName = exif.fileName();
        const double focalLength = exif.exif_0x920A_FocalLengthAsReal();
        const QString fNumber = exif.exif_0x829D_FNumberAsString();
        const double exposure = exif.exif_0x829A_ExposureTime();
        const QString exposureText = exif.exif_0x829A_ExposureTimeAsString();
        const QString metering = exif.exif_0x9207_MeteringModeAsString();
        const QString program = exif.exif_0x8822_ExpProgAsString();
        if (stage == Stage::Read)
            continue;
        insert.bindValue(QStringLiteral(":filename"), fileName);
        insert.bindValue(QStringLiteral(":date"), exif.DateTimeOriginal);
        insert.bindValue(QStringLiteral(":maker"), exif.Make);
        insert.bindValue(QStringLiteral(":model"), exif.Model);
        insert.bindValue(QStringLiteral(":lens"), exif.LensModel);
        insert.bindValue(QStringLiteral(":focallength"), focalLength);
        insert.bindValue(QStringLiteral(":iso"), int(exif.ISO));
        insert.bindValue(QStringLiteral(":fnumber"), fNumber);
        insert.bindValue(QStringLiteral(":exptime"), exposure);
        insert.bindValue(QStringLiteral(":exptimestring"), exposureText);
        insert.bindValue(QStringLiteral(":meteringmode"), metering);
        insert.bindValue(QStringLiteral(":exposuremode"), program);
        PhotoDatabase::execInsert(insert);
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
    QSqlQuery insert(db);
    insert.prepare(PhotoDatabase::insertStatement);

    std::printf("RESULT stages");
    double previous = 0;
    for (Stage stage : { Stage::Walk, Stage::Read, Stage::Insert }) {
        std::vector<double> seconds;
        long files = 0;
        for (int run = 0; run <= runs; ++run) {
            PhotoDatabase::clear(mainDb);
            const auto start = benchstats::Clock::now();
            files = runStage(stage, root, insert);
            if (run > 0)
                seconds.push_back(benchstats::secondsBetween(start, benchstats::Clock::now()));
        }
        const double perFile = benchstats::median(seconds) / files * 1e6;
        const char *name =
            stage == Stage::Walk ? "walk" : (stage == Stage::Read ? "read" : "insert");
        std::printf(" %s_us=%.2f %s_added_us=%.2f", name, perFile, name, perFile - previous);
        previous = perFile;
    }
    std::printf("\n");
    insert = QSqlQuery();
    return 0;
}
