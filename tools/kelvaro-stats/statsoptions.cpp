#include "statsoptions.h"

#include "filetypes.h"

#include <functional>
#include <optional>

namespace {

// What parsing has gathered before the options are checked as a whole.
struct Gathered
{
    StatsOptions &options;
    QStringList &types;
};

// One option of the command line: its name, the name of its value (empty for a switch), its
// help text (continuation lines start with blanks) and what it does; a text back is a usage
// error.
struct Option
{
    QString name;
    QString valueName;
    QString help;
    std::function<std::optional<QString>(Gathered &, const QString &value)> apply;
};

std::optional<QString> setFormat(Gathered &gathered, const QString &format)
{
    if (format == QLatin1String("text"))
        gathered.options.format = StatsOptions::Format::Text;
    else if (format == QLatin1String("csv"))
        gathered.options.format = StatsOptions::Format::Csv;
    else if (format == QLatin1String("json"))
        gathered.options.format = StatsOptions::Format::Json;
    else
        return QStringLiteral("unknown format \"%1\" (text, csv or json)").arg(format);
    return std::nullopt;
}

std::optional<QString> addStatistic(Gathered &gathered, const QString &title)
{
    const Statistic *statistic = Statistics::byTitle(title);
    if (!statistic)
        return QStringLiteral("unknown statistic \"%1\"").arg(title);
    if (!gathered.options.statistics.contains(statistic))
        gathered.options.statistics.append(statistic);
    return std::nullopt;
}

std::optional<QString> addType(Gathered &gathered, const QString &type)
{
    if (type.isEmpty() || type.contains(QLatin1Char('/')) || type.contains(QLatin1Char('*')))
        return QStringLiteral("--type needs a file suffix such as cr2");
    gathered.types << type;
    return std::nullopt;
}

// A day bound of the filter: strictly yyyy-MM-dd.
std::function<std::optional<QString>(Gathered &, const QString &)>
dayBound(const QString &name, QDate PhotoFilter::*bound)
{
    return [name, bound](Gathered &gathered, const QString &text) -> std::optional<QString> {
        const QDate day = QDate::fromString(text, QStringLiteral("yyyy-MM-dd"));
        if (!day.isValid())
            return QStringLiteral("%1 needs a day written yyyy-MM-dd, not \"%2\"").arg(name, text);
        gathered.options.filter.*bound = day;
        return std::nullopt;
    };
}

QList<Option> makeOptions()
{
    QList<Option> options {
        { "--format", "FORMAT", "text (aligned tables, the default), csv or json", setFormat },
        { "--statistic", "TITLE", "only this statistic (repeatable), by its tab title",
          addStatistic },
        { "--type", "SUFFIX",
          "only files of this type (repeatable): a suffix such as cr2 or jpg,\n"
          "                         or HEIF for every HEIF and AVIF suffix; any case",
          addType },
        { "--no-subdirectories", "", "only the files directly in each directory",
          [](Gathered &gathered, const QString &) -> std::optional<QString> {
              gathered.options.includeSubDirs = false;
              return std::nullopt;
          } },
        { "--merge-names", "", "count names that differ only in blanks and case together",
          [](Gathered &gathered, const QString &) -> std::optional<QString> {
              gathered.options.mergeNames = true;
              return std::nullopt;
          } },
        { "--friendly-makers", "", "count each maker under one name for its spellings",
          [](Gathered &gathered, const QString &) -> std::optional<QString> {
              gathered.options.friendlyMakers = true;
              return std::nullopt;
          } },
        { "--no-catalogue", "", "read every file; neither use nor update the photo catalogue",
          [](Gathered &gathered, const QString &) -> std::optional<QString> {
              gathered.options.useCatalogue = false;
              return std::nullopt;
          } },
    };
    for (const PhotoFilterField &field : PhotoFilterFields::all()) {
        if (field.option.isEmpty())
            continue;
        options.append(
            { field.option, "TEXT",
              QStringLiteral("only photos whose %1 is exactly TEXT (repeatable)").arg(field.key),
              [values = field.values](Gathered &gathered,
                                      const QString &value) -> std::optional<QString> {
                  (gathered.options.filter.*values).append(value);
                  return std::nullopt;
              } });
    }
    options.append({ "--from", "DAY",
                     "only photos taken on or after DAY (yyyy-MM-dd); a photo\n"
                     "                         without a date matches no range",
                     dayBound("--from", &PhotoFilter::from) });
    options.append({ "--to", "DAY", "only photos taken on or before DAY (yyyy-MM-dd)",
                     dayBound("--to", &PhotoFilter::to) });
    options.append({ "--pairs-once", "",
                     "count a raw file and its JPEG or HEIF (same name, same\n"
                     "                         folder) as one photo, the raw file's",
                     [](Gathered &gathered, const QString &) -> std::optional<QString> {
                         gathered.options.filter.pairsOnce = true;
                         return std::nullopt;
                     } });
    return options;
}

const QList<Option> &allOptions()
{
    static const QList<Option> options = makeOptions();
    return options;
}

ParsedOptions usageError(const QString &message)
{
    ParsedOptions parsed;
    parsed.outcome = ParsedOptions::Outcome::UsageError;
    parsed.message = message;
    return parsed;
}

} // namespace

QString statsUsage()
{
    QString lines;
    for (const Option &option : allOptions()) {
        const QString term = option.valueName.isEmpty()
            ? option.name
            : option.name + QLatin1Char(' ') + option.valueName;
        lines += QStringLiteral("  ") + term.leftJustified(21) + QLatin1Char(' ') + option.help
            + QLatin1Char('\n');
    }
    QString titles;
    for (const Statistic &statistic : Statistics::all())
        titles += QStringLiteral("    ") + statistic.tabTitle + QLatin1Char('\n');
    return QStringLiteral("Usage: kelvaro-stats [OPTION]... DIRECTORY...\n"
                          "Scans the directories (with their subdirectories) as Kelvaro does and "
                          "prints every statistic.\n")
        + lines
        + QStringLiteral("  -h, --help             print this help and exit\n"
                         "  -v, --version          print the version and exit\n"
                         "Statistics:\n")
        + titles;
}

ParsedOptions parseStatsOptions(const QStringList &arguments)
{
    ParsedOptions parsed;
    StatsOptions &options = parsed.options;
    QStringList types;
    Gathered gathered { options, types };
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("-h") || argument == QLatin1String("--help")) {
            parsed.outcome = ParsedOptions::Outcome::Help;
            return parsed;
        }
        if (argument == QLatin1String("-v") || argument == QLatin1String("--version")) {
            parsed.outcome = ParsedOptions::Outcome::Version;
            return parsed;
        }
        const auto &table = allOptions();
        const auto option = std::find_if(table.begin(), table.end(),
                                         [&](const Option &row) { return row.name == argument; });
        if (option != table.end()) {
            QString value;
            if (!option->valueName.isEmpty()) {
                if (i + 1 >= arguments.size())
                    return usageError(QStringLiteral("%1 needs a value").arg(argument));
                value = arguments.at(++i);
            }
            if (const auto error = option->apply(gathered, value))
                return usageError(*error);
        } else if (argument.startsWith(QLatin1Char('-')) && argument.size() > 1) {
            return usageError(QStringLiteral("unknown option %1").arg(argument));
        } else {
            options.directories << argument;
        }
    }
    if (options.directories.isEmpty())
        return usageError(QStringLiteral("no directory given"));
    if (options.filter.from.isValid() && options.filter.to.isValid()
        && options.filter.from > options.filter.to)
        return usageError(QStringLiteral("--from is after --to"));
    if (options.statistics.isEmpty()) {
        for (const Statistic &statistic : Statistics::all())
            options.statistics.append(&statistic);
    }
    if (types.isEmpty()) {
        options.patterns = FileTypes::allPatterns();
    } else {
        for (const QString &type : std::as_const(types)) {
            for (const QString &pattern : FileTypes::patternsOf(type)) {
                if (!options.patterns.contains(pattern))
                    options.patterns << pattern;
            }
        }
    }
    return parsed;
}
