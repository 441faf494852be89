// The interpreter's loop. Registers of the machine: `ip` the next operation, `base` the frame, `u` the difference
// between instructions executed and place in the program's code (prepared.h).
#include <algorithm>
#include <cstring>
#include <limits>

#include "core/script/numeric/int_to_float.h"
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

// One case an operation; a macro stands for what many of them share. Where the compiler can jump to a label by its
// address, each operation jumps to the next by itself: processors predict many small jumps better than one large one.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wpedantic"
#define CASE(name)     \
    case FastOp::name: \
        At##name:
#define NEXT                                    \
    {                                           \
        ++ip;                                   \
        goto* labels[static_cast<int>(ip->op)]; \
    }
#else
#define CASE(name) case FastOp::name:
#define NEXT break
#endif
#define SLOT(offset) (*reinterpret_cast<Value*>(base + (offset)))
#define GLOBAL(offset) (*reinterpret_cast<Value*>(globals + (offset)))
#define PICK(shift, offset) (*reinterpret_cast<Value*>(spaces[(ip->flags >> (shift)) & 3U] + (offset)))
#define SET_INT(offset, value)          \
    {                                   \
        const std::int64_t set = value; \
        SLOT(offset).kind = Kind::Int;  \
        SLOT(offset).word = set;        \
    }
#define SET_REAL(offset, value)                                        \
    {                                                                  \
        const std::uint32_t set = std::bit_cast<std::uint32_t>(value); \
        SLOT(offset).kind = Kind::Real;                                \
        SLOT(offset).word = set;                                       \
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
    if (ip->flags & (flag)) DropAway(heap, value)
#define STORE(offset, value)                \
    if (ip->flags & DropOld) {              \
        Replace(heap, SLOT(offset), value); \
    } else {                                \
        Put(SLOT(offset), value);           \
    }
#define JUMP_IF(condition)    \
    if (condition) {          \
        u += ShortDelta(*ip); \
        ip = before + ip->a;  \
    }                         \
    NEXT
#define LOOP_IF(condition)          \
    if (u > limit) goto nearBudget; \
    JUMP_IF(condition)
#define COMPARISONS(prefix, suffix, jump, left, right) \
    CASE(prefix##Equal##suffix)                        \
    jump((left) == (right));                           \
    CASE(prefix##NotEqual##suffix)                     \
    jump((left) != (right));                           \
    CASE(prefix##Less##suffix)                         \
    jump((left) < (right));                            \
    CASE(prefix##LessEqual##suffix)                    \
    jump(!((left) > (right)));                         \
    CASE(prefix##Greater##suffix)                      \
    jump((left) > (right));                            \
    CASE(prefix##GreaterEqual##suffix)                 \
    jump(!((left) < (right)))
#define INT_OF(operand) static_cast<std::int64_t>(static_cast<std::int32_t>(operand))
#define REAL_OF(operand) std::bit_cast<float>(operand)

// The common forms of element access: the list is borrowed, and what is written is not on the heap.
#define LIST_GET(name, where)                                              \
    CASE(name) {                                                           \
        const Value& list = where(ip->b);                                  \
        if (list.kind != Kind::List) goto invalid;                         \
        const HeapObject& object = heap.objects[list.ObjectIndex()];       \
        const std::int64_t index = SLOT(ip->c).word;                       \
        if (static_cast<std::uint64_t>(index) >= object.items.size()) {    \
            CHECKED(FailIndex(object.items.size(), index));                \
        }                                                                  \
        const Value& item = object.items[static_cast<std::size_t>(index)]; \
        RetainAt(heap, item);                                              \
        Put(SLOT(ip->a), item);                                            \
        NEXT;                                                              \
    }
#define LIST_SET(name, where)                                                                \
    CASE(name) {                                                                             \
        const Value& list = where(ip->a);                                                    \
        if (list.kind != Kind::List) goto invalid;                                           \
        HeapObject& object = heap.objects[list.ObjectIndex()];                               \
        const std::int64_t index = SLOT(ip->b).word;                                         \
        if (static_cast<std::uint64_t>(index) >= object.items.size()) {                      \
            CHECKED(FailIndex(object.items.size(), index));                                  \
        }                                                                                    \
        Replace(heap, object.items[static_cast<std::size_t>(index)], PICK(SpaceOfC, ip->c)); \
        NEXT;                                                                                \
    }

// A NaN is neither less nor greater than anything here, and so both "<=" and ">=" hold for it.
// NOLINTNEXTLINE(readability-function-size): the one loop, a case of a few lines for each operation
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
    char* spaces[3] = {nullptr, globals, nullptr};
    const char* message = nullptr;
    char* stack = nullptr;  // of the machine; it moves when it grows
    char* stackEnd = nullptr;
    const auto rebase = [&](std::uint64_t frame) INLINED {
        stack = reinterpret_cast<char*>(vm.stack.Data());
        stackEnd = reinterpret_cast<char*>(vm.stack.Data() + vm.stack.Room());
        base = stack + frame;
        spaces[0] = base;
    };
    const auto grow = [&](std::uint64_t frame, const PreparedCode& needed) INLINED {
        vm.stack.Reserve(static_cast<std::size_t>(frame / SlotBytes + needed.extent));
        rebase(frame);
    };
    const auto enter = [&]() INLINED {
        before = code->before;
        spaces[0] = base;
        spaces[2] = reinterpret_cast<char*>(const_cast<Value*>(code->pool));
    };
    const auto origin = [&]() INLINED -> const Origin& {
        return code->origins[static_cast<std::size_t>(ip - before - 1)];
    };

    PreparedProgram::Pair* const functions = vm.prepared->functions.data();
    const std::size_t deepest = Vm::MaxFrames - vm.frames.size();
#if defined(__GNUC__)
    static const void* const labels[] = {
#define TAVREL_FAST(name) &&At##name,
#include "core/script/runtime/fast_op.def"
#undef TAVREL_FAST
    };
#endif
    rebase(first * SlotBytes);
    if (u > limit) code = CodeOf(*vm.prepared, code->function, true);
    enter();
    ip = before + 1;

    for (;; ++ip) {
        switch (ip->op) {
            CASE(LoadConst) {
                const Value& value = *reinterpret_cast<const Value*>(spaces[2] + ip->c);
                RetainAt(heap, value);
                STORE(ip->a, value);
                NEXT;
            }
            CASE(LoadPlain)
            Put(SLOT(ip->a), *reinterpret_cast<const Value*>(spaces[2] + ip->c));
            NEXT;
            CASE(Copy) {
                Value& source = PICK(SpaceOfB, ip->b);
                Value value;
                Put(value, source);
                if (ip->flags & TakeB) {
                    source.kind = Kind::Nothing;
                } else {
                    RetainAt(heap, value);
                }
                STORE(ip->a, value);
                NEXT;
            }
            CASE(CopyPlain)
            Put(SLOT(ip->a), SLOT(ip->b));
            NEXT;
            CASE(LoadGlobal) {
                const Value& global = GLOBAL(ip->b);
                RetainAt(heap, global);
                Put(SLOT(ip->a), global);
                NEXT;
            }
            CASE(StoreGlobal) {
                Value& source = PICK(SpaceOfB, ip->b);
                if (!(ip->flags & TakeB)) RetainAt(heap, source);
                Value value;
                Put(value, source);
                if (ip->flags & TakeB) source.kind = Kind::Nothing;
                Replace(heap, GLOBAL(ip->a), value);
                NEXT;
            }
            CASE(StoreGlobalPlain)
            Replace(heap, GLOBAL(ip->a), SLOT(ip->b));
            NEXT;
            CASE(DropSlot)
            DropAway(heap, SLOT(ip->a));
            NEXT;

            CASE(AddInt) {
                std::int64_t sum;
                if (__builtin_add_overflow(SLOT(ip->b).word, SLOT(ip->c).word, &sum)) FAULT(OverflowFault);
                SET_INT(ip->a, sum);
                NEXT;
            }
            CASE(AddIntImm) {
                std::int64_t sum;
                if (__builtin_add_overflow(SLOT(ip->b).word, INT_OF(ip->c), &sum)) FAULT(OverflowFault);
                SET_INT(ip->a, sum);
                NEXT;
            }
            CASE(SubInt) {
                std::int64_t difference;
                if (__builtin_sub_overflow(SLOT(ip->b).word, SLOT(ip->c).word, &difference)) FAULT(OverflowFault);
                SET_INT(ip->a, difference);
                NEXT;
            }
            CASE(MulInt) {
                std::int64_t product;
                if (__builtin_mul_overflow(SLOT(ip->b).word, SLOT(ip->c).word, &product)) FAULT(OverflowFault);
                SET_INT(ip->a, product);
                NEXT;
            }
            CASE(MulIntImm) {
                std::int64_t product;
                if (__builtin_mul_overflow(SLOT(ip->b).word, INT_OF(ip->c), &product)) FAULT(OverflowFault);
                SET_INT(ip->a, product);
                NEXT;
            }
            CASE(DivInt) {
                const std::int64_t divisor = SLOT(ip->c).word;
                if (divisor == 0) FAULT(DivisionFault);
                if (divisor == -1 && SLOT(ip->b).word == std::numeric_limits<std::int64_t>::min()) FAULT(OverflowFault);
                SET_INT(ip->a, SLOT(ip->b).word / divisor);
                NEXT;
            }
            CASE(DivIntImm)
            SET_INT(ip->a, Quotient(SLOT(ip->b).word, code->divisors[ip->c]));
            NEXT;
            CASE(ModInt) {
                const std::int64_t divisor = SLOT(ip->c).word;
                if (divisor == 0) FAULT("resto de divisao por zero");
                SET_INT(ip->a, divisor == -1 ? 0 : SLOT(ip->b).word % divisor);
                NEXT;
            }
            CASE(ModIntImm)
            SET_INT(ip->a, Remainder(SLOT(ip->b).word, code->divisors[ip->c]));
            NEXT;
            CASE(NegInt)
            if (SLOT(ip->b).word == std::numeric_limits<std::int64_t>::min()) FAULT(OverflowFault);
            SET_INT(ip->a, -SLOT(ip->b).word);
            NEXT;

            CASE(AddReal)
            SET_REAL(ip->a, SLOT(ip->b).Real() + SLOT(ip->c).Real());
            NEXT;
            CASE(AddRealImm)
            SET_REAL(ip->a, SLOT(ip->b).Real() + REAL_OF(ip->c));
            NEXT;
            CASE(SubReal)
            SET_REAL(ip->a, SLOT(ip->b).Real() - SLOT(ip->c).Real());
            NEXT;
            CASE(MulReal)
            SET_REAL(ip->a, SLOT(ip->b).Real() * SLOT(ip->c).Real());
            NEXT;
            CASE(MulRealImm)
            SET_REAL(ip->a, SLOT(ip->b).Real() * REAL_OF(ip->c));
            NEXT;
            CASE(DivReal)
            if (SLOT(ip->c).Real() == 0.0F) FAULT(DivisionFault);
            SET_REAL(ip->a, SLOT(ip->b).Real() / SLOT(ip->c).Real());
            NEXT;
            CASE(DivRealImm)
            SET_REAL(ip->a, SLOT(ip->b).Real() / REAL_OF(ip->c));
            NEXT;
            CASE(NegReal)
            SET_REAL(ip->a, std::bit_cast<float>(static_cast<std::uint32_t>(SLOT(ip->b).word) ^ 0x80000000U));
            NEXT;

            CASE(AddProduct) {
                const float product = SLOT(ip->b).Real() * SLOT(ip->c).Real();
                SET_REAL(ip->a, SLOT(std::size_t{ip->flags} * SlotBytes).Real() + product);
                NEXT;
            }
            CASE(SubProduct) {
                const float product = SLOT(ip->b).Real() * SLOT(ip->c).Real();
                SET_REAL(ip->a, SLOT(std::size_t{ip->flags} * SlotBytes).Real() - product);
                NEXT;
            }
            CASE(ProductSub) {
                const float product = SLOT(ip->b).Real() * SLOT(ip->c).Real();
                SET_REAL(ip->a, product - SLOT(std::size_t{ip->flags} * SlotBytes).Real());
                NEXT;
            }

            CASE(AddVec) {
                const Value& a = SLOT(ip->b);
                const Value& b = SLOT(ip->c);
                OnLanes(SLOT(ip->a), a, [&](int lane) { return a.components[lane] + b.components[lane]; });
                NEXT;
            }
            CASE(SubVec) {
                const Value& a = SLOT(ip->b);
                const Value& b = SLOT(ip->c);
                OnLanes(SLOT(ip->a), a, [&](int lane) { return a.components[lane] - b.components[lane]; });
                NEXT;
            }
            CASE(NegVec) {
                const Value& a = SLOT(ip->b);
                OnLanes(SLOT(ip->a), a, [&](int lane) { return -a.components[lane]; });
                NEXT;
            }
            CASE(ScaleVec) {
                const Value& a = SLOT(ip->b);
                const float factor = SLOT(ip->c).Real();
                OnLanes(SLOT(ip->a), a, [&](int lane) { return a.components[lane] * factor; });
                NEXT;
            }
            CASE(DivVec) {
                const Value& a = SLOT(ip->b);
                const float divisor = SLOT(ip->c).Real();
                if (divisor == 0.0F) FAULT(DivisionFault);
                OnLanes(SLOT(ip->a), a, [&](int lane) { return a.components[lane] / divisor; });
                NEXT;
            }
            CASE(VecGet)
            SET_REAL(ip->a, SLOT(ip->b).components[ip->c]);
            NEXT;
            CASE(VecSet) {
                const float component = SLOT(ip->c).Real();
                const Value& vector = SLOT(ip->b);
                OnLanes(SLOT(ip->a), vector, [&](int lane) { return vector.components[lane]; });
                SLOT(ip->a).components[ip->flags] = component;
                NEXT;
            }
            CASE(MakeVector) {
                const Value* parts = &SLOT(ip->b);
                Value vector = MakeVector(ip->c == 2 ? Kind::Vec2 : ip->c == 3 ? Kind::Vec3 : Kind::Color, 0.0F, 0.0F);
                for (std::uint32_t part = 0; part < ip->c; ++part) vector.components[part] = parts[part].Real();
                SLOT(ip->a) = vector;
                NEXT;
            }

            CASE(Not)
            SET_BOOL(ip->a, SLOT(ip->b).word == 0);
            NEXT;
            CASE(CompareInt) {
                const std::int64_t a = SLOT(ip->b).word;
                const std::int64_t b = SLOT(ip->c).word;
                SET_BOOL(ip->a, ((ip->flags >> (1 + (a > b) - (a < b))) & 1) != 0);
                NEXT;
            }
            CASE(CompareReal) {
                const float a = SLOT(ip->b).Real();
                const float b = SLOT(ip->c).Real();
                SET_BOOL(ip->a, ((ip->flags >> (1 + (a > b) - (a < b))) & 1) != 0);
                NEXT;
            }
            CASE(SameReal)
            SET_BOOL(ip->a, (SLOT(ip->b).Real() == SLOT(ip->c).Real()) == (ip->flags == 0));
            NEXT;
            CASE(CompareAny) {
                Value& a = PICK(SpaceOfB, ip->b);
                Value& b = PICK(SpaceOfC, ip->c);
                const bool truth = Compare(a, b, static_cast<Comparison>(ip->flags >> ComparisonShift));
                DROP_TAKEN(TakeB, a);
                DROP_TAKEN(TakeC, b);
                SET_BOOL(ip->a, truth);
                NEXT;
            }

            CASE(FieldGet) {
                Value& record = PICK(SpaceOfB, ip->b);
                if (record.kind != Kind::Record) goto invalid;
                const HeapObject& object = heap.objects[record.ObjectIndex()];
                if (ip->c >= object.items.size()) goto invalid;
                Value value;
                Put(value, object.items[ip->c]);
                RetainAt(heap, value);
                DROP_TAKEN(TakeB, record);
                STORE(ip->a, value);
                NEXT;
            }
            CASE(FieldGetLocal) {
                const Value& record = SLOT(ip->b);
                if (record.kind != Kind::Record) goto invalid;
                const HeapObject& object = heap.objects[record.ObjectIndex()];
                if (ip->c >= object.items.size()) goto invalid;
                const Value& item = object.items[ip->c];
                RetainAt(heap, item);
                Put(SLOT(ip->a), item);
                NEXT;
            }
            CASE(FieldSet) {
                Value& record = PICK(SpaceOfA, ip->a);
                if (record.kind != Kind::Record) goto invalid;
                HeapObject& object = heap.objects[record.ObjectIndex()];
                if (ip->b >= object.items.size()) goto invalid;
                StoreItem(heap, object.items[ip->b], PICK(SpaceOfC, ip->c), (ip->flags & TakeC) != 0);
                DROP_TAKEN(TakeA, record);
                NEXT;
            }
            CASE(FieldSetPlain) {
                const Value& record = SLOT(ip->a);
                if (record.kind != Kind::Record) goto invalid;
                HeapObject& object = heap.objects[record.ObjectIndex()];
                if (ip->b >= object.items.size()) goto invalid;
                Replace(heap, object.items[ip->b], PICK(SpaceOfC, ip->c));
                NEXT;
            }
            CASE(ListGet) {
                Value& list = PICK(SpaceOfB, ip->b);
                if (list.kind != Kind::List) goto invalid;
                const HeapObject& object = heap.objects[list.ObjectIndex()];
                const std::int64_t index = SLOT(ip->c).word;
                if (static_cast<std::uint64_t>(index) >= object.items.size()) {
                    CHECKED(FailIndex(object.items.size(), index));
                }
                Value value;
                Put(value, object.items[static_cast<std::size_t>(index)]);
                RetainAt(heap, value);
                DROP_TAKEN(TakeB, list);
                STORE(ip->a, value);
                NEXT;
            }
            CASE(ListSet) {
                Value& list = PICK(SpaceOfA, ip->a);
                if (list.kind != Kind::List) goto invalid;
                HeapObject& object = heap.objects[list.ObjectIndex()];
                const std::int64_t index = SLOT(ip->b).word;
                if (static_cast<std::uint64_t>(index) >= object.items.size()) {
                    CHECKED(FailIndex(object.items.size(), index));
                }
                Value& source = PICK(SpaceOfC, ip->c);
                StoreItem(heap, object.items[static_cast<std::size_t>(index)], source, (ip->flags & TakeC) != 0);
                DROP_TAKEN(TakeA, list);
                NEXT;
            }
            LIST_GET(ListGetLocal, SLOT)
            LIST_GET(ListGetGlobal, GLOBAL)
            LIST_SET(ListSetLocal, SLOT)
            LIST_SET(ListSetGlobal, GLOBAL)
            CASE(DictGet) {
                Value& dict = PICK(SpaceOfB, ip->b);
                Value& key = PICK(SpaceOfC, ip->c);
                Value value;
                CHECKED(DictGet(dict, key, value));
                DROP_TAKEN(TakeB, dict);
                DROP_TAKEN(TakeC, key);
                STORE(ip->a, value);
                NEXT;
            }
            CASE(DictSet)
            CHECKED(DictSet(&SLOT(ip->a)));
            NEXT;
            CASE(DictObtain) {
                Value value;
                CHECKED(DictObtain(&SLOT(ip->b), value));
                STORE(ip->a, value);
                NEXT;
            }
            CASE(MakeList) {
                Value value;
                CHECKED(MakeList(&SLOT(ip->b), ip->c, value));
                STORE(ip->a, value);
                NEXT;
            }
            CASE(MakeDict) {
                Value value;
                CHECKED(MakeDict(&SLOT(ip->b), ip->c, value));
                STORE(ip->a, value);
                NEXT;
            }
            CASE(MakeRecord) {
                Value value;
                CHECKED(MakeRecord(&SLOT(ip->b), ip->c, value));
                STORE(ip->a, value);
                NEXT;
            }
            CASE(NewRecord) {
                Value value;
                CHECKED(vm.NewRecordValue(RecordId(std::size_t{ip->c}), value));
                STORE(ip->a, value);
                NEXT;
            }
            CASE(NewList)
            CASE(NewDict) {
                Value value;
                CHECKED(NewEmpty(ip->op == FastOp::NewList ? Kind::List : Kind::Dict, value));
                STORE(ip->a, value);
                NEXT;
            }
            CASE(ConcatText) {
                Value& left = PICK(SpaceOfB, ip->b);
                Value& right = PICK(SpaceOfC, ip->c);
                Value value;
                CHECKED(Concat(left, right, (ip->flags & TakeB) != 0, value));
                DROP_TAKEN(TakeB, left);
                DROP_TAKEN(TakeC, right);
                STORE(ip->a, value);
                NEXT;
            }

            CASE(Call) {
                if (depth >= deepest) FAULT(TooDeepFault);
                const PreparedCode* callee = functions[ip->c].fast.get();
                if (callee == nullptr || u > callLimit) {
                    const bool spent = u + static_cast<std::int32_t>(ip->b) > limit;
                    callee = CodeOf(*vm.prepared, FunctionId(std::size_t{ip->c}), spent);
                    if (callee == nullptr) goto invalid;
                }
                u += static_cast<std::int32_t>(ip->b);
                callers[depth++] = {ip, code, static_cast<std::uint64_t>(base - stack),
                                    ip->b - static_cast<std::uint32_t>(ShortDelta(*ip))};
                base += ip->a;
                if (callee->extentBytes > static_cast<std::uint64_t>(stackEnd - base)) {
                    if (static_cast<std::uint64_t>(base - stack) + callee->extentBytes > MaxStackBytes) {
                        base -= ip->a;
                        u -= static_cast<std::int32_t>(ip->b);
                        FAULT(MemoryFault);
                    }
                    grow(static_cast<std::uint64_t>(base - stack), *callee);
                }
                code = callee;
                enter();
                ip = before;
                if (code->clearLocals) ClearLocals(*code, &SLOT(0));
                NEXT;
            }
            CASE(Return)
            CASE(ReturnValue) {
                Value value;
                if (ip->op == FastOp::ReturnValue) {
                    Value& source = PICK(SpaceOfB, ip->b);
                    Put(value, source);
                    if (ip->flags & TakeB) {
                        source.kind = Kind::Nothing;
                    } else {
                        RetainAt(heap, value);
                    }
                }
                if (ip->flags & CleanAll) {
                    for (std::uint32_t slot = 0; slot < code->extent; ++slot) DropAway(heap, (&SLOT(0))[slot]);
                } else {
                    for (std::uint32_t local = ip->c & 0xFFFF; local < ip->c >> 16U; ++local) {
                        DropAway(heap, (&SLOT(0))[local]);
                    }
                }
                const std::int64_t used = u + static_cast<std::int32_t>(ip->a);
                if (depth == 0) {
                    vm.used = static_cast<std::uint64_t>(used);
                    vm.stack.SetSize(static_cast<std::size_t>(first));
                    result = value;
                    return true;
                }
                if (ip->op == FastOp::ReturnValue) Put(SLOT(0), value);
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
                NEXT;
            }
            CASE(CallNative) {
                const auto frame = static_cast<std::uint64_t>(base - stack);
                vm.stack.SetSize(static_cast<std::size_t>((frame + ip->a) / SlotBytes + ip->b));
                CHECKED(CallNative(static_cast<Native>(ip->c), ip->b));
                rebase(frame);
                NEXT;
            }
            CASE(CallHost) {
                if (ip->b == MissingArguments) FAULT("faltam argumentos para a funcao do mundo");
                const auto frame = static_cast<std::uint64_t>(base - stack);
                ShowFrames(*code, frame, std::uint64_t{origin().pc} + 1);
                vm.used = static_cast<std::uint64_t>(u + origin().delta + origin().pc + 1);
                const bool good = CallHost((frame + ip->a) / SlotBytes, ip->b, ip->c);
                vm.frames.resize(entry + 1);
                if (!good) goto failed;
                grow(frame, *code);
                NEXT;
            }
            CASE(NativeUnary) {
                Value value;
                CHECKED(CallUnary(static_cast<Native>(ip->c), &SLOT(ip->b), value));
                Put(SLOT(ip->a), value);
                NEXT;
            }
            CASE(ListSize) {
                const Value& list = PICK(SpaceOfB, ip->b);
                if (list.kind != Kind::List) goto invalid;
                SET_INT(ip->a, static_cast<std::int64_t>(heap.objects[list.ObjectIndex()].items.size()));
                NEXT;
            }
            CASE(ListAppend) {
                Value& list = PICK(SpaceOfB, ip->b);
                Value& item = PICK(SpaceOfC, ip->c);
                CHECKED(Append(list, item));
                if (ip->flags & TakeC) {
                    item.kind = Kind::Nothing;
                } else {
                    heap.Retain(item);
                }
                DROP_TAKEN(TakeB, list);
                NEXT;
            }
            CASE(ToReal)
            SET_REAL(ip->a, IntToFloat<float>(SLOT(ip->b).word));
            NEXT;
            CASE(Sqrt) {
                const float square = SLOT(ip->b).Real();
                if (square < 0.0F) {
                    Value value;
                    CHECKED(CallUnary(Native::Sqrt, &SLOT(ip->b), value));
                }
                SET_REAL(ip->a, ExactSqrt(square));
                NEXT;
            }
            CASE(Length) {
                const float length = LengthOf(SLOT(ip->b), static_cast<int>(ip->c));
                if (!IsFinite(length)) {
                    Value value;
                    CHECKED(CallUnary(ip->c == 2 ? Native::LengthVec2 : Native::LengthVec3, &SLOT(ip->b), value));
                }
                SET_REAL(ip->a, length);
                NEXT;
            }
            CASE(Normalize)
            SLOT(ip->a) = NormalizeVector(SLOT(ip->b), static_cast<int>(ip->c));
            NEXT;

            CASE(Raise)
            CHECKED(FailText(vm.program->texts[ip->c]));
            NEXT;
            CASE(ForEachGuard) {
                const Value& list = SLOT(ip->a);
                if (list.kind != Kind::List && list.kind != Kind::Dict) goto invalid;
                if (heap.objects[list.ObjectIndex()].version != static_cast<std::uint32_t>(SLOT(ip->b).word)) {
                    FAULT("a lista mudou enquanto \"para cada\" a percorria");
                }
                NEXT;
            }
            CASE(Step)
            if (u + ip->c >= budget) FAULT("o tick gastou o orcamento de instrucoes; ha um laco que nao termina");
            NEXT;
            CASE(Jump)
            u += static_cast<std::int32_t>(ip->c);
            ip = before + ip->a;
            NEXT;
            CASE(JumpBack)
            u += static_cast<std::int32_t>(ip->c);
            if (u > limit) goto nearBudget;
            ip = before + ip->a;
            NEXT;
            CASE(JumpTrue)
            JUMP_IF(SLOT(ip->b).word != 0);
            CASE(JumpFalse)
            JUMP_IF(SLOT(ip->b).word == 0);
            CASE(LoopTrue)
            LOOP_IF(SLOT(ip->b).word != 0);
            CASE(LoopFalse)
            LOOP_IF(SLOT(ip->b).word == 0);
            COMPARISONS(Jump, Int, JUMP_IF, SLOT(ip->b).word, SLOT(ip->c).word);
            COMPARISONS(Jump, IntImm, JUMP_IF, SLOT(ip->b).word, INT_OF(ip->c));
            COMPARISONS(Jump, Real, JUMP_IF, SLOT(ip->b).Real(), SLOT(ip->c).Real());
            COMPARISONS(Jump, RealImm, JUMP_IF, SLOT(ip->b).Real(), REAL_OF(ip->c));
            COMPARISONS(Loop, Int, LOOP_IF, SLOT(ip->b).word, SLOT(ip->c).word);
            COMPARISONS(Loop, IntImm, LOOP_IF, SLOT(ip->b).word, INT_OF(ip->c));
            COMPARISONS(Loop, Real, LOOP_IF, SLOT(ip->b).Real(), SLOT(ip->c).Real());
            COMPARISONS(Loop, RealImm, LOOP_IF, SLOT(ip->b).Real(), REAL_OF(ip->c));
            default: __builtin_unreachable();
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
    vm.stack.SetSize(static_cast<std::size_t>(base - stack) / SlotBytes + static_cast<std::size_t>(code->extent));
    return false;
}

}  // namespace tavrel::core::script
