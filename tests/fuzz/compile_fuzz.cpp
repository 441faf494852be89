// A script with its imports, whatever it is, compiles or is reported. What compiles has operands within their pools,
// jumps within their function, and the same digest a second time.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tests/fuzz/require.h"

namespace tavrel::fuzz {

namespace {

using namespace core::script;

// The size of what operand `c` of an operation counts in; a number above all for one that counts in nothing.
std::size_t RangeOfC(const Program& program, const Function& function, Op op) {
    switch (op) {
        case Op::PushInt: return program.integers.size();
        case Op::PushText:
        case Op::Raise: return program.texts.size();
        case Op::LoadLocal:
        case Op::StoreLocal: return static_cast<std::size_t>(function.locals);
        case Op::LoadGlobal:
        case Op::StoreGlobal: return program.globals.size();
        case Op::MakeRecord:
        case Op::NewRecord: return program.records.size();
        case Op::Jump:
        case Op::JumpIfFalse:
        case Op::JumpIfTrue:
        case Op::JumpIfFalseKeep:
        case Op::JumpIfTrueKeep: return function.code.size();
        case Op::Call: return program.functions.size();
        case Op::CallNative: return static_cast<std::size_t>(Native::Count);
        default: return SIZE_MAX;
    }
}

// The initial values come from all sources, a function from its own.
std::size_t MaxText(const Program& program, const Function& function) {
    const bool initial = program.initializer && &function == &program.At(program.initializer);
    if (!initial) return program.At(function.file).text.size();
    std::size_t longest = 0;
    for (const SourceFile& source : program.sources) longest = std::max(longest, source.text.size());
    return longest;
}

void CheckFunction(const Program& program, const Function& function) {
    Require(!function.code.empty() && function.spans.size() == function.code.size());
    Require(function.code.back().op == static_cast<std::uint8_t>(Op::Return));
    Require(function.params <= function.locals || function.locals == 0);
    const std::size_t length = MaxText(program, function);
    for (const std::uint32_t span : function.spans) Require(span <= length);
    for (const Instruction& instruction : function.code) {
        const Op op = static_cast<Op>(instruction.op);
        Require(instruction.c < RangeOfC(program, function, op));
        const std::string_view used = OpOperands(op);
        Require(used.find('a') != std::string_view::npos || instruction.a == 0);
        Require(used.find('b') != std::string_view::npos || instruction.b == 0);
        Require(used.find('c') != std::string_view::npos || instruction.c == 0);
    }
}

}  // namespace

}  // namespace tavrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrel::fuzz;
    using namespace tavrel::core::script;
    const Sources sources(TextOf(data, size));
    Diagnostics diagnostics;
    Program program;
    const bool good = sources.Build(diagnostics, program);
    Require(good == (diagnostics.errors == 0));
    Require(!diagnostics.Describe().empty() || diagnostics.items.empty());
    if (!good) return 0;
    for (const Function& function : program.functions) CheckFunction(program, function);
    Diagnostics again;
    Program second;
    Require(sources.Build(again, second) && second.digest == program.digest);
    return 0;
}
