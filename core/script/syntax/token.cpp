#include "core/script/syntax/token.h"

#include <cstddef>
#include <iterator>

namespace tavrel::core::script {

namespace {

constexpr const char* Texts[] = {
#define TAVREL_TOKEN(name, number, text) text,
#include "core/script/syntax/token.def"
#undef TAVREL_TOKEN
};
static_assert(std::size(Texts) == static_cast<std::size_t>(Tok::Dicionario) + 1);
static_assert(std::size(Texts) == 66);

}  // namespace

const char* Describe(Tok kind) {
    auto number = static_cast<std::size_t>(kind);
    return number < std::size(Texts) ? Texts[number] : "um simbolo";
}

}  // namespace tavrel::core::script
