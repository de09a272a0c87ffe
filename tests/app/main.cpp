// The application shell's tests: one executable, one test class per concern, run one after the
// other. The exit code counts the failed test functions of all of them. A first argument naming
// a class ("TestScanControl") runs that class alone, with the remaining arguments.
#include <QApplication>

#include <cstring>

int runStartupTests(int argc, char **argv);
int runWindowFrameTests(int argc, char **argv);
int runRawDataTableTests(int argc, char **argv);
int runSettingsStoreTests(int argc, char **argv);
int runScanControlTests(int argc, char **argv);
int runChartCommandTests(int argc, char **argv);
int runGlobalSettingsTests(int argc, char **argv);
int runUpdateOfferTests(int argc, char **argv);

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const struct
    {
        const char *name;
        int (*run)(int, char **);
    } classes[] = { { "TestStartup", runStartupTests },
                    { "TestWindowFrame", runWindowFrameTests },
                    { "TestRawDataTable", runRawDataTableTests },
                    { "TestSettingsStore", runSettingsStoreTests },
                    { "TestScanControl", runScanControlTests },
                    { "TestChartCommands", runChartCommandTests },
                    { "TestGlobalSettings", runGlobalSettingsTests },
                    { "tst_UpdateOffer", runUpdateOfferTests } };

    if (argc > 1) {
        for (const auto &testClass : classes) {
            if (std::strcmp(argv[1], testClass.name) == 0) {
                argv[1] = argv[0];
                return testClass.run(argc - 1, argv + 1);
            }
        }
    }
    int failures = 0;
    for (const auto &testClass : classes)
        failures += testClass.run(argc, argv);
    return failures;
}
