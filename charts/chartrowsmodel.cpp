#include "chartrowsmodel.h"

ChartRowsModel::ChartRowsModel(QList<QList<QVariant>> rows, int columns, QStringList headers,
                               QObject *parent)
    : QAbstractTableModel(parent)
    , rows(std::move(rows))
    , columns(columns)
    , headers(std::move(headers))
{ }

int ChartRowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows.size());
}

int ChartRowsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

QVariant ChartRowsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole)
        || index.row() >= rows.size() || index.column() >= rows.at(index.row()).size())
        return {};
    return rows.at(index.row()).at(index.column());
}

QVariant ChartRowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && (role == Qt::DisplayRole || role == Qt::EditRole)
        && section >= 0 && section < headers.size())
        return headers.at(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}
