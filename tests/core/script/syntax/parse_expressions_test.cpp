#include <gtest/gtest.h>

#include "tests/core/script/syntax/tree_text.h"

namespace tavrel::core::script {
namespace {

// Reads each source as the value of "x = ...", so that it begins in column 5 of line 3.
void ExpectRows(std::initializer_list<BodyRow> rows) {
    for (const BodyRow& row : rows) ExpectBody({"x = " + row.source, "{(= x " + row.tree + ")}", row.reports});
}

TEST(ParseExpressions, LevelsOfBinding) {
    ExpectRows({{"a + b * c", "(+ a (* b c))"},
                {"a - b - c", "(- (- a b) c)"},
                {"a / b % c", "(% (/ a b) c)"},
                {"- a * b", "(* (- a) b)"},
                {"- -a.b", "(- (- (. a b)))"},
                {"(a + b) * c", "(* (+ a b) c)"},
                {"nao a e b ou c", "(ou (e (nao a) b) c)"},
                {"a ou b e c ou d", "(ou (ou a (e b c)) d)"},
                {"nao nao a == b + 1", "(nao (nao (== a (+ b 1))))"},
                {"a <= b e c != d", "(e (<= a b) (!= c d))"}});
}

TEST(ParseExpressions, Primaries) {
    ExpectRows({{"[1, 2.5, \"a\\tb\", verdadeiro, falso,]", "(list 1 2.5 'a\tb' verdadeiro falso)"},
                {"[1: [2: 3], (4): [5, 6],]", "(dict 1:(dict 2:3) 4:(list 5 6))"},
                {"[\n1,\n2\n]", "(list 1 2)"},
                {"inteiro(y)", "(inteiro y)"},
                {"vetor2(x = 1, 2)", "(vetor2 x=1 2)"},
                {"som.tocar(a)", "(call (. som tocar) a)"}});
}

TEST(ParseExpressions, Postfix) {
    ExpectRows({{"a.b[i + 1].cor.estado(1)(2)", "(call (call (. (. (index (. a b) (+ i 1)) cor) estado) 1) 2)"},
                {"f()", "(call f)"},
                {"f(a, cor = 1, g(k = [2], 3), b == 4)", "(call f a cor=1 (call g k=(list 2) 3) (== b 4))"},
                {"a.acao.progresso.visual", "(. (. (. a acao) progresso) visual)"}});
}

TEST(ParseExpressions, Faults) {
    ExpectRows(
        {{"a < b < c", "(< a b)", "t:3:11: erro: nao da para encadear comparacoes\n  escreva \"a < b e b < c\"\n"},
         {"f(1,)", "(call f 1 0)",
          "t:3:9: erro: esperava um valor, e veio \")\"\n"
          "t:3:10: erro: esperava \")\", e veio o fim da linha\n"},
         {"[1: 2, 3]", "(dict 1:2 3:0)",
          "t:3:13: erro: esperava \":\" entre a chave e o valor, e veio \"]\"\n"
          "t:3:13: erro: esperava um valor, e veio \"]\"\n"
          "t:3:14: erro: esperava \"]\", e veio o fim da linha\n"},
         {"a.se", "(. a )",
          "t:3:7: erro: esperava o nome do campo depois do ponto, e veio \"se\"\n"
          "t:3:7: erro: esperava o fim da linha, e veio \"se\"\n"},
         {"(a faca", "a",
          "t:3:8: erro: esperava \")\", e veio um nome\n  nao existe: a condicao termina no fim da linha\n"
          "t:3:8: erro: esperava o fim da linha, e veio um nome\n  nao existe: a condicao termina no fim da linha\n"
          "t:5:1: erro: faltou \"fim\" para fechar procedimento\n"
          "  o bloco de \"procedimento\" precisa terminar com \"fim\"\n"}});
}

TEST(ParseExpressions, Spans) {
    const Parsed parsed = ParseFile(
        "modulo M\nconstante A = (a) + b\nconstante B = f(1, 2)\nconstante C = f()\nconstante D = inteiro()\n"
        "constante E = a.b[1]\nconstante F = [1, 2]\nconstante G = nao -a\nconstante H = inteiro(1, 2)\n"
        "constante I = [\"a\": 1,\n]\nconstante J = a ou (b)\nconstante K = []\nconstante L = a.)\n");
    const char* spans[] = {"a) + b",        "f(1, 2)",       "f(",      "inteiro", "a.b[", "[1, 2]", "nao -a",
                           "inteiro(1, 2)", "[\"a\": 1,\n]", "a ou (b", "[]",      "a.)"};
    for (std::size_t at = 0; at < std::size(spans); ++at) {
        const auto init = static_cast<std::size_t>(parsed.unit.module.constants.at(at).init);
        EXPECT_EQ(parsed.unit.source.Slice(parsed.unit.exprs[init].span), spans[at]);
    }
}

}  // namespace
}  // namespace tavrel::core::script
