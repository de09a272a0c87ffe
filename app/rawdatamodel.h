#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QSqlRecord>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

class QSqlQuery;

// The raw rows of a photo table for the Data tab. It holds the ids of the rows in the order shown
// and the values of a few blocks of rows lately looked at, read from the table by id when the view
// asks for them: a few bytes per row, where a model that keeps every row would hold all of the
// table's values a second time. Sorting is done by SQL over every row; ties keep ascending id
// order. Column 0 is the table's integer key.
//
// Like a table model, it shows rows only once selected: select() reads the ids of the table's
// rows, and rows written later appear with the next select().
class RawDataModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    RawDataModel(const QSqlDatabase &db, const QString &tableName, QObject *parent = nullptr);

    QString tableName() const { return table; }
    // The table's columns, in the model's column order.
    QSqlRecord record() const { return columns; }

    // Takes effect with the next select(); sort() selects at once.
    void setSort(int column, Qt::SortOrder order);
    // Limits the rows to those meeting an SQL condition on the table's columns, with positional
    // placeholders ("?") for the values given; an empty condition means every row. A selected
    // model is selected again.
    void setRestriction(const QString &condition, const QVariantList &values = {});
    QString restrictionCondition() const { return restriction; }
    bool select();
    // The table was emptied: no rows until the next select().
    void clearRows();

    // Executes, forward only, the statement that gives the model's rows in the model's order with
    // every column, so that they can be written out without being held.
    bool queryRows(QSqlQuery &query) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant &value,
                       int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    // Rows read from the table at a time, and how many such blocks are kept.
    static constexpr int blockRows = 256;
    static constexpr int keptBlocks = 8;

private:
    // The values of the rows [firstRow, firstRow + blockRows), row after row.
    struct Block
    {
        int firstRow = -1;
        QList<QVariant> values;
    };

    // " WHERE ..." (or nothing) and " ORDER BY ..." of the model's statements.
    QString whereClause() const;
    QString orderClause() const;
    void bindRestriction(QSqlQuery &query) const;
    const Block &blockOf(int row) const;
    Block readBlock(int firstRow) const;

    QSqlDatabase db;
    QString table;
    QSqlRecord columns;
    // The columns' names quoted for statements, column 0 first.
    QStringList quotedColumns;
    QList<QHash<int, QVariant>> horizontalHeaders;
    int sortColumn = 0;
    Qt::SortOrder sortOrder = Qt::AscendingOrder;
    QString restriction;
    QVariantList restrictionValues;
    bool selected = false;
    std::vector<qint64> ids;
    // The most recently used block last.
    mutable QList<Block> blocks;
};
