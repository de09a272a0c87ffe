#include "updatesite.h"

namespace {

QUrl &baseUrl()
{
    static QUrl url;
    return url;
}

} // namespace

QString UpdateSite::host()
{
    return QStringLiteral(KELVARO_UPDATE_HOST);
}

QUrl UpdateSite::versionFileUrl()
{
    return siteUrl(QStringLiteral("/sonstiges/KelvaroVersion.txt"));
}

QUrl UpdateSite::downloadPageUrl()
{
    return siteUrl(QStringLiteral("/downloads.html"));
}

void UpdateSite::setBaseUrl(const QUrl &url)
{
    baseUrl() = url;
}

bool UpdateSite::isNewerVersion(const QString &appVersion, const QByteArray &data)
{
    return appVersion < QString::fromUtf8(data);
}

QString UpdateSite::updateQuestion(const QByteArray &data)
{
    const qsizetype zero = data.indexOf('\0');
    const QByteArray version = zero < 0 ? data : data.first(zero);
    return QStringLiteral("Eine aktuellere Programmversion (") + QString::fromUtf8(version)
        + QStringLiteral(") steht zur Verfügung. \nSoll zur Downloadseite gewechselt werden?");
}

QUrl UpdateSite::siteUrl(const QString &path)
{
    QUrl url = baseUrl();
    if (url.isEmpty()) {
        url.setScheme(QStringLiteral("https"));
        url.setHost(host());
    }
    QString basePath = url.path();
    while (basePath.endsWith(QLatin1Char('/')))
        basePath.chop(1);
    url.setPath(basePath + path);
    return url;
}
