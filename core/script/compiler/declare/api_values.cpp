// A default is told by its form: a truth word, a member of an enumeration, a handle of nothing, a quoted text, a
// constructor of numbers, and last a number, whose kind the wanted type and its own form decide.
#include "core/script/compiler/declare/api_values.h"

#include <vector>

#include "core/script/numeric/number_text.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

// The pieces between commas, blanks dropped; an empty last piece does not count.
std::vector<std::string> Pieces(const std::string& text) {
    std::vector<std::string> pieces(1);
    for (char letter : text) {
        if (letter == ',') {
            pieces.emplace_back();
        } else if (letter != ' ') {
            pieces.back() += letter;
        }
    }
    if (pieces.back().empty()) pieces.pop_back();
    return pieces;
}

std::int32_t ComponentCount(const std::string& word) {
    if (word == "vetor2") return 2;
    if (word == "vetor3") return 3;
    return word == "cor" ? 4 : 0;
}

HostDefault ApiConstructor(Compiler& compiler, const std::string& text, const std::string& context) {
    std::size_t open = text.find('(');
    std::int32_t count = ComponentCount(text.substr(0, open));
    std::vector<std::string> pieces = Pieces(text.substr(open + 1, text.size() - open - 2));
    if (count == 0 || pieces.size() != static_cast<std::size_t>(count)) {
        ApiError(compiler, context, "o valor padrao " + Quoted(text) + " nao e um valor desta linguagem");
        return {};
    }
    HostDefault value;
    value.kind = DefaultKind::Vector;
    value.count = count;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (!ParseRealDigits(pieces[i], value.components[i])) {
            ApiError(compiler, context, "o valor padrao " + Quoted(text) + " tem um numero que nao se le");
            return {};
        }
    }
    return value;
}

HostDefault ApiNumber(Compiler& compiler, const std::string& text, TypeId type, const std::string& context) {
    HostDefault value;
    bool real = type == RealType || text.find_first_of(".e") != std::string::npos;
    bool good = real ? ParseRealDigits(text, value.components[0]) : ParseIntegerDigits(text, value.integer);
    if (!good) {
        ApiError(compiler, context, "o valor padrao " + Quoted(text) + " nao e um numero");
        return {};
    }
    value.kind = real ? DefaultKind::Real : DefaultKind::Integer;
    return value;
}

}  // namespace

HostDefault ApiDefault(Compiler& compiler, const Declarations& declarations, const std::string& text, TypeId type,
                       const std::string& context) {
    HostDefault value;
    if (text.empty()) return value;
    if (text == "verdadeiro" || text == "falso") {
        value.kind = DefaultKind::Bool;
        value.integer = text == "verdadeiro" ? 1 : 0;
        return value;
    }
    if (EnumMemberId found = declarations.enumMembers.Find(compiler.names.Intern(text))) {
        const EnumMember& member = declarations.At(found);
        value.kind = DefaultKind::Enum;
        value.count = member.enumeration.value;
        value.integer = member.member;
        return value;
    }
    if (std::int32_t handle = NullHandle(text); handle >= 0) {
        value.kind = DefaultKind::Handle;
        value.count = handle;
        return value;
    }
    if (CountCharacters(text) > 1 && text.starts_with('"') && text.ends_with('"')) {
        value.kind = DefaultKind::Text;
        value.text = text.substr(1, text.size() - 2);
        return value;
    }
    if (text.find('(') != std::string::npos && text.ends_with(')')) return ApiConstructor(compiler, text, context);
    return ApiNumber(compiler, text, type, context);
}

void ApiError(Compiler& compiler, const std::string& subject, const std::string& what) {
    compiler.Error(compiler.Main(), {}, "a API do mundo declara " + Quoted(subject) + " e " + what,
                   "defeito na tabela da API do host, e nao no script");
}

}  // namespace tavrel::core::script
