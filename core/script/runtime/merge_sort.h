// A stable merge sort whose steps depend on nothing but the length and the answers of `precedes`. The library's own
// sorts promise a result for strict orders only; reals with a NaN among them have none, and all machines are to agree
// there too.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tavrel::core::script {

// Merges the sorted items before and from `middle`; `spare` has room for the first part.
template <typename Item, typename Precedes>
void MergeHalves(Item* items, std::size_t middle, std::size_t count, Item* spare, const Precedes& precedes) {
    if (!precedes(items[middle], items[middle - 1])) return;
    std::copy(items, items + middle, spare);
    std::size_t left = 0;
    std::size_t right = middle;
    std::size_t out = 0;
    while (left < middle && right < count) {
        items[out++] = precedes(items[right], spare[left]) ? items[right++] : spare[left++];
    }
    std::copy(spare + left, spare + middle, items + out);
}

// Recursive, to a depth of the logarithm of `count`.
template <typename Item, typename Precedes>
void MergeSortPart(Item* items, std::size_t count, Item* spare, const Precedes& precedes) {
    constexpr std::size_t FewItems = 12;
    if (count > FewItems) {
        const std::size_t middle = count / 2;
        MergeSortPart(items, middle, spare, precedes);
        MergeSortPart(items + middle, count - middle, spare, precedes);
        MergeHalves(items, middle, count, spare, precedes);
        return;
    }
    for (std::size_t i = 1; i < count; ++i) {
        const Item item = items[i];
        std::size_t at = i;
        for (; at > 0 && precedes(item, items[at - 1]); --at) items[at] = items[at - 1];
        items[at] = item;
    }
}

// Sorts items that are cheap to copy. Of two neither of which precedes the other, the earlier one stays first.
template <typename Item, typename Precedes>
void MergeSort(std::vector<Item>& items, const Precedes& precedes) {
    std::vector<Item> spare(items.size() / 2);
    MergeSortPart(items.data(), items.size(), spare.data(), precedes);
}

}  // namespace tavrel::core::script
