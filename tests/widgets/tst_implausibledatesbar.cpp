#include "tst_implausibledatesbar.h"

#include "implausibledatesbar.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

void tst_ImplausibleDatesBar::saysHowManyAndOffersTheOtherChoice_data()
{
    QTest::addColumn<qint64>("photos");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("button");

    QTest::newRow("none") << qint64(0) << false << false
                          << "0 photos are dated before 1990 or after today."
                          << "Hide them from the chart";
    QTest::newRow("one, drawn") << qint64(1) << false << true
                                << "1 photo is dated before 1990 or after today."
                                << "Hide them from the chart";
    QTest::newRow("several, drawn")
        << qint64(12) << false << true << "12 photos are dated before 1990 or after today."
        << "Hide them from the chart";
    QTest::newRow("one, hidden") << qint64(
        1) << true << true << "1 photo dated before 1990 or after today is hidden from the chart."
                                 << "Show them";
    QTest::newRow("several, hidden")
        << qint64(3) << true << true
        << "3 photos dated before 1990 or after today are hidden from the chart."
        << "Show them";
}

void tst_ImplausibleDatesBar::saysHowManyAndOffersTheOtherChoice()
{
    QFETCH(qint64, photos);
    QFETCH(bool, hidden);
    QFETCH(bool, shown);
    QFETCH(QString, text);
    QFETCH(QString, button);

    ImplausibleDatesBar bar;
    bar.setState(photos, hidden);
    QCOMPARE(!bar.isHidden(), shown);
    QCOMPARE(bar.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(bar.text(), text);
    QCOMPARE(bar.buttonText(), button);

    QSignalSpy requests(&bar, &ImplausibleDatesBar::hidingRequested);
    auto *push = bar.findChild<QPushButton *>(QStringLiteral("buttonImplausibleDates"));
    QVERIFY(push);
    QCOMPARE(push->text(), button);
    QTest::mouseClick(push, Qt::LeftButton);
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests.at(0).at(0).toBool(), !hidden);
}
