#pragma once

#include "dayspan.h"
#include "photoselection.h"

#include <QDate>
#include <QObject>
#include <QSqlDatabase>

class CalendarChart;
class ImplausibleDatesBar;
class QAction;
class QMenu;
class QTabWidget;
class QVBoxLayout;
class QWidget;

// What the window shows of the capture dates besides the 3-D date chart: the line below that
// chart about photos dated before 1990 or after today (with the remembered choice to hide them),
// and the Calendar tab after the other tabs.
class DateViews : public QObject
{
    Q_OBJECT

public:
    // Puts the line below the chart in the date tab's layout and appends the Calendar tab.
    DateViews(QTabWidget *tabs, QVBoxLayout *dateTabLayout, QObject *parent);

    bool hidesImplausibleDates() const { return hideImplausible; }
    void setHidesImplausibleDates(bool hide) { hideImplausible = hide; }

    // Counts the selected photos per day, updates the line and the calendar, and gives the days the
    // date chart is to draw.
    DaySpan refresh(const QSqlDatabase &db, const QDate &today,
                    const PhotoSelection &selection = PhotoSelection());

    // The View menu's checkable entry that shows or hides the Calendar tab.
    QAction *addViewAction(QMenu *menu, bool shown);

    QWidget *calendarPage() const { return page; }
    CalendarChart *calendar() const { return chart; }
    ImplausibleDatesBar *implausibleDatesBar() const { return bar; }

    static inline const QString calendarKey = QStringLiteral("calendar");

signals:
    // The user switched the hiding on or off; the date chart must be drawn again.
    void hidingChanged();

private:
    QTabWidget *tabs;
    QWidget *page;
    CalendarChart *chart;
    ImplausibleDatesBar *bar;
    bool hideImplausible = false;
};
