// One instruction of stack code each: constants, locals and globals, and which function translates what.
#include "core/script/runtime/translator.h"

#include <algorithm>
#include <limits>

namespace tavrel::core::script {

namespace {

constexpr Kind HandleKinds[3] = {Kind::Object, Kind::Body, Kind::Sound};

// A number that does not fit is none of a native, and may not become one by being cut.
Native NativeOf(std::uint32_t number) {
    return static_cast<Native>(std::min<std::uint32_t>(number, std::numeric_limits<std::uint16_t>::max()));
}

}  // namespace

void Translator::Translate(const Instruction& instruction) {
    const Op op = static_cast<Op>(instruction.op);
    switch (op) {
        case Op::PushInt:
        case Op::PushReal:
        case Op::PushBool:
        case Op::PushText:
        case Op::PushNothing:
        case Op::PushEnum:
        case Op::PushHandle: return TranslatePush(instruction);
        case Op::Pop:
        case Op::Dup:
        case Op::Dup2:
        case Op::LoadLocal:
        case Op::StoreLocal:
        case Op::LoadGlobal:
        case Op::StoreGlobal: return TranslateMove(instruction);
        case Op::FieldGet:
        case Op::FieldSet:
        case Op::ListGet:
        case Op::ListSet:
        case Op::DictGet:
        case Op::DictSet:
        case Op::ConcatText: return TranslateContainer(instruction);
        case Op::MakeList:
        case Op::MakeDict:
        case Op::MakeRecord:
        case Op::NewRecord:
        case Op::NewList:
        case Op::NewDict: return TranslateMake(instruction);
        case Op::AddInt:
        case Op::SubInt:
        case Op::MulInt:
        case Op::DivInt:
        case Op::ModInt:
        case Op::NegInt:
        case Op::AddReal:
        case Op::SubReal:
        case Op::MulReal:
        case Op::DivReal:
        case Op::NegReal: return TranslateArithmetic(instruction);
        case Op::MakeVector:
        case Op::VecGet:
        case Op::VecSet:
        case Op::AddVec:
        case Op::SubVec:
        case Op::NegVec:
        case Op::ScaleVec:
        case Op::DivVec: return TranslateVector(instruction);
        case Op::Not: return TranslateNot();
        case Op::Compare: return TranslateCompare(instruction.a);
        case Op::Jump: return TranslateJump(instruction.c);
        case Op::JumpIfFalse: return TranslateConditional(false, false, instruction.c);
        case Op::JumpIfTrue: return TranslateConditional(true, false, instruction.c);
        case Op::JumpIfFalseKeep: return TranslateConditional(false, true, instruction.c);
        case Op::JumpIfTrueKeep: return TranslateConditional(true, true, instruction.c);
        case Op::Call: return TranslateCall(instruction);
        case Op::CallNative: return TranslateNative(NativeOf(instruction.c), instruction);
        case Op::CallHost: return TranslateHost(instruction);
        case Op::Return: return TranslateReturn(false);
        case Op::ReturnValue: return TranslateReturn(true);
        case Op::Raise:
            if (instruction.c >= program.texts.size()) return Refuse();
            Emit(FastOp::Raise, 0, 0, instruction.c);
            ended = true;
            return;
        case Op::ForEachGuard: return TranslateGuard(instruction);
    }
    // A number that is no operation is passed over.
}

void Translator::TranslatePush(const Instruction& instruction) {
    switch (static_cast<Op>(instruction.op)) {
        case Op::PushInt:
            if (instruction.c >= program.integers.size()) return Refuse();
            return PushConstant(Kind::Int, program.integers[instruction.c]);
        case Op::PushReal: return PushConstant(Kind::Real, instruction.c);
        case Op::PushBool: return PushConstant(Kind::Bool, instruction.a != 0 ? 1 : 0);
        case Op::PushText:
            if (instruction.c >= texts.size()) return Refuse();
            return Push({Operand::Where::Constant, instruction.c, {Kind::Text, false, {}, 0}});
        case Op::PushEnum: return PushConstant(Kind::Enum, MakeEnum(instruction.b, instruction.c).word);
        case Op::PushHandle: return PushConstant(HandleKinds[std::min<int>(instruction.a, 2)], instruction.c);
        case Op::PushNothing: return PushConstant(Kind::Nothing, 0);
        default: return;  // Translate sends no other
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
        case Op::Dup: return Duplicate(1);
        case Op::Dup2: return Duplicate(2);
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
        case Op::StoreGlobal: {
            if (index >= program.globals.size()) return Refuse();
            Operand value = Pop();
            MaterialiseGlobal(index);
            const Picked picked = Pick(value, operands.size());
            if (picked.space == OperandSpace::Frame && Plain(value.fact)) {
                return Emit(FastOp::StoreGlobalPlain, index * SlotBytes, picked.offset, 0);
            }
            return Emit(FastOp::StoreGlobal, index * SlotBytes, picked.offset, 0,
                        PickFlags(picked.space, SpaceOfB, picked.take, TakeB));
        }
        default: return;  // Translate sends no other
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
        if (drop == 0 && Plain(value.fact) && picked.space == OperandSpace::Frame) {
            Emit(FastOp::CopyPlain, LocalSlot(local), picked.offset, 0);
        } else {
            const std::uint16_t flags = PickFlags(picked.space, SpaceOfB, picked.take, TakeB);
            Emit(FastOp::Copy, LocalSlot(local), picked.offset, 0, static_cast<std::uint16_t>(flags | drop));
        }
    }
    SetLocalFact(local, value.fact);
}

}  // namespace tavrel::core::script
