#include "urlcatcher.h"

#include <QDesktopServices>

UrlCatcher::UrlCatcher(const QStringList &schemes)
    : schemes(schemes)
{
    for (const QString &scheme : schemes)
        QDesktopServices::setUrlHandler(scheme, this, "open");
}

UrlCatcher::~UrlCatcher()
{
    for (const QString &scheme : schemes)
        QDesktopServices::unsetUrlHandler(scheme);
}

void UrlCatcher::open(const QUrl &url)
{
    urls.append(url);
}
