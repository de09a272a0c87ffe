#include "testrunner.h"
#include "tst_kelvarostats.h"
#include "tst_namerules.h"
#include "tst_periodcomparison.h"
#include "tst_photofilter.h"
#include "tst_statistics.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    tst_Statistics statistics;
    tst_PhotoFilter filter;
    tst_KelvaroStats program;
    tst_NameRules names;
    tst_PeriodComparison periods;
    return testutils::runTestObjects(app.arguments(),
                                     { &statistics, &filter, &program, &names, &periods });
}
