// Completion: the names that may stand at a place. Behind a dotted name these are its members, at any other place all
// names there are. They come in the order in which they are found: the client filters and sorts.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "core/script/program/program.h"
#include "script_lsp/server.h"
#include "script_lsp/symbols.h"

namespace tavrel::script_lsp {

using core::Json;
using core::script::Api;
using core::script::ApiEnum;
using core::script::ApiFunction;
using core::script::ApiNamespaceField;
using core::script::ApiParam;
using core::script::ApiRecord;
using core::script::ApiValueField;
using core::script::Kind;
using core::script::Native;
using core::script::NativeName;
using core::script::SourceFile;
using core::script::Stmt;
using core::script::StmtKind;
using core::script::Unit;
using core::script::VarDecl;

namespace {

// The words of the language, those that mean something at one place only among them, in the order of the answer. A test
// asks for every keyword of token.def.
constexpr const char* Keywords[] = {
    "se",         "senao",     "enquanto",      "para",          "ate",          "passo",
    "escolha",    "caso",      "contrario",     "funcao",        "procedimento", "retorne",
    "pare",       "continue",  "fim",           "entao",         "faca",         "e",
    "ou",         "nao",       "verdadeiro",    "falso",         "nada",         "modulo",
    "importar",   "constante", "estado",        "visual",        "progresso",    "registro",
    "enumeracao", "acao",      "comportamento", "parametro",     "em",           "de",
    "tecla",      "mouse",     "controle",      "eixo_controle", "negativo",     "camera",
    "inteiro",    "real",      "logico",        "texto",         "lista",        "dicionario",
    "objeto",     "corpo",     "som",           "vetor2",        "vetor3",       "cor"};
static_assert(std::size(Keywords) == 54);

// The type words whose values have fields.
struct BuiltInType {
    std::string_view word;
    Kind kind = Kind::Unknown;
};
constexpr BuiltInType BuiltInTypes[] = {{"objeto", Kind::Object}, {"corpo", Kind::Body},  {"som", Kind::Sound},
                                        {"vetor2", Kind::Vec2},   {"vetor3", Kind::Vec3}, {"cor", Kind::Color}};

constexpr std::string_view Input = "entrada";

bool HasInput(const Api& api) {
    return api.inputPressed != 0 || api.inputHeld != 0 || api.inputReleased != 0 || api.inputValue != 0;
}

std::string UpToPoint(std::string_view text) {
    return std::string(text.substr(0, text.find('.')));
}

// The items of one answer: a label once for each of its kinds.
class ItemList {
public:
    void Add(const std::string& label, ItemKind kind, const std::string& detail) {
        if (label.empty() || !seen.insert(label + "/" + std::to_string(kind)).second) return;
        Json& item = items.Add(Json::Object());
        item.Set("label", Json::Text(label));
        item.Set("kind", Json::Int(kind));
        if (!detail.empty()) item.Set("detail", Json::Text(detail));
    }

    void AddField(const std::string& name, const std::string& type) { Add(name, FieldItem, name + ": " + type); }

    Json items = Json::Array();

private:
    std::unordered_set<std::string> seen;
};

void AddNamespaces(const Api& api, ItemList& list) {
    std::set<std::string> names;
    for (const ApiFunction& function : api.functions) {
        const std::string_view name = function.name;
        if (name.find('.') != std::string_view::npos) names.insert(UpToPoint(name));
    }
    for (const ApiNamespaceField& field : api.namespaceFields) names.insert(UpToPoint(field.space));
    for (const std::string& name : names) list.Add(name, ModuleItem, "");
    if (HasInput(api)) list.Add(std::string(Input), ModuleItem, "");
}

void AddWorld(const Api& api, ItemList& list) {
    AddNamespaces(api, list);
    for (const ApiRecord& record : api.records) {
        list.Add(record.name, StructItem, std::string("registro ") + record.name);
    }
    for (const ApiEnum& declared : api.enums) {
        list.Add(declared.name, EnumItem, std::string("enumeracao ") + declared.name);
        for (const char* member : declared.members) {
            list.Add(member, EnumMemberItem, std::string(declared.name) + "." + member);
        }
    }
}

void AddAllNames(const Unit& unit, const Api* api, ItemList& list) {
    for (const char* keyword : Keywords) list.Add(keyword, KeywordItem, "");
    for (const Symbol& symbol : Symbols(unit)) list.Add(symbol.name, symbol.kind, symbol.detail);
    for (std::uint16_t i = 0; i < static_cast<std::uint16_t>(Native::Count); ++i) {
        list.Add(NativeName(static_cast<Native>(i)), FunctionItem, "");
    }
    if (api != nullptr) AddWorld(*api, list);
}

// Functions and values of a namespace of the world, and the namespaces directly below it.
void AddNamespaceMembers(const Api& api, const std::string& qualifier, ItemList& list) {
    const std::string prefix = qualifier + ".";
    for (const ApiFunction& function : api.functions) {
        const std::string_view name = function.name;
        if (!name.starts_with(prefix)) continue;
        const std::string_view rest = name.substr(prefix.size());
        const std::string nested = UpToPoint(rest);
        if (nested.size() < rest.size()) {
            list.Add(nested, ModuleItem, prefix + nested);
        } else {
            list.Add(nested, FunctionItem, ApiSignature(function));
        }
    }
    for (const ApiNamespaceField& field : api.namespaceFields) {
        const std::string_view space = field.space;
        if (space == qualifier) {
            list.AddField(field.name, field.type);
        } else if (space.starts_with(prefix)) {
            list.Add(UpToPoint(space.substr(prefix.size())), ModuleItem, std::string(space));
        }
    }
}

void AddInputMembers(const Unit& unit, const std::string& qualifier, ItemList& list) {
    if (qualifier == Input) {
        for (const auto& action : unit.actions) list.Add(action.name, VariableItem, "acao " + action.name);
    }
    if (qualifier.size() > Input.size() && UpToPoint(qualifier) == Input) {
        for (const char* read : {"apertado", "pressionado", "solto"}) list.Add(read, FieldItem, "logico");
        list.Add("valor", FieldItem, "real");
    }
}

// The type of a name as text, empty for none: of its last declaration, a symbol before a local variable.
std::string TypeOfName(const Unit& unit, const std::string& name) {
    const auto declares = [&name](const Stmt& stmt) { return stmt.kind == StmtKind::Declare && stmt.name == name; };
    const auto local = std::find_if(unit.stmts.rbegin(), unit.stmts.rend(), declares);
    std::string type = local == unit.stmts.rend() ? "" : TypeText(unit, local->type);
    for (const Symbol& symbol : Symbols(unit)) {
        if (symbol.name != name) continue;
        const std::size_t colon = symbol.detail.rfind(": ");
        if (colon != std::string::npos) type = symbol.detail.substr(colon + 2);
    }
    return type;
}

void AddFieldsOfType(const Api& api, const std::string& type, ItemList& list) {
    for (const ApiRecord& record : api.records) {
        if (type != record.name) continue;
        for (const ApiParam& field : record.fields) list.AddField(field.name, field.type);
    }
    for (const BuiltInType& builtIn : BuiltInTypes) {
        if (builtIn.word != type) continue;
        for (const ApiValueField& field : api.valueFields) {
            if (field.kind == builtIn.kind) list.AddField(field.name, field.type);
        }
    }
}

void AddMembers(const Unit& unit, const Api& api, const std::string& qualifier, ItemList& list) {
    AddNamespaceMembers(api, qualifier, list);
    if (HasInput(api)) AddInputMembers(unit, qualifier, list);
    const std::string type = TypeOfName(unit, qualifier);
    if (!type.empty()) AddFieldsOfType(api, type, list);
    for (const auto& record : unit.records) {
        if (record.name != type) continue;
        for (const VarDecl& field : record.fields) list.AddField(field.name, TypeText(unit, field.type));
    }
}

}  // namespace

Json Server::Completion(const std::string& uri, Position position) const {
    SourceFile file = FileOf(uri);
    const Word word = WordAt(file.text, OffsetOf(file, position));
    const Unit unit = TreeOf(std::move(file));
    ItemList list;
    if (!word.dotted || word.qualifier.empty()) {
        AddAllNames(unit, api, list);
    } else if (api != nullptr) {
        AddMembers(unit, *api, word.qualifier, list);
    }
    return std::move(list.items);
}

}  // namespace tavrel::script_lsp
