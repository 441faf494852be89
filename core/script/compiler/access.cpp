// Indices and fields.
#include "core/script/compiler/compiler.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

std::int32_t VectorComponent(Kind kind, std::string_view folded) {
    std::string_view components;
    if (kind == Kind::Vec2) components = "xz";
    if (kind == Kind::Vec3) components = "xyz";
    if (kind == Kind::Color) components = "rgba";
    if (folded.size() != 1) return -1;
    std::size_t at = components.find(folded[0]);
    return at == std::string_view::npos ? -1 : static_cast<std::int32_t>(at);
}

// A wrong index does not stop the emission: the expression still has the element's type, so one fault gives one
// report.
TypeId Compiler::CompileIndex(const Expr& expr, TypeId left) {
    TypeId index = CompileExpr(expr.right);
    if (left == FailedType) return FailedType;
    Kind kind = KindOf(left);
    if (kind != Kind::List && kind != Kind::Dict) {
        Error(expr.span, TypeName(left) + " nao aceita indice",
              kind == Kind::Text ? "um texto nao se le por letra; use \"dividir\"" : "");
        return FailedType;
    }
    CheckIndex(expr.right, left, index);
    Emit(kind == Kind::List ? Op::ListGet : Op::DictGet, expr.span);
    return program->types.At(left).element;
}

void Compiler::CheckIndex(std::int32_t index, TypeId container, TypeId type) {
    const TypeInfo& info = program->types.At(container);
    if (type == FailedType) return;
    if (info.kind == Kind::List && type != IntType) {
        Error(SpanOf(index), "o indice de uma lista e um inteiro, e este e " + TypeName(type));
    } else if (info.kind == Kind::Dict && type != info.key) {
        Error(SpanOf(index), "a chave deste dicionario e " + TypeName(info.key) + ", e esta e " + TypeName(type));
    }
}

TypeId Compiler::CompileField(const Expr& expr, TypeId left) {
    switch (KindOf(left)) {
        case Kind::Unknown: return FailedType;
        case Kind::Space: return CompileSpaceField(expr, left);
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound: return CompileHandleField(expr, left);
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color: return CompileVectorField(expr, left);
        case Kind::Record: return CompileRecordField(expr, left);
        case Kind::List:
        case Kind::Dict:
            Error(expr.span, TypeName(left) + " nao tem campos", "para chamar um metodo, escreva os parenteses");
            return FailedType;
        default: Error(expr.span, TypeName(left) + " nao tem campos"); return FailedType;
    }
}

TypeId Compiler::CompileSpaceField(const Expr& expr, TypeId left) {
    std::string space = program->types.At(left).name;
    std::string dotted = space + "." + FoldName(expr.text);
    if (auto inner = spaceNames.find(dotted); inner != spaceNames.end()) {
        return program->types.Space(inner->second, inner->first);
    }
    if (auto found = namespaceFieldNames.find(dotted); found != namespaceFieldNames.end()) {
        const HostField& field = namespaceFields[static_cast<std::size_t>(found->second)];
        if (!CheckHooks(field.hooks, expr.span, dotted, false)) return FailedType;
        EmitHost(field.id, 0, expr.span);
        return field.type;
    }
    if (hostNames.contains(dotted)) {
        Error(expr.span, Quoted(dotted) + " e uma funcao e so aparece numa chamada", "escreva \"" + dotted + "(...)\"");
    } else if (space == "entrada") {
        Error(expr.span, "falta dizer o que ler da acao " + Quoted(expr.text),
              "escreva \"entrada." + std::string(expr.text) + ".apertado\" (ou pressionado, solto, valor)");
    } else {
        Error(expr.span, Quoted(space) + " nao tem " + Quoted(expr.text), ApiHint(space));
    }
    return FailedType;
}

TypeId Compiler::CompileHandleField(const Expr& expr, TypeId left) {
    Kind kind = KindOf(left);
    std::string key = std::to_string(static_cast<int>(kind)) + "." + FoldName(expr.text);
    if (auto found = valueFieldNames.find(key); found != valueFieldNames.end()) {
        const HostField& field = valueFields[static_cast<std::size_t>(found->second)];
        if (!CheckHooks(field.hooks, expr.span, std::string(expr.text), false)) return FailedType;
        EmitHost(field.id, 1, expr.span);
        return field.type;
    }
    std::string hint;
    if (api == nullptr) {
        hint = "um script sem mundo nao alcanca os campos de " + TypeName(left);
    } else {
        for (const ApiValueField& row : api->valueFields) {
            if (row.kind == kind) hint += (hint.empty() ? "os campos sao " : ", ") + std::string(row.name);
        }
    }
    Error(expr.span, TypeName(left) + " nao tem um campo chamado " + Quoted(expr.text), hint);
    return FailedType;
}

TypeId Compiler::CompileVectorField(const Expr& expr, TypeId left) {
    Kind kind = KindOf(left);
    std::int32_t component = VectorComponent(kind, names.Folded(names.Intern(expr.text)));
    if (component < 0) {
        Error(expr.span, Quoted(TypeName(left)) + " nao tem um campo chamado " + Quoted(expr.text),
              kind == Kind::Color ? "os campos de uma cor sao r, g, b e a" : "os campos sao x, y e z");
        return FailedType;
    }
    Emit(Op::VecGet, static_cast<std::uint8_t>(component), 0, 0, expr.span);
    return RealType;
}

TypeId Compiler::CompileRecordField(const Expr& expr, TypeId left) {
    std::int32_t record = program->types.At(left).index;
    std::int32_t field = RecordField(record, names.Intern(expr.text));
    if (field < 0) return MissingField(expr, left);
    EmitIndexed(Op::FieldGet, field, expr.span);
    return program->records[static_cast<std::size_t>(record)].fieldTypes[static_cast<std::size_t>(field)];
}

TypeId Compiler::MissingField(const Expr& expr, TypeId record) {
    Error(expr.span, Quoted(TypeName(record)) + " nao tem um campo chamado " + Quoted(expr.text));
    return FailedType;
}

}  // namespace tavrel::core::script
