#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

// What every benchmark program shares: the clock, the median and the one result line that
// run-benchmark.sh reads ("RESULT name key=value ...").
namespace benchstats {

using Clock = std::chrono::steady_clock;

inline double secondsBetween(Clock::time_point from, Clock::time_point to)
{
    return std::chrono::duration<double>(to - from).count();
}

inline double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const size_t mid = values.size() / 2;
    return values.size() % 2 ? values[mid] : (values[mid - 1] + values[mid]) / 2;
}

// A field of /proc/self/status in kB ("VmHWM", "VmRSS"); -1 where there is none.
inline long procStatusKb(const std::string &field)
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.compare(0, field.size() + 1, field + ":") == 0)
            return std::stol(line.substr(field.size() + 1));
    }
    return -1;
}

inline std::string joined(const std::vector<double> &values, int decimals)
{
    std::string text;
    char buffer[32];
    for (double v : values) {
        std::snprintf(buffer, sizeof buffer, "%s%.*f", text.empty() ? "" : ",", decimals, v);
        text += buffer;
    }
    return text;
}

} // namespace benchstats
