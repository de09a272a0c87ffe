#pragma once

#include <QRandomGenerator>
#include <QString>

// Writes a synthetic photo library: photos of all nine file types from several cameras and lenses,
// in one folder per year, with a few files that no reader accepts. The same seed always gives the
// same library.
class SampleLibraryWriter
{
public:
    static constexpr int defaultFileCount = 600;
    // Every this-many-th file is unreadable, every this-many-th photo lacks DateTimeOriginal.
    static constexpr int unreadableEvery = 50;
    static constexpr int withoutDateEvery = 40;

    explicit SampleLibraryWriter(quint32 seed = 20190614);

    // Writes fileCount files below directory; false as soon as one cannot be written.
    bool write(const QString &directory, int fileCount = defaultFileCount);

    int photosWritten() const { return photos; }
    int unreadableWritten() const { return unreadable; }
    QString lastError() const { return error; }

private:
    bool writePhoto(const QString &directory, int index);
    bool writeUnreadable(const QString &directory, int index);
    QString yearFolder(const QString &directory, int year);

    QRandomGenerator random;
    int photos = 0;
    int unreadable = 0;
    QString error;
};
