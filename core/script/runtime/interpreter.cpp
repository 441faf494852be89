#include "core/script/runtime/interpreter.h"

#include <algorithm>
#include <utility>

#include "core/script/numeric/number_text.h"
#include "core/script/runtime/compare.h"
#include "core/script/runtime/dictionary.h"
#include "core/script/runtime/natives.h"
#include "core/script/runtime/value_text.h"

namespace tavrel::core::script {

bool Vm::Execute(FunctionId function, std::uint64_t argumentCount, Value& result) {
    if (!HasFunction(function) || argumentCount > stack.Size()) {
        Fail(UnknownFunctionFault);
        return false;
    }
    return Interpreter(*this).Run(function, argumentCount, result);
}

bool Interpreter::Run(FunctionId function, std::uint64_t argumentCount, Value& result) {
    const PreparedCode* code = nullptr;
    bool good = Enter(function, argumentCount, code);
    if (good) good = Loop(code, vm.frames.back().base, result);
    vm.frames.resize(entry);
    SettleAll(vm.heap);
    return good;
}

// Sets up the frame of the outermost function over the arguments that stand on the stack.
bool Interpreter::Enter(FunctionId function, std::uint64_t argumentCount, const PreparedCode*& code) {
    const std::uint64_t base = vm.stack.Size() - argumentCount;
    vm.frames.push_back({function, base, 0});
    if (vm.frames.size() > Vm::MaxFrames) {
        vm.Fail(TooDeepFault);
        return false;
    }
    code = CodeOf(*vm.prepared, function, false);
    if (code == nullptr) return FailInvalid();
    if ((base + code->extent) * SlotBytes > MaxStackBytes) return FailText(MemoryFault);
    const std::int32_t params = vm.program->At(function).params;
    const std::uint64_t kept = std::min(argumentCount, static_cast<std::uint64_t>(params));
    vm.ClearStackTo(static_cast<std::size_t>(base + kept));
    vm.stack.Reserve(static_cast<std::size_t>(base + code->extent));
    for (std::uint64_t slot = vm.stack.Size(); slot < base + code->extent; ++slot) vm.stack.Data()[slot] = Value();
    return true;
}

bool Interpreter::FailIndex(std::size_t size, std::int64_t index) {
    vm.Fail("a lista tem " + Counted(static_cast<std::int64_t>(size), "item", "itens") + " e o indice pedido foi " +
            IntegerToText(index));
    return false;
}

bool Interpreter::FailInvalid() {
    vm.Fail(InvalidFault);
    return false;
}

bool Interpreter::FailText(const std::string& text) {
    vm.Fail(text);
    return false;
}

bool Interpreter::Compare(const Value& a, const Value& b, Comparison comparison) const {
    switch (comparison) {
        case Comparison::Equal: return SameValue(vm.heap, a, b);
        case Comparison::NotEqual: return !SameValue(vm.heap, a, b);
        case Comparison::Less: return CompareValues(vm.heap, a, b) < 0;
        case Comparison::LessEqual: return CompareValues(vm.heap, a, b) <= 0;
        case Comparison::Greater: return CompareValues(vm.heap, a, b) > 0;
        case Comparison::GreaterEqual: return CompareValues(vm.heap, a, b) >= 0;
    }
    return false;
}

// A new text of both. With `mayTake`, `left` is a reference of the caller's that is dropped anyway: when it is the last
// one its bytes move over instead of being copied, so that a text that is built up piece by piece costs what is added.
bool Interpreter::Concat(Value& left, const Value& right, bool mayTake, Value& out) {
    if (left.kind != Kind::Text || right.kind != Kind::Text) return FailInvalid();
    Heap& heap = vm.heap;
    const std::size_t size = heap.At(left).text.size();
    if (!vm.Grow(Heap::ObjectCost + size + heap.At(right).text.size())) return false;
    std::string bytes;
    const bool alone = mayTake && heap.At(left).refs == 1 && left.ObjectIndex() != right.ObjectIndex();
    if (alone) {
        bytes = std::move(heap.At(left).text);
        heap.bytes -= size;
        heap.At(left).text.clear();
    } else {
        bytes.reserve(size + heap.At(right).text.size());
        bytes = heap.At(left).text;
    }
    bytes += heap.At(right).text;
    out = MakeObject(Kind::Text, static_cast<std::uint32_t>(heap.NewText(std::move(bytes))));
    return true;
}

bool Interpreter::DictGet(const Value& dict, const Value& key, Value& out) {
    if (dict.kind != Kind::Dict) return FailInvalid();
    const std::int64_t position = FindByOrder(vm.heap, dict.ObjectIndex(), key);
    if (position < 0) {
        vm.Fail("o dicionario nao tem a chave " + ValueToText(vm.heap, key));
        return false;
    }
    out = vm.heap.At(dict).items[static_cast<std::size_t>(position)];
    vm.heap.Retain(out);
    return true;
}

// Dictionary, key and value stand side by side; all three are taken.
bool Interpreter::DictSet(Value* dict) {
    if (dict->kind != Kind::Dict) return FailInvalid();
    const std::uint32_t object = dict->ObjectIndex();
    if (!vm.heap.Fits(2 * Heap::ItemCost) && WouldInsert(vm.heap, object, dict[1])) {
        return vm.Grow(2 * Heap::ItemCost);
    }
    StoreEntry(vm.heap, object, dict[1], dict[2]);
    dict[1].kind = Kind::Nothing;
    dict[2].kind = Kind::Nothing;
    const Value taken = std::exchange(*dict, Value());
    vm.heap.Drop(taken);
    return true;
}

// Dictionary, key and the value for a missing key stand side by side; all three are dropped.
bool Interpreter::DictObtain(Value* dict, Value& out) {
    if (dict->kind != Kind::Dict) return FailInvalid();
    const std::int64_t position = FindSame(vm.heap, dict->ObjectIndex(), dict[1]);
    out = position < 0 ? dict[2] : vm.heap.At(*dict).items[static_cast<std::size_t>(position)];
    vm.heap.Retain(out);
    for (int i = 0; i < 3; ++i) vm.heap.Drop(std::exchange(dict[i], Value()));
    return true;
}

bool Interpreter::MakeList(Value* items, std::uint32_t count, Value& out) {
    if (!vm.Grow(Heap::ObjectCost + Heap::ItemCost * count)) return false;
    const auto object = static_cast<std::uint32_t>(vm.heap.NewList());
    HeapObject& list = vm.heap.objects[object];
    list.items.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) vm.heap.Append(list, std::exchange(items[i], Value()));
    out = MakeObject(Kind::List, object);
    return true;
}

bool Interpreter::MakeDict(Value* pairs, std::uint32_t count, Value& out) {
    if (!vm.Grow(Heap::ObjectCost + 2 * Heap::ItemCost * count)) return false;
    const auto object = static_cast<std::uint32_t>(vm.heap.NewDict());
    for (std::uint32_t i = 0; i < 2 * count; i += 2) {
        StoreEntry(vm.heap, object, pairs[i], pairs[i + 1]);
        pairs[i].kind = Kind::Nothing;
        pairs[i + 1].kind = Kind::Nothing;
    }
    out = MakeObject(Kind::Dict, object);
    return true;
}

bool Interpreter::MakeRecord(Value* fields, std::uint32_t record, Value& out) {
    const std::size_t count = vm.program->records[record].fieldTypes.size();
    if (!vm.Grow(Heap::ObjectCost + Heap::ItemCost * count)) return false;
    const auto object = static_cast<std::uint32_t>(vm.heap.NewRecord(RecordId(std::size_t{record}), count));
    Value* items = vm.heap.objects[object].items.data();
    for (std::size_t i = 0; i < count; ++i) items[i] = std::exchange(fields[i], Value());
    out = MakeObject(Kind::Record, object);
    return true;
}

bool Interpreter::NewEmpty(Kind kind, Value& out) {
    if (!vm.Grow(Heap::ObjectCost)) return false;
    const std::int32_t object = kind == Kind::List ? vm.heap.NewList() : vm.heap.NewDict();
    out = MakeObject(kind, static_cast<std::uint32_t>(object));
    return true;
}

// Takes over the item's reference on success.
bool Interpreter::Append(const Value& list, const Value& item) {
    if (list.kind != Kind::List) return FailInvalid();
    if (!vm.Grow(Heap::ItemCost)) return false;
    HeapObject& object = vm.heap.At(list);
    vm.heap.Append(object, item);
    ++object.version;
    return true;
}

bool Interpreter::CallNative(Native native, std::uint32_t count) {
    if (vm.CallNativeAt(native, count)) return true;
    vm.Fail("a funcao nativa falhou");
    return false;
}

// A native of one plain argument, wherever that stands.
bool Interpreter::CallUnary(Native native, Value* argument, Value& out) {
    return ShapeOf(native).function(vm, argument, 1, out);
}

// The arguments stand on the stack from `first` on; the answer takes the place of the first.
bool Interpreter::CallHost(std::uint64_t first, std::uint32_t count, std::uint32_t function) {
    vm.stack.SetSize(static_cast<std::size_t>(first + count));
    if (vm.host == nullptr) {
        vm.ClearStackTo(static_cast<std::size_t>(first));
        vm.Fail(
            "esta funcao precisa do mundo, e nao ha mundo nesta execucao (\"tavrel_script executar\" roda o script "
            "sem mapa)");
        return false;
    }
    SettleAll(vm.heap);
    HostCall call{&vm, function, vm.stack.Data() + first, count, {}};
    bool good = vm.host->Call(call);
    for (std::uint32_t i = 0; i < count; ++i) {
        vm.heap.Drop(std::exchange(vm.stack.Data()[first + i], Value()));
    }
    vm.stack.SetSize(static_cast<std::size_t>(first));
    if (!vm.heap.Holds(call.result)) {
        call.result = Value();
        good = false;
    }
    if (!good) {
        vm.heap.Drop(call.result);
        vm.Fail("a funcao do mundo falhou");
        return false;
    }
    vm.faulted = false;  // a run of the host's own may have failed; the host has dealt with it
    vm.stack.Push(call.result);
    return true;
}

// The machine's frames are written down only for those who look at them, the host.
void Interpreter::ShowFrames(const PreparedCode& code, std::uint64_t base, std::uint64_t pc) {
    vm.frames.resize(entry);
    for (std::size_t i = 0; i < depth; ++i) {
        vm.frames.push_back({callers[i].code->function, callers[i].base / SlotBytes, callers[i].pc});
    }
    vm.frames.push_back({code.function, base / SlotBytes, pc});
}

void Interpreter::ClearLocals(const PreparedCode& code, Value* locals) {
    const std::int32_t params = vm.program->At(code.function).params;
    std::fill(locals + params, locals + code.locals, Value());
}

// Puts a fault that was recorded without its place where it belongs.
void Interpreter::Locate(FunctionId function, std::uint32_t pc) {
    vm.faulted = false;
    vm.FaultAt(function, pc, std::string(std::move(vm.faultMessage)));
}

}  // namespace tavrel::core::script
