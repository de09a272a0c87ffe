#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <memory>

#ifndef Q_OS_UNIX
class QFile;
#endif

// Reads 8-, 16- and 32-bit values in a switchable byte order from a file opened read-only,
// with the observable behaviour of a QDataStream on a QFile: positions past the end of the
// file may be sought, and reads there yield zeros. Unlike such a stream it doesn't make a
// system call per value: the file is loaded in blocks on demand (a few are cached), and the
// total loaded per file is bounded, beyond which reads yield zeros as well.
class ExifByteReader
{
public:
    ExifByteReader();
    ~ExifByteReader();
    ExifByteReader(const ExifByteReader &) = delete;
    ExifByteReader &operator=(const ExifByteReader &) = delete;

    // Opens the file read-only; a file that can't be opened reads as empty.
    bool open(const QString &path);
    // Reads these bytes instead of a file, with the same blocks, budget and zeros past the end.
    // Replaces the source read so far; the position goes to 0, the budget used stays.
    void openBytes(QByteArray bytes);
    // Releases the file handle (or the bytes); values already loaded stay readable.
    void close();
    bool isOpen() const;

    void setBigEndian(bool big) { bigEndian = big; }
    bool isBigEndian() const { return bigEndian; }

    qint64 size() const { return fileSize; }
    qint64 pos() const { return position; }
    // Negative positions are refused like QFile::seek refuses them; the position stays.
    bool seek(qint64 pos);
    void skip(qint64 count) { seek(position + count); }

    quint8 readU8();
    quint16 readU16();
    quint32 readU32();
    // Reads count bytes (zeros past the end), advancing the position by count; at most
    // maxKept bytes are returned, the rest is skipped.
    QByteArray readBytes(qint64 count, qint64 maxKept);
    // Reads single bytes from pos until a zero byte or maxLength bytes; the position is kept.
    QByteArray readZeroTerminated(qint64 pos, int maxLength);
    // The same bytes as Latin-1 text; never a null QString, also when empty.
    QString readLatin1Text(qint64 pos, int maxLength);

    qint64 bytesLoaded() const { return loaded; }

private:
    struct Block
    {
        qint64 start = -1;
        QByteArray data;
        quint64 lastUse = 0;
    };

    // The loaded block holding pos, or nullptr when pos is past the end or over budget.
    const Block *blockAt(qint64 pos);
    void copyOut(qint64 pos, char *out, qint64 count);
    const uchar *inCurrentBlock(qint64 pos, qint64 count) const;

    // Reads up to count bytes at offset from the open file; the number read, or -1.
    qint64 readAt(qint64 offset, char *out, qint64 count);

    QByteArray source; // the bytes read in place of a file
    bool fromBytes = false;
#ifdef Q_OS_UNIX
    int fd = -1; // positioned reads need neither a seek nor a QFile per photo
#else
    std::unique_ptr<QFile> file;
#endif
    qint64 fileSize = 0;
    qint64 position = 0;
    qint64 loaded = 0;
    quint64 useClock = 0;
    bool bigEndian = true;
    const Block *current = nullptr;
    std::array<Block, 4> blocks;
};
