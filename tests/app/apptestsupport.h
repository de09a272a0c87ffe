#pragma once

#include "photofixture.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <functional>

class MainWindow;
class TMyWorkerObject;
class QTreeView;
class QWidget;

namespace apptest {

// Answers the next modal dialog or pop-up menu that `matches` recognises, from inside the event
// loop that shows it, so that no test waits for a person. Others are left alone. It answers once
// and gives up after about ten seconds, leaving the dialog to the test's own timeout.
class NextModal : public QObject
{
public:
    using Match = std::function<bool(QWidget *)>;
    using Answer = std::function<void(QWidget *)>;

    NextModal(Match matches, Answer answer);
    bool answered() const { return done; }

private:
    void poll();

    QTimer timer;
    Match matches;
    Answer answer;
    bool done = false;
    int polls = 0;
};

template<class T> NextModal::Match isA()
{
    return [](QWidget *widget) { return qobject_cast<T *>(widget) != nullptr; };
}

// Picks the first entry of a pop-up menu with the keyboard.
void chooseFirstMenuEntry(QWidget *menu);
// Clicks a standard button (QMessageBox::StandardButton or QDialogButtonBox::StandardButton
// value) of a message box or of the first button box of a dialog.
void clickButton(QWidget *dialog, int standardButton);
// The text of the first label of a dialog.
QString firstLabelText(QWidget *dialog);

// Writes values into the (sandboxed) settings store before a window reads it; keys are
// "Group/key".
void writeStore(const QVariantMap &values);
QVariant readStore(const QString &key);
QStringList storeKeys();

// A plain camera photo; the make, model and lens tell photos apart.
fixture::PhotoTags photoTags(const QString &make, const QString &model, const QString &lens);
// Writes `count` JPEG photos named prefix0001.jpg ... into `directory`.
bool writePhotos(const QString &directory, int count, const fixture::PhotoTags &tags,
                 const QString &prefix = "photo");

// Makes the directories current/selected in the window's tree (one selection change).
bool selectDirectories(MainWindow &window, const QStringList &directories);
// Waits until the last scan has ended and the window has shown its result.
bool waitForScanEnd(MainWindow &window, int timeoutMs = 30000);

// Counts the scans started from now on. When a scan starts, `onScanStart` may connect to its
// worker before the worker's thread runs.
class ScanWatcher : public QObject
{
public:
    ScanWatcher();
    int scansStarted() const { return scans; }
    std::function<void(TMyWorkerObject *)> onScanStart;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int scans = 0;
};

// Releases the main connection the last window left behind, so that the next window starts with
// a fresh in-memory database.
void releaseDatabase();

// Makes the tab that holds the widget the current one, as a click on the tab does; a tab that the
// filter changed while it was hidden is drawn then.
void showTabOf(QWidget *widget);

} // namespace apptest
