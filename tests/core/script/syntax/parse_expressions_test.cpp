#include <gtest/gtest.h>

#include "tests/core/script/syntax/tree_text.h"

namespace tavrel::core::script {
namespace {

struct Row {
    const char* source;
    const char* tree;
    const char* reports = "";
};

// Reads each source as the value of "x = ...", so that it begins in column 5 of line 3.
void ExpectRows(std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.source);
        const Parsed parsed = ParseBody(std::string("x = ") + row.source);
        EXPECT_EQ(BodyText(parsed), std::string("{(= x ") + row.tree + ")}");
        EXPECT_EQ(parsed.reports, row.reports);
    }
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
         {"a +", "(+ a 0)", "t:3:8: erro: esperava um valor, e veio o fim da linha\n"},
         {"f(1,)", "(call f 1 0)",
          "t:3:9: erro: esperava um valor, e veio \")\"\n"
          "t:3:10: erro: esperava \")\", e veio o fim da linha\n"},
         {"[]", "(list)",
          "t:3:5: erro: uma lista vazia nao diz o tipo dos elementos\n"
          "  declare o tipo: \"pontos: lista de inteiro\"\n"},
         {"[1: 2, 3]", "(dict 1:2 3:0)",
          "t:3:13: erro: esperava \":\" entre a chave e o valor, e veio \"]\"\n"
          "t:3:13: erro: esperava um valor, e veio \"]\"\n"
          "t:3:14: erro: esperava \"]\", e veio o fim da linha\n"},
         {"a.se", "(. a )",
          "t:3:7: erro: esperava o nome do campo depois do ponto, e veio \"se\"\n"
          "t:3:7: erro: esperava o fim da linha, e veio \"se\"\n"},
         {"inteiro", "0",
          "t:3:5: erro: esperava um valor, e veio \"inteiro\"\n"
          "  um tipo so aparece numa declaracao ou como conversao, com parenteses\n"},
         {"= 1", "0",
          "t:3:5: erro: esperava um valor, e veio \"=\"\n  faltou o que atribuir\n"
          "t:3:7: erro: esperava o fim da linha, e veio um inteiro\n"},
         {"(a faca", "a",
          "t:3:8: erro: esperava \")\", e veio um nome\n  nao existe: a condicao termina no fim da linha\n"
          "t:3:8: erro: esperava o fim da linha, e veio um nome\n  nao existe: a condicao termina no fim da linha\n"
          "t:5:1: erro: faltou \"fim\" para fechar procedimento\n"
          "  o bloco de \"procedimento\" precisa terminar com \"fim\"\n"}});
}

TEST(ParseExpressions, Spans) {
    const Parsed parsed = ParseFile(
        "modulo M\n"
        "constante A = (a) + b\n"
        "constante B = f(1, 2)\n"
        "constante C = f()\n"
        "constante D = inteiro()\n"
        "constante E = a.b[1]\n"
        "constante F = [1, 2]\n"
        "constante G = nao -a\n"
        "constante H = inteiro(1, 2)\n"
        "constante I = [\"a\": 1,\n]\n"
        "constante J = a ou (b)\n"
        "constante K = []\n"
        "constante L = a.)\n");
    const char* spans[] = {"a) + b",        "f(1, 2)",       "f(",      "inteiro", "a.b[", "[1, 2]", "nao -a",
                           "inteiro(1, 2)", "[\"a\": 1,\n]", "a ou (b", "[]",      "a.)"};
    for (std::size_t at = 0; at < std::size(spans); ++at) {
        const auto init = static_cast<std::size_t>(parsed.unit.module.constants.at(at).init);
        EXPECT_EQ(parsed.unit.source.Slice(parsed.unit.exprs[init].span), spans[at]);
    }
}

}  // namespace
}  // namespace tavrel::core::script
