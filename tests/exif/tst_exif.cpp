// Runs every test class of the photo metadata reader in one executable; the exit code is
// non-zero when any of them failed.
#include "codetablestest.h"
#include "hostilelayouttest.h"
#include "readertest.h"
#include "samplestest.h"
#include "tagcatalogue_test.h"
#include "tooltest.h"
#include "valuestest.h"

#include <QCoreApplication>
#include <QTest>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    int failed = 0;
    {
        ReaderTest test;
        failed += QTest::qExec(&test, argc, argv);
    }
    {
        HostileLayoutTest test;
        failed += QTest::qExec(&test, argc, argv);
    }
    {
        ValuesTest test;
        failed += QTest::qExec(&test, argc, argv);
    }
    {
        CodeTablesTest test;
        failed += QTest::qExec(&test, argc, argv);
    }
    {
        TagCatalogueTest test;
        failed += QTest::qExec(&test, argc, argv);
    }
    {
        SamplesTest test;
        failed += QTest::qExec(&test, argc, argv);
    }
    {
        ToolTest test;
        failed += QTest::qExec(&test, argc, argv);
    }
    return failed == 0 ? 0 : 1;
}
