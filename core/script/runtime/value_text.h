// Values as people read them. Numbers go through number_text; reals that are not finite print as "inf", "-inf", "nan".
#pragma once

#include <cstdint>
#include <string>

#include "core/script/runtime/heap.h"

namespace tavrel::core::script {

// Appends the text of a value to `out`. An object inside itself prints as "..." there, so that every walk ends; no
// recursion. Stops and gives false before `out` would pass `limit` bytes: shared objects print once for each way to
// them, which can be more than any memory holds. Settles the dictionaries that it meets.
[[nodiscard]] bool AppendValueText(Heap& heap, const Value& value, std::uint64_t limit, std::string& out);

// The text of a value, cut where it passes the heap's limit. For a heap whose dictionaries are settled, as between two
// runs.
[[nodiscard]] std::string ValueToText(const Heap& heap, const Value& value);

}  // namespace tavrel::core::script
