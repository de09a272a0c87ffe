#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>

// Receives what QDesktopServices::openUrl() would hand to the browser or the mail program, so that
// a test can see which URLs were opened without starting anything. Registers itself for the given
// schemes on construction and unregisters on destruction.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    explicit UrlCatcher(const QStringList &schemes);
    ~UrlCatcher() override;

    QList<QUrl> urls;

public slots:
    void open(const QUrl &url);

private:
    QStringList schemes;
};
