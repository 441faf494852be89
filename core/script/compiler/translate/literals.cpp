// The first element decides the type. An element of another type is reported and the rest goes on.
#include "core/script/compiler/translate/literals.h"

#include "core/script/compiler/declare/functions.h"
#include "core/script/compiler/translate/expressions.h"

namespace tavrel::core::script {

namespace {

// A namespace or the call of a procedure is no element.
TypeId CompileElement(Body& body, ExprId expr) {
    TypeId type = CompileExpr(body, expr);
    return RejectNonValue(body, expr, type) ? ErrorType : type;
}

}  // namespace

TypeId CompileListLit(Body& body, const Expr& expr) {
    if (expr.items.count == 0) return ErrorType;
    std::span<const ExprId> items = body.unit->Items(expr.items);
    TypeId element = CompileElement(body, items[0]);
    for (ExprId item : items.subspan(1)) {
        TypeId type = CompileElement(body, item);
        if (type == element || type == ErrorType || element == ErrorType) continue;
        body.Error(body.SpanOf(item),
                   "esta lista comecou com " + body.TypeName(element) + " e aqui veio " + body.TypeName(type),
                   "todos os elementos de uma lista tem o mesmo tipo");
    }
    if (element == ErrorType) return ErrorType;
    if (items.size() > MaxArguments) {
        body.Error(expr.span, "uma lista escrita no codigo cabe ate 255 elementos", "monte a lista com \"adicionar\"");
        return ErrorType;
    }
    body.code.EmitCount(Op::MakeList, items.size(), expr.span);
    return body.Types().List(element);
}

TypeId CompileDictLit(Body& body, const Expr& expr) {
    if (expr.items.count == 0) return ErrorType;
    std::span<const ExprId> keys = body.unit->Items(expr.keys);
    std::span<const ExprId> values = body.unit->Items(expr.items);
    TypeId key = ErrorType;
    TypeId value = ErrorType;
    for (std::size_t i = 0; i < values.size(); ++i) {
        TypeId keyType = CompileElement(body, keys[i]);
        TypeId valueType = CompileElement(body, values[i]);
        if (i == 0) {
            key = keyType;
            value = valueType;
        }
        if (keyType != key && keyType != ErrorType && key != ErrorType) {
            body.Error(body.SpanOf(keys[i]),
                       "as chaves deste dicionario sao " + body.TypeName(key) + ", e esta e " + body.TypeName(keyType));
        }
        if (valueType != value && valueType != ErrorType && value != ErrorType) {
            body.Error(body.SpanOf(values[i]), "os valores deste dicionario sao " + body.TypeName(value) +
                                                   ", e este e " + body.TypeName(valueType));
        }
    }
    if (key == ErrorType || value == ErrorType) return ErrorType;
    if (!body.Types().Comparable(key)) {
        body.Error(expr.span, "a chave de um dicionario tem de ser comparavel, e " + body.TypeName(key) + " nao e");
        return ErrorType;
    }
    if (values.size() > MaxArguments) {
        body.Error(expr.span, "um dicionario escrito no codigo cabe ate 255 pares");
        return ErrorType;
    }
    body.code.EmitCount(Op::MakeDict, values.size(), expr.span);
    return body.Types().Dict(key, value);
}

}  // namespace tavrel::core::script
