// Unary, binary and logical operators.
#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

// The operand of Compare, in the order of the tokens from Equal to GreaterEqual.
std::uint8_t ComparisonOperand(Tok op) {
    return static_cast<std::uint8_t>(static_cast<int>(op) - static_cast<int>(Tok::Equal));
}

bool IsComparison(Tok op) {
    return op >= Tok::Equal && op <= Tok::GreaterEqual;
}

// The operations of "+", "-", "*", "/" and "%" on two numbers of one type; PushNothing where there is none.
Op NumberOp(Tok op, bool real) {
    switch (op) {
        case Tok::Plus: return real ? Op::AddReal : Op::AddInt;
        case Tok::Minus: return real ? Op::SubReal : Op::SubInt;
        case Tok::Star: return real ? Op::MulReal : Op::MulInt;
        case Tok::Slash: return real ? Op::DivReal : Op::DivInt;
        default: return real ? Op::PushNothing : Op::ModInt;
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

}  // namespace

bool IsVector(Kind kind) {
    return kind == Kind::Vec2 || kind == Kind::Vec3 || kind == Kind::Color;
}

TypeId Compiler::CompileUnary(const Expr& expr, TypeId operand) {
    if (operand == FailedType) return FailedType;
    if (expr.op == Tok::Nao) {
        if (operand == BoolType) {
            Emit(Op::Not, expr.span);
            return BoolType;
        }
        Error(expr.span, "\"nao\" so vale para logico, e este e " + TypeName(operand));
        return FailedType;
    }
    Kind kind = KindOf(operand);
    if (kind != Kind::Real && kind != Kind::Int && !IsVector(kind)) {
        Error(expr.span, "nao da para trocar o sinal de " + TypeName(operand));
        return FailedType;
    }
    Emit(kind == Kind::Real ? Op::NegReal : kind == Kind::Int ? Op::NegInt : Op::NegVec, expr.span);
    return operand;
}

// The left operand's code runs from `first` up to where the right one begins, so either side can be promoted.
TypeId Compiler::CompileBinary(const Expr& expr, TypeId left, std::size_t first) {
    std::size_t middle = CodeSize();
    TypeId right = CompileExpr(expr.right);
    if (left == FailedType || right == FailedType) return FailedType;
    Kind leftKind = KindOf(left);
    if ((leftKind == Kind::Real || IsVector(leftKind)) && right == IntType) {
        right = AsReal(middle, CodeSize(), right, RealType, expr.right);
    } else if (left == IntType && right == RealType) {
        left = AsReal(first, middle, left, RealType, expr.left);
    }
    if (left == FailedType || right == FailedType) return FailedType;
    return IsComparison(expr.op) ? CompileComparison(expr, left, right) : CompileArithmetic(expr, left, right);
}

TypeId Compiler::CompileComparison(const Expr& expr, TypeId left, TypeId right) {
    if (left != right) {
        Error(
            expr.span, "nao da para comparar " + TypeName(left) + " com " + TypeName(right),
            ConversionHint(left, right, "nao ha conversao automatica; escreva real(...) ou inteiro(...) num dos dois"));
        return FailedType;
    }
    bool equality = expr.op == Tok::Equal || expr.op == Tok::NotEqual;
    if (equality && !program->types.Comparable(left) && !IsVector(KindOf(left))) {
        Error(expr.span, TypeName(left) + " nao se compara com \"==\"", "compare os campos que interessam, um a um");
        return FailedType;
    }
    if (!equality && !program->types.Ordered(left)) {
        Error(expr.span, TypeName(left) + " nao tem ordem", "\"<\" e \">\" valem entre inteiro, real e texto");
        return FailedType;
    }
    Emit(Op::Compare, ComparisonOperand(expr.op), 0, 0, expr.span);
    return BoolType;
}

TypeId Compiler::CompileArithmetic(const Expr& expr, TypeId left, TypeId right) {
    Op op = ArithmeticOp(program->types, expr.op, left, right);
    if (op == Op::PushNothing) return ReportArithmetic(expr, left, right);
    Emit(op, expr.span);
    return left;
}

TypeId Compiler::ReportArithmetic(const Expr& expr, TypeId left, TypeId right) {
    if (left != right) {
        Error(
            expr.span, "nao da para juntar " + TypeName(left) + " com " + TypeName(right),
            ConversionHint(left, right, "nao ha conversao automatica; escreva real(...) ou inteiro(...) num dos dois"));
    } else if (left == RealType) {
        Error(expr.span, "\"%\" so vale entre inteiros");
    } else if (IsVector(KindOf(left)) && expr.op != Tok::Percent) {
        Error(expr.span, "dois vetores nao se multiplicam nem se dividem",
              "multiplique por um real, ou use \"distancia\" e \"comprimento\"");
    } else {
        Error(expr.span, "esta conta nao vale para " + TypeName(left));
    }
    return FailedType;
}

// Short-circuits: the left value stays on the stack as the result when the jump is taken.
TypeId Compiler::CompileLogical(const Expr& expr, TypeId left) {
    CheckLogical(expr, expr.left, left);
    std::int32_t jump = Emit(expr.op == Tok::E ? Op::JumpIfFalseKeep : Op::JumpIfTrueKeep, expr.span);
    Emit(Op::Pop, expr.span);
    CheckLogical(expr, expr.right, CompileExpr(expr.right));
    PatchJump(jump);
    return BoolType;
}

void Compiler::CheckLogical(const Expr& expr, std::int32_t side, TypeId type) {
    if (type == FailedType || type == BoolType) return;
    const char* word = expr.op == Tok::E ? "\"e\"" : "\"ou\"";
    Error(SpanOf(side), std::string(word) + " so junta logicos, e este lado e " + TypeName(type));
}

}  // namespace tavrel::core::script
