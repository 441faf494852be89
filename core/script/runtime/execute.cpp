// The interpreter's loop. Registers of the machine: `ip` the next operation, `base` the frame, `u` the difference
// between instructions executed and place in the program's code (prepared.h).
#include <algorithm>
#include <cstring>
#include <limits>

#include "core/script/runtime/dictionary.h"
#include "core/script/runtime/interpreter.h"
#include "core/script/runtime/native_math.h"
#include "core/script/runtime/natives.h"

namespace tavrel::core::script {

namespace {

// Copies word by word. Operations write a kind and a word; a copy by wider registers would have to wait until such
// narrow writes have left the processor's store buffer.
inline void Put(Value& to, const Value& from) {
    std::uint64_t low;
    std::uint64_t high;
    std::memcpy(&low, &from.components[0], sizeof low);
    std::memcpy(&high, &from.components[2], sizeof high);
    to.kind = from.kind;
    std::memcpy(&to.components[0], &low, sizeof low);
    std::memcpy(&to.components[2], &high, sizeof high);
}

// The slot owned a value that is done with.
inline void DropAway(Heap& heap, Value& slot) {
    if (!OnHeap(slot.kind)) return;
    const std::uint32_t object = slot.ObjectIndex();
    slot.kind = Kind::Nothing;
    heap.DropObject(object);
}

// Puts a value that is owned where another may be owned.
inline void Replace(Heap& heap, Value& slot, const Value& value) {
    const bool owned = OnHeap(slot.kind);
    const std::uint32_t old = slot.ObjectIndex();
    Put(slot, value);
    if (owned) heap.DropObject(old);
}

inline void RetainAt(Heap& heap, const Value& value) {
    if (OnHeap(value.kind)) ++heap.objects[value.ObjectIndex()].refs;
}

// Puts a value where another may be owned: takes it out of its slot, or retains it.
inline void StoreItem(Heap& heap, Value& item, Value& source, bool take) {
    const bool owned = OnHeap(item.kind);
    const std::uint32_t old = item.ObjectIndex();
    Put(item, source);
    if (take) {
        source.kind = Kind::Nothing;
    } else {
        RetainAt(heap, item);
    }
    if (owned) heap.DropObject(old);
}

// A result of four lanes, so that one instruction can serve all kinds of vectors.
template <typename Combine>
inline void OnLanes(Value& to, const Value& a, Combine combine) {
    float lanes[4];
    for (int i = 0; i < 4; ++i) lanes[i] = combine(i);
    to.kind = ComponentCount(a.kind) == 0 ? Kind::Vec3 : a.kind;
    std::memcpy(to.components, lanes, sizeof lanes);
}

inline std::int32_t ShortDelta(const FastInstruction& instruction) {
    return static_cast<std::int16_t>(instruction.flags);
}

}  // namespace

// A function that took the loop's registers by reference would keep them in memory.
#define INLINED __attribute__((always_inline))

// One case an operation; a macro stands for what many of them share.
#define SLOT(offset) (*reinterpret_cast<Value*>(base + (offset)))
#define GLOBAL(offset) (*reinterpret_cast<Value*>(globals + (offset)))
#define PICK(shift, offset) (*reinterpret_cast<Value*>(places[(i.flags >> (shift)) & 3U] + (offset)))
#define SET_INT(offset, value)          \
    {                                   \
        const std::int64_t set = value; \
        SLOT(offset).kind = Kind::Int;  \
        SLOT(offset).word = set;        \
    }
#define SET_REAL(offset, value)                                          \
    {                                                                    \
        const std::uint32_t set = std::bit_cast<std::uint32_t>(value);   \
        SLOT(offset).kind = Kind::Real;                                  \
        SLOT(offset).word = set;                                         \
    }
#define SET_BOOL(offset, value)         \
    {                                   \
        const bool set = value;         \
        SLOT(offset).kind = Kind::Bool; \
        SLOT(offset).word = set;        \
    }
#define FAULT(text)       \
    {                     \
        message = (text); \
        goto fault;       \
    }
#define CHECKED(call) \
    if (!(call)) goto misplaced
// What an owned operand leaves behind.
#define DROP_TAKEN(flag, value) \
    if (i.flags & (flag)) DropAway(heap, value)
#define STORE(offset, value)                              \
    if (i.flags & DropOld) {                              \
        Replace(heap, SLOT(offset), value);               \
    } else {                                              \
        Put(SLOT(offset), value);                         \
    }
#define JUMP_IF(condition)              \
    if (condition) {                    \
        u += ShortDelta(i);             \
        ip = before + i.a;              \
    }                                   \
    break
#define LOOP_IF(condition)              \
    if (u > limit) goto nearBudget;     \
    JUMP_IF(condition)
#define COMPARISONS(prefix, suffix, jump, left, right)            \
    case FastOp::prefix##Equal##suffix:                           \
        jump((left) == (right));                                  \
    case FastOp::prefix##NotEqual##suffix:                        \
        jump((left) != (right));                                  \
    case FastOp::prefix##Less##suffix:                            \
        jump((left) < (right));                                   \
    case FastOp::prefix##LessEqual##suffix:                       \
        jump(!((left) > (right)));                                \
    case FastOp::prefix##Greater##suffix:                         \
        jump((left) > (right));                                   \
    case FastOp::prefix##GreaterEqual##suffix:                    \
        jump(!((left) < (right)))
#define INT_OF(operand) static_cast<std::int64_t>(static_cast<std::int32_t>(operand))
#define REAL_OF(operand) std::bit_cast<float>(operand)

// The common forms of element access: the list is borrowed, and what is written is not on the heap.
#define LIST_GET(name, where)                                                       \
    case FastOp::name: {                                                            \
        const Value& list = where(i.b);                                             \
        if (list.kind != Kind::List) goto invalid;                                  \
        const HeapObject& object = heap.objects[list.ObjectIndex()];                \
        const std::int64_t index = SLOT(i.c).word;                                  \
        if (static_cast<std::uint64_t>(index) >= object.items.size()) {             \
            CHECKED(FailIndex(object.items.size(), index));                         \
        }                                                                           \
        const Value& item = object.items[static_cast<std::size_t>(index)];          \
        RetainAt(heap, item);                                                       \
        Put(SLOT(i.a), item);                                                       \
        break;                                                                      \
    }
#define LIST_SET(name, where)                                                       \
    case FastOp::name: {                                                            \
        const Value& list = where(i.a);                                             \
        if (list.kind != Kind::List) goto invalid;                                  \
        HeapObject& object = heap.objects[list.ObjectIndex()];                      \
        const std::int64_t index = SLOT(i.b).word;                                  \
        if (static_cast<std::uint64_t>(index) >= object.items.size()) {             \
            CHECKED(FailIndex(object.items.size(), index));                         \
        }                                                                           \
        Replace(heap, object.items[static_cast<std::size_t>(index)], PICK(PlaceOfC, i.c)); \
        break;                                                                      \
    }

// A NaN is neither less nor greater than anything here, and so both "<=" and ">=" hold for it.
bool Interpreter::Loop(const PreparedCode* code, std::uint64_t first, Value& result) {
    Heap& heap = vm.heap;
    const std::int64_t budget =
        static_cast<std::int64_t>(std::min<std::uint64_t>(vm.budget, std::numeric_limits<std::int64_t>::max() / 4));
    const std::int64_t limit = budget - vm.prepared->margin;
    const std::int64_t callLimit = limit - vm.prepared->margin;
    std::int64_t u = 0;
    const FastInstruction* ip = nullptr;
    const FastInstruction* before = nullptr;  // the operation of this code, so that the step behind it leads there
    char* base = nullptr;
    char* const globals = reinterpret_cast<char*>(vm.globals.data());
    char* places[3] = {nullptr, globals, nullptr};
    const char* message = nullptr;
    char* stack = nullptr;     // of the machine; it moves when it grows
    char* stackEnd = nullptr;
    const auto rebase = [&](std::uint64_t frame) INLINED {
        stack = reinterpret_cast<char*>(vm.stack.Data());
        stackEnd = reinterpret_cast<char*>(vm.stack.Data() + vm.stack.Room());
        base = stack + frame;
        places[0] = base;
    };
    const auto grow = [&](std::uint64_t frame, const PreparedCode& needed) INLINED {
        vm.stack.Reserve(frame / SlotBytes + needed.extent);
        rebase(frame);
    };
    const auto enter = [&]() INLINED {
        before = code->before;
        places[0] = base;
        places[2] = reinterpret_cast<char*>(const_cast<Value*>(code->pool));
    };
    const auto origin = [&]() INLINED -> const Origin& { return code->origins[static_cast<std::size_t>(ip - before - 1)]; };

    PreparedProgram::Pair* const functions = vm.prepared->functions.data();
    const std::size_t deepest = Vm::MaxFrames - vm.frames.size();
    rebase(first * SlotBytes);
    if (u > limit) code = CodeOf(*vm.prepared, code->function, true);
    if (code == nullptr) return FailInvalid();
    enter();
    ip = before + 1;

    for (;; ++ip) {
        const FastInstruction& i = *ip;
        switch (i.op) {
            case FastOp::LoadConst: {
                const Value& value = *reinterpret_cast<const Value*>(places[2] + i.c);
                RetainAt(heap, value);
                STORE(i.a, value);
                break;
            }
            case FastOp::LoadPlain:
                Put(SLOT(i.a), *reinterpret_cast<const Value*>(places[2] + i.c));
                break;
            case FastOp::Copy: {
                Value& source = PICK(PlaceOfB, i.b);
                Value value;
                Put(value, source);
                if (i.flags & TakeB) {
                    source.kind = Kind::Nothing;
                } else {
                    RetainAt(heap, value);
                }
                STORE(i.a, value);
                break;
            }
            case FastOp::CopyPlain:
                Put(SLOT(i.a), SLOT(i.b));
                break;
            case FastOp::LoadGlobal: {
                const Value& global = GLOBAL(i.b);
                RetainAt(heap, global);
                Put(SLOT(i.a), global);
                break;
            }
            case FastOp::StoreGlobal: {
                Value& source = PICK(PlaceOfB, i.b);
                if (!(i.flags & TakeB)) RetainAt(heap, source);
                Value value;
                Put(value, source);
                if (i.flags & TakeB) source.kind = Kind::Nothing;
                Replace(heap, GLOBAL(i.a), value);
                break;
            }
            case FastOp::StoreGlobalPlain:
                Replace(heap, GLOBAL(i.a), SLOT(i.b));
                break;
            case FastOp::DropSlot:
                DropAway(heap, SLOT(i.a));
                break;

            case FastOp::AddInt: {
                std::int64_t sum;
                if (__builtin_add_overflow(SLOT(i.b).word, SLOT(i.c).word, &sum)) FAULT(OverflowFault);
                SET_INT(i.a, sum);
                break;
            }
            case FastOp::AddIntImm: {
                std::int64_t sum;
                if (__builtin_add_overflow(SLOT(i.b).word, INT_OF(i.c), &sum)) FAULT(OverflowFault);
                SET_INT(i.a, sum);
                break;
            }
            case FastOp::SubInt: {
                std::int64_t difference;
                if (__builtin_sub_overflow(SLOT(i.b).word, SLOT(i.c).word, &difference)) FAULT(OverflowFault);
                SET_INT(i.a, difference);
                break;
            }
            case FastOp::MulInt: {
                std::int64_t product;
                if (__builtin_mul_overflow(SLOT(i.b).word, SLOT(i.c).word, &product)) FAULT(OverflowFault);
                SET_INT(i.a, product);
                break;
            }
            case FastOp::MulIntImm: {
                std::int64_t product;
                if (__builtin_mul_overflow(SLOT(i.b).word, INT_OF(i.c), &product)) FAULT(OverflowFault);
                SET_INT(i.a, product);
                break;
            }
            case FastOp::DivInt: {
                const std::int64_t divisor = SLOT(i.c).word;
                if (divisor == 0) FAULT(DivisionFault);
                if (divisor == -1 && SLOT(i.b).word == std::numeric_limits<std::int64_t>::min()) FAULT(OverflowFault);
                SET_INT(i.a, SLOT(i.b).word / divisor);
                break;
            }
            case FastOp::DivIntImm:
                SET_INT(i.a, Quotient(SLOT(i.b).word, code->divisors[i.c]));
                break;
            case FastOp::ModInt: {
                const std::int64_t divisor = SLOT(i.c).word;
                if (divisor == 0) FAULT("resto de divisao por zero");
                SET_INT(i.a, divisor == -1 ? 0 : SLOT(i.b).word % divisor);
                break;
            }
            case FastOp::ModIntImm:
                SET_INT(i.a, Remainder(SLOT(i.b).word, code->divisors[i.c]));
                break;
            case FastOp::NegInt:
                if (SLOT(i.b).word == std::numeric_limits<std::int64_t>::min()) FAULT(OverflowFault);
                SET_INT(i.a, -SLOT(i.b).word);
                break;

            case FastOp::AddReal:
                SET_REAL(i.a, SLOT(i.b).Real() + SLOT(i.c).Real());
                break;
            case FastOp::AddRealImm:
                SET_REAL(i.a, SLOT(i.b).Real() + REAL_OF(i.c));
                break;
            case FastOp::SubReal:
                SET_REAL(i.a, SLOT(i.b).Real() - SLOT(i.c).Real());
                break;
            case FastOp::MulReal:
                SET_REAL(i.a, SLOT(i.b).Real() * SLOT(i.c).Real());
                break;
            case FastOp::MulRealImm:
                SET_REAL(i.a, SLOT(i.b).Real() * REAL_OF(i.c));
                break;
            case FastOp::DivReal:
                if (SLOT(i.c).Real() == 0.0F) FAULT(DivisionFault);
                SET_REAL(i.a, SLOT(i.b).Real() / SLOT(i.c).Real());
                break;
            case FastOp::DivRealImm:
                SET_REAL(i.a, SLOT(i.b).Real() / REAL_OF(i.c));
                break;
            case FastOp::NegReal:
                SET_REAL(i.a, std::bit_cast<float>(static_cast<std::uint32_t>(SLOT(i.b).word) ^ 0x80000000U));
                break;

            case FastOp::AddVec: {
                const Value& a = SLOT(i.b);
                const Value& b = SLOT(i.c);
                OnLanes(SLOT(i.a), a, [&](int lane) { return a.components[lane] + b.components[lane]; });
                break;
            }
            case FastOp::SubVec: {
                const Value& a = SLOT(i.b);
                const Value& b = SLOT(i.c);
                OnLanes(SLOT(i.a), a, [&](int lane) { return a.components[lane] - b.components[lane]; });
                break;
            }
            case FastOp::NegVec: {
                const Value& a = SLOT(i.b);
                OnLanes(SLOT(i.a), a, [&](int lane) { return -a.components[lane]; });
                break;
            }
            case FastOp::ScaleVec: {
                const Value& a = SLOT(i.b);
                const float factor = SLOT(i.c).Real();
                OnLanes(SLOT(i.a), a, [&](int lane) { return a.components[lane] * factor; });
                break;
            }
            case FastOp::DivVec: {
                const Value& a = SLOT(i.b);
                const float divisor = SLOT(i.c).Real();
                if (divisor == 0.0F) FAULT(DivisionFault);
                OnLanes(SLOT(i.a), a, [&](int lane) { return a.components[lane] / divisor; });
                break;
            }
            case FastOp::VecGet:
                SET_REAL(i.a, SLOT(i.b).components[i.c]);
                break;
            case FastOp::VecSet: {
                const float component = SLOT(i.c).Real();
                const Value& vector = SLOT(i.b);
                OnLanes(SLOT(i.a), vector, [&](int lane) { return vector.components[lane]; });
                SLOT(i.a).components[i.flags] = component;
                break;
            }
            case FastOp::MakeVector: {
                const Value* parts = &SLOT(i.b);
                Value vector = MakeVector(i.c == 2 ? Kind::Vec2 : i.c == 3 ? Kind::Vec3 : Kind::Color, 0.0F, 0.0F);
                for (std::uint32_t part = 0; part < i.c; ++part) vector.components[part] = parts[part].Real();
                SLOT(i.a) = vector;
                break;
            }

            case FastOp::Not:
                SET_BOOL(i.a, SLOT(i.b).word == 0);
                break;
            case FastOp::CompareInt: {
                const std::int64_t a = SLOT(i.b).word;
                const std::int64_t b = SLOT(i.c).word;
                SET_BOOL(i.a, ((i.flags >> (1 + (a > b) - (a < b))) & 1) != 0);
                break;
            }
            case FastOp::CompareReal: {
                const float a = SLOT(i.b).Real();
                const float b = SLOT(i.c).Real();
                SET_BOOL(i.a, ((i.flags >> (1 + (a > b) - (a < b))) & 1) != 0);
                break;
            }
            case FastOp::SameReal:
                SET_BOOL(i.a, (SLOT(i.b).Real() == SLOT(i.c).Real()) == (i.flags == 0));
                break;
            case FastOp::CompareAny: {
                Value& a = PICK(PlaceOfB, i.b);
                Value& b = PICK(PlaceOfC, i.c);
                const bool truth = Compare(a, b, i.flags >> ComparisonShift);
                DROP_TAKEN(TakeB, a);
                DROP_TAKEN(TakeC, b);
                SET_BOOL(i.a, truth);
                break;
            }

            case FastOp::FieldGet: {
                Value& record = PICK(PlaceOfB, i.b);
                if (record.kind != Kind::Record) goto invalid;
                const HeapObject& object = heap.objects[record.ObjectIndex()];
                if (i.c >= object.items.size()) goto invalid;
                Value value;
                Put(value, object.items[i.c]);
                RetainAt(heap, value);
                DROP_TAKEN(TakeB, record);
                STORE(i.a, value);
                break;
            }
            case FastOp::FieldGetLocal: {
                const Value& record = SLOT(i.b);
                if (record.kind != Kind::Record) goto invalid;
                const HeapObject& object = heap.objects[record.ObjectIndex()];
                if (i.c >= object.items.size()) goto invalid;
                const Value& item = object.items[i.c];
                RetainAt(heap, item);
                Put(SLOT(i.a), item);
                break;
            }
            case FastOp::FieldSet: {
                Value& record = PICK(PlaceOfA, i.a);
                if (record.kind != Kind::Record) goto invalid;
                HeapObject& object = heap.objects[record.ObjectIndex()];
                if (i.b >= object.items.size()) goto invalid;
                StoreItem(heap, object.items[i.b], PICK(PlaceOfC, i.c), (i.flags & TakeC) != 0);
                DROP_TAKEN(TakeA, record);
                break;
            }
            case FastOp::FieldSetPlain: {
                const Value& record = SLOT(i.a);
                if (record.kind != Kind::Record) goto invalid;
                HeapObject& object = heap.objects[record.ObjectIndex()];
                if (i.b >= object.items.size()) goto invalid;
                Replace(heap, object.items[i.b], PICK(PlaceOfC, i.c));
                break;
            }
            case FastOp::ListGet: {
                Value& list = PICK(PlaceOfB, i.b);
                if (list.kind != Kind::List) goto invalid;
                const HeapObject& object = heap.objects[list.ObjectIndex()];
                const std::int64_t index = SLOT(i.c).word;
                if (static_cast<std::uint64_t>(index) >= object.items.size()) {
                    CHECKED(FailIndex(object.items.size(), index));
                }
                Value value;
                Put(value, object.items[static_cast<std::size_t>(index)]);
                RetainAt(heap, value);
                DROP_TAKEN(TakeB, list);
                STORE(i.a, value);
                break;
            }
            case FastOp::ListSet: {
                Value& list = PICK(PlaceOfA, i.a);
                if (list.kind != Kind::List) goto invalid;
                HeapObject& object = heap.objects[list.ObjectIndex()];
                const std::int64_t index = SLOT(i.b).word;
                if (static_cast<std::uint64_t>(index) >= object.items.size()) {
                    CHECKED(FailIndex(object.items.size(), index));
                }
                Value& source = PICK(PlaceOfC, i.c);
                StoreItem(heap, object.items[static_cast<std::size_t>(index)], source, (i.flags & TakeC) != 0);
                DROP_TAKEN(TakeA, list);
                break;
            }
            LIST_GET(ListGetLocal, SLOT)
            LIST_GET(ListGetGlobal, GLOBAL)
            LIST_SET(ListSetLocal, SLOT)
            LIST_SET(ListSetGlobal, GLOBAL)
            case FastOp::DictGet: {
                Value& dict = PICK(PlaceOfB, i.b);
                Value& key = PICK(PlaceOfC, i.c);
                Value value;
                CHECKED(DictGet(dict, key, value));
                DROP_TAKEN(TakeB, dict);
                DROP_TAKEN(TakeC, key);
                STORE(i.a, value);
                break;
            }
            case FastOp::DictSet:
                CHECKED(DictSet(&SLOT(i.a)));
                break;
            case FastOp::DictObtain: {
                Value value;
                CHECKED(DictObtain(&SLOT(i.b), value));
                STORE(i.a, value);
                break;
            }
            case FastOp::MakeList: {
                Value value;
                CHECKED(MakeList(&SLOT(i.b), i.c, value));
                STORE(i.a, value);
                break;
            }
            case FastOp::MakeDict: {
                Value value;
                CHECKED(MakeDict(&SLOT(i.b), i.c, value));
                STORE(i.a, value);
                break;
            }
            case FastOp::MakeRecord: {
                Value value;
                CHECKED(MakeRecord(&SLOT(i.b), i.c, value));
                STORE(i.a, value);
                break;
            }
            case FastOp::NewRecord: {
                Value value;
                CHECKED(vm.NewRecordValue(static_cast<std::int32_t>(i.c), value));
                STORE(i.a, value);
                break;
            }
            case FastOp::NewList:
            case FastOp::NewDict: {
                Value value;
                CHECKED(NewEmpty(i.op == FastOp::NewList ? Kind::List : Kind::Dict, value));
                STORE(i.a, value);
                break;
            }
            case FastOp::ConcatText: {
                Value& left = PICK(PlaceOfB, i.b);
                Value& right = PICK(PlaceOfC, i.c);
                Value value;
                CHECKED(Concat(left, right, (i.flags & TakeB) != 0, value));
                DROP_TAKEN(TakeB, left);
                DROP_TAKEN(TakeC, right);
                STORE(i.a, value);
                break;
            }

            case FastOp::Call: {
                if (depth >= deepest) FAULT(TooDeepFault);
                const PreparedCode* callee = functions[i.c].fast.get();
                if (callee == nullptr || u > callLimit) {
                    const bool spent = u + static_cast<std::int32_t>(i.b) > limit;
                    callee = CodeOf(*vm.prepared, static_cast<std::int32_t>(i.c), spent);
                    if (callee == nullptr) goto invalid;
                }
                u += static_cast<std::int32_t>(i.b);
                callers[depth++] = {ip, code, static_cast<std::uint64_t>(base - stack),
                                    i.b - static_cast<std::uint32_t>(ShortDelta(i))};
                base += i.a;
                if (callee->extentBytes > static_cast<std::uint64_t>(stackEnd - base)) {
                    grow(static_cast<std::uint64_t>(base - stack), *callee);
                }
                code = callee;
                enter();
                ip = before;
                if (code->clearLocals) ClearLocals(*code, &SLOT(0));
                break;
            }
            case FastOp::Return:
            case FastOp::ReturnValue: {
                Value value;
                if (i.op == FastOp::ReturnValue) {
                    Value& source = PICK(PlaceOfB, i.b);
                    Put(value, source);
                    if (i.flags & TakeB) {
                        source.kind = Kind::Nothing;
                    } else {
                        RetainAt(heap, value);
                    }
                }
                if (i.flags & CleanAll) {
                    for (std::uint32_t local = 0; local < code->locals; ++local) DropAway(heap, (&SLOT(0))[local]);
                } else {
                    for (std::uint32_t local = i.c & 0xFFFF; local < i.c >> 16U; ++local) {
                        DropAway(heap, (&SLOT(0))[local]);
                    }
                }
                const std::int64_t used = u + static_cast<std::int32_t>(i.a);
                if (depth == 0) {
                    vm.used = static_cast<std::uint64_t>(used);
                    vm.stack.SetSize(first);
                    result = value;
                    return true;
                }
                if (i.op == FastOp::ReturnValue) Put(SLOT(0), value);
                const Caller& caller = callers[--depth];
                u = used - static_cast<std::int64_t>(caller.pc);
                ip = caller.next;
                code = caller.code;
                base = stack + caller.base;
                if (u > limit && code->entries.empty()) {
                    code = CodeOf(*vm.prepared, code->function, true);
                    ip = code->before + code->entries[caller.pc];
                }
                enter();
                break;
            }
            case FastOp::CallNative: {
                const auto frame = static_cast<std::uint64_t>(base - stack);
                vm.stack.SetSize((frame + i.a) / SlotBytes + i.b);
                CHECKED(CallNative(static_cast<Native>(i.c), i.b));
                rebase(frame);
                break;
            }
            case FastOp::CallHost: {
                if (i.b == MissingArguments) FAULT("faltam argumentos para a funcao do mundo");
                const auto frame = static_cast<std::uint64_t>(base - stack);
                ShowFrames(*code, frame, std::uint64_t{origin().pc} + 1);
                vm.used = static_cast<std::uint64_t>(u + origin().delta + origin().pc + 1);
                const bool good = CallHost((frame + i.a) / SlotBytes, i.b, i.c);
                vm.frames.resize(entry + 1);
                if (!good) goto failed;
                grow(frame, *code);
                break;
            }
            case FastOp::NativeUnary: {
                Value value;
                CHECKED(CallUnary(static_cast<Native>(i.c), &SLOT(i.b), value));
                Put(SLOT(i.a), value);
                break;
            }
            case FastOp::ListSize: {
                const Value& list = PICK(PlaceOfB, i.b);
                if (list.kind != Kind::List) goto invalid;
                SET_INT(i.a, static_cast<std::int64_t>(heap.objects[list.ObjectIndex()].items.size()));
                break;
            }
            case FastOp::ListAppend: {
                Value& list = PICK(PlaceOfB, i.b);
                Value& item = PICK(PlaceOfC, i.c);
                CHECKED(Append(list, item));
                if (i.flags & TakeC) {
                    item.kind = Kind::Nothing;
                } else {
                    heap.Retain(item);
                }
                DROP_TAKEN(TakeB, list);
                break;
            }
            case FastOp::ToReal:
                SET_REAL(i.a, static_cast<float>(SLOT(i.b).word));
                break;
            case FastOp::Sqrt: {
                const float square = SLOT(i.b).Real();
                if (square < 0.0F) {
                    Value value;
                    CHECKED(CallUnary(Native::Sqrt, &SLOT(i.b), value));
                }
                SET_REAL(i.a, ExactSqrt(square));
                break;
            }
            case FastOp::Length: {
                const float length = LengthOf(SLOT(i.b), static_cast<int>(i.c));
                if (!IsFinite(length)) {
                    Value value;
                    CHECKED(CallUnary(i.c == 2 ? Native::LengthVec2 : Native::LengthVec3, &SLOT(i.b), value));
                }
                SET_REAL(i.a, length);
                break;
            }
            case FastOp::Normalize:
                SLOT(i.a) = NormalizeVector(SLOT(i.b), static_cast<int>(i.c));
                break;

            case FastOp::Raise:
                CHECKED(FailText(vm.program->texts[i.c]));
                break;
            case FastOp::ForEachGuard: {
                const Value& list = SLOT(i.a);
                if (list.kind != Kind::List && list.kind != Kind::Dict) goto invalid;
                if (heap.objects[list.ObjectIndex()].version != static_cast<std::uint32_t>(SLOT(i.b).word)) {
                    FAULT("a lista mudou enquanto \"para cada\" a percorria");
                }
                break;
            }
            case FastOp::Step:
                if (u + i.c >= budget) FAULT("o tick gastou o orcamento de instrucoes; ha um laco que nao termina");
                break;
            case FastOp::Jump:
                u += static_cast<std::int32_t>(i.c);
                ip = before + i.a;
                break;
            case FastOp::JumpBack:
                u += static_cast<std::int32_t>(i.c);
                if (u > limit) goto nearBudget;
                ip = before + i.a;
                break;
            case FastOp::JumpTrue:
                JUMP_IF(SLOT(i.b).word != 0);
            case FastOp::JumpFalse:
                JUMP_IF(SLOT(i.b).word == 0);
            case FastOp::LoopTrue:
                LOOP_IF(SLOT(i.b).word != 0);
            case FastOp::LoopFalse:
                LOOP_IF(SLOT(i.b).word == 0);
                COMPARISONS(Jump, Int, JUMP_IF, SLOT(i.b).word, SLOT(i.c).word);
                COMPARISONS(Jump, IntImm, JUMP_IF, SLOT(i.b).word, INT_OF(i.c));
                COMPARISONS(Jump, Real, JUMP_IF, SLOT(i.b).Real(), SLOT(i.c).Real());
                COMPARISONS(Jump, RealImm, JUMP_IF, SLOT(i.b).Real(), REAL_OF(i.c));
                COMPARISONS(Loop, Int, LOOP_IF, SLOT(i.b).word, SLOT(i.c).word);
                COMPARISONS(Loop, IntImm, LOOP_IF, SLOT(i.b).word, INT_OF(i.c));
                COMPARISONS(Loop, Real, LOOP_IF, SLOT(i.b).Real(), SLOT(i.c).Real());
                COMPARISONS(Loop, RealImm, LOOP_IF, SLOT(i.b).Real(), REAL_OF(i.c));
            default:
                __builtin_unreachable();
        }
        continue;

    nearBudget : {
        const Origin place = origin();
        u += place.delta;
        code = CodeOf(*vm.prepared, code->function, true);
        enter();
        ip = before + code->entries[place.pc];
        continue;
    }
    }

invalid:
    message = InvalidFault;
fault:
    vm.Fail(message);
misplaced:
    Locate(code->function, origin().pc);
failed:
    vm.used = static_cast<std::uint64_t>(u + origin().delta + origin().pc + 1);
    vm.stack.SetSize(static_cast<std::uint64_t>(base - stack) / SlotBytes + code->extent);
    return false;
}

}  // namespace tavrel::core::script
