// What reader and writer of JSON share: the search for the bytes in a text that cannot stand for themselves. Private to
// the two of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tavrel::core {

inline bool IsPlain(char byte) {
    return static_cast<unsigned char>(byte) >= 32 && byte != '"' && byte != '\\';
}

// True when all eight bytes are plain. A byte is zero when taking 1 from it sets a top bit that it had not, and below
// 32 likewise; borrows from a byte that was found can only add to the finds.
inline bool ArePlain(std::uint64_t bytes) {
    constexpr std::uint64_t Ones = 0x0101010101010101;
    const std::uint64_t quotes = bytes ^ (Ones * '"');
    const std::uint64_t backslashes = bytes ^ (Ones * '\\');
    const std::uint64_t found =
        ((bytes - Ones * 32) & ~bytes) | ((quotes - Ones) & ~quotes) | ((backslashes - Ones) & ~backslashes);
    return (found & (Ones * 0x80)) == 0;
}

// The first byte from `at` that is a quote, a backslash or below 32; `end` when there is none.
inline const char* SkipPlain(const char* at, const char* end) {
    std::uint64_t bytes = 0;
    for (; end - at >= static_cast<std::ptrdiff_t>(sizeof bytes); at += sizeof bytes) {
        std::memcpy(&bytes, at, sizeof bytes);
        if (!ArePlain(bytes)) break;
    }
    while (at != end && IsPlain(*at)) ++at;
    return at;
}

}  // namespace tavrel::core
