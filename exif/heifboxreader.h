#pragma once

#include <QByteArray>
#include <QList>
#include <QtGlobal>

class ExifByteReader;

// Finds the Exif item of a HEIF or AVIF file (ISO base media file with a meta box) and returns
// its bytes, assembled from its extents. Reads only the file-type box, the top-level box headers
// up to the meta box, the meta box and the Exif item's extents; never the image data.
class HeifBoxReader
{
public:
    explicit HeifBoxReader(ExifByteReader &stream);

    // True when the file starts with a file-type box that names a HEIF or AVIF brand.
    bool isHeif();
    // The Exif item's bytes: the 4-byte offset to the TIFF header, then the payload. Empty when
    // the file has no Exif item or its location can't be trusted.
    QByteArray exifItem();

private:
    struct Box
    {
        quint32 type = 0;
        qint64 payload = 0; // behind the header
        qint64 end = 0; // never beyond the parent's end
    };
    // The box at pos inside a parent ending at parentEnd, or nothing when not even its header fits.
    bool readBox(qint64 pos, qint64 parentEnd, Box &box);

    struct Extent
    {
        quint64 offset = 0;
        quint64 length = 0;
    };
    struct Location
    {
        int constructionMethod = 0;
        QList<Extent> extents;
    };

    bool findMeta(Box &meta);
    quint32 readPrimaryItem(const Box &pitm);
    QList<quint32> readExifItems(const Box &iinf);
    quint32 chooseExifItem(const Box *iref, const QList<quint32> &exifItems, quint32 primary);
    bool findLocation(const Box &iloc, quint32 item, Location &location);
    quint64 readSized(int bytes);
    QByteArray assemble(const Location &location, const Box *idat);

    ExifByteReader &stream;
};
