#include "statsoptions.h"

#include "filetypes.h"

namespace {

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
    QString titles;
    for (const Statistic &statistic : Statistics::all())
        titles += QStringLiteral("    ") + statistic.tabTitle + QLatin1Char('\n');
    return QStringLiteral(
               "Usage: kelvaro-stats [OPTION]... DIRECTORY...\n"
               "Scans the directories (with their subdirectories) as Kelvaro does and prints "
               "every statistic.\n"
               "  --format FORMAT        text (aligned tables, the default), csv or json\n"
               "  --statistic TITLE      only this statistic (repeatable), by its tab title\n"
               "  --type SUFFIX          only files of this type (repeatable): a suffix such "
               "as cr2 or jpg,\n"
               "                         or HEIF for every HEIF and AVIF suffix; any case\n"
               "  --no-subdirectories    only the files directly in each directory\n"
               "  --merge-names          count names that differ only in blanks and case "
               "together\n"
               "  --friendly-makers      count each maker under one name for its spellings\n"
               "  --no-catalogue         read every file; neither use nor update the photo "
               "catalogue\n"
               "  -h, --help             print this help and exit\n"
               "  -v, --version          print the version and exit\n"
               "Statistics:\n")
        + titles;
}

ParsedOptions parseStatsOptions(const QStringList &arguments)
{
    ParsedOptions parsed;
    StatsOptions &options = parsed.options;
    QStringList types;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        const auto value = [&]() -> std::optional<QString> {
            if (i + 1 >= arguments.size())
                return std::nullopt;
            return arguments.at(++i);
        };
        if (argument == QLatin1String("-h") || argument == QLatin1String("--help")) {
            parsed.outcome = ParsedOptions::Outcome::Help;
            return parsed;
        }
        if (argument == QLatin1String("-v") || argument == QLatin1String("--version")) {
            parsed.outcome = ParsedOptions::Outcome::Version;
            return parsed;
        }
        if (argument == QLatin1String("--no-subdirectories")) {
            options.includeSubDirs = false;
        } else if (argument == QLatin1String("--merge-names")) {
            options.mergeNames = true;
        } else if (argument == QLatin1String("--friendly-makers")) {
            options.friendlyMakers = true;
        } else if (argument == QLatin1String("--no-catalogue")) {
            options.useCatalogue = false;
        } else if (argument == QLatin1String("--format")) {
            const auto format = value();
            if (format == QLatin1String("text"))
                options.format = StatsOptions::Format::Text;
            else if (format == QLatin1String("csv"))
                options.format = StatsOptions::Format::Csv;
            else if (format == QLatin1String("json"))
                options.format = StatsOptions::Format::Json;
            else
                return usageError(format ? QStringLiteral("unknown format \"%1\" (text, csv or "
                                                          "json)")
                                               .arg(*format)
                                         : QStringLiteral("--format needs a value"));
        } else if (argument == QLatin1String("--statistic")) {
            const auto title = value();
            if (!title)
                return usageError(QStringLiteral("--statistic needs a title"));
            const Statistic *statistic = Statistics::byTitle(*title);
            if (!statistic)
                return usageError(QStringLiteral("unknown statistic \"%1\"").arg(*title));
            if (!options.statistics.contains(statistic))
                options.statistics.append(statistic);
        } else if (argument == QLatin1String("--type")) {
            const auto type = value();
            if (!type || type->isEmpty() || type->contains(QLatin1Char('/'))
                || type->contains(QLatin1Char('*')))
                return usageError(QStringLiteral("--type needs a file suffix such as cr2"));
            types << *type;
        } else if (argument.startsWith(QLatin1Char('-')) && argument.size() > 1) {
            return usageError(QStringLiteral("unknown option %1").arg(argument));
        } else {
            options.directories << argument;
        }
    }
    if (options.directories.isEmpty())
        return usageError(QStringLiteral("no directory given"));
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
