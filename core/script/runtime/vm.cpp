#include "core/script/runtime/vm.h"

#include <algorithm>
#include <utility>

#include "core/script/numeric/number_text.h"
#include "core/script/runtime/dictionary.h"
#include "core/script/runtime/natives.h"
#include "core/script/runtime/prepared.h"
#include "core/script/runtime/random.h"

namespace tavrel::core::script {

namespace {

// How deep records may stand in records; the language allows less.
constexpr int MaxRecordDepth = 128;

}  // namespace

Vm::Vm(const Program& givenProgram) : program(&givenProgram) {
    texts.reserve(program->texts.size());
    for (const std::string& text : program->texts) {
        texts.push_back(MakeObject(Kind::Text, static_cast<std::uint32_t>(heap.NewText(text))));
    }
    globals.reserve(program->globals.size());
    for (const GlobalInfo& global : program->globals) globals.push_back(DefaultAt(global.type, 0));
    incomplete = std::exchange(starved, false);
    frames.reserve(MaxFrames + 1);
    prepared = std::make_unique<PreparedProgram>(*program, texts);
}

// Nothing is dropped one by one: all references end with the heap, and dropping may need memory when there is none.
Vm::~Vm() = default;

void Vm::SeedRandom(std::uint64_t seed, std::uint64_t salt) {
    const RandomWords words = SeedWords(seed, salt);
    randomState = words.state;
    randomIncrement = words.increment;
}

bool Vm::Start() {
    if (started) return true;
    started = true;
    if (!program->initializer) return true;
    Value result;
    const bool good = RunFunction(program->initializer, nullptr, 0, result);
    heap.Drop(result);
    return good;
}

bool Vm::RunHook(HookKind hook, const Value* args, int count) {
    const FunctionId function = program->hooks[static_cast<std::size_t>(hook)];
    if (!function) return true;
    Value result;
    const bool good = RunFunction(function, args, count, result);
    heap.Drop(result);
    return good;
}

bool Vm::RunFunction(FunctionId function, const Value* args, int count, Value& result) {
    if (!HasFunction(function)) {
        Fail(UnknownFunctionFault);
        return false;
    }
    faulted = false;
    faultMessage.clear();
    faultFunction.clear();
    faultFile = FileId(0);
    faultOffset = 0;
    used = 0;
    if (incomplete) {
        FailMemory();
        return false;
    }
    const std::size_t remembered = stack.Size();
    const std::vector<Value> given(args, args + std::max(count, 0));  // they may stand on the stack, which moves
    if (!std::all_of(given.begin(), given.end(), [this](const Value& value) { return heap.Holds(value); })) {
        Fail("um dos valores dados a funcao nao existe nesta execucao");
        return false;
    }
    for (const Value& value : given) {
        heap.Retain(value);
        stack.Push(value);
    }
    if (Execute(function, given.size(), result)) return true;
    ClearStackTo(remembered);
    return false;
}

Value Vm::DefaultValue(TypeId type) {
    Value value = DefaultAt(type, 0);
    if (std::exchange(starved, false)) {
        heap.Drop(value);
        value = Value();
    }
    return value;
}

Value Vm::DefaultAt(TypeId type, int depth) {
    const TypeInfo& info = program->types.At(type);
    Value value;
    switch (info.kind) {
        case Kind::Int: return MakeInt(0);
        case Kind::Real: return MakeReal(0.0F);
        case Kind::Bool: return MakeBool(false);
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color: {
            const float fill = DefaultComponent(info.kind);
            return MakeVector(info.kind, fill, fill, fill, fill);
        }
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound: return MakeHandle(info.kind, 0);
        case Kind::Enum: return MakeEnum(static_cast<std::uint32_t>(info.index), 0);
        case Kind::Text:
            if (Starves(Heap::ObjectCost)) return value;
            return MakeObject(Kind::Text, static_cast<std::uint32_t>(heap.NewText({})));
        case Kind::List:
            if (Starves(Heap::ObjectCost)) return value;
            return MakeObject(Kind::List, static_cast<std::uint32_t>(heap.NewList()));
        case Kind::Dict:
            if (Starves(Heap::ObjectCost)) return value;
            return MakeObject(Kind::Dict, static_cast<std::uint32_t>(heap.NewDict()));
        case Kind::Record: FillRecord(RecordId(info.index), value, depth); return value;
        case Kind::Unknown:
        case Kind::Nothing:
        case Kind::Space: break;
    }
    return value;
}

// Whether the heap lacks the room for a default value; somebody has to turn that into a fault.
bool Vm::Starves(std::uint64_t more) {
    if (heap.Fits(more)) return false;
    starved = true;
    return true;
}

// Leaves `out` at Nothing for a record that the program lacks. At the memory limit fields stay Nothing. In a program
// that no compiler made a record may hold itself: its default passes any limit.
void Vm::FillRecord(RecordId record, Value& out, int depth) {
    if (!HasRecord(record)) return;
    const std::vector<TypeId>& types = program->At(record).fieldTypes;
    if (depth > MaxRecordDepth) starved = true;
    if (starved || Starves(Heap::ObjectCost + Heap::ItemCost * types.size())) return;
    const auto object = static_cast<std::uint32_t>(heap.NewRecord(record, types.size()));
    for (std::size_t i = 0; i < types.size() && !starved; ++i) {
        const Value value = DefaultAt(types[i], depth + 1);
        heap.objects[object].items[i] = value;
    }
    out = MakeObject(Kind::Record, object);
}

bool Vm::NewRecordValue(RecordId record, Value& out) {
    if (!HasRecord(record)) {
        Fail("registro desconhecido");
        return false;
    }
    FillRecord(record, out, 0);
    if (!std::exchange(starved, false)) return true;
    heap.Drop(out);
    out = Value();
    FailMemory();
    return false;
}

Value Vm::NewRecord(RecordId record, const Value* fields, int count) {
    Value value;
    if (!NewRecordValue(record, value)) return value;
    for (std::size_t i = 0; i < static_cast<std::size_t>(std::max(count, 0)) && i < heap.At(value).items.size(); ++i) {
        heap.Retain(fields[i]);
        const Value old = std::exchange(heap.At(value).items[i], fields[i]);
        heap.Drop(old);
    }
    return value;
}

Value Vm::NewList(const Value* items, int count) {
    const auto size = static_cast<std::size_t>(std::max(count, 0));
    if (!Grow(Heap::ObjectCost + Heap::ItemCost * size)) return {};
    const auto object = static_cast<std::uint32_t>(heap.NewList());
    HeapObject& list = heap.objects[object];
    list.items.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
        heap.Retain(items[i]);
        heap.Append(list, items[i]);
    }
    return MakeObject(Kind::List, object);
}

std::string Vm::EnumText(const Value& value) const {
    if (value.EnumIndex() < program->enums.size()) {
        const std::vector<std::string>& members = program->enums[value.EnumIndex()].members;
        if (value.Member() < members.size()) return members[value.Member()];
    }
    return IntegerToText(value.Member());
}

std::size_t Vm::ClearStackTo(std::size_t size) {
    while (stack.Size() > size) {
        Value& top = stack.Data()[stack.Size() - 1];
        heap.Drop(top);
        top.kind = Kind::Nothing;
        stack.SetSize(stack.Size() - 1);
    }
    return stack.Size();
}

void Vm::Fail(std::string message) {
    if (faulted) return;
    if (!frames.empty()) {
        const Frame& frame = frames.back();
        return FaultAt(frame.function, frame.pc > 0 ? frame.pc - 1 : 0, std::move(message));
    }
    faulted = true;
    faultMessage = std::move(message);
}

void Vm::FaultAt(FunctionId function, std::uint64_t pc, std::string message) {
    if (faulted) return;
    faulted = true;
    faultMessage = std::move(message);
    if (!HasFunction(function)) return;
    const Function& where = program->At(function);
    faultFunction = where.name;
    faultFile = where.file;
    if (pc < where.spans.size()) faultOffset = where.spans[static_cast<std::size_t>(pc)];
}

void Vm::FailMemory() {
    Fail(MemoryFault);
}

std::string Vm::DescribeFault() const {
    if (!faulted) return {};
    std::string file = "script";
    std::int64_t line = 1;
    if (faultFile && faultFile.Number() < program->sources.size()) {
        const SourceFile& source = program->At(faultFile);
        file = source.name;
        line = source.At(faultOffset).line;
    }
    return file + ":" + IntegerToText(line) + ": erro: " + faultMessage;
}

bool Vm::CallNativeAt(Native native, std::size_t count) {
    Value* args = stack.Data() + (stack.Size() - count);
    const NativeShape& shape = ShapeOf(native);
    Value result;
    bool good = static_cast<int>(native) > static_cast<int>(Native::Count);
    if (shape.function != nullptr) {
        const bool first = shape.kinds[0] == Kind::Unknown || args[0].kind == shape.kinds[0];
        const bool second = shape.kinds[1] == Kind::Unknown || args[1].kind == shape.kinds[1];
        good = first && second && shape.function(*this, args, count, result);
    }
    for (std::size_t i = 0; i < count; ++i) {
        heap.Drop(args[i]);
        args[i].kind = Kind::Nothing;
    }
    stack.SetSize(stack.Size() - count);
    if (!good) {
        heap.Drop(result);
        return false;
    }
    if (shape.result != Kind::Nothing) stack.Push(result);
    return true;
}

}  // namespace tavrel::core::script
