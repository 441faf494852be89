// A call of a name is one of a function of the script if there is one of that name, else of a built-in function. A call
// on a value is a method, and one on a namespace is a function of the world.
#include "core/script/compiler/translate/calls.h"

#include <algorithm>

#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/host_calls.h"
#include "core/script/compiler/translate/input_and_events.h"
#include "core/script/compiler/translate/method_calls.h"
#include "core/script/compiler/translate/native_calls.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

void CompileUserArgument(Body& body, const Expr& call, std::size_t index, TypeId wanted, std::string_view name) {
    ExprId item = body.Item(call, index);
    TypeId type = CompileValue(body, item, wanted);
    if (type == ErrorType || wanted == ErrorType || type == wanted) return;
    body.Error(body.SpanOf(item), "o argumento " + std::to_string(index + 1) + " de " + Quoted(name) + " e " +
                                      body.TypeName(wanted) + ", e veio " + body.TypeName(type));
}

TypeId CompileUserCall(Body& body, const Expr& call, const FunctionEntry& callee, std::string_view name) {
    if (!RejectLabels(body, call, name)) return ErrorType;
    // The instance passes on to a function of the same behaviour.
    bool passesInstance = static_cast<bool>(callee.behaviour);
    if (passesInstance) body.code.EmitIndexed(Op::LoadLocal, 0, call.span);
    std::size_t given = static_cast<std::size_t>(call.items.count);
    if (given != callee.params.size()) {
        body.Error(call.span, Quoted(name) + " espera " + std::to_string(callee.params.size()) +
                                  " argumento(s) e recebeu " + std::to_string(given));
        CompileForErrors(body, call);
        return callee.result;
    }
    for (std::size_t i = 0; i < given; ++i) CompileUserArgument(body, call, i, callee.params[i], name);
    body.code.EmitCall(callee.function, given + (passesInstance ? 1 : 0), call.span);
    return callee.result;
}

}  // namespace

TypeId CompileCall(Body& body, const Expr& call) {
    const Expr& callee = body.At(call.left);
    if (callee.kind == ExprKind::Name) {
        NameId name = body.Intern(callee.text);
        FunctionEntryId entry = body.declarations.FindFunction(name, body.behaviour);
        if (!entry) return CompileNativeCall(body, call, name);
        return CompileUserCall(body, call, body.declarations.At(entry), callee.text);
    }
    if (callee.kind == ExprKind::Field) {
        return IsCommand(body, callee) ? CompileCommand(body, call) : CompileEmission(body, call);
    }
    body.Error(call.span, "isto nao e uma funcao");
    return ErrorType;
}

TypeId CompileReceiverCall(Body& body, const Expr& call, TypeId receiver) {
    if (receiver == ErrorType) return ErrorType;
    const Expr& callee = body.At(call.left);
    const TypeInfo& info = body.Types().At(receiver);
    if (info.kind == Kind::Space) return CompileHostCall(body, call, std::string(info.name), FoldName(callee.text));
    return CompileMethodCall(body, call, receiver, callee.text);
}

bool Arguments::Failed() const {
    return std::find(types.begin(), types.end(), ErrorType) != types.end();
}

Arguments CompileArguments(Body& body, const Expr& call) {
    Arguments arguments;
    arguments.types.reserve(static_cast<std::size_t>(call.items.count));
    arguments.offsets.reserve(static_cast<std::size_t>(call.items.count) + 1);
    for (ExprId item : body.unit->Items(call.items)) {
        arguments.offsets.push_back(body.code.Size());
        TypeId type = CompileExpr(body, item);
        arguments.types.push_back(RejectNamespace(body, item, type) ? ErrorType : type);
    }
    arguments.offsets.push_back(body.code.Size());
    return arguments;
}

void CompileForErrors(Body& body, const Expr& call) {
    for (ExprId item : body.unit->Items(call.items)) CompileExpr(body, item);
}

bool RejectLabels(Body& body, const Expr& call, std::string_view name) {
    for (std::string_view label : body.unit->Labels(call.labels)) {
        if (label.empty()) continue;
        body.Error(call.span, Quoted(name) + " nao tem argumentos com nome", "passe os valores na ordem");
        return false;
    }
    return true;
}

}  // namespace tavrel::core::script
