// Random expressions and statements of the right types, in what the code around them may see, write and call. The
// script's declarations are made around it, in script.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/script/world/world_api.h"
#include "tests/random/forms.h"
#include "tests/random/numbers.h"

namespace tavrel::tests {

using Type = std::string;

// What code may do, which follows from the hooks it runs in.
struct Law {
    core::script::HookMask hooks = core::script::HookMask::None;
    bool onlyReads = false;  // calls nothing that has a law of its own
    bool rule = false;       // sees no variables but its own and constants
};

enum class Place : std::uint8_t { Constant, State, Visual, Progress, Derived, Fixed, Local };

struct Variable {
    std::string name;
    Type type;
    Place place = Place::Local;
};

struct Routine {
    std::string name;
    std::vector<Type> params;
    Type result;  // empty for a procedure
    Law law;
};

class CodeWriter {
public:
    CodeWriter(RandomNumbers& givenNumbers, bool givenWorld, bool givenRisky)
        : numbers(givenNumbers), world(givenWorld), risky(givenRisky) {}

    // The text of a body in a scope of its own: some statements, and behind them what a result wants.
    [[nodiscard]] std::string Body(const Law& givenLaw, const Type& givenResult, std::uint64_t most);
    // A value, outside of any statement.
    [[nodiscard]] std::string Value(const Law& givenLaw, const Type& type);
    // A call as a statement.
    [[nodiscard]] std::string CallLine(const Law& givenLaw, const Routine& routine);
    [[nodiscard]] static bool MayCall(const Law& caller, const Routine& routine);
    [[nodiscard]] std::string NewName(std::string_view stem) { return std::string(stem) + std::to_string(++names); }

    std::vector<Variable> variables;  // in scope; a later one hides an earlier one of its name
    std::vector<Routine> routines;    // may be called; each calls only those before it

private:
    [[nodiscard]] bool IsValidIn(core::script::HookMask hooks) const;
    [[nodiscard]] bool MayUse(const Form& form);
    [[nodiscard]] bool MaySee(const Variable& variable) const;
    [[nodiscard]] bool MayWrite(const Variable& variable) const;

    [[nodiscard]] std::string Expression(const Type& type, int depth);
    [[nodiscard]] std::string VariableOf(const Type& type, bool toWrite);
    [[nodiscard]] std::string FormOf(const Type& type, int depth);
    [[nodiscard]] std::string Filled(std::string_view form, int depth);
    [[nodiscard]] std::string Arguments(const std::vector<Type>& params, int depth);
    [[nodiscard]] std::string CallOf(const Type& type, int depth);
    [[nodiscard]] std::string WorldCall(const Type& type, int depth);
    [[nodiscard]] std::string WorldArguments(const std::vector<core::script::ApiParam>& params, int depth);

    void Line(const std::string& line) { text += line + "\n"; }
    struct Scope {
        std::size_t first;
        std::size_t outer;
    };
    [[nodiscard]] Scope Open();
    void Close(const Scope& scope);
    void Statements(int depth, std::uint64_t most);
    void Block(int depth, std::uint64_t most);
    void Statement(int depth);
    void Simple();
    void Declare();
    void Assign();
    void CallAny();
    void If(int depth);
    void Branch(const std::string& head, int depth);
    void While(int depth);
    void For(int depth);
    void ForEach(int depth);
    void LoopBody(const std::string& variable, const Type& type, int depth);
    void Switch(int depth);
    void Leave(int depth);
    [[nodiscard]] std::string ReturnLine();
    void Ending(int depth);

    RandomNumbers& numbers;
    bool world;
    bool risky;
    int names = 0;
    Law law;
    Type result;
    int loops = 0;
    std::size_t scopeStart = 0;  // into variables: the first of the innermost scope
    std::string text;
};

}  // namespace tavrel::tests
