#include "tdialogabout.h"
#include "tdialognachricht.h"
#include "tlabelclickable.h"
#include "tst_implausibledatesbar.h"
#include "tst_namemergehintbar.h"
#include "twidgetscrollingtext.h"
#include "urlcatcher.h"

#include "testrunner.h"
#include "testutils.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

namespace {

const QColor background(51, 51, 51);

// The site the About box is given; the program gives it the update check's host.
const QString aboutHost = QStringLiteral("photos.example.net");

bool isRed(QRgb pixel)
{
    return qRed(pixel) > 128 && qGreen(pixel) < 64 && qBlue(pixel) < 64;
}

bool isBlue(QRgb pixel)
{
    return qBlue(pixel) > 128 && qRed(pixel) < 64 && qGreen(pixel) < 64;
}

bool isBackground(QRgb pixel)
{
    return QColor(pixel).rgb() == background.rgb();
}

QImage snapshot(QWidget &widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// Pixels of rows [top, bottom) of the image that satisfy the predicate.
template<typename Predicate>
int countPixels(const QImage &image, int top, int bottom, Predicate matches)
{
    int count = 0;
    for (int y = qMax(0, top); y < qMin(bottom, image.height()); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (matches(image.pixel(x, y)))
                ++count;
        }
    }
    return count;
}

// Longest horizontal run of matching pixels in rows [top, bottom): an underline spans the whole
// text, glyphs alone never do.
template<typename Predicate>
int longestRun(const QImage &image, int top, int bottom, Predicate matches)
{
    int longest = 0;
    for (int y = qMax(0, top); y < qMin(bottom, image.height()); ++y) {
        int run = 0;
        for (int x = 0; x < image.width(); ++x) {
            run = matches(image.pixel(x, y)) ? run + 1 : 0;
            longest = qMax(longest, run);
        }
    }
    return longest;
}

// Left-most and right-most column with ink (anything but background) in rows [top, bottom).
QPair<int, int> inkColumns(const QImage &image, int top, int bottom)
{
    int left = image.width();
    int right = -1;
    for (int y = qMax(0, top); y < qMin(bottom, image.height()); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (!isBackground(image.pixel(x, y))) {
                left = qMin(left, x);
                right = qMax(right, x);
            }
        }
    }
    return { left, right };
}

void sendMouse(QWidget &widget, QEvent::Type type, QPoint pos, Qt::MouseButton button)
{
    const Qt::MouseButtons buttons = type == QEvent::MouseMove ? Qt::NoButton : button;
    QMouseEvent event(type, pos, widget.mapToGlobal(pos), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

int lineHeight(const TWidgetScrollingText &widget)
{
    return QFontMetrics(widget.scrollFont()).height();
}

const QList<QString> linkLines = {
    QStringLiteral("#Kelvaro"),
    QStringLiteral("plain text"),
    QStringLiteral("https://kelvaro.example.org"),
    QString(),
    QStringLiteral("mailto:info@kelvaro.example.org"),
    QStringLiteral("Web: https://kelvaro.example.org/downloads.html today"),
    QStringLiteral("write to mailto:info@kelvaro.example.org please"),
    QStringLiteral("mailto:a@kelvaro.example.org https://b.kelvaro.example.org"),
    QStringLiteral("#https://heading.kelvaro.example.org"),
};

} // namespace

class tst_Widgets : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void nachrichtIsASheetWithItsText();
    void nachrichtShownWithShowStaysOpen();
    void nachrichtExecClosesByItself_data();
    void nachrichtExecClosesByItself();

    void labelPressEmitsClickedOnce_data();
    void labelPressEmitsClickedOnce();
    void labelReleaseAloneEmitsNothing();

    void scrollerStartsWithItsDefaults();
    void scrollerShowsOnlyBackground_data();
    void scrollerShowsOnlyBackground();
    void scrollerDrawsActiveText();
    void scrollerMovesOnePixelPerTick();
    void scrollerWrapsAroundAfterLastLineLeftTop();
    void scrollerSetTextRestartsBelowBottom();
    void scrollerFontAloneDoesNotRecompute();
    void scrollerCentresLinesAndDrawsHeadingsWithoutHash_data();
    void scrollerCentresLinesAndDrawsHeadingsWithoutHash();
    void scrollerHoverMarksLinkRedAndUnderlined_data();
    void scrollerHoverMarksLinkRedAndUnderlined();
    void scrollerHoverComputesLineByIntegerDivision_data();
    void scrollerHoverComputesLineByIntegerDivision();
    void scrollerClickOpensLinks_data();
    void scrollerClickOpensLinks();

    void aboutFormHasItsObjects();
    void aboutTitleAndLines();
    void aboutMailLineOpensMailProgram();
    void aboutOkClosesIt();

private:
    // A shown scroller of the given size with the lines, scrolling on but its clock only advanced
    // by hand: the tests never run the event loop between setActive() and their checks.
    void prepare(TWidgetScrollingText &widget, const QList<QString> &lines, QSize size);
    // Advances the scroll clock so that the first line's band starts at y = top.
    void scrollTo(TWidgetScrollingText &widget, int top);

    testutils::Sandbox sandbox;
};

void tst_Widgets::initTestCase()
{
    QVERIFY2(sandbox.isValid(), "no scratch folder for the settings store");
}

void tst_Widgets::nachrichtIsASheetWithItsText()
{
    TDialogNachricht dialog(QStringLiteral("Chart copied to clipboard"), 2000, nullptr);
    QCOMPARE(dialog.windowType(), Qt::Sheet);
    QVERIFY2(qobject_cast<QVBoxLayout *>(dialog.layout()), "the dialog is laid out vertically");
    const QList<QLabel *> labels = dialog.findChildren<QLabel *>();
    QCOMPARE(labels.size(), 1);
    QCOMPARE(labels.first()->text(), QStringLiteral("Chart copied to clipboard"));
    QCOMPARE(dialog.layout()->indexOf(labels.first()), 0);
}

void tst_Widgets::nachrichtShownWithShowStaysOpen()
{
    // No display time: a clock started by show() would fire at the next pass of the event loop.
    TDialogNachricht dialog(QStringLiteral("Data exported"), 0, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    for (int pass = 0; pass < 3; ++pass)
        QCoreApplication::processEvents();
    QVERIFY2(dialog.isVisible(), "a dialog shown with show() closed by itself");
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

void tst_Widgets::nachrichtExecClosesByItself_data()
{
    QTest::addColumn<int>("msec");
    QTest::newRow("50 ms") << 50;
    QTest::newRow("no display time") << 0;
}

void tst_Widgets::nachrichtExecClosesByItself()
{
    QFETCH(int, msec);
    TDialogNachricht dialog(QStringLiteral("Data exported"), msec, nullptr);
    // Should the dialog's own clock fail, this ends the modal loop with Rejected instead of
    // blocking the test run.
    QTimer::singleShot(10000, &dialog, &QDialog::reject);
    const int result = dialog.exec();
    QCOMPARE(result, int(QDialog::Accepted));
    QVERIFY2(!dialog.isVisible(), "the dialog is still shown after exec() returned");
}

void tst_Widgets::labelPressEmitsClickedOnce_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("left button") << Qt::LeftButton;
    QTest::newRow("right button") << Qt::RightButton;
    QTest::newRow("middle button") << Qt::MiddleButton;
}

void tst_Widgets::labelPressEmitsClickedOnce()
{
    QFETCH(Qt::MouseButton, button);
    TLabelClickable label(nullptr, Qt::WindowFlags());
    label.resize(60, 20);
    QSignalSpy clicked(&label, &TLabelClickable::clicked);

    sendMouse(label, QEvent::MouseButtonPress, QPoint(10, 10), button);
    QCOMPARE(clicked.count(), 1);
    sendMouse(label, QEvent::MouseButtonRelease, QPoint(10, 10), button);
    QCOMPARE(clicked.count(), 1);
}

void tst_Widgets::labelReleaseAloneEmitsNothing()
{
    TLabelClickable label(nullptr, Qt::WindowFlags());
    label.resize(60, 20);
    QSignalSpy clicked(&label, &TLabelClickable::clicked);
    sendMouse(label, QEvent::MouseButtonRelease, QPoint(10, 10), Qt::LeftButton);
    QCOMPARE(clicked.count(), 0);
}

void tst_Widgets::prepare(TWidgetScrollingText &widget, const QList<QString> &lines, QSize size)
{
    widget.setText(lines);
    widget.resize(size);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    // Showing puts the first line just below the bottom edge.
    QCOMPARE(widget.scrollPosition(), size.height());
    widget.setActive(true);
}

void tst_Widgets::scrollTo(TWidgetScrollingText &widget, int top)
{
    while (widget.scrollPosition() > top)
        widget.onTimer();
    QCOMPARE(widget.scrollPosition(), top);
}

void tst_Widgets::scrollerStartsWithItsDefaults()
{
    TWidgetScrollingText widget(nullptr);
    QCOMPARE(widget.textFarbe(), QColor(228, 228, 228));
    QCOMPARE(widget.hintergrundFarbe(), QColor(51, 51, 51));
    QCOMPARE(widget.text(), QList<QString>({ "Jorriks Superprogramm", "-----", "Version 1.0" }));
    QCOMPARE(widget.scrollFont().family(), QStringLiteral("Calibri Light"));
    QCOMPARE(widget.scrollFont().pointSize(), 12);
    QVERIFY2(!widget.active(), "scrolling is on before setActive(true)");
    QVERIFY2(widget.hasMouseTracking(), "moves without a pressed button would not arrive");

    widget.setActive(true);
    QVERIFY(widget.active());
    widget.setActive(false);
    QVERIFY(!widget.active());

    widget.setTextFarbe(Qt::yellow);
    widget.setHintergrundFarbe(Qt::darkGreen);
    QCOMPARE(widget.textFarbe(), QColor(Qt::yellow));
    QCOMPARE(widget.hintergrundFarbe(), QColor(Qt::darkGreen));
}

void tst_Widgets::scrollerShowsOnlyBackground_data()
{
    QTest::addColumn<QList<QString>>("lines");
    QTest::addColumn<bool>("active");
    const QList<QString> lines = { "First line", "#Heading", "https://kelvaro.example.org" };
    QTest::newRow("inactive, with lines") << lines << false;
    QTest::newRow("active, no lines") << QList<QString>() << true;
    QTest::newRow("inactive, no lines") << QList<QString>() << false;
}

void tst_Widgets::scrollerShowsOnlyBackground()
{
    QFETCH(QList<QString>, lines);
    QFETCH(bool, active);
    TWidgetScrollingText widget(nullptr);
    prepare(widget, lines, QSize(300, 200));
    widget.setActive(active);
    // Where the lines would stand in the middle of the widget.
    scrollTo(widget, 40);

    const QImage image = snapshot(widget);
    QCOMPARE(image.size(), QSize(300, 200));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (!isBackground(image.pixel(x, y)))
                QFAIL(qPrintable(QStringLiteral("pixel (%1, %2) is %3, not the background")
                                     .arg(x)
                                     .arg(y)
                                     .arg(QColor(image.pixel(x, y)).name())));
        }
    }
}

void tst_Widgets::scrollerDrawsActiveText()
{
    TWidgetScrollingText widget(nullptr);
    prepare(widget, { "First line", "Second line" }, QSize(300, 200));
    scrollTo(widget, 40);
    const QImage image = snapshot(widget);
    const int height = lineHeight(widget);
    QVERIFY2(countPixels(image, 40, 40 + height, [](QRgb p) { return !isBackground(p); }) > 0,
             "the first line is not drawn");
    QVERIFY2(countPixels(image, 40 + 2 * height, 200, [](QRgb p) { return !isBackground(p); }) == 0,
             "something is drawn below the last line");
}

void tst_Widgets::scrollerMovesOnePixelPerTick()
{
    TWidgetScrollingText widget(nullptr);
    prepare(widget, { "one", "two" }, QSize(200, 100));
    for (int expected = 99; expected >= 50; --expected) {
        widget.onTimer();
        QCOMPARE(widget.scrollPosition(), expected);
    }
}

void tst_Widgets::scrollerWrapsAroundAfterLastLineLeftTop()
{
    TWidgetScrollingText widget(nullptr);
    const QList<QString> lines = { "first", "second", "last" };
    const int height = 120;
    prepare(widget, lines, QSize(240, height));
    const int lineH = lineHeight(widget);
    const int total = lineH * int(lines.size());
    const auto ink = [](QRgb p) { return !isBackground(p); };

    // The last line's band is the top band of the widget: still in sight.
    scrollTo(widget, lineH - total);
    QVERIFY2(countPixels(snapshot(widget), 0, lineH, ink) > 0, "the last line is not in sight");

    // The whole text has left the top; the next tick still moves on.
    scrollTo(widget, -total + 1);
    widget.onTimer();
    QCOMPARE(widget.scrollPosition(), -total);
    QCOMPARE(countPixels(snapshot(widget), 0, height, ink), 0);

    // From there the text starts again just below the bottom edge...
    widget.onTimer();
    QCOMPARE(widget.scrollPosition(), height);
    QCOMPARE(countPixels(snapshot(widget), 0, height, ink), 0);

    // ... and the first line comes in from the bottom.
    for (int tick = 0; tick < lineH; ++tick)
        widget.onTimer();
    QCOMPARE(widget.scrollPosition(), height - lineH);
    const QImage image = snapshot(widget);
    QVERIFY2(countPixels(image, height - lineH, height, ink) > 0,
             "the first line did not come back from the bottom edge");
    QCOMPARE(countPixels(image, 0, height - lineH, ink), 0);
}

void tst_Widgets::scrollerSetTextRestartsBelowBottom()
{
    TWidgetScrollingText widget(nullptr);
    prepare(widget, { "one" }, QSize(200, 100));
    scrollTo(widget, 20);
    widget.setText({ "two", "three" });
    QCOMPARE(widget.text(), QList<QString>({ "two", "three" }));
    QCOMPARE(widget.scrollPosition(), 100);
}

void tst_Widgets::scrollerFontAloneDoesNotRecompute()
{
    TWidgetScrollingText widget(nullptr);
    prepare(widget, { "one", "two" }, QSize(200, 100));
    scrollTo(widget, 30);
    const int oldHeight = lineHeight(widget);

    QFont bigger = widget.scrollFont();
    bigger.setPointSize(40);
    widget.setScrollFont(bigger);
    QCOMPARE(widget.scrollFont().pointSize(), 40);
    QCOMPARE(widget.scrollPosition(), 30);

    // The line height is still that of the old font: the second line starts one old line height
    // below the first.
    sendMouse(widget, QEvent::MouseMove, QPoint(10, 30 + oldHeight + 1), Qt::NoButton);
    QCOMPARE(widget.hoveredLine(), 1);
}

void tst_Widgets::scrollerCentresLinesAndDrawsHeadingsWithoutHash_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("bold");
    QTest::newRow("plain line") << "Kelvaro statistics"
                                << "Kelvaro statistics" << false;
    QTest::newRow("heading") << "#Kelvaro statistics"
                             << "Kelvaro statistics" << true;
    QTest::newRow("hash inside a plain line") << "Tab #3 and more"
                                              << "Tab #3 and more" << false;
}

void tst_Widgets::scrollerCentresLinesAndDrawsHeadingsWithoutHash()
{
    QFETCH(QString, line);
    QFETCH(QString, shown);
    QFETCH(bool, bold);
    TWidgetScrollingText widget(nullptr);
    prepare(widget, { line }, QSize(301, 80));
    scrollTo(widget, 20);

    QFont font = widget.scrollFont();
    font.setWeight(bold ? QFont::Bold : QFont::Normal);
    const int advance = QFontMetrics(font).horizontalAdvance(shown);
    const int expectedLeft = (301 - advance + 1) / 2;
    const QPair<int, int> ink = inkColumns(snapshot(widget), 20, 20 + lineHeight(widget));
    QVERIFY2(ink.second >= 0, "nothing drawn");
    // Glyphs stand within a few pixels of their advance box (side bearings).
    const int slack = 4;
    QVERIFY2(qAbs(ink.first - expectedLeft) <= slack,
             qPrintable(QStringLiteral("ink starts at %1, the centred text at %2")
                            .arg(ink.first)
                            .arg(expectedLeft)));
    QVERIFY2(qAbs(ink.second - (expectedLeft + advance)) <= slack,
             qPrintable(QStringLiteral("ink ends at %1, the centred text at %2")
                            .arg(ink.second)
                            .arg(expectedLeft + advance)));
}

void tst_Widgets::scrollerHoverMarksLinkRedAndUnderlined_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<bool>("marked");
    QTest::newRow("web line") << 2 << true;
    QTest::newRow("mail line") << 4 << true;
    QTest::newRow("address inside text") << 5 << true;
    QTest::newRow("heading with address") << 8 << true;
    QTest::newRow("plain line") << 1 << false;
    QTest::newRow("empty line") << 3 << false;
}

void tst_Widgets::scrollerHoverMarksLinkRedAndUnderlined()
{
    QFETCH(int, line);
    QFETCH(bool, marked);
    TWidgetScrollingText widget(nullptr);
    const int top = 5;
    prepare(widget, linkLines, QSize(480, 400));
    scrollTo(widget, top);
    const int lineH = lineHeight(widget);
    QVERIFY2(top + lineH * linkLines.size() <= 400, "the test needs every line in sight");

    const QImage before = snapshot(widget);
    QCOMPARE(countPixels(before, 0, 400, isRed), 0);

    sendMouse(widget, QEvent::MouseMove, QPoint(240, top + line * lineH + lineH / 2), Qt::NoButton);
    QCOMPARE(widget.hoveredLine(), line);

    const QImage image = snapshot(widget);
    const int bandTop = top + line * lineH;
    const int bandBottom = bandTop + lineH;
    QCOMPARE(countPixels(image, 0, bandTop, isRed), 0);
    QCOMPARE(countPixels(image, bandBottom, 400, isRed), 0);
    if (!marked) {
        QCOMPARE(countPixels(image, bandTop, bandBottom, isRed), 0);
        return;
    }
    QVERIFY2(countPixels(image, bandTop, bandBottom, isRed) > 0, "the line is not red");
    QCOMPARE(countPixels(image, bandTop, bandBottom, isBlue), 0);

    QString text = linkLines.at(line);
    QFont font = widget.scrollFont();
    if (text.startsWith(QLatin1Char('#'))) {
        text.remove(0, 1);
        font.setWeight(QFont::Bold);
    }
    const int advance = QFontMetrics(font).horizontalAdvance(text);
    const int run = longestRun(image, bandTop, bandBottom, isRed);
    QVERIFY2(run >= advance - 3,
             qPrintable(QStringLiteral("no underline: longest red run %1 px, text %2 px")
                            .arg(run)
                            .arg(advance)));

    // The other links keep their blue and carry no underline.
    const int webTop = top + 2 * lineH;
    if (line != 2) {
        QVERIFY2(countPixels(image, webTop, webTop + lineH, isBlue) > 0, "web line not blue");
        const int webAdvance =
            QFontMetrics(widget.scrollFont())
                .horizontalAdvance(QStringLiteral("https://kelvaro.example.org"));
        QVERIFY2(longestRun(image, webTop, webTop + lineH, isBlue) < webAdvance / 2,
                 "a link that is not pointed at is underlined");
    }
}

void tst_Widgets::scrollerHoverComputesLineByIntegerDivision_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("line");
    // The first line's band starts at y = 100.
    const int lineH = lineHeight(TWidgetScrollingText(nullptr));
    QTest::newRow("top of the first line") << 100 << 0;
    QTest::newRow("bottom of the first line") << 100 + lineH - 1 << 0;
    QTest::newRow("top of the second line") << 100 + lineH << 1;
    QTest::newRow("middle of the third line") << 100 + 2 * lineH + lineH / 2 << 2;
    QTest::newRow("below the last line") << 100 + 5 * lineH << 5;
    // Division truncates towards zero: less than one line above the first line still counts as
    // line 0, a full line above as line -1.
    QTest::newRow("just under a line above the first") << 100 - lineH + 1 << 0;
    QTest::newRow("a full line above the first") << 100 - lineH << -1;
}

void tst_Widgets::scrollerHoverComputesLineByIntegerDivision()
{
    QFETCH(int, y);
    QFETCH(int, line);
    TWidgetScrollingText widget(nullptr);
    prepare(widget, { "a", "b", "c", "d" }, QSize(200, 300));
    scrollTo(widget, 100);
    sendMouse(widget, QEvent::MouseMove, QPoint(20, y), Qt::NoButton);
    QCOMPARE(widget.hoveredLine(), line);
}

void tst_Widgets::scrollerClickOpensLinks_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("opened");
    QTest::newRow("web line") << 2 << "https://kelvaro.example.org";
    QTest::newRow("mail line") << 4 << "mailto:info@kelvaro.example.org";
    QTest::newRow("address inside text") << 5 << "https://kelvaro.example.org/downloads.html";
    QTest::newRow("mail address inside text") << 6 << "mailto:info@kelvaro.example.org";
    QTest::newRow("web before mail") << 7 << "https://b.kelvaro.example.org";
    QTest::newRow("heading with address") << 8 << "https://heading.kelvaro.example.org";
    QTest::newRow("plain line") << 1 << QString();
    QTest::newRow("heading") << 0 << QString();
    QTest::newRow("empty line") << 3 << QString();
    QTest::newRow("below the last line") << 12 << QString();
    QTest::newRow("above the first line") << -2 << QString();
}

void tst_Widgets::scrollerClickOpensLinks()
{
    QFETCH(int, line);
    QFETCH(QString, opened);
    UrlCatcher catcher({ "https", "http", "mailto" });
    TWidgetScrollingText widget(nullptr);
    const int lineH = QFontMetrics(widget.scrollFont()).height();
    const int top = 2 * lineH;
    prepare(widget, linkLines, QSize(480, top + 14 * lineH));
    scrollTo(widget, top);

    sendMouse(widget, QEvent::MouseButtonPress, QPoint(240, top + line * lineH + lineH / 2),
              Qt::LeftButton);
    sendMouse(widget, QEvent::MouseButtonRelease, QPoint(240, top + line * lineH + lineH / 2),
              Qt::LeftButton);
    if (opened.isEmpty()) {
        QVERIFY2(catcher.urls.isEmpty(),
                 qPrintable(QStringLiteral("opened %1").arg(catcher.urls.value(0).toString())));
    } else {
        QCOMPARE(catcher.urls, QList<QUrl>({ QUrl(opened) }));
    }
}

void tst_Widgets::aboutFormHasItsObjects()
{
    TDialogAbout dialog(aboutHost, nullptr);
    QCOMPARE(dialog.objectName(), QStringLiteral("TAboutDialog"));
    QCOMPARE(dialog.size(), QSize(400, 300));
    auto *layout = dialog.findChild<QVBoxLayout *>(QStringLiteral("verticalLayout"));
    QVERIFY2(layout, "no verticalLayout");
    QCOMPARE(dialog.layout(), layout);
    auto *scroller = dialog.findChild<TWidgetScrollingText *>(QStringLiteral("scrollWidget"));
    QVERIFY2(scroller, "no scrollWidget");
    auto *buttons = dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    QVERIFY2(buttons, "no buttonBox");
    QCOMPARE(layout->indexOf(scroller), 0);
    QCOMPARE(layout->indexOf(buttons), 1);
    QCOMPARE(buttons->orientation(), Qt::Horizontal);
    QCOMPARE(buttons->standardButtons(), QDialogButtonBox::StandardButtons(QDialogButtonBox::Ok));
}

void tst_Widgets::aboutTitleAndLines()
{
    TDialogAbout dialog(aboutHost, nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("About Kelvaro"));
    auto *scroller = dialog.findChild<TWidgetScrollingText *>(QStringLiteral("scrollWidget"));
    QVERIFY2(scroller, "no scrollWidget");
    QVERIFY2(scroller->active(), "the credits do not scroll");

    const QList<QString> expected = {
        "#Kelvaro Version 0.40",
        "© 2026 The Kelvaro developers",
        "",
        "Sie finden die jeweils aktuelle Version unter",
        "https://" + aboutHost,
        "",
        "Für Fragen und Anregungen kontaktieren Sie",
        "mich gerne unter:",
        "mailto:info@" + aboutHost,
        "",
        "powered by Qt",
        "Style: QDarkStyle (MIT), images CC-BY-4.0",
    };
    QCOMPARE(scroller->text(), expected);
}

void tst_Widgets::aboutMailLineOpensMailProgram()
{
    UrlCatcher catcher({ "https", "http", "mailto" });
    TDialogAbout dialog(aboutHost, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto *scroller = dialog.findChild<TWidgetScrollingText *>(QStringLiteral("scrollWidget"));
    QVERIFY2(scroller, "no scrollWidget");
    scrollTo(*scroller, 0);
    const int lineH = lineHeight(*scroller);
    QVERIFY2(9 * lineH <= scroller->height(), "the mail line is not in sight");

    sendMouse(*scroller, QEvent::MouseButtonPress, QPoint(scroller->width() / 2, 8 * lineH + 1),
              Qt::LeftButton);
    QCOMPARE(catcher.urls, QList<QUrl>({ QUrl("mailto:info@" + aboutHost) }));
    sendMouse(*scroller, QEvent::MouseButtonPress, QPoint(scroller->width() / 2, 4 * lineH + 1),
              Qt::LeftButton);
    QCOMPARE(catcher.urls.size(), 2);
    QCOMPARE(catcher.urls.at(1), QUrl("https://" + aboutHost));
}

void tst_Widgets::aboutOkClosesIt()
{
    TDialogAbout dialog(aboutHost, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto *buttons = dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    QVERIFY2(buttons, "no buttonBox");
    QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    QVERIFY2(ok, "no OK button");
    QTest::mouseClick(ok, Qt::LeftButton);
    QVERIFY2(!dialog.isVisible(), "OK did not close the dialog");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_Widgets test;
    tst_ImplausibleDatesBar datesBar;
    tst_NameMergeHintBar nameHint;
    return testutils::runTestObjects(app.arguments(), { &test, &datesBar, &nameHint });
}

#include "tst_widgets.moc"
