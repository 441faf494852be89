// The order of the passes, and nothing else: each reads what the passes before it found out.
#include "core/script/compiler/compile.h"

#include <utility>

#include "core/script/compiler/declare/declare.h"
#include "core/script/compiler/permissions/permissions.h"
#include "core/script/compiler/permissions/reserved_functions.h"
#include "core/script/compiler/translate/functions.h"
#include "core/script/compiler/translate/initial_values.h"
#include "core/script/program/program_digest.h"

namespace tavrel::core::script {

namespace {

// What each declared function may do.
std::vector<Permits> PermitFunctions(Compiler& compiler, const Declarations& declarations) {
    std::vector<Permits> own;
    for (const FunctionEntry& entry : declarations.functions) own.push_back(ReservedPermits(entry).value_or(Permits()));
    return AnalyzePermissions(CollectCalls(compiler, declarations), std::move(own));
}

void Translate(Compiler& compiler, const Declarations& declarations, const std::vector<Permits>& permits) {
    Body body(compiler, declarations);
    CompileInitializer(body);
    const std::vector<Section>& behaviours = compiler.Main().behaviours;
    for (std::size_t i = 0; i < behaviours.size(); ++i) CompileBehaviourInitializer(body, BehaviourId(i));
    CompileFunctions(body, permits);
    for (const HookDecl& hook : compiler.Main().module.hooks) CompileHook(body, hook, BehaviourId());
    for (std::size_t i = 0; i < behaviours.size(); ++i) {
        for (const HookDecl& hook : behaviours[i].hooks) CompileHook(body, hook, BehaviourId(i));
    }
}

}  // namespace

bool Compile(std::vector<Unit> units, Diagnostics& diagnostics, Program& program, const Api* api) {
    if (units.empty()) return false;
    Compiler compiler{std::move(units), diagnostics, program, api, NameTable()};
    program.name = compiler.Main().module.name;
    for (const Unit& unit : compiler.units) program.sources.push_back(unit.source);
    const Declarations declarations = Declare(compiler);
    CheckReservedFunctions(compiler, declarations);
    // Faults in declarations would only cause others in the code.
    if (diagnostics.errors != 0) return false;
    Translate(compiler, declarations, PermitFunctions(compiler, declarations));
    if (diagnostics.errors != 0) return false;
    program.digest = DigestOf(program);
    return true;
}

}  // namespace tavrel::core::script
