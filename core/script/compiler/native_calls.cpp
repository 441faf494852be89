// Calls of the built-in functions: the overload is chosen here by the types of the arguments.
#include <algorithm>
#include <utility>

#include "core/script/compiler/compiler.h"
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

// What an 8-bit operand can count.
constexpr std::size_t MostArguments = 255;

}  // namespace

TypeId Compiler::CompileNativeCall(const Expr& call, NameId name) {
    std::string_view written = ExprAt(call.left).text;
    if (!RejectLabels(call, written)) return FailedType;
    NativeCall native{call, written, CompileArguments(call)};
    if (native.Failed()) return FailedType;
    const NativeRow* row = FindNative(names.Folded(name));
    if (row == nullptr) {
        Error(call.span, Quoted(written) + " nao foi declarada", LegacyHint(written));
        return FailedType;
    }
    switch (row->form) {
        case Form::Print:
            return FitsAll(native, {TextType}) ? EmitNativeCall(native, Native::Print, NothingType)
                                               : RefuseNative(native, "escreva(um texto)");
        case Form::ParseInt:
            return FitsAll(native, {TextType, IntType}) ? EmitNativeCall(native, Native::ParseInt, IntType)
                                                        : RefuseNative(native, "inteiro_de_texto(texto, padrao)");
        case Form::ParseReal:
            return FitsAll(native, {TextType, RealType}) ? EmitNativeCall(native, Native::ParseReal, RealType)
                                                         : RefuseNative(native, "real_de_texto(texto, padrao)");
        case Form::Split:
            return FitsAll(native, {TextType, TextType})
                       ? EmitNativeCall(native, Native::TextSplit, program->types.List(TextType))
                       : RefuseNative(native, "dividir(texto, separador)");
        case Form::Format: return CompileFormat(native);
        case Form::Size: return CompileSize(native);
        case Form::Contains: return CompileContains(native);
        case Form::Copy: return CompileCopy(native);
        case Form::Abs:
            return CompileShared(native, Native::AbsInt, Native::AbsReal, 1, "abs(um numero)", "abs(um numero)");
        case Form::Float: return CompileFloatNative(native, row->native, row->count);
        case Form::Extreme:
            return CompileShared(native, row->native, row->native == Native::MaxInt ? Native::MaxReal : Native::MinReal,
                                 2, "com dois valores do mesmo tipo", "com dois inteiros ou dois reais");
        case Form::Clamp:
            return CompileShared(native, Native::ClampInt, Native::ClampReal, 3, "limitar(valor, minimo, maximo)",
                                 "limitar com inteiros ou com reais");
        case Form::Interpolate: return CompileInterpolate(native);
        case Form::Distance: return CompileDistance(native, false);
        case Form::PlanarDistance: return CompileDistance(native, true);
        case Form::Length:
            return CompileOfVector(native, Native::LengthVec2, Native::LengthVec3, RealType, "comprimento(um vetor)");
        case Form::Normalize:
            return CompileOfVector(native, Native::NormalizeVec2, Native::NormalizeVec3, FailedType,
                                   "normalizar(um vetor)");
        case Form::Random: return CompileRandom(native, false);
        case Form::RandomReal: return CompileRandom(native, true);
    }
    return FailedType;
}

// Exactly these types, a number literal standing for a real.
bool Compiler::FitsAll(NativeCall& native, const std::vector<TypeId>& wanted) {
    if (native.Count() != wanted.size()) return false;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (!Fits(native.call, native.arguments, i, wanted[i])) return false;
    }
    return true;
}

TypeId Compiler::EmitNativeCall(const NativeCall& native, Native number, TypeId result) {
    EmitNative(number, native.Count(), native.call.span);
    return result;
}

// Says nothing where an argument failed to fit and has been reported.
TypeId Compiler::RefuseNative(const NativeCall& native, std::string_view form) {
    return native.Failed() ? FailedType : WrittenAs(native.call, native.name, form);
}

TypeId Compiler::CompileFormat(NativeCall& native) {
    if (native.Count() == 0 || native.Type(0) != TextType) {
        return RefuseNative(native, "formatar(modelo, valores...)");
    }
    if (native.Count() > MostArguments) return RefuseNative(native, "formatar com ate 254 valores");
    bool good = true;
    for (std::size_t i = 1; i < native.Count(); ++i) {
        good = !RejectProcedure(unit->Items(native.call.items)[i], native.Type(i)) && good;
    }
    return good ? EmitNativeCall(native, Native::Format, TextType) : FailedType;
}

TypeId Compiler::CompileSize(NativeCall& native) {
    Kind kind = native.Count() == 1 ? KindOf(native.Type(0)) : Kind::Unknown;
    if (kind == Kind::Text) return EmitNativeCall(native, Native::TextSize, IntType);
    if (kind == Kind::List) return EmitNativeCall(native, Native::ListSize, IntType);
    if (kind == Kind::Dict) return EmitNativeCall(native, Native::DictSize, IntType);
    return RefuseNative(native, "tamanho(texto, lista ou dicionario)");
}

TypeId Compiler::CompileContains(NativeCall& native) {
    if (native.Count() != 2) return RefuseNative(native, "contem(onde, o que)");
    const TypeInfo container = program->types.At(native.Type(0));
    switch (container.kind) {
        case Kind::List:
            if (!Fits(native.call, native.arguments, 1, container.element)) {
                return RefuseNative(native, "contem(lista, um elemento dela)");
            }
            return EmitNativeCall(native, Native::ListContains, BoolType);
        case Kind::Dict:
            if (!Fits(native.call, native.arguments, 1, container.key)) {
                return RefuseNative(native, "contem(dicionario, uma chave dele)");
            }
            return EmitNativeCall(native, Native::DictContains, BoolType);
        case Kind::Text:
            if (native.Type(1) != TextType) return RefuseNative(native, "contem(texto, texto)");
            return EmitNativeCall(native, Native::TextContains, BoolType);
        default: return RefuseNative(native, "contem(texto, lista ou dicionario, o que)");
    }
}

TypeId Compiler::CompileCopy(NativeCall& native) {
    Kind kind = native.Count() == 1 ? KindOf(native.Type(0)) : Kind::Unknown;
    if (kind == Kind::List) return EmitNativeCall(native, Native::ListCopy, native.Type(0));
    if (kind == Kind::Dict) return EmitNativeCall(native, Native::DictCopy, native.Type(0));
    if (kind == Kind::Record) return EmitNativeCall(native, Native::RecordCopy, native.Type(0));
    return RefuseNative(native, "copiar(lista, dicionario ou registro)");
}

TypeId Compiler::CompileFloatNative(NativeCall& native, Native number, std::size_t count) {
    if (native.Count() != count) return RefuseNative(native, count == 1 ? "com um real" : "com dois reais");
    for (std::size_t i = 0; i < count; ++i) Fits(native.call, native.arguments, i, RealType);
    if (native.Failed()) return FailedType;
    for (std::size_t i = 0; i < count; ++i) {
        TypeId type = native.Type(i);
        if (type == RealType) continue;
        Error(SpanOf(unit->Items(native.call.items)[i]),
              Quoted(native.name) + " trabalha com real, e este e " + TypeName(type),
              type == IntType ? "escreva real(...)" : "");
        return FailedType;
    }
    return EmitNativeCall(native, number, RealType);
}

// Numbers of one type in, that type out. A single argument has no siblings to share with.
TypeId Compiler::CompileShared(NativeCall& native, Native integer, Native real, std::size_t count, const char* mismatch,
                               const char* kinds) {
    if (count > 1) ShareReal(native.call, native.arguments);
    if (native.Failed()) return FailedType;
    const std::vector<TypeId>& types = native.arguments.types;
    if (types.size() != count || std::count(types.begin(), types.end(), types[0]) != static_cast<int>(count)) {
        return RefuseNative(native, mismatch);
    }
    if (types[0] == IntType) return EmitNativeCall(native, integer, IntType);
    if (types[0] == RealType) return EmitNativeCall(native, real, RealType);
    return RefuseNative(native, kinds);
}

TypeId Compiler::CompileInterpolate(NativeCall& native) {
    if (native.Count() != 3) return RefuseNative(native, "interpolar(de, ate, fracao)");
    Fits(native.call, native.arguments, 2, RealType);
    if (native.Type(0) == RealType || native.Type(1) == RealType || native.Type(0) == IntType) {
        Fits(native.call, native.arguments, 0, RealType);
        Fits(native.call, native.arguments, 1, RealType);
    }
    Native number = InterpolationOf(KindOf(native.Type(0)));
    bool good = native.Type(0) == native.Type(1) && native.Type(2) == RealType && number != Native::Count;
    if (!good) return RefuseNative(native, "interpolar entre reais, vetores ou cores");
    return EmitNativeCall(native, number, native.Type(0));
}

TypeId Compiler::CompileDistance(NativeCall& native, bool planar) {
    bool good = native.Count() == 2 && native.Type(0) == native.Type(1) && IsVector(KindOf(native.Type(0)));
    if (!good) return RefuseNative(native, "com dois vetores do mesmo tipo");
    Native number = native.Type(0) == Vec3Type ? Native::DistanceVec3 : Native::DistanceVec2;
    return EmitNativeCall(native, planar ? Native::PlanarDistance : number, RealType);
}

// One vector in; the result is its own type where `result` names none.
TypeId Compiler::CompileOfVector(NativeCall& native, Native flat, Native deep, TypeId result, const char* form) {
    if (native.Count() != 1 || !IsVector(KindOf(native.Type(0)))) return RefuseNative(native, form);
    Native number = native.Type(0) == Vec3Type ? deep : flat;
    return EmitNativeCall(native, number, result == FailedType ? native.Type(0) : result);
}

TypeId Compiler::CompileRandom(NativeCall& native, bool real) {
    if (!permits.random) {
        Error(native.call.span, Quoted(native.name) + " so pode ser chamada dentro de \"a cada tick\"",
              "o sorteio muda o estado do gerador, e isso decide os ticks seguintes");
        return FailedType;
    }
    if (real) {
        return FitsAll(native, {RealType, RealType}) ? EmitNativeCall(native, Native::RandomReal, RealType)
                                                     : RefuseNative(native, "aleatorio_real(de, ate)");
    }
    if (native.Count() == 0) return EmitNativeCall(native, Native::Random, RealType);
    return FitsAll(native, {IntType, IntType}) ? EmitNativeCall(native, Native::RandomInt, IntType)
                                               : RefuseNative(native, "aleatorio() ou aleatorio(de, ate) com inteiros");
}

}  // namespace tavrel::core::script
