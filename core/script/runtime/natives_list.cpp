#include <algorithm>
#include <cstdint>
#include <string>

#include "core/script/numeric/number_text.h"
#include "core/script/runtime/compare.h"
#include "core/script/runtime/deep_copy.h"
#include "core/script/runtime/native_results.h"
#include "core/script/runtime/natives.h"
#include "core/script/runtime/sort_values.h"

namespace tavrel::core::script {

namespace {

// The index of the first item that is the same as a value; -1 for none.
std::int64_t FindItem(const Heap& heap, const Value& list, const Value& value) {
    const ValueVector& items = heap.At(list).items;
    const bool whole = ComparesByWord(value.kind);
    const auto at = std::find_if(items.begin(), items.end(), [&](const Value& item) {
        return whole && item.kind == value.kind ? item.word == value.word : SameValue(heap, item, value);
    });
    return at == items.end() ? -1 : at - items.begin();
}

// Whether a position is from 0 to `last`; else the fault.
bool CheckPosition(Vm& vm, const HeapObject& list, std::int64_t position, std::int64_t last) {
    if (position >= 0 && position <= last) return true;
    const auto size = static_cast<std::int64_t>(list.items.size());
    return FailNative(
        vm, "a lista tem " + Counted(size, "item", "itens") + " e a posicao pedida foi " + IntegerToText(position));
}

void RemoveItem(Heap& heap, const Value& list, std::int64_t position) {
    HeapObject& object = heap.At(list);
    const Value removed = heap.RemoveAt(object, static_cast<std::size_t>(position));
    ++object.version;
    heap.Drop(removed);
}

}  // namespace

bool NativeListSize(Vm& vm, Value* args, std::size_t, Value& result) {
    result = MakeInt(static_cast<std::int64_t>(vm.heap.At(args[0]).items.size()));
    return true;
}

bool NativeListContains(Vm& vm, Value* args, std::size_t, Value& result) {
    result = MakeBool(FindItem(vm.heap, args[0], args[1]) >= 0);
    return true;
}

bool NativeListAppend(Vm& vm, Value* args, std::size_t, Value&) {
    if (!vm.Grow(Heap::ItemCost)) return false;
    HeapObject& list = vm.heap.At(args[0]);
    vm.heap.Append(list, args[1]);
    ++list.version;
    args[1] = Value{};
    return true;
}

bool NativeListInsert(Vm& vm, Value* args, std::size_t, Value&) {
    HeapObject& list = vm.heap.At(args[0]);
    const std::int64_t position = args[1].Int();
    if (!CheckPosition(vm, list, position, static_cast<std::int64_t>(list.items.size()))) return false;
    if (!vm.Grow(Heap::ItemCost)) return false;
    vm.heap.Insert(list, static_cast<std::size_t>(position), args[2]);
    ++list.version;
    args[2] = Value{};
    return true;
}

bool NativeListRemove(Vm& vm, Value* args, std::size_t, Value&) {
    const HeapObject& list = vm.heap.At(args[0]);
    const std::int64_t position = args[1].Int();
    if (!CheckPosition(vm, list, position, static_cast<std::int64_t>(list.items.size()) - 1)) return false;
    RemoveItem(vm.heap, args[0], position);
    return true;
}

bool NativeListRemoveValue(Vm& vm, Value* args, std::size_t, Value& result) {
    const std::int64_t position = FindItem(vm.heap, args[0], args[1]);
    if (position >= 0) RemoveItem(vm.heap, args[0], position);
    result = MakeBool(position >= 0);
    return true;
}

bool NativeListClear(Vm& vm, Value* args, std::size_t, Value&) {
    vm.heap.ClearItems(args[0].ObjectIndex());
    ++vm.heap.At(args[0]).version;
    return true;
}

bool NativeListIndexOf(Vm& vm, Value* args, std::size_t, Value& result) {
    result = MakeInt(FindItem(vm.heap, args[0], args[1]));
    return true;
}

bool NativeListSort(Vm& vm, Value* args, std::size_t, Value&) {
    HeapObject& list = vm.heap.At(args[0]);
    SortValues(vm.heap, list.items);
    ++list.version;
    return true;
}

bool NativeListReverse(Vm& vm, Value* args, std::size_t, Value&) {
    HeapObject& list = vm.heap.At(args[0]);
    std::reverse(list.items.begin(), list.items.end());
    ++list.version;
    return true;
}

bool NativeListCopy(Vm& vm, Value* args, std::size_t, Value& result) {
    return DeepCopy(vm, args[0], 0, result);
}

bool NativeListVersion(Vm& vm, Value* args, std::size_t, Value& result) {
    result = MakeInt(vm.heap.At(args[0]).version);
    return true;
}

}  // namespace tavrel::core::script
