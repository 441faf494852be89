#include "core/script/runtime/translator.h"

#include <algorithm>

#include "core/script/runtime/comparison_orders.h"

namespace tavrel::core::script {

namespace {

// How far ahead the walk looks for the store that overwrites a local.
constexpr std::uint32_t LookAhead = 64;

}  // namespace

std::uint32_t Translator::SlotAt(std::size_t position) const {
    return (out.locals + static_cast<std::uint32_t>(position)) * SlotBytes;
}

void Translator::Push(const Operand& operand) {
    placed = std::min(placed, operands.size());
    operands.push_back(operand);
    // One more than stand there: the second operand of a comparison that is put off keeps its slot.
    deepest = std::max(deepest, static_cast<std::uint32_t>(operands.size()) + 1);
}

void Translator::PushTemp(const Fact& fact) {
    Push({Operand::Where::Temp, 0, fact});
}

void Translator::PushConstant(Kind kind, std::int64_t word) {
    Push({Operand::Where::Constant, 0, {kind, true, {}, word}});
}

Operand Translator::Pop() {
    if (operands.empty()) {
        Refuse();
        return {};
    }
    const Operand operand = operands.back();
    operands.pop_back();
    return operand;
}

std::uint32_t Translator::ConstantIndex(const Operand& operand) {
    const bool text = operand.fact.kind == Kind::Text;
    const std::int64_t word = text ? static_cast<std::int64_t>(operand.index) : operand.fact.word;
    const auto [found, fresh] = constantOf.try_emplace({static_cast<int>(operand.fact.kind), word},
                                                       static_cast<std::uint32_t>(out.constants.size()));
    if (fresh) out.constants.push_back(text ? texts[operand.index] : MakeWord(operand.fact.kind, word));
    return found->second;
}

// Puts an operand into its own slot, that of `position`.
void Translator::Materialise(Operand& operand, std::size_t position) {
    const std::uint32_t slot = SlotAt(position);
    switch (operand.where) {
        case Operand::Where::Temp: return;
        case Operand::Where::Local:
            Emit(Plain(operand.fact) ? FastOp::CopyPlain : FastOp::Copy, slot, LocalSlot(operand.index), 0);
            break;
        case Operand::Where::Taken: Emit(FastOp::Copy, slot, LocalSlot(operand.index), 0, TakeB); break;
        case Operand::Where::Global: Emit(FastOp::LoadGlobal, slot, operand.index * SlotBytes, 0); break;
        case Operand::Where::Constant:
            Emit(Plain(operand.fact) ? FastOp::LoadPlain : FastOp::LoadConst, slot, 0,
                 ConstantIndex(operand) * SlotBytes);
            break;
        case Operand::Where::Condition: EmitComparison(position); break;
    }
    operand.where = Operand::Where::Temp;
}

void Translator::MaterialiseFrom(std::size_t position) {
    for (std::size_t i = std::max(position, placed); i < operands.size(); ++i) {
        Materialise(operands[i], i);
        if (!following) operands[i].fact = {};  // as it will be taken up at the next entry
    }
    if (position <= placed) placed = operands.size();
}

void Translator::MaterialiseBelow(std::size_t position) {
    for (std::size_t i = placed; i < position && i < operands.size(); ++i) Materialise(operands[i], i);
}

void Translator::MaterialiseLocal(std::uint32_t local) {
    for (std::size_t i = placed; i < operands.size(); ++i) {
        const Operand::Where where = operands[i].where;
        const bool borrowed = where == Operand::Where::Local || where == Operand::Where::Taken;
        if ((borrowed && operands[i].index == local) || where == Operand::Where::Condition) {
            Materialise(operands[i], i);
        }
    }
}

void Translator::MaterialiseGlobal(std::uint32_t global) {
    for (std::size_t i = placed; i < operands.size(); ++i) {
        if (operands[i].where == Operand::Where::Global && operands[i].index == global) {
            Materialise(operands[i], i);
        }
    }
}

// The comparison that was put off, as a value. Its own operands would stand at `position` and behind it.
void Translator::EmitComparison(std::size_t position) {
    const std::uint32_t left = FrameSlot(conditionLeft, position);
    const std::uint32_t right = FrameSlot(conditionRight, position + 1);
    const std::uint32_t slot = SlotAt(position);
    if (!realComparison) {
        Emit(FastOp::CompareInt, slot, left, right, OrdersOf(comparison));
    } else if (comparison == Comparison::Equal || comparison == Comparison::NotEqual) {
        Emit(FastOp::SameReal, slot, left, right, comparison == Comparison::NotEqual ? 1 : 0);
    } else {
        Emit(FastOp::CompareReal, slot, left, right, OrdersOf(comparison));
    }
}

// Where an operation on slots alone finds an operand that was popped from `position`.
std::uint32_t Translator::FrameSlot(Operand& operand, std::size_t position) {
    if (operand.where == Operand::Where::Local || operand.where == Operand::Where::Taken) {
        return LocalSlot(operand.index);
    }
    Materialise(operand, position);
    return SlotAt(position);
}

// Where an operation that picks finds it.
Translator::Picked Translator::Pick(Operand& operand, std::size_t position) {
    switch (operand.where) {
        case Operand::Where::Local: return {OperandSpace::Frame, LocalSlot(operand.index), false};
        case Operand::Where::Taken: return {OperandSpace::Frame, LocalSlot(operand.index), true};
        case Operand::Where::Global: return {OperandSpace::Global, operand.index * SlotBytes, false};
        case Operand::Where::Constant: return {OperandSpace::Constant, ConstantIndex(operand) * SlotBytes, false};
        case Operand::Where::Temp:
        case Operand::Where::Condition: break;
    }
    return {OperandSpace::Frame, FrameSlot(operand, position), !Plain(operand.fact)};
}

// Whether the next instruction stores the result of this one into a local, and may be done along with it.
bool Translator::Fuses() const {
    if (exact || next >= Size() || entryOf[next] >= 0) return false;
    const Instruction& store = At(next);
    return store.op == static_cast<std::uint8_t>(Op::StoreLocal) && store.c < out.locals;
}

// The slot for a result whose operands are popped: a local's if the next instruction stores it there and the operation
// can deal with the old value, else the next operand's.
std::uint32_t Translator::Destination(bool dropsOld, std::uint16_t& flags) {
    fusedLocal = -1;
    if (!Fuses()) return SlotAt(operands.size());
    const std::uint32_t local = At(next).c;
    const bool owned = !Plain(LocalFact(local));
    if (owned && !dropsOld) return SlotAt(operands.size());
    MaterialiseLocal(local);
    if (owned) flags = static_cast<std::uint16_t>(flags | DropOld);
    fusedLocal = static_cast<std::int32_t>(local);
    return LocalSlot(local);
}

// Takes note of the result that went to the last Destination.
void Translator::PushResult(const Fact& fact) {
    if (fusedLocal < 0) {
        deepest = std::max(deepest, static_cast<std::uint32_t>(operands.size()) + 1);
        return PushTemp(fact);
    }
    SetLocalFact(static_cast<std::uint32_t>(fusedLocal), fact);
    ++next;
}

Fact Translator::LocalFact(std::uint32_t local) const {
    return following ? locals[local] : Fact{};
}

void Translator::SetLocalFact(std::uint32_t local, const Fact& fact) {
    if (following) locals[local] = fact;
}

Kind Translator::HintKind(const Fact& fact) const {
    if (fact.kind != Kind::Unknown) return fact.kind;
    return program.types.KindOf(fact.type);
}

// Whether an operand still stands in a local: then the local's reference may not be taken away.
bool Translator::Borrowed(std::uint32_t local) const {
    for (std::size_t i = placed; i < operands.size(); ++i) {
        if (operands[i].where == Operand::Where::Local && operands[i].index == local) return true;
    }
    return false;
}

// Whether a local that is being read is overwritten, on this straight way, before anyone reads it again.
bool Translator::Dies(std::uint32_t local) const {
    const std::uint32_t end = std::min(Size(), pc + LookAhead);
    for (std::uint32_t at = pc + 1; at < end && entryOf[at] < 0; ++at) {
        const Op op = static_cast<Op>(At(at).op);
        if (op == Op::StoreLocal && At(at).c == local) return true;
        if (op == Op::LoadLocal && At(at).c == local) return false;
        if ((op >= Op::Jump && op <= Op::JumpIfTrueKeep) || (op >= Op::Return && op <= Op::ForEachGuard)) return false;
    }
    return false;
}

}  // namespace tavrel::core::script
