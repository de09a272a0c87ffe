#include "calendarchart.h"

#include <QHelpEvent>
#include <QLocale>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace {

// Layout in pixels.
constexpr int cell = 13; // a day's square, its gap included
constexpr int gap = 2;
constexpr int left = 56; // room for the year and the weekday names
constexpr int top = 8;
constexpr int yearGap = 18; // between two years' bands; the months' names sit in it
constexpr int weekColumns = 54;
constexpr int levels = 4; // coloured steps above "no photos"

} // namespace

CalendarChart::CalendarChart(QWidget *parent)
    : QWidget(parent)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

void CalendarChart::setDayCounts(const QMap<QDate, qint64> &counts)
{
    dayCounts = counts;
    shownYears.clear();
    largest = 0;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        if (it.value() <= 0)
            continue;
        largest = std::max(largest, it.value());
        if (!shownYears.contains(it.key().year()))
            shownYears.append(it.key().year());
    }
    std::sort(shownYears.begin(), shownYears.end(), std::greater<int>());
    updateGeometry();
    update();
}

int CalendarChart::weekColumn(const QDate &day)
{
    const int firstWeekday = QDate(day.year(), 1, 1).dayOfWeek() - 1;
    return (day.dayOfYear() - 1 + firstWeekday) / 7;
}

int CalendarChart::weekdayRow(const QDate &day)
{
    return day.dayOfWeek() - 1;
}

int CalendarChart::legendHeight() const
{
    return fontMetrics().height() + 12;
}

int CalendarChart::bandTop(int yearIndex) const
{
    return top + legendHeight() + yearIndex * (7 * cell + yearGap) + fontMetrics().height();
}

QRect CalendarChart::cellRect(const QDate &day) const
{
    const int yearIndex = int(shownYears.indexOf(day.year()));
    if (!day.isValid() || yearIndex < 0)
        return {};
    return QRect(left + weekColumn(day) * cell, bandTop(yearIndex) + weekdayRow(day) * cell,
                 cell - gap, cell - gap);
}

QDate CalendarChart::dayAt(const QPoint &point) const
{
    for (int yearIndex = 0; yearIndex < shownYears.size(); ++yearIndex) {
        const int bandY = bandTop(yearIndex);
        if (point.y() < bandY || point.y() >= bandY + 7 * cell || point.x() < left)
            continue;
        const int column = (point.x() - left) / cell;
        const int row = (point.y() - bandY) / cell;
        const QDate first(shownYears.at(yearIndex), 1, 1);
        const QDate day = first.addDays(column * 7 + row - (first.dayOfWeek() - 1));
        if (day.year() == first.year() && cellRect(day).contains(point))
            return day;
    }
    return {};
}

int CalendarChart::level(qint64 count) const
{
    if (count <= 0 || largest <= 0)
        return 0;
    return int(std::ceil(double(levels) * double(count) / double(largest)));
}

QColor CalendarChart::levelColor(int level)
{
    static const QColor colors[levels + 1] = { QColor(0xe4, 0xe7, 0xeb), QColor(0x9b, 0xe9, 0xa8),
                                               QColor(0x40, 0xc4, 0x63), QColor(0x30, 0xa1, 0x4e),
                                               QColor(0x21, 0x6e, 0x39) };
    return colors[std::clamp(level, 0, levels)];
}

QList<QString> CalendarChart::legendTexts() const
{
    QList<QString> texts { QStringLiteral("0") };
    qint64 from = 1;
    for (int step = 1; step <= levels; ++step) {
        // The largest count that still falls into this step.
        const qint64 to = qint64(std::floor(double(step) * double(largest) / levels));
        if (to < from) {
            texts.append(QString());
            continue;
        }
        texts.append(from == to ? QString::number(from)
                                : QStringLiteral("%1–%2").arg(from).arg(to));
        from = to + 1;
    }
    return texts;
}

QString CalendarChart::toolTipFor(const QDate &day) const
{
    const qint64 count = dayCounts.value(day);
    return QStringLiteral("%1, %2: %3 %4")
        .arg(QLocale::c().dayName(day.dayOfWeek()), day.toString(Qt::ISODate))
        .arg(count)
        .arg(count == 1 ? QStringLiteral("photo") : QStringLiteral("photos"));
}

QSize CalendarChart::sizeHint() const
{
    const int height = shownYears.isEmpty() ? bandTop(0) : bandTop(int(shownYears.size()));
    return QSize(left + weekColumns * cell + 16, height);
}

bool CalendarChart::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        auto *help = static_cast<QHelpEvent *>(event);
        const QDate day = dayAt(help->pos());
        if (day.isValid())
            QToolTip::showText(help->globalPos(), toolTipFor(day), this);
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(event);
}

void CalendarChart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    painter.setPen(palette().text().color());
    if (shownYears.isEmpty()) {
        painter.drawText(rect(), Qt::AlignCenter, tr("No photos with a capture date"));
        return;
    }
    paintLegend(painter);
    for (int yearIndex = 0; yearIndex < shownYears.size(); ++yearIndex)
        paintYear(painter, yearIndex);
}

void CalendarChart::paintLegend(QPainter &painter) const
{
    int x = left;
    const int y = top;
    const QString title = tr("Photos per day:");
    painter.drawText(x, y + fontMetrics().ascent(), title);
    x += fontMetrics().horizontalAdvance(title) + 8;
    const QList<QString> texts = legendTexts();
    for (int step = 0; step < texts.size(); ++step) {
        if (texts.at(step).isEmpty())
            continue;
        painter.fillRect(QRect(x, y + 1, cell - gap, cell - gap), levelColor(step));
        x += cell + 2;
        painter.drawText(x, y + fontMetrics().ascent(), texts.at(step));
        x += fontMetrics().horizontalAdvance(texts.at(step)) + 12;
    }
}

void CalendarChart::paintYear(QPainter &painter, int yearIndex) const
{
    const int year = shownYears.at(yearIndex);
    const int bandY = bandTop(yearIndex);
    const QFontMetrics metrics = fontMetrics();
    // The year on the line of the months' names, above the weekdays.
    QFont bold = painter.font();
    bold.setBold(true);
    painter.save();
    painter.setFont(bold);
    painter.drawText(4, bandY - 3, QString::number(year));
    painter.restore();
    for (int row : { 0, 2, 4 })
        painter.drawText(
            left - 4
                - metrics.horizontalAdvance(QLocale::c().dayName(row + 1, QLocale::ShortFormat)),
            bandY + row * cell + metrics.ascent() - 2,
            QLocale::c().dayName(row + 1, QLocale::ShortFormat));
    for (int month = 1; month <= 12; ++month) {
        const QDate first(year, month, 1);
        painter.drawText(left + weekColumn(first) * cell, bandY - 3,
                         QLocale::c().monthName(month, QLocale::ShortFormat));
    }
    for (QDate day(year, 1, 1); day.year() == year; day = day.addDays(1))
        painter.fillRect(cellRect(day), levelColor(level(dayCounts.value(day))));
}
