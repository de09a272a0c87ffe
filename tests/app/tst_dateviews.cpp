// The capture dates beyond the 3-D chart: the line about photos dated before 1990 or after today
// with its remembered choice to hide them, and the Calendar tab with its View menu entry.
#include "apptestsupport.h"
#include "calendarchart.h"
#include "chartdate3d.h"
#include "implausibledatesbar.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "testutils.h"

#include <QAction>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <memory>

using namespace apptest;

class tst_DateViews : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void implausibleDatesCanBeHiddenAndTheChoiceIsKept();
    void noLineWithoutImplausibleDates();
    void calendarTabFollowsItsViewEntry();

private:
    // A window whose first scan read photos taken on the given dates.
    bool scanned(const QStringList &dates);
    ImplausibleDatesBar *bar() const
    {
        return window->findChild<ImplausibleDatesBar *>("implausibleDatesBar");
    }
    CalendarChart *calendar() const { return window->findChild<CalendarChart *>("calendarChart"); }

    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<MainWindow> window;
};

void tst_DateViews::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_DateViews::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

bool tst_DateViews::scanned(const QStringList &dates)
{
    const QString directory = sandbox->makeDir("photos");
    for (int i = 0; i < dates.size(); ++i) {
        fixture::PhotoTags tags = photoTags("Canon", "EOS R5", "RF24-70mm");
        tags.dateTimeOriginal = dates.at(i);
        if (!writePhotos(directory, 1, tags, QStringLiteral("photo%1_").arg(i)))
            return false;
    }
    writeStore({ { "OtherSettings/lastDirectory", directory },
                 { "OtherSettings/fileFilters", QStringList { "*.jpg" } } });
    window = std::make_unique<MainWindow>();
    return waitForScanEnd(*window)
        && MainWindowProbe(*window).status() == QStringLiteral("Valid files: %1").arg(dates.size());
}

// 2999 lies after today for as long as this program is in use.
void tst_DateViews::implausibleDatesCanBeHiddenAndTheChoiceIsKept()
{
    QVERIFY(scanned({ "1970:01:01 00:00:00", "1989:12:31 23:00:00", "1990:01:01 00:00:00",
                      "2023:03:14 10:00:00", "2999:01:01 12:00:00", "0000:00:00 00:00:00" }));
    QVERIFY(bar());
    QVERIFY(!bar()->isHidden());
    QCOMPARE(bar()->text(), QString("3 photos are dated before 1990 or after today."));
    QCOMPARE(calendar()->years(), QList<int>({ 2999, 2023, 1990, 1989, 1970 }));
    QCOMPARE(MainWindowProbe(*window).chartDate3D()->rowLabels().first(), QString("1970"));

    QTest::mouseClick(bar()->findChild<QPushButton *>("buttonImplausibleDates"), Qt::LeftButton);
    QCOMPARE(bar()->text(),
             QString("3 photos dated before 1990 or after today are hidden from the chart."));
    QCOMPARE(calendar()->years(), QList<int>({ 2023, 1990 }));
    QCOMPARE(MainWindowProbe(*window).chartDate3D()->rowLabels(),
             QStringList({ "1990", "1991", "1992", "1993", "1994", "1995", "1996", "1997", "1998",
                           "1999", "2000", "2001", "2002", "2003", "2004", "2005", "2006", "2007",
                           "2008", "2009", "2010", "2011", "2012", "2013", "2014", "2015", "2016",
                           "2017", "2018", "2019", "2020", "2021", "2022", "2023" }));
    // The raw rows keep every photo.
    QCOMPARE(MainWindowProbe(*window).tableModel()->rowCount(), 6);

    MainWindowProbe(*window).saveSettings();
    QCOMPARE(readStore("OtherSettings/hideImplausibleDates").toBool(), true);
    window.reset();
    releaseDatabase();
    window = std::make_unique<MainWindow>();
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(calendar()->years(), QList<int>({ 2023, 1990 }));
    QCOMPARE(bar()->buttonText(), QString("Show them"));

    // Showing them again removes the key: the store is as before the choice.
    QTest::mouseClick(bar()->findChild<QPushButton *>("buttonImplausibleDates"), Qt::LeftButton);
    QCOMPARE(calendar()->years(), QList<int>({ 2999, 2023, 1990, 1989, 1970 }));
    MainWindowProbe(*window).saveSettings();
    QVERIFY(!storeKeys().contains("OtherSettings/hideImplausibleDates"));
}

void tst_DateViews::noLineWithoutImplausibleDates()
{
    QVERIFY(scanned({ "1990:01:01 00:00:00", "2000:01:01 00:00:00", "2024:02:29 12:00:00" }));
    QVERIFY(bar()->isHidden());
    QCOMPARE(calendar()->years(), QList<int>({ 2024, 2000, 1990 }));
    MainWindowProbe(*window).saveSettings();
    QVERIFY(!storeKeys().contains("OtherSettings/hideImplausibleDates"));
}

void tst_DateViews::calendarTabFollowsItsViewEntry()
{
    window = std::make_unique<MainWindow>();
    auto *tabs = window->findChild<QTabWidget *>("tabWidget");
    QWidget *page = window->findChild<QWidget *>("tabCalendar");
    QVERIFY(page);
    QCOMPARE(tabs->indexOf(page), tabs->count() - 1);
    QCOMPARE(tabs->tabText(tabs->indexOf(page)), QString("Calendar"));
    auto *action = window->findChild<QAction *>("actionViewCalendar");
    QVERIFY(action);
    QCOMPARE(action->text(), QString("Calendar"));
    QVERIFY(action->isChecked());
    QVERIFY(tabs->isTabVisible(tabs->indexOf(page)));

    action->trigger();
    QVERIFY(!tabs->isTabVisible(tabs->indexOf(page)));
    QCOMPARE(MainWindowProbe(*window).hiddenStatistics(), QStringList { "calendar" });
    MainWindowProbe(*window).saveSettings();
    window.reset();
    releaseDatabase();

    window = std::make_unique<MainWindow>();
    tabs = window->findChild<QTabWidget *>("tabWidget");
    QVERIFY(!window->findChild<QAction *>("actionViewCalendar")->isChecked());
    QVERIFY(!tabs->isTabVisible(tabs->indexOf(window->findChild<QWidget *>("tabCalendar"))));
}

std::unique_ptr<QObject> makeDateViewsTest()
{
    return std::make_unique<tst_DateViews>();
}

#include "tst_dateviews.moc"
