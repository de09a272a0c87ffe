// The calendar of shooting days: where each day's cell lies (leap years, a 53rd week, the first
// days of January), which years are drawn and in which order, the colour scale and its legend,
// and what hovering a cell shows.

#include "calendarchart.h"

#include "testrunner.h"

#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QSet>
#include <QTest>
#include <QToolTip>

class tst_CalendarChart : public QObject
{
    Q_OBJECT

private slots:
    void cellOfADay_data();
    void cellOfADay();
    void everyDayHasItsOwnCell_data();
    void everyDayHasItsOwnCell();
    void onlyYearsWithPhotosNewestOnTop();
    void colourSteps_data();
    void colourSteps();
    void paintsEachDayInItsColour();
    void hoveringACellShowsDateAndCount();
    void heightGrowsWithTheYears();
};

void tst_CalendarChart::cellOfADay_data()
{
    QTest::addColumn<QDate>("day");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("row");

    QTest::newRow("1 January on a Sunday") << QDate(2023, 1, 1) << 0 << 6;
    QTest::newRow("2 January, the first Monday") << QDate(2023, 1, 2) << 1 << 0;
    QTest::newRow("1 January on a Monday") << QDate(2024, 1, 1) << 0 << 0;
    QTest::newRow("1 January in ISO week 53 of the year before") << QDate(2021, 1, 1) << 0 << 4;
    QTest::newRow("3 January, still ISO week 53") << QDate(2021, 1, 3) << 0 << 6;
    QTest::newRow("29 February") << QDate(2024, 2, 29) << 8 << 3;
    QTest::newRow("1 March after a leap day") << QDate(2024, 3, 1) << 8 << 4;
    QTest::newRow("1 March without one") << QDate(2023, 3, 1) << 9 << 2;
    QTest::newRow("ISO week 53, Monday") << QDate(2020, 12, 28) << 52 << 0;
    QTest::newRow("31 December in week 53") << QDate(2020, 12, 31) << 52 << 3;
    QTest::newRow("leap year from a Sunday: a 54th column") << QDate(2012, 12, 31) << 53 << 0;
    QTest::newRow("31 December in ISO week 1 of the next year") << QDate(2024, 12, 31) << 52 << 1;
}

void tst_CalendarChart::cellOfADay()
{
    QFETCH(QDate, day);
    QFETCH(int, column);
    QFETCH(int, row);
    QCOMPARE(CalendarChart::weekColumn(day), column);
    QCOMPARE(CalendarChart::weekdayRow(day), row);

    CalendarChart chart;
    chart.setDayCounts({ { day, 1 } });
    const QRect cell = chart.cellRect(day);
    QVERIFY(!cell.isEmpty());
    QCOMPARE(chart.dayAt(cell.center()), day);
    // Cells of one year line up: the next day is one row further down or starts a new column.
    const QRect next = chart.cellRect(day.addDays(1));
    if (day.addDays(1).year() == day.year() && row < 6)
        QCOMPARE(next.topLeft(), cell.topLeft() + QPoint(0, cell.height() + 2));
}

void tst_CalendarChart::everyDayHasItsOwnCell_data()
{
    QTest::addColumn<int>("year");
    QTest::addColumn<int>("days");
    QTest::newRow("leap year from a Monday") << 2024 << 366;
    QTest::newRow("common year from a Sunday") << 2023 << 365;
    QTest::newRow("leap year from a Sunday") << 2012 << 366;
    QTest::newRow("leap year 2000") << 2000 << 366;
    QTest::newRow("1900 is no leap year") << 1900 << 365;
}

void tst_CalendarChart::everyDayHasItsOwnCell()
{
    QFETCH(int, year);
    QFETCH(int, days);
    CalendarChart chart;
    chart.setDayCounts({ { QDate(year, 6, 1), 2 } });
    QSet<QPair<int, int>> corners;
    int count = 0;
    for (QDate day(year, 1, 1); day.year() == year; day = day.addDays(1), ++count) {
        const QRect cell = chart.cellRect(day);
        QVERIFY2(!cell.isEmpty(), qPrintable(day.toString(Qt::ISODate)));
        QCOMPARE(chart.dayAt(cell.center()), day);
        corners.insert({ cell.left(), cell.top() });
    }
    QCOMPARE(count, days);
    QCOMPARE(corners.size(), days);
    // Outside the cells there is no day: before 1 January's column and in the gaps.
    const QRect first = chart.cellRect(QDate(year, 1, 1));
    QVERIFY(!chart.dayAt(first.topLeft() - QPoint(3, 0)).isValid());
    QVERIFY(!chart.dayAt(first.bottomRight() + QPoint(1, 1)).isValid());
}

void tst_CalendarChart::onlyYearsWithPhotosNewestOnTop()
{
    CalendarChart chart;
    chart.setDayCounts({ { QDate(1996, 5, 5), 1 },
                         { QDate(2024, 2, 29), 3 },
                         { QDate(2010, 1, 1), 0 },
                         { QDate(2009, 12, 31), 2 } });
    QCOMPARE(chart.years(), QList<int>({ 2024, 2009, 1996 }));
    QVERIFY(chart.cellRect(QDate(2010, 1, 1)).isEmpty());
    QVERIFY(chart.cellRect(QDate(2005, 3, 3)).isEmpty());
    QVERIFY(chart.cellRect(QDate(2024, 12, 31)).bottom() < chart.cellRect(QDate(2009, 1, 1)).top());
    QVERIFY(chart.cellRect(QDate(2009, 12, 31)).bottom() < chart.cellRect(QDate(1996, 1, 1)).top());
    QCOMPARE(chart.busiestDay(), qint64(3));

    chart.setDayCounts({});
    QVERIFY(chart.years().isEmpty());
    QCOMPARE(chart.busiestDay(), qint64(0));
}

void tst_CalendarChart::colourSteps_data()
{
    QTest::addColumn<qint64>("busiest");
    QTest::addColumn<QList<qint64>>("counts");
    QTest::addColumn<QList<int>>("levels");
    QTest::addColumn<QStringList>("legend");

    QTest::newRow("busiest day 8")
        << qint64(8) << QList<qint64> { 0, 1, 2, 3, 5, 8 } << QList<int> { 0, 1, 1, 2, 3, 4 }
        << QStringList { "0", "1–2", "3–4", "5–6", "7–8" };
    QTest::newRow("one photo a day at most")
        << qint64(1) << QList<qint64> { 0, 1 } << QList<int> { 0, 4 }
        << QStringList { "0", "", "", "", "1" };
    QTest::newRow("busiest day 3")
        << qint64(3) << QList<qint64> { 1, 2, 3 } << QList<int> { 2, 3, 4 }
        << QStringList { "0", "", "1", "2", "3" };
    QTest::newRow("busiest day 100")
        << qint64(100) << QList<qint64> { 1, 25, 26, 100 } << QList<int> { 1, 1, 2, 4 }
        << QStringList { "0", "1–25", "26–50", "51–75", "76–100" };
}

void tst_CalendarChart::colourSteps()
{
    QFETCH(qint64, busiest);
    QFETCH(QList<qint64>, counts);
    QFETCH(QList<int>, levels);
    QFETCH(QStringList, legend);

    CalendarChart chart;
    chart.setDayCounts({ { QDate(2024, 7, 1), busiest } });
    for (int i = 0; i < counts.size(); ++i)
        QCOMPARE(chart.level(counts.at(i)), levels.at(i));
    QCOMPARE(chart.legendTexts(), legend);
    // Each step's colour is its own.
    QSet<QRgb> colours;
    for (int level = 0; level <= 4; ++level)
        colours.insert(CalendarChart::levelColor(level).rgb());
    QCOMPARE(colours.size(), 5);
}

void tst_CalendarChart::paintsEachDayInItsColour()
{
    CalendarChart chart;
    const QMap<QDate, qint64> counts { { QDate(2024, 2, 29), 4 },
                                       { QDate(2024, 1, 1), 1 },
                                       { QDate(2023, 12, 31), 2 } };
    chart.setDayCounts(counts);
    chart.resize(chart.sizeHint());
    const QImage image = chart.grab().toImage();
    for (const QDate &day : { QDate(2024, 2, 29), QDate(2024, 1, 1), QDate(2023, 12, 31),
                              QDate(2024, 3, 1), QDate(2023, 1, 1) }) {
        const QColor expected = CalendarChart::levelColor(chart.level(counts.value(day)));
        const QPoint centre = chart.cellRect(day).center() * image.devicePixelRatio();
        QCOMPARE(QColor(image.pixel(centre)).name(), expected.name());
    }
}

void tst_CalendarChart::hoveringACellShowsDateAndCount()
{
    CalendarChart chart;
    chart.setDayCounts({ { QDate(2024, 2, 29), 3 }, { QDate(2024, 3, 1), 1 } });
    chart.resize(chart.sizeHint());
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart));
    QCOMPARE(chart.toolTipFor(QDate(2024, 3, 2)), QString("Saturday, 2024-03-02: 0 photos"));

    const struct
    {
        QDate day;
        QString text;
    } cases[] = { { QDate(2024, 2, 29), "Thursday, 2024-02-29: 3 photos" },
                  { QDate(2024, 3, 1), "Friday, 2024-03-01: 1 photo" } };
    for (const auto &hovered : cases) {
        const QPoint pos = chart.cellRect(hovered.day).center();
        QHelpEvent help(QEvent::ToolTip, pos, chart.mapToGlobal(pos));
        QApplication::sendEvent(&chart, &help);
        QTRY_COMPARE(QToolTip::text(), hovered.text);
    }
    QToolTip::hideText();
}

void tst_CalendarChart::heightGrowsWithTheYears()
{
    CalendarChart chart;
    chart.setDayCounts({ { QDate(2024, 1, 1), 1 } });
    const int oneYear = chart.sizeHint().height();
    QMap<QDate, qint64> many;
    for (int year = 1996; year <= 2024; ++year)
        many.insert(QDate(year, 6, 1), 1);
    chart.setDayCounts(many);
    QCOMPARE(chart.years().size(), 29);
    QVERIFY2(chart.sizeHint().height() > 20 * oneYear / 2,
             qPrintable(QString::number(chart.sizeHint().height())));
    QVERIFY(chart.cellRect(QDate(1996, 12, 31)).bottom() < chart.sizeHint().height());
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    tst_CalendarChart test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_calendarchart.moc"
