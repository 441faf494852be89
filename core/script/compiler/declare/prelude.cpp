// The order matters: every type name that the table uses is declared before any type text is read, and a namespace's
// number, which reaches the type table, follows the rows. A row that is reported is left out and the rest goes on.
#include "core/script/compiler/declare/prelude.h"

#include <unordered_map>
#include <utility>

#include "core/script/compiler/declare/api_values.h"
#include "core/script/compiler/declare/types.h"
#include "core/script/source/fold.h"
#include "core/script/syntax/parse.h"

namespace tavrel::core::script {

namespace {

class WorldBinder {
public:
    WorldBinder(Compiler& shared, const Api& table, Declarations& output)
        : compiler(shared), api(table), declarations(output) {}

    void DeclareAll() {
        for (const ApiRecord& row : api.records) DeclareApiRecord(row);
        declarations.apiRecordCount = compiler.program.records.size();
        for (const ApiEnum& row : api.enums) DeclareApiEnum(row);
        declarations.recordDefaults.resize(declarations.apiRecordCount);
        for (std::size_t i = 0; i < api.records.size() && i < declarations.apiRecordCount; ++i) {
            for (const ApiParam& field : api.records[i].fields)
                DeclareApiRecordField(api.records[i], RecordId(i), field);
        }
        for (const ApiFunction& row : api.functions) DeclareApiFunction(row);
        for (const ApiNamespaceField& row : api.namespaceFields) DeclareApiNamespaceField(row);
        if (HasInput(&api)) ApiSpace("entrada");
        for (const ApiValueField& row : api.valueFields) DeclareApiValueField(row);
    }

private:
    void DeclareApiRecord(const ApiRecord& row);
    void DeclareApiEnum(const ApiEnum& row);
    void DeclareApiRecordField(const ApiRecord& row, RecordId record, const ApiParam& field);
    void DeclareApiFunction(const ApiFunction& row);
    void AddApiParams(const ApiFunction& row, HostSignature& signature);
    void DeclareApiNamespaceField(const ApiNamespaceField& row);
    void DeclareApiValueField(const ApiValueField& row);
    void ApiSpace(const std::string& name);
    TypeId ApiType(const std::string& text, const std::string& context);
    TypeId ReadApiType(const std::string& text, const std::string& context);

    Compiler& compiler;
    const Api& api;
    Declarations& declarations;
    std::unordered_map<std::string, TypeId> knownTypes;  // of the type texts read so far: the table repeats a few
};

void WorldBinder::DeclareApiRecord(const ApiRecord& row) {
    if (declarations.typeNames.Has(compiler.names.Intern(row.name))) {
        ApiError(compiler, row.name, "esse registro duas vezes");
        return;
    }
    DeclareRecord(compiler, declarations, row.name);
}

void WorldBinder::DeclareApiEnum(const ApiEnum& row) {
    if (declarations.typeNames.Has(compiler.names.Intern(row.name))) {
        ApiError(compiler, row.name, "esse nome duas vezes");
        return;
    }
    DeclareEnum(compiler, declarations, {row.name, {row.members.begin(), row.members.end()}},
                [&](std::size_t member) { ApiError(compiler, row.members[member], "esse valor duas vezes"); });
}

void WorldBinder::DeclareApiRecordField(const ApiRecord& row, RecordId record, const ApiParam& field) {
    std::string context = std::string(row.name) + "." + field.name;
    RecordInfo& info = compiler.program.At(record);
    if (!declarations.fieldNames.Add(record, compiler.names.Intern(field.name), FieldId(info.fieldNames.size()))) {
        ApiError(compiler, context, "esse campo duas vezes");
        return;
    }
    TypeId type = ApiType(field.type, context);
    info.fieldNames.emplace_back(field.name);
    info.fieldTypes.push_back(type);
    declarations.recordDefaults[record.Number()].push_back(
        ApiDefault(compiler, declarations, field.fallback, type, context));
}

void WorldBinder::DeclareApiFunction(const ApiFunction& row) {
    std::string folded = FoldName(row.name);
    std::size_t point = folded.rfind('.');
    if (point == std::string::npos) {
        ApiError(compiler, row.name, "uma funcao sem agrupamento");
        return;
    }
    if (declarations.world.hosts.contains(folded)) {
        ApiError(compiler, row.name, "essa funcao duas vezes");
        return;
    }
    ApiSpace(folded.substr(0, point));
    HostSignature signature;
    signature.id = row.id;
    signature.hooks = row.hooks;
    signature.effect = row.effect;
    signature.result = ApiType(row.result, row.name);
    AddApiParams(row, signature);
    declarations.world.hosts.emplace(std::move(folded), std::move(signature));
}

void WorldBinder::AddApiParams(const ApiFunction& row, HostSignature& signature) {
    bool optional = false;
    for (const ApiParam& param : row.params) {
        std::string context = std::string(row.name) + "(" + param.name + ")";
        TypeId type = ApiType(param.type, context);
        signature.paramTypes.push_back(type);
        signature.labels.push_back(FoldName(param.name));
        if (*param.fallback != '\0') {
            optional = true;
            signature.defaults.push_back(ApiDefault(compiler, declarations, param.fallback, type, context));
            continue;
        }
        if (optional) {
            ApiError(compiler, row.name, "um parametro sem padrao depois de um com padrao");
        } else {
            ++signature.required;
        }
        signature.defaults.emplace_back();
    }
}

void WorldBinder::DeclareApiNamespaceField(const ApiNamespaceField& row) {
    std::string space = FoldName(row.space);
    if (space.empty()) {
        ApiError(compiler, row.name, "um campo sem agrupamento");
        return;
    }
    ApiSpace(space);
    std::string fullName = space + "." + FoldName(row.name);
    if (declarations.world.namespaceFields.contains(fullName) || declarations.world.hosts.contains(fullName)) {
        ApiError(compiler, fullName, "esse nome duas vezes");
        return;
    }
    TypeId type = ApiType(row.type, fullName);
    declarations.world.namespaceFields.emplace(std::move(fullName), HostField{row.id, type, row.hooks});
}

void WorldBinder::DeclareApiValueField(const ApiValueField& row) {
    std::string key = ValueFieldKey(row.kind, row.name);
    if (declarations.world.valueFields.contains(key)) {
        ApiError(compiler, row.name, "esse campo duas vezes na mesma especie");
        return;
    }
    TypeId type = ApiType(row.type, row.name);
    declarations.world.valueFields.emplace(std::move(key), HostField{row.id, type, row.hooks});
}

// Registers each dotted prefix and the name itself.
void WorldBinder::ApiSpace(const std::string& name) {
    auto& spaces = declarations.world.spaces;
    for (std::size_t point = name.find('.');; point = name.find('.', point + 1)) {
        spaces.try_emplace(name.substr(0, point), static_cast<std::int32_t>(spaces.size()));
        if (point == std::string::npos) return;
    }
}

TypeId WorldBinder::ApiType(const std::string& text, const std::string& context) {
    if (text.empty()) return NothingType;
    auto known = knownTypes.find(text);
    if (known != knownTypes.end()) return known->second;
    TypeId type = ReadApiType(text, context);
    if (type != ErrorType) knownTypes.emplace(text, type);
    return type;
}

TypeId WorldBinder::ReadApiType(const std::string& text, const std::string& context) {
    std::size_t before = compiler.diagnostics.items.size();
    TypeRefId reference;
    if (!ParseTypeText(text, compiler.units[0], compiler.diagnostics, reference)) {
        compiler.diagnostics.CutTo(before);
        ApiError(compiler, context, "o tipo " + Quoted(text) + " nao existe nesta linguagem");
        return ErrorType;
    }
    TypeId type = ResolveType(compiler, declarations, compiler.Main(), reference);
    if (type == ErrorType) ApiError(compiler, context, "o tipo " + Quoted(text) + " nao foi reconhecido");
    return type;
}

}  // namespace

void Prelude(Compiler& compiler, Declarations& declarations) {
    if (compiler.api != nullptr) WorldBinder(compiler, *compiler.api, declarations).DeclareAll();
}

bool HasInput(const Api* api) {
    return api != nullptr &&
           (api->inputPressed != 0 || api->inputHeld != 0 || api->inputReleased != 0 || api->inputValue != 0);
}

}  // namespace tavrel::core::script
