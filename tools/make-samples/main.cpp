#include "samplelibrarywriter.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kelvaro-make-samples"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral(
            "Writes %1 synthetic photos (CR2, CR3, NEF, ARW, RAF, RW2, ORF, DNG, JPEG) of "
            "several cameras into DIR, one folder per year, some of them unreadable. "
            "The same library is written every time.")
            .arg(SampleLibraryWriter::defaultFileCount));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("DIR"),
                                 QStringLiteral("Folder to write into; made if missing."));
    parser.process(app);

    QTextStream err(stderr);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 1) {
        err << parser.helpText();
        return 2;
    }
    const QString directory = QDir(arguments.first()).absolutePath();
    if (!QDir().mkpath(directory)) {
        err << "Cannot create " << directory << '\n';
        return 1;
    }

    SampleLibraryWriter writer;
    if (!writer.write(directory)) {
        err << "Stopped: " << writer.lastError() << '\n';
        return 1;
    }
    QTextStream(stdout) << "Wrote " << writer.photosWritten() + writer.unreadableWritten()
                        << " files to " << directory << ": " << writer.photosWritten()
                        << " photos, " << writer.unreadableWritten() << " unreadable files\n";
    return 0;
}
