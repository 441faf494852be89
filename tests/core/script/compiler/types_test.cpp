// Declared types: which are refused and where, the order in which the others are numbered, and what names mean.
#include <gtest/gtest.h>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

constexpr const char* Undeclared = "  declare um \"registro\" ou uma \"enumeracao\" com esse nome\n";
constexpr const char* Keys = "  servem inteiro, real, logico, texto, uma enumeracao, objeto, corpo e som\n";

std::string ContainsItself(const std::string& record) {
    return "m.tvl:1:1: erro: o registro \"" + record +
           "\" contem a si mesmo\n  ele pode conter uma \"lista de\" si mesmo, que comeca vazia\n";
}

std::string Record(const std::string& name, const std::vector<std::string>& types) {
    std::string text = "registro " + name + "\n";
    for (std::size_t i = 0; i < types.size(); ++i) text += "f" + std::to_string(i) + ": " + types[i] + "\n";
    return text + "fim\n";
}

// Records A1 to A<count>, each with the next one in a field.
std::string Chain(int count) {
    std::string text = "modulo M\n";
    for (int i = 1; i <= count; ++i) {
        text += Record("A" + std::to_string(i), {i == count ? "real" : "A" + std::to_string(i + 1)});
    }
    return text;
}

TEST(Types, NamesAreTakenOnceInAllFilesAndTheWorld) {
    EXPECT_EQ(
        CompileScript("modulo M\nimportar \"b\"\nregistro Chao\nx: NuncaLido\nfim\nregistro R\nfim\n"
                      "enumeracao R = AZUL\nenumeracao E = NUNCA\nregistro E\nfim\nenumeracao G = NUNCA, AMARÉLO\n",
                      {{"b", "modulo B\nregistro Ê\nfim\nenumeracao F = nunca, AMARELO\n"}})
            .reports,
        "m.tvl:3:1: erro: ja existe um tipo chamado \"Chao\"\n"
        "m.tvl:8:1: erro: ja existe um tipo chamado \"R\"\n"
        "m.tvl:9:1: erro: ja existe um tipo chamado \"E\"\n"
        "b.tvl:2:1: erro: ja existe um tipo chamado \"Ê\"\n"
        "b.tvl:4:23: erro: o nome \"AMARELO\" ja pertence a outra enumeracao\n");
    EXPECT_EQ(CompileScript("modulo M\nenumeracao E = AZUL, VERMELHÃO, EFEITOS, AZUL\nCOMECOU: inteiro\n").reports,
              "m.tvl:2:33: erro: o nome \"EFEITOS\" ja pertence a outra enumeracao\n"
              "m.tvl:2:42: erro: o nome \"AZUL\" ja pertence a outra enumeracao\n"
              "m.tvl:3:1: erro: ja existe algo chamado \"COMECOU\"\n");
}

// A refused record shifts no other, and a refused field leaves the record its shape.
TEST(Types, FieldsAreResolvedBehindAllNames) {
    EXPECT_EQ(CompileScript("modulo M\nregistro R\nx: Nada\nfim\nregistro R\ny: NuncaLido\nfim\nregistro S\n"
                            "fôlego: inteiro\nfolêgo: lista de S\nk: dicionario de vetor3 para Nada\n"
                            "l: lista de dicionario de R para S\nfim\nao iniciar\ns: S\nfim\nx: real = nada_disso\n")
                  .reports,
              std::string("m.tvl:5:1: erro: ja existe um tipo chamado \"R\"\n") +
                  "m.tvl:3:4: erro: o tipo \"Nada\" nao foi declarado\n" + Undeclared +
                  "m.tvl:10:1: erro: o registro \"S\" ja tem um campo chamado \"folêgo\"\n"
                  "m.tvl:11:30: erro: o tipo \"Nada\" nao foi declarado\n" +
                  Undeclared + "m.tvl:12:13: erro: a chave de um dicionario tem de ser comparavel, e R nao e\n" + Keys);
}

TEST(Types, ActionsOfAllFilesShareTheirNames) {
    Compiled compiled = CompileScript("modulo M\nimportar \"b\"\nacao ir = tecla a\nacao Ir\n",
                                      {{"b", "modulo B\nacao pular\nacao ír\n"}});
    EXPECT_EQ(compiled.reports, "b.tvl:3:1: erro: ja existe uma acao chamada \"ír\"\n");
    ASSERT_EQ(compiled.program.actions.size(), 3U);
    EXPECT_EQ(compiled.program.actions[2].name, "pular");
}

// Named types come first, file by file, then the composite ones in the order of the fields, inner types first.
TEST(Types, NumberedInOrderOfDeclaration) {
    Compiled compiled =
        CompileScript("modulo M\nimportar \"b\"\nenumeracao E = UM\n" +
                          Record("R", {"dicionario de E para lista de lista de S", "lista de S"}),
                      {{"b", "modulo B\n" + Record("S", {"lista de R", "lista de lista de S"})}}, nullptr);
    ASSERT_TRUE(compiled.good) << compiled.reports;
    std::string names;
    const TypeTable& types = compiled.program.types;
    for (std::int32_t id = 12; id < static_cast<std::int32_t>(types.Size()); ++id) names += types.Name(id) + "\n";
    EXPECT_EQ(names,
              "R\nE\nS\nlista de S\nlista de lista de S\ndicionario de E para lista de lista de S\nlista de R\n");
}

TEST(Types, RecordsThatContainThemselves) {
    EXPECT_EQ(CompileScript("modulo M\n" + Record("L", {"lista de L", "dicionario de texto para L"}) +
                            Record("A", {"inteiro", "B"}) + Record("FORA", {"A"}) + Record("B", {"L", "A"}) +
                            Record("S", {"S", "S"}))
                  .reports,
              ContainsItself("A") + ContainsItself("B") + ContainsItself("S"));
}

// A long chain counts as a cycle. Each record is gone down once, so the order of fields decides how long one gets.
TEST(Types, LongChainsOfRecords) {
    EXPECT_EQ(CompileScript(Chain(65)).reports, "");
    EXPECT_EQ(CompileScript(Chain(67)).reports, ContainsItself("A1") + ContainsItself("A2"));
    EXPECT_EQ(CompileScript(Chain(65) + Record("T", {"A2", "A1"})).reports, "");
    EXPECT_EQ(CompileScript(Chain(65) + Record("T", {"A1", "A2"})).reports, ContainsItself("T"));
}

TEST(Types, FaultsOfDeclarationsHideThoseOfBodies) {
    std::string body = "funcao f(): inteiro\nretorne 1.5\nfim\nfuncao g(x: inteiro): inteiro\nx = \"a\"\nfim\n";
    EXPECT_EQ(CompileScript("modulo M\n" + body + "funcao h(x: Nada): lista de Nunca\nretorne 1\nfim\n").reports,
              std::string("m.tvl:8:13: erro: o tipo \"Nada\" nao foi declarado\n") + Undeclared +
                  "m.tvl:8:29: erro: o tipo \"Nunca\" nao foi declarado\n" + Undeclared);
    std::string reports = CompileScript("modulo M\n" + body).reports;
    EXPECT_NE(reports.find("m.tvl:3:9: erro: "), std::string::npos) << reports;
    EXPECT_NE(reports.find("m.tvl:6:5: erro: "), std::string::npos) << reports;
    EXPECT_TRUE(
        reports.ends_with("m.tvl:5:1: erro: \"g\" devolve inteiro, mas ha um caminho que termina sem \"retorne\"\n"))
        << reports;
}

// A field of the behaviour hides the global of that name; outside the behaviour the global is meant.
TEST(Names, FieldsHideGlobals) {
    Compiled compiled = CompileScript(
        "modulo M\nconstante a = 1\nestado\nb: inteiro\nfim\n"
        "funcao f(): inteiro\nretorne a + b\nfim\n"
        "comportamento C\nestado\nA: real\nà: inteiro\nfim\n"
        "ao nascer\na = b\nfim\nfim\n");
    ASSERT_TRUE(compiled.good) << compiled.reports;
    EXPECT_EQ(compiled.Listing("f"), "0 LoadGlobal a; 1 LoadGlobal b; 2 AddInt; 3 ReturnValue; 4 Return");
    EXPECT_EQ(compiled.Listing("ao nascer de C"), "0 LoadLocal 0; 1 LoadGlobal b; 2 FieldSet 3; 3 Return");
}

}  // namespace
}  // namespace tavrel::core::script
