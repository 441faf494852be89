// The help text, byte for byte what is printed. Command lines are read in arguments.cpp; the two are kept in step by
// hand.
#include "tools/usage.h"

#include "tools/console.h"

namespace tavrel::tools {

void Usage() {
    PrintError(
        "uso: tavrel_script <comando> [argumentos]\n"
        "\n"
        "  verificar <arquivo.tvl | pasta>...   compila e mostra os erros\n"
        "  formatar  <arquivo.tvl | pasta>...   arruma o texto no lugar\n"
        "            --conferir                 nao grava; falha se houver o que arrumar\n"
        "  executar  <arquivo.tvl>              roda o script sem mundo\n"
        "            --ticks N                  quantos ticks (padrao 60)\n"
        "            --semente S                a semente do sorteio (padrao 1)\n"
        "  --lsp                                servidor de linguagem, por stdin/stdout\n");
}

}  // namespace tavrel::tools
