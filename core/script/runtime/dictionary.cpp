#include "core/script/runtime/dictionary.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "core/script/runtime/compare.h"
#include "core/script/runtime/dict_index.h"

namespace tavrel::core::script {

namespace {

constexpr std::size_t MostScanned = 8;  // keys that are compared one by one
constexpr std::size_t MostPlain = 16;   // entries that never need an index

// Where a key is, or where it would be inserted.
struct Position {
    std::size_t at = 0;
    bool found = false;
};

Position Scan(const Heap& heap, const ValueVector& keys, const Value& key) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const std::int32_t order = CompareValues(heap, keys[i], key);
        if (order >= 0) return {i, order == 0};
    }
    return {keys.size(), false};
}

// The first key that is not less. The loop has no branch that depends on the keys where they are integers.
template <typename IsLess>
std::size_t Halve(const ValueVector& keys, IsLess isLess) {
    const Value* base = keys.data();
    for (std::size_t size = keys.size(); size > 1;) {
        const std::size_t half = size / 2;
        base += isLess(base[half - 1]) ? half : 0;
        size -= half;
    }
    return static_cast<std::size_t>(base - keys.data()) + (isLess(*base) ? 1 : 0);
}

// Of keys in order.
Position Search(const Heap& heap, const ValueVector& keys, const Value& key) {
    if (keys.size() <= MostScanned) return Scan(heap, keys, key);
    const bool integers = key.kind == Kind::Int || key.kind == Kind::Enum;
    const std::size_t at = integers
                               ? Halve(keys, [&](const Value& other) { return other.word < key.word; })
                               : Halve(keys, [&](const Value& other) { return CompareValues(heap, other, key) < 0; });
    return {at, at < keys.size() && CompareValues(heap, keys[at], key) == 0};
}

bool IsNan(const Value& key) {
    return key.kind == Kind::Real && !(key.Real() == key.Real());
}

// Counts one search by halves and the entries that are to be moved behind it, in a dictionary without an index. True
// when all that has come to what an index costs. A search costs as much as 8 keys of an index, a key as much as 4
// moves.
bool WantsIndex(HeapObject& object, std::size_t moved) {
    constexpr std::size_t MostCounted = std::numeric_limits<std::uint16_t>::max();
    const std::size_t size = object.keys.size();
    if (size <= MostPlain) return false;
    object.effort = static_cast<std::uint16_t>(std::min(object.effort + 1 + moved / 32, MostCounted));
    return object.effort >= std::min(size / 8, MostCounted);
}

// A NaN compares as equal to the first key in order. An index is never empty.
std::int64_t FindNan(Heap& heap, std::uint32_t dict) {
    Settle(heap, dict);
    return 0;
}

void Append(Heap& heap, HeapObject& object, const Value& key, const Value& value) {
    object.keys.push_back(key);
    object.items.push_back(value);
    heap.bytes += 2 * Heap::ItemCost;
}

void Replace(Heap& heap, HeapObject& object, std::size_t at, const Value& key, const Value& value) {
    const Value old = std::exchange(object.items[at], value);
    heap.Drop(old);
    heap.Drop(key);
}

bool StoreIndexed(Heap& heap, std::uint32_t dict, const Value& key, const Value& value) {
    HeapObject& object = heap.objects[dict];
    if (IsNan(key)) {
        Replace(heap, object, static_cast<std::size_t>(FindNan(heap, dict)), key, value);
        return false;
    }
    const std::uint32_t hash = HashKey(heap, key);
    const std::size_t slot = FindSlot(heap, object, key, hash);
    DictIndex& index = *object.index;
    if (index.slots[slot].position != 0) {
        Replace(heap, object, index.slots[slot].position - 1, key, value);
        return false;
    }
    FillSlot(heap, object, slot, hash);
    if (index.sorted == object.keys.size() && CompareValues(heap, object.keys.back(), key) < 0) ++index.sorted;
    Append(heap, object, key, value);
    return true;
}

// A number for each key: keys in ascending order have numbers that do not descend. Kinds whose order no such number
// tells have 0, and CompareValues decides.
std::uint64_t Rank(const Heap& heap, const Value& key) {
    constexpr std::uint64_t Sign = std::uint64_t{1} << 63U;
    const auto word = static_cast<std::uint64_t>(key.word);
    switch (key.kind) {
        case Kind::Int:
        case Kind::Enum: return word ^ Sign;
        case Kind::Text: return TextPrefix(heap.At(key).text);
        case Kind::Bool:
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound: return word;
        case Kind::Real:
        case Kind::Unknown:
        case Kind::Nothing:
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color:
        case Kind::List:
        case Kind::Dict:
        case Kind::Record:
        case Kind::Space: break;
    }
    return 0;
}

struct Ranked {
    std::uint64_t rank = 0;
    std::uint32_t position = 0;
};

// The present positions of the entries, in the order of their keys. So many from the first are in order already.
std::vector<Ranked> SortedPositions(const Heap& heap, const HeapObject& object, std::uint32_t sorted) {
    std::vector<Ranked> order(object.keys.size());
    for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = {Rank(heap, object.keys[i]), i};
    const auto isLess = [&](const Ranked& a, const Ranked& b) {
        if (a.rank != b.rank) return a.rank < b.rank;
        return CompareValues(heap, object.keys[a.position], object.keys[b.position]) < 0;
    };
    const auto middle = order.begin() + static_cast<std::ptrdiff_t>(sorted);
    std::stable_sort(middle, order.end(), isLess);  // unlike sort, it stays inside whatever the comparison says
    std::inplace_merge(order.begin(), middle, order.end(), isLess);
    return order;
}

ValueVector Gather(const ValueVector& values, const std::vector<Ranked>& order) {
    ValueVector gathered;
    gathered.reserve(order.size());
    for (const Ranked& ranked : order) gathered.push_back(values[ranked.position]);
    return gathered;
}

}  // namespace

std::int64_t FindByOrder(Heap& heap, std::uint32_t dict, const Value& key) {
    HeapObject& object = heap.objects[dict];
    if (!object.index) {
        const Position position = Search(heap, object.keys, key);
        if (WantsIndex(object, 0)) BuildIndex(heap, dict);
        return position.found ? static_cast<std::int64_t>(position.at) : -1;
    }
    if (IsNan(key)) return FindNan(heap, dict);
    const std::size_t slot = FindSlot(heap, object, key, HashKey(heap, key));
    return std::int64_t{object.index->slots[slot].position} - 1;
}

std::int64_t FindSame(Heap& heap, std::uint32_t dict, const Value& key) {
    const std::int64_t position = FindByOrder(heap, dict, key);
    if (position < 0 || key.kind == Kind::Int || key.kind == Kind::Text) return position;
    return SameValue(heap, heap.objects[dict].keys[static_cast<std::size_t>(position)], key) ? position : -1;
}

bool StoreEntry(Heap& heap, std::uint32_t dict, const Value& key, const Value& value) {
    HeapObject& object = heap.objects[dict];
    if (object.index) return StoreIndexed(heap, dict, key, value);
    const std::size_t size = object.keys.size();
    if (size == 0 || CompareValues(heap, object.keys.back(), key) < 0) {
        Append(heap, object, key, value);
        return true;
    }
    const Position position = Search(heap, object.keys, key);
    if (WantsIndex(object, position.found ? 0 : size - position.at)) BuildIndex(heap, dict);
    if (position.found) {
        Replace(heap, object, position.at, key, value);
        return false;
    }
    if (object.index) return StoreIndexed(heap, dict, key, value);
    const auto at = static_cast<std::ptrdiff_t>(position.at);
    object.keys.insert(object.keys.begin() + at, key);
    object.items.insert(object.items.begin() + at, value);
    heap.bytes += 2 * Heap::ItemCost;
    return true;
}

void RemoveEntry(Heap& heap, std::uint32_t dict, std::int64_t position) {
    HeapObject& object = heap.objects[dict];
    const auto at = static_cast<std::size_t>(position);
    const Value key = object.keys[at];
    const Value item = object.items[at];
    if (!object.index && WantsIndex(object, object.keys.size() - at)) BuildIndex(heap, dict);
    if (object.index) {
        MoveLastSlot(heap, object, static_cast<std::uint32_t>(at));
        object.keys[at] = object.keys.back();
        object.items[at] = object.items.back();
        object.keys.pop_back();
        object.items.pop_back();
        if (object.keys.empty()) DropIndex(heap, object);
    } else {
        object.keys.erase(object.keys.begin() + position);
        object.items.erase(object.items.begin() + position);
    }
    heap.bytes -= 2 * Heap::ItemCost;
    heap.Drop(key);
    heap.Drop(item);
}

void Settle(Heap& heap, std::uint32_t dict) {
    HeapObject& object = heap.objects[dict];
    if (!object.index || object.index->sorted == object.keys.size()) return;
    const std::uint32_t sorted = object.index->sorted;
    DropIndex(heap, object);  // first, since sorting needs memory too
    const std::vector<Ranked> order = SortedPositions(heap, object, sorted);
    object.keys = Gather(object.keys, order);
    object.items = Gather(object.items, order);
}

void SettleAll(Heap& heap) {
    for (std::size_t i = heap.unsettled.size(); i-- > 0;) Settle(heap, heap.unsettled[i]);
}

}  // namespace tavrel::core::script
