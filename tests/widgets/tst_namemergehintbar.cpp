#include "tst_namemergehintbar.h"

#include "namemergehintbar.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

void tst_NameMergeHintBar::showsTheHintAndOffersToMerge()
{
    NameMergeHintBar bar;
    QVERIFY(bar.isHidden());
    QSignalSpy merges(&bar, &NameMergeHintBar::mergeRequested);

    bar.setHint("3 makers differ only in blanks or case");
    QVERIFY(!bar.isHidden());
    QCOMPARE(bar.hint(), QString("3 makers differ only in blanks or case"));
    auto *button = bar.findChild<QPushButton *>("buttonMergeNames");
    QVERIFY(button);
    QCOMPARE(button->text(), QString("Merge them"));
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(merges.size(), 1);

    // One line below the page's chart: it never takes height from it.
    QCOMPARE(bar.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);

    bar.setHint(QString());
    QVERIFY(bar.isHidden());
}
