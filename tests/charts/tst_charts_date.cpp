// The date chart without OpenGL: which rows, labels and titles the capture dates give, which
// date texts count, and the placeholder that stands in for the 3-D graph.

#include "chartdate3d.h"
#include "chartsfixture.h"

#include "testrunner.h"

#include <QApplication>
#include <QCategory3DAxis>
#include <QLabel>
#include <QPointer>
#include <QTest>

#include <QVBoxLayout>
#include <QValue3DAxis>
#include <QWidget>
#include <numeric>

using namespace chartsfixture;

namespace {

const QStringList months = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"
};

QStringList days()
{
    QStringList labels;
    for (int day = 1; day <= 31; ++day)
        labels.append(QString::number(day));
    return labels;
}

// A tab page with its layout, as the main window hands it over.
struct Page
{
    QWidget widget;
    QVBoxLayout *layout = new QVBoxLayout(&widget);
};

} // namespace

class tst_ChartsDate : public QObject
{
    Q_OBJECT

private slots:
    void parsesExifDates_data();
    void parsesExifDates();
    void layoutByDateSpan_data();
    void layoutByDateSpan();
    void placeholderWithoutOpenGL();
    void refreshReplacesLayoutContent();
    void cameraKeptWithoutGraph();
    void defaultFormDrawsNothing();
    void hiddenDaysLeaveTheChart_data();
    void hiddenDaysLeaveTheChart();
};

void tst_ChartsDate::parsesExifDates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDate>("date");

    QTest::newRow("exif date and time") << "2023:03:14 10:11:12" << QDate(2023, 3, 14);
    QTest::newRow("date part alone") << "2019:12:31" << QDate(2019, 12, 31);
    QTest::newRow("leap day") << "2024:02:29 00:00:00" << QDate(2024, 2, 29);
    QTest::newRow("no leap day in 2023") << "2023:02:29 00:00:00" << QDate();
    QTest::newRow("not available") << "n.a." << QDate();
    QTest::newRow("empty") << "" << QDate();
    QTest::newRow("zeros of an unset clock") << "0000:00:00 00:00:00" << QDate();
    QTest::newRow("blanks of an unset clock") << "    :  :     :  :  " << QDate();
    QTest::newRow("month thirteen") << "2023:13:01 12:00:00" << QDate();
    QTest::newRow("day zero") << "2023:05:00 12:00:00" << QDate();
    QTest::newRow("dashes") << "2023-03-14 10:11:12" << QDate(2023, 3, 14);
    QTest::newRow("slashes") << "2023/03/14 10:11:12" << QDate(2023, 3, 14);
    QTest::newRow("dots") << "2023.03.14 10:11:12" << QDate(2023, 3, 14);
    QTest::newRow("mixed separators") << "2023:03-14 10:11:12" << QDate(2023, 3, 14);
    QTest::newRow("ISO form with T") << "2023-03-14T10:11:12" << QDate(2023, 3, 14);
    QTest::newRow("blank as separator") << "2023 03 14 10:11:12" << QDate();
    QTest::newRow("letter as separator") << "2023x03x14 10:11:12" << QDate();
    QTest::newRow("a digit right after the day") << "2023:03:141 10:11:12" << QDate();
    QTest::newRow("a digit after the day, date alone") << "2023:03:1410" << QDate();
    QTest::newRow("too short") << "2023:03:1" << QDate();
    QTest::newRow("nine characters") << "2023:3:14" << QDate();
    QTest::newRow("sign in the year") << "+023:03:14 10:11:12" << QDate();
}

// The chart counts exactly the dates that Qt's own conversion of the field accepts.
void tst_ChartsDate::parsesExifDates()
{
    QFETCH(QString, text);
    QFETCH(QDate, date);
    QCOMPARE(ChartDate3D::parseExifDate(text), QVariant(text).toDate());
    QCOMPARE(ChartDate3D::parseExifDate(text), date);
}

void tst_ChartsDate::layoutByDateSpan_data()
{
    QTest::addColumn<QStringList>("dates");
    QTest::addColumn<QStringList>("rowLabels");
    QTest::addColumn<QStringList>("columnLabels");
    QTest::addColumn<QString>("rowTitle");
    QTest::addColumn<QString>("columnTitle");
    // "row,column,count" for every cell that is not zero.
    QTest::addColumn<QStringList>("cells");

    QTest::newRow("2019 and 2022: four years, the middle two empty")
        << QStringList { "2019:05:01 08:00:00", "2019:05:20 09:00:00", "2022:12:24 18:30:00" }
        << QStringList { "2019", "2020", "2021", "2022" } << months << "Year"
        << "Month" << QStringList { "0,4,2", "3,11,1" };
    QTest::newRow("March 2023: one row of 31 days")
        << QStringList { "2023:03:01 10:00:00", "2023:03:31 10:00:00", "2023:03:31 11:00:00" }
        << QStringList { "March" } << days() << "Year 2023"
        << "Day" << QStringList { "0,0,1", "0,30,2" };
    QTest::newRow("April 2023: the 31st column exists and stays empty")
        << QStringList { "2023:04:30 10:00:00", "2023:04:02 10:00:00" } << QStringList { "April" }
        << days() << "Year 2023"
        << "Day" << QStringList { "0,1,1", "0,29,1" };
    QTest::newRow("two months of one year: twelve rows of days")
        << QStringList { "2023:07:04 10:00:00", "2023:02:10 10:00:00", "2023:02:10 23:59:59" }
        << months << days() << "Year 2023"
        << "Day" << QStringList { "1,9,2", "6,3,1" };
    QTest::newRow("invalid date texts are skipped")
        << QStringList { "n.a.",
                         "",
                         "0000:00:00 00:00:00",
                         "2023:13:01 00:00:00",
                         "2023:02:30 00:00:00",
                         "2023:03:14 10:11:12" }
        << QStringList { "March" } << days() << "Year 2023"
        << "Day" << QStringList { "0,13,1" };
    QTest::newRow("dashes, slashes and dots count like colons; a digit after the day does not")
        << QStringList { "2023-03-14 10:11:12", "2023/03/14 08:00:00", "2023.03.20 08:00:00",
                         "2023:03:141 10:11:12", "2023:03:20" }
        << QStringList { "March" } << days() << "Year 2023"
        << "Day" << QStringList { "0,13,2", "0,19,2" };
    QTest::newRow("no valid date: no rows")
        << QStringList { "n.a.", "" } << QStringList() << QStringList() << QString() << QString()
        << QStringList();
}

void tst_ChartsDate::layoutByDateSpan()
{
    QFETCH(QStringList, dates);
    QFETCH(QStringList, rowLabels);
    QFETCH(QStringList, columnLabels);
    QFETCH(QString, rowTitle);
    QFETCH(QString, columnTitle);
    QFETCH(QStringList, cells);

    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QVERIFY2(table.insertDates(dates), qPrintable(table.lastError()));
    Page page;
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeQt, 0, 0, 100, nullptr);

    QCOMPARE(chart.rowLabels(), rowLabels);
    QCOMPARE(chart.columnLabels(), columnLabels);
    QCOMPARE(chart.rowAxisTitle(), rowTitle);
    QCOMPARE(chart.columnAxisTitle(), columnTitle);
    const QList<QList<float>> values = chart.rowValues();
    QCOMPARE(values.size(), rowLabels.size());
    QList<QList<float>> expected;
    for (int row = 0; row < rowLabels.size(); ++row)
        expected.append(QList<float>(columnLabels.size(), 0));
    for (const QString &cell : cells) {
        const QStringList parts = cell.split(',');
        expected[parts[0].toInt()][parts[1].toInt()] = parts[2].toFloat();
    }
    QCOMPARE(values, expected);
}

void tst_ChartsDate::placeholderWithoutOpenGL()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("offscreen"));
    QVERIFY2(!ChartDate3D::openGLAvailable(), "the offscreen platform has no OpenGL for Q3DBars");

    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QVERIFY2(table.insertDates({ "2023:03:14 10:11:12" }), qPrintable(table.lastError()));
    Page page;
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeEbony, 10, 20, 150, nullptr);

    QVERIFY(!chart.graph());
    QCOMPARE(page.layout->count(), 1);
    auto *label = qobject_cast<QLabel *>(page.layout->itemAt(0)->widget());
    QVERIFY2(label, "a label stands in for the graph");
    QCOMPARE(label->text(), ChartDate3D::placeholderText);
    QVERIFY(chart.renderToImage(6).isNull());
    QCOMPARE(chart.rowLabels(), QStringList { "March" });
}

// Whatever the layout held goes; after many refreshes there is one item and one set of axes.
void tst_ChartsDate::refreshReplacesLayoutContent()
{
    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QVERIFY2(table.insertDates({ "2021:01:01 00:00:00", "2022:06:01 00:00:00" }),
             qPrintable(table.lastError()));
    Page page;
    QPointer<QWidget> before = new QLabel("left from before");
    page.layout->addWidget(before);

    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeQt, 0, 0, 100, nullptr);
    QVERIFY2(before.isNull(), "the layout's old widget is destroyed");
    QPointer<QWidget> first = page.layout->itemAt(0)->widget();
    for (int i = 0; i < 50; ++i)
        chart.refreshChart();

    QVERIFY2(first.isNull(), "each refresh replaces the layout's content");
    QCOMPARE(page.layout->count(), 1);
    QCOMPARE(chart.findChildren<QValue3DAxis *>().size(), 1);
    QCOMPARE(chart.findChildren<QCategory3DAxis *>().size(), 2);
    QCOMPARE(chart.rowLabels(), (QStringList { "2021", "2022" }));
}

void tst_ChartsDate::cameraKeptWithoutGraph()
{
    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    Page page;
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeQt, 35.5f, 12.25f, 180,
                      nullptr);
    QCOMPARE(chart.cameraXRotation(), 35.5f);
    QCOMPARE(chart.cameraYRotation(), 12.25f);
    QCOMPARE(chart.cameraZoomFactor(), 180.0f);

    chart.onCameraXRotationChanged(-40);
    chart.onCameraYRotationChanged(5);
    chart.onCameraZoomFactorChanged(90);
    chart.refreshChart();
    QCOMPARE(chart.cameraXRotation(), -40.0f);
    QCOMPARE(chart.cameraYRotation(), 5.0f);
    QCOMPARE(chart.cameraZoomFactor(), 90.0f);
}

void tst_ChartsDate::defaultFormDrawsNothing()
{
    ChartDate3D chart(nullptr);
    QVERIFY(!chart.graph());
    QVERIFY(chart.rowLabels().isEmpty());
    QVERIFY(chart.rowValues().isEmpty());
    QCOMPARE(chart.findChildren<QValue3DAxis *>().size(), 1);
    chart.refreshChart();
    QVERIFY(chart.rowLabels().isEmpty());
    QVERIFY(chart.renderToImage(6).isNull());
}

void tst_ChartsDate::hiddenDaysLeaveTheChart_data()
{
    QTest::addColumn<QStringList>("dates");
    QTest::addColumn<QStringList>("allRows");
    QTest::addColumn<QStringList>("plausibleRows");
    QTest::addColumn<int>("hidden");

    // "Today" is 2026-11-24 for these rows.
    QTest::newRow("an unset clock's 1970 before real years")
        << QStringList { "1970:01:01 00:00:00", "2023:03:14 10:00:00", "2024:05:01 09:00:00" }
        << QStringList { "1970", "1971" } << QStringList { "2023", "2024" } << 1;
    QTest::newRow("last day before 1990 and first day of 1990")
        << QStringList { "1989:12:31 23:59:59", "1990:01:01 00:00:00", "1991:06:01 12:00:00" }
        << QStringList { "1989", "1990" } << QStringList { "1990", "1991" } << 1;
    QTest::newRow("today stays, tomorrow goes")
        << QStringList { "2026:11:24 12:00:00", "2026:11:25 08:00:00", "2026:01:01 08:00:00" }
        << QStringList { "January", "February" } << QStringList { "January", "February" } << 1;
    QTest::newRow("2000 and zeros")
        << QStringList { "2000:01:01 00:00:00", "0000:00:00 00:00:00", "2001:01:01 00:00:00" }
        << QStringList { "2000", "2001" } << QStringList { "2000", "2001" } << 0;
}

// The rows begin with the listed labels; with the span, the implausible ones are not drawn.
void tst_ChartsDate::hiddenDaysLeaveTheChart()
{
    QFETCH(QStringList, dates);
    QFETCH(QStringList, allRows);
    QFETCH(QStringList, plausibleRows);
    QFETCH(int, hidden);

    PhotoTable table;
    QVERIFY2(table.insertDates(dates), qPrintable(table.lastError()));
    Page page;
    ChartDate3D all(table.database(), page.layout, Q3DTheme::ThemeQt, 0, 0, 100, nullptr);
    QCOMPARE(all.rowLabels().mid(0, 2), allRows);
    Page other;
    ChartDate3D plausible(table.database(), other.layout, Q3DTheme::ThemeQt, 0, 0, 100,
                          DaySpan::plausible(QDate(2026, 11, 24)), nullptr);
    QCOMPARE(plausible.rowLabels().mid(0, 2), plausibleRows);
    float drawnAll = 0;
    float drawnPlausible = 0;
    for (const auto &row : all.rowValues())
        drawnAll += std::accumulate(row.cbegin(), row.cend(), 0.0f);
    for (const auto &row : plausible.rowValues())
        drawnPlausible += std::accumulate(row.cbegin(), row.cend(), 0.0f);
    // A date of zeros is no date and is never drawn.
    const int dated = int(dates.size() - dates.count("0000:00:00 00:00:00"));
    QCOMPARE(drawnAll, float(dated));
    QCOMPARE(drawnPlausible, float(dated - hidden));
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_ChartsDate test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_charts_date.moc"
