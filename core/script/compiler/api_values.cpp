// The default values of the world's table, read from their texts.
#include <algorithm>

#include "core/script/compiler/compiler.h"
#include "core/script/numeric/number_text.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

constexpr const char* HandleNames[] = {"nenhum_objeto", "nenhum_corpo", "nenhum_som"};

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

bool ReadInteger(const std::string& text, std::int64_t& value) {
    std::size_t at = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
    if (at == text.size()) return false;
    std::uint64_t magnitude = 0;
    for (; at < text.size(); ++at) {
        if (text[at] < '0' || text[at] > '9') return false;
        auto digit = static_cast<std::uint64_t>(text[at] - '0');
        if (magnitude > (static_cast<std::uint64_t>(INT64_MAX) - digit) / 10) return false;
        magnitude = magnitude * 10 + digit;
    }
    value = static_cast<std::int64_t>(magnitude);
    if (text.starts_with('-')) value = -value;
    return true;
}

}  // namespace

HostDefault Compiler::ApiDefault(const std::string& text, TypeId type, const std::string& context) {
    HostDefault value;
    if (text.empty()) return value;
    if (text == "verdadeiro" || text == "falso") {
        value.kind = DefaultKind::Bool;
        value.integer = text == "verdadeiro" ? 1 : 0;
        return value;
    }
    if (std::int32_t member = enumMembers.Find(names.Intern(text)); member >= 0) {
        auto [enumeration, position] = enumMemberPlaces[static_cast<std::size_t>(member)];
        value.kind = DefaultKind::Enum;
        value.count = enumeration;
        value.integer = position;
        return value;
    }
    const auto* handle = std::find(std::begin(HandleNames), std::end(HandleNames), text);
    if (handle != std::end(HandleNames)) {
        value.kind = DefaultKind::Handle;
        value.count = static_cast<std::int32_t>(handle - std::begin(HandleNames));
        return value;
    }
    if (CountCharacters(text) > 1 && text.starts_with('"') && text.ends_with('"')) {
        value.kind = DefaultKind::Text;
        value.text = text.substr(1, text.size() - 2);
        return value;
    }
    if (text.find('(') != std::string::npos && text.ends_with(')')) return ApiConstructor(text, context);
    return ApiNumber(text, type, context);
}

HostDefault Compiler::ApiConstructor(const std::string& text, const std::string& context) {
    std::size_t open = text.find('(');
    std::int32_t count = ComponentCount(text.substr(0, open));
    std::vector<std::string> pieces = Pieces(text.substr(open + 1, text.size() - open - 2));
    if (count == 0 || pieces.size() != static_cast<std::size_t>(count)) {
        ApiError(context, "o valor padrao " + Quoted(text) + " nao e um valor desta linguagem");
        return {};
    }
    HostDefault value;
    value.kind = DefaultKind::Vector;
    value.count = count;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (!ParseRealDigits(pieces[i], value.components[i])) {
            ApiError(context, "o valor padrao " + Quoted(text) + " tem um numero que nao se le");
            return {};
        }
    }
    return value;
}

HostDefault Compiler::ApiNumber(const std::string& text, TypeId type, const std::string& context) {
    HostDefault value;
    bool real = type == RealType || text.find_first_of(".e") != std::string::npos;
    bool good = real ? ParseRealDigits(text, value.components[0]) : ReadInteger(text, value.integer);
    if (!good) {
        ApiError(context, "o valor padrao " + Quoted(text) + " nao e um numero");
        return {};
    }
    value.kind = real ? DefaultKind::Real : DefaultKind::Integer;
    return value;
}

}  // namespace tavrel::core::script
