// Indices that cannot be taken for each other: a signed 32-bit number, -1 for none, whose type says what it points
// into. It is as cheap as the number inside. Nothing here checks bounds: an index that came from outside is checked
// before it is used.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tavrel::core {

// `Tag`, as a rule the type of what is pointed at, only tells the types apart and may be incomplete.
template <class Tag>
struct Index {
    std::int32_t value = -1;

    constexpr Index() = default;
    constexpr explicit Index(std::int32_t number) : value(number) {}
    constexpr explicit Index(std::size_t number) : value(static_cast<std::int32_t>(number)) {}

    // True when it points at something; the index 0 does.
    constexpr explicit operator bool() const { return value >= 0; }

    // As a place in a vector; only for an index that points at something.
    [[nodiscard]] constexpr std::size_t Number() const { return static_cast<std::size_t>(value); }

    constexpr bool operator==(const Index& other) const = default;
    constexpr bool operator<(const Index& other) const { return value < other.value; }
};

}  // namespace tavrel::core
