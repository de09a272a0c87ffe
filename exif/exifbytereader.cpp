#include "exifbytereader.h"

#include "exifreaderlimits.h"

#include <QFile>

#include <cerrno>
#include <cstring>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <QFileInfo>
#endif

ExifByteReader::ExifByteReader() = default;

ExifByteReader::~ExifByteReader()
{
    close();
}

bool ExifByteReader::open(const QString &path)
{
    close();
    fileSize = 0;
#ifdef Q_OS_UNIX
    // One open and one fstat: non-blocking, so that a FIFO can't stall the open, and only regular
    // files (or links to them) are read.
    fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat info;
    if (fd < 0 || ::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        close();
        return false;
    }
    fileSize = info.st_size;
#else
    // Only regular files (or links to them): opening a FIFO would block until someone writes.
    file = std::make_unique<QFile>(path);
    if (!QFileInfo(path).isFile() || !file->open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        file.reset();
        return false;
    }
    fileSize = file->size();
#endif
    return true;
}

void ExifByteReader::openBytes(QByteArray bytes)
{
    close();
    for (Block &block : blocks)
        block = Block();
    current = nullptr;
    source = std::move(bytes);
    fromBytes = true;
    fileSize = source.size();
    position = 0;
}

void ExifByteReader::close()
{
    source.clear();
    fromBytes = false;
#ifdef Q_OS_UNIX
    if (fd >= 0)
        ::close(fd);
    fd = -1;
#else
    file.reset();
#endif
}

bool ExifByteReader::isOpen() const
{
    if (fromBytes)
        return true;
#ifdef Q_OS_UNIX
    return fd >= 0;
#else
    return file != nullptr;
#endif
}

qint64 ExifByteReader::readAt(qint64 offset, char *out, qint64 count)
{
    if (!isOpen())
        return -1;
    if (fromBytes) {
        const qint64 n = qBound<qint64>(0, source.size() - offset, count);
        std::memcpy(out, source.constData() + offset, size_t(n));
        return n;
    }
#ifdef Q_OS_UNIX
    qint64 done = 0;
    while (done < count) {
        const ssize_t got = ::pread(fd, out + done, size_t(count - done), off_t(offset + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return done > 0 ? done : got;
        done += got;
    }
    return done;
#else
    if (file->pos() != offset && !file->seek(offset))
        return -1;
    return file->read(out, count);
#endif
}

bool ExifByteReader::seek(qint64 pos)
{
    if (pos < 0)
        return false;
    position = pos;
    return true;
}

const ExifByteReader::Block *ExifByteReader::blockAt(qint64 pos)
{
    if (pos < 0 || pos >= fileSize)
        return nullptr;
    const qint64 start = pos - pos % exiflimits::blockSize;
    Block *victim = &blocks[0];
    for (Block &block : blocks) {
        if (block.start == start) {
            block.lastUse = ++useClock;
            return &block;
        }
        if (block.lastUse < victim->lastUse)
            victim = &block;
    }
    // A block that isn't loaded yet needs the file (still open) and budget left.
    if (!isOpen() || loaded >= exiflimits::maxBytesLoaded)
        return nullptr;
    const qint64 want = qMin(exiflimits::blockSize, fileSize - start);
    victim->data.resize(want);
    const qint64 got = readAt(start, victim->data.data(), want);
    victim->data.resize(qMax<qint64>(got, 0));
    loaded += want;
    victim->start = start;
    victim->lastUse = ++useClock;
    return victim;
}

void ExifByteReader::copyOut(qint64 pos, char *out, qint64 count)
{
    while (count > 0) {
        const Block *block =
            (current && pos >= current->start && pos < current->start + current->data.size())
            ? current
            : blockAt(pos);
        if (!block || pos - block->start >= block->data.size()) {
            std::memset(out, 0, size_t(count));
            return;
        }
        current = block;
        const qint64 inBlock = pos - block->start;
        const qint64 n = qMin(count, block->data.size() - inBlock);
        std::memcpy(out, block->data.constData() + inBlock, size_t(n));
        out += n;
        pos += n;
        count -= n;
    }
}

// Most values lie inside the block read last; they are taken from it directly.
const uchar *ExifByteReader::inCurrentBlock(qint64 pos, qint64 count) const
{
    if (current && pos >= current->start && pos + count <= current->start + current->data.size())
        return reinterpret_cast<const uchar *>(current->data.constData()) + (pos - current->start);
    return nullptr;
}

quint8 ExifByteReader::readU8()
{
    uchar copy = 0;
    const uchar *b = inCurrentBlock(position, 1);
    if (!b) {
        copyOut(position, reinterpret_cast<char *>(&copy), 1);
        b = &copy;
    }
    ++position;
    return b[0];
}

quint16 ExifByteReader::readU16()
{
    uchar copy[2];
    const uchar *b = inCurrentBlock(position, 2);
    if (!b) {
        copyOut(position, reinterpret_cast<char *>(copy), 2);
        b = copy;
    }
    position += 2;
    return bigEndian ? quint16(b[0] << 8 | b[1]) : quint16(b[1] << 8 | b[0]);
}

quint32 ExifByteReader::readU32()
{
    uchar copy[4];
    const uchar *b = inCurrentBlock(position, 4);
    if (!b) {
        copyOut(position, reinterpret_cast<char *>(copy), 4);
        b = copy;
    }
    position += 4;
    if (bigEndian)
        return quint32(b[0]) << 24 | quint32(b[1]) << 16 | quint32(b[2]) << 8 | b[3];
    return quint32(b[3]) << 24 | quint32(b[2]) << 16 | quint32(b[1]) << 8 | b[0];
}

QByteArray ExifByteReader::readBytes(qint64 count, qint64 maxKept)
{
    QByteArray bytes;
    if (count <= 0)
        return bytes;
    bytes.resize(qMin(count, maxKept));
    copyOut(position, bytes.data(), bytes.size());
    position += count;
    return bytes;
}

QByteArray ExifByteReader::readZeroTerminated(qint64 pos, int maxLength)
{
    QByteArray text;
    while (text.size() < maxLength) {
        const Block *block = blockAt(pos);
        if (!block || pos - block->start >= block->data.size())
            break; // past the end: the zero bytes read there end the text
        const char *begin = block->data.constData() + (pos - block->start);
        const qint64 available =
            qMin<qint64>(block->data.size() - (pos - block->start), maxLength - text.size());
        const void *zero = std::memchr(begin, 0, size_t(available));
        if (zero) {
            text.append(begin, static_cast<const char *>(zero) - begin);
            break;
        }
        text.append(begin, available);
        pos += available;
    }
    return text;
}

QString ExifByteReader::readLatin1Text(qint64 pos, int maxLength)
{
    // Nearly every text ends inside the block it starts in: it is converted straight from there.
    if (const Block *block = blockAt(pos)) {
        const qint64 offset = pos - block->start;
        const char *begin = block->data.constData() + offset;
        const qint64 available = qMin<qint64>(block->data.size() - offset, maxLength);
        if (const void *zero = available > 0 ? std::memchr(begin, 0, size_t(available)) : nullptr) {
            const qsizetype length = static_cast<const char *>(zero) - begin;
            return length == 0 ? QStringLiteral("") : QString::fromLatin1(begin, length);
        }
    }
    const QByteArray bytes = readZeroTerminated(pos, maxLength);
    return bytes.isEmpty() ? QStringLiteral("") : QString::fromLatin1(bytes);
}
