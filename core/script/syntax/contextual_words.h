// Contextual words: names that mean something in one place of the grammar, such as the "ate" of a loop. The parser and
// the formatter ask for them by enumerator; their spellings stand once, in contextual_words.def.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/script/syntax/token.h"

namespace tavrel::core::script {

enum class Word : std::uint8_t {
#define TAVREL_WORD(name, text) name,
#include "core/script/syntax/contextual_words.def"
};

// The word without accents, in lower case; empty for a number that is no word.
[[nodiscard]] std::string_view TextOf(Word word);

// Whether a token is a name that spells `word`, in any case and with any accents ("Até", "ATE", "ate").
[[nodiscard]] bool IsWord(const Token& token, Word word);

// The three ways in which a hook begins.
enum class HookHead : std::uint8_t {
    None,
    Event,     // "ao", before the words of the hook
    Periodic,  // "a cada", before the period
    Camera,    // "camera"
};

// What the first two tokens of a line begin, going by their words alone. Whether a hook stands there is decided by what
// follows, and the formatter, which also takes lines that do not parse, decides that more loosely than the parser.
[[nodiscard]] HookHead HookHeadOf(const Token& first, const Token& second);

}  // namespace tavrel::core::script
