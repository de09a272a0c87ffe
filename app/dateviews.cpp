#include "dateviews.h"

#include "calendarchart.h"
#include "implausibledatesbar.h"
#include "statistic.h"
#include "statisticrows.h"

#include <QAction>
#include <QMenu>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

DateViews::DateViews(QTabWidget *tabs, QVBoxLayout *dateTabLayout, QObject *parent)
    : QObject(parent)
    , tabs(tabs)
    , page(new QWidget)
    , chart(new CalendarChart)
    , bar(new ImplausibleDatesBar)
{
    // Below the chart, so that the tab's layout keeps the chart's place first.
    dateTabLayout->addWidget(bar);
    connect(bar, &ImplausibleDatesBar::hidingRequested, this, [this](bool hide) {
        hideImplausible = hide;
        emit hidingChanged();
    });

    page->setObjectName(QStringLiteral("tabCalendar"));
    chart->setObjectName(QStringLiteral("calendarChart"));
    auto *scrollArea = new QScrollArea(page);
    scrollArea->setObjectName(QStringLiteral("scrollAreaCalendar"));
    scrollArea->setWidget(chart);
    scrollArea->setWidgetResizable(true);
    auto *layout = new QVBoxLayout(page);
    layout->setObjectName(QStringLiteral("layoutCalendar"));
    layout->addWidget(scrollArea);
    tabs->addTab(page, tr("Calendar"));
}

DaySpan DateViews::refresh(const QSqlDatabase &db, const QDate &today,
                           const PhotoSelection &selection)
{
    QList<StatisticRow> rows;
    readStatisticRows(*Statistics::byKey(Statistics::dateOriginal), db, {}, selection, rows);
    const QMap<QDate, qint64> days = photosPerDay(rows);
    const DaySpan plausible = DaySpan::plausible(today);
    bar->setState(photosOutside(days, plausible), hideImplausible);
    chart->setDayCounts(hideImplausible ? daysWithin(days, plausible) : days);
    return hideImplausible ? plausible : DaySpan();
}

QAction *DateViews::addViewAction(QMenu *menu, bool shown)
{
    QAction *action = menu->addAction(tr("Calendar"));
    action->setObjectName(QStringLiteral("actionViewCalendar"));
    action->setCheckable(true);
    action->setChecked(shown);
    tabs->setTabVisible(tabs->indexOf(page), shown);
    connect(action, &QAction::toggled, this,
            [this](bool checked) { tabs->setTabVisible(tabs->indexOf(page), checked); });
    return action;
}
