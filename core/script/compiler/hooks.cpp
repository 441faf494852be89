// Hooks: functions that the world calls at its own moments.
#include <utility>

#include "core/script/compiler/compiler.h"

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

}  // namespace

void Compiler::CompileHook(const HookDecl& hook, std::int32_t owner) {
    std::string name = HookName(hook.kind);
    auto params = static_cast<std::int32_t>(hook.params.size());
    FunctionId* hooks = program->hooks.data();
    if (owner >= 0) {
        BehaviourInfo& info = program->behaviours[static_cast<std::size_t>(owner)];
        name += " de " + info.name;
        ++params;
        hooks = info.hooks.data();
    }
    TypeId result = NothingType;
    if (hook.kind == HookKind::Camera) {
        TypeId camera = typeNames.Find(names.Intern("camera"));
        if (camera >= 0) result = camera;
    }
    std::int32_t index = AppendFunction(std::move(name), params, result, 0);
    hooks[static_cast<std::size_t>(hook.kind)] = index;
    BeginFunction(index, owner, HookPermits(hook.kind), result);
    CheckHookParams(hook);
    CompileParams(hook.params);
    CompileBlock(hook.body);
    if (result != NothingType && !AlwaysReturns(hook.body)) {
        Error(hook.span, Quoted(HookName(hook.kind)) + " devolve " + TypeName(result) +
                             ", e ha um caminho que nao chega a um \"retorne\"");
    }
    EndFunction(hook.span);
}

// Looks at the type as written; an unknown one gets a report of its own.
void Compiler::CheckHookParams(const HookDecl& hook) {
    for (const HookForm& form : HookForms) {
        if (form.kind != hook.kind) continue;
        bool good =
            hook.params.size() == 1 && unit->types[static_cast<std::size_t>(hook.params[0].type)].kind == form.argument;
        if (!good) Error(hook.span, "este gancho se escreve " + Quoted(form.form));
        return;
    }
    if (!hook.params.empty()) Error(hook.span, Quoted(HookName(hook.kind)) + " nao recebe argumentos");
}

}  // namespace tavrel::core::script
