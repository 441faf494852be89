// The entries of a dictionary. What a script sees is a list of keys in ascending order, scanned from the first; what
// happens is faster. A small dictionary is scanned, a larger one searched by halves, and one that is searched often or
// grows out of order is searched by hash (dict_index.h) and keeps its new entries at the end until somebody wants to
// see the order (Settle).
#pragma once

#include <cstdint>

#include "core/script/runtime/heap.h"

namespace tavrel::core::script {

// What a scan of the keys in order by CompareValues finds: the position of the first key that compares as 0, unless a
// greater one stands before it; -1 for none. The position counts in the present arrangement, which may be out of order.
[[nodiscard]] std::int64_t FindByOrder(Heap& heap, std::uint32_t dict, const Value& key);

// What a scan by SameValue finds, so that a NaN is never found.
[[nodiscard]] std::int64_t FindSame(Heap& heap, std::uint32_t dict, const Value& key);

// Replaces the value of the key that FindByOrder finds, and drops the old value and the given key; else inserts both.
// Takes over both references. True when it inserted. Memory and `version` are the caller's business, but what it
// inserts is counted.
bool StoreEntry(Heap& heap, std::uint32_t dict, const Value& key, const Value& value);

// Whether StoreEntry would insert.
[[nodiscard]] inline bool WouldInsert(Heap& heap, std::uint32_t dict, const Value& key) {
    return FindByOrder(heap, dict, key) < 0;
}

// Removes the entry at a position that a Find gave, dropping key and value.
void RemoveEntry(Heap& heap, std::uint32_t dict, std::int64_t position);

// Puts the keys in ascending order. To be called before anything looks at the order of `keys` and `items`.
void Settle(Heap& heap, std::uint32_t dict);

// Settles every dictionary, for those who look at the heap from outside.
void SettleAll(Heap& heap);

}  // namespace tavrel::core::script
