// The photo database as the window sees it: the main connection, the raw-data model and its view.
#include "mainwindow.h"
#include "ui_mainwindow.h"

#include "photodatabase.h"
#include "rawdatamodel.h"

#include <QHeaderView>

bool MainWindow::createDBAndTable()
{
    return PhotoDatabase::openMainConnection(db);
}

void MainWindow::prepareTableModel()
{
    // "METERINGMDOE" is spelled so on purpose; the column itself is METERINGMODE.
    const QList<QString> headerLabels { "ID",
                                        "FILENAME",
                                        "DATE",
                                        "MAKER",
                                        "MODEL",
                                        "LENS",
                                        "FOCALLENGTH",
                                        "ISO",
                                        "FNUMBER",
                                        "EXPOSURETIME",
                                        "EXPOSURETIMESTRING",
                                        "METERINGMDOE",
                                        "EXPOSUREMODE" };

    // Holds the rows' ids and a few blocks of values, not every row: libraries of a million
    // photos stay small.
    tableModel = new RawDataModel(db, "Dateien", this);
    // The view shows the edit-role header when there is no display-role one.
    for (int column = 0; column < tableModel->columnCount(); ++column)
        tableModel->setHeaderData(column, Qt::Horizontal, headerLabels.value(column), Qt::EditRole);
    // Not selected here: the rows appear when the first scan has ended.
    tableModel->setSort(0, Qt::AscendingOrder);
}

void MainWindow::prepareTableViewRawData()
{
    QTableView *view = ui->tableViewRawData;
    view->setModel(tableModel);
    view->hideColumn(0);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->resizeColumnsToContents();
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->horizontalHeader()->setStretchLastSection(true);
}

void MainWindow::clearTable()
{
    PhotoDatabase::clear(db);
    tableModel->clearRows();
}
