#include "core/script/runtime/deep_copy.h"

#include <cstddef>
#include <cstdint>

#include "core/script/runtime/dictionary.h"
#include "core/script/runtime/vm.h"

namespace tavrel::core::script {

namespace {

constexpr int DepthLimit = 65;

bool CopyText(Vm& vm, const Value& value, Value& out) {
    const std::size_t size = vm.heap.At(value).text.size();
    if (!vm.Grow(Heap::ObjectCost + size)) return false;
    const std::int32_t copy = vm.heap.NewText(vm.heap.At(value).text);
    out = MakeObject(Kind::Text, static_cast<std::uint32_t>(copy));
    return true;
}

// What is not on the heap needs no look at more than the depth.
bool CopyPart(Vm& vm, const Value& value, int depth, Value& out) {
    if (OnHeap(value.kind) || depth == DepthLimit) return DeepCopy(vm, value, depth, out);
    out = value;
    return true;
}

// A container of the same kind and size whose items and keys are Nothing.
std::uint32_t NewLike(Heap& heap, std::uint32_t source) {
    const Kind kind = heap.objects[source].kind;
    const auto copy = static_cast<std::uint32_t>(heap.Take(kind));
    HeapObject& object = heap.objects[copy];
    const HeapObject& like = heap.objects[source];
    object.record = like.record;
    object.items.resize(like.items.size());
    object.keys.resize(like.keys.size());
    heap.bytes += Heap::ItemCost * (std::uint64_t{object.items.size()} + object.keys.size());
    return copy;
}

bool CopyParts(Vm& vm, std::uint32_t source, std::uint32_t copy, int depth) {
    const HeapObject& from = vm.heap.objects[source];
    HeapObject& to = vm.heap.objects[copy];
    const std::size_t count = from.items.size();
    const bool hasKeys = !from.keys.empty();
    const Value* keys = from.keys.data();  // these stay where they are while new objects move `from` and `to`
    const Value* items = from.items.data();
    Value* newKeys = to.keys.data();
    Value* newItems = to.items.data();
    for (std::size_t i = 0; i < count; ++i) {
        if (hasKeys && !CopyPart(vm, keys[i], depth, newKeys[i])) return false;
        if (!CopyPart(vm, items[i], depth, newItems[i])) return false;
    }
    return true;
}

bool CopyContainer(Vm& vm, const Value& value, int depth, Value& out) {
    const std::uint32_t source = value.ObjectIndex();
    if (value.kind == Kind::Dict) Settle(vm.heap, source);
    const HeapObject& object = vm.heap.objects[source];
    const std::uint64_t parts = std::uint64_t{object.items.size()} + object.keys.size();
    if (!vm.Grow(Heap::ObjectCost + Heap::ItemCost * parts)) return false;
    const std::uint32_t copy = NewLike(vm.heap, source);
    const Value whole = MakeObject(value.kind, copy);
    if (!CopyParts(vm, source, copy, depth + 1)) {
        vm.heap.Drop(whole);
        return false;
    }
    out = whole;
    return true;
}

}  // namespace

bool DeepCopy(Vm& vm, const Value& value, int depth, Value& out) {
    if (depth == DepthLimit) {
        vm.Fail("esta estrutura e funda demais para copiar; talvez ela contenha a si mesma");
        return false;
    }
    switch (value.kind) {
        case Kind::Text: return CopyText(vm, value, out);
        case Kind::List:
        case Kind::Dict:
        case Kind::Record: return CopyContainer(vm, value, depth, out);
        case Kind::Unknown:
        case Kind::Nothing:
        case Kind::Int:
        case Kind::Real:
        case Kind::Bool:
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color:
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound:
        case Kind::Enum:
        case Kind::Space: break;
    }
    out = value;
    return true;
}

}  // namespace tavrel::core::script
