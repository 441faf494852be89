// Behaviours: for each one the description of its fields and the record that an instance is at run time.
#include <utility>

#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

constexpr std::int32_t FirstDeclaredField = 2;  // behind "eu" and "meu_corpo"

constexpr Permits InitializerPermits = {.writes = AllVariables, .random = false, .rule = false, .reached = true};

struct FieldFlags {
    bool published = false;
    bool isPrivate = false;
};

void AddField(BehaviourInfo& info, RecordInfo& record, const std::string& name, TypeId type, GlobalCategory category,
              FieldFlags flags = {}) {
    info.fieldNames.push_back(name);
    info.fieldTypes.push_back(type);
    info.fieldCategories.push_back(category);
    info.fieldPublished.push_back(flags.published);
    info.fieldPrivate.push_back(flags.isPrivate);
    record.fieldNames.push_back(name);
    record.fieldTypes.push_back(type);
}

bool MayBeParameter(Kind kind) {
    return kind == Kind::Unknown || kind == Kind::Int || kind == Kind::Real || kind == Kind::Bool || kind == Kind::Text;
}

}  // namespace

void Compiler::CollectBehaviours() {
    NameMap seen;
    for (const Section& section : units[0].behaviours) {
        NameId name = names.Intern(section.name);
        if (seen.Has(name)) {
            Error(units[0], section.span, "ja existe um comportamento chamado " + Quoted(section.name));
        }
        seen.Set(name, 0);
        CollectBehaviour(section);
    }
}

void Compiler::CollectBehaviour(const Section& section) {
    BehaviourInfo info;
    RecordInfo record;
    info.name = section.name;
    record.name = "comportamento " + section.name;
    AddField(info, record, "eu", ObjectType, GlobalCategory::Derived);
    AddField(info, record, "meu_corpo", BodyType, GlobalCategory::Derived);
    AddParameters(section, info, record);
    AddStateFields(section, info, record);
    FindOwner(section, info);
    for (const VarDecl& field : section.visual) {
        AddField(info, record, field.name, ResolveType(units[0], field.type), GlobalCategory::Visual);
    }
    for (const VarDecl& field : section.derived) {
        AddField(info, record, field.name, ResolveType(units[0], field.type), GlobalCategory::Derived);
    }
    if (section.hasProgress) {
        Error(units[0], section.span, "um comportamento nao tem \"progresso\"", "o progresso do jogador e do modulo");
    }
    info.record = static_cast<std::int32_t>(program->records.size());
    for (std::size_t i = 0; i < record.fieldNames.size(); ++i) {
        AddFieldName(info.record, names.Intern(record.fieldNames[i]), static_cast<std::int32_t>(i));
    }
    program->records.push_back(std::move(record));
    program->behaviours.push_back(std::move(info));
}

void Compiler::AddParameters(const Section& section, BehaviourInfo& info, RecordInfo& record) {
    for (const VarDecl& parameter : section.parameters) {
        TypeId type = ResolveType(units[0], parameter.type);
        if (!MayBeParameter(KindOf(type))) {
            Error(units[0], parameter.span, "um parametro so pode ser inteiro, real, logico ou texto",
                  "ele vem de uma linha do manifesto do asset");
        }
        AddField(info, record, parameter.name, type, GlobalCategory::Constant);
    }
    info.parameterCount = static_cast<std::int32_t>(section.parameters.size());
}

void Compiler::AddStateFields(const Section& section, BehaviourInfo& info, RecordInfo& record) {
    info.stateFirst = static_cast<std::int32_t>(info.fieldNames.size());
    for (const VarDecl& field : section.state) {
        TypeId type = ResolveType(units[0], field.type);
        if (field.published) CheckPublished(units[0], field.name, field.span, type);
        AddField(info, record, field.name, type, GlobalCategory::State, {field.published, field.isPrivate});
    }
    info.stateCount = static_cast<std::int32_t>(section.state.size());
}

// Called when only parameters and state fields stand: a visual or map-derived field is no owner.
void Compiler::FindOwner(const Section& section, BehaviourInfo& info) {
    NameId owner = names.Intern("dono");
    bool hasPrivate = false;
    for (std::size_t i = 0; i < info.fieldNames.size(); ++i) {
        if (info.fieldTypes[i] == IntType && names.Intern(info.fieldNames[i]) == owner) {
            info.ownerField = static_cast<std::int32_t>(i);
        }
        hasPrivate = hasPrivate || info.fieldPrivate[i];
    }
    if (hasPrivate && info.ownerField < 0) {
        Error(units[0], section.span, "o comportamento " + Quoted(section.name) + " tem campo privado e nao tem dono",
              "declare \"parametro dono: inteiro\" (ou \"dono: inteiro\" no estado): o numero do jogador que recebe "
              "os campos privados");
    }
}

void Compiler::CompileBehaviourInitializer(std::int32_t index) {
    const Section& section = units[0].behaviours[static_cast<std::size_t>(index)];
    unit = &units[0];
    std::int32_t initializer = AppendFunction("valores iniciais de " + section.name, 1, NothingType, 0);
    program->behaviours[static_cast<std::size_t>(index)].initializer = initializer;
    BeginFunction(initializer, index, InitializerPermits, NothingType);
    std::int32_t next = FirstDeclaredField;
    for (const auto* list : {&section.parameters, &section.state, &section.visual, &section.derived}) {
        InitializeFields(*list, next);
    }
    EndFunction(section.span);
}

void Compiler::InitializeFields(const std::vector<VarDecl>& declarations, std::int32_t& next) {
    const BehaviourInfo& info = program->behaviours[static_cast<std::size_t>(behaviour)];
    for (const VarDecl& declaration : declarations) {
        EmitIndexed(Op::LoadLocal, 0, declaration.span);
        CompileInitialValue(declaration, info.fieldTypes[static_cast<std::size_t>(next)]);
        EmitIndexed(Op::FieldSet, next, declaration.span);
        ++next;
    }
}

}  // namespace tavrel::core::script
