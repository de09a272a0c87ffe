#pragma once

#include "photofixture.h"
#include "testutils.h"
#include "texiffile.h"

#include <memory>

namespace exiftest {

// Writes bytes under name into the sandbox and reads them back with a TExifFile.
inline std::unique_ptr<TExifFile> read(const testutils::Sandbox &sandbox, const QString &name,
                                       const QByteArray &bytes, bool *recognised = nullptr)
{
    const QString path = sandbox.filePath(name);
    if (!fixture::writeBytes(path, bytes))
        qFatal("cannot write the test file %s", qPrintable(path));
    auto file = std::make_unique<TExifFile>(path);
    const bool ok = file->processFile();
    if (recognised)
        *recognised = ok;
    return file;
}

} // namespace exiftest
