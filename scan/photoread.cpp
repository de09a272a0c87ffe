#include "photoread.h"

#include "photorowinserter.h"
#include "texiffile.h"

PhotoRead PhotoRead::of(const QString &path)
{
    PhotoRead read;
    TExifFile exif(path);
    if (!exif.processFile()) {
        read.outcome = Outcome::NotPhoto;
        return read;
    }
    read.outcome = Outcome::Photo;
    read.make = exif.Make;
    read.model = exif.Model;
    read.values = PhotoRowInserter::rowValues(exif);
    read.info = PhotoRowInserter::infoValues(exif, path);
    return read;
}
