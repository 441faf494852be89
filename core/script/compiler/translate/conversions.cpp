// The arguments are compiled first; their number and types decide what is emitted behind them.
#include "core/script/compiler/translate/conversions.h"

#include "core/script/compiler/translate/calls.h"
#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/promotion.h"

namespace tavrel::core::script {

namespace {

std::string ConversionForm(const char* form) {
    return std::string("esta conversao se escreve ") + form;
}

TypeId ConstructNumber(Body& body, const Expr& expr, const Arguments& arguments) {
    bool toInteger = expr.op == Tok::Inteiro;
    TypeId wanted = toInteger ? IntType : RealType;
    TypeId other = toInteger ? RealType : IntType;
    TypeId given = arguments.types.size() == 1 ? arguments.types[0] : ErrorType;
    if (given == wanted) return wanted;
    if (given == other) {
        body.code.EmitNative(toInteger ? Native::ToInt : Native::ToReal, 1, expr.span);
        return wanted;
    }
    if (given == TextType) {
        body.Error(expr.span,
                   ConversionForm(toInteger ? "inteiro_de_texto(texto, padrao)" : "real_de_texto(texto, padrao)"));
    } else {
        body.Error(expr.span, ConversionForm(toInteger ? "inteiro(um real)" : "real(um inteiro)"));
    }
    return ErrorType;
}

TypeId ConstructText(Body& body, const Expr& expr, const Arguments& arguments) {
    if (arguments.types.size() != 1) {
        body.Error(expr.span, ConversionForm("texto(um valor)"));
        return ErrorType;
    }
    if (RejectProcedure(body, body.Item(expr, 0), arguments.types[0])) return ErrorType;
    if (arguments.types[0] != TextType) body.code.EmitNative(Native::ToText, 1, expr.span);
    return TextType;
}

TypeId ConstructVector(Body& body, const Expr& expr, Arguments& arguments) {
    for (std::size_t i = 0; i < arguments.types.size(); ++i) Fits(body, expr, arguments, i, RealType);
    if (arguments.Failed()) return ErrorType;
    for (std::size_t i = 0; i < arguments.types.size(); ++i) {
        TypeId type = arguments.types[i];
        if (type == RealType) continue;
        body.Error(body.SpanOf(body.Item(expr, i)), "cada valor aqui e um real, e este e " + body.TypeName(type),
                   type == IntType ? "escreva real(...) ou ponha um ponto no numero" : "");
        return ErrorType;
    }
    std::size_t count = arguments.types.size();
    bool color = expr.op == Tok::Cor;
    std::size_t wanted = expr.op == Tok::Vetor2 ? 2 : expr.op == Tok::Vetor3 ? 3 : 4;
    if (color && count == 3) {
        body.code.EmitReal(255, expr.span);
    } else if (count != wanted) {
        body.Error(expr.span, ConversionForm(color         ? "cor(r, g, b) ou cor(r, g, b, a)"
                                             : wanted == 2 ? "vetor2(x, z)"
                                                           : "vetor3(x, y, z)"));
        return ErrorType;
    }
    body.code.EmitCount(Op::MakeVector, wanted, expr.span);
    return wanted == 2 ? Vec2Type : wanted == 3 ? Vec3Type : ColorType;
}

}  // namespace

TypeId CompileConstruct(Body& body, const Expr& expr) {
    if (!RejectLabels(body, expr, "esta conversao")) return ErrorType;
    Arguments arguments = CompileArguments(body, expr);
    if (arguments.Failed()) return ErrorType;
    switch (expr.op) {
        case Tok::Inteiro:
        case Tok::Real: return ConstructNumber(body, expr, arguments);
        case Tok::Texto: return ConstructText(body, expr, arguments);
        case Tok::Vetor2:
        case Tok::Vetor3:
        case Tok::Cor: return ConstructVector(body, expr, arguments);
        default: body.Error(expr.span, "este tipo nao se constroi assim"); return ErrorType;
    }
}

}  // namespace tavrel::core::script
