// Calls: which form a call has, its arguments, and functions of the script.
#include <algorithm>

#include "core/script/compiler/compiler.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

// The forms that are told from the syntax; a call on a receiver comes to CompileReceiverCall.
TypeId Compiler::CompileCall(const Expr& call) {
    const Expr& callee = ExprAt(call.left);
    if (callee.kind == ExprKind::Name) {
        NameId name = names.Intern(callee.text);
        std::int32_t entry = FindFunction(name, behaviour);
        return entry >= 0 ? CompileUserCall(call, entry, callee.text) : CompileNativeCall(call, name);
    }
    if (callee.kind == ExprKind::Field) return IsCommand(callee) ? CompileCommand(call) : CompileEmission(call);
    Error(call.span, "isto nao e uma funcao");
    return FailedType;
}

TypeId Compiler::CompileReceiverCall(const Expr& call, TypeId receiver) {
    if (receiver == FailedType) return FailedType;
    const Expr& callee = ExprAt(call.left);
    const TypeInfo& info = program->types.At(receiver);
    if (info.kind == Kind::Space) return CompileHostCall(call, std::string(info.name), FoldName(callee.text));
    return CompileMethodCall(call, receiver, callee.text);
}

bool Arguments::Failed() const {
    return std::find(types.begin(), types.end(), FailedType) != types.end();
}

Arguments Compiler::CompileArguments(const Expr& call) {
    Arguments arguments;
    arguments.types.reserve(static_cast<std::size_t>(call.items.count));
    arguments.offsets.reserve(static_cast<std::size_t>(call.items.count) + 1);
    for (std::int32_t item : unit->Items(call.items)) {
        arguments.offsets.push_back(CodeSize());
        TypeId type = CompileExpr(item);
        arguments.types.push_back(RejectSpace(item, type) ? FailedType : type);
    }
    arguments.offsets.push_back(CodeSize());
    return arguments;
}

// Only host functions have named arguments. False when the call has any, which is then reported.
bool Compiler::RejectLabels(const Expr& call, std::string_view name) {
    for (std::string_view label : unit->Labels(call.labels)) {
        if (label.empty()) continue;
        Error(call.span, Quoted(name) + " nao tem argumentos com nome", "passe os valores na ordem");
        return false;
    }
    return true;
}

// For a call that is refused: its arguments still show their own faults.
void Compiler::CompileForErrors(const Expr& call) {
    for (std::int32_t item : unit->Items(call.items)) CompileExpr(item);
}

TypeId Compiler::CompileUserCall(const Expr& call, std::int32_t entry, std::string_view name) {
    if (!RejectLabels(call, name)) return FailedType;
    const FunctionEntry& callee = functions[static_cast<std::size_t>(entry)];
    // The instance passes on to a function of the same behaviour.
    bool passesInstance = callee.behaviour >= 0;
    if (passesInstance) EmitIndexed(Op::LoadLocal, 0, call.span);
    std::size_t given = static_cast<std::size_t>(call.items.count);
    if (given != callee.params.size()) {
        Error(call.span, Quoted(name) + " espera " + std::to_string(callee.params.size()) + " argumento(s) e recebeu " +
                             std::to_string(given));
        CompileForErrors(call);
        return callee.result;
    }
    for (std::size_t i = 0; i < given; ++i) CompileUserArgument(call, i, callee.params[i], name);
    Emit(Op::Call, static_cast<std::uint8_t>(given + (passesInstance ? 1 : 0)), 0,
         static_cast<std::uint32_t>(callee.function), call.span);
    return callee.result;
}

void Compiler::CompileUserArgument(const Expr& call, std::size_t index, TypeId wanted, std::string_view name) {
    std::int32_t item = unit->Items(call.items)[index];
    TypeId type = CompileValue(item, wanted);
    if (type == FailedType || wanted == FailedType || type == wanted) return;
    Error(SpanOf(item), "o argumento " + std::to_string(index + 1) + " de " + Quoted(name) + " e " + TypeName(wanted) +
                            ", e veio " + TypeName(type));
}

TypeId Compiler::WrittenAs(const Expr& call, std::string_view name, std::string_view form) {
    Error(call.span, Quoted(name) + " se escreve " + std::string(form));
    return FailedType;
}

}  // namespace tavrel::core::script
