// Which function a call means, in which order its arguments are compiled, and what is said about a bad one.
#include <gtest/gtest.h>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

constexpr const char* Declarations =
    "\nfim\nacao mandar\nacao pular = tecla ESPACO\nevento pulo: real\nprocedimento p(a: inteiro)\nfim\n"
    "procedimento seno(a: texto)\nfim\n";

constexpr const char* Tick = "modulo M\na cada tick (r: real)\n";
constexpr const char* Frame = "modulo M\na cada quadro (r: real)\n";
constexpr const char* Locals =
    "n: inteiro\nt: texto\nv: vetor2\nw: vetor3\nc: cor\nl: lista de real\n"
    "d: dicionario de inteiro para real\nk: Chao\nm: lista de inteiro\n";

std::string Calls(const Compiled& compiled, const std::string& name) {
    std::string list;
    for (const Function& function : compiled.program.functions) {
        if (function.name != name) continue;
        for (const Instruction& instruction : function.code) {
            Op op = static_cast<Op>(instruction.op);
            if (op != Op::Call && op != Op::CallNative && op != Op::CallHost) continue;
            list += (list.empty() ? "" : " ") + std::to_string(instruction.c) + "/" + std::to_string(instruction.a);
        }
    }
    return list;
}

// Number and operand of each call. The numbers tell the overloads apart, and they decide digests.
TEST(Calls, ChooseTheOverload) {
    const std::vector<Case> cases = {
        {"n = inteiro_de_texto(t, 1)\nr = real_de_texto(t, 1)\nt = formatar(t)\nt = formatar(t, 1, w)",
         "4/2 5/2 6/1 6/3"},
        {"n = tamanho(t) + tamanho(l) + tamanho(d)", "7/1 10/1 22/1"},
        {"x: logico = contem(t, t) e contem(l, 1) e contem(d, 1)", "8/2 11/2 23/2"},
        {"x: lista de texto = dividir(t, t)\nl = copiar(l)\nd = copiar(d)\nk = copiar(k)", "9/2 20/1 30/1 31/1"},
        {"n = abs(-1)\nr = abs(r)", "32/1 33/1"},
        {"r = piso(2) + teto(r) + arredondar(r) + raiz(r) + potencia(2, -3)", "34/1 35/1 36/1 37/1 38/2"},
        {"r = exp(r) + log(r) + cosseno(r) + tangente(r)", "39/1 40/1 42/1 43/1"},
        {"r = arco_seno(r) + arco_cosseno(r) + arco_tangente(r) + arco_tangente2(1, r)", "44/1 45/1 46/1 47/2"},
        {"n = maior(1, n)\nr = maior(1, r)\nn = menor(n, 1)\nr = menor(r, 1)", "48/2 49/2 50/2 51/2"},
        {"n = limitar(n, 0, 9)\nr = limitar(1, 0, 2.5)", "52/3 53/3"},
        {"r = interpolar(1, 2, 1)\nv = interpolar(v, v, 1)\nw = interpolar(w, w, r)\nc = interpolar(c, c, r)",
         "54/3 55/3 56/3 57/3"},
        {"r = distancia(v, v) + distancia(c, c) + distancia(w, w) + distancia_plana(w, w)", "58/2 58/2 59/2 60/2"},
        {"v = normalizar(v)\nc = normalizar(c)\nw = normalizar(w)\nr = comprimento(c) + comprimento(w)",
         "61/1 61/1 62/1 63/1 64/1"},
        {"r = aleatorio() + aleatorio_real(1, 2)\nn = aleatorio(1, 2)", "65/0 67/2 66/2"},
        {"l.adicionar(1)\nl.inserir(0, 1)\nl.remover(0)\nx: logico = l.remover_valor(-1)\nl.limpar()",
         "12/2 13/3 14/2 15/2 16/1"},
        {"n = l.tamanho() + l.posição_de(1)\nl.ordenar()\nl.inverter()", "10/1 17/2 18/1 19/1"},
        {"d.definir(1, 1)\nr = d.obter(1, 2)\nx: logico = d.remover(1)\nd.limpar()", "24/3 25/3 26/2 27/1"},
        {"n = d.tamanho()\nm = d.chaves()\nl = d.valores()", "22/1 28/1 29/1"},
        {"seno(\"a\")\nescréva(t)", "1/1 0/1"},
    };
    for (const Case& test : cases) {
        Compiled compiled = CompileScript(std::string(Tick) + Locals + test.source + Declarations);
        EXPECT_EQ(compiled.reports, "") << test.source;
        EXPECT_EQ(Calls(compiled, "a cada tick").substr(0, test.expected.size() + 1), test.expected) << test.source;
    }
}

// Slots are compiled in the order of the parameters, and so are the pools filled.
TEST(Calls, OrderHostArgumentsByParameter) {
    Compiled compiled = CompileScript(std::string(Tick) +
                                      "l: lista de Acerto = fisica.raio(distancia = 5, de = vetor3(1, 1, 1), "
                                      "direção = vetor3(2, 2, 2))" +
                                      Declarations);
    ASSERT_EQ(compiled.reports, "");
    EXPECT_EQ(compiled.program.integers, (std::vector<std::int64_t>{1, 2, 5}));
}

TEST(Calls, SayOnceWhatIsWrong) {
    const std::string noValue = "  um procedimento se chama numa linha so dele\n";
    const std::string inexact =
        " erro: este numero nao cabe exatamente num real\n"
        "  escreva-o com ponto, para dizer qual real voce quer\n";
    const std::string labels =
        "  os argumentos sao chave, nome, volume =, altura =, categoria =, prioridade =, "
        "repetir =\n";
    ExpectReports(
        Tick, Declarations,
        {
            {"p(1)(nope)", "m.tvl:3:1: erro: isto nao e uma funcao\n"},
            {"p(nope, 2)",
             "m.tvl:3:1: erro: \"p\" espera 1 argumento(s) e recebeu 2\nm.tvl:3:3: erro: \"nope\" nao foi declarada\n"},
            {"t: texto = formatar(\"\", p(1), p(2))",
             "m.tvl:3:25: erro: esta chamada nao devolve valor, e aqui vai um valor\n" + noValue +
                 "m.tvl:3:31: erro: esta chamada nao devolve valor, e aqui vai um valor\n" + noValue},
            {"r = potencia(\"a\", 16777217)", "m.tvl:3:19:" + inexact},
            {"v: vetor2 = vetor2(\"a\", 16777217)", "m.tvl:3:25:" + inexact},
            {"r = limitar(0, 16777217, 2.5)", "m.tvl:3:16:" + inexact},
            {"r.x(nope)\nr.x(1)",
             "m.tvl:3:5: erro: \"nope\" nao foi declarada\nm.tvl:4:1: erro: real nao tem metodos\n"},
            {"som.emitir(altura = 1, 2, Nome = \"b\", altura = 3)",
             "m.tvl:3:24: erro: depois de um argumento com nome, todos precisam de nome\n"
             "m.tvl:3:34: erro: \"som.emitir\" nao tem um argumento chamado \"Nome\"\n" +
                 labels +
                 "m.tvl:3:48: erro: o argumento \"altura\" foi dado duas vezes\n"
                 "m.tvl:3:1: erro: \"som.emitir\" precisa do argumento \"chave\"\n" +
                 labels + "m.tvl:3:1: erro: \"som.emitir\" precisa do argumento \"nome\"\n" + labels},
            {"fisica.acordar(1, nope, corpo = 2)",
             "m.tvl:3:1: erro: \"fisica.acordar\" espera 1 argumento(s) e recebeu 3\n"
             "m.tvl:3:19: erro: \"nope\" nao foi declarada\n"},
            {"eventos.pulo.emitir(valor = nope)",
             "m.tvl:3:1: erro: \"emitir\" recebe o valor do evento (real)\n"
             "  por exemplo: eventos.pulo.emitir(...)\nm.tvl:3:29: erro: \"nope\" nao foi declarada\n"},
        });
    ExpectReports(Frame, Declarations,
                  {
                      {"r = aleatorio(nope)", "m.tvl:3:15: erro: \"nope\" nao foi declarada\n"},
                      {"r = aleatorio(\"a\")",
                       "m.tvl:3:5: erro: \"aleatorio\" so pode ser chamada dentro de \"a cada tick\"\n"
                       "  o sorteio muda o estado do gerador, e isso decide os ticks seguintes\n"},
                  });
}

// A command is written as the call spells it, and exists only in a world that takes commands.
TEST(Calls, SendCommands) {
    const std::string script = std::string(Frame) + "entrada.mandár.enviar(1)" + Declarations;
    EXPECT_EQ(CompileScript(script).Listing("a cada quadro"),
              "0 PushText \"mandár\"; 1 PushReal 1; 2 CallHost 2 704; 3 Return");
    Api silent = WorldApi();
    silent.commandSend = 0;
    EXPECT_EQ(CompileScript(script, {}, &silent).reports,
              "m.tvl:3:1: erro: falta dizer o que ler da acao \"mandár\"\n"
              "  escreva \"entrada.mandár.apertado\" (ou pressionado, solto, valor)\n");
}

}  // namespace
}  // namespace tavrel::core::script
