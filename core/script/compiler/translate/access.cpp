// What a field is depends on the type of its base: a value of the world, a component, or a field of a record.
#include "core/script/compiler/translate/access.h"

#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/rights.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

TypeId CompileNamespaceField(Body& body, const Expr& expr, TypeId left) {
    std::string space = body.Types().At(left).name;
    std::string dotted = space + "." + FoldName(expr.text);
    const WorldNames& world = body.declarations.world;
    if (auto inner = world.spaces.find(dotted); inner != world.spaces.end()) {
        return body.Types().Space(inner->second, inner->first);
    }
    if (auto found = world.namespaceFields.find(dotted); found != world.namespaceFields.end()) {
        const HostField& field = found->second;
        if (!CheckHooks(body, field.hooks, expr.span, dotted, false)) return ErrorType;
        body.code.EmitHost(field.id, 0, expr.span);
        return field.type;
    }
    if (world.hosts.contains(dotted)) {
        body.Error(expr.span, Quoted(dotted) + " e uma funcao e so aparece numa chamada",
                   "escreva \"" + dotted + "(...)\"");
    } else if (space == "entrada") {
        body.Error(expr.span, "falta dizer o que ler da acao " + Quoted(expr.text),
                   "escreva \"entrada." + std::string(expr.text) + ".apertado\" (ou pressionado, solto, valor)");
    } else {
        body.Error(expr.span, Quoted(space) + " nao tem " + Quoted(expr.text), world.ApiHint(space));
    }
    return ErrorType;
}

TypeId CompileHandleField(Body& body, const Expr& expr, TypeId left) {
    Kind kind = body.KindOf(left);
    const WorldNames& world = body.declarations.world;
    if (auto found = world.valueFields.find(ValueFieldKey(kind, expr.text)); found != world.valueFields.end()) {
        const HostField& field = found->second;
        if (!CheckHooks(body, field.hooks, expr.span, std::string(expr.text), false)) return ErrorType;
        body.code.EmitHost(field.id, 1, expr.span);
        return field.type;
    }
    std::string hint;
    if (body.compiler.api == nullptr) {
        hint = "um script sem mundo nao alcanca os campos de " + body.TypeName(left);
    } else {
        for (const ApiValueField& row : body.compiler.api->valueFields) {
            if (row.kind == kind) hint += (hint.empty() ? "os campos sao " : ", ") + std::string(row.name);
        }
    }
    body.Error(expr.span, body.TypeName(left) + " nao tem um campo chamado " + Quoted(expr.text), hint);
    return ErrorType;
}

TypeId CompileVectorField(Body& body, const Expr& expr, TypeId left) {
    Kind kind = body.KindOf(left);
    std::int32_t component = VectorComponent(kind, body.Folded(expr.text));
    if (component < 0) {
        body.Error(expr.span, Quoted(body.TypeName(left)) + " nao tem um campo chamado " + Quoted(expr.text),
                   kind == Kind::Color ? "os campos de uma cor sao r, g, b e a" : "os campos sao x, y e z");
        return ErrorType;
    }
    body.code.EmitCount(Op::VecGet, static_cast<std::size_t>(component), expr.span);
    return RealType;
}

TypeId CompileRecordField(Body& body, const Expr& expr, TypeId left) {
    RecordId record = body.RecordOf(left);
    FieldId field = body.declarations.fieldNames.Find(record, body.Intern(expr.text));
    if (!field) return MissingField(body, expr, left);
    body.code.EmitIndexed(Op::FieldGet, field, expr.span);
    return body.FieldType(record, field);
}

}  // namespace

// A wrong index does not stop the emission: the expression still has the element's type, so one fault gives one
// report.
TypeId CompileIndex(Body& body, const Expr& expr, TypeId left) {
    TypeId index = CompileExpr(body, expr.right);
    if (left == ErrorType) return ErrorType;
    Kind kind = body.KindOf(left);
    if (kind != Kind::List && kind != Kind::Dict) {
        body.Error(expr.span, body.TypeName(left) + " nao aceita indice",
                   kind == Kind::Text ? "um texto nao se le por letra; use \"dividir\"" : "");
        return ErrorType;
    }
    CheckIndex(body, expr.right, left, index);
    body.code.Emit(kind == Kind::List ? Op::ListGet : Op::DictGet, expr.span);
    return body.Types().At(left).element;
}

TypeId CompileField(Body& body, const Expr& expr, TypeId left) {
    switch (body.KindOf(left)) {
        case Kind::Unknown: return ErrorType;
        case Kind::Space: return CompileNamespaceField(body, expr, left);
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound: return CompileHandleField(body, expr, left);
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color: return CompileVectorField(body, expr, left);
        case Kind::Record: return CompileRecordField(body, expr, left);
        case Kind::List:
        case Kind::Dict:
            body.Error(expr.span, body.TypeName(left) + " nao tem campos",
                       "para chamar um metodo, escreva os parenteses");
            return ErrorType;
        case Kind::Nothing:
        case Kind::Int:
        case Kind::Real:
        case Kind::Bool:
        case Kind::Text:
        case Kind::Enum: body.Error(expr.span, body.TypeName(left) + " nao tem campos"); break;
    }
    return ErrorType;
}

void CheckIndex(Body& body, ExprId index, TypeId container, TypeId type) {
    const TypeInfo& info = body.Types().At(container);
    if (type == ErrorType) return;
    if (info.kind == Kind::List && type != IntType) {
        body.Error(body.SpanOf(index), "o indice de uma lista e um inteiro, e este e " + body.TypeName(type));
    } else if (info.kind == Kind::Dict && type != info.key) {
        body.Error(body.SpanOf(index),
                   "a chave deste dicionario e " + body.TypeName(info.key) + ", e esta e " + body.TypeName(type));
    }
}

TypeId MissingField(Body& body, const Expr& expr, TypeId record) {
    body.Error(expr.span, Quoted(body.TypeName(record)) + " nao tem um campo chamado " + Quoted(expr.text));
    return ErrorType;
}

std::int32_t VectorComponent(Kind kind, std::string_view folded) {
    std::string_view components;
    if (kind == Kind::Vec2) components = "xz";
    if (kind == Kind::Vec3) components = "xyz";
    if (kind == Kind::Color) components = "rgba";
    if (folded.size() != 1) return -1;
    std::size_t at = components.find(folded[0]);
    return at == std::string_view::npos ? -1 : static_cast<std::int32_t>(at);
}

}  // namespace tavrel::core::script
