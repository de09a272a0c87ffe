#include "updateoffer.h"

#include "updatesite.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QMessageBox>

void UpdateOffer::offerDownload(const QByteArray &data)
{
    if (!UpdateSite::isNewerVersion(QCoreApplication::applicationVersion(), data))
        return;

    QMessageBox box;
    box.setText(UpdateSite::updateQuestion(data));
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(QMessageBox::Yes);
    box.setIcon(QMessageBox::Question);
    if (box.exec() == QMessageBox::Yes)
        QDesktopServices::openUrl(UpdateSite::downloadPageUrl());
}
