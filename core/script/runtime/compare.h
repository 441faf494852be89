// Equality and order of values. Both decide by the kind of `a` alone: the compiler gives both sides one type.
#pragma once

#include <cstdint>
#include <string>

#include "core/script/runtime/heap.h"

namespace tavrel::core::script {

// Equality as "==" means it: a NaN equals nothing, 0.0 equals -0.0, and lists, dictionaries and records equal nothing,
// themselves included.
[[nodiscard]] bool SameValue(const Heap& heap, const Value& a, const Value& b);

// The first eight bytes of a text as a number, zeros behind its end: where these differ, texts are ordered as they are.
[[nodiscard]] std::uint64_t TextPrefix(const std::string& text);

// Negative, 0 or positive. A NaN compares as equal to everything, and so do kinds without an order.
[[nodiscard]] std::int32_t CompareValues(const Heap& heap, const Value& a, const Value& b);

}  // namespace tavrel::core::script
