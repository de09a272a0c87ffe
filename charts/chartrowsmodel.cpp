#include "chartrowsmodel.h"

ChartRowsModel::ChartRowsModel(QList<QList<QVariant>> rows, int columns, QObject *parent)
    : QAbstractTableModel(parent)
    , rows(std::move(rows))
    , columns(columns)
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
