// Types get their ids in a first walk and their fields in a second, so that records may name each other in any order
// and across files. The first declaration of a name keeps it.
#include "core/script/compiler/declare/types.h"

namespace tavrel::core::script {

namespace {

RecordId CollectRecord(Compiler& compiler, Declarations& declarations, const Unit& where,
                       const RecordDecl& declaration) {
    if (declarations.typeNames.Has(compiler.names.Intern(declaration.name))) {
        compiler.Error(where, declaration.span, "ja existe um tipo chamado " + Quoted(declaration.name));
        return RecordId();
    }
    declarations.recordSources.push_back({&where, &declaration});
    return DeclareRecord(compiler, declarations, declaration.name);
}

void CollectEnum(Compiler& compiler, Declarations& declarations, const Unit& where, const EnumDecl& declaration) {
    if (declarations.typeNames.Has(compiler.names.Intern(declaration.name))) {
        compiler.Error(where, declaration.span, "ja existe um tipo chamado " + Quoted(declaration.name));
        return;
    }
    DeclareEnum(compiler, declarations, {declaration.name, declaration.members}, [&](std::size_t member) {
        compiler.Error(where, declaration.memberSpans[member],
                       "o nome " + Quoted(declaration.members[member]) + " ja pertence a outra enumeracao");
    });
}

void ResolveFields(Compiler& compiler, Declarations& declarations, const Unit& where, const RecordDecl& declaration,
                   RecordId record) {
    for (const VarDecl& field : declaration.fields) {
        RecordInfo& info = compiler.program.At(record);
        if (!declarations.fieldNames.Add(record, compiler.names.Intern(field.name), FieldId(info.fieldNames.size()))) {
            compiler.Error(where, field.span,
                           "o registro " + Quoted(declaration.name) + " ja tem um campo chamado " + Quoted(field.name));
        }
        info.fieldNames.push_back(field.name);
        info.fieldTypes.push_back(ResolveType(compiler, declarations, where, field.type));
    }
}

TypeId ResolveDictionary(Compiler& compiler, const Declarations& declarations, const Unit& where,
                         const TypeRef& reference) {
    TypeId key = ResolveType(compiler, declarations, where, reference.key);
    TypeId value = ResolveType(compiler, declarations, where, reference.element);
    if (key == ErrorType || value == ErrorType) return ErrorType;
    if (!compiler.program.types.Comparable(key)) {
        compiler.Error(where, reference.span,
                       "a chave de um dicionario tem de ser comparavel, e " + compiler.TypeName(key) + " nao e",
                       "servem inteiro, real, logico, texto, uma enumeracao, objeto, corpo e som");
        return ErrorType;
    }
    return compiler.program.types.Dict(key, value);
}

TypeId ResolveNamed(Compiler& compiler, const Declarations& declarations, const Unit& where, const TypeRef& reference) {
    if (TypeId type = declarations.typeNames.Find(compiler.names.Intern(reference.name))) return type;
    compiler.Error(where, reference.span, "o tipo " + Quoted(reference.name) + " nao foi declarado",
                   "declare um \"registro\" ou uma \"enumeracao\" com esse nome");
    return ErrorType;
}

// ErrorType for a word that needs more to name a type.
constexpr TypeId BuiltInType(Tok word) {
    switch (word) {
        case Tok::Inteiro: return IntType;
        case Tok::Real: return RealType;
        case Tok::Logico: return BoolType;
        case Tok::Texto: return TextType;
        case Tok::Vetor2: return Vec2Type;
        case Tok::Vetor3: return Vec3Type;
        case Tok::Cor: return ColorType;
        case Tok::Objeto: return ObjectType;
        case Tok::Corpo: return BodyType;
        case Tok::Som: return SoundType;
        default: return ErrorType;
    }
}

// A type word that nothing resolves would compile as a failed type without a report.
constexpr bool Resolves(Tok word) {
    return BuiltInType(word) != ErrorType || word == Tok::Lista || word == Tok::Dicionario;
}
#define TAVREL_TYPE_WORD(name, number, word) static_assert(Resolves(Tok::name), word " is no type yet");
#include "core/script/syntax/token.def"

}  // namespace

std::vector<RecordId> CollectTypes(Compiler& compiler, Declarations& declarations) {
    std::vector<RecordId> records;
    for (const Unit& unit : compiler.units) {
        for (const RecordDecl& declaration : unit.records) {
            records.push_back(CollectRecord(compiler, declarations, unit, declaration));
        }
        for (const EnumDecl& declaration : unit.enums) CollectEnum(compiler, declarations, unit, declaration);
    }
    return records;
}

void ResolveRecords(Compiler& compiler, Declarations& declarations, const std::vector<RecordId>& records) {
    auto record = records.begin();
    for (const Unit& unit : compiler.units) {
        for (const RecordDecl& declaration : unit.records) {
            if (*record) ResolveFields(compiler, declarations, unit, declaration, *record);
            ++record;
        }
    }
}

void CollectActions(Compiler& compiler, Declarations& declarations) {
    for (const Unit& unit : compiler.units) {
        for (const ActionDecl& declaration : unit.actions) {
            NameId name = compiler.names.Intern(declaration.name);
            if (declarations.actionNames.Has(name)) {
                compiler.Error(unit, declaration.span, "ja existe uma acao chamada " + Quoted(declaration.name));
                continue;
            }
            declarations.actionNames.Set(name, ActionId(compiler.program.actions.size()));
            compiler.program.actions.push_back({declaration.name, declaration.bindings});
        }
    }
}

RecordId DeclareRecord(Compiler& compiler, Declarations& declarations, const std::string& name) {
    RecordId index(compiler.program.records.size());
    compiler.program.records.push_back({name, {}, {}, BehaviourId()});
    declarations.typeNames.Set(compiler.names.Intern(name), compiler.program.types.Record(index.value, name));
    return index;
}

TypeId ResolveType(Compiler& compiler, const Declarations& declarations, const Unit& where, TypeRefId written) {
    if (!written) return ErrorType;
    const TypeRef& reference = where.At(written);
    switch (reference.kind) {
        case Tok::Lista: {
            TypeId element = ResolveType(compiler, declarations, where, reference.element);
            return element == ErrorType ? ErrorType : compiler.program.types.List(element);
        }
        case Tok::Dicionario: return ResolveDictionary(compiler, declarations, where, reference);
        case Tok::Name: return ResolveNamed(compiler, declarations, where, reference);
        default: return BuiltInType(reference.kind);  // ErrorType too where no type could be read
    }
}

}  // namespace tavrel::core::script
