// The order that "ordenar" gives a list.
#pragma once

#include <span>

#include "core/script/runtime/heap.h"

namespace tavrel::core::script {

// Sorts the items of a list, all of one kind, stably by CompareValues. Of kinds without an order nothing moves. Where a
// NaN stands among reals the outcome is that of MergeSort.
void SortValues(const Heap& heap, std::span<Value> items);

}  // namespace tavrel::core::script
