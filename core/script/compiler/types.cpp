// Records, enumerations, actions, and types as written.
#include <utility>

#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

// Every record and enumeration gets its id before any field is resolved, so that records may name each other in any
// order and across files.
void Compiler::CollectTypes() {
    for (const Unit& each : units) {
        for (const RecordDecl& declaration : each.records) CollectRecord(each, declaration);
        for (const EnumDecl& declaration : each.enums) CollectEnum(each, declaration);
    }
}

void Compiler::CollectRecord(const Unit& where, const RecordDecl& declaration) {
    NameId name = names.Intern(declaration.name);
    if (typeNames.Has(name)) {
        Error(where, declaration.span, "ja existe um tipo chamado " + Quoted(declaration.name));
        recordIndices.push_back(-1);
        return;
    }
    auto index = static_cast<std::int32_t>(program->records.size());
    program->records.push_back({declaration.name, {}, {}, -1});
    recordIndices.push_back(index);
    recordDeclarations.emplace_back(&where, &declaration);
    typeNames.Set(name, program->types.Record(index, declaration.name));
}

void Compiler::CollectEnum(const Unit& where, const EnumDecl& declaration) {
    NameId name = names.Intern(declaration.name);
    if (typeNames.Has(name)) {
        Error(where, declaration.span, "ja existe um tipo chamado " + Quoted(declaration.name));
        return;
    }
    auto index = static_cast<std::int32_t>(program->enums.size());
    program->enums.push_back({declaration.name, declaration.members});
    typeNames.Set(name, program->types.Enum(index, declaration.name));
    for (std::size_t i = 0; i < declaration.members.size(); ++i) {
        NameId member = names.Intern(declaration.members[i]);
        if (enumMembers.Has(member)) {
            Error(where, declaration.memberSpans[i],
                  "o nome " + Quoted(declaration.members[i]) + " ja pertence a outra enumeracao");
            continue;
        }
        enumMembers.Set(member, static_cast<std::int32_t>(enumMemberPlaces.size()));
        enumMemberPlaces.emplace_back(index, static_cast<std::int32_t>(i));
    }
}

void Compiler::ResolveRecords() {
    std::size_t next = 0;
    for (const Unit& each : units) {
        for (const RecordDecl& declaration : each.records) {
            std::int32_t record = recordIndices[next++];
            if (record >= 0) ResolveFields(each, declaration, record);
        }
    }
}

void Compiler::ResolveFields(const Unit& where, const RecordDecl& declaration, std::int32_t record) {
    for (const VarDecl& field : declaration.fields) {
        RecordInfo& info = program->records[static_cast<std::size_t>(record)];
        if (!AddFieldName(record, names.Intern(field.name), static_cast<std::int32_t>(info.fieldNames.size()))) {
            Error(where, field.span,
                  "o registro " + Quoted(declaration.name) + " ja tem um campo chamado " + Quoted(field.name));
        }
        info.fieldNames.push_back(field.name);
        info.fieldTypes.push_back(ResolveType(where, field.type));
    }
}

void Compiler::CollectActions() {
    for (const Unit& each : units) {
        for (const ActionDecl& declaration : each.actions) {
            NameId name = names.Intern(declaration.name);
            if (actionNames.Has(name)) {
                Error(each, declaration.span, "ja existe uma acao chamada " + Quoted(declaration.name));
                continue;
            }
            actionNames.Set(name, static_cast<std::int32_t>(program->actions.size()));
            program->actions.push_back({declaration.name, declaration.bindings});
        }
    }
}

TypeId Compiler::ResolveType(const Unit& where, std::int32_t typeRef) {
    if (typeRef < 0) return FailedType;
    const TypeRef& reference = where.types[static_cast<std::size_t>(typeRef)];
    if (reference.kind >= Tok::Inteiro && reference.kind <= Tok::Som) {
        return TypeId(IntType.value + static_cast<std::int32_t>(reference.kind) - static_cast<std::int32_t>(Tok::Inteiro));
    }
    if (reference.kind == Tok::Lista) {
        TypeId element = ResolveType(where, reference.element);
        return element == FailedType ? FailedType : program->types.List(element);
    }
    if (reference.kind == Tok::Dicionario) return ResolveDictionary(where, reference);
    if (reference.kind != Tok::Name) return FailedType;

    if (TypeId type = typeNames.Find(names.Intern(reference.name)); type >= 0) return type;
    Error(where, reference.span, "o tipo " + Quoted(reference.name) + " nao foi declarado",
          "declare um \"registro\" ou uma \"enumeracao\" com esse nome");
    return FailedType;
}

TypeId Compiler::ResolveDictionary(const Unit& where, const TypeRef& reference) {
    TypeId key = ResolveType(where, reference.key);
    TypeId value = ResolveType(where, reference.element);
    if (key == FailedType || value == FailedType) return FailedType;
    if (!program->types.Comparable(key)) {
        Error(where, reference.span, "a chave de um dicionario tem de ser comparavel, e " + TypeName(key) + " nao e",
              "servem inteiro, real, logico, texto, uma enumeracao, objeto, corpo e som");
        return FailedType;
    }
    return program->types.Dict(key, value);
}

}  // namespace tavrel::core::script
