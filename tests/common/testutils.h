#pragma once

#include "kelvaroversion.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

namespace testutils {

// Gives a test its own empty settings store and scratch folder, so that no test ever reads or
// writes the user's configuration. Create one per test function (or per test case).
class Sandbox
{
public:
    Sandbox()
    {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, configDir());
        // The photo catalogue goes to the cache location: the scratch folder's, not the user's.
        qputenv("XDG_CACHE_HOME", QFile::encodeName(cacheDir()));
        QCoreApplication::setOrganizationName("Kelvaro");
        QCoreApplication::setApplicationName("Kelvaro");
        QCoreApplication::setApplicationVersion(KELVARO_VERSION);
    }

    bool isValid() const { return dir.isValid(); }
    QString path() const { return dir.path(); }
    QString configDir() const { return dir.filePath("config"); }
    QString cacheDir() const { return dir.filePath("cache"); }
    QString filePath(const QString &name) const { return dir.filePath(name); }

    // Makes (and returns) a sub-folder of the scratch folder, parents included.
    QString makeDir(const QString &relative) const
    {
        QDir().mkpath(dir.filePath(relative));
        return dir.filePath(relative);
    }

private:
    QTemporaryDir dir;
};

} // namespace testutils
