// By the form of the target. The value is compiled on every path, so that its faults show too.
#include "core/script/compiler/translate/assignments.h"

#include "core/script/compiler/translate/access.h"
#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/rights.h"

namespace tavrel::core::script {

namespace {

void AssignName(Body& body, const Stmt& stmt, const Expr& target) {
    Place place = Resolve(body, body.Intern(target.text));
    std::string name(target.text);
    if (place.kind == PlaceKind::None) {
        body.Error(target.span, Quoted(name) + " nao foi declarada",
                   "para declarar, escreva \"" + name + ": tipo = valor\"");
        CompileValue(body, stmt.value, ErrorType);
        return;
    }
    if (!CheckWrite(body, place, target.span, name)) {
        CompileValue(body, stmt.value, ErrorType);
        return;
    }
    if (place.kind == PlaceKind::Field) body.code.EmitIndexed(Op::LoadLocal, 0, stmt.span);
    TypeId type = CompileValue(body, stmt.value, place.type);
    CheckAssign(body, place.type, type, stmt.value, name);
    Op store = place.kind == PlaceKind::Local   ? Op::StoreLocal
               : place.kind == PlaceKind::Field ? Op::FieldSet
                                                : Op::StoreGlobal;
    body.code.EmitIndexed(store, place.index, stmt.span);
}

void AssignIndex(Body& body, const Stmt& stmt, const Expr& target) {
    Kind kind = body.KindOf(ProbeType(body, target.left));
    if (kind != Kind::List && kind != Kind::Dict) {
        TypeId type = CompileExpr(body, target.left);
        if (type != ErrorType) body.Error(target.span, body.TypeName(type) + " nao aceita indice");
        CompileValue(body, stmt.value, ErrorType);
        return;
    }
    CheckContainerWrite(body, target.left);
    TypeId container = CompileExpr(body, target.left);
    CheckIndex(body, target.right, container, CompileExpr(body, target.right));
    TypeId element = body.Types().At(container).element;
    TypeId type = CompileValue(body, stmt.value, element);
    CheckAssign(body, element, type, stmt.value, "este lugar");
    body.code.Emit(kind == Kind::List ? Op::ListSet : Op::DictSet, stmt.span);
}

void AssignRecordField(Body& body, const Stmt& stmt, const Expr& target, TypeId record) {
    CheckContainerWrite(body, target.left);
    CompileExpr(body, target.left);
    const RecordId index = body.RecordOf(record);
    FieldId field = body.declarations.fieldNames.Find(index, body.Intern(target.text));
    if (!field) {
        MissingField(body, target, record);
        CompileValue(body, stmt.value, ErrorType);
        return;
    }
    TypeId wanted = body.FieldType(index, field);
    TypeId type = CompileValue(body, stmt.value, wanted);
    CheckAssign(body, wanted, type, stmt.value, std::string(target.text));
    body.code.EmitIndexed(Op::FieldSet, field, stmt.span);
}

// The new component, and the vector with it.
void EmitComponentChange(Body& body, const Stmt& stmt, std::int32_t component) {
    TypeId type = CompileValue(body, stmt.value, RealType);
    if (type != ErrorType && type != RealType) {
        body.Error(body.SpanOf(stmt.value), "o componente de um vetor e um real, e o valor e " + body.TypeName(type),
                   type == IntType ? "escreva real(...) ou ponha um ponto no numero" : "");
    }
    body.code.EmitCount(Op::VecSet, static_cast<std::size_t>(component), stmt.span);
}

void AssignComponentOfName(Body& body, const Stmt& stmt, const Expr& base, std::int32_t component) {
    Place place = Resolve(body, body.Intern(base.text));
    if (!CheckWrite(body, place, base.span, std::string(base.text))) {
        CompileValue(body, stmt.value, ErrorType);
        return;
    }
    switch (place.kind) {
        case PlaceKind::Field:
            body.code.EmitIndexed(Op::LoadLocal, 0, stmt.span);
            body.code.Emit(Op::Dup, stmt.span);
            body.code.EmitIndexed(Op::FieldGet, place.index, stmt.span);
            EmitComponentChange(body, stmt, component);
            body.code.EmitIndexed(Op::FieldSet, place.index, stmt.span);
            return;
        case PlaceKind::Global:
            body.code.EmitIndexed(Op::LoadGlobal, place.index, stmt.span);
            EmitComponentChange(body, stmt, component);
            body.code.EmitIndexed(Op::StoreGlobal, place.index, stmt.span);
            return;
        case PlaceKind::None:  // never: the base has a type
        case PlaceKind::Local:
            body.code.EmitIndexed(Op::LoadLocal, place.index, stmt.span);
            EmitComponentChange(body, stmt, component);
            body.code.EmitIndexed(Op::StoreLocal, place.index, stmt.span);
            return;
    }
}

void AssignComponentOfIndex(Body& body, const Stmt& stmt, const Expr& base, std::int32_t component) {
    CheckContainerWrite(body, base.left);
    TypeId container = CompileExpr(body, base.left);
    CheckIndex(body, base.right, container, CompileExpr(body, base.right));
    bool list = body.KindOf(container) == Kind::List;
    body.code.Emit(Op::Dup2, stmt.span);
    body.code.Emit(list ? Op::ListGet : Op::DictGet, stmt.span);
    EmitComponentChange(body, stmt, component);
    body.code.Emit(list ? Op::ListSet : Op::DictSet, stmt.span);
}

void AssignComponentOfField(Body& body, const Stmt& stmt, const Expr& base, std::int32_t component) {
    CheckContainerWrite(body, base.left);
    TypeId record = CompileExpr(body, base.left);
    FieldId field = body.declarations.fieldNames.Find(body.RecordOf(record), body.Intern(base.text));
    body.code.Emit(Op::Dup, stmt.span);
    body.code.EmitIndexed(Op::FieldGet, field, stmt.span);
    EmitComponentChange(body, stmt, component);
    body.code.EmitIndexed(Op::FieldSet, field, stmt.span);
}

// A vector is a value: the whole of it is read, changed, and written back to its place. The base has a vector's type
// when it comes here, so the names in it are known.
void AssignComponent(Body& body, const Stmt& stmt, const Expr& target, std::int32_t component) {
    const Expr& base = body.At(target.left);
    switch (base.kind) {
        case ExprKind::Name: return AssignComponentOfName(body, stmt, base, component);
        case ExprKind::Index: return AssignComponentOfIndex(body, stmt, base, component);
        case ExprKind::Field:
            if (body.KindOf(ProbeType(body, base.left)) == Kind::Record)
                return AssignComponentOfField(body, stmt, base, component);
            break;
        default: break;
    }
    body.Error(base.span, "nao da para mudar um componente aqui");
    CompileValue(body, stmt.value, ErrorType);
}

// The type of the base decides, so it is looked at before any code is left.
void AssignField(Body& body, const Stmt& stmt, const Expr& target) {
    TypeId base = ProbeType(body, target.left);
    Kind kind = body.KindOf(base);
    std::int32_t component = VectorComponent(kind, body.Folded(target.text));
    if (component >= 0) return AssignComponent(body, stmt, target, component);
    if (kind == Kind::Record) return AssignRecordField(body, stmt, target, base);
    TypeId type = CompileExpr(body, target.left);
    if (type != ErrorType) body.Error(target.span, body.TypeName(type) + " nao tem campos para mudar");
    CompileValue(body, stmt.value, ErrorType);
}

}  // namespace

void CompileAssign(Body& body, const Stmt& stmt) {
    const Expr& target = body.At(stmt.target);
    switch (target.kind) {
        case ExprKind::Name: return AssignName(body, stmt, target);
        case ExprKind::Index: return AssignIndex(body, stmt, target);
        case ExprKind::Field: return AssignField(body, stmt, target);
        default:
            body.Error(target.span, "isto nao e um lugar onde se possa gravar");
            CompileValue(body, stmt.value, ErrorType);
            return;
    }
}

}  // namespace tavrel::core::script
