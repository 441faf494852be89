// Symbols and texts out of a syntax tree. The symbols of a script are gathered in one walk over its declarations, in
// the order that symbols.h promises. Each detail is written straight from the tree and counted before it is kept: the
// name of a behaviour stands in the detail of everything inside it, so that names alone could otherwise fill the
// memory.
#include "script_lsp/symbols.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "core/script/syntax/parse.h"

namespace tavrel::script_lsp {

using core::script::ApiFunction;
using core::script::ApiParam;
using core::script::Diagnostics;
using core::script::EnumDecl;
using core::script::FunctionDecl;
using core::script::FunctionDeclId;
using core::script::Param;
using core::script::Section;
using core::script::SourceFile;
using core::script::Span;
using core::script::Tok;
using core::script::TypeRef;
using core::script::TypeRefId;
using core::script::Unit;
using core::script::VarDecl;

namespace {

// Recursion ends: the parser bounds how deep types may nest.
void AppendType(const Unit& unit, TypeRefId type, std::string& out) {
    if (!type) return;
    const TypeRef& ref = unit.At(type);
    if (ref.kind == Tok::Lista) {
        out += "lista de ";
        AppendType(unit, ref.element, out);
    } else if (ref.kind == Tok::Dicionario) {
        out += "dicionario de ";
        AppendType(unit, ref.key, out);
        out += " para ";
        AppendType(unit, ref.element, out);
    } else if (!ref.name.empty()) {
        out += ref.name;
    } else {
        std::string_view word = Describe(ref.kind);
        if (word.size() > 1 && word.front() == '"' && word.back() == '"') word = word.substr(1, word.size() - 2);
        out += word;
    }
}

std::string SignatureOf(const Unit& unit, const FunctionDecl& function) {
    std::string text = (function.isProcedure ? "procedimento " : "funcao ") + function.name + "(";
    std::string_view separator;
    for (const Param& param : function.params) {
        text.append(separator).append(param.name).append(": ");
        AppendType(unit, param.type, text);
        separator = ", ";
    }
    text += ")";
    if (!function.isProcedure) AppendType(unit, function.returnType, text += ": ");
    return text;
}

// Gathers the symbols of one unit in their order.
class Collector {
public:
    explicit Collector(const Unit& givenUnit) : unit(givenUnit) {}

    std::vector<Symbol> symbols;

    // Once full, nothing more is taken. A loop that makes details asks before each, to make none in vain.
    [[nodiscard]] bool Full() const { return detailBytesLeft == 0; }

    void Add(const std::string& name, std::string detail, ItemKind kind, Span span) {
        detailBytesLeft -= std::min<std::uint64_t>(detail.size(), detailBytesLeft);
        if (!Full()) symbols.push_back({name, std::move(detail), kind, span});
    }

    void Collect(const Section& section, const std::string& container) {
        AddVariables(section.constants, container + "constante ");
        AddVariables(section.state, container + "estado ");
        AddVariables(section.visual, container + "visual ");
        AddVariables(section.progress, container + "progresso ");
        AddVariables(section.derived, container);
        AddVariables(section.parameters, container + "parametro ");
        for (const FunctionDeclId declared : section.functions) {
            if (Full()) return;
            const FunctionDecl& function = unit.At(declared);
            Add(function.name, container + SignatureOf(unit, function), FunctionItem, function.span);
        }
    }

    void AddEnum(const EnumDecl& declared) {
        Add(declared.name, "enumeracao " + declared.name, EnumItem, declared.span);
        for (std::size_t i = 0; i < declared.members.size() && !Full(); ++i) {
            const Span span = i < declared.memberSpans.size() ? declared.memberSpans[i] : declared.span;
            Add(declared.members[i], declared.name + "." + declared.members[i], EnumMemberItem, span);
        }
    }

private:
    void AddVariables(const std::vector<VarDecl>& variables, const std::string& label) {
        for (const VarDecl& variable : variables) {
            if (Full()) return;
            std::string detail = label + variable.name + ": ";
            AppendType(unit, variable.type, detail);
            Add(variable.name, std::move(detail), VariableItem, variable.span);
        }
    }

    const Unit& unit;
    std::uint64_t detailBytesLeft = MaxDetailBytes;
};

// All of UTF-8 beyond ASCII counts as part of a word.
bool IsWordCharacter(char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return byte >= 128 || (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
           (byte >= 'A' && byte <= 'Z') || byte == '_';
}

std::size_t StartOfWord(const std::string& text, std::size_t place) {
    while (place > 0 && IsWordCharacter(text[place - 1])) --place;
    return place;
}

}  // namespace

Unit TreeOf(SourceFile file) {
    Diagnostics ignored;
    Unit unit;
    static_cast<void>(Parse(std::move(file), ignored, unit));
    return unit;
}

std::vector<Symbol> Symbols(const Unit& unit) {
    Collector collector(unit);
    collector.Collect(unit.module, "");
    for (const Section& behaviour : unit.behaviours) {
        collector.Collect(behaviour, "comportamento " + behaviour.name + ": ");
    }
    for (const auto& record : unit.records) {
        collector.Add(record.name, "registro " + record.name, StructItem, record.span);
    }
    for (const EnumDecl& declared : unit.enums) collector.AddEnum(declared);
    for (const auto& action : unit.actions) {
        collector.Add(action.name, "acao " + action.name, VariableItem, action.span);
    }
    for (const Section& behaviour : unit.behaviours) {
        collector.Add(behaviour.name, "comportamento " + behaviour.name, StructItem, behaviour.nameSpan);
    }
    return std::move(collector.symbols);
}

std::string TypeText(const Unit& unit, TypeRefId type) {
    std::string text;
    AppendType(unit, type, text);
    return text;
}

std::string ApiSignature(const ApiFunction& function) {
    std::string text = std::string(function.name) + "(";
    std::string_view separator;
    for (const ApiParam& param : function.params) {
        text.append(separator).append(param.name).append(": ").append(param.type);
        if (*param.fallback != '\0') text.append(" = ").append(param.fallback);
        separator = ", ";
    }
    text += ")";
    if (*function.result != '\0') text.append(": ").append(function.result);
    return text;
}

Word WordAt(const std::string& text, std::uint64_t offset) {
    const auto place = static_cast<std::size_t>(std::min<std::uint64_t>(offset, text.size()));
    const std::size_t start = StartOfWord(text, place);
    std::size_t end = place;
    while (end < text.size() && IsWordCharacter(text[end])) ++end;

    Word word;
    word.text = text.substr(start, end - start);
    word.start = static_cast<std::uint32_t>(start);
    word.end = static_cast<std::uint32_t>(end);
    word.dotted = start > 0 && text[start - 1] == '.';
    std::size_t chain = start;
    while (chain > 0 && text[chain - 1] == '.') {
        const std::size_t piece = StartOfWord(text, chain - 1);
        if (piece == chain - 1) break;
        chain = piece;
    }
    if (chain < start) word.qualifier = text.substr(chain, start - 1 - chain);
    return word;
}

}  // namespace tavrel::script_lsp
