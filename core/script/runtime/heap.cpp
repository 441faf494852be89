#include "core/script/runtime/heap.h"

#include <cassert>
#include <limits>
#include <utility>

#include "core/script/runtime/dict_index.h"

namespace tavrel::core::script {

namespace {

// What the table of kinds says. The interpreter asks OnHeap at nearly every step, so that is two comparisons; the check
// below holds it to the table.
constexpr bool IsReference(Kind kind) {
#define TAVREL_KIND(name, number, word, comparable, ordered, reference) \
    case Kind::name: return reference;
    switch (kind) {
#include "core/script/program/kinds.def"
    }
    return false;
}

constexpr bool OnHeapIsRight() {
    for (unsigned number = 0; number <= std::numeric_limits<std::uint8_t>::max(); ++number) {
        const auto kind = static_cast<Kind>(number);
        if (OnHeap(kind) != IsReference(kind)) return false;
    }
    return true;
}
static_assert(OnHeapIsRight());

// Assigning an empty string or vector would keep the memory.
void GiveBack(std::string& text) {
    if (text.capacity() > std::string().capacity()) {
        std::string().swap(text);
    } else {
        text.clear();
    }
}

void GiveBack(ValueVector& values) {
    if (values.capacity() > 0) values.reset();
}

}  // namespace

HeapObject::HeapObject() = default;
HeapObject::HeapObject(HeapObject&&) noexcept = default;
HeapObject& HeapObject::operator=(HeapObject&&) noexcept = default;
HeapObject::~HeapObject() = default;

std::int32_t Heap::Take(Kind kind) {
    ++live;
    ++taken;
    bytes += ObjectCost;
    std::uint32_t index = 0;
    if (free.empty()) {
        index = static_cast<std::uint32_t>(objects.size());
        objects.emplace_back();
    } else {
        index = free.back();
        free.pop_back();
    }
    HeapObject& object = objects[index];  // a released slot is empty, and has no record
    object.kind = kind;
    object.effort = 0;
    object.refs = 1;
    object.version = 0;
    return static_cast<std::int32_t>(index);
}

// The order in which slots become free is fixed: depth first, the last of what an object held before the first.
void Heap::Release(std::uint32_t object) {
    Free(object);
    while (!pending.empty()) {
        object = pending.back();
        pending.pop_back();
        if (--objects[object].refs <= 0) Free(object);
    }
}

void Heap::Free(std::uint32_t index) {
    HeapObject& object = objects[index];
    const std::uint64_t cost =
        ObjectCost + object.text.size() + ItemCost * (std::uint64_t{object.items.size()} + object.keys.size());
    assert(cost <= bytes);
    bytes -= cost;
    if (object.kind == Kind::Text) {
        GiveBack(object.text);
    } else {
        PushHeld(object.items);
        PushHeld(object.keys);
        GiveBack(object.items);
        GiveBack(object.keys);
        if (object.index) DropIndex(*this, object);
        object.record = RecordId();
    }
    free.push_back(index);
    --live;
}

void Heap::PushHeld(const ValueVector& values) {
    for (const Value& value : values) {
        if (OnHeap(value.kind)) pending.push_back(value.ObjectIndex());
    }
}

void Heap::Clear() {
    objects.clear();
    free.clear();
    unsettled.clear();
    live = 0;
    bytes = 0;
}

std::int32_t Heap::NewText(std::string text) {
    const std::int32_t index = Take(Kind::Text);
    bytes += text.size();
    objects[static_cast<std::uint32_t>(index)].text = std::move(text);
    return index;
}

std::int32_t Heap::NewList() {
    return Take(Kind::List);
}

std::int32_t Heap::NewDict() {
    return Take(Kind::Dict);
}

std::int32_t Heap::NewRecord(RecordId record, std::size_t fieldCount) {
    const std::int32_t index = Take(Kind::Record);
    HeapObject& object = objects[static_cast<std::uint32_t>(index)];
    object.record = record;
    object.items.resize(fieldCount);
    bytes += ItemCost * fieldCount;
    return index;
}

void Heap::Insert(HeapObject& list, std::size_t position, const Value& value) {
    list.items.insert(list.items.begin() + static_cast<std::ptrdiff_t>(position), value);
    bytes += ItemCost;
}

Value Heap::RemoveAt(HeapObject& list, std::size_t position) {
    const Value value = list.items[position];
    list.items.erase(list.items.begin() + static_cast<std::ptrdiff_t>(position));
    bytes -= ItemCost;
    return value;
}

void Heap::ClearItems(std::uint32_t object) {
    HeapObject& container = objects[object];
    const ValueVector keys = std::exchange(container.keys, {});
    const ValueVector items = std::exchange(container.items, {});
    if (container.index) DropIndex(*this, container);
    bytes -= ItemCost * (std::uint64_t{keys.size()} + items.size());
    for (const Value& key : keys) Drop(key);
    for (const Value& item : items) Drop(item);
}

}  // namespace tavrel::core::script
