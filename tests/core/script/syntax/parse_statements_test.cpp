#include <gtest/gtest.h>

#include "tests/core/script/syntax/tree_text.h"

namespace tavrel::core::script {
namespace {

void ExpectRows(std::initializer_list<BodyRow> rows) {
    for (const BodyRow& row : rows) ExpectBody(row);
}

TEST(ParseStatements, Simple) {
    ExpectRows({{"x: lista de inteiro", "{(declare x lista<inteiro> -)}"},
                {"x: Ponto = f(1)\n\na.b = 1\na[0] = 2\nf()",
                 "{(declare x Ponto (call f 1)); (= (. a b) 1); (= (index a 0) 2); (call f)}"},
                {"retorne\nretorne 1 + 2", "{(retorne -); (retorne (+ 1 2))}"}});
}

TEST(ParseStatements, If) {
    ExpectRows({{"se a entao b() senao c() fim", "{(if (a {(call b)}) else {(call c)})}"},
                {"se a b() senao c() fim\nd()", "{(if (a {(call b)}) else {(call c)}); (call d)}"},
                {"se a entao\nb()\nsenao se c\nd()\nsenao\nfim", "{(if (a {(call b)}) (c {(call d)}) else {})}"},
                {"se a\nsenao\nse b\nfim\nfim", "{(if (a {}) else {(if (b {}))})}"},
                {"se a x = 1\ny = 2\nsenao z = 3 fim", "{(if (a {(= x 1); (= y 2)}) else {(= z 3)})}"},
                {"se a se b c() fim senao d() fim", "{(if (a {(if (b {(call c)}))}) else {(call d)})}"},
                {"se a b() senao c()\n\nd() fim", "{(if (a {(call b)}) else {(call c); (call d)})}"},
                {"se a enquanto b\nc() fim fim", "{(if (a {(while b {(call c)})}))}"}});
}

TEST(ParseStatements, Loops) {
    ExpectRows({{"enquanto a\npare\ncontinue\nfim", "{(while a {pare; continue})}"},
                {"para i de 1 até 3\nf(i)\nfim", "{(for i 1 3 - {(call f i)})}"},
                {"para i De n ATÉ 1 passo -1\nfim", "{(for i n 1 (- 1) {})}"},
                {"para cada x em l\nfim\npara Cada x em l\nfim", "{(each x l {}); (each x l {})}"}});
}

TEST(ParseStatements, Switch) {
    ExpectRows({{"escolha x\n\ncaso 1, 2\nf()\ncaso y\n\nsenao\ng()\nfim",
                 "{(switch x (1 2 {(call f)}) (y {}) else {(call g)})}"}});
}

TEST(ParseStatements, LinesThatDoNothing) {
    ExpectRows({{"x", "{x}", "t:3:1: erro: esta linha nao faz nada\n  para atribuir, escreva \"nome = valor\"\n"},
                {"f() g()", "{(call f)}", "t:3:5: erro: esperava o fim da linha, e veio um nome\n"}});
}

TEST(ParseStatements, FaultyLoops) {
    ExpectRows({{"para se em l\nfim", "{(for  0 em - {})}",
                 "t:3:6: erro: esperava o nome da variavel do laco, e veio \"se\"\n"
                 "  esta e uma palavra reservada da linguagem\n"
                 "t:3:6: erro: depois do nome vem \"de\", o primeiro valor, \"ate\" e o ultimo\n"
                 "  por exemplo: para i de 1 ate 10\n"
                 "t:3:6: erro: esperava um valor, e veio \"se\"\n"
                 "t:3:9: erro: faltou \"ate\" e o ultimo valor do laco\n"
                 "t:3:12: erro: esperava o fim da linha, e veio um nome\n"},
                {"para cada x de l\nfim", "{(each x de {})}",
                 "t:3:13: erro: depois do nome vem \"em\" e a colecao\n  por exemplo: para cada item em lista\n"
                 "t:3:16: erro: esperava o fim da linha, e veio um nome\n"}});
}

TEST(ParseStatements, BlocksThatDoNotEnd) {
    ExpectRows({{"se a retorne fim", "{(if (a {(retorne 0)}))}",
                 "t:3:14: erro: esperava um valor, e veio \"fim\"\n"
                 "t:5:1: erro: faltou \"fim\" para fechar procedimento\n"
                 "  o bloco de \"procedimento\" precisa terminar com \"fim\"\n"},
                {"escolha a\nsenao\nb()\ncaso 1", "{(switch a else {(call b)})}",
                 "t:3:1: erro: um \"escolha\" precisa de pelo menos um \"caso\"\n"
                 "t:6:1: erro: faltou \"fim\" para fechar escolha\n"
                 "  o bloco de \"escolha\" precisa terminar com \"fim\"\n"
                 "t:6:1: erro: faltou \"fim\" para fechar procedimento\n"
                 "  o bloco de \"procedimento\" precisa terminar com \"fim\"\n"
                 "t:6:1: erro: esperava uma declaracao, e veio \"caso\"\n"
                 "t:7:1: erro: esperava uma declaracao, e veio \"fim\"\n"}});
}

TEST(ParseStatements, Spans) {
    const Parsed parsed = ParseBody(
        "(a).b = 1 + (2)\nx: inteiro = 3\nse a e b\nsenao se (c)\nfim\nescolha a\ncaso 1\nfim\n"
        "para cada i em l\nfim\nretorne a\n(f)(1)");
    const Unit& unit = parsed.unit;
    std::string spans;
    for (const Stmt& stmt : unit.stmts) spans += unit.source.Slice(stmt.span) + "|";
    for (const Branch& branch : unit.branches) spans += unit.source.Slice(branch.span) + "|";
    EXPECT_EQ(spans, "a).b = 1 + (2|x: inteiro = 3\n|se|escolha|para|retorne|f)(1)|a|(|caso|");
}

}  // namespace
}  // namespace tavrel::core::script
