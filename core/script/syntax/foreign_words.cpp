// A short table that is searched from front to back: it is asked only about a name that a report is being built for.
#include "core/script/syntax/foreign_words.h"

#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

struct ForeignWord {
    std::string_view word;
    std::string_view hint;
};

constexpr std::string_view EndHint = "termine o bloco com \"fim\"";

constexpr ForeignWord ForeignWords[] = {
    {"fimse", EndHint},
    {"fimenquanto", EndHint},
    {"fimpara", EndHint},
    {"fimfuncao", EndHint},
    {"fimprocedimento", EndHint},
    {"fimalgoritmo", "o arquivo ja e o programa; nao ha \"algoritmo\" nem \"fimalgoritmo\""},
    {"fimescolha", EndHint},
    {"fimregistro", EndHint},
    {"algoritmo", "o arquivo ja e o programa; comece com \"modulo <Nome>\""},
    {"inicio", "o arquivo ja e o programa; um gancho comeca com \"ao ...\" ou \"a cada ...\""},
    {"var", "declare onde precisar, com \"nome: tipo\""},
    {"escreval", "escreva(...) imprime uma linha"},
    {"leia", "um jogo nao le do console; quem le quem joga e \"entrada\""},
    {"caracter", "o tipo de texto se chama \"texto\""},
    {"logico_", "o tipo se chama \"logico\""},
    {"faca", "nao existe: a condicao termina no fim da linha"},
    {"entaose", "escreva \"senao se\" em duas palavras"},
};

// The longest word of the table with an accent on every letter; a longer one is not worth folding.
constexpr std::size_t MaxSpelling = 2 * std::string_view("fimprocedimento").size();

}  // namespace

std::string LegacyHint(std::string_view word) {
    if (word.size() > MaxSpelling) return {};
    const std::string folded = FoldLower(word);
    for (const ForeignWord& foreign : ForeignWords) {
        if (foreign.word == folded) return std::string(foreign.hint);
    }
    return {};
}

}  // namespace tavrel::core::script
