// Private to the preparation of code: one walk over a function's stack code that knows, at each place, what stands on
// the stack without having put it there. The function is cut into regions, each begun by an entry, an instruction to
// which something jumps. At an entry every operand stands in its own slot; inside a region operands may be put off:
// a local, a global, a constant or a comparison that nobody needed yet.
//
// The walk is done several times without keeping what it emits, until what is known at the entries settles, and then
// once more to keep it.
#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "core/script/program/comparison.h"
#include "core/script/program/program.h"
#include "core/script/runtime/natives.h"
#include "core/script/runtime/prepared.h"

namespace tavrel::core::script {

// What is known about a value.
struct Fact {
    Kind kind = Kind::Unknown;  // proven; Unknown for any
    bool constant = false;      // always that word; only of kinds of one word
    TypeId type;                // as declared somewhere, a hint that nothing unsafe may rest on
    std::int64_t word = 0;

    bool operator==(const Fact&) const = default;
};

// An operand as the walk sees it.
struct Operand {
    enum class Where : std::uint8_t {
        Temp,      // in its own slot, which owns it
        Local,     // a local's, borrowed
        Taken,     // a local's, which is overwritten before anyone reads it again
        Global,    // a global's, borrowed
        Constant,  // `fact` tells, or for a text `index`
        Condition  // a comparison put off: the members conditionLeft and conditionRight
    };
    Where where = Where::Temp;
    std::uint32_t index = 0;  // of the local, global or pool text
    Fact fact;
};

// What is known where a region begins. Of facts, nothing when they are not followed.
struct EntryState {
    std::size_t depth = 0;  // operands that stand there
    std::vector<Fact> locals;
    std::vector<Fact> operands;
};

class Translator {
public:
    // Makes the fast form beside `model`, the exact one; the exact form when that is null.
    Translator(const Program& program, const PreparedProgram& prepared, FunctionId function, const PreparedCode* model,
               PreparedCode& out);

    // False for code that may not run.
    [[nodiscard]] bool Run();

private:
    struct Fixup {
        std::uint32_t at = 0;  // the operation whose `a` is to become the place of an entry
        std::uint32_t pc = 0;
    };
    // A jump that needs an operation of its own on the way: its delta does not fit, or it goes backward.
    struct Stub {
        std::uint32_t at = 0;
        std::uint32_t pc = 0;
        std::int32_t delta = 0;
    };
    struct Threaded {
        std::uint32_t pc = 0;
        std::int32_t executed = 0;  // instructions passed on the way
        bool popped = false;        // the value that a jump kept was popped on the way
    };
    struct Picked {
        OperandSpace space = OperandSpace::Frame;
        std::uint32_t offset = 0;
        bool take = false;
    };

    // translator.cpp: the walk.
    bool Settle();
    void Restart(bool follow);
    void Stand(const EntryState& state);
    void EmitAll();
    void Forget();
    void NoteEntries();
    void Region(std::uint32_t start);
    void TrimOperands();
    void FallInto(std::uint32_t target);
    void Edge(std::uint32_t target);
    bool Join(EntryState& known);
    void Refuse() { good = false; }
    void Emit(FastOp op, std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint16_t flags = 0);
    void Patch();

    // translate_operands.cpp: operands put off and made good.
    [[nodiscard]] std::uint32_t SlotAt(std::size_t position) const;
    [[nodiscard]] std::uint32_t LocalSlot(std::uint32_t local) const { return local * SlotBytes; }
    void Push(const Operand& operand);
    void PushTemp(const Fact& fact);
    void PushConstant(Kind kind, std::int64_t word);
    Operand Pop();
    void Materialise(Operand& operand, std::size_t position);
    void MaterialiseFrom(std::size_t position);
    void MaterialiseBelow(std::size_t position);
    void MaterialiseLocal(std::uint32_t local);
    void MaterialiseGlobal(std::uint32_t global);
    void EmitComparison(std::size_t position);
    [[nodiscard]] std::uint32_t FrameSlot(Operand& operand, std::size_t position);
    [[nodiscard]] Picked Pick(Operand& operand, std::size_t position);
    [[nodiscard]] std::uint32_t ConstantIndex(const Operand& operand);
    [[nodiscard]] bool Fuses() const;
    [[nodiscard]] std::uint32_t Destination(bool dropsOld, std::uint16_t& flags);
    void PushResult(const Fact& fact);
    [[nodiscard]] Fact LocalFact(std::uint32_t local) const;
    void SetLocalFact(std::uint32_t local, const Fact& fact);
    [[nodiscard]] Kind HintKind(const Fact& fact) const;
    [[nodiscard]] bool Dies(std::uint32_t local) const;
    [[nodiscard]] bool Borrowed(std::uint32_t local) const;

    // translate_values.cpp, _arithmetic.cpp, _containers.cpp, _calls.cpp, _jumps.cpp: one instruction.
    void Translate(const Instruction& instruction);
    void TranslatePush(const Instruction& instruction);
    void TranslateMove(const Instruction& instruction);
    void Duplicate(std::size_t count);
    void TranslateStoreLocal(std::uint32_t local);
    void TranslateArithmetic(const Instruction& instruction);
    bool EmitWithProduct(Op op, std::uint32_t a, std::uint32_t b, std::uint32_t c);
    bool TranslateImmediate(Op op, Operand& left, Operand& right);
    void TranslateVector(const Instruction& instruction);
    void TranslateContainer(const Instruction& instruction);
    void TranslateElementSet(const Instruction& instruction);
    void TranslateMake(const Instruction& instruction);
    [[nodiscard]] TypeId RecordType(std::uint32_t record) const;
    void TranslateCompare(std::uint8_t number);
    void KeepConditionForJump();
    void TranslateNot();
    void TranslateCall(const Instruction& instruction);
    void TranslateNative(Native native, const Instruction& instruction);
    bool TranslateHotNative(Native native);
    void TranslateHost(const Instruction& instruction);
    void TranslateReturn(bool value);
    void TranslateGuard(const Instruction& instruction);
    void TranslateJump(std::uint32_t target);
    void TranslateConditional(bool jumpIf, bool keep, std::uint32_t target);

    // translate_jumps.cpp: where jumps lead.
    [[nodiscard]] Threaded Thread(std::uint32_t at, bool known, bool truth) const;
    [[nodiscard]] bool Inlinable(std::uint32_t at) const;
    void EmitJump(std::uint32_t to);
    void EmitBranch(bool truth, Operand& condition, std::size_t position, std::uint32_t to, std::int32_t toDelta);
    void EmitComparisonBranch(bool truth, std::size_t position);
    void LeaveInlined(std::uint32_t to);

    [[nodiscard]] bool Plain(const Fact& fact) const { return fact.kind != Kind::Unknown && !OnHeap(fact.kind); }
    [[nodiscard]] const Instruction& At(std::uint32_t at) const { return source.code[at]; }
    [[nodiscard]] std::uint32_t Size() const { return static_cast<std::uint32_t>(source.code.size()); }

    const Program& program;
    const std::vector<Value>& texts;
    const std::vector<TypeId>& recordTypes;
    const Function& source;
    const PreparedCode* model;
    const bool exact;
    PreparedCode& out;

    bool good = true;
    bool changed = false;
    bool emitting = false;
    bool following = true;              // whether facts are kept at entries
    std::uint64_t effort = 0;           // facts that were kept or joined so far
    std::vector<std::int32_t> entryOf;  // state of each instruction that is an entry; -1
    std::vector<EntryState> states;
    std::vector<std::int32_t> placeOf;  // operation of each entry; -1
    std::vector<Fixup> fixups;
    std::vector<Stub> stubs;
    std::map<std::pair<int, std::int64_t>, std::uint32_t> constantOf;  // by kind and word
    std::uint32_t deepest = 0;

    // The walk at the present place.
    std::uint32_t pc = 0;
    std::uint32_t next = 0;
    std::size_t regionFirst = 0;  // operation that begins the region
    bool ended = false;           // the region is done
    bool straight = true;         // no jump was followed since the region began
    bool inlining = false;        // behind a jump that was followed instead of taken
    std::uint32_t inlined = 0;    // jumps followed in this region
    std::int32_t delta = 0;       // what is owed to u
    bool loopCheck = false;       // a jump backward was followed: the next branch looks at the budget
    Origin resume;                // where exact code goes on if that look fails
    std::vector<Fact> locals;
    std::vector<Operand> operands;
    std::size_t placed = 0;  // so many operands from the bottom are known to stand in their slots
    Operand conditionLeft;
    Operand conditionRight;
    Comparison comparison = Comparison::Equal;  // of the Condition
    bool realComparison = false;
    std::int32_t fusedLocal = -1;  // local into which the result of this instruction goes
};

}  // namespace tavrel::core::script
