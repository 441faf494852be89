// A function is its parameters, its body and a last Return; one with a result is reported when a path through the body
// has no "retorne". A hook is a function too, without a name of its own: the world calls it, so its parameters are
// fixed.
#include "core/script/compiler/translate/functions.h"

#include <utility>

#include "core/script/compiler/translate/statements.h"

namespace tavrel::core::script {

namespace {

struct HookForm {
    HookKind kind;
    Tok argument;  // the type as written
    const char* form;
};

// The hooks that take one argument; the others take none.
constexpr HookForm HookForms[] = {
    {HookKind::Tick, Tok::Real, "a cada tick (passo: real)"},
    {HookKind::Frame, Tok::Real, "a cada quadro (dt: real)"},
    {HookKind::Draw, Tok::Real, "ao desenhar (tempo: real)"},
    {HookKind::Touch, Tok::Objeto, "ao tocar (outro: objeto)"},
    {HookKind::Release, Tok::Objeto, "ao soltar (outro: objeto)"},
};

// Looks at the type as written; an unknown one gets a report of its own.
void CheckHookParams(Body& body, const HookDecl& hook) {
    for (const HookForm& form : HookForms) {
        if (form.kind != hook.kind) continue;
        bool good = hook.params.size() == 1 && body.unit->At(hook.params[0].type).kind == form.argument;
        if (!good) body.Error(hook.span, "este gancho se escreve " + Quoted(form.form));
        return;
    }
    if (!hook.params.empty()) body.Error(hook.span, Quoted(HookName(hook.kind)) + " nao recebe argumentos");
}

// A camera gives the world's record of that name, if the world has one.
TypeId HookResult(Body& body, HookKind kind) {
    if (kind != HookKind::Camera) return NothingType;
    TypeId camera = body.declarations.typeNames.Find(body.Intern("camera"));
    return camera ? camera : NothingType;
}

}  // namespace

void CompileFunctions(Body& body, const std::vector<Permits>& permits) {
    for (std::size_t i = 0; i < permits.size(); ++i) {
        const FunctionEntry& entry = body.declarations.functions[i];
        const FunctionDecl& declaration = *entry.declaration;
        BeginFunction(body, entry.function, *entry.unit, entry.behaviour, permits[i], entry.result);
        CompileParams(body, declaration.params);
        CompileBlock(body, declaration.body);
        if (entry.result != NothingType && !AlwaysReturns(*entry.unit, declaration.body)) {
            body.Error(declaration.span, Quoted(declaration.name) + " devolve " + body.TypeName(entry.result) +
                                             ", mas ha um caminho que termina sem \"retorne\"");
        }
        EndFunction(body, declaration.span);
    }
}

void CompileHook(Body& body, const HookDecl& hook, BehaviourId behaviour) {
    Program& program = body.compiler.program;
    std::string name = HookName(hook.kind);
    if (behaviour) name += " de " + program.At(behaviour).name;
    std::size_t params = hook.params.size() + (behaviour ? 1 : 0);
    TypeId result = HookResult(body, hook.kind);
    FunctionId function = AppendFunction(program, std::move(name), params, result, FileId(0));
    auto& hooks = behaviour ? program.At(behaviour).hooks : program.hooks;
    hooks[static_cast<std::size_t>(hook.kind)] = function;
    BeginFunction(body, function, body.compiler.Main(), behaviour, HookPermits(hook.kind), result);
    CheckHookParams(body, hook);
    CompileParams(body, hook.params);
    CompileBlock(body, hook.body);
    if (result != NothingType && !AlwaysReturns(*body.unit, hook.body)) {
        body.Error(hook.span, Quoted(HookName(hook.kind)) + " devolve " + body.TypeName(result) +
                                  ", e ha um caminho que nao chega a um \"retorne\"");
    }
    EndFunction(body, hook.span);
}

}  // namespace tavrel::core::script
