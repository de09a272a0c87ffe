// kelvaro-exif [--entries] FILE...
//
// Prints for each file the values the scan stores in its table, one line of ';'-separated
// fields, or "FILENAME;not recognised" for a file the reader rejects; a file that cannot be read
// is also named on standard error with the reason. With --entries, the entry description lines
// of every directory walked come before the file's line. Exit code 0 when every file was
// recognised, 1 otherwise, 2 on a usage error (docs/man/kelvaro-exif.1).
#include "texiffile.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QStringList>
#include <QTextStream>
#include <QVariant>

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QtMessageHandler defaultHandler = nullptr;

void printEntryLines(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (qstrcmp(context.category, "kelvaro.exif.entries") == 0)
        out() << message << '\n';
    else if (defaultHandler)
        defaultHandler(type, context, message);
}

const char usage[] = "Usage: kelvaro-exif [--entries] FILE...\n"
                     "Prints per file: FILENAME;DATE;MAKER;MODEL;LENS;FOCALLENGTH;ISO;FNUMBER;"
                     "EXPTIME;EXPTIMESTRING;METERINGMODE;EXPOSUREMODE\n"
                     "  --entries   first print the entry description lines of every directory\n"
                     "  -h, --help  print this help and exit\n";

// Reals are written as QVariant writes them, the same text a CSV export of the table holds.
QString real(double value)
{
    return QVariant(value).toString();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    bool entries = false;
    QStringList files;
    const QStringList arguments = app.arguments().mid(1);
    for (const QString &argument : arguments) {
        if (argument == QLatin1String("--entries")) {
            entries = true;
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            out() << usage;
            return 0;
        } else if (argument.startsWith(QLatin1Char('-'))) {
            QTextStream(stderr) << "kelvaro-exif: unknown option " << argument << '\n' << usage;
            return 2;
        } else {
            files.append(argument);
        }
    }
    if (files.isEmpty()) {
        QTextStream(stderr) << usage;
        return 2;
    }
    if (entries) {
        QLoggingCategory::setFilterRules(QStringLiteral("kelvaro.exif.entries.debug=true"));
        defaultHandler = qInstallMessageHandler(printEntryLines);
    }

    bool allRecognised = true;
    for (const QString &path : std::as_const(files)) {
        TExifFile file(path);
        if (!file.processFile()) {
            // The reader says only no; the reason an unreadable file gives is worth telling.
            QFile probe(path);
            if (!probe.open(QIODevice::ReadOnly))
                QTextStream(stderr)
                    << "kelvaro-exif: " << path << ": " << probe.errorString() << '\n';
            out() << file.fileName() << ";not recognised\n";
            allRecognised = false;
            continue;
        }
        const QStringList fields = { file.fileName(),
                                     file.DateTimeOriginal,
                                     file.Make,
                                     file.Model,
                                     file.LensModel,
                                     real(file.exif_0x920A_FocalLengthAsReal()),
                                     QString::number(file.ISO),
                                     file.exif_0x829D_FNumberAsString(),
                                     real(file.exif_0x829A_ExposureTime()),
                                     file.exif_0x829A_ExposureTimeAsString(),
                                     file.exif_0x9207_MeteringModeAsString(),
                                     file.exif_0x8822_ExpProgAsString() };
        out() << fields.join(QLatin1Char(';')) << '\n';
    }
    out().flush();
    return allRecognised ? 0 : 1;
}
