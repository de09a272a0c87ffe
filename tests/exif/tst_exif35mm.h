#pragma once

#include <QObject>

// The 35 mm crop factor and equivalent focal length: from tag 0xA405, from the focal plane's
// resolution and the image size in every unit, and unknown wherever the tags do not tell.
class tst_Exif35mm : public QObject
{
    Q_OBJECT

private slots:
    void cropAndEquivalent_data();
    void cropAndEquivalent();
    void focalPlaneTagsAreRead();
};
