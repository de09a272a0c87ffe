// kelvaro-exif [--entries | --json] FILE...
//
// Prints for each file the values the scan stores in its table, one line of ';'-separated
// fields, or "FILENAME;not recognised" for a file the reader rejects; a file that cannot be read
// is also named on standard error with the reason. With --entries, the entry description lines
// of every directory walked come before the file's line. With --json, each file's line is one
// JSON object instead, with the 35 mm-equivalent focal length added. Exit code 0 when every file
// was recognised, 1 otherwise, 2 on a usage error (docs/man/kelvaro-exif.1).
#include "texiffile.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
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

const char usage[] = "Usage: kelvaro-exif [--entries | --json] FILE...\n"
                     "Prints per file: FILENAME;DATE;MAKER;MODEL;LENS;FOCALLENGTH;ISO;FNUMBER;"
                     "EXPTIME;EXPTIMESTRING;METERINGMODE;EXPOSUREMODE\n"
                     "  --entries   first print the entry description lines of every directory\n"
                     "  --json      print one JSON object per file instead, with the keys file,\n"
                     "              recognised, date, maker, model, lens, focalLength,\n"
                     "              focalLength35, iso, fNumber, exposureTime, exposureTimeText,\n"
                     "              meteringMode, exposureMode\n"
                     "  -h, --help  print this help and exit\n";

const QStringList jsonValueKeys = {
    "date",          "maker",       "model",   "lens",         "focalLength",
    "focalLength35", "iso",         "fNumber", "exposureTime", "exposureTimeText",
    "meteringMode",  "exposureMode"
};

// Reals are written as QVariant writes them, the same text a CSV export of the table holds.
QString real(double value)
{
    return QVariant(value).toString();
}

// The fields of the ';'-separated line, as the scan stores them in its row.
QStringList fieldsOf(const TExifFile &file)
{
    return { file.fileName(),
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
}

// The same values as JSON, keyed by name; the f-number is the scan's text read as a number, an
// unknown 35 mm focal length is null. A file not recognised has null for every value.
QJsonObject jsonOf(const QString &path, const TExifFile *file)
{
    QJsonObject object { { "file", path }, { "recognised", file != nullptr } };
    if (!file) {
        for (const QString &key : jsonValueKeys)
            object.insert(key, QJsonValue::Null);
        return object;
    }
    const double focalLength35 = file->composite_FocalLength35efl();
    object.insert("date", file->DateTimeOriginal);
    object.insert("maker", file->Make);
    object.insert("model", file->Model);
    object.insert("lens", file->LensModel);
    object.insert("focalLength", file->exif_0x920A_FocalLengthAsReal());
    object.insert("focalLength35", focalLength35 > 0 ? QJsonValue(focalLength35) : QJsonValue());
    object.insert("iso", int(file->ISO));
    object.insert("fNumber", file->exif_0x829D_FNumberAsString().toDouble());
    object.insert("exposureTime", file->exif_0x829A_ExposureTime());
    object.insert("exposureTimeText", file->exif_0x829A_ExposureTimeAsString());
    object.insert("meteringMode", file->exif_0x9207_MeteringModeAsString());
    object.insert("exposureMode", file->exif_0x8822_ExpProgAsString());
    return object;
}

QString jsonLine(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    bool entries = false;
    bool json = false;
    QStringList files;
    const QStringList arguments = app.arguments().mid(1);
    for (const QString &argument : arguments) {
        if (argument == QLatin1String("--entries")) {
            entries = true;
        } else if (argument == QLatin1String("--json")) {
            json = true;
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
    // The entry lines would break the one-object-per-line output.
    if (entries && json) {
        QTextStream(stderr) << "kelvaro-exif: --entries and --json exclude each other\n" << usage;
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
            out() << (json ? jsonLine(jsonOf(path, nullptr))
                           : file.fileName() + QStringLiteral(";not recognised"))
                  << '\n';
            allRecognised = false;
            continue;
        }
        out() << (json ? jsonLine(jsonOf(path, &file)) : fieldsOf(file).join(QLatin1Char(';')))
              << '\n';
    }
    out().flush();
    return allRecognised ? 0 : 1;
}
