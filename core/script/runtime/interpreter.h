// Private to the interpreter: one run of prepared code. The loop in execute.cpp keeps its registers in local
// variables; what is rare or long is a function here, called with those registers written back.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/script/program/comparison.h"
#include "core/script/runtime/prepared.h"
#include "core/script/runtime/vm.h"

namespace tavrel::core::script {

inline constexpr const char* TooDeepFault =
    "chamadas demais encaixadas (64); ha uma funcao que chama a si mesma sem parar";

inline constexpr const char* DivisionFault = "divisao por zero";
// Only a program that no compiler made gets this.
inline constexpr const char* InvalidFault = "o codigo deste programa nao e valido";

class Interpreter {
public:
    explicit Interpreter(Vm& givenVm) : vm(givenVm), entry(givenVm.frames.size()) {}

    [[nodiscard]] bool Run(FunctionId function, std::uint64_t argumentCount, Value& result);

private:
    // Where a caller goes on.
    struct Caller {
        const FastInstruction* next = nullptr;
        const PreparedCode* code = nullptr;
        std::uint64_t base = 0;  // of its frame, in bytes
        std::uint32_t pc = 0;    // of the program's instruction behind the call
    };

    // execute.cpp
    [[nodiscard]] bool Loop(const PreparedCode* code, std::uint64_t base, Value& result);

    // interpreter.cpp: false with a fault recorded in the machine; the loop sees to its place.
    [[nodiscard]] bool Enter(FunctionId function, std::uint64_t argumentCount, const PreparedCode*& code);
    void ShowFrames(const PreparedCode& code, std::uint64_t base, std::uint64_t pc);
    void ClearLocals(const PreparedCode& code, Value* locals);
    void Locate(FunctionId function, std::uint32_t pc);
    [[nodiscard]] bool FailIndex(std::size_t size, std::int64_t index);
    [[nodiscard]] bool FailInvalid();
    [[nodiscard]] bool FailText(const std::string& text);
    [[nodiscard]] bool Compare(const Value& a, const Value& b, Comparison comparison) const;
    [[nodiscard]] bool Concat(Value& left, const Value& right, bool mayTake, Value& out);
    [[nodiscard]] bool DictGet(const Value& dict, const Value& key, Value& out);
    [[nodiscard]] bool DictSet(Value* dict);
    [[nodiscard]] bool DictObtain(Value* dict, Value& out);
    [[nodiscard]] bool MakeList(Value* items, std::uint32_t count, Value& out);
    [[nodiscard]] bool MakeDict(Value* pairs, std::uint32_t count, Value& out);
    [[nodiscard]] bool MakeRecord(Value* fields, std::uint32_t record, Value& out);
    [[nodiscard]] bool NewEmpty(Kind kind, Value& out);
    [[nodiscard]] bool Append(const Value& list, const Value& item);
    [[nodiscard]] bool CallNative(Native native, std::uint32_t count);
    [[nodiscard]] bool CallUnary(Native native, Value* argument, Value& out);
    [[nodiscard]] bool CallHost(std::uint64_t first, std::uint32_t count, std::uint32_t function);

    Vm& vm;
    const std::size_t entry;  // frames that were active before this run
    std::array<Caller, Vm::MaxFrames + 1> callers;
    std::size_t depth = 0;  // of callers
};

}  // namespace tavrel::core::script
