// The texts of the kinds of tokens. The switch refuses a number that two rows of the table share, and the assertions a
// number that leaves a gap or a type word outside the run that IsTypeWord tests.
#include "core/script/syntax/token.h"

namespace tavrel::core::script {

namespace {

constexpr int TokenCount = 0
#define TAVREL_TOKEN(name, number, text) +1
#include "core/script/syntax/token.def"
    ;

#define TAVREL_TOKEN(name, number, text) static_assert(number < TokenCount && !IsTypeWord(Tok::name));
#define TAVREL_TYPE_WORD(name, number, word) static_assert(number < TokenCount && IsTypeWord(Tok::name));
#include "core/script/syntax/token.def"

}  // namespace

const char* Describe(Tok kind) {
#define TAVREL_TOKEN(name, number, text) \
    case Tok::name: return text;
    switch (kind) {
#include "core/script/syntax/token.def"
    }
    return "um simbolo";
}

BlockRole RoleOf(Tok kind) {
#define TAVREL_KEYWORD(name, number, word, role) \
    case Tok::name: return BlockRole::role;
    switch (kind) {
#include "core/script/syntax/token.def"
        default: return BlockRole::None;
    }
}

}  // namespace tavrel::core::script
