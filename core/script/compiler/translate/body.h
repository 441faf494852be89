// The code that is being translated: one function at a time, with the emitter that takes its instructions, the scopes
// that are open, its rights and the file that it comes from. The files of this folder are free functions over a Body,
// cut by construct. Expressions are typed and emitted in one walk: a Compile... operation emits the code of a node and
// returns the type that the code leaves on the stack, ErrorType when it has reported an error. A failed type travels
// upward in silence, so that one fault gives one report.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"
#include "core/script/compiler/emit/emitter.h"
#include "core/script/compiler/emit/locals.h"
#include "core/script/compiler/permissions/permits.h"

namespace tavrel::core::script {

// What a name stands for.
enum class PlaceKind : std::int32_t { None = 0, Local = 1, Field = 2, Global = 3 };

struct Place {
    PlaceKind kind = PlaceKind::None;
    std::int32_t index = -1;  // slot, field of the instance, or global
    TypeId type = ErrorType;
    GlobalCategory category = GlobalCategory::Derived;
    bool writable = true;
};

// The jumps of one open loop that wait for their target.
struct LoopPatch {
    std::vector<JumpId> breaks;
    std::vector<JumpId> continues;
};

// One serves a whole compile, function after function, so that its vectors are allocated once.
struct Body {
    Body(Compiler& shared, const Declarations& known) : compiler(shared), declarations(known), code(shared.program) {}

    Compiler& compiler;
    const Declarations& declarations;

    // Of the current function.
    const Unit* unit = nullptr;  // the file that the code comes from
    BehaviourId behaviour;       // none in the module
    Permits permits;
    TypeId returnType = NothingType;
    Emitter code;
    Locals locals;
    std::vector<LoopPatch> loops;

    std::vector<ExprId> leftChain;      // operators that wait for their left operand, of all open CompileExpr
    std::size_t recordDefaultCode = 0;  // operations that declared defaults of records took so far, in all functions

    // Reports a fault at a place of the current file.
    void Error(Span span, std::string message, std::string hint = {});

    [[nodiscard]] TypeTable& Types() { return compiler.program.types; }
    [[nodiscard]] const TypeTable& Types() const { return compiler.program.types; }
    [[nodiscard]] Kind KindOf(TypeId type) const { return Types().KindOf(type); }
    [[nodiscard]] std::string TypeName(TypeId type) const { return compiler.TypeName(type); }
    [[nodiscard]] RecordId RecordOf(TypeId type) const { return RecordId(Types().At(type).index); }
    [[nodiscard]] TypeId FieldType(RecordId record, FieldId field) const {
        return compiler.program.At(record).fieldTypes[field.Number()];
    }

    [[nodiscard]] const Expr& At(ExprId expr) const { return unit->At(expr); }
    [[nodiscard]] Span SpanOf(ExprId expr) const { return unit->At(expr).span; }
    [[nodiscard]] ExprId Item(const Expr& call, std::size_t index) const { return unit->Items(call.items)[index]; }

    [[nodiscard]] NameId Intern(std::string_view name) { return compiler.names.Intern(name); }
    // The fold of a name as written.
    [[nodiscard]] std::string_view Folded(std::string_view name) { return compiler.names.Folded(Intern(name)); }
};

// Begins a function of the program that runs with these permits. A function of a behaviour has its instance as a first
// local, out of reach of the source.
void BeginFunction(Body& body, FunctionId function, const Unit& unit, BehaviourId behaviour, const Permits& permits,
                   TypeId result);

// Ends it in a Return at that place.
void EndFunction(Body& body, Span span);

// Declares the parameters as locals.
void CompileParams(Body& body, const std::vector<Param>& params);

// A local hides a behaviour's field, and a field hides a global.
[[nodiscard]] Place Resolve(const Body& body, NameId name);

// Whether the current behaviour has a field of that name.
[[nodiscard]] bool IsBehaviourField(const Body& body, NameId name);

}  // namespace tavrel::core::script
