// The file-system floor of a scan: walk the tree, open each file, read its first 64 KiB, close
// it. No metadata reader can be faster than this on the same files, so it is the yardstick of
// the scan's own overhead.
#include "benchstats.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace {

long readTree(const char *root, long &bytes)
{
    static char buffer[64 * 1024];
    long files = 0;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(root)) {
        if (!entry.is_regular_file())
            continue;
        const int fd = ::open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            continue;
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got > 0)
            bytes += got;
        ::close(fd);
        ++files;
    }
    return files;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s ROOT [RUNS]\n", argv[0]);
        return 2;
    }
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
    long bytes = 0;
    // The untimed first pass fills the page cache.
    const long files = readTree(argv[1], bytes);
    std::vector<double> seconds;
    for (int run = 0; run < runs; ++run) {
        const auto start = benchstats::Clock::now();
        const long seen = readTree(argv[1], bytes);
        seconds.push_back(benchstats::secondsBetween(start, benchstats::Clock::now()));
        if (seen != files) {
            std::fprintf(stderr, "file count changed between runs: %ld, then %ld\n", files, seen);
            return 1;
        }
    }
    const double median = benchstats::median(seconds);
    std::printf("RESULT floor files=%ld median_s=%.6f files_per_s=%.0f runs_s=%s\n", files, median,
                files / median, benchstats::joined(seconds, 4).c_str());
    return 0;
}
