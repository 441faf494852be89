// Records, enumerations, actions, and types as written.
#include <algorithm>
#include <utility>

#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

// A chain of plain record fields this long counts as a cycle.
constexpr std::int32_t DeepestRecordChain = 65;

}  // namespace

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
        return IntType + static_cast<TypeId>(reference.kind) - static_cast<TypeId>(Tok::Inteiro);
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
        Error(where, reference.span,
              "a chave de um dicionario tem de ser comparavel, e " + TypeName(key) + " nao e",
              "servem inteiro, real, logico, texto, uma enumeracao, objeto, corpo e som");
        return FailedType;
    }
    return program->types.Dict(key, value);
}

void Compiler::CheckRecordsContainThemselves() {
    std::vector<std::int32_t> heights = RecordHeights();
    std::vector<std::int32_t> visited(program->records.size(), -1);
    for (std::size_t i = 0; i < heights.size() && !diagnostics->Full(); ++i) {
        // Below that height no walk can come back or get too deep, so the plain case costs nothing more.
        if (heights[i] < DeepestRecordChain) continue;
        auto record = static_cast<std::int32_t>(i);
        if (!RecordContains(record, record, visited, 0)) continue;
        Error(units[0], {}, "o registro " + Quoted(program->records[i].name) + " contem a si mesmo",
              "ele pode conter uma \"lista de\" si mesmo, que comeca vazia");
    }
}

// The records that stand in plain fields of a record, in field order.
std::vector<std::int32_t> Compiler::DirectRecords(std::int32_t record) const {
    std::vector<std::int32_t> direct;
    for (TypeId type : program->records[static_cast<std::size_t>(record)].fieldTypes) {
        if (KindOf(type) == Kind::Record) direct.push_back(program->types.At(type).index);
    }
    return direct;
}

// The longest chain of plain record fields under each record, cut at DeepestRecordChain, which also stands for every
// record that reaches a cycle. One depth-first walk, on a stack of its own.
std::vector<std::int32_t> Compiler::RecordHeights() const {
    constexpr std::int32_t Unseen = -1;
    constexpr std::int32_t Open = -2;
    struct Visit {
        std::int32_t record;
        std::vector<std::int32_t> inner;
        std::size_t next;
    };
    std::vector<std::int32_t> heights(program->records.size(), Unseen);
    std::vector<Visit> stack;
    std::vector<std::int32_t> best(program->records.size(), 0);
    auto open = [&](std::int32_t record) {
        heights[static_cast<std::size_t>(record)] = Open;
        stack.push_back({record, DirectRecords(record), 0});
    };
    for (std::size_t root = 0; root < heights.size(); ++root) {
        if (heights[root] == Unseen) open(static_cast<std::int32_t>(root));
        while (!stack.empty()) {
            Visit& visit = stack.back();
            auto record = static_cast<std::size_t>(visit.record);
            if (visit.next == visit.inner.size()) {
                heights[record] = best[record];
                stack.pop_back();
                continue;
            }
            std::int32_t inner = visit.inner[visit.next];
            std::int32_t height = heights[static_cast<std::size_t>(inner)];
            if (height == Unseen) {
                open(inner);
                continue;
            }
            best[record] = std::min(DeepestRecordChain,
                                    std::max(best[record], height == Open ? DeepestRecordChain : height + 1));
            ++visit.next;
        }
    }
    return heights;
}

// `visited` holds, for each record, the target whose walk met it last.
bool Compiler::RecordContains(std::int32_t record, std::int32_t target, std::vector<std::int32_t>& visited,
                              std::int32_t depth) const {
    if (depth == DeepestRecordChain) return true;
    for (std::int32_t inner : DirectRecords(record)) {
        if (inner == target) return true;
        std::int32_t& lastMet = visited[static_cast<std::size_t>(inner)];
        if (lastMet == target) continue;
        lastMet = target;
        if (RecordContains(inner, target, visited, depth + 1)) return true;
    }
    return false;
}

}  // namespace tavrel::core::script
