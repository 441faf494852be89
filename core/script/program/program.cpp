// The names of operations and natives, out of the tables that give their numbers. The switches refuse a number that two
// rows share, and the assertions one that leaves a gap.
#include "core/script/program/program.h"

#include <algorithm>

namespace tavrel::core::script {

#define TAVREL_OP(name, number, operands) static_assert(number < OpCount);
#include "core/script/program/op.def"

constexpr int NativeRows = 0
#define TAVREL_NATIVE(name, number, text) +1
#include "core/script/program/native.def"
    ;
static_assert(static_cast<int>(Native::Count) == NativeRows);
#define TAVREL_NATIVE(name, number, text) static_assert(number < NativeRows);
#include "core/script/program/native.def"

bool Program::Calls(Native native) const {
    auto calls = [native](const Instruction& instruction) {
        return instruction.op == static_cast<std::uint8_t>(Op::CallNative) &&
               instruction.c == static_cast<std::uint32_t>(native);
    };
    return std::any_of(functions.begin(), functions.end(), [&calls](const Function& function) {
        return std::any_of(function.code.begin(), function.code.end(), calls);
    });
}

const char* OpName(Op op) {
#define TAVREL_OP(name, number, operands) \
    case Op::name: return #name;
    switch (op) {
#include "core/script/program/op.def"
    }
    return "?";
}

const char* OpOperands(Op op) {
#define TAVREL_OP(name, number, operands) \
    case Op::name: return operands;
    switch (op) {
#include "core/script/program/op.def"
    }
    return "";
}

const char* NativeName(Native native) {
#define TAVREL_NATIVE(name, number, text) \
    case Native::name: return text;
    switch (native) {
#include "core/script/program/native.def"
        case Native::Count: break;
    }
    return "?";
}

}  // namespace tavrel::core::script
