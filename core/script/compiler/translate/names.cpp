// A name is looked for among variables first, then among the members of enumerations, the names that the language gives
// a value, functions, which are no values, and the namespaces of the world.
#include "core/script/compiler/translate/names.h"

#include <array>
#include <bit>

#include "core/script/compiler/declare/world_names.h"
#include "core/script/compiler/translate/default_values.h"
#include "core/script/syntax/foreign_words.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint32_t PiBits = 0x40490FDB;

constexpr std::array<TypeId, 3> NullHandleTypes = {ObjectType, BodyType, SoundType};

TypeId CompilePlace(Body& body, const Expr& expr, const Place& place) {
    if (place.kind == PlaceKind::Local) {
        body.code.EmitIndexed(Op::LoadLocal, place.index, expr.span);
        return place.type;
    }
    bool constant = place.kind == PlaceKind::Global && place.category == GlobalCategory::Constant;
    if (body.permits.rule && !constant) {
        body.Error(expr.span,
                   Quoted(expr.text) + " nao pode ser lida aqui: esta funcao e uma regra de relevo ou de chao",
                   "ela roda sobre uma copia do terreno, fora do quadro, e so alcanca os argumentos e as constantes");
        return ErrorType;
    }
    if (place.kind == PlaceKind::Field) {
        body.code.EmitIndexed(Op::LoadLocal, 0, expr.span);
        body.code.EmitIndexed(Op::FieldGet, place.index, expr.span);
    } else {
        body.code.EmitIndexed(Op::LoadGlobal, place.index, expr.span);
    }
    return place.type;
}

// Names that the language gives a value and that any variable may hide.
TypeId CompilePredefined(Body& body, const Expr& expr, NameId name) {
    std::string_view folded = body.compiler.names.Folded(name);
    if (folded == "PI") {
        body.code.EmitReal(std::bit_cast<float>(PiBits), expr.span);
        return RealType;
    }
    std::int32_t handle = NullHandle(folded);
    if (handle < 0) return ErrorType;
    EmitHandle(body, handle, expr.span);
    return NullHandleTypes[static_cast<std::size_t>(handle)];
}

}  // namespace

TypeId CompileName(Body& body, const Expr& expr) {
    NameId name = body.Intern(expr.text);
    Place place = Resolve(body, name);
    if (place.kind != PlaceKind::None) return CompilePlace(body, expr, place);
    if (EnumMemberId found = body.declarations.enumMembers.Find(name)) {
        const EnumMember& member = body.declarations.At(found);
        EmitEnum(body, member.enumeration, member.member, expr.span);
        return body.Types().Enum(member.enumeration.value, body.compiler.program.At(member.enumeration).name);
    }
    if (TypeId type = CompilePredefined(body, expr, name); type != ErrorType) return type;
    if (body.declarations.FindFunction(name, body.behaviour)) {
        body.Error(expr.span, Quoted(expr.text) + " e uma funcao e so aparece numa chamada",
                   "escreva \"" + std::string(expr.text) + "(...)\"");
        return ErrorType;
    }
    const auto& spaces = body.declarations.world.spaces;
    auto space = spaces.find(body.compiler.names.Folded(name));
    if (space != spaces.end()) return body.Types().Space(space->second, space->first);
    body.Error(expr.span, Quoted(expr.text) + " nao foi declarada", LegacyHint(expr.text));
    return ErrorType;
}

}  // namespace tavrel::core::script
