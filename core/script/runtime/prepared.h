// The private form in which the interpreter runs a function. The program's stack code is turned once into operations on
// the slots of a frame: a pushed local or constant becomes an operand instead of a copy, a comparison and its jump
// become one, and operations whose kinds are known lose their tests. Nothing of that can be seen from outside: the
// count of instructions, faults and their places stay those of the program's own code.
//
// Counting. An operation does not count itself. While code runs straight on, instructions executed and place in the
// program's code grow alike, so their difference `u` stands still; only a jump changes it, by a constant ("delta").
// Instructions executed are u plus the place. The budget is looked at where code can repeat: at jumps backward, at
// calls and at returns. Whoever finds it nearly spent goes on in exact code, a second form with one operation for each
// instruction and a look at the budget before each.
//
// Ownership. A slot owns a reference exactly when its kind is on the heap; an operation that takes a value out of a
// slot leaves another kind there. So a fault drops whatever the frames' slots hold.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "core/script/program/program.h"
#include "core/script/runtime/divisor.h"
#include "core/script/runtime/value.h"

namespace tavrel::core::script {

enum class FastOp : std::uint16_t {
#define TAVREL_FAST(name) name,
#include "core/script/runtime/fast_op.def"
#undef TAVREL_FAST
};

// Where a picked operand stands: in the frame, among the globals or in the pool of constants.
enum class OperandSpace : std::uint16_t { Frame = 0, Global = 1, Constant = 2 };

// Flags of operations with picked operands. Spaces take two bits each.
inline constexpr std::uint16_t SpaceOfB = 0;      // shift
inline constexpr std::uint16_t SpaceOfC = 2;      // shift
inline constexpr std::uint16_t SpaceOfA = 4;      // shift
inline constexpr std::uint16_t TakeB = 1U << 6U;  // the operand's reference is the operation's to keep or drop
inline constexpr std::uint16_t TakeC = 1U << 7U;
inline constexpr std::uint16_t TakeA = 1U << 8U;
inline constexpr std::uint16_t DropOld = 1U << 9U;    // the destination may own a reference
inline constexpr std::uint16_t CleanAll = 1U << 10U;  // of a return: the whole frame is to be dropped
inline constexpr std::uint16_t ComparisonShift = 11;  // of CompareAny: the Comparison

// The flags that tell the space of one picked operand, and whether it is to be taken.
[[nodiscard]] inline std::uint16_t PickFlags(OperandSpace space, int shift, bool take, std::uint16_t takeFlag) {
    const unsigned bits = static_cast<unsigned>(space) << static_cast<unsigned>(shift);
    return static_cast<std::uint16_t>(bits | (take ? takeFlag : 0U));
}

struct FastInstruction {
    FastOp op = FastOp::Step;
    std::uint16_t flags = 0;
    std::uint32_t a = 0;
    std::uint32_t b = 0;
    std::uint32_t c = 0;
};

// What an operation stands for: the instruction that its fault or its look at the budget belongs to, and what is to be
// added to u there, because a jump on the way was done away with.
struct Origin {
    std::uint32_t pc = 0;
    std::int32_t delta = 0;
};

// One function in one of the two forms.
struct PreparedCode {
    const FastInstruction* before = nullptr;  // the one in front of the first operation
    const Value* pool = nullptr;              // the constants
    std::uint64_t extentBytes = 0;            // of a frame
    bool clearLocals = false;                 // a local may be read before it is stored, and then is Nothing
    FunctionId function;
    std::uint32_t locals = 0;
    std::uint32_t extent = 0;           // slots of a frame: locals and the deepest operands
    std::vector<FastInstruction> code;  // one that never runs, so that a jump may lead to `before`; then the operations
    std::vector<Origin> origins;        // one for each operation
    std::vector<Value> constants;       // texts are those of the machine, without a reference of their own
    std::vector<Divisor> divisors;      // constants that something is divided by
    std::vector<std::int32_t> entries;  // exact code only: the operation that begins each instruction; -1 if none
    std::vector<std::uint32_t> depths;  // exact code only: operands that stand where each instruction begins
};

// Both forms of each function of a machine's program, made when first needed. Where a fast form stands, so does the
// exact one, with the same operands in the same slots at each instruction: so a run can change over.
struct PreparedProgram {
    PreparedProgram(const Program& program, const std::vector<Value>& texts);

    struct Pair {
        std::unique_ptr<PreparedCode> fast;
        std::unique_ptr<PreparedCode> exact;
        bool refused = false;  // no code that can run safely
    };
    const Program* program;
    const std::vector<Value>* texts;  // the machine's text pool
    std::vector<TypeId> recordTypes;  // type of each record of the program
    std::vector<Pair> functions;
    std::int64_t margin = 0;  // three times the longest function: more than any way between two looks at the budget
};

// The form of a function, prepared now if need be; null for a function whose code reaches outside what it may: an
// operand that indexes nothing, a jump beyond the code, more taken off the stack than stands on it.
[[nodiscard]] const PreparedCode* CodeOf(PreparedProgram& prepared, FunctionId function, bool exact);

inline constexpr std::uint32_t SlotBytes = sizeof(Value);
// All frames together; whoever calls beyond that meets the memory fault.
inline constexpr std::uint64_t MaxStackBytes = std::uint64_t{1} << 29U;
inline constexpr std::uint32_t MissingArguments = 0xFFFFFFFF;  // of CallHost: more arguments than operands

}  // namespace tavrel::core::script
