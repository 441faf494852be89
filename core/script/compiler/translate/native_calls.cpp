// One row for each name tells the form of its overloads; a form is a function that looks at the types of the arguments,
// which stand on the stack by then, and picks the native.
#include "core/script/compiler/translate/native_calls.h"

#include <algorithm>

#include "core/script/compiler/declare/functions.h"
#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/operators.h"
#include "core/script/compiler/translate/promotion.h"
#include "core/script/syntax/foreign_words.h"

namespace tavrel::core::script {

namespace {

enum class Form {
    Print,
    ParseInt,
    ParseReal,
    Format,
    Size,
    Contains,
    Split,
    Copy,
    Abs,
    Float,  // one or two reals in, a real out
    Extreme,
    Clamp,
    Interpolate,
    Distance,
    PlanarDistance,
    Length,
    Normalize,
    Random,
    RandomReal,
};

struct NativeRow {
    std::string_view name;
    Form form;
    Native native = Native::Count;  // where the form alone does not tell it
    std::size_t count = 0;          // arguments of a Float
};

// Sorted by name.
constexpr NativeRow Rows[] = {
    {"abs", Form::Abs},
    {"aleatorio", Form::Random},
    {"aleatorio_real", Form::RandomReal},
    {"arco_cosseno", Form::Float, Native::Acos, 1},
    {"arco_seno", Form::Float, Native::Asin, 1},
    {"arco_tangente", Form::Float, Native::Atan, 1},
    {"arco_tangente2", Form::Float, Native::Atan2, 2},
    {"arredondar", Form::Float, Native::Round, 1},
    {"comprimento", Form::Length},
    {"contem", Form::Contains},
    {"copiar", Form::Copy},
    {"cosseno", Form::Float, Native::Cos, 1},
    {"distancia", Form::Distance},
    {"distancia_plana", Form::PlanarDistance},
    {"dividir", Form::Split},
    {"escreva", Form::Print},
    {"exp", Form::Float, Native::Exp, 1},
    {"formatar", Form::Format},
    {"inteiro_de_texto", Form::ParseInt},
    {"interpolar", Form::Interpolate},
    {"limitar", Form::Clamp},
    {"log", Form::Float, Native::Log, 1},
    {"maior", Form::Extreme, Native::MaxInt},
    {"menor", Form::Extreme, Native::MinInt},
    {"normalizar", Form::Normalize},
    {"piso", Form::Float, Native::Floor, 1},
    {"potencia", Form::Float, Native::Pow, 2},
    {"raiz", Form::Float, Native::Sqrt, 1},
    {"real_de_texto", Form::ParseReal},
    {"seno", Form::Float, Native::Sin, 1},
    {"tamanho", Form::Size},
    {"tangente", Form::Float, Native::Tan, 1},
    {"teto", Form::Float, Native::Ceil, 1},
};
static_assert(std::is_sorted(std::begin(Rows), std::end(Rows),
                             [](const NativeRow& one, const NativeRow& other) { return one.name < other.name; }));

// Whether scripts call a native of that name by a row here. They reach the others as methods, whose names have a point,
// and as conversions, which are named like their types.
constexpr bool IsCallable(std::string_view name) {
    bool isConversion = name == "texto" || name == "inteiro" || name == "real";
    return isConversion || name.find('.') != std::string_view::npos ||
           std::any_of(std::begin(Rows), std::end(Rows), [name](const NativeRow& row) { return row.name == name; });
}
#define TAVREL_NATIVE(name, number, text) static_assert(IsCallable(text), text " has no row");
#include "core/script/program/native.def"

const NativeRow* FindNative(std::string_view folded) {
    const NativeRow* row =
        std::lower_bound(std::begin(Rows), std::end(Rows), folded,
                         [](const NativeRow& one, std::string_view name) { return one.name < name; });
    return row != std::end(Rows) && row->name == folded ? row : nullptr;
}

Native InterpolationOf(Kind kind) {
    switch (kind) {
        case Kind::Real: return Native::LerpReal;
        case Kind::Vec2: return Native::LerpVec2;
        case Kind::Vec3: return Native::LerpVec3;
        case Kind::Color: return Native::LerpColor;
        default: return Native::Count;
    }
}

TypeId EmitNativeCall(Body& body, const NativeCall& native, Native number, TypeId result) {
    body.code.EmitNative(number, native.Count(), native.call.span);
    return result;
}

TypeId WrittenAs(Body& body, const Expr& call, std::string_view name, std::string_view form) {
    body.Error(call.span, Quoted(name) + " se escreve " + std::string(form));
    return ErrorType;
}

TypeId CompileFormat(Body& body, NativeCall& native) {
    if (native.Count() == 0 || native.Type(0) != TextType) {
        return RefuseNative(body, native, "formatar(modelo, valores...)");
    }
    if (native.Count() > MaxArguments) return RefuseNative(body, native, "formatar com ate 254 valores");
    bool good = true;
    for (std::size_t i = 1; i < native.Count(); ++i) {
        good = !RejectProcedure(body, body.Item(native.call, i), native.Type(i)) && good;
    }
    return good ? EmitNativeCall(body, native, Native::Format, TextType) : ErrorType;
}

TypeId CompileSize(Body& body, NativeCall& native) {
    Kind kind = native.Count() == 1 ? body.KindOf(native.Type(0)) : Kind::Unknown;
    if (kind == Kind::Text) return EmitNativeCall(body, native, Native::TextSize, IntType);
    if (kind == Kind::List) return EmitNativeCall(body, native, Native::ListSize, IntType);
    if (kind == Kind::Dict) return EmitNativeCall(body, native, Native::DictSize, IntType);
    return RefuseNative(body, native, "tamanho(texto, lista ou dicionario)");
}

TypeId CompileContains(Body& body, NativeCall& native) {
    if (native.Count() != 2) return RefuseNative(body, native, "contem(onde, o que)");
    const TypeInfo container = body.Types().At(native.Type(0));
    switch (container.kind) {
        case Kind::List:
            if (!Fits(body, native.call, native.arguments, 1, container.element)) {
                return RefuseNative(body, native, "contem(lista, um elemento dela)");
            }
            return EmitNativeCall(body, native, Native::ListContains, BoolType);
        case Kind::Dict:
            if (!Fits(body, native.call, native.arguments, 1, container.key)) {
                return RefuseNative(body, native, "contem(dicionario, uma chave dele)");
            }
            return EmitNativeCall(body, native, Native::DictContains, BoolType);
        case Kind::Text:
            if (native.Type(1) != TextType) return RefuseNative(body, native, "contem(texto, texto)");
            return EmitNativeCall(body, native, Native::TextContains, BoolType);
        default: return RefuseNative(body, native, "contem(texto, lista ou dicionario, o que)");
    }
}

TypeId CompileCopy(Body& body, NativeCall& native) {
    Kind kind = native.Count() == 1 ? body.KindOf(native.Type(0)) : Kind::Unknown;
    if (kind == Kind::List) return EmitNativeCall(body, native, Native::ListCopy, native.Type(0));
    if (kind == Kind::Dict) return EmitNativeCall(body, native, Native::DictCopy, native.Type(0));
    if (kind == Kind::Record) return EmitNativeCall(body, native, Native::RecordCopy, native.Type(0));
    return RefuseNative(body, native, "copiar(lista, dicionario ou registro)");
}

TypeId CompileFloatNative(Body& body, NativeCall& native, Native number, std::size_t count) {
    if (native.Count() != count) return RefuseNative(body, native, count == 1 ? "com um real" : "com dois reais");
    for (std::size_t i = 0; i < count; ++i) Fits(body, native.call, native.arguments, i, RealType);
    if (native.Failed()) return ErrorType;
    for (std::size_t i = 0; i < count; ++i) {
        TypeId type = native.Type(i);
        if (type == RealType) continue;
        body.Error(body.SpanOf(body.Item(native.call, i)),
                   Quoted(native.name) + " trabalha com real, e este e " + body.TypeName(type),
                   type == IntType ? "escreva real(...)" : "");
        return ErrorType;
    }
    return EmitNativeCall(body, native, number, RealType);
}

// Numbers of one type in, that type out. A single argument has no siblings to share with.
TypeId CompileShared(Body& body, NativeCall& native, Native integer, Native real, std::size_t count,
                     const char* mismatch, const char* kinds) {
    if (count > 1) UnifyToReal(body, native.call, native.arguments);
    if (native.Failed()) return ErrorType;
    const std::vector<TypeId>& types = native.arguments.types;
    if (types.size() != count || std::count(types.begin(), types.end(), types[0]) != static_cast<int>(count)) {
        return RefuseNative(body, native, mismatch);
    }
    if (types[0] == IntType) return EmitNativeCall(body, native, integer, IntType);
    if (types[0] == RealType) return EmitNativeCall(body, native, real, RealType);
    return RefuseNative(body, native, kinds);
}

TypeId CompileInterpolate(Body& body, NativeCall& native) {
    if (native.Count() != 3) return RefuseNative(body, native, "interpolar(de, ate, fracao)");
    Fits(body, native.call, native.arguments, 2, RealType);
    if (native.Type(0) == RealType || native.Type(1) == RealType || native.Type(0) == IntType) {
        Fits(body, native.call, native.arguments, 0, RealType);
        Fits(body, native.call, native.arguments, 1, RealType);
    }
    Native number = InterpolationOf(body.KindOf(native.Type(0)));
    bool good = native.Type(0) == native.Type(1) && native.Type(2) == RealType && number != Native::Count;
    if (!good) return RefuseNative(body, native, "interpolar entre reais, vetores ou cores");
    return EmitNativeCall(body, native, number, native.Type(0));
}

TypeId CompileDistance(Body& body, NativeCall& native, bool planar) {
    bool good = native.Count() == 2 && native.Type(0) == native.Type(1) && IsVector(body.KindOf(native.Type(0)));
    if (!good) return RefuseNative(body, native, "com dois vetores do mesmo tipo");
    Native number = native.Type(0) == Vec3Type ? Native::DistanceVec3 : Native::DistanceVec2;
    return EmitNativeCall(body, native, planar ? Native::PlanarDistance : number, RealType);
}

// One vector in; the result is its own type where `result` names none.
TypeId CompileOfVector(Body& body, NativeCall& native, Native flat, Native deep, TypeId result, const char* form) {
    if (native.Count() != 1 || !IsVector(body.KindOf(native.Type(0)))) return RefuseNative(body, native, form);
    Native number = native.Type(0) == Vec3Type ? deep : flat;
    return EmitNativeCall(body, native, number, result == ErrorType ? native.Type(0) : result);
}

TypeId CompileRandom(Body& body, NativeCall& native, bool real) {
    if (!body.permits.random) {
        body.Error(native.call.span, Quoted(native.name) + " so pode ser chamada dentro de \"a cada tick\"",
                   "o sorteio muda o estado do gerador, e isso decide os ticks seguintes");
        return ErrorType;
    }
    if (real) {
        return FitsAll(body, native, {RealType, RealType}) ? EmitNativeCall(body, native, Native::RandomReal, RealType)
                                                           : RefuseNative(body, native, "aleatorio_real(de, ate)");
    }
    if (native.Count() == 0) return EmitNativeCall(body, native, Native::Random, RealType);
    return FitsAll(body, native, {IntType, IntType})
               ? EmitNativeCall(body, native, Native::RandomInt, IntType)
               : RefuseNative(body, native, "aleatorio() ou aleatorio(de, ate) com inteiros");
}

}  // namespace

TypeId CompileNativeCall(Body& body, const Expr& call, NameId name) {
    std::string_view written = body.At(call.left).text;
    if (!RejectLabels(body, call, written)) return ErrorType;
    NativeCall native{call, written, CompileArguments(body, call)};
    if (native.Failed()) return ErrorType;
    const NativeRow* row = FindNative(body.compiler.names.Folded(name));
    if (row == nullptr) {
        body.Error(call.span, Quoted(written) + " nao foi declarada", LegacyHint(written));
        return ErrorType;
    }
    switch (row->form) {
        case Form::Print:
            return FitsAll(body, native, {TextType}) ? EmitNativeCall(body, native, Native::Print, NothingType)
                                                     : RefuseNative(body, native, "escreva(um texto)");
        case Form::ParseInt:
            return FitsAll(body, native, {TextType, IntType})
                       ? EmitNativeCall(body, native, Native::ParseInt, IntType)
                       : RefuseNative(body, native, "inteiro_de_texto(texto, padrao)");
        case Form::ParseReal:
            return FitsAll(body, native, {TextType, RealType})
                       ? EmitNativeCall(body, native, Native::ParseReal, RealType)
                       : RefuseNative(body, native, "real_de_texto(texto, padrao)");
        case Form::Split:
            return FitsAll(body, native, {TextType, TextType})
                       ? EmitNativeCall(body, native, Native::TextSplit, body.Types().List(TextType))
                       : RefuseNative(body, native, "dividir(texto, separador)");
        case Form::Format: return CompileFormat(body, native);
        case Form::Size: return CompileSize(body, native);
        case Form::Contains: return CompileContains(body, native);
        case Form::Copy: return CompileCopy(body, native);
        case Form::Abs:
            return CompileShared(body, native, Native::AbsInt, Native::AbsReal, 1, "abs(um numero)", "abs(um numero)");
        case Form::Float: return CompileFloatNative(body, native, row->native, row->count);
        case Form::Extreme:
            return CompileShared(body, native, row->native,
                                 row->native == Native::MaxInt ? Native::MaxReal : Native::MinReal, 2,
                                 "com dois valores do mesmo tipo", "com dois inteiros ou dois reais");
        case Form::Clamp:
            return CompileShared(body, native, Native::ClampInt, Native::ClampReal, 3, "limitar(valor, minimo, maximo)",
                                 "limitar com inteiros ou com reais");
        case Form::Interpolate: return CompileInterpolate(body, native);
        case Form::Distance: return CompileDistance(body, native, false);
        case Form::PlanarDistance: return CompileDistance(body, native, true);
        case Form::Length:
            return CompileOfVector(body, native, Native::LengthVec2, Native::LengthVec3, RealType,
                                   "comprimento(um vetor)");
        case Form::Normalize:
            return CompileOfVector(body, native, Native::NormalizeVec2, Native::NormalizeVec3, ErrorType,
                                   "normalizar(um vetor)");
        case Form::Random: return CompileRandom(body, native, false);
        case Form::RandomReal: return CompileRandom(body, native, true);
    }
    return ErrorType;
}

bool FitsAll(Body& body, NativeCall& native, const std::vector<TypeId>& wanted) {
    if (native.Count() != wanted.size()) return false;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (!Fits(body, native.call, native.arguments, i, wanted[i])) return false;
    }
    return true;
}

TypeId RefuseNative(Body& body, const NativeCall& native, std::string_view form) {
    return native.Failed() ? ErrorType : WrittenAs(body, native.call, native.name, form);
}

}  // namespace tavrel::core::script
