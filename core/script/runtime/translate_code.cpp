// One instruction of stack code each: values, variables, arithmetic, containers, comparisons.
#include <algorithm>
#include <bit>
#include <limits>

#include "core/script/runtime/translator.h"

namespace tavrel::core::script {

namespace {

constexpr Kind HandleKinds[3] = {Kind::Object, Kind::Body, Kind::Sound};

std::uint16_t Flags(Place place, int shift, bool take, std::uint16_t takeFlag) {
    const unsigned bits = static_cast<unsigned>(place) << static_cast<unsigned>(shift);
    return static_cast<std::uint16_t>(bits | (take ? takeFlag : 0U));
}

bool FitsImmediate(std::int64_t value) {
    return value > std::numeric_limits<std::int32_t>::min() && value <= std::numeric_limits<std::int32_t>::max();
}

std::uint32_t Immediate(std::int64_t value) { return static_cast<std::uint32_t>(static_cast<std::int32_t>(value)); }

bool IsConstant(const Operand& operand, Kind kind) {
    return operand.where == Operand::Where::Constant && operand.fact.kind == kind;
}

}  // namespace

void Translator::Translate(const Instruction& instruction) {
    const Op op = static_cast<Op>(instruction.op);
    if (op <= Op::MakeVector && op != Op::MakeVector) return TranslatePush(instruction);
    if (op >= Op::Pop && op <= Op::StoreGlobal) return TranslateMove(instruction);
    if (op >= Op::MakeList && op <= Op::NewDict) return TranslateMake(instruction);
    if (op >= Op::AddInt && op <= Op::NegReal) return TranslateArithmetic(instruction);
    switch (op) {
        case Op::FieldGet:
        case Op::FieldSet:
        case Op::ListGet:
        case Op::ListSet:
        case Op::DictGet:
        case Op::DictSet:
        case Op::ConcatText:
            return TranslateContainer(instruction);
        case Op::MakeVector:
        case Op::VecGet:
        case Op::VecSet:
        case Op::AddVec:
        case Op::SubVec:
        case Op::NegVec:
        case Op::ScaleVec:
        case Op::DivVec:
            return TranslateVector(instruction);
        case Op::Not:
            return TranslateNot();
        case Op::Compare:
            return TranslateCompare(instruction.a);
        case Op::Jump:
            return TranslateJump(instruction.c);
        case Op::JumpIfFalse:
            return TranslateConditional(false, false, instruction.c);
        case Op::JumpIfTrue:
            return TranslateConditional(true, false, instruction.c);
        case Op::JumpIfFalseKeep:
            return TranslateConditional(false, true, instruction.c);
        case Op::JumpIfTrueKeep:
            return TranslateConditional(true, true, instruction.c);
        case Op::Call:
            return TranslateCall(instruction);
        case Op::CallNative:
            return TranslateNative(static_cast<Native>(instruction.c), instruction);
        case Op::CallHost:
            return TranslateHost(instruction);
        case Op::Return:
            return TranslateReturn(false);
        case Op::ReturnValue:
            return TranslateReturn(true);
        case Op::Raise:
            if (instruction.c >= program.texts.size()) return Refuse();
            Emit(FastOp::Raise, 0, 0, instruction.c);
            ended = true;
            return;
        case Op::ForEachGuard:
            return TranslateGuard(instruction);
        default:
            return;  // a number that is no operation is passed over
    }
}

void Translator::TranslatePush(const Instruction& instruction) {
    switch (static_cast<Op>(instruction.op)) {
        case Op::PushInt:
            if (instruction.c >= program.integers.size()) return Refuse();
            return PushConstant(Kind::Int, program.integers[instruction.c]);
        case Op::PushReal:
            return PushConstant(Kind::Real, instruction.c);
        case Op::PushBool:
            return PushConstant(Kind::Bool, instruction.a != 0 ? 1 : 0);
        case Op::PushText:
            if (instruction.c >= texts.size()) return Refuse();
            return Push({Operand::Where::Constant, instruction.c, {Kind::Text, false, -1, 0}});
        case Op::PushEnum:
            return PushConstant(Kind::Enum, MakeEnum(instruction.b, instruction.c).word);
        case Op::PushHandle:
            return PushConstant(HandleKinds[std::min<int>(instruction.a, 2)], instruction.c);
        default:
            return PushConstant(Kind::Nothing, 0);
    }
}

void Translator::TranslateMove(const Instruction& instruction) {
    const std::uint32_t index = instruction.c;
    switch (static_cast<Op>(instruction.op)) {
        case Op::Pop: {
            const Operand operand = Pop();
            if (operand.where == Operand::Where::Temp && !Plain(operand.fact)) {
                Emit(FastOp::DropSlot, SlotAt(operands.size()), 0, 0);
            }
            return;
        }
        case Op::Dup:
            return Duplicate(1);
        case Op::Dup2:
            return Duplicate(2);
        case Op::LoadLocal: {
            if (index >= out.locals) return Refuse();
            const Fact fact = LocalFact(index);
            if (fact.constant) return Push({Operand::Where::Constant, 0, fact});
            const bool taken = !exact && HintKind(fact) == Kind::Text && !Borrowed(index) && Dies(index);
            return Push({taken ? Operand::Where::Taken : Operand::Where::Local, index, fact});
        }
        case Op::StoreLocal:
            if (index >= out.locals) return Refuse();
            return TranslateStoreLocal(index);
        case Op::LoadGlobal:
            if (index >= program.globals.size()) return Refuse();
            return Push({Operand::Where::Global, index, {Kind::Unknown, false, program.globals[index].type, 0}});
        default: {
            if (index >= program.globals.size()) return Refuse();
            Operand value = Pop();
            MaterialiseGlobal(index);
            const Picked picked = Pick(value, operands.size());
            if (picked.place == Place::Frame && Plain(value.fact)) {
                return Emit(FastOp::StoreGlobalPlain, index * SlotBytes, picked.offset, 0);
            }
            return Emit(FastOp::StoreGlobal, index * SlotBytes, picked.offset, 0,
                        Flags(picked.place, PlaceOfB, picked.take, TakeB));
        }
    }
}

// The top `count` operands once more.
void Translator::Duplicate(std::size_t count) {
    if (operands.size() < count) return Refuse();
    const std::size_t first = operands.size() - count;
    for (std::size_t i = first; i < first + count; ++i) {
        const Operand::Where where = operands[i].where;
        if (where == Operand::Where::Taken || where == Operand::Where::Condition) Materialise(operands[i], i);
    }
    for (std::size_t i = first; i < first + count; ++i) {
        const Operand operand = operands[i];
        if (operand.where == Operand::Where::Temp) {
            Emit(Plain(operand.fact) ? FastOp::CopyPlain : FastOp::Copy, SlotAt(operands.size()), SlotAt(i), 0);
        }
        Push(operand);
    }
}

void Translator::TranslateStoreLocal(std::uint32_t local) {
    Operand value = Pop();
    MaterialiseLocal(local);
    const Fact old = LocalFact(local);
    const std::uint16_t drop = Plain(old) ? 0 : DropOld;
    if (value.where == Operand::Where::Condition) Materialise(value, operands.size());
    if (value.where == Operand::Where::Constant) {
        const FastOp load = drop == 0 && Plain(value.fact) ? FastOp::LoadPlain : FastOp::LoadConst;
        Emit(load, LocalSlot(local), 0, ConstantIndex(value) * SlotBytes, drop);
    } else {
        const Picked picked = Pick(value, operands.size());
        if (drop == 0 && Plain(value.fact) && picked.place == Place::Frame) {
            Emit(FastOp::CopyPlain, LocalSlot(local), picked.offset, 0);
        } else {
            const std::uint16_t flags = Flags(picked.place, PlaceOfB, picked.take, TakeB);
            Emit(FastOp::Copy, LocalSlot(local), picked.offset, 0, static_cast<std::uint16_t>(flags | drop));
        }
    }
    SetLocalFact(local, value.fact);
}

void Translator::TranslateArithmetic(const Instruction& instruction) {
    static constexpr FastOp Slots[] = {FastOp::AddInt,  FastOp::SubInt,  FastOp::MulInt,  FastOp::DivInt,
                                       FastOp::ModInt,  FastOp::NegInt,  FastOp::AddReal, FastOp::SubReal,
                                       FastOp::MulReal, FastOp::DivReal, FastOp::NegReal};
    const Op op = static_cast<Op>(instruction.op);
    const FastOp fast = Slots[instruction.op - static_cast<int>(Op::AddInt)];
    const Fact result{op >= Op::AddReal ? Kind::Real : Kind::Int, false, -1, 0};
    std::uint16_t flags = 0;
    Operand right = Pop();
    if (op == Op::NegInt || op == Op::NegReal) {
        const std::uint32_t slot = FrameSlot(right, operands.size());
        Emit(fast, Destination(false, flags), slot, 0);
        return PushResult(result);
    }
    Operand left = Pop();
    if (!good) return;
    if (!TranslateImmediate(op, left, right)) {
        const std::uint32_t b = FrameSlot(left, operands.size());
        const std::uint32_t c = FrameSlot(right, operands.size() + 1);
        const std::uint32_t a = Destination(false, flags);
        if (!EmitWithProduct(op, a, b, c)) Emit(fast, a, b, c);
    }
    PushResult(result);
}

// A sum or difference with the product that was emitted last, in one operation. False where there is none.
bool Translator::EmitWithProduct(Op op, std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    if ((op != Op::AddReal && op != Op::SubReal) || out.code.size() <= regionFirst) return false;
    const FastInstruction product = out.code.back();
    const std::uint32_t ownSlots = out.locals * SlotBytes;  // locals may be read again, operands are not
    if (product.op != FastOp::MulReal || product.a < ownSlots || (product.a != b && product.a != c)) return false;
    const std::uint32_t other = product.a == b ? c : b;
    if (b == c || other / SlotBytes > 0xFFFF) return false;
    FastOp fast = FastOp::AddProduct;
    if (op == Op::SubReal) fast = product.a == b ? FastOp::ProductSub : FastOp::SubProduct;
    out.code.pop_back();
    out.origins.pop_back();
    Emit(fast, a, product.b, product.c, static_cast<std::uint16_t>(other / SlotBytes));
    return true;
}

// An operation with a constant operand that fits into it; false where there is none.
bool Translator::TranslateImmediate(Op op, Operand& left, Operand& right) {
    const bool real = op >= Op::AddReal;
    const Kind kind = real ? Kind::Real : Kind::Int;
    const bool swaps = op == Op::AddInt || op == Op::MulInt || op == Op::AddReal || op == Op::MulReal;
    const bool swapped = swaps && !IsConstant(right, kind) && IsConstant(left, kind);
    const std::int64_t word = swapped ? left.fact.word : right.fact.word;
    if (!swapped && !IsConstant(right, kind)) return false;
    const float number = std::bit_cast<float>(static_cast<std::uint32_t>(word));
    if (real ? number != number : !FitsImmediate(word)) return false;

    FastOp fast = FastOp::AddIntImm;
    std::uint32_t c = static_cast<std::uint32_t>(word);
    switch (op) {
        case Op::AddInt:
            break;
        case Op::SubInt:  // a - k is a + -k, and overflows where that does
            c = Immediate(-word);
            break;
        case Op::MulInt:
            fast = FastOp::MulIntImm;
            break;
        case Op::DivInt:
        case Op::ModInt:
            if (word >= -1 && word <= 1) return false;
            fast = op == Op::DivInt ? FastOp::DivIntImm : FastOp::ModIntImm;
            c = static_cast<std::uint32_t>(out.divisors.size());
            out.divisors.push_back(MakeDivisor(word));
            break;
        case Op::AddReal:
            fast = FastOp::AddRealImm;
            break;
        case Op::SubReal:  // exact in every case: a - k and a + -k are the same operation
            fast = FastOp::AddRealImm;
            c ^= 0x80000000U;
            break;
        case Op::MulReal:
            fast = FastOp::MulRealImm;
            break;
        default:
            if (number == 0.0F) return false;
            fast = FastOp::DivRealImm;
            break;
    }
    const std::uint32_t b = FrameSlot(swapped ? right : left, operands.size() + (swapped ? 1 : 0));
    std::uint16_t flags = 0;
    Emit(fast, Destination(false, flags), b, c);
    return true;
}

void Translator::TranslateVector(const Instruction& instruction) {
    const Op op = static_cast<Op>(instruction.op);
    std::uint16_t flags = 0;
    if (op == Op::MakeVector) {
        if (instruction.a < 2 || instruction.a > 4 || operands.size() < instruction.a) return Refuse();
        const std::size_t first = operands.size() - instruction.a;
        MaterialiseFrom(first);
        operands.resize(first);
        Emit(FastOp::MakeVector, Destination(false, flags), SlotAt(first), instruction.a);
        constexpr Kind Kinds[] = {Kind::Vec2, Kind::Vec3, Kind::Color};
        return PushResult({Kinds[instruction.a - 2], false, -1, 0});
    }
    const bool component = op == Op::VecGet || op == Op::VecSet;
    if (component && instruction.a > 3) return Refuse();
    Operand second;
    if (op != Op::NegVec && op != Op::VecGet) second = Pop();
    Operand first = Pop();
    if (!good) return;
    const std::uint32_t b = FrameSlot(first, operands.size());
    std::uint32_t c = instruction.a;
    if (op != Op::NegVec && op != Op::VecGet) c = FrameSlot(second, operands.size() + 1);
    const std::uint32_t a = Destination(false, flags);
    switch (op) {
        case Op::AddVec:
            Emit(FastOp::AddVec, a, b, c);
            break;
        case Op::SubVec:
            Emit(FastOp::SubVec, a, b, c);
            break;
        case Op::NegVec:
            Emit(FastOp::NegVec, a, b, 0);
            break;
        case Op::ScaleVec:
            Emit(FastOp::ScaleVec, a, b, c);
            break;
        case Op::DivVec:
            Emit(FastOp::DivVec, a, b, c);
            break;
        case Op::VecGet:
            Emit(FastOp::VecGet, a, b, c);
            return PushResult({Kind::Real, false, -1, 0});
        default:
            Emit(FastOp::VecSet, a, b, c, instruction.a);
            break;
    }
    // The interpreter keeps the result off the heap whatever the operand is.
    PushResult({ComponentCount(HintKind(first.fact)) > 0 ? HintKind(first.fact) : Kind::Vec3, false, -1, 0});
}

void Translator::TranslateContainer(const Instruction& instruction) {
    const Op op = static_cast<Op>(instruction.op);
    if (op == Op::DictSet) {
        if (operands.size() < 3) return Refuse();
        MaterialiseFrom(operands.size() - 3);
        operands.resize(operands.size() - 3);
        return Emit(FastOp::DictSet, SlotAt(operands.size()), 0, 0);
    }
    if (op == Op::FieldSet || op == Op::ListSet) return TranslateElementSet(instruction);
    Operand second;
    if (op != Op::FieldGet) second = Pop();
    Operand first = Pop();
    if (!good) return;
    const Picked b = Pick(first, operands.size());
    std::uint16_t flags = Flags(b.place, PlaceOfB, b.take, TakeB);
    const TypeInfo& type = program.types.At(std::max(first.fact.type, 0));
    Fact fact;
    FastOp fast = FastOp::FieldGet;
    std::uint32_t c = instruction.c;
    if (op == Op::FieldGet) {
        const auto record = static_cast<std::size_t>(type.index);
        if (type.kind == Kind::Record && record < program.records.size() &&
            c < program.records[record].fieldTypes.size()) {
            fact.type = program.records[record].fieldTypes[c];
        }
    } else if (op == Op::ListGet) {
        fast = FastOp::ListGet;
        c = FrameSlot(second, operands.size() + 1);
        if (type.kind == Kind::List) fact.type = type.element;
    } else {
        const Picked picked = Pick(second, operands.size() + 1);
        flags = static_cast<std::uint16_t>(flags | Flags(picked.place, PlaceOfC, picked.take, TakeC));
        c = picked.offset;
        fast = op == Op::DictGet ? FastOp::DictGet : FastOp::ConcatText;
        if (op == Op::ConcatText) fact.kind = Kind::Text;
        if (op == Op::DictGet && type.kind == Kind::Dict) fact.type = type.element;
    }
    const std::uint32_t a = Destination(true, flags);
    const bool borrowed = (flags & (TakeB | DropOld)) == 0;
    if (borrowed && op == Op::FieldGet && b.place == Place::Frame) fast = FastOp::FieldGetLocal;
    if (borrowed && op == Op::ListGet && b.place == Place::Frame) fast = FastOp::ListGetLocal;
    if (borrowed && op == Op::ListGet && b.place == Place::Global) fast = FastOp::ListGetGlobal;
    Emit(fast, a, b.offset, c, flags);
    PushResult(fact);
}

void Translator::TranslateElementSet(const Instruction& instruction) {
    const bool list = static_cast<Op>(instruction.op) == Op::ListSet;
    Operand value = Pop();
    Operand index;
    if (list) index = Pop();
    Operand container = Pop();
    if (!good) return;
    const Picked a = Pick(container, operands.size());
    const std::uint32_t b = list ? FrameSlot(index, operands.size() + 1) : instruction.c;
    const Picked c = Pick(value, operands.size() + (list ? 2 : 1));
    const unsigned flags = static_cast<unsigned>(Flags(a.place, PlaceOfA, a.take, TakeA)) |
                           static_cast<unsigned>(Flags(c.place, PlaceOfC, c.take, TakeC));
    FastOp fast = list ? FastOp::ListSet : FastOp::FieldSet;
    if (!a.take && Plain(value.fact)) {
        if (!list && a.place == Place::Frame) fast = FastOp::FieldSetPlain;
        if (list && a.place == Place::Frame) fast = FastOp::ListSetLocal;
        if (list && a.place == Place::Global) fast = FastOp::ListSetGlobal;
    }
    Emit(fast, a.offset, b, c.offset, static_cast<std::uint16_t>(flags));
}

void Translator::TranslateMake(const Instruction& instruction) {
    const Op op = static_cast<Op>(instruction.op);
    const bool record = op == Op::MakeRecord || op == Op::NewRecord;
    if (record && instruction.c >= program.records.size()) return Refuse();
    std::size_t count = 0;
    if (op == Op::MakeList) count = instruction.a;
    if (op == Op::MakeDict) count = std::size_t{2} * instruction.a;
    if (op == Op::MakeRecord) count = program.records[instruction.c].fieldTypes.size();
    if (operands.size() < count) return Refuse();
    const std::size_t first = operands.size() - count;
    MaterialiseFrom(first);
    operands.resize(first);
    std::uint16_t flags = 0;
    const std::uint32_t a = Destination(true, flags);
    const std::uint32_t b = SlotAt(first);
    switch (op) {
        case Op::MakeList:
            Emit(FastOp::MakeList, a, b, instruction.a, flags);
            return PushResult({Kind::List, false, -1, 0});
        case Op::MakeDict:
            Emit(FastOp::MakeDict, a, b, instruction.a, flags);
            return PushResult({Kind::Dict, false, -1, 0});
        case Op::MakeRecord:
            Emit(FastOp::MakeRecord, a, b, instruction.c, flags);
            return PushResult({Kind::Record, false, RecordType(instruction.c), 0});
        case Op::NewRecord:
            Emit(FastOp::NewRecord, a, 0, instruction.c, flags);
            return PushResult({Kind::Record, false, RecordType(instruction.c), 0});
        case Op::NewList:
            Emit(FastOp::NewList, a, 0, 0, flags);
            return PushResult({Kind::List, false, -1, 0});
        default:
            Emit(FastOp::NewDict, a, 0, 0, flags);
            return PushResult({Kind::Dict, false, -1, 0});
    }
}

void Translator::TranslateCompare(std::uint8_t wanted) {
    Operand right = Pop();
    Operand left = Pop();
    if (!good) return;
    if (wanted > 5) return Refuse();
    if (IsConstant(left, Kind::Int) && IsConstant(right, Kind::Int)) {
        const int order = left.fact.word < right.fact.word ? 1 : left.fact.word == right.fact.word ? 2 : 4;
        constexpr int Orders[6] = {2, 5, 1, 3, 4, 6};
        return PushConstant(Kind::Bool, (Orders[wanted] & order) != 0 ? 1 : 0);
    }
    Kind kind = HintKind(left.fact);
    if (kind == Kind::Unknown) kind = HintKind(right.fact);
    const bool word = kind == Kind::Int || kind == Kind::Bool || kind == Kind::Enum || kind == Kind::Object ||
                      kind == Kind::Body || kind == Kind::Sound;
    if (word || kind == Kind::Real) {
        conditionLeft = left;
        conditionRight = right;
        comparison = wanted;
        realComparison = kind == Kind::Real;
        Push({Operand::Where::Condition, 0, {Kind::Bool, false, -1, 0}});
        return KeepConditionForJump();
    }
    const Picked b = Pick(left, operands.size());
    const Picked c = Pick(right, operands.size() + 1);
    const unsigned flags = static_cast<unsigned>(Flags(b.place, PlaceOfB, b.take, TakeB)) |
                           static_cast<unsigned>(Flags(c.place, PlaceOfC, c.take, TakeC)) |
                           static_cast<unsigned>(wanted) << ComparisonShift;
    Emit(FastOp::CompareAny, SlotAt(operands.size()), b.offset, c.offset, static_cast<std::uint16_t>(flags));
    PushTemp({Kind::Bool, false, -1, 0});
}

// A comparison stays put off only when the next instruction can use it so.
void Translator::KeepConditionForJump() {
    const Op follows = next < Size() ? static_cast<Op>(At(next).op) : Op::Return;
    const bool used = follows == Op::Not || (follows >= Op::Jump && follows <= Op::JumpIfTrueKeep);
    if (!used) Materialise(operands.back(), operands.size() - 1);
}

void Translator::TranslateNot() {
    if (operands.empty()) return Refuse();
    if (operands.back().where == Operand::Where::Condition) {
        // With a NaN, "<" is the opposite of ">=" here: a NaN compares as equal.
        constexpr std::uint8_t Opposite[6] = {1, 0, 5, 4, 3, 2};
        comparison = Opposite[comparison];
        return KeepConditionForJump();
    }
    Operand operand = Pop();
    if (IsConstant(operand, Kind::Bool)) return PushConstant(Kind::Bool, operand.fact.word == 0 ? 1 : 0);
    std::uint16_t flags = 0;
    const std::uint32_t b = FrameSlot(operand, operands.size());
    const std::uint32_t a = Destination(false, flags);
    Emit(FastOp::Not, a, b, 0);
    PushResult({Kind::Bool, false, -1, 0});
}

void Translator::TranslateGuard(const Instruction& instruction) {
    if (instruction.b >= out.locals || instruction.c >= out.locals) return Refuse();
    Emit(FastOp::ForEachGuard, LocalSlot(instruction.b), LocalSlot(instruction.c), 0);
}

}  // namespace tavrel::core::script
