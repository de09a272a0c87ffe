#include "rawdatamodel.h"

#include <QSqlDriver>
#include <QSqlQuery>

#include <algorithm>

RawDataModel::RawDataModel(const QSqlDatabase &db, const QString &tableName, QObject *parent)
    : QAbstractTableModel(parent)
    , db(db)
    , table(tableName)
    , columns(db.record(tableName))
{
    horizontalHeaders.resize(columns.count());
    for (int column = 0; column < columns.count(); ++column)
        quotedColumns << db.driver()->escapeIdentifier(columns.fieldName(column),
                                                       QSqlDriver::FieldName);
}

void RawDataModel::setSort(int column, Qt::SortOrder order)
{
    sortColumn = column;
    sortOrder = order;
}

void RawDataModel::setRestriction(const QString &condition, const QVariantList &values)
{
    restriction = condition;
    restrictionValues = values;
    if (selected)
        select();
}

bool RawDataModel::select()
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    bool ok = query.prepare("SELECT " + quotedColumns.value(0) + " FROM " + table + whereClause()
                            + orderClause());
    bindRestriction(query);
    ok = ok && query.exec();
    std::vector<qint64> newIds;
    while (query.next())
        newIds.push_back(query.value(0).toLongLong());
    // Growing by doubling leaves up to half of the capacity unused.
    newIds.shrink_to_fit();

    beginResetModel();
    ids.swap(newIds);
    blocks.clear();
    selected = true;
    endResetModel();
    return ok;
}

void RawDataModel::clearRows()
{
    beginResetModel();
    std::vector<qint64>().swap(ids);
    blocks.clear();
    selected = false;
    endResetModel();
}

bool RawDataModel::queryRows(QSqlQuery &query) const
{
    query.setForwardOnly(true);
    if (!query.prepare("SELECT " + quotedColumns.join(',') + " FROM " + table + whereClause()
                       + orderClause()))
        return false;
    bindRestriction(query);
    return query.exec();
}

int RawDataModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ids.size());
}

int RawDataModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns.count();
}

QVariant RawDataModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)
        || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    const Block &block = blockOf(index.row());
    return block.values.value((index.row() - block.firstRow) * columns.count() + index.column());
}

QVariant RawDataModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= horizontalHeaders.size())
        return QAbstractTableModel::headerData(section, orientation, role);
    const QHash<int, QVariant> &header = horizontalHeaders.at(section);
    if (role == Qt::DisplayRole) {
        // As with Qt's SQL models: the edit-role label, else the column's name.
        const QVariant label = header.value(Qt::DisplayRole, header.value(Qt::EditRole));
        return label.isValid() ? label : QVariant(columns.fieldName(section));
    }
    return header.value(role);
}

bool RawDataModel::setHeaderData(int section, Qt::Orientation orientation, const QVariant &value,
                                 int role)
{
    if (orientation != Qt::Horizontal || section < 0 || section >= horizontalHeaders.size())
        return false;
    horizontalHeaders[section][role] = value;
    emit headerDataChanged(orientation, section, section);
    return true;
}

Qt::ItemFlags RawDataModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled : Qt::NoItemFlags;
}

void RawDataModel::sort(int column, Qt::SortOrder order)
{
    setSort(column, order);
    select();
}

QString RawDataModel::whereClause() const
{
    return restriction.isEmpty() ? QString() : " WHERE " + restriction;
}

QString RawDataModel::orderClause() const
{
    const QString direction = sortOrder == Qt::AscendingOrder ? " ASC" : " DESC";
    const QString id = quotedColumns.value(0);
    if (sortColumn <= 0 || sortColumn >= columns.count())
        return " ORDER BY " + id + direction;
    return " ORDER BY " + quotedColumns.at(sortColumn) + direction + ", " + id;
}

void RawDataModel::bindRestriction(QSqlQuery &query) const
{
    for (int i = 0; i < restrictionValues.size(); ++i)
        query.bindValue(i, restrictionValues.at(i));
}

const RawDataModel::Block &RawDataModel::blockOf(int row) const
{
    const int firstRow = row - row % blockRows;
    const auto found = std::find_if(blocks.begin(), blocks.end(), [firstRow](const Block &block) {
        return block.firstRow == firstRow;
    });
    if (found != blocks.end()) {
        // Moved to the end: the block used last is dropped last.
        Block block = std::move(*found);
        blocks.erase(found);
        blocks.append(std::move(block));
    } else {
        if (blocks.size() >= keptBlocks)
            blocks.removeFirst();
        blocks.append(readBlock(firstRow));
    }
    return blocks.last();
}

RawDataModel::Block RawDataModel::readBlock(int firstRow) const
{
    const int rows = std::min<int>(blockRows, int(ids.size()) - firstRow);
    Block block;
    block.firstRow = firstRow;
    block.values.resize(qsizetype(rows) * columns.count());

    QHash<qint64, int> rowOfId;
    rowOfId.reserve(rows);
    for (int row = 0; row < rows; ++row)
        rowOfId.insert(ids[firstRow + row], row);

    QSqlQuery query(db);
    query.setForwardOnly(true);
    QStringList placeholders(rows, QStringLiteral("?"));
    if (!query.prepare("SELECT " + quotedColumns.join(',') + " FROM " + table + " WHERE "
                       + quotedColumns.value(0) + " IN (" + placeholders.join(',') + ")"))
        return block;
    for (int row = 0; row < rows; ++row)
        query.bindValue(row, ids[firstRow + row]);
    if (!query.exec())
        return block;
    // A row deleted since the ids were read stays empty.
    while (query.next()) {
        const int row = rowOfId.value(query.value(0).toLongLong(), -1);
        if (row < 0)
            continue;
        for (int column = 0; column < columns.count(); ++column)
            block.values[qsizetype(row) * columns.count() + column] = query.value(column);
    }
    return block;
}
