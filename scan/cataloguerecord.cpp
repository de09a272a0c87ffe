#include "cataloguerecord.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <cstring>
#include <limits>

namespace CatalogueRecord {

namespace {

enum class Tag : quint8 {
    Missing, // QVariant()
    NullText, // QString()
    Text, // varint length, UTF-8 bytes
    Real, // 8 bytes, little-endian IEEE double
    Int, // zigzag varint
    LongLong, // zigzag varint
    Repeat, // varint index of an earlier Text of this record
    FileName, // the file's name, without its directory
    Path, // the file's path
    Streamed, // varint length, the QVariant as QDataStream writes it
};

// Only texts that UTF-8 gives back unchanged are written as UTF-8 (lone surrogates are not).
class Writer
{
public:
    Writer(const QString &path)
        : path(path)
        , fileName(path.mid(path.lastIndexOf(QLatin1Char('/')) + 1))
    { }

    void text(const QString &text)
    {
        if (text.isNull())
            return tag(Tag::NullText);
        if (text == fileName)
            return tag(Tag::FileName);
        if (text == path)
            return tag(Tag::Path);
        const qsizetype earlier = texts.indexOf(text);
        if (earlier >= 0) {
            tag(Tag::Repeat);
            return varint(quint64(earlier));
        }
        const QByteArray utf8 = text.toUtf8();
        if (QString::fromUtf8(utf8) != text)
            return streamed(QVariant(text));
        texts << text;
        tag(Tag::Text);
        varint(quint64(utf8.size()));
        out += utf8;
    }

    void value(const QVariant &value)
    {
        switch (value.typeId()) {
        case QMetaType::UnknownType:
            return tag(Tag::Missing);
        case QMetaType::QString:
            return text(value.toString());
        case QMetaType::Double: {
            tag(Tag::Real);
            const double real = value.toDouble();
            quint64 bits;
            std::memcpy(&bits, &real, sizeof bits);
            bits = qToLittleEndian(bits);
            out.append(reinterpret_cast<const char *>(&bits), sizeof bits);
            return;
        }
        case QMetaType::Int:
            tag(Tag::Int);
            return zigzag(value.toInt());
        case QMetaType::LongLong:
            tag(Tag::LongLong);
            return zigzag(value.toLongLong());
        default:
            return streamed(value);
        }
    }

    void list(const QVariantList &values)
    {
        out.append(char(quint8(values.size())));
        for (const QVariant &v : values)
            value(v);
    }

    QByteArray out;

private:
    void tag(Tag t) { out.append(char(t)); }
    void varint(quint64 v)
    {
        while (v >= 0x80) {
            out.append(char(0x80 | (v & 0x7f)));
            v >>= 7;
        }
        out.append(char(v));
    }
    void zigzag(qint64 v) { varint((quint64(v) << 1) ^ quint64(v >> 63)); }
    void streamed(const QVariant &value)
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << value;
        tag(Tag::Streamed);
        varint(quint64(bytes.size()));
        out += bytes;
    }

    const QString &path;
    const QString fileName;
    QStringList texts;
};

class Reader
{
public:
    Reader(const QByteArray &blob, const QString &path)
        : at(blob.constData())
        , end(blob.constData() + blob.size())
        , path(path)
    { }

    bool value(QVariant &value)
    {
        quint8 t;
        if (!byte(t))
            return false;
        switch (Tag(t)) {
        case Tag::Missing:
            value = QVariant();
            return true;
        case Tag::NullText:
            value = QVariant(QString());
            return true;
        case Tag::Text: {
            quint64 length;
            if (!varint(length) || length > quint64(end - at))
                return false;
            // An empty text comes back empty, not null: a null one has a tag of its own.
            const QString text =
                length ? QString::fromUtf8(at, qsizetype(length)) : QString(QLatin1String(""));
            at += length;
            texts << text;
            value = text;
            return true;
        }
        case Tag::Real: {
            if (end - at < 8)
                return false;
            quint64 bits;
            std::memcpy(&bits, at, sizeof bits);
            at += sizeof bits;
            bits = qFromLittleEndian(bits);
            double real;
            std::memcpy(&real, &bits, sizeof real);
            value = real;
            return true;
        }
        case Tag::Int: {
            qint64 v;
            if (!zigzag(v) || v < std::numeric_limits<int>::min()
                || v > std::numeric_limits<int>::max())
                return false;
            value = int(v);
            return true;
        }
        case Tag::LongLong: {
            qint64 v;
            if (!zigzag(v))
                return false;
            value = qlonglong(v);
            return true;
        }
        case Tag::Repeat: {
            quint64 index;
            if (!varint(index) || index >= quint64(texts.size()))
                return false;
            value = texts.at(qsizetype(index));
            return true;
        }
        case Tag::FileName:
            value = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
            return true;
        case Tag::Path:
            value = path;
            return true;
        case Tag::Streamed: {
            quint64 length;
            if (!varint(length) || length > quint64(end - at))
                return false;
            QDataStream stream(QByteArray::fromRawData(at, qsizetype(length)));
            at += length;
            stream >> value;
            return stream.status() == QDataStream::Ok;
        }
        }
        return false;
    }

    bool text(QString &text)
    {
        QVariant v;
        if (!value(v) || (v.isValid() && v.typeId() != QMetaType::QString))
            return false;
        text = v.toString();
        return true;
    }

    bool list(QVariantList &values)
    {
        quint8 count;
        if (!byte(count))
            return false;
        values.resize(count);
        for (QVariant &v : values) {
            if (!value(v))
                return false;
        }
        return true;
    }

    bool atEnd() const { return at == end; }

private:
    bool byte(quint8 &b)
    {
        if (at == end)
            return false;
        b = quint8(*at++);
        return true;
    }
    bool varint(quint64 &v)
    {
        v = 0;
        for (int shift = 0; shift < 64; shift += 7) {
            quint8 b;
            if (!byte(b))
                return false;
            v |= quint64(b & 0x7f) << shift;
            if (!(b & 0x80))
                return true;
        }
        return false;
    }
    bool zigzag(qint64 &v)
    {
        quint64 u;
        if (!varint(u))
            return false;
        v = qint64(u >> 1) ^ -qint64(u & 1);
        return true;
    }

    const char *at;
    const char *const end;
    const QString &path;
    QStringList texts;
};

} // namespace

QByteArray encode(const PhotoRead &read, const QString &path)
{
    Writer writer(path);
    writer.text(read.make);
    writer.text(read.model);
    writer.list(read.values);
    writer.list(read.info);
    return writer.out;
}

bool decode(const QByteArray &blob, const QString &path, PhotoRead &read)
{
    Reader reader(blob, path);
    if (!reader.text(read.make) || !reader.text(read.model) || !reader.list(read.values)
        || !reader.list(read.info) || !reader.atEnd())
        return false;
    read.outcome = PhotoRead::Outcome::Photo;
    return true;
}

} // namespace CatalogueRecord
