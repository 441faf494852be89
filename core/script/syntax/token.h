// The token of a script: its kind, its place, and its value where it has one. Tokens hold no strings; their texts are
// views into the source file, or into the TokenList that owns the values of literals with escapes.
#pragma once

#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/script/source/source_file.h"

namespace tavrel::core::script {

enum class Tok : std::uint8_t {
#define TAVREL_TOKEN(name, number, text) name = number,
#include "core/script/syntax/token.def"
};

// What a keyword is to the blocks around it, when a line begins with it.
enum class BlockRole : std::uint8_t {
    None,     // nothing
    Begins,   // a block stands behind it
    Divides,  // ends the running block of an "escolha" or "se" and begins its next: "senao", "caso"
    Ends,     // "fim"
};

struct Token {
    Tok kind = Tok::End;
    Span span;
    float real = 0;            // value of a RealLiteral
    std::int64_t integer = 0;  // value of an IntegerLiteral
    // Name and keywords: the word as written. TextLiteral: the value, escapes resolved. Comment: from its "//" up to
    // its last byte that is not blank. Empty otherwise.
    std::string_view text;
};

// The tokens of one file. Always ends in Newline, End.
struct TokenList {
    std::vector<Token> tokens;
    std::forward_list<std::string> literals;  // texts of literals that had escapes; their addresses are stable
};

// What messages call a kind of token; "um simbolo" for a number that is no kind.
[[nodiscard]] const char* Describe(Tok kind);

// The role of a kind; None for what is no keyword.
[[nodiscard]] BlockRole RoleOf(Tok kind);

// True for the twelve words that begin a written type.
[[nodiscard]] constexpr bool IsTypeWord(Tok kind) {
    return kind >= Tok::Inteiro && kind <= Tok::Dicionario;
}

}  // namespace tavrel::core::script
