// Assignments, by the form of their target. The value is compiled on every path, so that its faults show too.
#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

void Compiler::CompileAssign(const Stmt& stmt) {
    const Expr& target = ExprAt(stmt.target);
    switch (target.kind) {
        case ExprKind::Name: return AssignName(stmt, target);
        case ExprKind::Index: return AssignIndex(stmt, target);
        case ExprKind::Field: return AssignField(stmt, target);
        default:
            Error(target.span, "isto nao e um lugar onde se possa gravar");
            CompileValue(stmt.value, FailedType);
            return;
    }
}

void Compiler::AssignName(const Stmt& stmt, const Expr& target) {
    Place place = Resolve(names.Intern(target.text));
    std::string name(target.text);
    if (place.kind == PlaceKind::None) {
        Error(target.span, Quoted(name) + " nao foi declarada",
              "para declarar, escreva \"" + name + ": tipo = valor\"");
        CompileValue(stmt.value, FailedType);
        return;
    }
    if (!CheckWrite(place, target.span, name)) {
        CompileValue(stmt.value, FailedType);
        return;
    }
    if (place.kind == PlaceKind::Field) EmitIndexed(Op::LoadLocal, 0, stmt.span);
    TypeId type = CompileValue(stmt.value, place.type);
    CheckAssign(place.type, type, stmt.value, name);
    Op store = place.kind == PlaceKind::Local   ? Op::StoreLocal
               : place.kind == PlaceKind::Field ? Op::FieldSet
                                                : Op::StoreGlobal;
    EmitIndexed(store, place.index, stmt.span);
}

void Compiler::AssignIndex(const Stmt& stmt, const Expr& target) {
    Kind kind = KindOf(PeekType(target.left));
    if (kind != Kind::List && kind != Kind::Dict) {
        TypeId type = CompileExpr(target.left);
        if (type != FailedType) Error(target.span, TypeName(type) + " nao aceita indice");
        CompileValue(stmt.value, FailedType);
        return;
    }
    CheckContainerWrite(target.left);
    TypeId container = CompileExpr(target.left);
    CheckIndex(target.right, container, CompileExpr(target.right));
    TypeId element = program->types.At(container).element;
    TypeId type = CompileValue(stmt.value, element);
    CheckAssign(element, type, stmt.value, "este lugar");
    Emit(kind == Kind::List ? Op::ListSet : Op::DictSet, stmt.span);
}

// The type of the base decides, so it is looked at before any code is left.
void Compiler::AssignField(const Stmt& stmt, const Expr& target) {
    TypeId base = PeekType(target.left);
    Kind kind = KindOf(base);
    std::int32_t component = VectorComponent(kind, names.Folded(names.Intern(target.text)));
    if (component >= 0) return AssignComponent(stmt, target, component);
    if (kind == Kind::Record) return AssignRecordField(stmt, target, base);
    TypeId type = CompileExpr(target.left);
    if (type != FailedType) Error(target.span, TypeName(type) + " nao tem campos para mudar");
    CompileValue(stmt.value, FailedType);
}

void Compiler::AssignRecordField(const Stmt& stmt, const Expr& target, TypeId record) {
    CheckContainerWrite(target.left);
    CompileExpr(target.left);
    const std::int32_t index = program->types.At(record).index;
    std::int32_t field = RecordField(index, names.Intern(target.text));
    if (field < 0) {
        MissingField(target, record);
        CompileValue(stmt.value, FailedType);
        return;
    }
    TypeId wanted = program->records[static_cast<std::size_t>(index)].fieldTypes[static_cast<std::size_t>(field)];
    TypeId type = CompileValue(stmt.value, wanted);
    CheckAssign(wanted, type, stmt.value, std::string(target.text));
    EmitIndexed(Op::FieldSet, field, stmt.span);
}

// A vector is a value: the whole of it is read, changed, and written back to its place. The base has a vector's type
// when it comes here, so the names in it are known.
void Compiler::AssignComponent(const Stmt& stmt, const Expr& target, std::int32_t component) {
    const Expr& base = ExprAt(target.left);
    switch (base.kind) {
        case ExprKind::Name: return AssignComponentOfName(stmt, base, component);
        case ExprKind::Index: return AssignComponentOfIndex(stmt, base, component);
        case ExprKind::Field:
            if (KindOf(PeekType(base.left)) == Kind::Record) return AssignComponentOfField(stmt, base, component);
            break;
        default: break;
    }
    Error(base.span, "nao da para mudar um componente aqui");
    CompileValue(stmt.value, FailedType);
}

void Compiler::AssignComponentOfName(const Stmt& stmt, const Expr& base, std::int32_t component) {
    Place place = Resolve(names.Intern(base.text));
    if (!CheckWrite(place, base.span, std::string(base.text))) {
        CompileValue(stmt.value, FailedType);
        return;
    }
    switch (place.kind) {
        case PlaceKind::Field:
            EmitIndexed(Op::LoadLocal, 0, stmt.span);
            Emit(Op::Dup, stmt.span);
            EmitIndexed(Op::FieldGet, place.index, stmt.span);
            EmitComponentChange(stmt, component);
            EmitIndexed(Op::FieldSet, place.index, stmt.span);
            return;
        case PlaceKind::Global:
            EmitIndexed(Op::LoadGlobal, place.index, stmt.span);
            EmitComponentChange(stmt, component);
            EmitIndexed(Op::StoreGlobal, place.index, stmt.span);
            return;
        default:
            EmitIndexed(Op::LoadLocal, place.index, stmt.span);
            EmitComponentChange(stmt, component);
            EmitIndexed(Op::StoreLocal, place.index, stmt.span);
            return;
    }
}

void Compiler::AssignComponentOfIndex(const Stmt& stmt, const Expr& base, std::int32_t component) {
    CheckContainerWrite(base.left);
    TypeId container = CompileExpr(base.left);
    CheckIndex(base.right, container, CompileExpr(base.right));
    bool list = KindOf(container) == Kind::List;
    Emit(Op::Dup2, stmt.span);
    Emit(list ? Op::ListGet : Op::DictGet, stmt.span);
    EmitComponentChange(stmt, component);
    Emit(list ? Op::ListSet : Op::DictSet, stmt.span);
}

void Compiler::AssignComponentOfField(const Stmt& stmt, const Expr& base, std::int32_t component) {
    CheckContainerWrite(base.left);
    TypeId record = CompileExpr(base.left);
    std::int32_t field = RecordField(program->types.At(record).index, names.Intern(base.text));
    Emit(Op::Dup, stmt.span);
    EmitIndexed(Op::FieldGet, field, stmt.span);
    EmitComponentChange(stmt, component);
    EmitIndexed(Op::FieldSet, field, stmt.span);
}

// The new component, and the vector with it.
void Compiler::EmitComponentChange(const Stmt& stmt, std::int32_t component) {
    TypeId type = CompileValue(stmt.value, RealType);
    if (type != FailedType && type != RealType) {
        Error(SpanOf(stmt.value), "o componente de um vetor e um real, e o valor e " + TypeName(type),
              type == IntType ? "escreva real(...) ou ponha um ponto no numero" : "");
    }
    Emit(Op::VecSet, static_cast<std::uint8_t>(component), 0, 0, stmt.span);
}

}  // namespace tavrel::core::script
