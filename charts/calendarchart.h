#pragma once

#include <QColor>
#include <QDate>
#include <QList>
#include <QMap>
#include <QRect>
#include <QString>
#include <QWidget>

// Shooting activity as photographers scan it: one band per year with photos, newest on top; in
// each band one column per week (Monday to Sunday from top to bottom) and one cell per day,
// coloured by the day's number of photos. A legend above the years shows the scale; hovering a
// cell shows its date and count. Meant to sit in a scroll area: it asks for the height of all
// its years.
class CalendarChart : public QWidget
{
    Q_OBJECT

public:
    explicit CalendarChart(QWidget *parent = nullptr);

    void setDayCounts(const QMap<QDate, qint64> &counts);

    // The years drawn, newest first.
    QList<int> years() const { return shownYears; }
    qint64 busiestDay() const { return largest; }
    // Where the day's cell is drawn; an empty rectangle when its year is not drawn.
    QRect cellRect(const QDate &day) const;
    // The day whose cell holds the point; an invalid date between and outside the cells.
    QDate dayAt(const QPoint &point) const;
    // The week column (0 to 53) and the weekday row (0 Monday to 6 Sunday) of a day within its
    // own year's band: the days before the year's first Monday share column 0 with it.
    static int weekColumn(const QDate &day);
    static int weekdayRow(const QDate &day);
    // The colour of a day with so many photos: 0 is empty, then four steps up to busiestDay().
    int level(qint64 count) const;
    static QColor levelColor(int level);
    // The counts each coloured step of the legend stands for ("1", "2–3", ...).
    QList<QString> legendTexts() const;
    // What hovering the day's cell shows.
    QString toolTipFor(const QDate &day) const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    int bandTop(int yearIndex) const;
    int legendHeight() const;
    void paintLegend(QPainter &painter) const;
    void paintYear(QPainter &painter, int yearIndex) const;

    QMap<QDate, qint64> dayCounts;
    QList<int> shownYears;
    qint64 largest = 0;
};
