// Definition: the place where the word under the cursor is declared, in its document or in a file that it imports.
#include <cstddef>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "core/script/syntax/parse.h"
#include "script_lsp/server.h"
#include "script_lsp/symbols.h"
#include "script_lsp/uri.h"

namespace tavrel::script_lsp {

using core::Json;
using core::script::Diagnostics;
using core::script::SourceFile;
using core::script::Span;
using core::script::Unit;

namespace {

Unit ParsedUnit(SourceFile file) {
    Diagnostics ignored;
    Unit unit;
    static_cast<void>(Parse(std::move(file), ignored, unit));
    return unit;
}

std::optional<Span> DeclaredAt(const Unit& unit, const std::string& name) {
    for (const Symbol& symbol : Symbols(unit)) {
        if (symbol.name == name) return symbol.span;
    }
    return std::nullopt;
}

Json Place(const std::string& uri, const SourceFile& file, Span span) {
    Json place = Json::Object();
    place.Set("uri", Json::Text(uri));
    place.Set("range", RangeOf(file, span));
    return place;
}

}  // namespace

Json Server::Definition(const std::string& uri, Position position) const {
    SourceFile file = FileOf(uri);
    const std::string folder = FolderOf(file.name);
    const Word word = WordAt(file.text, OffsetOf(file, position));
    if (word.text.empty()) return {};
    const Unit unit = ParsedUnit(std::move(file));
    if (const auto span = DeclaredAt(unit, word.text)) return Place(uri, unit.source, *span);
    std::unordered_set<std::string> searched;
    for (const std::string& name : unit.imports) {
        const std::string path = folder + name + ".tvl";
        std::string text;
        if (!searched.insert(name).second || !TextOfPath(path, text)) continue;
        const Unit imported = ParsedUnit(SourceFile(path, std::move(text)));
        if (const auto span = DeclaredAt(imported, word.text)) return Place(UriFromPath(path), imported.source, *span);
    }
    return {};
}

}  // namespace tavrel::script_lsp
