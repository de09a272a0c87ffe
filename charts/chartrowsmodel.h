#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QStringList>
#include <QVariant>

// The rows a chart draws when they are not the statistic's own (the largest rows and "Others").
// Read-only: a pie's model mapper writes the slices' share labels back into its model, which must
// keep the names.
class ChartRowsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // The headers name the columns; without them the views number them.
    ChartRowsModel(QList<QList<QVariant>> rows, int columns, QStringList headers = {},
                   QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QList<QList<QVariant>> rows;
    int columns;
    QStringList headers;
};
