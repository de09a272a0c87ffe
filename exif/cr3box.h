#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Box records of a Canon CR3 file (ISO base media file format). Every box starts with a
// big-endian 32-bit size (header included) and four type characters.

struct CR3Box
{
    qint32 size = 0;
    QString type;
};

struct CR3UuidBox : CR3Box
{
    QByteArray uuid; // 16 bytes, read only when type is "uuid"
};

struct CR3CanonBox : CR3Box
{
    QByteArray data; // the payload (size - 8 bytes), cut at a bound for oversized boxes
};

struct CR3FileTypeBox : CR3Box
{
    QString majorBrand;
    quint32 minorVersion = 0;
    QList<QString> compatibleBrands;
};
