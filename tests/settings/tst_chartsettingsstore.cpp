#include "tst_chartsettingsstore.h"
#include "chartsettingsfields.h"
#include "chartsettingsstore.h"
#include "testutils.h"

#include <QFile>
#include <QSettings>
#include <QTest>

Q_DECLARE_METATYPE(TChartSettings)

namespace {

QFont font(const QString &family, int points, bool bold, bool italic)
{
    QFont f(family, points);
    f.setBold(bold);
    f.setItalic(italic);
    return f;
}

TChartSettings customLook()
{
    TChartSettings s;
    s.chartTyp = 3;
    s.wantsChartTitle = false;
    s.chartTitleText = "Objektive; \"quoted\", with = sign";
    s.chartTitleFont = font("DejaVu Serif", 17, true, false);
    s.chartTitleColor = QColor(10, 20, 30, 40);
    s.wantsValueAxisTitle = false;
    s.valueAxisTitleText = "Anzahl Dateien";
    s.valueAxisTitleFont = font("DejaVu Sans", 9, false, true);
    s.valueAxisTitleColor = QColor(255, 0, 0, 0);
    s.chartAxisLabelFont = font("Liberation Mono", 11, true, true);
    s.chartAxisLabelColor = QColor(0, 255, 0, 255);
    s.chartBarColor = QColor(1, 2, 3, 128);
    s.chartBackgroundGradientFrom = QColor(200, 100, 50, 25);
    s.chartBackgroundGradientTo = QColor(0, 0, 0, 255);
    s.chartBackgroundGradientOrientation = Qt::Vertical;
    s.chartPlotAreaGradientFrom = QColor(255, 255, 255, 1);
    s.chartPlotAreaGradientTo = QColor(9, 8, 7, 254);
    s.chartPlotAreaGradientOrientation = Qt::Horizontal;
    s.chartTheme = 7;
    s.wantsCustomThemeSettings = true;
    s.wantsValueLabels = true;
    s.wantsLegend = true;
    s.chartLegendPos = Qt::AlignTop;
    s.chartLegendLabelFont = font("DejaVu Sans Mono", 6, false, false);
    s.chartLegendLabelColor = QColor(12, 34, 56, 78);
    s.maxCategories = 12;
    return s;
}

TChartSettings plainLook()
{
    TChartSettings s;
    s.chartTyp = 0;
    s.wantsChartTitle = true;
    s.chartTitleText = "";
    s.wantsValueAxisTitle = true;
    s.valueAxisTitleText = "# of Files";
    s.chartBackgroundGradientOrientation = Qt::Horizontal;
    s.chartPlotAreaGradientOrientation = Qt::Vertical;
    s.chartTheme = 0;
    s.chartLegendPos = Qt::AlignBottom;
    return s; // fonts default, colours invalid
}

// The store as the program opens it: an INI file, here inside the sandbox.
QString storeFile(const testutils::Sandbox &sandbox)
{
    return sandbox.filePath("Kelvaro.ini");
}

void writeChart(const QString &file, const QString &prefix, const TChartSettings &s)
{
    QSettings store(file, QSettings::IniFormat);
    store.beginGroup("ChartSettings");
    ChartSettingsStore::write(store, prefix, s);
    store.endGroup();
}

TChartSettings readChart(const QString &file, const QString &prefix, const QString &title)
{
    QSettings store(file, QSettings::IniFormat);
    store.beginGroup("ChartSettings");
    return ChartSettingsStore::read(store, prefix, title);
}

} // namespace

void tst_ChartSettingsStore::roundTripKeepsEveryField_data()
{
    QTest::addColumn<TChartSettings>("written");
    QTest::newRow("custom look with translucent colours") << customLook();
    QTest::newRow("plain look with invalid colours and default fonts") << plainLook();
}

void tst_ChartSettingsStore::roundTripKeepsEveryField()
{
    QFETCH(TChartSettings, written);
    testutils::Sandbox sandbox;
    QVERIFY(sandbox.isValid());

    writeChart(storeFile(sandbox), "lens_", written);
    const TChartSettings back = readChart(storeFile(sandbox), "lens_", "lens usage");

    const auto writtenFields = testutils::fieldsOf(written);
    const auto readFields = testutils::fieldsOf(back);
    for (int i = 0; i < writtenFields.size(); ++i) {
        const QString name = writtenFields.at(i).first;
        // The position is never read back (see legendPositionIsWrittenWithCapitalC).
        const QVariant expected =
            name == "chartLegendPos" ? QVariant(1) : writtenFields.at(i).second;
        QVERIFY2(
            readFields.at(i).second == expected,
            qPrintable(QString("%1: expected %2, read %3")
                           .arg(name, expected.toString(), readFields.at(i).second.toString())));
    }
    // Alpha survives exactly, including fully transparent.
    QCOMPARE(back.valueAxisTitleColor.alpha(), written.valueAxisTitleColor.alpha());
}

void tst_ChartSettingsStore::legendPositionIsWrittenWithCapitalC_data()
{
    QTest::addColumn<int>("position");
    QTest::newRow("bottom") << int(Qt::AlignBottom);
    QTest::newRow("top") << int(Qt::AlignTop);
    QTest::newRow("right") << int(Qt::AlignRight);
    QTest::newRow("left") << int(Qt::AlignLeft);
}

void tst_ChartSettingsStore::legendPositionIsWrittenWithCapitalC()
{
    QFETCH(int, position);
    testutils::Sandbox sandbox;
    TChartSettings s = customLook();
    s.chartLegendPos = position;
    writeChart(storeFile(sandbox), "maker_", s);

    QSettings store(storeFile(sandbox), QSettings::IniFormat);
    QVERIFY(store.contains("ChartSettings/maker_ChartLegendPos"));
    QVERIFY2(!store.contains("ChartSettings/maker_chartLegendPos"),
             "the lower-case legend key must not be written");
    QCOMPARE(store.value("ChartSettings/maker_ChartLegendPos").toInt(), position);

    QCOMPARE(readChart(storeFile(sandbox), "maker_", "camera manufacturer").chartLegendPos, 1);

    // Writing again after reading leaves still no lower-case key behind.
    writeChart(storeFile(sandbox), "maker_",
               readChart(storeFile(sandbox), "maker_", "camera manufacturer"));
    QSettings again(storeFile(sandbox), QSettings::IniFormat);
    QCOMPARE(again.value("ChartSettings/maker_ChartLegendPos").toInt(), 1);
    QVERIFY(!again.contains("ChartSettings/maker_chartLegendPos"));
}

void tst_ChartSettingsStore::writesEveryKeyUnderThePrefix()
{
    testutils::Sandbox sandbox;
    writeChart(storeFile(sandbox), "expTime_", customLook());

    QSettings store(storeFile(sandbox), QSettings::IniFormat);
    store.beginGroup("ChartSettings");
    QStringList expected;
    for (const auto &[name, value] : testutils::fieldsOf(customLook())) {
        expected << "expTime_" + (name == "chartLegendPos" ? QString("ChartLegendPos") : name);
    }
    QStringList keys = store.childKeys();
    expected.sort();
    keys.sort();
    QCOMPARE(keys, expected);
    // Orientations are stored as plain numbers, fonts and colours as variants of their type.
    QCOMPARE(store.value("expTime_chartBackgroundGradientOrientation").toString(), QString("2"));
    QCOMPARE(store.value("expTime_chartTitleFont").typeId(), QMetaType::QFont);
    QCOMPARE(store.value("expTime_chartBarColor").typeId(), QMetaType::QColor);
}

void tst_ChartSettingsStore::emptyStoreGivesFirstStartDefaults_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("title");
    QTest::newRow("maker") << "maker_"
                           << "camera manufacturer";
    QTest::newRow("ISO grouped") << "isoG_"
                                 << "FocalLength usage";
    QTest::newRow("exposure mode") << "expMode_"
                                   << "ExposureMode usage";
}

void tst_ChartSettingsStore::emptyStoreGivesFirstStartDefaults()
{
    QFETCH(QString, prefix);
    QFETCH(QString, title);
    testutils::Sandbox sandbox;
    // Another chart's keys must not leak into this one.
    writeChart(storeFile(sandbox), "other_", customLook());

    const TChartSettings s = readChart(storeFile(sandbox), prefix, title);
    QCOMPARE(s.chartTyp, 1);
    QCOMPARE(s.chartTheme, 1);
    QCOMPARE(s.wantsChartTitle, true);
    QCOMPARE(s.chartTitleText, title);
    QCOMPARE(s.wantsValueAxisTitle, true);
    QCOMPARE(s.valueAxisTitleText, QString("# of Files"));
    QCOMPARE(s.wantsCustomThemeSettings, false);
    QCOMPARE(s.wantsLegend, false);
    QCOMPARE(s.chartLegendPos, 1);
    QCOMPARE(s.wantsValueLabels, false);
    QCOMPARE(s.chartBackgroundGradientOrientation, 0);
    QCOMPARE(s.chartPlotAreaGradientOrientation, 0);
    QCOMPARE(s.maxCategories, 30);
    for (const QFont &f :
         { s.chartTitleFont, s.valueAxisTitleFont, s.chartAxisLabelFont, s.chartLegendLabelFont })
        QCOMPARE(f, QFont());
    for (const QColor &c :
         { s.chartTitleColor, s.valueAxisTitleColor, s.chartBarColor, s.chartAxisLabelColor,
           s.chartLegendLabelColor, s.chartBackgroundGradientFrom, s.chartBackgroundGradientTo,
           s.chartPlotAreaGradientFrom, s.chartPlotAreaGradientTo })
        QVERIFY2(!c.isValid(), qPrintable("colour " + c.name(QColor::HexArgb) + " is valid"));
}

void tst_ChartSettingsStore::categoryLimitIsStoredOnlyWhenChanged_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<bool>("stored");
    QTest::addColumn<int>("readBack");
    QTest::newRow("default") << 30 << false << 30;
    QTest::newRow("smaller") << 5 << true << 5;
    QTest::newRow("larger") << 400 << true << 400;
    QTest::newRow("one") << 1 << true << 1;
}

void tst_ChartSettingsStore::categoryLimitIsStoredOnlyWhenChanged()
{
    QFETCH(int, limit);
    QFETCH(bool, stored);
    QFETCH(int, readBack);
    testutils::Sandbox sandbox;
    // A changed limit first, so that going back to the default must remove the key again.
    TChartSettings s = customLook();
    s.maxCategories = 7;
    writeChart(storeFile(sandbox), "maker_", s);
    s.maxCategories = limit;
    writeChart(storeFile(sandbox), "maker_", s);

    QSettings store(storeFile(sandbox), QSettings::IniFormat);
    QCOMPARE(store.contains("ChartSettings/maker_maxCategories"), stored);
    QCOMPARE(readChart(storeFile(sandbox), "maker_", "camera manufacturer").maxCategories,
             readBack);
}

void tst_ChartSettingsStore::unusableCategoryLimitReadsAsOne_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("limit");
    QTest::newRow("zero") << QVariant(0) << 1;
    QTest::newRow("negative") << QVariant(-4) << 1;
    QTest::newRow("text") << QVariant("many") << 1;
    QTest::newRow("number as text") << QVariant("12") << 12;
}

void tst_ChartSettingsStore::unusableCategoryLimitReadsAsOne()
{
    QFETCH(QVariant, stored);
    QFETCH(int, limit);
    testutils::Sandbox sandbox;
    {
        QSettings store(storeFile(sandbox), QSettings::IniFormat);
        store.setValue("ChartSettings/lens_maxCategories", stored);
    }
    QCOMPARE(readChart(storeFile(sandbox), "lens_", "lens usage").maxCategories, limit);
}

void tst_ChartSettingsStore::prefixesKeepChartsApart()
{
    testutils::Sandbox sandbox;
    writeChart(storeFile(sandbox), "iso_", customLook());
    writeChart(storeFile(sandbox), "isoG_", plainLook());

    const TChartSettings iso = readChart(storeFile(sandbox), "iso_", "ISO usage");
    const TChartSettings isoG = readChart(storeFile(sandbox), "isoG_", "FocalLength usage");
    QCOMPARE(iso.chartTyp, 3);
    QCOMPARE(iso.chartTitleText, customLook().chartTitleText);
    QCOMPARE(iso.chartBarColor, customLook().chartBarColor);
    QCOMPARE(isoG.chartTyp, 0);
    QCOMPARE(isoG.chartTitleText, QString());
    QVERIFY(!isoG.chartBarColor.isValid());
}

void tst_ChartSettingsStore::foreignValuesConvertByVariantRules_data()
{
    QTest::addColumn<QString>("iniLine");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QVariant>("expected");

    QTest::newRow("text in an int key") << "maker_chartTyp=abc"
                                        << "chartTyp" << QVariant(0);
    QTest::newRow("digits then text in an int key") << "maker_chartTheme=12abc"
                                                    << "chartTheme" << QVariant(0);
    QTest::newRow("number written as text") << "maker_chartTyp=3"
                                            << "chartTyp" << QVariant(3);
    QTest::newRow("list in an int key") << "maker_chartTyp=1, 2"
                                        << "chartTyp" << QVariant(0);
    // QVariant converts through a 64-bit number and keeps the low 32 bits.
    QTest::newRow("number beyond int wraps")
        << "maker_chartTheme=99999999999"
        << "chartTheme" << QVariant(int(Q_INT64_C(99999999999)));
    QTest::newRow("junk in a bool key is true") << "maker_wantsChartTitle=junk"
                                                << "wantsChartTitle" << QVariant(true);
    QTest::newRow("false in a bool key") << "maker_wantsChartTitle=false"
                                         << "wantsChartTitle" << QVariant(false);
    QTest::newRow("zero in a bool key") << "maker_wantsLegend=0"
                                        << "wantsLegend" << QVariant(false);
    QTest::newRow("empty bool key") << "maker_wantsValueAxisTitle="
                                    << "wantsValueAxisTitle" << QVariant(false);
    QTest::newRow("colour name that means nothing") << "maker_chartTitleColor=notacolor"
                                                    << "chartTitleColor" << QVariant(QColor());
    QTest::newRow("colour as #AARRGGBB text")
        << "maker_chartBarColor=\"#80ff0000\""
        << "chartBarColor" << QVariant(QColor(255, 0, 0, 0x80));
    QTest::newRow("broken serialised colour") << "maker_chartBarColor=@Variant(garbage)"
                                              << "chartBarColor" << QVariant(QColor());
    QTest::newRow("broken serialised font") << "maker_chartTitleFont=@Variant(garbage)"
                                            << "chartTitleFont" << QVariant(QFont());
    QFont familyOnly;
    familyOnly.setFamily("12");
    QTest::newRow("plain text in a font key names the family")
        << "maker_chartAxisLabelFont=12"
        << "chartAxisLabelFont" << QVariant(familyOnly);
    QTest::newRow("text in an orientation key")
        << "maker_chartBackgroundGradientOrientation=sideways"
        << "chartBackgroundGradientOrientation" << QVariant(0);
    QTest::newRow("orientation as plain number")
        << "maker_chartPlotAreaGradientOrientation=2"
        << "chartPlotAreaGradientOrientation" << QVariant(2);
    QTest::newRow("hand-written lower-case legend key is read") << "maker_chartLegendPos=32"
                                                                << "chartLegendPos" << QVariant(32);
    QTest::newRow("junk in the lower-case legend key") << "maker_chartLegendPos=left"
                                                       << "chartLegendPos" << QVariant(0);
    QTest::newRow("invalid variant as title") << "maker_chartTitleText=@Invalid()"
                                              << "chartTitleText" << QVariant(QString());
}

void tst_ChartSettingsStore::foreignValuesConvertByVariantRules()
{
    QFETCH(QString, iniLine);
    QFETCH(QString, field);
    QFETCH(QVariant, expected);

    testutils::Sandbox sandbox;
    QFile file(storeFile(sandbox));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[ChartSettings]\n" + iniLine.toUtf8() + "\n");
    file.close();

    const TChartSettings s = readChart(storeFile(sandbox), "maker_", "camera manufacturer");
    const QVariant actual = testutils::fieldValue(s, field);
    QVERIFY2(actual == expected,
             qPrintable(QString("%1 gave %2 (%3), expected %4 (%5)")
                            .arg(field, actual.toString(), actual.metaType().name(),
                                 expected.toString(), expected.metaType().name())));
    // Everything else keeps its default.
    if (field != "chartTitleText")
        QCOMPARE(s.chartTitleText, QString("camera manufacturer"));
}
