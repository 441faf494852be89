#include <cstdint>
#include <vector>

#include "core/script/runtime/deep_copy.h"
#include "core/script/runtime/dictionary.h"
#include "core/script/runtime/native_results.h"
#include "core/script/runtime/natives.h"

namespace tavrel::core::script {

namespace {

// A new list of the keys or of the values of a dictionary, in the order of the keys.
bool GiveList(Vm& vm, const Value& dict, ValueVector HeapObject::*part, Value& result) {
    Heap& heap = vm.heap;
    Settle(heap, dict.ObjectIndex());
    const std::size_t size = heap.At(dict).items.size();
    if (!vm.Grow(Heap::ObjectCost + Heap::ItemCost * size)) return false;
    result = MakeObject(Kind::List, static_cast<std::uint32_t>(heap.NewList()));
    HeapObject& list = heap.At(result);
    list.items.reserve(size);
    for (const Value& value : heap.At(dict).*part) {
        heap.Retain(value);
        heap.Append(list, value);
    }
    return true;
}

}  // namespace

bool NativeDictSize(Vm& vm, Value* args, std::size_t, Value& result) {
    result = MakeInt(static_cast<std::int64_t>(vm.heap.At(args[0]).items.size()));
    return true;
}

bool NativeDictContains(Vm& vm, Value* args, std::size_t, Value& result) {
    result = MakeBool(FindSame(vm.heap, args[0].ObjectIndex(), args[1]) >= 0);
    return true;
}

bool NativeDictDefine(Vm& vm, Value* args, std::size_t, Value&) {
    Heap& heap = vm.heap;
    const std::uint32_t dict = args[0].ObjectIndex();
    constexpr std::uint64_t PairCost = 2 * Heap::ItemCost;
    // Room for a pair is there nearly always, and then it need not be known whether there will be one.
    if (!heap.Fits(PairCost) && WouldInsert(heap, dict, args[1])) return vm.Grow(PairCost);
    if (StoreEntry(heap, dict, args[1], args[2])) ++heap.objects[dict].version;
    args[1] = Value{};
    args[2] = Value{};
    return true;
}

bool NativeDictObtain(Vm& vm, Value* args, std::size_t, Value& result) {
    const std::int64_t position = FindSame(vm.heap, args[0].ObjectIndex(), args[1]);
    result = position < 0 ? args[2] : vm.heap.At(args[0]).items[static_cast<std::size_t>(position)];
    vm.heap.Retain(result);
    return true;
}

bool NativeDictRemove(Vm& vm, Value* args, std::size_t, Value& result) {
    const std::uint32_t dict = args[0].ObjectIndex();
    const std::int64_t position = FindSame(vm.heap, dict, args[1]);
    if (position >= 0) {
        RemoveEntry(vm.heap, dict, position);
        ++vm.heap.objects[dict].version;
    }
    result = MakeBool(position >= 0);
    return true;
}

bool NativeDictClear(Vm& vm, Value* args, std::size_t, Value&) {
    vm.heap.ClearItems(args[0].ObjectIndex());
    ++vm.heap.At(args[0]).version;
    return true;
}

bool NativeDictKeys(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveList(vm, args[0], &HeapObject::keys, result);
}

bool NativeDictValues(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveList(vm, args[0], &HeapObject::items, result);
}

bool NativeDictCopy(Vm& vm, Value* args, std::size_t, Value& result) {
    return DeepCopy(vm, args[0], 0, result);
}

bool NativeRecordCopy(Vm& vm, Value* args, std::size_t, Value& result) {
    return DeepCopy(vm, args[0], 0, result);
}

}  // namespace tavrel::core::script
