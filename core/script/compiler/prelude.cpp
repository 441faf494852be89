// The world's table, which is all text, in the compiler's own terms: types, signatures, namespaces and fields. After
// it a script sees the world as if it had been declared, except that it cannot be redefined. A fault of the table is
// reported like a fault of the script, with a hint that names the table.
#include <utility>

#include "core/script/compiler/compiler.h"
#include "core/script/source/fold.h"
#include "core/script/syntax/parse.h"

namespace tavrel::core::script {

namespace {

std::string ValueFieldKey(const ApiValueField& row) {
    return std::to_string(static_cast<int>(row.kind)) + "." + FoldName(row.name);
}

}  // namespace

// Every type name that the table uses is known before any type text is read.
void Compiler::Prelude() {
    if (api == nullptr) return;
    DeclareApiRecords();
    apiRecordCount = program->records.size();
    DeclareApiEnums();
    DeclareApiRecordFields();
    for (const ApiFunction& row : api->functions) DeclareApiFunction(row);
    for (const ApiNamespaceField& row : api->namespaceFields) DeclareApiNamespaceField(row);
    if (HasInput()) ApiSpace("entrada");
    for (const ApiValueField& row : api->valueFields) DeclareApiValueField(row);
}

bool Compiler::HasInput() const {
    return api != nullptr &&
           (api->inputPressed != 0 || api->inputHeld != 0 || api->inputReleased != 0 || api->inputValue != 0);
}

void Compiler::DeclareApiRecords() {
    for (const ApiRecord& row : api->records) {
        NameId name = names.Intern(row.name);
        if (typeNames.Has(name)) {
            ApiError(row.name, "esse registro duas vezes");
            continue;
        }
        auto index = static_cast<std::int32_t>(program->records.size());
        program->records.push_back({row.name, {}, {}, -1});
        typeNames.Set(name, program->types.Record(index, row.name));
    }
}

void Compiler::DeclareApiEnums() {
    for (const ApiEnum& row : api->enums) {
        NameId name = names.Intern(row.name);
        if (typeNames.Has(name)) {
            ApiError(row.name, "esse nome duas vezes");
            continue;
        }
        auto index = static_cast<std::int32_t>(program->enums.size());
        program->enums.push_back({row.name, {row.members.begin(), row.members.end()}});
        typeNames.Set(name, program->types.Enum(index, row.name));
        for (std::size_t i = 0; i < row.members.size(); ++i) {
            NameId member = names.Intern(row.members[i]);
            if (enumMembers.Has(member)) {
                ApiError(row.members[i], "esse valor duas vezes");
                continue;
            }
            enumMembers.Set(member, static_cast<std::int32_t>(enumMemberPlaces.size()));
            enumMemberPlaces.emplace_back(index, static_cast<std::int32_t>(i));
        }
    }
}

void Compiler::DeclareApiRecordFields() {
    recordDefaults.resize(apiRecordCount);
    for (std::size_t i = 0; i < api->records.size() && i < apiRecordCount; ++i) {
        for (const ApiParam& field : api->records[i].fields) {
            std::string context = std::string(api->records[i].name) + "." + field.name;
            RecordInfo& info = program->records[i];
            auto index = static_cast<std::int32_t>(info.fieldNames.size());
            if (!AddFieldName(static_cast<std::int32_t>(i), names.Intern(field.name), index)) {
                ApiError(context, "esse campo duas vezes");
                continue;
            }
            TypeId type = ApiType(field.type, context);
            info.fieldNames.emplace_back(field.name);
            info.fieldTypes.push_back(type);
            recordDefaults[i].push_back(ApiDefault(field.fallback, type, context));
        }
    }
}

void Compiler::DeclareApiFunction(const ApiFunction& row) {
    std::string folded = FoldName(row.name);
    std::size_t point = folded.rfind('.');
    if (point == std::string::npos) {
        ApiError(row.name, "uma funcao sem agrupamento");
        return;
    }
    if (hostNames.contains(folded)) {
        ApiError(row.name, "essa funcao duas vezes");
        return;
    }
    ApiSpace(folded.substr(0, point));
    hostNames.emplace(folded, static_cast<std::int32_t>(hosts.size()));
    HostSignature signature;
    signature.id = row.id;
    signature.hooks = row.hooks;
    signature.effect = row.effect;
    signature.result = ApiType(row.result, row.name);
    AddApiParams(row, signature);
    hosts.push_back(std::move(signature));
}

void Compiler::AddApiParams(const ApiFunction& row, HostSignature& signature) {
    bool optional = false;
    for (const ApiParam& param : row.params) {
        std::string context = std::string(row.name) + "(" + param.name + ")";
        TypeId type = ApiType(param.type, context);
        signature.paramTypes.push_back(type);
        signature.labels.push_back(FoldName(param.name));
        if (*param.fallback != '\0') {
            optional = true;
            signature.defaults.push_back(ApiDefault(param.fallback, type, context));
            continue;
        }
        if (optional) {
            ApiError(row.name, "um parametro sem padrao depois de um com padrao");
        } else {
            ++signature.required;
        }
        signature.defaults.emplace_back();
    }
}

void Compiler::DeclareApiNamespaceField(const ApiNamespaceField& row) {
    std::string space = FoldName(row.space);
    if (space.empty()) {
        ApiError(row.name, "um campo sem agrupamento");
        return;
    }
    ApiSpace(space);
    std::string fullName = space + "." + FoldName(row.name);
    if (namespaceFieldNames.contains(fullName) || hostNames.contains(fullName)) {
        ApiError(fullName, "esse nome duas vezes");
        return;
    }
    namespaceFieldNames.emplace(fullName, static_cast<std::int32_t>(namespaceFields.size()));
    namespaceFields.push_back({row.id, ApiType(row.type, fullName), row.hooks});
}

void Compiler::DeclareApiValueField(const ApiValueField& row) {
    auto [place, isNew] =
        valueFieldNames.try_emplace(ValueFieldKey(row), static_cast<std::int32_t>(valueFields.size()));
    if (!isNew) {
        ApiError(row.name, "esse campo duas vezes na mesma especie");
        return;
    }
    valueFields.push_back({row.id, ApiType(row.type, row.name), row.hooks});
}

// Registers each dotted prefix and the name itself. A namespace's index follows the order of the table.
void Compiler::ApiSpace(const std::string& name) {
    for (std::size_t point = name.find('.');; point = name.find('.', point + 1)) {
        std::string prefix = name.substr(0, point);
        if (spaceNames.try_emplace(prefix, static_cast<std::int32_t>(spaces.size())).second) spaces.push_back(prefix);
        if (point == std::string::npos) return;
    }
}

TypeId Compiler::ApiType(const std::string& text, const std::string& context) {
    if (text.empty()) return NothingType;
    // The table says the same few types over and over.
    auto known = apiTypes.find(text);
    if (known != apiTypes.end()) return known->second;
    std::size_t before = diagnostics->items.size();
    TypeRefId reference;
    if (!ParseTypeText(text, units[0], *diagnostics, reference)) {
        diagnostics->CutTo(before);
        ApiError(context, "o tipo " + Quoted(text) + " nao existe nesta linguagem");
        return FailedType;
    }
    TypeId type = ResolveType(units[0], reference);
    if (type == FailedType) {
        ApiError(context, "o tipo " + Quoted(text) + " nao foi reconhecido");
    } else {
        apiTypes.emplace(text, type);
    }
    return type;
}

void Compiler::ApiError(const std::string& subject, const std::string& what) {
    Error(units[0], {}, "a API do mundo declara " + Quoted(subject) + " e " + what,
          "defeito na tabela da API do host, e nao no script");
}

// The direct names under a namespace, fields first; nested namespaces are left out.
std::string Compiler::ApiHint(const std::string& prefix) const {
    std::string start = prefix + ".";
    std::string list;
    auto collect = [&](const std::map<std::string, std::int32_t, std::less<>>& table) {
        for (auto row = table.lower_bound(start); row != table.end() && row->first.starts_with(start); ++row) {
            std::string leaf = row->first.substr(start.size());
            if (leaf.find('.') != std::string::npos) continue;
            list += (list.empty() ? "" : ", ") + leaf;
        }
    };
    collect(namespaceFieldNames);
    collect(hostNames);
    return list.empty() ? list : Quoted(prefix) + " tem " + list;
}

std::string Compiler::LabelHint(const HostSignature& signature) const {
    std::string list;
    for (std::size_t i = 0; i < signature.labels.size(); ++i) {
        list += (i == 0 ? "" : ", ") + signature.labels[i];
        if (i >= static_cast<std::size_t>(signature.required)) list += " =";
    }
    return list.empty() ? list : "os argumentos sao " + list;
}

}  // namespace tavrel::core::script
