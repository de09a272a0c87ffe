#pragma once

#include "photoread.h"

#include <QByteArray>
#include <QString>

// What the photo catalogue keeps of one photo, packed into one blob: make and model, the row's
// values and the info values, each value with its type, so that what comes back is the same
// QVariant, value for value (a null text stays null, a missing value stays missing). Texts that
// repeat within the photo (the model in its row and for the exclusions, the file's name, its
// path) are written once.
//
//   record := string(make) string(model) count value* count value*
//   value  := tag payload      tag: one byte (Tag below); count: one byte
//   varint := 7 bits per byte, low first, high bit set on all but the last
namespace CatalogueRecord {

QByteArray encode(const PhotoRead &read, const QString &path);
// False when the blob is damaged or cut short; `read` is then not usable.
bool decode(const QByteArray &blob, const QString &path, PhotoRead &read);

} // namespace CatalogueRecord
