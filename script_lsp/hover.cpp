// Hover: one line on the word under the cursor, found by its name alone, first in the world's table and then among the
// symbols of the document.
#include <string>
#include <utility>

#include "script_lsp/server.h"
#include "script_lsp/symbols.h"

namespace tavrel::script_lsp {

using core::Json;
using core::script::Api;
using core::script::ApiEnum;
using core::script::SourceFile;
using core::script::Span;

namespace {

// Of several functions of one name the last counts.
std::string FunctionText(const Api& api, const std::string& dotted) {
    std::string text;
    for (const auto& function : api.functions) {
        if (dotted == function.name) text = ApiSignature(function);
    }
    return text;
}

std::string NamespaceFieldText(const Api& api, const std::string& dotted) {
    for (const auto& field : api.namespaceFields) {
        if (dotted == std::string(field.space) + "." + field.name) return dotted + ": " + field.type;
    }
    return {};
}

std::string EnumText(const ApiEnum& declared, const std::string& name) {
    if (name == declared.name) return "enumeracao " + name;
    for (const char* member : declared.members) {
        if (name == member) return std::string(declared.name) + "." + name;
    }
    return {};
}

std::string TypeOfWorldText(const Api& api, const std::string& name) {
    for (const auto& record : api.records) {
        if (name == record.name) return "registro " + name;
    }
    for (const ApiEnum& declared : api.enums) {
        std::string text = EnumText(declared, name);
        if (!text.empty()) return text;
    }
    return {};
}

std::string WorldText(const Api& api, const Word& word) {
    const std::string dotted = word.qualifier.empty() ? word.text : word.qualifier + "." + word.text;
    std::string text = FunctionText(api, dotted);
    if (text.empty()) text = NamespaceFieldText(api, dotted);
    if (text.empty()) text = TypeOfWorldText(api, word.text);
    return text;
}

std::string SymbolText(const SourceFile& file, const std::string& name) {
    for (Symbol& symbol : Symbols(TreeOf(file))) {
        if (symbol.name == name) return std::move(symbol.detail);
    }
    return {};
}

}  // namespace

Json Server::Hover(const std::string& uri, Position position) const {
    const SourceFile file = FileOf(uri);
    const Word word = WordAt(file.text, OffsetOf(file, position));
    if (word.text.empty()) return {};
    std::string text = api == nullptr ? "" : WorldText(*api, word);
    if (text.empty()) text = SymbolText(file, word.text);
    if (text.empty()) return {};
    Json contents = Json::Object();
    contents.Set("kind", Json::Text("plaintext"));
    contents.Set("value", Json::Text(std::move(text)));
    Json hover = Json::Object();
    hover.Set("contents", std::move(contents));
    hover.Set("range", RangeOf(file, Span{word.start, word.end}));
    return hover;
}

}  // namespace tavrel::script_lsp
