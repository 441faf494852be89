// A reading of an action is a call of the world with the name of the action and the number of the player. An event is
// three hidden globals: how often it was emitted, its last value, and up to which emission it has been noticed.
#include "core/script/compiler/translate/input_and_events.h"

#include "core/script/compiler/declare/prelude.h"
#include "core/script/compiler/translate/calls.h"
#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/rights.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

// Where the value of an event may be read: the hooks that show a moment.
constexpr HookMask ShowingHooks = HookMask::Frame | HookMask::Draw | HookMask::Camera;

// The node "entrada" or "entrada(n)"; null for anything else.
const Expr* InputRoot(const Body& body, ExprId expr) {
    if (!expr) return nullptr;
    const Expr& root = body.At(expr);
    const Expr& name = root.kind == ExprKind::Call ? body.At(root.left) : root;
    return name.kind == ExprKind::Name && FoldsTo(name.text, "entrada") ? &root : nullptr;
}

// Whether a field stands on "eventos.E", and the script has events and no variable of that name.
bool IsOverEvents(Body& body, const Expr& field) {
    const Expr& event = body.At(field.left);
    if (event.kind != ExprKind::Field || body.compiler.program.events.empty()) return false;
    const Expr& root = body.At(event.left);
    return root.kind == ExprKind::Name && FoldsTo(root.text, "eventos") &&
           !body.declarations.globalNames.Has(body.Intern("eventos"));
}

// The player whose input is read: the number in "entrada(n)", else 1.
bool CompilePlayer(Body& body, const Expr& root, Span span) {
    if (root.kind != ExprKind::Call) {
        body.code.EmitInt(1, span);
        return true;
    }
    if (root.items.count != 1) {
        body.Error(root.span, "\"entrada(jogador)\" recebe um numero de jogador",
                   "o jogador 1 e \"entrada\" sem parenteses");
        return false;
    }
    ExprId player = body.Item(root, 0);
    TypeId type = CompileValue(body, player, IntType);
    if (type != ErrorType && type != IntType) {
        body.Error(body.SpanOf(player), "o jogador e um inteiro, e veio " + body.TypeName(type));
    }
    return true;
}

const EventInfo* FindEvent(Body& body, const Expr& field) {
    EventId event = body.declarations.eventNames.Find(body.Intern(field.text));
    if (event) return &body.compiler.program.At(event);
    std::string list;
    for (std::size_t i = 0; i < body.compiler.program.events.size() && !body.compiler.diagnostics.Full(); ++i) {
        list += (i == 0 ? "" : ", ") + body.compiler.program.events[i].name;
    }
    body.Error(field.span, "este script nao declara o evento " + Quoted(field.text),
               "os eventos deste script sao " + list);
    return nullptr;
}

bool HasOneUnlabelled(const Body& body, const Expr& call) {
    return call.items.count == 1 && body.unit->Labels(call.labels)[0].empty();
}

bool CheckCommand(Body& body, const Expr& call, const Expr& root, const Expr& action) {
    std::string name(action.text);
    if (root.kind == ExprKind::Call) {
        body.Error(root.span, "um comando sai da entrada deste jogador, e nao da de outro",
                   "escreva \"entrada." + name + ".enviar(...)\", sem numero de jogador");
        return false;
    }
    HookMask hooks = body.compiler.api->commandHooks;
    if (!CheckHooks(body, hooks, call.span, "entrada." + name + ".enviar", false)) return false;
    ActionId index = body.declarations.actionNames.Find(body.Intern(name));
    if (!index) {
        body.Error(action.span, "este script nao declara a acao " + Quoted(name),
                   "um comando e uma acao sem ligacao: declare com \"acao " + name + "\"");
        return false;
    }
    if (!body.compiler.program.actions[index.Number()].bindings.empty()) {
        body.Error(action.span, Quoted(name) + " tem ligacao de dispositivo, e so uma acao sem ligacao e um comando",
                   "declare o comando a parte: \"acao " + name + "_comando\"");
        return false;
    }
    return true;
}

}  // namespace

bool IsInputReading(const Body& body, const Expr& field) {
    const Expr& action = body.At(field.left);
    return action.kind == ExprKind::Field && HasInput(body.compiler.api) && InputRoot(body, action.left) != nullptr;
}

bool IsEventReading(Body& body, const Expr& field) {
    return IsOverEvents(body, field);
}

bool IsCommand(const Body& body, const Expr& callee) {
    const Expr& action = body.At(callee.left);
    return action.kind == ExprKind::Field && FoldsTo(callee.text, "enviar") && HasInput(body.compiler.api) &&
           body.compiler.api->commandSend != 0 && InputRoot(body, action.left) != nullptr;
}

bool IsEmission(Body& body, const Expr& callee) {
    return FoldsTo(callee.text, "emitir") && IsOverEvents(body, callee);
}

TypeId CompileInputReading(Body& body, const Expr& expr) {
    std::string_view reading = body.Folded(expr.text);
    std::uint32_t id = reading == "apertado"      ? body.compiler.api->inputPressed
                       : reading == "pressionado" ? body.compiler.api->inputHeld
                       : reading == "solto"       ? body.compiler.api->inputReleased
                                                  : body.compiler.api->inputValue;
    bool value = reading == "valor";
    if (!value && reading != "apertado" && reading != "pressionado" && reading != "solto") {
        body.Error(expr.span, "uma acao nao tem " + Quoted(expr.text),
                   "as leituras sao apertado, pressionado, solto e valor");
        return ErrorType;
    }
    if (!CheckHooks(body, body.compiler.api->inputHooks, expr.span, "entrada", false)) return ErrorType;
    const Expr& action = body.At(expr.left);
    if (!body.declarations.actionNames.Has(body.Intern(action.text))) {
        std::string list;
        for (std::size_t i = 0; i < body.compiler.program.actions.size() && !body.compiler.diagnostics.Full(); ++i) {
            list += (i == 0 ? "as acoes deste script sao " : ", ") + body.compiler.program.actions[i].name;
        }
        body.Error(action.span, "este script nao declara a acao " + Quoted(action.text),
                   body.compiler.program.actions.empty()
                       ? "declare com \"acao " + std::string(action.text) + " = tecla ...\""
                       : list);
        return ErrorType;
    }
    body.code.EmitText(action.text, expr.span);
    if (!CompilePlayer(body, body.At(action.left), expr.span)) return ErrorType;
    body.code.EmitHost(id, 2, expr.span);
    return value ? RealType : BoolType;
}

TypeId CompileEventReading(Body& body, const Expr& expr) {
    const Expr& field = body.At(expr.left);
    const EventInfo* event = FindEvent(body, field);
    if (event == nullptr) return ErrorType;
    std::string_view reading = body.Folded(expr.text);
    bool value = reading == "valor";
    if (!value && reading != "chegou" && reading != "quantos") {
        body.Error(expr.span, "um evento nao tem " + Quoted(expr.text), "as leituras sao chegou, quantos e valor");
        return ErrorType;
    }
    std::string name = "eventos." + std::string(field.text) + "." + std::string(expr.text);
    if (!CheckHooks(body, value ? ShowingHooks : HookMask::Frame, expr.span, name, false)) return ErrorType;
    if (value) {
        body.code.EmitIndexed(Op::LoadGlobal, event->valueGlobal, expr.span);
        return event->type;
    }
    body.code.EmitIndexed(Op::LoadGlobal, event->countGlobal, expr.span);
    body.code.EmitIndexed(Op::LoadGlobal, event->seenGlobal, expr.span);
    if (reading == "quantos") {
        body.code.Emit(Op::SubInt, expr.span);
        return IntType;
    }
    body.code.EmitCompare(Comparison::NotEqual, expr.span);
    return BoolType;
}

TypeId CompileCommand(Body& body, const Expr& call) {
    const Expr& action = body.At(body.At(call.left).left);
    if (!CheckCommand(body, call, body.At(action.left), action)) return ErrorType;
    if (!HasOneUnlabelled(body, call)) {
        body.Error(call.span, "\"enviar\" recebe o valor do comando, um real",
                   "por exemplo: entrada." + std::string(action.text) + ".enviar(3.0)");
        CompileForErrors(body, call);
        return ErrorType;
    }
    body.code.EmitText(action.text, call.span);
    ExprId item = body.Item(call, 0);
    TypeId type = CompileValue(body, item, RealType);
    if (type != ErrorType && type != RealType) {
        body.Error(body.SpanOf(item), "o valor de um comando e um real, e veio " + body.TypeName(type));
        return ErrorType;
    }
    body.code.EmitHost(body.compiler.api->commandSend, 2, call.span);
    return NothingType;
}

TypeId CompileEmission(Body& body, const Expr& call) {
    const Expr& field = body.At(body.At(call.left).left);
    const EventInfo* event = FindEvent(body, field);
    if (event == nullptr) return ErrorType;
    std::string name(field.text);
    if (!CheckHooks(body, HookMask::Tick, call.span, "eventos." + name + ".emitir", true)) return ErrorType;
    if (!HasOneUnlabelled(body, call)) {
        body.Error(call.span, "\"emitir\" recebe o valor do evento (" + body.TypeName(event->type) + ")",
                   "por exemplo: eventos." + name + ".emitir(...)");
        CompileForErrors(body, call);
        return ErrorType;
    }
    body.code.EmitIndexed(Op::LoadGlobal, event->countGlobal, call.span);
    body.code.EmitInt(1, call.span);
    body.code.Emit(Op::AddInt, call.span);
    body.code.EmitIndexed(Op::StoreGlobal, event->countGlobal, call.span);
    ExprId item = body.Item(call, 0);
    TypeId type = CompileValue(body, item, event->type);
    if (type != ErrorType && type != event->type) {
        body.Error(body.SpanOf(item), "o valor de " + Quoted(name) + " e " + body.TypeName(event->type) + ", e veio " +
                                          body.TypeName(type));
        return ErrorType;
    }
    body.code.EmitIndexed(Op::StoreGlobal, event->valueGlobal, call.span);
    return NothingType;
}

}  // namespace tavrel::core::script
