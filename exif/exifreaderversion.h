#pragma once

// The version of what the reader makes of a file. Raise it with every change that can alter a
// value the scan stores: the photo catalogue then reads every file again instead of handing out
// what an older reader made of it.
namespace ExifReader {
inline constexpr int version = 1;
} // namespace ExifReader
