// What the compiler says about statements and hooks, and the functions that a script comes to.
#include <gtest/gtest.h>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

// From line 3 on stands what is tested.
constexpr const char* Procedure = "modulo M\nprocedimento p(n: inteiro)\n";
constexpr const char* Declarations =
    "\nfim\nregistro R\nn: inteiro\nv: vetor3\nfim\nconstante K: vetor2 = vetor2(1, 2)\nestado\ng: inteiro\n"
    "l: lista de inteiro\nd: dicionario de texto para vetor2\nr: R\nfim\nfuncao f(): vetor3\n"
    "retorne vetor3(1, 2, 3)\nfim\nprocedimento q()\nfim\n";

TEST(Statements, DeclarationsAndBlocks) {
    ExpectReports(
        Procedure, Declarations,
        {
            {"X: texto\nx: Nada = y\ná: real = 2\n a: real",
             "m.tvl:4:4: erro: o tipo \"Nada\" nao foi declarado\n"
             "  declare um \"registro\" ou uma \"enumeracao\" com esse nome\n"
             "m.tvl:4:11: erro: \"y\" nao foi declarada\nm.tvl:6:2: erro: \"a\" ja foi declarada aqui\n"},
            {"n: texto\nse n == \"\"\nn: inteiro\nn = 1\nfim\ng: texto = q()",
             "m.tvl:8:1: erro: \"g\" ja existe fora deste bloco\n  use outro nome, para nao esconder a de fora\n"
             "m.tvl:8:12: erro: \"g\" e texto e o valor e nada\n"},
            {"para i de b ate \"x\" passo q()\nfim\ni = 2",
             "m.tvl:3:11: erro: \"b\" nao foi declarada\n"
             "m.tvl:3:17: erro: o laco \"para\" conta com inteiros, e este fim e texto\n"
             "m.tvl:3:27: erro: o passo de um laco e um inteiro, e este e nada\n"
             "m.tvl:5:1: erro: \"i\" nao foi declarada\n  para declarar, escreva \"i: tipo = valor\"\n"},
            {"escolha r.v\ncaso f(), b\nfim",
             "m.tvl:4:6: erro: vetor3 nao se compara com \"==\"\nm.tvl:4:11: erro: \"b\" nao foi declarada\n"
             "m.tvl:4:11: erro: vetor3 nao se compara com \"==\"\n"},
        });
}

// The value shows its own faults behind those of the target.
TEST(Statements, Assignments) {
    ExpectReports(
        Procedure, Declarations,
        {
            {"a = camera",
             "m.tvl:3:1: erro: \"a\" nao foi declarada\n  para declarar, escreva \"a: tipo = valor\"\n"
             "m.tvl:3:5: erro: \"camera\" e um agrupamento da API do mundo, e nao um valor\n"
             "  \"camera\" tem atras, livre, orbita\n"},
            {"g[0] = b", "m.tvl:3:1: erro: inteiro nao aceita indice\nm.tvl:3:8: erro: \"b\" nao foi declarada\n"},
            {"d[1].x = n",
             "m.tvl:3:3: erro: a chave deste dicionario e texto, e esta e inteiro\n"
             "m.tvl:3:10: erro: o componente de um vetor e um real, e o valor e inteiro\n"
             "  escreva real(...) ou ponha um ponto no numero\n"},
            {"r.zé = b",
             "m.tvl:3:1: erro: \"R\" nao tem um campo chamado \"zé\"\nm.tvl:3:8: erro: \"b\" nao foi declarada\n"},
            {"d[\"a\"].y = b",
             "m.tvl:3:1: erro: vetor2 nao tem campos para mudar\nm.tvl:3:12: erro: \"b\" nao foi declarada\n"},
            {"f().x = b",
             "m.tvl:3:1: erro: nao da para mudar um componente aqui\nm.tvl:3:9: erro: \"b\" nao foi declarada\n"},
        });
}

TEST(Hooks, ParametersAreFixed) {
    Compiled compiled = CompileScript(
        "modulo M\nao desenhar (t: Nada)\nretorne b\nfim\n"
        "comportamento B\nao tocar (outro: objeto)\noutro = eu\nfim\n"
        "ao soltar (outro: objeto, outro: objeto)\neu: inteiro\nfim\nfim\n");
    EXPECT_EQ(compiled.reports,
              "m.tvl:2:1: erro: este gancho se escreve \"ao desenhar (tempo: real)\"\n"
              "m.tvl:2:17: erro: o tipo \"Nada\" nao foi declarado\n"
              "  declare um \"registro\" ou uma \"enumeracao\" com esse nome\n"
              "m.tvl:3:9: erro: \"b\" nao foi declarada\n"
              "m.tvl:3:1: erro: um procedimento nao devolve valor\n"
              "  para devolver um valor, declare uma \"funcao\"\n"
              "m.tvl:9:1: erro: este gancho se escreve \"ao soltar (outro: objeto)\"\n"
              "m.tvl:9:27: erro: \"outro\" ja e o nome de outro argumento\n"
              "m.tvl:10:1: erro: \"eu\" ja existe fora deste bloco\n"
              "  use outro nome, para nao esconder a de fora\n");
}

// Neither order depends on the order of the blocks: that of functions, and that of initial values.
TEST(Hooks, FunctionsAndTheirFrames) {
    const std::string source =
        "modulo M\nimportar \"u\"\ncamera\nc: camera\nretorne c\nfim\n"
        "comportamento B\na cada tick (passo: real)\nx: real = passo\nfim\nfim\n"
        "evento ping\nvisual\nz: real = 2\nfim\nestado\ny: inteiro = U\nfim\nfuncao f(): inteiro\nretorne 1\nfim\n";
    Compiled compiled = CompileScript(source, {{"u", "modulo U\nconstante U = 7\nprocedimento g()\nfim\n"}});
    const Program& program = compiled.program;
    std::string functions = compiled.reports;
    for (const Function& each : program.functions) {
        functions += each.name + " " + std::to_string(each.params) + " " + std::to_string(each.locals) + " " +
                     program.types.Name(each.returnType) + " " + std::to_string(each.file) + "\n";
    }
    ASSERT_EQ(functions,
              "f 0 0 inteiro 0\ng 0 0 nada 1\nvalores iniciais 0 0 nada 0\nvalores iniciais de B 1 1 nada 0\n"
              "camera 0 1 camera 0\na cada tick de B 2 3 nada 0\n");
    EXPECT_EQ(program.initializer, 2);
    EXPECT_EQ(program.behaviours[0].initializer, 3);
    EXPECT_EQ(program.hooks[7], 4);
    EXPECT_EQ(program.behaviours[0].hooks[4], 5);
    EXPECT_EQ(compiled.Listing("g"), "0 Return");
    EXPECT_EQ(compiled.Listing("valores iniciais"),
              "0 LoadGlobal U; 1 StoreGlobal y; 2 PushReal 2; 3 StoreGlobal z; 4 PushInt 7; 5 StoreGlobal U; "
              "6 Return");
    // A fault is reported where its instruction comes from.
    const std::vector<std::uint32_t>& spans = program.functions[2].spans;
    EXPECT_EQ(spans[1], source.find("y: inteiro"));
    EXPECT_EQ(spans[2], source.find("2\nfim"));
    EXPECT_EQ(spans[5], 9U);
    EXPECT_EQ(spans[6], 0U);
    EXPECT_EQ(program.functions[4].spans.back(), source.find("camera"));
}

}  // namespace
}  // namespace tavrel::core::script
