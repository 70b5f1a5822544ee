#pragma once
// What every fuzz target shares: the input as bytes without a copy, and a check that
// stops the run the way a sanitizer does.
#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace steward::fuzz {

inline QByteArray bytesOf(const uint8_t* data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

/// Stops the run when an invariant of a reader doesn't hold.
inline void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "fuzz invariant broken: %s\n", what);
        std::abort();
    }
}

} // namespace steward::fuzz
