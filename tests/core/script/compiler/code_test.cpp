// The code that statements and expressions compile to: emission order decides digests.
#include <gtest/gtest.h>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

constexpr const char* Declarations =
    "modulo M\nregistro R\nv: vetor3\nn: inteiro = 7\nfim\nenumeracao Cor = AZUL, VERDE\nestado\ng: vetor2\n"
    "l: lista de vetor3\nd: dicionario de texto para vetor2\nr: R\nfim\nfuncao f(a: real, b: inteiro): real\n"
    "retorne a\nfim\n";

void ExpectCode(const Case& test) {
    Compiled compiled =
        CompileScript(std::string(Declarations) + "procedimento p(n: inteiro)\n" + test.source + "\nfim\n");
    EXPECT_EQ(compiled.reports, "") << test.source;
    EXPECT_EQ(compiled.Listing("p"), test.expected) << test.source;
}

TEST(Code, Loops) {
    ExpectCode(
        {"para i de 1 ate n passo -2\nse i == 3 entao pare senao continue fim\nfim",
         "0 PushInt 1; 1 StoreLocal 1; 2 LoadLocal 0; 3 StoreLocal 2; 4 PushInt 2; 5 NegInt; 6 StoreLocal 3; "
         "7 LoadLocal 3; 8 PushInt 0; 9 Compare 1; 10 JumpIfTrue 12; "
         "11 Raise \"o passo de um laco \"para\" nao pode ser zero\"; 12 LoadLocal 3; 13 PushInt 0; 14 Compare 4; "
         "15 JumpIfFalse 20; 16 LoadLocal 1; 17 LoadLocal 2; 18 Compare 3; 19 Jump 23; 20 LoadLocal 1; "
         "21 LoadLocal 2; 22 Compare 5; 23 JumpIfFalse 36; 24 LoadLocal 1; 25 PushInt 3; 26 Compare 0; "
         "27 JumpIfFalse 30; 28 Jump 36; 29 Jump 31; 30 Jump 31; 31 LoadLocal 1; 32 LoadLocal 3; 33 AddInt; "
         "34 StoreLocal 1; 35 Jump 12; 36 Return"});
    ExpectCode(
        {"para cada v em l\ng.x = v.z\nfim",
         "0 LoadGlobal l; 1 StoreLocal 1; 2 LoadLocal 1; 3 CallNative 1 lista.versao; 4 StoreLocal 2; "
         "5 PushInt 0; 6 StoreLocal 3; 7 ForEachGuard 1 2; 8 LoadLocal 3; 9 LoadLocal 1; 10 CallNative 1 tamanho; "
         "11 Compare 2; 12 JumpIfFalse 27; 13 LoadLocal 1; 14 LoadLocal 3; 15 ListGet; 16 StoreLocal 4; "
         "17 LoadGlobal g; 18 LoadLocal 4; 19 VecGet 2; 20 VecSet 0; 21 StoreGlobal g; 22 LoadLocal 3; "
         "23 PushInt 1; 24 AddInt; 25 StoreLocal 3; 26 Jump 7; 27 Return"});
    ExpectCode({"enquanto n > 0 e nao (n == 5)\nn = n - 1\nfim",
                "0 LoadLocal 0; 1 PushInt 0; 2 Compare 4; 3 JumpIfFalseKeep 9; 4 Pop; 5 LoadLocal 0; 6 PushInt 5; "
                "7 Compare 0; 8 Not; 9 JumpIfFalse 15; 10 LoadLocal 0; 11 PushInt 1; 12 SubInt; 13 StoreLocal 0; "
                "14 Jump 0; 15 Return"});
}

TEST(Code, Switch) {
    ExpectCode(
        {"escolha n\ncaso 1, 2\nn = 0\nsenao\nretorne\nfim",
         "0 LoadLocal 0; 1 StoreLocal 1; 2 LoadLocal 1; 3 PushInt 1; 4 Compare 0; 5 JumpIfTrue 11; 6 LoadLocal 1; "
         "7 PushInt 2; 8 Compare 0; 9 JumpIfTrue 11; 10 Jump 14; 11 PushInt 0; 12 StoreLocal 0; 13 Jump 15; "
         "14 Return; 15 Return"});
}

// Every place that a vector can stand in is read, changed and written back.
TEST(Code, Components) {
    ExpectCode({"l[n].y = 1",
                "0 LoadGlobal l; 1 LoadLocal 0; 2 Dup2; 3 ListGet; 4 PushReal 1; 5 VecSet 1; 6 ListSet; 7 Return"});
    ExpectCode(
        {"d[\"a\"].z = 2.5",
         "0 LoadGlobal d; 1 PushText \"a\"; 2 Dup2; 3 DictGet; 4 PushReal 2.5; 5 VecSet 1; 6 DictSet; 7 Return"});
    ExpectCode({"r.v.x = -1",
                "0 LoadGlobal r; 1 Dup; 2 FieldGet 0; 3 PushReal 1; 4 NegReal; 5 VecSet 0; 6 FieldSet 0; 7 Return"});
    ExpectCode({"c: cor\nc.a = 0",
                "0 PushReal 255; 1 PushReal 255; 2 PushReal 255; 3 PushReal 255; 4 MakeVector 4; 5 StoreLocal 1; "
                "6 LoadLocal 1; 7 PushReal 0; 8 VecSet 3; 9 StoreLocal 1; 10 Return"});
}

TEST(Code, Literals) {
    ExpectCode({"x: real = 2 * 1.5\nx = -3\nx = f(4, 4)\nx = maior(1, 2.5)",
                "0 PushReal 2; 1 PushReal 1.5; 2 MulReal; 3 StoreLocal 1; 4 PushReal 3; 5 NegReal; 6 StoreLocal 1; "
                "7 PushReal 4; 8 PushInt 4; 9 Call 2 f; 10 StoreLocal 1; 11 PushReal 1; 12 PushReal 2.5; "
                "13 CallNative 2 maior; 14 StoreLocal 1; 15 Return"});
    ExpectCode({"q: R\nk: Cor\nt: texto = texto(k)\nx: vetor2 = vetor2(1, 2) * 2 - g",
                "0 NewRecord 6; 1 Dup; 2 PushInt 7; 3 FieldSet 1; 4 StoreLocal 1; 5 PushEnum 2 0; 6 StoreLocal 2; "
                "7 LoadLocal 2; 8 CallNative 1 texto; 9 StoreLocal 3; 10 PushReal 1; 11 PushReal 2; 12 MakeVector 2; "
                "13 PushReal 2; 14 ScaleVec; 15 LoadGlobal g; 16 SubVec; 17 StoreLocal 4; 18 Return"});
    ExpectCode(
        {"a: lista de inteiro = [1, n,]\nb: dicionario de texto para real = [\"x\": 0.5]\na.adicionar(3)",
         "0 PushInt 1; 1 LoadLocal 0; 2 MakeList 2; 3 StoreLocal 1; 4 PushText \"x\"; 5 PushReal 0.5; "
         "6 MakeDict 1; 7 StoreLocal 2; 8 LoadLocal 1; 9 PushInt 3; 10 CallNative 2 lista.adicionar; 11 Return"});
}

// Slots of closed scopes are used again; pool entries are shared and stay in order of first use.
TEST(Code, SlotsAndPools) {
    Compiled compiled = CompileScript(
        "modulo M\nfuncao f(a: inteiro): inteiro\nse a == 10\nb: inteiro = 20\nretorne b\nfim\nse a == 20\n"
        "c: inteiro = 10\nd: texto = \"x\"\nescreva(d + \"x\")\nfim\nretorne 30\nfim\n");
    ASSERT_TRUE(compiled.good) << compiled.reports;
    EXPECT_EQ(compiled.program.functions[0].locals, 3);
    EXPECT_EQ(compiled.program.integers, (std::vector<std::int64_t>{10, 20, 30}));
    EXPECT_EQ(compiled.program.texts, (std::vector<std::string>{"x"}));
    EXPECT_TRUE(compiled.program.Calls(Native::Print));
    EXPECT_FALSE(compiled.program.Calls(Native::Sqrt));
}

TEST(Code, WorldCallsPassEveryParameter) {
    Compiled compiled = CompileScript(
        "modulo M\nacao pular = tecla espaco\nevento pulou: real\nao iniciar\nsom.tocar(\"x\", prioridade = 2)\n"
        "fim\na cada tick (passo: real)\nse entrada(3).pular.apertado ou entrada.pular.solto\n"
        "eventos.pulou.emitir(1)\nfim\nfim\na cada quadro (dt: real)\nse eventos.pulou.chegou\n"
        "x: real = eventos.pulou.valor\nfim\nfim\n");
    ASSERT_TRUE(compiled.good) << compiled.reports;
    EXPECT_EQ(compiled.Listing("ao iniciar"),
              "0 PushText \"x\"; 1 PushReal 1; 2 PushReal 1; 3 PushEnum 1 0; 4 PushInt 2; 5 PushBool 0; "
              "6 CallHost 6 300; 7 Pop; 8 Return");
    EXPECT_EQ(compiled.Listing("a cada tick"),
              "0 PushText \"pular\"; 1 PushInt 3; 2 CallHost 2 700; 3 JumpIfTrueKeep 8; 4 Pop; 5 PushText \"pular\"; "
              "6 PushInt 1; 7 CallHost 2 702; 8 JumpIfFalse 16; 9 LoadGlobal evento.pulou.n; 10 PushInt 1; 11 AddInt; "
              "12 StoreGlobal evento.pulou.n; 13 PushReal 1; 14 StoreGlobal evento.pulou.v; 15 Jump 16; 16 Return");
    EXPECT_EQ(compiled.Listing("a cada quadro"),
              "0 LoadGlobal evento.pulou.n; 1 LoadGlobal evento.pulou.visto; 2 Compare 1; 3 JumpIfFalse 7; "
              "4 LoadGlobal evento.pulou.v; 5 StoreLocal 1; 6 Jump 7; 7 Return");
}

TEST(Code, BehavioursPassTheirInstance) {
    Compiled compiled = CompileScript(
        "modulo M\nfuncao g(): inteiro\nretorne 1\nfim\ncomportamento Porta\nparametro passo: real = 2\nestado\n"
        "v: vetor3\nn: inteiro\nfim\nprocedimento abre(x: inteiro)\nn = x + g()\nv.y = passo\nfim\nao nascer\n"
        "abre(n)\nfim\nfim\n");
    ASSERT_TRUE(compiled.good) << compiled.reports;
    EXPECT_EQ(compiled.Listing("valores iniciais de Porta"),
              "0 LoadLocal 0; 1 PushReal 2; 2 FieldSet 2; 3 LoadLocal 0; 4 PushReal 0; 5 PushReal 0; 6 PushReal 0; "
              "7 MakeVector 3; 8 FieldSet 3; 9 LoadLocal 0; 10 PushInt 0; 11 FieldSet 4; 12 Return");
    EXPECT_EQ(compiled.Listing("abre"),
              "0 LoadLocal 0; 1 LoadLocal 1; 2 Call 0 g; 3 AddInt; 4 FieldSet 4; 5 LoadLocal 0; 6 Dup; 7 FieldGet 3; "
              "8 LoadLocal 0; 9 FieldGet 2; 10 VecSet 1; 11 FieldSet 3; 12 Return");
    EXPECT_EQ(compiled.Listing("ao nascer de Porta"),
              "0 LoadLocal 0; 1 LoadLocal 0; 2 FieldGet 4; 3 Call 2 abre; 4 Return");
}

}  // namespace
}  // namespace tavrel::core::script
