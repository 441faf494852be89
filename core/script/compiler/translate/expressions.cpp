// Operators lean left, so a long sum is as deep as it is long. The chain of left operands is therefore walked on a
// stack of our own (Body::leftChain), down to the leaf and back up; recursion follows only what the parser bounds. A
// node of the chain is compiled when the code of its left operand stands, which is the order that the stack machine
// wants anyway.
#include "core/script/compiler/translate/expressions.h"

#include "core/script/compiler/translate/access.h"
#include "core/script/compiler/translate/calls.h"
#include "core/script/compiler/translate/conversions.h"
#include "core/script/compiler/translate/input_and_events.h"
#include "core/script/compiler/translate/literals.h"
#include "core/script/compiler/translate/names.h"
#include "core/script/compiler/translate/operators.h"
#include "core/script/compiler/translate/promotion.h"

namespace tavrel::core::script {

namespace {

// What must be compiled before the node itself; none for a leaf and for the forms that are told from the syntax.
ExprId LeftOperand(Body& body, const Expr& expr) {
    switch (expr.kind) {
        case ExprKind::Unary:
        case ExprKind::Binary:
        case ExprKind::Logic:
        case ExprKind::Index: return expr.left;
        case ExprKind::Field: return IsInputReading(body, expr) || IsEventReading(body, expr) ? ExprId() : expr.left;
        case ExprKind::Call: {
            const Expr& callee = body.At(expr.left);
            bool receiver = callee.kind == ExprKind::Field && !IsCommand(body, callee) && !IsEmission(body, callee);
            return receiver ? callee.left : ExprId();
        }
        case ExprKind::Integer:
        case ExprKind::Real:
        case ExprKind::Logical:
        case ExprKind::Text:
        case ExprKind::Name:
        case ExprKind::List:
        case ExprKind::Dictionary:
        case ExprKind::Conversion: break;
    }
    return ExprId();
}

TypeId CompileLeaf(Body& body, const Expr& expr) {
    switch (expr.kind) {
        case ExprKind::Integer: body.code.EmitInt(expr.integer, expr.span); return IntType;
        case ExprKind::Real: body.code.EmitReal(expr.real, expr.span); return RealType;
        case ExprKind::Logical: body.code.EmitBool(expr.logical, expr.span); return BoolType;
        case ExprKind::Text: body.code.EmitText(expr.text, expr.span); return TextType;
        case ExprKind::Name: return CompileName(body, expr);
        case ExprKind::Call: return CompileCall(body, expr);
        case ExprKind::Field:
            return IsInputReading(body, expr) ? CompileInputReading(body, expr) : CompileEventReading(body, expr);
        case ExprKind::List: return CompileListLit(body, expr);
        case ExprKind::Dictionary: return CompileDictLit(body, expr);
        case ExprKind::Conversion: return CompileConstruct(body, expr);
        case ExprKind::Unary:
        case ExprKind::Binary:
        case ExprKind::Logic:
        case ExprKind::Index: break;  // compiled on their left operand
    }
    return ErrorType;
}

TypeId CompileOnLeft(Body& body, const Expr& expr, TypeId left, std::size_t first) {
    switch (expr.kind) {
        case ExprKind::Unary: return CompileUnary(body, expr, left);
        case ExprKind::Binary: return CompileBinary(body, expr, left, first);
        case ExprKind::Logic: return CompileLogical(body, expr, left);
        case ExprKind::Index: return CompileIndex(body, expr, left);
        case ExprKind::Field: return CompileField(body, expr, left);
        case ExprKind::Call: return CompileReceiverCall(body, expr, left);
        case ExprKind::Integer:
        case ExprKind::Real:
        case ExprKind::Logical:
        case ExprKind::Text:
        case ExprKind::Name:
        case ExprKind::List:
        case ExprKind::Dictionary:
        case ExprKind::Conversion: break;  // compiled as leaves
    }
    return ErrorType;
}

}  // namespace

TypeId CompileExpr(Body& body, ExprId expr) {
    std::size_t base = body.leftChain.size();
    std::size_t first = body.code.Size();
    for (ExprId left = LeftOperand(body, body.At(expr)); left; left = LeftOperand(body, body.At(expr))) {
        body.leftChain.push_back(expr);
        expr = left;
    }
    TypeId type = CompileLeaf(body, body.At(expr));
    while (body.leftChain.size() > base) {
        expr = body.leftChain.back();
        body.leftChain.pop_back();
        type = CompileOnLeft(body, body.At(expr), type, first);
    }
    return type;
}

TypeId CompileValue(Body& body, ExprId expr, TypeId wanted) {
    std::size_t first = body.code.Size();
    TypeId type = CompileExpr(body, expr);
    if (type == ErrorType || RejectNamespace(body, expr, type)) return ErrorType;
    return PromoteLiteral(body, first, body.code.Size(), type, wanted, expr);
}

TypeId ProbeType(Body& body, ExprId expr) {
    std::size_t code = body.code.Size();
    std::size_t reports = body.compiler.diagnostics.items.size();
    TypeId type = CompileExpr(body, expr);
    body.code.CutTo(code);
    body.compiler.diagnostics.CutTo(reports);
    return type;
}

bool RejectNamespace(Body& body, ExprId expr, TypeId type) {
    const TypeInfo& info = body.Types().At(type);
    if (info.kind != Kind::Space) return false;
    body.Error(body.SpanOf(expr), Quoted(info.name) + " e um agrupamento da API do mundo, e nao um valor",
               body.declarations.world.ApiHint(info.name));
    return true;
}

bool RejectProcedure(Body& body, ExprId expr, TypeId type) {
    if (type != NothingType) return false;
    body.Error(body.SpanOf(expr), "esta chamada nao devolve valor, e aqui vai um valor",
               "um procedimento se chama numa linha so dele");
    return true;
}

bool RejectNonValue(Body& body, ExprId expr, TypeId type) {
    return RejectNamespace(body, expr, type) || RejectProcedure(body, expr, type);
}

}  // namespace tavrel::core::script
