// Writes the code of one function after the other: instructions with the offset in the source that each comes from,
// jumps that are patched when their target is known, and the pools of constants that all functions share. It knows
// operations and operands, and neither types nor names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/script/compiler/declare/name_table.h"
#include "core/script/program/program.h"

namespace tavrel::core::script {

// An instruction of the current function that jumps and waits for its target.
using JumpId = Index<struct Jump>;

class Emitter {
public:
    // Fills the functions and pools of a program that outlives it.
    explicit Emitter(Program& output) : program(output) {}

    // Begins the code of a function, which ends with End.
    void Begin(FunctionId function);

    // Ends in a Return whatever stands before, so that control cannot run off the code, and hands code and spans over
    // to the function. `locals` is the greatest number of slots live at once.
    void End(Span span, std::int32_t locals);

    // How many instructions stand, which is where the next one will.
    [[nodiscard]] std::size_t Size() const { return code.size(); }

    // Takes back every instruction from `size` on, for code that was only tried. Pools keep what they took.
    void CutTo(std::size_t size);

    // The instruction at a place, to rewrite it.
    [[nodiscard]] Instruction& At(std::size_t place) { return code[place]; }

    void Emit(Op op, std::uint8_t a, std::uint16_t b, std::uint32_t c, Span span);
    void Emit(Op op, Span span) { Emit(op, 0, 0, 0, span); }
    // With a count, a component or a kind of handle as its operand `a`.
    void EmitCount(Op op, std::size_t count, Span span) { Emit(op, static_cast<std::uint8_t>(count), 0, 0, span); }
    void EmitCompare(Comparison comparison, Span span) {
        Emit(Op::Compare, static_cast<std::uint8_t>(comparison), 0, 0, span);
    }
    // With an index as its operand `c`.
    void EmitIndexed(Op op, std::int32_t index, Span span) { Emit(op, 0, 0, static_cast<std::uint32_t>(index), span); }
    template <class Tag>
    void EmitIndexed(Op op, Index<Tag> index, Span span) {
        EmitIndexed(op, index.value, span);
    }

    // A jump forward. Its target is where the next instruction stands at the time of the patch.
    JumpId EmitJump(Op op, Span span);
    void PatchJump(JumpId jump) { code[jump.Number()].c = static_cast<std::uint32_t>(code.size()); }
    void PatchJumps(const std::vector<JumpId>& jumps);
    // A jump to a place that stands already.
    void EmitJumpTo(std::size_t target, Span span) { Emit(Op::Jump, 0, 0, static_cast<std::uint32_t>(target), span); }

    // Constants. Equal integers and equal texts share one entry of their pool, in the order of first use.
    void EmitInt(std::int64_t value, Span span);
    void EmitReal(float value, Span span);
    void EmitBool(bool value, Span span) { EmitCount(Op::PushBool, value ? 1 : 0, span); }
    void EmitText(std::string_view text, Span span) { EmitIndexed(Op::PushText, InternText(text), span); }
    std::int32_t InternText(std::string_view text);
    [[nodiscard]] std::int64_t IntegerAt(std::uint32_t place) const { return program.integers[place]; }

    // Calls with `count` arguments on the stack.
    void EmitCall(FunctionId function, std::size_t count, Span span);
    void EmitNative(Native native, std::size_t count, Span span);
    void EmitHost(std::uint32_t id, std::size_t count, Span span);

private:
    Program& program;
    FunctionId current;
    std::vector<Instruction> code;     // of the current function; its room serves the next one
    std::vector<std::uint32_t> spans;  // parallel to code
    std::unordered_map<std::int64_t, std::int32_t> integerPool;  // into Program::integers
    NameTable textPool;                                          // numbers texts as Program::texts does
};

}  // namespace tavrel::core::script
