#pragma once

#include "photofilter.h"
#include "statistic.h"

#include <QList>
#include <QString>
#include <QStringList>

// What the command line asks for.
struct StatsOptions
{
    enum class Format { Text, Csv, Json };

    Format format = Format::Text;
    QList<const Statistic *> statistics; // every statistic when none is named
    QStringList patterns; // the file types' name patterns
    bool includeSubDirs = true;
    bool mergeNames = false; // names that differ only in blanks, NULs and case count as one
    bool friendlyMakers = false; // makers under one name for their spellings
    bool useCatalogue = true; // the window's photo catalogue, unless --no-catalogue
    QStringList directories;
    PhotoFilter filter; // the photos counted; every photo when empty
};

// Reads the arguments (without the program's name). False with a message for the user on bad
// usage; --help and --version are answered by the caller through `answer`.
struct ParsedOptions
{
    enum class Outcome { Run, Help, Version, UsageError };
    Outcome outcome = Outcome::Run;
    StatsOptions options;
    QString message; // the usage error
};

ParsedOptions parseStatsOptions(const QStringList &arguments);

// The text of --help.
QString statsUsage();
