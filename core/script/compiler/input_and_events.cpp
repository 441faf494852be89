// The forms that are told from the syntax alone: "entrada.A.leitura", "entrada.A.enviar(...)", "eventos.E.leitura"
// and "eventos.E.emitir(...)".
#include "core/script/compiler/compiler.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

constexpr HookMask ShowingHooks = HookMask::Frame | HookMask::Draw | HookMask::Camera;

}  // namespace

// The node "entrada" or "entrada(n)"; null for anything else.
const Expr* Compiler::InputRoot(std::int32_t expr) const {
    if (expr < 0) return nullptr;
    const Expr& root = ExprAt(expr);
    const Expr& name = root.kind == ExprKind::Call ? ExprAt(root.left) : root;
    return name.kind == ExprKind::Name && FoldsTo(name.text, "entrada") ? &root : nullptr;
}

bool Compiler::IsInputReading(const Expr& field) const {
    const Expr& action = ExprAt(field.left);
    return action.kind == ExprKind::Field && HasInput() && InputRoot(action.left) != nullptr;
}

bool Compiler::IsCommand(const Expr& callee) const {
    const Expr& action = ExprAt(callee.left);
    return action.kind == ExprKind::Field && FoldsTo(callee.text, "enviar") && HasInput() && api->commandSend != 0 &&
           InputRoot(action.left) != nullptr;
}

// Whether a field stands on "eventos.E", and the script has events and no variable of that name.
bool Compiler::IsOverEvents(const Expr& field) {
    const Expr& event = ExprAt(field.left);
    if (event.kind != ExprKind::Field || program->events.empty()) return false;
    const Expr& root = ExprAt(event.left);
    return root.kind == ExprKind::Name && FoldsTo(root.text, "eventos") && !globalNames.Has(names.Intern("eventos"));
}

bool Compiler::IsEventReading(const Expr& field) {
    return IsOverEvents(field);
}

bool Compiler::IsEmission(const Expr& callee) {
    return FoldsTo(callee.text, "emitir") && IsOverEvents(callee);
}

TypeId Compiler::CompileInputReading(const Expr& expr) {
    std::string_view reading = names.Folded(names.Intern(expr.text));
    std::uint32_t id = reading == "apertado"      ? api->inputPressed
                       : reading == "pressionado" ? api->inputHeld
                       : reading == "solto"       ? api->inputReleased
                                                  : api->inputValue;
    bool value = reading == "valor";
    if (!value && reading != "apertado" && reading != "pressionado" && reading != "solto") {
        Error(expr.span, "uma acao nao tem " + Quoted(expr.text),
              "as leituras sao apertado, pressionado, solto e valor");
        return FailedType;
    }
    if (!CheckHooks(api->inputHooks, expr.span, "entrada", false)) return FailedType;
    const Expr& action = ExprAt(expr.left);
    if (!actionNames.Has(names.Intern(action.text))) {
        std::string list;
        for (std::size_t i = 0; i < program->actions.size() && !diagnostics->Full(); ++i) {
            list += (i == 0 ? "as acoes deste script sao " : ", ") + program->actions[i].name;
        }
        Error(action.span, "este script nao declara a acao " + Quoted(action.text),
              program->actions.empty() ? "declare com \"acao " + std::string(action.text) + " = tecla ...\"" : list);
        return FailedType;
    }
    EmitText(action.text, expr.span);
    if (!CompilePlayer(ExprAt(action.left), expr.span)) return FailedType;
    EmitHost(id, 2, expr.span);
    return value ? RealType : BoolType;
}

// The player whose input is read: the number in "entrada(n)", else 1.
bool Compiler::CompilePlayer(const Expr& root, Span span) {
    if (root.kind != ExprKind::Call) {
        EmitInt(1, span);
        return true;
    }
    if (root.items.count != 1) {
        Error(root.span, "\"entrada(jogador)\" recebe um numero de jogador",
              "o jogador 1 e \"entrada\" sem parenteses");
        return false;
    }
    std::int32_t player = unit->Items(root.items)[0];
    TypeId type = CompileValue(player, IntType);
    if (type != FailedType && type != IntType) {
        Error(SpanOf(player), "o jogador e um inteiro, e veio " + TypeName(type));
    }
    return true;
}

const EventInfo* Compiler::FindEvent(const Expr& field) {
    std::int32_t event = eventNames.Find(names.Intern(field.text));
    if (event >= 0) return &program->events[static_cast<std::size_t>(event)];
    std::string list;
    for (std::size_t i = 0; i < program->events.size() && !diagnostics->Full(); ++i) {
        list += (i == 0 ? "" : ", ") + program->events[i].name;
    }
    Error(field.span, "este script nao declara o evento " + Quoted(field.text), "os eventos deste script sao " + list);
    return nullptr;
}

TypeId Compiler::CompileEventReading(const Expr& expr) {
    const Expr& field = ExprAt(expr.left);
    const EventInfo* event = FindEvent(field);
    if (event == nullptr) return FailedType;
    std::string_view reading = names.Folded(names.Intern(expr.text));
    bool value = reading == "valor";
    if (!value && reading != "chegou" && reading != "quantos") {
        Error(expr.span, "um evento nao tem " + Quoted(expr.text), "as leituras sao chegou, quantos e valor");
        return FailedType;
    }
    std::string name = "eventos." + std::string(field.text) + "." + std::string(expr.text);
    if (!CheckHooks(value ? ShowingHooks : HookMask::Frame, expr.span, name, false)) return FailedType;
    if (value) {
        EmitIndexed(Op::LoadGlobal, event->valueGlobal, expr.span);
        return event->type;
    }
    EmitIndexed(Op::LoadGlobal, event->countGlobal, expr.span);
    EmitIndexed(Op::LoadGlobal, event->seenGlobal, expr.span);
    if (reading == "quantos") {
        Emit(Op::SubInt, expr.span);
        return IntType;
    }
    Emit(Op::Compare, 1, 0, 0, expr.span);
    return BoolType;
}

bool Compiler::HasOneUnlabelled(const Expr& call) const {
    return call.items.count == 1 && unit->Labels(call.labels)[0].empty();
}

TypeId Compiler::CompileCommand(const Expr& call) {
    const Expr& action = ExprAt(ExprAt(call.left).left);
    if (!CheckCommand(call, ExprAt(action.left), action)) return FailedType;
    if (!HasOneUnlabelled(call)) {
        Error(call.span, "\"enviar\" recebe o valor do comando, um real",
              "por exemplo: entrada." + std::string(action.text) + ".enviar(3.0)");
        CompileForErrors(call);
        return FailedType;
    }
    EmitText(action.text, call.span);
    std::int32_t item = unit->Items(call.items)[0];
    TypeId type = CompileValue(item, RealType);
    if (type != FailedType && type != RealType) {
        Error(SpanOf(item), "o valor de um comando e um real, e veio " + TypeName(type));
        return FailedType;
    }
    EmitHost(api->commandSend, 2, call.span);
    return NothingType;
}

bool Compiler::CheckCommand(const Expr& call, const Expr& root, const Expr& action) {
    std::string name(action.text);
    if (root.kind == ExprKind::Call) {
        Error(root.span, "um comando sai da entrada deste jogador, e nao da de outro",
              "escreva \"entrada." + name + ".enviar(...)\", sem numero de jogador");
        return false;
    }
    if (!CheckHooks(api->commandHooks, call.span, "entrada." + name + ".enviar", false)) return false;
    std::int32_t index = actionNames.Find(names.Intern(name));
    if (index < 0) {
        Error(action.span, "este script nao declara a acao " + Quoted(name),
              "um comando e uma acao sem ligacao: declare com \"acao " + name + "\"");
        return false;
    }
    if (!program->actions[static_cast<std::size_t>(index)].bindings.empty()) {
        Error(action.span, Quoted(name) + " tem ligacao de dispositivo, e so uma acao sem ligacao e um comando",
              "declare o comando a parte: \"acao " + name + "_comando\"");
        return false;
    }
    return true;
}

TypeId Compiler::CompileEmission(const Expr& call) {
    const Expr& field = ExprAt(ExprAt(call.left).left);
    const EventInfo* event = FindEvent(field);
    if (event == nullptr) return FailedType;
    std::string name(field.text);
    if (!CheckHooks(HookMask::Tick, call.span, "eventos." + name + ".emitir", true)) return FailedType;
    if (!HasOneUnlabelled(call)) {
        Error(call.span, "\"emitir\" recebe o valor do evento (" + TypeName(event->type) + ")",
              "por exemplo: eventos." + name + ".emitir(...)");
        CompileForErrors(call);
        return FailedType;
    }
    EmitIndexed(Op::LoadGlobal, event->countGlobal, call.span);
    EmitInt(1, call.span);
    Emit(Op::AddInt, call.span);
    EmitIndexed(Op::StoreGlobal, event->countGlobal, call.span);
    std::int32_t item = unit->Items(call.items)[0];
    TypeId type = CompileValue(item, event->type);
    if (type != FailedType && type != event->type) {
        Error(SpanOf(item),
              "o valor de " + Quoted(name) + " e " + TypeName(event->type) + ", e veio " + TypeName(type));
        return FailedType;
    }
    EmitIndexed(Op::StoreGlobal, event->valueGlobal, call.span);
    return NothingType;
}

}  // namespace tavrel::core::script
