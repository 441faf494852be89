// Both operands have the same type, but for a vector scaled by a real, so one look-up by operator and type finds the
// operation.
#include "core/script/compiler/translate/operators.h"

#include <optional>

#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/promotion.h"

namespace tavrel::core::script {

namespace {

// None for an operator of arithmetic.
std::optional<Comparison> ComparisonOf(Tok op) {
    switch (op) {
        case Tok::Equal: return Comparison::Equal;
        case Tok::NotEqual: return Comparison::NotEqual;
        case Tok::Less: return Comparison::Less;
        case Tok::LessEqual: return Comparison::LessEqual;
        case Tok::Greater: return Comparison::Greater;
        case Tok::GreaterEqual: return Comparison::GreaterEqual;
        default: return std::nullopt;
    }
}

// The operations of "+", "-", "*", "/" and "%" on two numbers of one type; PushNothing where there is none.
Op NumberOp(Tok op, bool real) {
    switch (op) {
        case Tok::Plus: return real ? Op::AddReal : Op::AddInt;
        case Tok::Minus: return real ? Op::SubReal : Op::SubInt;
        case Tok::Star: return real ? Op::MulReal : Op::MulInt;
        case Tok::Slash: return real ? Op::DivReal : Op::DivInt;
        case Tok::Percent: return real ? Op::PushNothing : Op::ModInt;
        default: return Op::PushNothing;
    }
}

Op SameVectorOp(Tok op) {
    if (op == Tok::Plus) return Op::AddVec;
    return op == Tok::Minus ? Op::SubVec : Op::PushNothing;
}

Op ScaledVectorOp(Tok op) {
    if (op == Tok::Star) return Op::ScaleVec;
    return op == Tok::Slash ? Op::DivVec : Op::PushNothing;
}

// The operation of two operands, PushNothing for a pair that has none.
Op ArithmeticOp(const TypeTable& types, Tok op, TypeId left, TypeId right) {
    bool vector = IsVector(types.KindOf(left));
    if (left != right) return vector && right == RealType ? ScaledVectorOp(op) : Op::PushNothing;
    if (left == IntType || left == RealType) return NumberOp(op, left == RealType);
    if (vector) return SameVectorOp(op);
    return left == TextType && op == Tok::Plus ? Op::ConcatText : Op::PushNothing;
}

TypeId CompileComparison(Body& body, const Expr& expr, Comparison comparison, TypeId left, TypeId right) {
    if (left != right) {
        body.Error(
            expr.span, "nao da para comparar " + body.TypeName(left) + " com " + body.TypeName(right),
            ConversionHint(left, right, "nao ha conversao automatica; escreva real(...) ou inteiro(...) num dos dois"));
        return ErrorType;
    }
    bool equality = comparison == Comparison::Equal || comparison == Comparison::NotEqual;
    if (equality && !body.Types().Comparable(left) && !IsVector(body.KindOf(left))) {
        body.Error(expr.span, body.TypeName(left) + " nao se compara com \"==\"",
                   "compare os campos que interessam, um a um");
        return ErrorType;
    }
    if (!equality && !body.Types().Ordered(left)) {
        body.Error(expr.span, body.TypeName(left) + " nao tem ordem",
                   "\"<\" e \">\" valem entre inteiro, real e texto");
        return ErrorType;
    }
    body.code.EmitCompare(comparison, expr.span);
    return BoolType;
}

TypeId ReportArithmetic(Body& body, const Expr& expr, TypeId left, TypeId right) {
    if (left != right) {
        body.Error(
            expr.span, "nao da para juntar " + body.TypeName(left) + " com " + body.TypeName(right),
            ConversionHint(left, right, "nao ha conversao automatica; escreva real(...) ou inteiro(...) num dos dois"));
    } else if (left == RealType) {
        body.Error(expr.span, "\"%\" so vale entre inteiros");
    } else if (IsVector(body.KindOf(left)) && expr.op != Tok::Percent) {
        body.Error(expr.span, "dois vetores nao se multiplicam nem se dividem",
                   "multiplique por um real, ou use \"distancia\" e \"comprimento\"");
    } else {
        body.Error(expr.span, "esta conta nao vale para " + body.TypeName(left));
    }
    return ErrorType;
}

TypeId CompileArithmetic(Body& body, const Expr& expr, TypeId left, TypeId right) {
    Op op = ArithmeticOp(body.Types(), expr.op, left, right);
    if (op == Op::PushNothing) return ReportArithmetic(body, expr, left, right);
    body.code.Emit(op, expr.span);
    return left;
}

void CheckLogical(Body& body, const Expr& expr, ExprId side, TypeId type) {
    if (type == ErrorType || type == BoolType) return;
    const char* word = expr.op == Tok::E ? "\"e\"" : "\"ou\"";
    body.Error(body.SpanOf(side), std::string(word) + " so junta logicos, e este lado e " + body.TypeName(type));
}

}  // namespace

TypeId CompileUnary(Body& body, const Expr& expr, TypeId operand) {
    if (operand == ErrorType) return ErrorType;
    if (expr.op == Tok::Nao) {
        if (operand == BoolType) {
            body.code.Emit(Op::Not, expr.span);
            return BoolType;
        }
        body.Error(expr.span, "\"nao\" so vale para logico, e este e " + body.TypeName(operand));
        return ErrorType;
    }
    Kind kind = body.KindOf(operand);
    if (kind != Kind::Real && kind != Kind::Int && !IsVector(kind)) {
        body.Error(expr.span, "nao da para trocar o sinal de " + body.TypeName(operand));
        return ErrorType;
    }
    body.code.Emit(kind == Kind::Real ? Op::NegReal : kind == Kind::Int ? Op::NegInt : Op::NegVec, expr.span);
    return operand;
}

// The left operand's code runs from `first` up to where the right one begins, so either side can be promoted.
TypeId CompileBinary(Body& body, const Expr& expr, TypeId left, std::size_t first) {
    std::size_t middle = body.code.Size();
    TypeId right = CompileExpr(body, expr.right);
    if (left == ErrorType || right == ErrorType) return ErrorType;
    Kind leftKind = body.KindOf(left);
    if ((leftKind == Kind::Real || IsVector(leftKind)) && right == IntType) {
        right = PromoteLiteral(body, middle, body.code.Size(), right, RealType, expr.right);
    } else if (left == IntType && right == RealType) {
        left = PromoteLiteral(body, first, middle, left, RealType, expr.left);
    }
    if (left == ErrorType || right == ErrorType) return ErrorType;
    if (std::optional<Comparison> comparison = ComparisonOf(expr.op)) {
        return CompileComparison(body, expr, *comparison, left, right);
    }
    return CompileArithmetic(body, expr, left, right);
}

// Short-circuits: the left value stays on the stack as the result when the jump is taken.
TypeId CompileLogical(Body& body, const Expr& expr, TypeId left) {
    CheckLogical(body, expr, expr.left, left);
    JumpId jump = body.code.EmitJump(expr.op == Tok::E ? Op::JumpIfFalseKeep : Op::JumpIfTrueKeep, expr.span);
    body.code.Emit(Op::Pop, expr.span);
    CheckLogical(body, expr, expr.right, CompileExpr(body, expr.right));
    body.code.PatchJump(jump);
    return BoolType;
}

bool IsVector(Kind kind) {
    return ComponentCount(kind) > 0;
}

}  // namespace tavrel::core::script
