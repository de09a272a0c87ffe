#pragma once

#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>

#include <memory>

class TExifFile;

// The INSERT of one scan: prepared once, then executed once per photo, each row on its own
// without an enclosing transaction. An INSERT refused for another connection's table lock is
// retried (PhotoDatabase::insertRetryingWhileLocked).
class PhotoRowInserter
{
public:
    // An INSERT and its placeholder names in the order their values are bound.
    struct Target
    {
        const QString &statement;
        const QStringList &placeholders;
    };

    // The placeholder names of DATEIEN's INSERT. The statement has no ":datemod"; the driver
    // ignores that name.
    static const QStringList placeholders;
    // Those of PHOTOINFO's INSERT, which follows each row of DATEIEN.
    static const QStringList infoPlaceholders;
    static Target photoRows();

    // The values of a photo's row, one per placeholder.
    static QVariantList rowValues(const TExifFile &exif);
    // The values of its PHOTOINFO row, one per info placeholder; an unknown value is QVariant().
    static QVariantList infoValues(const TExifFile &exif, const QString &path);

    // Prepares the statement (DATEIEN's unless another is given) on the open connection db,
    // through SQLite's own interface where the build allows it (see SqliteRowInserter), else as a
    // QSqlQuery.
    static std::unique_ptr<PhotoRowInserter> create(const QSqlDatabase &db);
    static std::unique_ptr<PhotoRowInserter> create(const QSqlDatabase &db, const Target &target);
    // The INSERT of PHOTOINFO's rows, taking the info values (PhotoInfoInserter).
    static std::unique_ptr<PhotoRowInserter> createInfo(const QSqlDatabase &db);

    virtual ~PhotoRowInserter() = default;

    // Binds the values, one per placeholder, and executes the statement. False when no row was
    // stored: the statement could not be prepared, a value broke a constraint (a null text), or
    // the table stayed locked.
    virtual bool insert(const QVariantList &values) = 0;
};
