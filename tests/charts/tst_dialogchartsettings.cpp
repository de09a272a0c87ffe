#include "dialogchartsettingsfixture.h"

#include "testrunner.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace dialogfixture;

class tst_DialogChartSettings : public QObject
{
    Q_OBJECT

private slots:
    void formTitlesAndTabs();
    void widgetTexts_data();
    void widgetTexts();
    void comboContentsInOrder();

    void roundTripKeepsEveryField_data();
    void roundTripKeepsEveryField();
    void setDataShowsTheRecord();
    void unknownLegendPositionKeepsPreviousEntry_data();
    void unknownLegendPositionKeepsPreviousEntry();
    void titleFieldFollowsValueAxisFlagAfterLoading_data();
    void titleFieldFollowsValueAxisFlagAfterLoading();
    void enablingHandlers_data();
    void enablingHandlers();

    void fontButtons_data();
    void fontButtons();
    void colorSwatches_data();
    void colorSwatches();
    void pickersOffWithoutCustomSettings();
    void swatchPainting_data();
    void swatchPainting();

    void realColorDialogIsAskedWithAlpha();
    void realFontDialogIsAskedWithCurrentFont();
};

void tst_DialogChartSettings::formTitlesAndTabs()
{
    DialogChartSettings dialog;
    QCOMPARE(dialog.windowTitle(), QString("Dialog"));
    auto *tabs = dialog.findChild<QTabWidget *>();
    QVERIFY(tabs);
    QCOMPARE(tabs->count(), 2);
    QCOMPARE(tabs->tabText(0), QString("Chart Settings"));
    QCOMPARE(tabs->tabText(1), QString("Theme Settings"));
    QVERIFY(tabs->widget(0)->isAncestorOf(child<QWidget>(&dialog, "comboBoxTyp")));
    QVERIFY(tabs->widget(1)->isAncestorOf(child<QWidget>(&dialog, "comboBoxTheme")));
    QVERIFY(tabs->widget(1)->isAncestorOf(child<QWidget>(&dialog, "groupBoxCustomSettings")));
    QVERIFY(tabs->widget(0)->isAncestorOf(child<QWidget>(&dialog, "sbMaxCategories")));
    // The category limit comes after the legend's settings, with a default of 30.
    auto *page = qobject_cast<QBoxLayout *>(tabs->widget(0)->layout());
    QVERIFY(page);
    QCOMPARE(page->indexOf(child<QWidget>(&dialog, "groupBoxCategories")),
             page->indexOf(child<QWidget>(&dialog, "groupBox_2")) + 1);
    QCOMPARE(child<QSpinBox>(&dialog, "sbMaxCategories")->value(), 30);
    QCOMPARE(child<QSpinBox>(&dialog, "sbMaxCategories")->minimum(), 1);

    auto *buttons = dialog.findChild<QDialogButtonBox *>();
    QVERIFY(buttons);
    QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
}

void tst_DialogChartSettings::widgetTexts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");

    // "object name=text" separated by "|" or line ends.
    const QString texts = R"(
label=Type:|groupBox=Title Settings:|cbwantsTitle=Show Chart Title|label_3=Text:|
groupBox_8=Value Axis Title Settings:|cbwantsValueAxisTitle=Show Value Title|
label_9=Text:|groupBox_3=Label Settings|cbWantsLabels=Show Value/Percent Labels|
groupBox_2=Legend Settings|cbWantsLegend=Show Legend|label_5=Position:|
label_2=ChartTheme:|cbWantsCustomThemeSettings=Use Custom Theme settings|
groupBoxCustomSettings=Custom Color and Font Settings|groupBox_5=Chart Title|
label_4=Font:|tbGetTitleFont=...|label_6=Color & Opacity:|groupBox_9=Value Axis Title|
label_10=Font:|tbGetValueAxisTitleFont=...|label_11=Color & Opacity:|
groupBox_4=Bar Color (vertical and horizontal Chart)|label_12=Color & Opacity:|
groupBox_6=Axis Label|label_7=Font:|tbGetAxisLabelFont=...|label_8=Color & Opacity:|
groupBox_7=Legend Label|label_15=Font:|tbGetLegendLabelFont=...|
label_16=Color & Opacity:|groupBox_11=Chart Plot Area Gradient|label_17=Color from:|
label_18=to:|groupBox_13=Orientation|rbPlotAreaGradientTD=Top/Down|
rbPlotAreaGradientLR=Left/Right|groupBox_10=Chart Background Gradient|
label_13=Color from:|label_14=to:|groupBox_12=Orientation|
rbBackgroundGradientTD=Top/Down|rbBackgoundGradientLR=Left/Right|
groupBoxCategories=Category Settings|labelMaxCategories=Most bars or slices:)";
    for (const QString &entry : texts.split(QRegularExpression("[|\\n]"), Qt::SkipEmptyParts)) {
        const QString name = entry.section('=', 0, 0);
        QTest::newRow(qPrintable(name)) << name << entry.section('=', 1);
    }
}

void tst_DialogChartSettings::widgetTexts()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    DialogChartSettings dialog;
    QWidget *w = child<QWidget>(&dialog, name);
    QVERIFY2(w, qPrintable("no widget named " + name));
    QString shown;
    if (auto *label = qobject_cast<QLabel *>(w))
        shown = label->text();
    else if (auto *button = qobject_cast<QAbstractButton *>(w))
        shown = button->text();
    else if (auto *group = qobject_cast<QGroupBox *>(w))
        shown = group->title();
    else
        QFAIL(qPrintable(name + " is a " + w->metaObject()->className()));
    QCOMPARE(shown, text);
}

void tst_DialogChartSettings::comboContentsInOrder()
{
    DialogChartSettings dialog;
    auto *theme = child<QComboBox>(&dialog, "comboBoxTheme");
    auto *type = child<QComboBox>(&dialog, "comboBoxTyp");
    auto *legend = child<QComboBox>(&dialog, "comboBoxLegend");
    QVERIFY(theme && type && legend);

    const QStringList themes { "Light",    "Blue Cerulean", "Dark",     "Brown Sand",
                               "Blue NCS", "High Contrast", "Blue Icy", "Qt" };
    QCOMPARE(theme->count(), themes.size());
    for (int i = 0; i < themes.size(); ++i) {
        QCOMPARE(theme->itemText(i), themes.at(i));
        QCOMPARE(theme->itemData(i), QVariant(i));
    }
    const QStringList types { "Vertical Barchart", "Horizontal Barchart", "Pie Chart",
                              "Donut Chart" };
    QCOMPARE(type->count(), types.size());
    for (int i = 0; i < types.size(); ++i) {
        QCOMPARE(type->itemText(i), types.at(i));
        QCOMPARE(type->itemData(i), QVariant(i + 1));
    }
    const QStringList legends { "Bottom", "Top", "Right", "Left" };
    QCOMPARE(legend->count(), legends.size());
    for (int i = 0; i < legends.size(); ++i)
        QCOMPARE(legend->itemText(i), legends.at(i));
}

void tst_DialogChartSettings::roundTripKeepsEveryField_data()
{
    QTest::addColumn<TChartSettings>("settings");
    for (int n = 0; n < 8; ++n) {
        const TChartSettings s = record(n);
        QTest::addRow("type %d, theme %d, legend %d", s.chartTyp, s.chartTheme, s.chartLegendPos)
            << s;
    }
}

void tst_DialogChartSettings::roundTripKeepsEveryField()
{
    QFETCH(TChartSettings, settings);
    DialogChartSettings dialog;
    dialog.setData(settings);
    const TChartSettings back = dialog.data();
    const auto given = fieldsOf(settings);
    const auto got = fieldsOf(back);
    for (int i = 0; i < given.size(); ++i) {
        QVERIFY2(got.at(i).second == given.at(i).second,
                 qPrintable(QString("%1: gave %2, got back %3")
                                .arg(given.at(i).first, given.at(i).second.toString(),
                                     got.at(i).second.toString())));
    }
}

void tst_DialogChartSettings::setDataShowsTheRecord()
{
    DialogChartSettings dialog;
    TChartSettings s = record(5);
    s.chartTitleFont = font("DejaVu Sans", 12, false);
    s.chartLegendLabelFont = font("Liberation Mono", 7, true);
    dialog.setData(s);

    QCOMPARE(child<QComboBox>(&dialog, "comboBoxTyp")->currentIndex(), 1);
    QCOMPARE(child<QComboBox>(&dialog, "comboBoxTheme")->currentIndex(), 5);
    QCOMPARE(child<QLineEdit>(&dialog, "leTitleText")->text(), s.chartTitleText);
    QCOMPARE(child<QLineEdit>(&dialog, "leValueAxisTitleText")->text(), s.valueAxisTitleText);
    QCOMPARE(child<QLineEdit>(&dialog, "leTitleFont")->text(), QString("DejaVu Sans, 12 point"));
    QCOMPARE(child<QLineEdit>(&dialog, "leLegendLabelFont")->text(),
             QString("Liberation Mono, 7 point"));
    QCOMPARE(child<QLineEdit>(&dialog, "leValueAxisTitleFont")->text(),
             QString("DejaVu Serif, 14 point"));
    QCOMPARE(child<QLineEdit>(&dialog, "leAxisLabelFont")->text(),
             QString("Liberation Mono, 15 point"));
    QCOMPARE(child<QComboBox>(&dialog, "comboBoxLegend")->currentIndex(), 1); // top
    QCOMPARE(child<QRadioButton>(&dialog, "rbBackgroundGradientTD")->isChecked(), true);
    QCOMPARE(child<QRadioButton>(&dialog, "rbPlotAreaGradientLR")->isChecked(), true);
    QCOMPARE(child<QCheckBox>(&dialog, "cbWantsCustomThemeSettings")->isChecked(), true);
    QCOMPARE(child<QGroupBox>(&dialog, "groupBoxCustomSettings")->isEnabled(), true);
    QCOMPARE(child<QCheckBox>(&dialog, "cbWantsLegend")->isChecked(), true);
    QCOMPARE(child<QComboBox>(&dialog, "comboBoxLegend")->isEnabled(), true);
    QCOMPARE(child<QCheckBox>(&dialog, "cbWantsLabels")->isChecked(), false);
    QCOMPARE(child<QSpinBox>(&dialog, "sbMaxCategories")->value(), 36);

    s.wantsCustomThemeSettings = false;
    s.wantsLegend = false;
    dialog.setData(s);
    QCOMPARE(child<QGroupBox>(&dialog, "groupBoxCustomSettings")->isEnabled(), false);
    QCOMPARE(child<QComboBox>(&dialog, "comboBoxLegend")->isEnabled(), false);
}

void tst_DialogChartSettings::unknownLegendPositionKeepsPreviousEntry_data()
{
    QTest::addColumn<int>("previous"); // 0: a fresh dialog
    QTest::addColumn<int>("unknown");
    QTest::addColumn<int>("entry");
    QTest::addColumn<int>("stored");

    QTest::newRow("fresh dialog, position 0") << 0 << 0 << 0 << int(Qt::AlignBottom);
    QTest::newRow("after top, position 0") << int(Qt::AlignTop) << 0 << 1 << int(Qt::AlignTop);
    QTest::newRow("after right, position 0")
        << int(Qt::AlignRight) << 0 << 2 << int(Qt::AlignRight);
    QTest::newRow("after left, position 0") << int(Qt::AlignLeft) << 0 << 3 << int(Qt::AlignLeft);
    QTest::newRow("after left, bottom-left combined")
        << int(Qt::AlignLeft) << int(Qt::AlignBottom | Qt::AlignLeft) << 3 << int(Qt::AlignLeft);
    QTest::newRow("after top, centred")
        << int(Qt::AlignTop) << int(Qt::AlignCenter) << 1 << int(Qt::AlignTop);
}

void tst_DialogChartSettings::unknownLegendPositionKeepsPreviousEntry()
{
    QFETCH(int, previous);
    QFETCH(int, unknown);
    QFETCH(int, entry);
    QFETCH(int, stored);

    DialogChartSettings dialog;
    TChartSettings s = record(1);
    if (previous) {
        s.chartLegendPos = previous;
        dialog.setData(s);
    }
    s.chartLegendPos = unknown;
    dialog.setData(s);
    QCOMPARE(child<QComboBox>(&dialog, "comboBoxLegend")->currentIndex(), entry);
    QCOMPARE(dialog.data().chartLegendPos, stored);
}

void tst_DialogChartSettings::titleFieldFollowsValueAxisFlagAfterLoading_data()
{
    QTest::addColumn<bool>("wantsTitle");
    QTest::addColumn<bool>("wantsValueAxisTitle");

    QTest::newRow("title shown, value-axis title hidden") << true << false;
    QTest::newRow("title hidden, value-axis title shown") << false << true;
    QTest::newRow("both shown") << true << true;
    QTest::newRow("both hidden") << false << false;
}

void tst_DialogChartSettings::titleFieldFollowsValueAxisFlagAfterLoading()
{
    QFETCH(bool, wantsTitle);
    QFETCH(bool, wantsValueAxisTitle);

    DialogChartSettings dialog;
    auto *titleText = child<QLineEdit>(&dialog, "leTitleText");
    auto *valueAxisText = child<QLineEdit>(&dialog, "leValueAxisTitleText");
    QVERIFY(titleText && valueAxisText);

    TChartSettings s = record(0);
    s.wantsChartTitle = wantsTitle;
    s.wantsValueAxisTitle = wantsValueAxisTitle;
    dialog.setData(s);
    QCOMPARE(titleText->isEnabled(), wantsValueAxisTitle);
    // The value-axis field keeps the form's state; loading never touches it.
    QCOMPARE(valueAxisText->isEnabled(), true);
    QCOMPARE(child<QCheckBox>(&dialog, "cbwantsTitle")->isChecked(), wantsTitle);
    QCOMPARE(child<QCheckBox>(&dialog, "cbwantsValueAxisTitle")->isChecked(), wantsValueAxisTitle);

    valueAxisText->setEnabled(false);
    dialog.setData(s);
    QCOMPARE(valueAxisText->isEnabled(), false);
}

void tst_DialogChartSettings::enablingHandlers_data()
{
    QTest::addColumn<QString>("checkBox");
    QTest::addColumn<QString>("target");

    QTest::newRow("custom theme settings") << "cbWantsCustomThemeSettings"
                                           << "groupBoxCustomSettings";
    QTest::newRow("chart title") << "cbwantsTitle"
                                 << "leTitleText";
    QTest::newRow("value-axis title") << "cbwantsValueAxisTitle"
                                      << "leValueAxisTitleText";
    QTest::newRow("legend") << "cbWantsLegend"
                            << "comboBoxLegend";
}

void tst_DialogChartSettings::enablingHandlers()
{
    QFETCH(QString, checkBox);
    QFETCH(QString, target);

    DialogChartSettings dialog;
    TChartSettings s = record(7);
    s.wantsLegend = true; // with the three flags record(7) sets, every box above starts checked
    dialog.setData(s);
    auto *box = child<QCheckBox>(&dialog, checkBox);
    auto *widget = child<QWidget>(&dialog, target);
    QVERIFY(box && widget);
    QVERIFY(box->isChecked());

    box->click();
    QCOMPARE(box->isChecked(), false);
    QCOMPARE(widget->isEnabled(), false);
    box->click();
    QCOMPARE(box->isChecked(), true);
    QCOMPARE(widget->isEnabled(), true);
}

void tst_DialogChartSettings::fontButtons_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("display");
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("confirmed");

    const QList<std::tuple<const char *, const char *, const char *>> buttons {
        { "tbGetTitleFont", "leTitleFont", "chartTitleFont" },
        { "tbGetValueAxisTitleFont", "leValueAxisTitleFont", "valueAxisTitleFont" },
        { "tbGetAxisLabelFont", "leAxisLabelFont", "chartAxisLabelFont" },
        { "tbGetLegendLabelFont", "leLegendLabelFont", "chartLegendLabelFont" }
    };
    for (const auto &[button, display, field] : buttons) {
        QTest::addRow("%s confirmed", button) << button << display << field << true;
        QTest::addRow("%s cancelled", button) << button << display << field << false;
    }
}

void tst_DialogChartSettings::fontButtons()
{
    QFETCH(QString, button);
    QFETCH(QString, display);
    QFETCH(QString, field);
    QFETCH(bool, confirmed);

    ScriptedDialog dialog;
    const TChartSettings before = record(6); // custom settings on: the buttons are enabled
    dialog.setData(before);
    auto *edit = child<QLineEdit>(&dialog, display);
    QVERIFY(edit);
    const QString shownBefore = edit->text();

    const QFont picked = font("DejaVu Serif", 23, true);
    dialog.fontAnswers << picked;
    dialog.fontConfirmed << confirmed;
    QTest::mouseClick(child<QToolButton>(&dialog, button), Qt::LeftButton);

    QCOMPARE(dialog.askedFonts.size(), 1);
    QCOMPARE(QVariant(dialog.askedFonts.first()), fieldValue(before, field));
    const TChartSettings after = dialog.data();
    if (confirmed) {
        QCOMPARE(fieldValue(after, field), QVariant(picked));
        QCOMPARE(edit->text(), QString("DejaVu Serif, 23 point"));
    } else {
        QCOMPARE(fieldValue(after, field), fieldValue(before, field));
        QCOMPARE(edit->text(), shownBefore);
    }
    const QStringList changed = otherChangedFields(before, after, field);
    QVERIFY2(changed.isEmpty(), qPrintable("also changed: " + changed.join(", ")));
}

void tst_DialogChartSettings::colorSwatches_data()
{
    QTest::addColumn<QString>("swatch");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QColor>("answer");

    for (const auto &[swatch, field] : swatchFields) {
        QTest::addRow("%s picked", qPrintable(swatch))
            << swatch << field << QColor(200, 40, 90, 77);
        QTest::addRow("%s cancelled", qPrintable(swatch)) << swatch << field << QColor();
    }
}

void tst_DialogChartSettings::colorSwatches()
{
    QFETCH(QString, swatch);
    QFETCH(QString, field);
    QFETCH(QColor, answer);

    ScriptedDialog dialog;
    const TChartSettings before = record(5); // custom settings on: the swatches are enabled
    dialog.setData(before);
    auto *label = child<TLabelClickable>(&dialog, swatch);
    QVERIFY2(label, qPrintable(swatch + " is not a TLabelClickable"));
    // Large enough for the colour rectangle, which reaches (35,26).
    QVERIFY2(label->width() >= 48 && label->height() >= 36, qPrintable(swatch + " is too small"));
    const QImage shownBefore = swatchImage(label);

    dialog.colorAnswers << answer;
    QTest::mouseClick(label, Qt::LeftButton);

    QCOMPARE(dialog.askedColors.size(), 1);
    QCOMPARE(QVariant(dialog.askedColors.first()), fieldValue(before, field));
    const TChartSettings after = dialog.data();
    if (answer.isValid()) {
        QCOMPARE(fieldValue(after, field), QVariant(answer));
        const QImage shown = swatchImage(label);
        QVERIFY2(near(shown.pixel(12, 9), over(answer, qRgb(255, 255, 255))),
                 qPrintable(rgbText(shown.pixel(12, 9))));
        QVERIFY2(near(shown.pixel(35, 26), over(answer, qRgb(0, 0, 0))),
                 qPrintable(rgbText(shown.pixel(35, 26))));
    } else {
        QCOMPARE(fieldValue(after, field), fieldValue(before, field));
        QCOMPARE(swatchImage(label), shownBefore);
    }
    const QStringList changed = otherChangedFields(before, after, field);
    QVERIFY2(changed.isEmpty(), qPrintable("also changed: " + changed.join(", ")));
}

void tst_DialogChartSettings::pickersOffWithoutCustomSettings()
{
    ScriptedDialog dialog;
    TChartSettings s = record(3);
    QVERIFY(!s.wantsCustomThemeSettings);
    dialog.setData(s);

    // The custom group is disabled, so neither a swatch nor a font button asks anything.
    QTest::mouseClick(child<TLabelClickable>(&dialog, "lblTitleColor"), Qt::LeftButton);
    QTest::mouseClick(child<QToolButton>(&dialog, "tbGetTitleFont"), Qt::LeftButton);
    QCOMPARE(dialog.askedColors.size(), 0);
    QCOMPARE(dialog.askedFonts.size(), 0);

    child<QCheckBox>(&dialog, "cbWantsCustomThemeSettings")->click();
    dialog.colorAnswers << QColor(Qt::red);
    QTest::mouseClick(child<TLabelClickable>(&dialog, "lblTitleColor"), Qt::LeftButton);
    QCOMPARE(dialog.askedColors.size(), 1);
    QCOMPARE(dialog.data().chartTitleColor, QColor(Qt::red));
}

void tst_DialogChartSettings::swatchPainting_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("color");

    QTest::newRow("opaque red on the form's swatch size") << QSize(48, 36) << QColor(255, 0, 0);
    QTest::newRow("half transparent blue") << QSize(48, 36) << QColor(0, 0, 255, 128);
    QTest::newRow("fully transparent green") << QSize(48, 36) << QColor(0, 255, 0, 0);
    QTest::newRow("invalid colour") << QSize(48, 36) << QColor();
    QTest::newRow("odd width") << QSize(51, 40) << QColor(10, 200, 30, 200);
    QTest::newRow("wide label") << QSize(90, 36) << QColor(255, 255, 0, 60);
}

void tst_DialogChartSettings::swatchPainting()
{
    QFETCH(QSize, size);
    QFETCH(QColor, color);

    ScriptedDialog dialog;
    TLabelClickable label;
    label.setFixedSize(size);
    dialog.setLblColor(&label, color);
    const QImage image = swatchImage(&label);
    QCOMPARE(image.size(), size);

    const int w = size.width();
    const int h = size.height();
    const QRect colorRect(QPoint(12, 9), QPoint(35, 26));
    // An invalid colour paints as opaque black through QPainter; alpha 0 leaves nothing.
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            QRgb expected;
            if (x < w / 2)
                expected = qRgba(255, 255, 255, 255);
            else if (x == w / 2)
                expected = qRgba(0, 0, 0, 0);
            else
                expected = qRgba(0, 0, 0, 255);
            if (colorRect.contains(x, y) && color.alpha() > 0) {
                if (x == w / 2)
                    expected = color.rgba();
                else
                    expected = over(color, expected);
            }
            const QRgb actual = image.pixel(x, y);
            QVERIFY2(near(actual, expected),
                     qPrintable(QString("pixel (%1,%2) is %3, expected %4")
                                    .arg(x)
                                    .arg(y)
                                    .arg(rgbText(actual), rgbText(expected))));
        }
    }
}

void tst_DialogChartSettings::realColorDialogIsAskedWithAlpha()
{
    DialogChartSettings dialog;
    TChartSettings s = record(4);
    s.chartBarColor = QColor(1, 2, 3, 4);
    dialog.setData(s);

    QString title;
    bool alphaShown = false;
    QColor offered;
    QObject *parent = nullptr;
    const QColor picked(90, 80, 70, 33);
    QTimer::singleShot(0, this, [&] {
        auto *picker = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
        QVERIFY2(picker, "no colour dialog came up");
        title = picker->windowTitle();
        alphaShown = picker->testOption(QColorDialog::ShowAlphaChannel);
        offered = picker->currentColor();
        parent = picker->parent();
        picker->setCurrentColor(picked);
        picker->accept();
    });
    QTest::mouseClick(child<TLabelClickable>(&dialog, "lblBarColor"), Qt::LeftButton);

    QCOMPARE(title, QString("Please Choose Color and Opacity (Alpha Channel)"));
    QVERIFY(alphaShown);
    QCOMPARE(offered, s.chartBarColor);
    QCOMPARE(parent, &dialog);
    QCOMPARE(dialog.data().chartBarColor, picked);
}

void tst_DialogChartSettings::realFontDialogIsAskedWithCurrentFont()
{
    DialogChartSettings dialog;
    TChartSettings s = record(4);
    dialog.setData(s);

    QFont offered;
    QObject *parent = nullptr;
    QTimer::singleShot(0, this, [&] {
        auto *picker = qobject_cast<QFontDialog *>(QApplication::activeModalWidget());
        QVERIFY2(picker, "no font dialog came up");
        offered = picker->currentFont();
        parent = picker->parent();
        picker->reject();
    });
    QTest::mouseClick(child<QToolButton>(&dialog, "tbGetLegendLabelFont"), Qt::LeftButton);

    QCOMPARE(offered.family(), s.chartLegendLabelFont.family());
    QCOMPARE(offered.pointSize(), s.chartLegendLabelFont.pointSize());
    QCOMPARE(parent, &dialog);
    QCOMPARE(dialog.data().chartLegendLabelFont, s.chartLegendLabelFont);
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_DialogChartSettings test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_dialogchartsettings.moc"
