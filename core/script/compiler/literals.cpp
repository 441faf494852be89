// Lists and dictionaries written in the code, and conversions: a type word before parentheses.
#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

// What an 8-bit operand can count.
constexpr std::int32_t MostElements = 255;

std::string ConversionForm(const char* form) {
    return std::string("esta conversao se escreve ") + form;
}

}  // namespace

// A namespace or the call of a procedure is no element.
TypeId Compiler::CompileElement(std::int32_t expr) {
    TypeId type = CompileExpr(expr);
    return RejectNonValue(expr, type) ? FailedType : type;
}

TypeId Compiler::CompileListLit(const Expr& expr) {
    if (expr.items.count == 0) return FailedType;
    std::span<const ExprId> items = unit->Items(expr.items);
    TypeId element = CompileElement(items[0]);
    for (std::int32_t item : items.subspan(1)) {
        TypeId type = CompileElement(item);
        if (type == element || type == FailedType || element == FailedType) continue;
        Error(SpanOf(item), "esta lista comecou com " + TypeName(element) + " e aqui veio " + TypeName(type),
              "todos os elementos de uma lista tem o mesmo tipo");
    }
    if (element == FailedType) return FailedType;
    if (expr.items.count > MostElements) {
        Error(expr.span, "uma lista escrita no codigo cabe ate 255 elementos", "monte a lista com \"adicionar\"");
        return FailedType;
    }
    Emit(Op::MakeList, static_cast<std::uint8_t>(expr.items.count), 0, 0, expr.span);
    return program->types.List(element);
}

TypeId Compiler::CompileDictLit(const Expr& expr) {
    if (expr.items.count == 0) return FailedType;
    std::span<const ExprId> keys = unit->Items(expr.keys);
    std::span<const ExprId> values = unit->Items(expr.items);
    TypeId key = FailedType;
    TypeId value = FailedType;
    for (std::size_t i = 0; i < values.size(); ++i) {
        TypeId keyType = CompileElement(keys[i]);
        TypeId valueType = CompileElement(values[i]);
        if (i == 0) {
            key = keyType;
            value = valueType;
        }
        if (keyType != key && keyType != FailedType && key != FailedType) {
            Error(SpanOf(keys[i]),
                  "as chaves deste dicionario sao " + TypeName(key) + ", e esta e " + TypeName(keyType));
        }
        if (valueType != value && valueType != FailedType && value != FailedType) {
            Error(SpanOf(values[i]),
                  "os valores deste dicionario sao " + TypeName(value) + ", e este e " + TypeName(valueType));
        }
    }
    if (key == FailedType || value == FailedType) return FailedType;
    if (!program->types.Comparable(key)) {
        Error(expr.span, "a chave de um dicionario tem de ser comparavel, e " + TypeName(key) + " nao e");
        return FailedType;
    }
    if (expr.items.count > MostElements) {
        Error(expr.span, "um dicionario escrito no codigo cabe ate 255 pares");
        return FailedType;
    }
    Emit(Op::MakeDict, static_cast<std::uint8_t>(expr.items.count), 0, 0, expr.span);
    return program->types.Dict(key, value);
}

TypeId Compiler::CompileConstruct(const Expr& expr) {
    if (!RejectLabels(expr, "esta conversao")) return FailedType;
    Arguments arguments = CompileArguments(expr);
    if (arguments.Failed()) return FailedType;
    switch (expr.op) {
        case Tok::Inteiro:
        case Tok::Real: return ConstructNumber(expr, arguments);
        case Tok::Texto: return ConstructText(expr, arguments);
        case Tok::Vetor2:
        case Tok::Vetor3:
        case Tok::Cor: return ConstructVector(expr, arguments);
        default: Error(expr.span, "este tipo nao se constroi assim"); return FailedType;
    }
}

TypeId Compiler::ConstructNumber(const Expr& expr, const Arguments& arguments) {
    bool toInteger = expr.op == Tok::Inteiro;
    TypeId wanted = toInteger ? IntType : RealType;
    TypeId other = toInteger ? RealType : IntType;
    TypeId given = arguments.types.size() == 1 ? arguments.types[0] : FailedType;
    if (given == wanted) return wanted;
    if (given == other) {
        EmitNative(toInteger ? Native::ToInt : Native::ToReal, 1, expr.span);
        return wanted;
    }
    if (given == TextType) {
        Error(expr.span,
              ConversionForm(toInteger ? "inteiro_de_texto(texto, padrao)" : "real_de_texto(texto, padrao)"));
    } else {
        Error(expr.span, ConversionForm(toInteger ? "inteiro(um real)" : "real(um inteiro)"));
    }
    return FailedType;
}

TypeId Compiler::ConstructText(const Expr& expr, const Arguments& arguments) {
    if (arguments.types.size() != 1) {
        Error(expr.span, ConversionForm("texto(um valor)"));
        return FailedType;
    }
    if (RejectProcedure(unit->Items(expr.items)[0], arguments.types[0])) return FailedType;
    if (arguments.types[0] != TextType) EmitNative(Native::ToText, 1, expr.span);
    return TextType;
}

TypeId Compiler::ConstructVector(const Expr& expr, Arguments& arguments) {
    for (std::size_t i = 0; i < arguments.types.size(); ++i) Fits(expr, arguments, i, RealType);
    if (arguments.Failed()) return FailedType;
    for (std::size_t i = 0; i < arguments.types.size(); ++i) {
        TypeId type = arguments.types[i];
        if (type == RealType) continue;
        Error(SpanOf(unit->Items(expr.items)[i]), "cada valor aqui e um real, e este e " + TypeName(type),
              type == IntType ? "escreva real(...) ou ponha um ponto no numero" : "");
        return FailedType;
    }
    std::size_t count = arguments.types.size();
    bool color = expr.op == Tok::Cor;
    std::size_t wanted = expr.op == Tok::Vetor2 ? 2 : expr.op == Tok::Vetor3 ? 3 : 4;
    if (color && count == 3) {
        EmitReal(255, expr.span);
    } else if (count != wanted) {
        Error(expr.span, ConversionForm(color         ? "cor(r, g, b) ou cor(r, g, b, a)"
                                        : wanted == 2 ? "vetor2(x, z)"
                                                      : "vetor3(x, y, z)"));
        return FailedType;
    }
    Emit(Op::MakeVector, static_cast<std::uint8_t>(wanted), 0, 0, expr.span);
    return wanted == 2 ? Vec2Type : wanted == 3 ? Vec3Type : ColorType;
}

}  // namespace tavrel::core::script
