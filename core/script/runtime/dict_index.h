// The positions of a dictionary's entries by the hash of their keys, for dictionary.cpp and the heap that owns it. Keys
// and items stay in the object; their order there is free while an index stands. Private to this folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/script/runtime/heap.h"

namespace tavrel::core::script {

struct DictIndex {
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t position = 0;  // into keys, plus one; 0 for an empty slot
    };
    static constexpr std::uint64_t OwnCost = 64;  // of an index in the counted memory of the heap, and of each slot
    static constexpr std::uint64_t SlotCost = 8;

    std::vector<Slot> slots;   // a power of two, at most half of them in use
    std::uint32_t shift = 0;   // takes a hash down to its place in slots
    std::uint32_t sorted = 0;  // so many keys from the first are known to be in ascending order
    std::uint32_t place = 0;   // into Heap::unsettled
};

// Equal keys have equal hashes, 0.0 and -0.0 among them. A NaN has no place in an index.
[[nodiscard]] std::uint32_t HashKey(const Heap& heap, const Value& key);

// Gives a dictionary without an index one. Its keys are in order.
void BuildIndex(Heap& heap, std::uint32_t dict);

// Takes the index away, whatever the order of the keys.
void DropIndex(Heap& heap, HeapObject& object);

// The slot of a key, or the empty one where it would go.
[[nodiscard]] std::size_t FindSlot(const Heap& heap, const HeapObject& object, const Value& key, std::uint32_t hash);

// Fills the empty slot that FindSlot gave with the next position, before the key itself is appended.
void FillSlot(Heap& heap, HeapObject& object, std::size_t slot, std::uint32_t hash);

// Takes out the slot of the key at a position and lets the slot of the last key point there instead; the keys
// themselves are yet to move.
void MoveLastSlot(Heap& heap, HeapObject& object, std::uint32_t position);

}  // namespace tavrel::core::script
