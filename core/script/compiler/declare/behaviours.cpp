// An instance of a behaviour is a record at run time. Its fields stand in one order in the BehaviourInfo and in that
// record: "eu" and "meu_corpo", parameters, state, visual and map-derived fields. Of two fields of one name the first
// is the one that code reaches.
#include "core/script/compiler/declare/behaviours.h"

#include <utility>

#include "core/script/compiler/declare/globals.h"
#include "core/script/compiler/declare/types.h"

namespace tavrel::core::script {

namespace {

struct FieldFlags {
    bool published = false;
    bool isPrivate = false;
};

bool MayBeParameter(Kind kind) {
    switch (kind) {
        case Kind::Unknown:  // reported already
        case Kind::Int:
        case Kind::Real:
        case Kind::Bool:
        case Kind::Text: return true;
        case Kind::Nothing:
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color:
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound:
        case Kind::List:
        case Kind::Dict:
        case Kind::Record:
        case Kind::Enum:
        case Kind::Space: return false;
    }
    return false;
}

// Gathers the fields of one behaviour.
class BehaviourBuilder {
public:
    BehaviourBuilder(Compiler& shared, const Declarations& known, const Section& declared)
        : compiler(shared), declarations(known), section(declared) {
        info.name = section.name;
        record.name = "comportamento " + section.name;
    }

    void AddFields();
    void Store(Declarations& output);

private:
    void AddField(const std::string& name, TypeId type, GlobalCategory category, FieldFlags flags = {});
    void AddParameters();
    void AddStateFields();
    void FindOwner();
    TypeId TypeOf(const VarDecl& field) { return ResolveType(compiler, declarations, compiler.Main(), field.type); }
    void Error(Span span, std::string message, std::string hint) {
        compiler.Error(compiler.Main(), span, std::move(message), std::move(hint));
    }

    Compiler& compiler;
    const Declarations& declarations;
    const Section& section;
    BehaviourInfo info;
    RecordInfo record;
};

void BehaviourBuilder::AddField(const std::string& name, TypeId type, GlobalCategory category, FieldFlags flags) {
    info.fieldNames.push_back(name);
    info.fieldTypes.push_back(type);
    info.fieldCategories.push_back(category);
    info.fieldPublished.push_back(flags.published);
    info.fieldPrivate.push_back(flags.isPrivate);
    record.fieldNames.push_back(name);
    record.fieldTypes.push_back(type);
}

// The owner is looked for when only parameters and state fields stand: a visual or map-derived field is none.
void BehaviourBuilder::AddFields() {
    AddField("eu", ObjectType, GlobalCategory::Derived);
    AddField("meu_corpo", BodyType, GlobalCategory::Derived);
    AddParameters();
    AddStateFields();
    FindOwner();
    for (const VarDecl& field : section.visual) AddField(field.name, TypeOf(field), GlobalCategory::Visual);
    for (const VarDecl& field : section.derived) AddField(field.name, TypeOf(field), GlobalCategory::Derived);
    if (section.hasProgress) {
        Error(section.span, "um comportamento nao tem \"progresso\"", "o progresso do jogador e do modulo");
    }
}

void BehaviourBuilder::AddParameters() {
    for (const VarDecl& parameter : section.parameters) {
        TypeId type = TypeOf(parameter);
        if (!MayBeParameter(compiler.KindOf(type))) {
            Error(parameter.span, "um parametro so pode ser inteiro, real, logico ou texto",
                  "ele vem de uma linha do manifesto do asset");
        }
        AddField(parameter.name, type, GlobalCategory::Constant);
    }
    info.parameterCount = static_cast<std::int32_t>(section.parameters.size());
}

void BehaviourBuilder::AddStateFields() {
    info.stateFirst = static_cast<std::int32_t>(info.fieldNames.size());
    for (const VarDecl& field : section.state) {
        TypeId type = TypeOf(field);
        if (field.published) CheckPublished(compiler, compiler.Main(), field.name, field.span, type);
        AddField(field.name, type, GlobalCategory::State, {field.published, field.isPrivate});
    }
    info.stateCount = static_cast<std::int32_t>(section.state.size());
}

void BehaviourBuilder::FindOwner() {
    NameId owner = compiler.names.Intern("dono");
    bool hasPrivate = false;
    for (std::size_t i = 0; i < info.fieldNames.size(); ++i) {
        if (info.fieldTypes[i] == IntType && compiler.names.Intern(info.fieldNames[i]) == owner) {
            info.ownerField = static_cast<std::int32_t>(i);
        }
        hasPrivate = hasPrivate || info.fieldPrivate[i];
    }
    if (hasPrivate && info.ownerField < 0) {
        Error(section.span, "o comportamento " + Quoted(section.name) + " tem campo privado e nao tem dono",
              "declare \"parametro dono: inteiro\" (ou \"dono: inteiro\" no estado): o numero do jogador que recebe "
              "os campos privados");
    }
}

void BehaviourBuilder::Store(Declarations& output) {
    info.record = RecordId(compiler.program.records.size());
    for (std::size_t i = 0; i < record.fieldNames.size(); ++i) {
        output.fieldNames.Add(info.record, compiler.names.Intern(record.fieldNames[i]), FieldId(i));
    }
    compiler.program.records.push_back(std::move(record));
    compiler.program.behaviours.push_back(std::move(info));
}

}  // namespace

void CollectBehaviours(Compiler& compiler, Declarations& declarations) {
    NameMap<BehaviourId> seen;
    for (const Section& section : compiler.Main().behaviours) {
        NameId name = compiler.names.Intern(section.name);
        if (seen.Has(name)) {
            compiler.Error(compiler.Main(), section.span, "ja existe um comportamento chamado " + Quoted(section.name));
        }
        seen.Set(name, BehaviourId(compiler.program.behaviours.size()));
        BehaviourBuilder builder(compiler, declarations, section);
        builder.AddFields();
        builder.Store(declarations);
    }
}

}  // namespace tavrel::core::script
