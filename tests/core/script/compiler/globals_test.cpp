// Variables, events and behaviours as a program carries them.
#include <gtest/gtest.h>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

std::string At(const std::string& place, const std::string& text) {
    return place + ": erro: " + text + "\n";
}

constexpr const char* ForeignHint =
    "\n  um arquivo importado so pode trazer constantes, registros, enumeracoes, acoes e funcoes";

// "name: type category" and a "+" for a published one.
std::string GlobalsOf(const Program& program) {
    std::string text;
    for (const GlobalInfo& global : program.globals) {
        text += global.name + ": " + program.types.Name(global.type) + " " + CategoryName(global.category) +
                (global.published ? " +\n" : "\n");
    }
    return text;
}

std::string FieldsOf(const Program& program, const BehaviourInfo& info) {
    std::string text;
    for (std::size_t i = 0; i < info.fieldNames.size(); ++i) {
        text += info.fieldNames[i] + ": " + program.types.Name(info.fieldTypes[i]) + " " +
                CategoryName(info.fieldCategories[i]) + (info.fieldPublished[i] ? " +" : "") +
                (info.fieldPrivate[i] ? " privado\n" : "\n");
    }
    return text;
}

TEST(Globals, NumberedByCategoryNotByPlaceInTheSource) {
    Compiled compiled = CompileScript(
        "modulo M\nimportar \"b\"\nd: lista de texto\nevento pulo\nprogresso \"ext\"\np: inteiro\nfim\n"
        "visual\nVisão: cor\nfim\nestado\npublico onde: vetor3\nf: texto = \"a\"\nfim\nevento Saiu_: logico\n"
        "constante K = 2.5\nconstante L = falso\n",
        {{"b", "modulo B\nimportar \"c\"\nconstante B = \"b\"\n"}, {"c", "modulo C\nconstante C: inteiro = 1 + 2\n"}});
    EXPECT_EQ(compiled.reports, At("m.tvl:15:1",
                                   "o nome de um campo publico e de letras minusculas sem acento, "
                                   "digitos e _\n  e o nome que vai pela rede"));
    EXPECT_EQ(
        GlobalsOf(compiled.program),
        "K: real constante\nL: logico constante\nonde: vetor3 estado +\nf: texto estado\nVisão: cor visual\n"
        "p: inteiro progresso\nd: lista de texto derivado do mapa\nB: texto constante\nC: inteiro constante\n"
        "evento.pulo.n: inteiro estado +\nevento.pulo.v: real estado +\nevento.pulo.visto: inteiro visual\n"
        "evento.Saiu_.n: inteiro estado +\nevento.Saiu_.v: logico estado +\nevento.Saiu_.visto: inteiro visual\n");
    EXPECT_EQ(compiled.program.progressKey, "ext");
    ASSERT_EQ(compiled.program.events.size(), 2u);
    EXPECT_EQ(compiled.program.events.back().seenGlobal, 14);
}

TEST(Globals, ImportsBringNoState) {
    const std::string foreign =
        At("a.tvl:2:1", "estado, ganchos e comportamentos moram no modulo que os usa" + std::string(ForeignHint));
    const std::pair<const char*, std::string> rows[] = {
        {"visual\nfim", foreign},
        {"progresso \"p\"\nfim\nx: inteiro", foreign},
        {"x: inteiro", foreign},
        {"comportamento C\nx: naoexiste\nfim", foreign},
        {"estado\nfim\nconstante k = 2\nevento k",
         foreign + At("a.tvl:5:1", "ja existe algo chamado \"k\"") +
             At("a.tvl:6:1", "um evento mora no modulo que o emite\n  declare \"evento k\" no script principal")},
        {"registro R\nfim\nenumeracao E = A\nacao pular\nfuncao f(): inteiro\nretorne 1\nfim\nconstante c = 1", ""},
    };
    for (const auto& [declaration, expected] : rows) {
        const std::string import = std::string("\nmodulo A\n") + declaration + "\n";
        EXPECT_EQ(CompileScript("modulo M\nimportar \"a\"\nconstante k = 1\n", {{"a", import}}).reports, expected)
            << declaration;
    }
}

// A state field called "dono" is the owner, wherever it stands in its block; a visual one is none.
TEST(Behaviours, FieldsAndInitialValues) {
    Compiled compiled = CompileScript(
        "modulo M\nregistro R\nfim\ncomportamento Vazio\nfim\ncomportamento Bau\ncasa: objeto\n"
        "visual\ndono: inteiro\nfim\nestado\nprivado chave: inteiro = forca + 1\nDono: inteiro = 2\n"
        "dono: inteiro = 3\npublico aberto: logico = verdadeiro\nfim\nparametro nome: texto\n"
        "parametro forca: inteiro = 4\nconstante nunca_lida = naoexiste\nfim\n",
        {}, nullptr);
    EXPECT_EQ(compiled.reports, "");
    const Program& program = compiled.program;
    ASSERT_EQ(program.behaviours.size(), 2u);
    EXPECT_EQ(FieldsOf(program, program.behaviours[0]),
              "eu: objeto derivado do mapa\nmeu_corpo: corpo derivado do mapa\n");
    EXPECT_EQ(compiled.Listing("valores iniciais de Vazio"), "0 Return");
    const BehaviourInfo& info = program.behaviours[1];
    EXPECT_EQ(FieldsOf(program, info),
              "eu: objeto derivado do mapa\nmeu_corpo: corpo derivado do mapa\nnome: texto constante\n"
              "forca: inteiro constante\nchave: inteiro estado + privado\nDono: inteiro estado\ndono: inteiro estado\n"
              "aberto: logico estado +\ndono: inteiro visual\ncasa: objeto derivado do mapa\n");
    EXPECT_EQ((std::vector{info.parameterCount, info.stateFirst, info.stateCount, info.ownerField, info.record.value}),
              (std::vector{2, 4, 4, 6, 2}));
    EXPECT_EQ(program.records[2].name, "comportamento Bau");
    EXPECT_EQ(program.records[2].fieldNames, info.fieldNames);
    EXPECT_EQ(program.records[2].fieldTypes, info.fieldTypes);
    std::string code = compiled.Listing("valores iniciais de Bau");
    EXPECT_EQ(code.substr(0, code.find("; 12 ")),
              "0 LoadLocal 0; 1 PushText \"\"; 2 FieldSet 2; 3 LoadLocal 0; 4 PushInt 4; 5 FieldSet 3; 6 LoadLocal 0; "
              "7 LoadLocal 0; 8 FieldGet 3; 9 PushInt 1; 10 AddInt; 11 FieldSet 4");
    EXPECT_EQ(code.substr(code.find("24 ")), "24 LoadLocal 0; 25 PushHandle 0 0; 26 FieldSet 9; 27 Return");
}

TEST(Behaviours, FaultsComeInTheOrderOfTheFields) {
    Compiled compiled = CompileScript(
        "modulo M\ncomportamento C\nprogresso \"p\"\nx: naoexiste\nfim\nd: nada1\n"
        "estado\nprivado a: nada2\nfim\nparametro dono: nada3\nfim\n",
        {}, nullptr);
    auto unknown = [](const std::string& name) {
        return "o tipo \"" + name +
               "\" nao foi declarado\n  declare um \"registro\" ou uma \"enumeracao\" com esse nome";
    };
    EXPECT_EQ(compiled.reports,
              At("m.tvl:10:17", unknown("nada3")) + At("m.tvl:8:12", unknown("nada2")) +
                  At("m.tvl:2:1",
                     "o comportamento \"C\" tem campo privado e nao tem dono\n"
                     "  declare \"parametro dono: inteiro\" (ou \"dono: inteiro\" no estado): o numero do "
                     "jogador que recebe os campos privados") +
                  At("m.tvl:6:4", unknown("nada1")) +
                  At("m.tvl:2:1", "um comportamento nao tem \"progresso\"\n  o progresso do jogador e do modulo"));
}

}  // namespace
}  // namespace tavrel::core::script
