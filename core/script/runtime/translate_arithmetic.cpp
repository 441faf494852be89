// One instruction of stack code each: numbers, vectors, comparisons.
#include "core/script/runtime/translator.h"

#include <bit>
#include <limits>

#include "core/script/runtime/comparison_orders.h"

namespace tavrel::core::script {

namespace {

bool IsConstant(const Operand& operand, Kind kind) {
    return operand.where == Operand::Where::Constant && operand.fact.kind == kind;
}

bool FitsImmediate(std::int64_t value) {
    return value > std::numeric_limits<std::int32_t>::min() && value <= std::numeric_limits<std::int32_t>::max();
}

std::uint32_t Immediate(std::int64_t value) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(value));
}

}  // namespace

void Translator::TranslateArithmetic(const Instruction& instruction) {
    static constexpr FastOp Slots[] = {FastOp::AddInt,  FastOp::SubInt,  FastOp::MulInt,  FastOp::DivInt,
                                       FastOp::ModInt,  FastOp::NegInt,  FastOp::AddReal, FastOp::SubReal,
                                       FastOp::MulReal, FastOp::DivReal, FastOp::NegReal};
    const Op op = static_cast<Op>(instruction.op);
    const FastOp fast = Slots[instruction.op - static_cast<int>(Op::AddInt)];
    const Fact result{op >= Op::AddReal ? Kind::Real : Kind::Int, false, {}, 0};
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
        case Op::AddInt: break;
        case Op::SubInt:  // a - k is a + -k, and overflows where that does
            c = Immediate(-word);
            break;
        case Op::MulInt: fast = FastOp::MulIntImm; break;
        case Op::DivInt:
        case Op::ModInt:
            if (word >= -1 && word <= 1) return false;
            fast = op == Op::DivInt ? FastOp::DivIntImm : FastOp::ModIntImm;
            c = static_cast<std::uint32_t>(out.divisors.size());
            out.divisors.push_back(MakeDivisor(word));
            break;
        case Op::AddReal: fast = FastOp::AddRealImm; break;
        case Op::SubReal:  // exact in every case: a - k and a + -k are the same operation
            fast = FastOp::AddRealImm;
            c ^= 0x80000000U;
            break;
        case Op::MulReal: fast = FastOp::MulRealImm; break;
        case Op::DivReal:
            if (number == 0.0F) return false;
            fast = FastOp::DivRealImm;
            break;
        default: return false;  // TranslateArithmetic sends no other
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
        return PushResult({Kinds[instruction.a - 2], false, {}, 0});
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
        case Op::AddVec: Emit(FastOp::AddVec, a, b, c); break;
        case Op::SubVec: Emit(FastOp::SubVec, a, b, c); break;
        case Op::NegVec: Emit(FastOp::NegVec, a, b, 0); break;
        case Op::ScaleVec: Emit(FastOp::ScaleVec, a, b, c); break;
        case Op::DivVec: Emit(FastOp::DivVec, a, b, c); break;
        case Op::VecGet: Emit(FastOp::VecGet, a, b, c); return PushResult({Kind::Real, false, {}, 0});
        case Op::VecSet: Emit(FastOp::VecSet, a, b, c, instruction.a); break;
        default: break;  // Translate sends no other
    }
    // The interpreter keeps the result off the heap whatever the operand is.
    PushResult({ComponentCount(HintKind(first.fact)) > 0 ? HintKind(first.fact) : Kind::Vec3, false, {}, 0});
}

void Translator::TranslateCompare(std::uint8_t number) {
    Operand right = Pop();
    Operand left = Pop();
    if (!good) return;
    if (!IsComparison(number)) return Refuse();
    const auto wanted = static_cast<Comparison>(number);
    if (IsConstant(left, Kind::Int) && IsConstant(right, Kind::Int)) {
        const int order = left.fact.word < right.fact.word ? 1 : left.fact.word == right.fact.word ? 2 : 4;
        return PushConstant(Kind::Bool, (OrdersOf(wanted) & order) != 0 ? 1 : 0);
    }
    Kind kind = HintKind(left.fact);
    if (kind == Kind::Unknown) kind = HintKind(right.fact);
    if (ComparesByWord(kind) || kind == Kind::Real) {
        conditionLeft = left;
        conditionRight = right;
        comparison = wanted;
        realComparison = kind == Kind::Real;
        Push({Operand::Where::Condition, 0, {Kind::Bool, false, {}, 0}});
        return KeepConditionForJump();
    }
    const Picked b = Pick(left, operands.size());
    const Picked c = Pick(right, operands.size() + 1);
    const unsigned flags = static_cast<unsigned>(PickFlags(b.space, SpaceOfB, b.take, TakeB)) |
                           static_cast<unsigned>(PickFlags(c.space, SpaceOfC, c.take, TakeC)) |
                           static_cast<unsigned>(number) << ComparisonShift;
    Emit(FastOp::CompareAny, SlotAt(operands.size()), b.offset, c.offset, static_cast<std::uint16_t>(flags));
    PushTemp({Kind::Bool, false, {}, 0});
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
        comparison = Opposite(comparison);  // also of a NaN, which compares as equal here
        return KeepConditionForJump();
    }
    Operand operand = Pop();
    if (IsConstant(operand, Kind::Bool)) return PushConstant(Kind::Bool, operand.fact.word == 0 ? 1 : 0);
    std::uint16_t flags = 0;
    const std::uint32_t b = FrameSlot(operand, operands.size());
    const std::uint32_t a = Destination(false, flags);
    Emit(FastOp::Not, a, b, 0);
    PushResult({Kind::Bool, false, {}, 0});
}

}  // namespace tavrel::core::script
