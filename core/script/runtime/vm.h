// The machine that runs one compiled program: globals, stack, heap and generator of one script. A program goes in by
// reference and must outlive it; hooks are run one at a time; every run-time error ends that run as a fault with a
// message and a place, never as a crash. Given the same program, seed and answers of the world, every machine gives
// the same bits. One thread drives a machine; a program may be shared by many.
//
// A run that fails leaves no frames and no operands behind. Globals, objects and the generator keep what it did to
// them up to the fault, and the machine can go on with the next run.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/script/program/program.h"
#include "core/script/runtime/heap.h"
#include "core/script/runtime/host.h"
#include "core/script/runtime/value.h"
#include "core/script/runtime/value_stack.h"

namespace tavrel::core::script {

struct PreparedCode;
struct PreparedProgram;

class Vm {
public:
    // One active call.
    struct Frame {
        FunctionId function;
        std::uint64_t base = 0;  // of local slot 0 on the stack
        std::uint64_t pc = 0;    // of the next instruction, as far as anyone asks: set before calls of any sort
    };
    static constexpr std::size_t MaxFrames = 64;

    // Globals get the defaults of their types; Start computes their initial values.
    explicit Vm(const Program& program);
    Vm(const Vm&) = delete;
    Vm& operator=(const Vm&) = delete;
    ~Vm();

    // Receives each text of "escreva"; may be empty. It must not use the machine, to which the text belongs.
    std::function<void(const std::string&)> print;
    const Program* program;
    Heap heap;
    std::vector<Value> globals;
    ValueStack stack;
    std::vector<Frame> frames;
    std::vector<Value> texts;  // one shared text for each entry of Program::texts
    std::uint64_t randomState = 0;
    std::uint64_t randomIncrement = 1;
    Host* host = nullptr;  // the world; null when running without one
    bool faulted = false;
    std::string faultMessage;
    FileId faultFile{0};
    std::uint32_t faultOffset = 0;
    std::string faultFunction;
    std::uint64_t budget = 2'000'000;  // instructions allowed for one run
    std::uint64_t used = 0;            // instructions executed in this run, when it ends and in calls of the host
    bool started = false;

    // Seeds the generator.
    void SeedRandom(std::uint64_t seed, std::uint64_t salt);

    // Computes the initial values of the globals, once; later calls give true at once.
    [[nodiscard]] bool Start();
    // Runs a hook of the module; true at once when the script has none. What the hook returns is dropped.
    [[nodiscard]] bool RunHook(HookKind hook, const Value* args, int count);
    // Clears the last fault and runs one function with a budget of its own. `result` hands over its reference.
    [[nodiscard]] bool RunFunction(FunctionId function, const Value* args, int count, Value& result);
    // The interpreter: runs a function whose arguments stand on the stack already. On false the run's frames are gone,
    // and the caller clears the stack.
    [[nodiscard]] bool Execute(FunctionId function, std::uint64_t argumentCount, Value& result);

    // The default of a type; its reference goes to the caller. Nothing where no default exists, and at the memory
    // limit.
    [[nodiscard]] Value DefaultValue(TypeId type);
    // A record of defaults. False with a fault for an unknown record and at the memory limit.
    [[nodiscard]] bool NewRecordValue(RecordId record, Value& out);

    // For hosts: a record whose first `count` fields are the given values, a list of the given items, each retained.
    // Nothing on failure.
    [[nodiscard]] Value NewRecord(RecordId record, const Value* fields, int count);
    [[nodiscard]] Value NewList(const Value* items, int count);

    // The member's name; the number where the program has no such member.
    [[nodiscard]] std::string EnumText(const Value& value) const;

    // Drops values from the top until at most `size` remain; gives how many remain.
    std::size_t ClearStackTo(std::size_t size);

    // Records a fault at the instruction before the top frame's `pc`; the first fault of a run stays.
    void Fail(std::string message);
    // Records a fault at an instruction.
    void FaultAt(FunctionId function, std::uint64_t pc, std::string message);
    // Where and what the fault is, "<file>:<line>: erro: <message>"; empty without one.
    [[nodiscard]] std::string DescribeFault() const;

    // Calls a native on the top `count` values, which it takes off; its result is pushed. False on failure.
    [[nodiscard]] bool CallNativeAt(Native native, std::size_t count);

    // Fails at the memory limit: whether the heap may grow by that much, with the fault recorded when it may not.
    [[nodiscard]] bool Grow(std::uint64_t more) {
        if (heap.Fits(more)) return true;
        FailMemory();
        return false;
    }

private:
    friend class Interpreter;
    friend struct VmTesting;  // tests look at both forms of the code

    void FailMemory();
    [[nodiscard]] bool HasFunction(FunctionId function) const {
        return function && function.Number() < program->functions.size();
    }
    [[nodiscard]] bool HasRecord(RecordId record) const { return record && record.Number() < program->records.size(); }
    [[nodiscard]] bool Starves(std::uint64_t more);
    [[nodiscard]] Value DefaultAt(TypeId type, int depth);
    void FillRecord(RecordId record, Value& out, int depth);

    bool starved = false;                       // the default value being made lacks memory
    bool incomplete = false;                    // the defaults of the globals alone pass the limit: nothing can run
    std::unique_ptr<PreparedProgram> prepared;  // a private form of the functions, made when each first runs
};

}  // namespace tavrel::core::script
