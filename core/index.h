// Indices that cannot be taken for each other. An `Index` is a signed 32-bit number, -1 for none, whose type says what
// it points into; an `IndexVector` is a vector that only its own kind of index reaches. Both are as cheap as the number
// and the vector inside. Nothing here checks bounds: whoever reads an index from outside checks it first.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tavrel::core {

// `Tag` only tells the types apart and is never defined.
template <class Tag>
struct Index {
    std::int32_t value = -1;

    constexpr Index() = default;
#ifdef TAVREL_LOOSE_INDEX
    constexpr Index(std::int32_t number) : value(number) {}
    constexpr operator std::int32_t() const { return value; }
#else
    constexpr explicit Index(std::int32_t number) : value(number) {}
#endif
    constexpr explicit Index(std::size_t number) : value(static_cast<std::int32_t>(number)) {}

    // True when it points at something; the index 0 does.
    constexpr explicit operator bool() const { return value >= 0; }

    // As a place in a vector; only for an index that points at something.
    [[nodiscard]] constexpr std::size_t Number() const { return static_cast<std::size_t>(value); }

#ifndef TAVREL_LOOSE_INDEX
    constexpr auto operator<=>(const Index&) const = default;
#endif
};

}  // namespace tavrel::core
