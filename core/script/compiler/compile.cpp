// The order of the passes, and nothing else: each reads what the passes before it left in the tables.
#include "core/script/compiler/compile.h"

#include <utility>

#include "core/script/compiler/compiler.h"
#include "core/script/program/program_digest.h"

namespace tavrel::core::script {

bool Compile(std::vector<Unit> units, Diagnostics& diagnostics, Program& program, const Api* api) {
    if (units.empty()) return false;
    return Compiler(std::move(units), diagnostics, program, api).Run();
}

Compiler::Compiler(std::vector<Unit> scriptUnits, Diagnostics& reports, Program& output, const Api* worldApi)
    : units(std::move(scriptUnits)), diagnostics(&reports), program(&output), api(worldApi) {}

bool Compiler::Run() {
    program->name = units[0].module.name;
    for (const Unit& each : units) program->sources.push_back(each.source);
    if (!Declare()) return false;
    Generate();
    if (diagnostics->errors != 0) return false;
    program->digest = DigestOf(*program);
    return true;
}

bool Compiler::Declare() {
    Prelude();
    CollectTypes();
    ResolveRecords();
    CollectActions();
    CollectGlobals();
    CollectBehaviours();
    for (std::size_t i = 0; i < units.size(); ++i) {
        AddFunctions(units[i], units[i].module, -1, static_cast<std::int32_t>(i));
        // Only the main script has behaviours.
        for (std::size_t owner = 0; i == 0 && owner < units[0].behaviours.size(); ++owner) {
            AddFunctions(units[0], units[0].behaviours[owner], static_cast<std::int32_t>(owner), 0);
        }
    }
    CheckReservedFunctions();
    return diagnostics->errors == 0;
}

void Compiler::Generate() {
    PermitReservedFunctions();
    AnalyzePermissions();
    CompileInitializer();
    for (std::size_t i = 0; i < program->behaviours.size(); ++i) {
        CompileBehaviourInitializer(static_cast<std::int32_t>(i));
    }
    CompileFunctions();
    unit = &units[0];
    for (const HookDecl& hook : units[0].module.hooks) CompileHook(hook, -1);
    for (std::size_t owner = 0; owner < units[0].behaviours.size(); ++owner) {
        for (const HookDecl& hook : units[0].behaviours[owner].hooks) {
            CompileHook(hook, static_cast<std::int32_t>(owner));
        }
    }
}

void Compiler::CompileFunctions() {
    for (const FunctionEntry& entry : functions) {
        const FunctionDecl& declaration = *entry.declaration;
        unit = entry.unit;
        BeginFunction(entry.function, entry.behaviour, entry.permits, entry.result);
        CompileParams(declaration.params);
        CompileBlock(declaration.body);
        if (entry.result != NothingType && !AlwaysReturns(declaration.body)) {
            Error(declaration.span, Quoted(declaration.name) + " devolve " + TypeName(entry.result) +
                                        ", mas ha um caminho que termina sem \"retorne\"");
        }
        EndFunction(declaration.span);
    }
}

void Compiler::Error(const Unit& where, Span span, std::string message, std::string hint) {
    diagnostics->Add(where.source, span, std::move(message), std::move(hint));
}

void Compiler::Error(Span span, std::string message, std::string hint) {
    Error(unit == nullptr ? units[0] : *unit, span, std::move(message), std::move(hint));
}

std::string Quoted(std::string_view name) {
    std::string text;
    text.reserve(name.size() + 2);
    text += '"';
    text += name;
    text += '"';
    return text;
}

std::string ConversionHint(TypeId one, TypeId other, const char* text) {
    bool mixed = (one == IntType && other == RealType) || (one == RealType && other == IntType);
    return mixed ? text : "";
}

}  // namespace tavrel::core::script
