#include "statistic.h"

#include "photodatabase.h"
#include "rangegroups.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

// Both tables count every photo once: DATEIEN holds what the files say, PHOTOINFO (keyed by the
// same id) what the scan derives. Counting "*" keeps photos whose value is null.
const QString focalLength35 = QStringLiteral("CAST(round(FOCALLENGTH35) AS INTEGER)");
const QString hourText =
    QStringLiteral("CASE WHEN HOUR IS NULL THEN 'n.a.' ELSE printf('%02d', HOUR) END");
const QString weekdayText = QStringLiteral(
    "CASE WEEKDAY WHEN 1 THEN 'Monday' WHEN 2 THEN 'Tuesday' WHEN 3 THEN 'Wednesday' WHEN 4 THEN "
    "'Thursday' WHEN 5 THEN 'Friday' WHEN 6 THEN 'Saturday' WHEN 7 THEN 'Sunday' ELSE 'n.a.' END");

// A statistic counted by its own statement.
Statistic counted(const char *key, const char *tabTitle, const char *chartName,
                  const char *defaultTitle, const char *prefix, const char *widgetName,
                  const QString &statement, const QStringList &headers,
                  Statistic::Shape shape = Statistic::Shape::ValueCount)
{
    Statistic statistic;
    statistic.key = QLatin1String(key);
    statistic.tabTitle = QString::fromUtf8(tabTitle);
    statistic.chartName = QString::fromUtf8(chartName);
    statistic.defaultChartTitle = QString::fromUtf8(defaultTitle);
    statistic.settingsPrefix = QLatin1String(prefix);
    statistic.widgetName = QLatin1String(widgetName);
    statistic.statement = statement;
    statistic.headers = headers;
    statistic.shape = shape;
    return statistic;
}

// A statistic counted per range of a column.
Statistic grouped(const char *key, const char *tabTitle, const char *chartName,
                  const char *defaultTitle, const char *prefix, const char *widgetName,
                  const QStringList &headers, const RangeGroupColumn &ranges)
{
    Statistic statistic =
        counted(key, tabTitle, chartName, defaultTitle, prefix, widgetName, {}, headers);
    statistic.rangeGroups = ranges;
    return statistic;
}

QList<Statistic> makeStatistics()
{
    using Shape = Statistic::Shape;
    const QStringList count { QStringLiteral("Count") };
    // The ISO-grouped and F-number charts really start with the title "FocalLength usage".
    QList<Statistic> rows {
        counted("maker", "Maker", "Maker", "camera manufacturer", "maker_", "Maker",
                "SELECT Distinct Maker, count(maker) FROM Dateien group by maker",
                QStringList { "Maker" } + count),
        counted("model", "Model", "Model", "camera model", "model_", "Model",
                "SELECT Distinct Model, count(Model) FROM Dateien group by Maker, Model",
                QStringList { "Model" } + count),
        counted("lens", "Lens", "Lens", "lens usage", "lens_", "Lens",
                "SELECT Distinct Lens, count(Lens) FROM Dateien group by Lens",
                QStringList { "Lens" } + count),
        counted("focalLength", "Focal Length", "Focal Length", "FocalLength usage", "focLen_",
                "FocalLength",
                "SELECT Distinct FocalLength, count(FocalLength) FROM Dateien group by FocalLength",
                QStringList { "FocalLength" } + count),
        grouped("focalLengthGrouped", "Focal Length grouped", "Focal Length Grouped",
                "FocalLength Grouped", "focLenG_", "FocalLengthG",
                QStringList { "FocalLength" } + count,
                { "FocalLength",
                  "Dateien",
                  "mm",
                  "StatFocalLengthGroups",
                  "focalLengthGroups",
                  { "1-23", "24-70", "71-200", "201-600", "601-1200" },
                  QString(),
                  {} }),
        counted("iso", "ISO", "ISO", "ISO usage", "iso_", "ISO",
                "SELECT Distinct ISO, count(ISO) FROM Dateien group by ISO",
                QStringList { "ISO" } + count),
        grouped("isoGrouped", "ISO grouped", "ISO Grouped", "FocalLength usage", "isoG_", "ISOG",
                QStringList { "ISO" } + count,
                { "ISO",
                  "Dateien",
                  QString(),
                  "StatIsoGroups",
                  "isoGroups",
                  { "1-100", "101-400", "401-1600", "1601-6400", "6401-12800" },
                  QString(),
                  {} }),
        counted("fNumber", "FNumber", "F-Number", "FocalLength usage", "fNum_", "FNumber",
                "SELECT Distinct FNumber, count(FNumber) FROM Dateien group by FNumber",
                QStringList { "FNumber" } + count),
        counted("exposureTime", "Exposure Time", "Exposure Time", "ExposureTime usage", "expTime_",
                "ExposureTime",
                "SELECT distinct exptime, exptimestring, count(exptime) FROM "
                "Dateien GROUP by exptime ORDER BY exptime desc",
                { "Real Value", "Exposure Time", "Count" }, Shape::ValueTextCount),
        counted("meteringMode", "Metering Mode", "Metering Mode", "MeteringMode usage", "metMode_",
                "MeteringMode",
                "SELECT Distinct MeteringMode, count(MeteringMode) FROM Dateien group by "
                "MeteringMode",
                QStringList { "MeteringMode" } + count),
        counted("exposureMode", "Exposure Mode", "Exposure Mode", "ExposureMode usage", "expMode_",
                "ExposureMode",
                "SELECT Distinct ExposureMode, count(ExposureMode) FROM Dateien group by "
                "ExposureMode",
                QStringList { "ExpMode" } + count),
        counted("dateOriginal", "Date Original", "Date Original", "", "", "DateOriginal",
                PhotoDatabase::photosPerDayStatement, QStringList { "Date" } + count,
                Shape::DayCounts),
        counted("focalLength35", "Focal Length 35mm", "Focal Length 35mm",
                "FocalLength 35mm equivalent usage", "focLen35_", "FocalLength35",
                QStringLiteral("SELECT ifnull(%1, 'unknown'), count(*) FROM "
                               "PhotoInfo GROUP BY %1 ORDER BY %1 IS NULL, %1")
                    .arg(focalLength35),
                QStringList { "FocalLength 35mm" } + count),
        grouped("focalLength35Grouped", "Focal Length 35mm grouped", "Focal Length 35mm Grouped",
                "FocalLength 35mm equivalent Grouped", "focLen35G_", "FocalLength35G",
                QStringList { "FocalLength 35mm" } + count,
                { focalLength35,
                  "PhotoInfo",
                  "mm",
                  "StatFocalLength35Groups",
                  "focalLength35Groups",
                  { "1-23", "24-34", "35-70", "71-135", "136-300", "301-99999" },
                  "unknown",
                  { { "1-23", "ultra-wide (< 24 mm)" },
                    { "24-34", "wide (24–34 mm)" },
                    { "35-70", "standard (35–70 mm)" },
                    { "71-135", "short tele (71–135 mm)" },
                    { "136-300", "tele (136–300 mm)" },
                    { "301-99999", "super-tele (> 300 mm)" } } }),
        counted("hourOfDay", "Hour of Day", "Hour of Day", "Photos per hour of day", "hour_",
                "HourOfDay",
                "SELECT " + hourText
                    + ", count(*) FROM PhotoInfo GROUP BY HOUR ORDER BY HOUR IS NULL, HOUR",
                QStringList { "Hour" } + count),
        counted("weekday", "Weekday", "Weekday", "Photos per weekday", "weekday_", "Weekday",
                "SELECT " + weekdayText
                    + ", count(*) FROM PhotoInfo GROUP BY WEEKDAY ORDER BY WEEKDAY IS NULL, "
                      "WEEKDAY",
                QStringList { "Weekday" } + count),
        counted("fileType", "File Type", "File Type", "Photos per file type", "fileType_",
                "FileType", "SELECT FILETYPE, count(*) FROM PhotoInfo GROUP BY FILETYPE",
                QStringList { "File Type" } + count),
    };
    // What a picked row selects, over the table its statement counts.
    const QList<std::pair<const char *, std::pair<QString, QString>>> rowValues {
        { "focalLength", { "FocalLength", "Dateien" } },
        { "iso", { "ISO", "Dateien" } },
        { "fNumber", { "FNumber", "Dateien" } },
        { "exposureTime", { "EXPTIME", "Dateien" } },
        { "meteringMode", { "MeteringMode", "Dateien" } },
        { "exposureMode", { "ExposureMode", "Dateien" } },
        { "focalLength35", { "ifnull(" + focalLength35 + ", 'unknown')", "PhotoInfo" } },
        { "hourOfDay", { hourText, "PhotoInfo" } },
        { "weekday", { weekdayText, "PhotoInfo" } },
    };
    for (Statistic &statistic : rows) {
        for (const auto &[key, value] : rowValues) {
            if (statistic.key == QLatin1String(key))
                std::tie(statistic.rowValue, statistic.rowTable) = value;
        }
    }
    return rows;
}

} // namespace

QList<QString> Statistic::effectiveRanges(const QList<QString> &ranges) const
{
    if (!rangeGroups || !ranges.isEmpty())
        return ranges;
    return rangeGroups->defaultRanges;
}

QString Statistic::selectStatement(const QList<QString> &ranges) const
{
    if (!rangeGroups)
        return statement;
    return RangeGroups::selectStatement(rangeGroups->column, effectiveRanges(ranges),
                                        rangeGroups->table, rangeGroups->unknownKey);
}

QString Statistic::rowValueExpression(const QList<QString> &ranges) const
{
    if (!rangeGroups)
        return rowValue;
    const QString expression = RangeGroups::caseExpression(
        rangeGroups->column, effectiveRanges(ranges), rangeGroups->unknownKey);
    // Without a usable range every photo is 'Others', as in the statement.
    return expression.isEmpty() ? QStringLiteral("'Others'") : expression;
}

QString Statistic::rangeIndexStatement(const QList<QString> &ranges) const
{
    if (!rangeGroups)
        return {};
    return RangeGroups::indexStatement(rangeGroups->indexName, rangeGroups->column,
                                       effectiveRanges(ranges), rangeGroups->table,
                                       rangeGroups->unknownKey);
}

namespace Statistics {

const QList<Statistic> &all()
{
    static const QList<Statistic> statistics = makeStatistics();
    return statistics;
}

const Statistic *byKey(const QString &key)
{
    const auto &rows = all();
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [&](const Statistic &row) { return row.key == key; });
    return found == rows.end() ? nullptr : &*found;
}

const Statistic *byTitle(const QString &title)
{
    const auto &rows = all();
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const Statistic &row) {
        return row.tabTitle.compare(title, Qt::CaseInsensitive) == 0;
    });
    return found == rows.end() ? nullptr : &*found;
}

} // namespace Statistics
