#include "apptestsupport.h"

#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "photodatabase.h"
#include "tmyworkerobject.h"

#include <QAbstractButton>
#include <QApplication>
#include <QChildEvent>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileSystemModel>
#include <QItemSelection>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSortFilterProxyModel>
#include <QTabWidget>
#include <QTest>
#include <QThread>
#include <QTreeView>

namespace apptest {

NextModal::NextModal(Match matches, Answer answer)
    : matches(std::move(matches))
    , answer(std::move(answer))
{
    timer.setInterval(10);
    connect(&timer, &QTimer::timeout, this, &NextModal::poll);
    timer.start();
}

void NextModal::poll()
{
    if (++polls > 1000) {
        timer.stop();
        return;
    }
    for (QWidget *candidate :
         { QApplication::activePopupWidget(), QApplication::activeModalWidget() }) {
        if (candidate && candidate->isVisible() && matches(candidate)) {
            timer.stop();
            done = true;
            answer(candidate);
            return;
        }
    }
}

void chooseFirstMenuEntry(QWidget *menu)
{
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
}

void clickButton(QWidget *dialog, int standardButton)
{
    if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
        box->button(QMessageBox::StandardButton(standardButton))->click();
        return;
    }
    auto *buttons = dialog->findChild<QDialogButtonBox *>();
    buttons->button(QDialogButtonBox::StandardButton(standardButton))->click();
}

QString firstLabelText(QWidget *dialog)
{
    auto *label = dialog->findChild<QLabel *>();
    return label ? label->text() : QString();
}

void writeStore(const QVariantMap &values)
{
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, "Kelvaro", "Kelvaro");
    for (auto it = values.begin(); it != values.end(); ++it)
        settings.setValue(it.key(), it.value());
}

QVariant readStore(const QString &key)
{
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, "Kelvaro", "Kelvaro");
    return settings.value(key);
}

QStringList storeKeys()
{
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, "Kelvaro", "Kelvaro");
    return settings.allKeys();
}

fixture::PhotoTags photoTags(const QString &make, const QString &model, const QString &lens)
{
    fixture::PhotoTags tags = fixture::typicalTags();
    tags.make = make;
    tags.model = model;
    tags.lensModel = lens;
    return tags;
}

bool writePhotos(const QString &directory, int count, const fixture::PhotoTags &tags,
                 const QString &prefix)
{
    QDir().mkpath(directory);
    for (int i = 1; i <= count; ++i) {
        const QString name = QString("%1%2.jpg").arg(prefix).arg(i, 4, 10, QChar('0'));
        if (!fixture::writePhoto(QDir(directory).filePath(name), fixture::Format::JpegApp0, tags))
            return false;
    }
    return true;
}

bool selectDirectories(MainWindow &window, const QStringList &directories)
{
    MainWindowProbe probe(window);
    auto *tree = window.findChild<QTreeView *>("treeViewDir");
    QItemSelection selection;
    for (const QString &directory : directories) {
        const QModelIndex index =
            probe.proxyModel()->mapFromSource(probe.fileSystemModel()->index(directory));
        if (!index.isValid())
            return false;
        selection.select(index, index);
    }
    tree->selectionModel()->select(selection,
                                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    return true;
}

bool waitForScanEnd(MainWindow &window, int timeoutMs)
{
    // The thread deletes itself only after the window has handled the scan's end.
    MainWindowProbe probe(window);
    return QTest::qWaitFor(
        [&] { return !probe.workerThread() && probe.status().startsWith("Valid files: "); },
        timeoutMs);
}

ScanWatcher::ScanWatcher()
{
    QCoreApplication::instance()->installEventFilter(this);
}

// A scan's worker is moved to the scan's thread before the thread starts; the move reaches the
// worker as an event while it still lives in the main thread, which the application's event
// filters see.
bool ScanWatcher::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ThreadChange) {
        if (auto *worker = qobject_cast<TMyWorkerObject *>(watched)) {
            ++scans;
            if (onScanStart)
                onScanStart(worker);
        }
    }
    return QObject::eventFilter(watched, event);
}

void releaseDatabase()
{
    if (QSqlDatabase::contains(PhotoDatabase::mainConnection))
        QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

void showTabOf(QWidget *widget)
{
    auto *tabs = widget->window()->findChild<QTabWidget *>("tabWidget");
    for (; widget; widget = widget->parentWidget()) {
        if (tabs->indexOf(widget) >= 0) {
            tabs->setCurrentWidget(widget);
            return;
        }
    }
    QFAIL("the widget is on no tab");
}

} // namespace apptest
