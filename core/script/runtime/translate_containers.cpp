// One instruction of stack code each: records, lists, dictionaries, texts.
#include "core/script/runtime/translator.h"

#include <algorithm>

namespace tavrel::core::script {

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
    std::uint16_t flags = PickFlags(b.space, SpaceOfB, b.take, TakeB);
    const TypeInfo& type = program.types.At(first.fact.type);
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
        flags = static_cast<std::uint16_t>(flags | PickFlags(picked.space, SpaceOfC, picked.take, TakeC));
        c = picked.offset;
        fast = op == Op::DictGet ? FastOp::DictGet : FastOp::ConcatText;
        if (op == Op::ConcatText) fact.kind = Kind::Text;
        if (op == Op::DictGet && type.kind == Kind::Dict) fact.type = type.element;
    }
    const std::uint32_t a = Destination(true, flags);
    const bool borrowed = (flags & (TakeB | DropOld)) == 0;
    if (borrowed && op == Op::FieldGet && b.space == OperandSpace::Frame) fast = FastOp::FieldGetLocal;
    if (borrowed && op == Op::ListGet && b.space == OperandSpace::Frame) fast = FastOp::ListGetLocal;
    if (borrowed && op == Op::ListGet && b.space == OperandSpace::Global) fast = FastOp::ListGetGlobal;
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
    const unsigned flags = static_cast<unsigned>(PickFlags(a.space, SpaceOfA, a.take, TakeA)) |
                           static_cast<unsigned>(PickFlags(c.space, SpaceOfC, c.take, TakeC));
    FastOp fast = list ? FastOp::ListSet : FastOp::FieldSet;
    if (!a.take && Plain(value.fact)) {
        if (!list && a.space == OperandSpace::Frame) fast = FastOp::FieldSetPlain;
        if (list && a.space == OperandSpace::Frame) fast = FastOp::ListSetLocal;
        if (list && a.space == OperandSpace::Global) fast = FastOp::ListSetGlobal;
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
            return PushResult({Kind::List, false, {}, 0});
        case Op::MakeDict:
            Emit(FastOp::MakeDict, a, b, instruction.a, flags);
            return PushResult({Kind::Dict, false, {}, 0});
        case Op::MakeRecord:
            Emit(FastOp::MakeRecord, a, b, instruction.c, flags);
            return PushResult({Kind::Record, false, RecordType(instruction.c), 0});
        case Op::NewRecord:
            Emit(FastOp::NewRecord, a, 0, instruction.c, flags);
            return PushResult({Kind::Record, false, RecordType(instruction.c), 0});
        case Op::NewList: Emit(FastOp::NewList, a, 0, 0, flags); return PushResult({Kind::List, false, {}, 0});
        case Op::NewDict: Emit(FastOp::NewDict, a, 0, 0, flags); return PushResult({Kind::Dict, false, {}, 0});
        default: return;  // Translate sends no other
    }
}

void Translator::TranslateGuard(const Instruction& instruction) {
    if (instruction.b >= out.locals || instruction.c >= out.locals) return Refuse();
    Emit(FastOp::ForEachGuard, LocalSlot(instruction.b), LocalSlot(instruction.c), 0);
}

}  // namespace tavrel::core::script
