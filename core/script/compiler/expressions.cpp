// Values and names. One walk types and emits; the only implicit conversion is that of number literals to reals, which
// rewrites code that stands already.
#include <bit>
#include <utility>

#include "core/script/compiler/compiler.h"
#include "core/script/numeric/int_to_float.h"
#include "core/script/syntax/foreign_words.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint32_t PiBits = 0x40490FDB;

// Exact when the float reads back as the same integer. The bound keeps the conversion back defined.
bool ConvertExactly(std::int64_t value, float& real) {
    constexpr float TwoToThe63 = 9223372036854775808.0F;
    real = IntToFloat<float>(value);
    return real < TwoToThe63 && static_cast<std::int64_t>(real) == value;
}

}  // namespace

// Operators lean left, so a long sum is as deep as it is long. The chain of left operands is walked on a stack of our
// own; recursion follows only what the parser bounds.
TypeId Compiler::CompileExpr(std::int32_t expr) {
    std::size_t base = leftChain.size();
    std::size_t first = CodeSize();
    for (std::int32_t left = LeftOperand(ExprAt(expr)); left >= 0; left = LeftOperand(ExprAt(expr))) {
        leftChain.push_back(expr);
        expr = left;
    }
    TypeId type = CompileLeaf(ExprAt(expr));
    while (leftChain.size() > base) {
        expr = leftChain.back();
        leftChain.pop_back();
        type = CompileOnLeft(ExprAt(expr), type, first);
    }
    return type;
}

// What must be compiled before the node itself; -1 for a leaf and for the forms that are told from the syntax.
std::int32_t Compiler::LeftOperand(const Expr& expr) {
    switch (expr.kind) {
        case ExprKind::Unary:
        case ExprKind::Binary:
        case ExprKind::Logic:
        case ExprKind::Index: return expr.left;
        case ExprKind::Field: return IsInputReading(expr) || IsEventReading(expr) ? ExprId() : expr.left;
        case ExprKind::Call: {
            const Expr& callee = ExprAt(expr.left);
            bool receiver = callee.kind == ExprKind::Field && !IsCommand(callee) && !IsEmission(callee);
            return receiver ? callee.left : ExprId();
        }
        default: return -1;
    }
}

TypeId Compiler::CompileLeaf(const Expr& expr) {
    switch (expr.kind) {
        case ExprKind::Integer: EmitInt(expr.integer, expr.span); return IntType;
        case ExprKind::Real: EmitReal(expr.real, expr.span); return RealType;
        case ExprKind::Logical: EmitBool(expr.logical, expr.span); return BoolType;
        case ExprKind::Text: EmitText(expr.text, expr.span); return TextType;
        case ExprKind::Name: return CompileName(expr);
        case ExprKind::Call: return CompileCall(expr);
        case ExprKind::Field: return IsInputReading(expr) ? CompileInputReading(expr) : CompileEventReading(expr);
        case ExprKind::List: return CompileListLit(expr);
        case ExprKind::Dictionary: return CompileDictLit(expr);
        case ExprKind::Conversion: return CompileConstruct(expr);
        default: return FailedType;
    }
}

TypeId Compiler::CompileOnLeft(const Expr& expr, TypeId left, std::size_t first) {
    switch (expr.kind) {
        case ExprKind::Unary: return CompileUnary(expr, left);
        case ExprKind::Binary: return CompileBinary(expr, left, first);
        case ExprKind::Logic: return CompileLogical(expr, left);
        case ExprKind::Index: return CompileIndex(expr, left);
        case ExprKind::Field: return CompileField(expr, left);
        default: return CompileReceiverCall(expr, left);
    }
}

// The form for a place that wants a type: a number literal becomes a real where one is wanted.
TypeId Compiler::CompileValue(std::int32_t expr, TypeId wanted) {
    std::size_t first = CodeSize();
    TypeId type = CompileExpr(expr);
    if (type == FailedType || RejectSpace(expr, type)) return FailedType;
    return AsReal(first, CodeSize(), type, wanted, expr);
}

// A namespace of the world is no value: true when the type is one, which is then reported.
bool Compiler::RejectSpace(std::int32_t expr, TypeId type) {
    const TypeInfo& info = program->types.At(type);
    if (info.kind != Kind::Space) return false;
    Error(SpanOf(expr), Quoted(info.name) + " e um agrupamento da API do mundo, e nao um valor", ApiHint(info.name));
    return true;
}

// A call of a procedure leaves nothing on the stack, so it is no value either.
bool Compiler::RejectProcedure(std::int32_t expr, TypeId type) {
    if (type != NothingType) return false;
    Error(SpanOf(expr), "esta chamada nao devolve valor, e aqui vai um valor",
          "um procedimento se chama numa linha so dele");
    return true;
}

bool Compiler::RejectNonValue(std::int32_t expr, TypeId type) {
    return RejectSpace(expr, type) || RejectProcedure(expr, type);
}

TypeId Compiler::CompileName(const Expr& expr) {
    NameId name = names.Intern(expr.text);
    Place place = Resolve(name);
    if (place.kind != PlaceKind::None) return CompilePlace(expr, place);
    if (std::int32_t member = enumMembers.Find(name); member >= 0) {
        auto [enumeration, position] = enumMemberPlaces[static_cast<std::size_t>(member)];
        EmitEnum(enumeration, position, expr.span);
        return program->types.Enum(enumeration, program->enums[static_cast<std::size_t>(enumeration)].name);
    }
    if (TypeId type = CompilePredefined(expr, name); type != FailedType) return type;
    if (FindFunction(name, behaviour) >= 0) {
        Error(expr.span, Quoted(expr.text) + " e uma funcao e so aparece numa chamada",
              "escreva \"" + std::string(expr.text) + "(...)\"");
        return FailedType;
    }
    auto space = spaceNames.find(names.Folded(name));
    if (space != spaceNames.end()) return program->types.Space(space->second, space->first);
    Error(expr.span, Quoted(expr.text) + " nao foi declarada", LegacyHint(expr.text));
    return FailedType;
}

TypeId Compiler::CompilePlace(const Expr& expr, const Place& place) {
    if (place.kind == PlaceKind::Local) {
        EmitIndexed(Op::LoadLocal, place.index, expr.span);
        return place.type;
    }
    bool constant = place.kind == PlaceKind::Global && place.category == GlobalCategory::Constant;
    if (permits.rule && !constant) {
        Error(expr.span, Quoted(expr.text) + " nao pode ser lida aqui: esta funcao e uma regra de relevo ou de chao",
              "ela roda sobre uma copia do terreno, fora do quadro, e so alcanca os argumentos e as constantes");
        return FailedType;
    }
    if (place.kind == PlaceKind::Field) {
        EmitIndexed(Op::LoadLocal, 0, expr.span);
        EmitIndexed(Op::FieldGet, place.index, expr.span);
    } else {
        EmitIndexed(Op::LoadGlobal, place.index, expr.span);
    }
    return place.type;
}

// Names that the language gives a value and that any variable may hide.
TypeId Compiler::CompilePredefined(const Expr& expr, NameId name) {
    std::string_view folded = names.Folded(name);
    if (folded == "PI") {
        EmitReal(std::bit_cast<float>(PiBits), expr.span);
        return RealType;
    }
    constexpr std::string_view Handles[] = {"nenhum_objeto", "nenhum_corpo", "nenhum_som"};
    for (std::int32_t handle = 0; handle < 3; ++handle) {
        if (folded != Handles[handle]) continue;
        EmitHandle(handle, expr.span);
        return ObjectType + handle;
    }
    return FailedType;
}

// The type of an expression, with no code and no report left. It is compiled again in its place.
TypeId Compiler::PeekType(std::int32_t expr) {
    std::size_t code = CodeSize();
    std::size_t reports = diagnostics->items.size();
    TypeId type = CompileExpr(expr);
    Current().code.resize(code);
    Current().spans.resize(code);
    diagnostics->CutTo(reports);
    return type;
}

bool Compiler::IsNumberLiteral(std::int32_t expr) const {
    if (expr < 0) return false;
    while (ExprAt(expr).kind == ExprKind::Unary && ExprAt(expr).op == Tok::Minus) expr = ExprAt(expr).left;
    return ExprAt(expr).kind == ExprKind::Integer;
}

// Turns the code of an integer literal, instructions `first` up to `last`, into that of a real where one is wanted.
// The pool keeps its now unused entry.
TypeId Compiler::AsReal(std::size_t first, std::size_t last, TypeId type, TypeId wanted, std::int32_t expr) {
    if (wanted != RealType || type != IntType || !IsNumberLiteral(expr)) return type;
    std::vector<Instruction>& code = Current().code;
    for (std::size_t at = first; at < last && at < code.size(); ++at) {
        Instruction& instruction = code[at];
        if (instruction.op == static_cast<std::uint8_t>(Op::NegInt)) {
            instruction.op = static_cast<std::uint8_t>(Op::NegReal);
        }
        if (instruction.op != static_cast<std::uint8_t>(Op::PushInt)) continue;
        float real = 0;
        if (!ConvertExactly(program->integers[instruction.c], real)) {
            Error(SpanOf(expr), "este numero nao cabe exatamente num real",
                  "escreva-o com ponto, para dizer qual real voce quer");
            return FailedType;
        }
        instruction = {static_cast<std::uint8_t>(Op::PushReal), 0, 0, std::bit_cast<std::uint32_t>(real)};
    }
    return RealType;
}

// Whether an argument has the wanted type, or is a number literal that can take it. A literal that is not exact is
// reported and fails the argument.
bool Compiler::Fits(const Expr& call, Arguments& arguments, std::size_t index, TypeId wanted) {
    if (index >= arguments.types.size()) return false;
    TypeId& type = arguments.types[index];
    if (wanted == RealType && type == IntType) {
        std::int32_t expr = unit->Items(call.items)[index];
        type = AsReal(arguments.offsets[index], arguments.offsets[index + 1], type, wanted, expr);
    }
    return type == wanted;
}

// One real among the arguments makes reals of the number literals beside it.
void Compiler::ShareReal(const Expr& call, Arguments& arguments) {
    bool anyReal = false;
    for (TypeId type : arguments.types) anyReal = anyReal || type == RealType;
    if (!anyReal) return;
    for (std::size_t i = 0; i < arguments.types.size(); ++i) Fits(call, arguments, i, RealType);
}

}  // namespace tavrel::core::script
