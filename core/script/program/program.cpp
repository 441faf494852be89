#include "core/script/program/program.h"

#include <algorithm>

namespace tavrel::core::script {

namespace {

struct OpRow {
    const char* name;
    const char* operands;
};

constexpr OpRow OpRows[] = {
#define TAVREL_OP(name, number, operands) {#name, operands},
#include "core/script/program/op.def"
#undef TAVREL_OP
};
static_assert(std::size(OpRows) == OpCount);
static_assert(static_cast<int>(Op::CallHost) == OpCount - 1);

constexpr const char* NativeNames[] = {
#define TAVREL_NATIVE(name, number, text) text,
#include "core/script/program/native.def"
#undef TAVREL_NATIVE
};
static_assert(std::size(NativeNames) == static_cast<std::size_t>(Native::Count));

}  // namespace

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
    auto number = static_cast<std::size_t>(op);
    return number < std::size(OpRows) ? OpRows[number].name : "?";
}

const char* OpOperands(Op op) {
    auto number = static_cast<std::size_t>(op);
    return number < std::size(OpRows) ? OpRows[number].operands : "";
}

const char* NativeName(Native native) {
    auto number = static_cast<std::size_t>(native);
    return number < std::size(NativeNames) ? NativeNames[number] : "?";
}

}  // namespace tavrel::core::script
