// Definition: the place where the word under the cursor is declared, in its document or in a file that it imports.
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include "script_lsp/server.h"
#include "script_lsp/symbols.h"
#include "script_lsp/uri.h"

namespace tavrel::script_lsp {

using core::Json;
using core::script::SourceFile;
using core::script::Span;
using core::script::Unit;

namespace {

std::optional<Span> DeclaredAt(const Unit& unit, const std::string& name) {
    for (const Symbol& symbol : Symbols(unit)) {
        if (symbol.name == name) return symbol.span;
    }
    return std::nullopt;
}

Json Location(const std::string& uri, const SourceFile& file, Span span) {
    Json location = Json::Object();
    location.Set("uri", Json::Text(uri));
    location.Set("range", RangeOf(file, span));
    return location;
}

}  // namespace

Json Server::Definition(const std::string& uri, Position position) const {
    SourceFile file = FileOf(uri);
    const std::string folder = FolderOf(file.name);
    const Word word = WordAt(file.text, OffsetOf(file, position));
    if (word.text.empty()) return {};
    const Unit unit = TreeOf(std::move(file));
    if (const auto span = DeclaredAt(unit, word.text)) return Location(uri, unit.source, *span);
    std::unordered_set<std::string> searched;
    for (const std::string& name : unit.imports) {
        SourceFile found;
        if (!searched.insert(name).second || !FindImport(folder, name, found)) continue;
        const Unit imported = TreeOf(std::move(found));
        if (const auto span = DeclaredAt(imported, word.text)) {
            return Location(UriFromPath(imported.source.name), imported.source, *span);
        }
    }
    return {};
}

}  // namespace tavrel::script_lsp
