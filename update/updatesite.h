#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

// Where the update check looks, and how it reads what it finds there. The host is fixed when the
// program is built; the version file and the download page both live on it.
class UpdateSite
{
public:
    // The compiled-in host name, for texts that point the user at the project's site.
    static QString host();

    // https://HOST/sonstiges/KelvaroVersion.txt
    static QUrl versionFileUrl();
    // https://HOST/downloads.html
    static QUrl downloadPageUrl();

    // Lets the two URLs above point somewhere else (scheme, host, port and an optional leading
    // path), for example at a server on the loopback address. An empty URL restores the
    // compiled-in host.
    static void setBaseUrl(const QUrl &url);

    // True when the application's version sorts before the downloaded text. The comparison is a
    // plain, case-sensitive string comparison, not a numeric one: "0.100" is older than "0.40",
    // and "0.40\n" is newer than "0.40". The version file must hold the bare version text.
    static bool isNewerVersion(const QString &appVersion, const QByteArray &data);

    // The German question that offers the download page; the version shown is the data up to its
    // first zero byte.
    static QString updateQuestion(const QByteArray &data);

private:
    static QUrl siteUrl(const QString &path);
};
