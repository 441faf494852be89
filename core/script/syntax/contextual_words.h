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

}  // namespace tavrel::core::script
