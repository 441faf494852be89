#include "core/script/runtime/dict_index.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <utility>

#include "core/script/runtime/compare.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint64_t Multiplier = 0x9E3779B97F4A7C15U;  // odd, its bits without a pattern
constexpr std::size_t LeastSlots = 64;
constexpr std::size_t FewEntries = 65536;  // up to here speed is worth more than memory

template <typename Word>
std::uint64_t Load(const char* bytes) {
    Word word = 0;
    std::memcpy(&word, bytes, sizeof(Word));
    return word;
}

// Eight bytes at a time in the machine's own order: nothing that can be seen depends on a hash. The last bytes are read
// together with some that were read before.
std::uint64_t HashBytes(const char* bytes, std::size_t size) {
    std::uint64_t hash = size;
    for (std::size_t at = 0; at + 8 < size; at += 8) {
        hash = (hash ^ Load<std::uint64_t>(bytes + at)) * Multiplier;
        hash ^= hash >> 32U;
    }
    if (size >= 8) return hash ^ Load<std::uint64_t>(bytes + size - 8);
    if (size >= 4) return (hash << 56U) ^ (Load<std::uint32_t>(bytes) << 32U) ^ Load<std::uint32_t>(bytes + size - 4);
    for (std::size_t at = 0; at < size; ++at) hash = hash << 8U | Load<unsigned char>(bytes + at);
    return hash;
}

std::uint64_t WordOf(const Heap& heap, const Value& key) {
    if (key.kind == Kind::Text) return HashBytes(heap.At(key).text.data(), heap.At(key).text.size());
    if (key.kind == Kind::Real && key.Real() == 0.0F) return 0;
    return static_cast<std::uint64_t>(key.word);
}

std::size_t Next(const DictIndex& index, std::size_t slot) {
    return (slot + 1) & (index.slots.size() - 1);
}

// For entries that are known to be new.
void Place(DictIndex& index, DictIndex::Slot entry) {
    std::size_t slot = entry.hash >> index.shift;
    while (index.slots[slot].position != 0) slot = Next(index, slot);
    index.slots[slot] = entry;
}

// Makes slots for that many entries and puts those in it that it has.
void Resize(Heap& heap, DictIndex& index, std::size_t entries) {
    const std::size_t room = entries < FewEntries ? 6 : 3;
    const std::size_t count = std::max(LeastSlots, std::bit_ceil(entries * room));
    const std::vector<DictIndex::Slot> old = std::exchange(index.slots, std::vector<DictIndex::Slot>(count));
    index.shift = 32U - static_cast<std::uint32_t>(std::countr_zero(count));
    heap.bytes += DictIndex::SlotCost * count;
    heap.bytes -= DictIndex::SlotCost * old.size();
    for (const DictIndex::Slot& entry : old) {
        if (entry.position != 0) Place(index, entry);
    }
}

template <typename IsKey>
std::size_t Probe(const DictIndex& index, std::uint32_t hash, IsKey isKey) {
    for (std::size_t slot = hash >> index.shift;; slot = Next(index, slot)) {
        const DictIndex::Slot& entry = index.slots[slot];
        if (entry.position == 0 || (entry.hash == hash && isKey(entry.position - 1))) return slot;
    }
}

std::size_t SlotAt(const Heap& heap, const HeapObject& object, std::uint32_t position) {
    return Probe(*object.index, HashKey(heap, object.keys[position]),
                 [&](std::uint32_t other) { return other == position; });
}

// Entries behind an emptied slot move up unless they stand between their own place and it, so that every search still
// meets no empty slot before its entry.
void Erase(DictIndex& index, std::size_t hole) {
    const std::size_t mask = index.slots.size() - 1;
    for (std::size_t slot = Next(index, hole); index.slots[slot].position != 0; slot = Next(index, slot)) {
        const std::size_t home = index.slots[slot].hash >> index.shift;
        if (((slot - home) & mask) < ((slot - hole) & mask)) continue;
        index.slots[hole] = index.slots[slot];
        hole = slot;
    }
    index.slots[hole] = {};
}

}  // namespace

std::uint32_t HashKey(const Heap& heap, const Value& key) {
    return static_cast<std::uint32_t>(WordOf(heap, key) * Multiplier >> 32U);
}

void BuildIndex(Heap& heap, std::uint32_t dict) {
    HeapObject& object = heap.objects[dict];
    object.index = std::make_unique<DictIndex>();
    DictIndex& index = *object.index;
    const auto count = static_cast<std::uint32_t>(object.keys.size());
    heap.bytes += DictIndex::OwnCost;
    Resize(heap, index, count);
    for (std::uint32_t i = 0; i < count; ++i) Place(index, {HashKey(heap, object.keys[i]), i + 1});
    index.sorted = count;
    index.place = static_cast<std::uint32_t>(heap.unsettled.size());
    heap.unsettled.push_back(dict);
}

void DropIndex(Heap& heap, HeapObject& object) {
    const std::uint32_t last = heap.unsettled.back();
    heap.unsettled[object.index->place] = last;
    heap.objects[last].index->place = object.index->place;
    heap.unsettled.pop_back();
    heap.bytes -= DictIndex::OwnCost + DictIndex::SlotCost * object.index->slots.size();
    object.index.reset();
    object.effort = 0;
}

std::size_t FindSlot(const Heap& heap, const HeapObject& object, const Value& key, std::uint32_t hash) {
    const Value* keys = object.keys.data();
    const bool wordTells = key.kind != Kind::Text && key.kind != Kind::Real;
    if (wordTells) return Probe(*object.index, hash, [&](std::uint32_t i) { return keys[i].word == key.word; });
    return Probe(*object.index, hash,
                 [&](std::uint32_t i) { return keys[i].word == key.word || SameValue(heap, key, keys[i]); });
}

void FillSlot(Heap& heap, HeapObject& object, std::size_t slot, std::uint32_t hash) {
    DictIndex& index = *object.index;
    const std::size_t count = object.keys.size() + 1;
    index.slots[slot] = {hash, static_cast<std::uint32_t>(count)};
    if (count * 2 > index.slots.size()) Resize(heap, index, count);
}

void MoveLastSlot(Heap& heap, HeapObject& object, std::uint32_t position) {
    DictIndex& index = *object.index;
    const auto last = static_cast<std::uint32_t>(object.keys.size() - 1);
    const std::size_t gone = SlotAt(heap, object, position);
    index.slots[SlotAt(heap, object, last)].position = position + 1;
    Erase(index, gone);
    index.sorted = std::min(index.sorted, position);
    if (index.slots.size() > LeastSlots && index.slots.size() > 32 * std::size_t{last}) Resize(heap, index, last);
}

}  // namespace tavrel::core::script
