// From a word to its keyword, for the lexer. Private to this folder.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/script/syntax/token.h"

namespace tavrel::core::script {

// A perfect hash: a table in which every keyword has a slot of its own, so that a word is looked up by one computed
// slot and one comparison. The slot comes from three things that are at hand without reading the word, its first byte,
// its last byte and its size: (first * firstFactor + last * lastFactor + size) modulo the number of slots. Which
// factors keep the keywords apart depends on the keywords. The compiler tries pairs of factors until one does, so that
// a keyword added to token.def needs nothing here.
struct Keyword {
    std::string_view word;
    Tok kind = Tok::Name;
};

inline constexpr Keyword Keywords[] = {
#define TAVREL_KEYWORD(name, number, word, role) {word, Tok::name},
#include "core/script/syntax/token.def"
};

// At least half of the slots stay free, or a pair of factors would be hard to find. A power of two, for the remainder.
inline constexpr std::size_t KeywordSlots = std::bit_ceil(2 * std::size(Keywords));

struct KeywordFactors {
    std::uint32_t first = 0;  // 0 when no pair was found
    std::uint32_t last = 0;
};

[[nodiscard]] constexpr std::size_t KeywordSlot(std::string_view word, KeywordFactors factors) {
    const auto first = static_cast<unsigned char>(word.front());
    const auto last = static_cast<unsigned char>(word.back());
    return (first * factors.first + last * factors.last + word.size()) % KeywordSlots;
}

[[nodiscard]] constexpr bool SeparatesKeywords(KeywordFactors factors) {
    bool taken[KeywordSlots] = {};
    for (const Keyword& keyword : Keywords) {
        bool& slot = taken[KeywordSlot(keyword.word, factors)];
        if (slot) return false;
        slot = true;
    }
    return true;
}

[[nodiscard]] constexpr KeywordFactors FindKeywordFactors() {
    constexpr std::uint32_t MaxFactor = 47;  // a search in vain ends within the steps that Clang allows it
    for (std::uint32_t first = 1; first <= MaxFactor; ++first) {
        for (std::uint32_t last = 1; last <= MaxFactor; ++last) {
            if (SeparatesKeywords({first, last})) return {first, last};
        }
    }
    return {};
}

inline constexpr KeywordFactors FoundFactors = FindKeywordFactors();
static_assert(
    FoundFactors.first != 0,
    "no factors keep the keywords apart: double KeywordSlots; if two keywords have the same first letter, last "
    "letter and size, let KeywordSlot look at one letter more");

// By slot; a free slot has an empty word and the kind Name.
inline constexpr std::array<Keyword, KeywordSlots> KeywordTable = [] {
    std::array<Keyword, KeywordSlots> table{};
    for (const Keyword& keyword : Keywords) table[KeywordSlot(keyword.word, FoundFactors)] = keyword;
    return table;
}();

// The keyword that `word`, which is not empty, spells without accents; else Name.
[[nodiscard]] inline Tok KeywordOf(std::string_view word) {
    const Keyword& keyword = KeywordTable[KeywordSlot(word, FoundFactors)];
    return keyword.word == word ? keyword.kind : Tok::Name;
}

}  // namespace tavrel::core::script
