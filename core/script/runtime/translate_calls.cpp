// One instruction of stack code each: calls and returns.
#include <algorithm>

#include "core/script/runtime/translator.h"

namespace tavrel::core::script {

namespace {

// In a frame of more locals or operands than this a return does not ask which of them own something.
constexpr std::uint32_t MaxCleaned = 256;

}  // namespace

TypeId Translator::RecordType(std::uint32_t record) const {
    return record < recordTypes.size() ? recordTypes[record] : TypeId();
}

void Translator::TranslateCall(const Instruction& instruction) {
    if (instruction.c >= program.functions.size() || operands.size() < instruction.a) return Refuse();
    const Function& callee = program.functions[instruction.c];
    if (callee.params != instruction.a || callee.locals < instruction.a) return Refuse();
    // Exact code may go on behind the call, and finds operands only in their slots.
    MaterialiseFrom(0);
    operands.resize(operands.size() - instruction.a);
    const bool fits = delta == static_cast<std::int16_t>(delta);
    if (!fits) {
        Emit(FastOp::Jump, static_cast<std::uint32_t>(out.code.size()) + 1, 0, static_cast<std::uint32_t>(delta));
        delta = 0;
    }
    Emit(FastOp::Call, SlotAt(operands.size()), static_cast<std::uint32_t>(static_cast<std::int32_t>(next) + delta),
         instruction.c, static_cast<std::uint16_t>(delta));
    delta = 0;  // the return brings u back in order
    if (callee.returnType != NothingType) PushTemp({Kind::Unknown, false, callee.returnType, 0});
}

void Translator::TranslateNative(Native native, const Instruction& instruction) {
    const NativeShape& shape = ShapeOf(native);
    const std::size_t count = instruction.a;
    if (operands.size() < count) return Refuse();
    const bool fits = shape.function != nullptr && static_cast<std::size_t>(shape.arguments) <= count &&
                      (shape.variadic || static_cast<std::size_t>(shape.arguments) == count);
    if (shape.function != nullptr && !fits) return Refuse();
    if (!exact && TranslateHotNative(native)) return;
    MaterialiseFrom(operands.size() - count);
    operands.resize(operands.size() - count);
    Emit(FastOp::CallNative, SlotAt(operands.size()), instruction.a, static_cast<std::uint32_t>(native));
    if (shape.result != Kind::Nothing)
        PushTemp({shape.function == nullptr ? Kind::Nothing : shape.result, false, {}, 0});
}

// Natives that need no arguments side by side on the stack. False for the others.
bool Translator::TranslateHotNative(Native native) {
    const NativeShape& shape = ShapeOf(native);
    if (native == Native::ListAppend) {
        Operand item = Pop();
        Operand list = Pop();
        const Picked b = Pick(list, operands.size());
        const Picked c = Pick(item, operands.size() + 1);
        const unsigned flags = static_cast<unsigned>(PickFlags(b.space, SpaceOfB, b.take, TakeB)) |
                               static_cast<unsigned>(PickFlags(c.space, SpaceOfC, c.take, TakeC));
        Emit(FastOp::ListAppend, 0, b.offset, c.offset, static_cast<std::uint16_t>(flags));
        return true;
    }
    std::uint16_t flags = 0;
    if (native == Native::ListSize) {
        Operand list = Pop();
        const Picked b = Pick(list, operands.size());
        if (b.take) {
            Push(list);
            return false;
        }
        flags = PickFlags(b.space, SpaceOfB, false, TakeB);
        const std::uint32_t a = Destination(false, flags);
        Emit(FastOp::ListSize, a, b.offset, 0, flags);
        PushResult({Kind::Int, false, {}, 0});
        return true;
    }
    if (native == Native::DictObtain) {
        const TypeInfo& type = program.types.At(operands[operands.size() - 3].fact.type);
        MaterialiseFrom(operands.size() - 3);
        operands.resize(operands.size() - 3);
        const std::uint32_t a = Destination(true, flags);
        Emit(FastOp::DictObtain, a, SlotAt(operands.size()), 0, flags);
        PushResult({Kind::Unknown, false, type.kind == Kind::Dict ? type.element : TypeId(), 0});
        return true;
    }
    const bool plain = shape.arguments == 1 && shape.kinds[0] == Kind::Unknown && shape.result != Kind::Unknown &&
                       shape.result != Kind::Nothing && !OnHeap(shape.result);
    if (!plain) return false;
    Operand argument = Pop();
    const std::uint32_t b = FrameSlot(argument, operands.size());
    const std::uint32_t a = Destination(false, flags);
    switch (native) {
        case Native::ToReal: Emit(FastOp::ToReal, a, b, 0); break;
        case Native::Sqrt: Emit(FastOp::Sqrt, a, b, 0); break;
        case Native::LengthVec2:
        case Native::LengthVec3: Emit(FastOp::Length, a, b, native == Native::LengthVec2 ? 2 : 3); break;
        case Native::NormalizeVec3: Emit(FastOp::Normalize, a, b, 3); break;
        default: Emit(FastOp::NativeUnary, a, b, static_cast<std::uint32_t>(native)); break;
    }
    PushResult({shape.result, false, {}, 0});
    return true;
}

void Translator::TranslateHost(const Instruction& instruction) {
    MaterialiseFrom(0);
    if (operands.size() < instruction.a) {
        // Every such call faults, so nothing behind it runs.
        Emit(FastOp::CallHost, 0, MissingArguments, instruction.c);
        ended = true;
        return;
    }
    operands.resize(operands.size() - instruction.a);
    Emit(FastOp::CallHost, SlotAt(operands.size()), instruction.a, instruction.c);
    PushTemp({});
}

// A return takes along the locals that may own something, as the run from the first to the last.
void Translator::TranslateReturn(bool value) {
    const bool answers = source.returnType != NothingType;
    std::uint16_t flags = 0;
    Picked picked{OperandSpace::Constant, 0, false};
    std::int32_t moved = -1;
    if (value) {
        Operand operand = Pop();
        if (!good) return;
        picked = Pick(operand, operands.size());
        if (operand.where == Operand::Where::Local && !Plain(operand.fact)) {
            picked.take = true;  // the local goes anyway
            moved = static_cast<std::int32_t>(operand.index);
        }
    } else if (answers) {
        Operand nothing{Operand::Where::Constant, 0, {Kind::Nothing, true, {}, 0}};
        picked = Pick(nothing, operands.size());
    }
    const bool many = operands.size() > MaxCleaned;
    for (std::size_t i = 0; i < operands.size() && !many; ++i) {
        if (operands[i].where == Operand::Where::Temp && !Plain(operands[i].fact)) {
            Emit(FastOp::DropSlot, SlotAt(i), 0, 0);
        }
    }
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    if (out.locals > MaxCleaned) last = out.locals;
    for (std::uint32_t local = 0; local < out.locals && out.locals <= MaxCleaned; ++local) {
        if (Plain(LocalFact(local)) || static_cast<std::int32_t>(local) == moved) continue;
        if (last == 0) first = local;
        last = local + 1;
    }
    const bool all = many || last > 0xFFFF;
    if (all) flags = CleanAll;
    flags = static_cast<std::uint16_t>(flags | PickFlags(picked.space, SpaceOfB, picked.take, TakeB));
    const auto executed = static_cast<std::uint32_t>(static_cast<std::int32_t>(next) + delta);
    const std::uint32_t clean = all ? 0 : first | last << 16U;
    Emit(value || answers ? FastOp::ReturnValue : FastOp::Return, executed, picked.offset, clean, flags);
    ended = true;
}

}  // namespace tavrel::core::script
