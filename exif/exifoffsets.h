#pragma once

#include <QtGlobal>

// Offset arithmetic on what a file claims, in unsigned 64 bits, that can't wrap around: a range
// is checked as start <= size && length <= size - start, never as start + length <= size.
namespace exifoffsets {

// True when the range [start, start + length) lies within [0, size).
constexpr bool fits(quint64 start, quint64 length, quint64 size)
{
    return start <= size && length <= size - start;
}

// sum = a + b; false (sum untouched) when the addition would pass 2^64 - 1.
constexpr bool add(quint64 a, quint64 b, quint64 &sum)
{
    if (b > ~quint64(0) - a)
        return false;
    sum = a + b;
    return true;
}

} // namespace exifoffsets
