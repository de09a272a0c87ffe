#pragma once

#include <QSqlDatabase>
#include <QStringList>

// Every stored row of both photo tables with its folder's path, in id order, each value with its
// SQL type and, for a real, its exact bits: two scans stored the same rows exactly when these
// lists are equal. Ids are counted from the scan's first, since the counter goes on from scan to
// scan.
namespace scantest {
QStringList exactRows(const QSqlDatabase &db);
} // namespace scantest
