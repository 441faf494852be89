// Code as text, one line for an instruction: its index, the operation, its operands. Only the operands that op.def
// gives an operation are shown, `c` in words where it points into a table. Bad code is listed as far as it can be read.
#include "core/script/program/listing.h"

#include <bit>

#include "core/script/numeric/number_text.h"

namespace tavrel::core::script {

namespace {

// What `c` stands for, in words; the bare number where it stands for nothing else or points nowhere.
std::string OperandInWords(const Program& program, Op op, std::uint32_t c) {
    switch (op) {
        case Op::PushInt:
            if (c < program.integers.size()) return IntegerToText(program.integers[c]);
            break;
        case Op::PushReal: return RealToText(std::bit_cast<float>(c));
        case Op::PushText:
        case Op::Raise:
            if (c < program.texts.size()) return std::string("\"").append(program.texts[c]).append("\"");
            break;
        case Op::LoadGlobal:
        case Op::StoreGlobal:
            if (c < program.globals.size()) return program.globals[c].name;
            break;
        case Op::Call:
            if (c < program.functions.size()) return program.functions[c].name;
            break;
        case Op::CallNative: return NativeName(static_cast<Native>(c));
        default: break;
    }
    return std::to_string(c);
}

}  // namespace

std::string ListFunction(const Program& program, const Function& function) {
    std::string text;
    for (std::size_t at = 0; at < function.code.size(); ++at) {
        const Instruction& instruction = function.code[at];
        Op op = static_cast<Op>(instruction.op);
        text += std::to_string(at) + " " + OpName(op);
        for (const char* operand = OpOperands(op); *operand != '\0'; ++operand) {
            text += ' ';
            if (*operand == 'a') text += std::to_string(instruction.a);
            if (*operand == 'b') text += std::to_string(instruction.b);
            if (*operand == 'c') text += OperandInWords(program, op, instruction.c);
        }
        text += "\n";
    }
    return text;
}

}  // namespace tavrel::core::script
