#pragma once

#include <QByteArray>

// The question that follows the update check: offers the download page when the downloaded
// version text sorts after the application's own version.
class UpdateOffer
{
public:
    // Asks modally (a message box without parent) and opens the download page in the browser on
    // Yes; does nothing when the data names no newer version.
    static void offerDownload(const QByteArray &data);
};
