// Jumps: where they really lead, which of them are followed instead of taken, and how they are counted.
#include <limits>

#include "core/script/runtime/comparison_orders.h"
#include "core/script/runtime/translator.h"

namespace tavrel::core::script {

namespace {

// The longest way behind a jump that is walked once more instead of jumping there.
constexpr std::uint32_t InlineLimit = 16;
constexpr int ThreadLimit = 8;

bool IsConditional(Op op) {
    return op >= Op::JumpIfFalse && op <= Op::JumpIfTrueKeep;
}

FastOp Later(FastOp op, int steps) {
    return static_cast<FastOp>(static_cast<int>(op) + steps);
}

}  // namespace

// The place that a jump to `at` reaches at last: jumps behind jumps are passed over, and so are tests of a value that
// is known because the jump itself tested it (`known`, and then `truth`).
Translator::Threaded Translator::Thread(std::uint32_t at, bool known, bool truth) const {
    Threaded reached{at, 0, false};
    for (int i = 0; i < ThreadLimit && !exact && reached.pc < Size(); ++i) {
        const Instruction& instruction = At(reached.pc);
        const Op op = static_cast<Op>(instruction.op);
        const bool keeps = op == Op::JumpIfFalseKeep || op == Op::JumpIfTrueKeep;
        const bool pops = op == Op::JumpIfFalse || op == Op::JumpIfTrue || op == Op::Pop;
        const bool has = known && !reached.popped;
        if (op != Op::Jump && !(has && (keeps || pops))) break;
        const bool jumpIf = op == Op::JumpIfTrue || op == Op::JumpIfTrueKeep;
        const bool jumps = op == Op::Jump || (op != Op::Pop && truth == jumpIf);
        const std::uint32_t to = jumps ? instruction.c : reached.pc + 1;
        if (to <= reached.pc) break;  // the budget is looked at where code repeats
        reached.pc = to;
        reached.executed += 1;
        reached.popped = reached.popped || pops;
    }
    return reached;
}

// Whether only reading and comparing lies between a place and the next conditional jump.
bool Translator::Inlinable(std::uint32_t at) const {
    if (exact) return false;
    for (std::uint32_t i = 0; i < InlineLimit && at < Size(); ++i) {
        const Instruction& instruction = At(at);
        switch (static_cast<Op>(instruction.op)) {
            case Op::JumpIfFalse:
            case Op::JumpIfTrue: return true;
            case Op::Jump:
                if (instruction.c <= at) return false;
                at = instruction.c;
                continue;
            case Op::CallNative:
                if (instruction.c != static_cast<std::uint32_t>(Native::ListSize)) return false;
                break;
            case Op::PushInt:
            case Op::PushReal:
            case Op::PushBool:
            case Op::PushEnum:
            case Op::LoadLocal:
            case Op::LoadGlobal:
            case Op::Compare:
            case Op::Not:
            case Op::ForEachGuard: break;
            default: return false;
        }
        ++at;
    }
    return false;
}

void Translator::TranslateJump(std::uint32_t target) {
    if (target >= Size()) return Refuse();
    straight = false;
    const bool back = target <= pc;
    const bool condition = !operands.empty() && operands.back().where == Operand::Where::Condition;
    const bool atTest = IsConditional(static_cast<Op>(At(target).op));
    const bool follow = Inlinable(target) && !(back && inlining) && inlined < InlineLimit;
    if (condition && !(follow && atTest)) Materialise(operands.back(), operands.size() - 1);
    if (!follow) {
        MaterialiseFrom(0);
        delta += static_cast<std::int32_t>(next) - static_cast<std::int32_t>(target);
        loopCheck = loopCheck || back;
        EmitJump(target);
        ended = true;
        return;
    }
    if (back) MaterialiseFrom(0);
    delta += static_cast<std::int32_t>(next) - static_cast<std::int32_t>(target);
    if (back) {
        loopCheck = true;
        resume = {target, delta};
    }
    inlining = true;
    ++inlined;
    next = target;
}

void Translator::TranslateConditional(bool jumpIf, bool keep, std::uint32_t target) {
    if (target >= Size() || operands.empty()) return Refuse();
    const std::size_t position = operands.size() - 1;
    if (operands.back().where == Operand::Where::Constant && operands.back().fact.kind == Kind::Bool) {
        const bool truth = operands.back().fact.word != 0;
        if (!keep) operands.pop_back();
        if (truth == jumpIf) return TranslateJump(target);
        if (inlining && !Inlinable(next)) LeaveInlined(next);
        return;
    }
    const Threaded taken = target > pc ? Thread(target, keep, jumpIf) : Threaded{target, 0, false};
    const bool stays = keep && !taken.popped;
    const std::int32_t takenDelta =
        delta + static_cast<std::int32_t>(next) + taken.executed - static_cast<std::int32_t>(taken.pc);
    if (stays) Materialise(operands.back(), position);
    Operand condition = operands.back();
    if (!stays) operands.pop_back();
    MaterialiseBelow(position);
    if (inlining && !keep) {
        // Behind a followed jump the way straight on is the one that repeats: it becomes the jump.
        EmitBranch(!jumpIf, condition, position, next, delta);
        loopCheck = taken.pc <= pc;
        delta = takenDelta;
        EmitJump(taken.pc);
        ended = true;
        return;
    }
    EmitBranch(jumpIf, condition, position, taken.pc, takenDelta);
    loopCheck = false;
    if (keep && !stays) PushConstant(Kind::Bool, jumpIf ? 0 : 1);
    if (inlining) LeaveInlined(next);
}

// Ends a followed way by a jump to where it would go on.
void Translator::LeaveInlined(std::uint32_t to) {
    MaterialiseFrom(0);
    EmitJump(to);
    ended = true;
}

// Jumps to an entry, with all operands in place. Pays what is owed to u.
void Translator::EmitJump(std::uint32_t to) {
    Edge(to);
    if (loopCheck) {
        Emit(FastOp::JumpBack, 0, 0, static_cast<std::uint32_t>(delta));
        out.origins.back() = {to, 0};
    } else {
        Emit(FastOp::Jump, 0, 0, static_cast<std::uint32_t>(delta));
    }
    fixups.push_back({static_cast<std::uint32_t>(out.code.size()) - 1, to});
    delta = 0;
    loopCheck = false;
}

// A jump to `to` if the condition, popped from `position`, has that truth.
void Translator::EmitBranch(bool truth, Operand& condition, std::size_t position, std::uint32_t to,
                            std::int32_t toDelta) {
    if (condition.where == Operand::Where::Condition) {
        EmitComparisonBranch(truth, position);
    } else {
        const std::uint32_t slot = FrameSlot(condition, position);
        const FastOp op =
            loopCheck ? (truth ? FastOp::LoopTrue : FastOp::LoopFalse) : (truth ? FastOp::JumpTrue : FastOp::JumpFalse);
        Emit(op, 0, slot, 0);
    }
    const std::size_t at = out.code.size() - 1;
    if (loopCheck) out.origins[at] = resume;
    Edge(to);
    const bool fits =
        toDelta >= std::numeric_limits<std::int16_t>::min() && toDelta <= std::numeric_limits<std::int16_t>::max();
    if (fits && (to > pc || loopCheck)) {
        out.code[at].flags = static_cast<std::uint16_t>(toDelta);
        fixups.push_back({static_cast<std::uint32_t>(at), to});
    } else {
        stubs.push_back({static_cast<std::uint32_t>(at), to, toDelta});
    }
}

void Translator::EmitComparisonBranch(bool truth, std::size_t position) {
    Comparison wanted = truth ? comparison : Opposite(comparison);
    std::size_t leftPosition = position;
    std::size_t rightPosition = position + 1;
    const Kind kind = realComparison ? Kind::Real : Kind::Int;
    const auto immediate = [kind](const Operand& operand) {
        if (operand.where != Operand::Where::Constant || operand.fact.kind != kind) return false;
        return kind == Kind::Real || operand.fact.word == static_cast<std::int32_t>(operand.fact.word);
    };
    if (immediate(conditionLeft) && !immediate(conditionRight)) {
        std::swap(conditionLeft, conditionRight);
        std::swap(leftPosition, rightPosition);
        wanted = Mirrored(wanted);
    }
    const std::uint32_t left = FrameSlot(conditionLeft, leftPosition);
    const bool number = immediate(conditionRight);
    const std::uint32_t right =
        number ? static_cast<std::uint32_t>(conditionRight.fact.word) : FrameSlot(conditionRight, rightPosition);
    FastOp op = loopCheck ? FastOp::LoopEqualInt : FastOp::JumpEqualInt;
    op = Later(op, (realComparison ? 12 : 0) + (number ? 6 : 0) + static_cast<int>(wanted));
    Emit(op, 0, left, right);
}

}  // namespace tavrel::core::script
