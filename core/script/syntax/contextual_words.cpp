// How a name is told to be a contextual word. Names are common and these words are rare, so the size is compared before
// anything is folded.
#include "core/script/syntax/contextual_words.h"

#include "core/script/source/fold.h"

namespace tavrel::core::script {

std::string_view TextOf(Word word) {
#define TAVREL_WORD(name, text) \
    case Word::name: return text;
    switch (word) {
#include "core/script/syntax/contextual_words.def"
    }
    return {};
}

bool IsWord(const Token& token, Word word) {
    if (token.kind != Tok::Name) return false;
    const std::string_view text = TextOf(word);
    // An accented letter takes two bytes for one, so other sizes cannot fold to the word.
    const std::size_t size = token.text.size();
    return size >= text.size() && size <= 2 * text.size() && FoldLower(token.text) == text;
}

HookHead HookHeadOf(const Token& first, const Token& second) {
    if (IsWord(first, Word::On)) return HookHead::Event;
    if (IsWord(first, Word::Camera)) return HookHead::Camera;
    return IsWord(first, Word::A) && IsWord(second, Word::Each) ? HookHead::Periodic : HookHead::None;
}

}  // namespace tavrel::core::script
