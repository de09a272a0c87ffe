#pragma once

#include <QObject>

// Replays the fuzz target's kept corpus (fuzz/corpus) and every input that once crashed the
// reader (fuzz/regressions) through TExifFile, as fuzz_exiffile reads them. In the sanitizer
// build this is the fuzzer's regression run, without libFuzzer.
class tst_FuzzCorpus : public QObject
{
    Q_OBJECT

private slots:
    void keptInputEndsCleanly_data();
    void keptInputEndsCleanly();
};
