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
        R"(modulo M
importar "b"
d: lista de texto
evento pulo
progresso "ext"
    p: inteiro
fim
visual
    Visão: cor
fim
estado
    publico onde: vetor3
    f: texto = "a"
fim
evento Saiu_: logico
constante K = 2.5
constante L = falso
)",
        {{"b", "modulo B\nimportar \"c\"\nconstante B = \"b\"\n"}, {"c", "modulo C\nconstante C: inteiro = 1 + 2\n"}});
    EXPECT_EQ(compiled.reports, At("m.tvl:15:1",
                                   "o nome de um campo publico e de letras minusculas sem acento, "
                                   "digitos e _\n  e o nome que vai pela rede"));
    EXPECT_EQ(GlobalsOf(compiled.program), R"(K: real constante
L: logico constante
onde: vetor3 estado +
f: texto estado
Visão: cor visual
p: inteiro progresso
d: lista de texto derivado do mapa
B: texto constante
C: inteiro constante
evento.pulo.n: inteiro estado +
evento.pulo.v: real estado +
evento.pulo.visto: inteiro visual
evento.Saiu_.n: inteiro estado +
evento.Saiu_.v: logico estado +
evento.Saiu_.visto: inteiro visual
)");
    EXPECT_EQ(compiled.program.progressKey, "ext");
    ASSERT_EQ(compiled.program.events.size(), 2u);
    EXPECT_EQ(compiled.program.events.back().seenGlobal, 14);
}

TEST(Globals, ImportsBringNoState) {
    const std::string foreign =
        "estado, ganchos e comportamentos moram no modulo que os usa" + std::string(ForeignHint);
    struct {
        const char* declaration;
        std::string expected;
    } const rows[] = {
        {"estado\nx: naoexiste\nfim", At("a.tvl:2:1", foreign)},
        {"visual\nfim", At("a.tvl:2:1", foreign)},
        {"progresso \"p\"\nfim\nx: inteiro", At("a.tvl:2:1", foreign)},
        {"x: inteiro", At("a.tvl:2:1", foreign)},
        {"ao iniciar\nnaoexiste()\nfim", At("a.tvl:2:1", foreign)},
        {"comportamento C\nx: naoexiste\nfim", At("a.tvl:2:1", foreign)},
        {"estado\nfim\nconstante k = 2\nevento k",
         At("a.tvl:2:1", foreign) + At("a.tvl:5:1", "ja existe algo chamado \"k\"") +
             At("a.tvl:6:1", "um evento mora no modulo que o emite\n  declare \"evento k\" no script principal")},
        {"registro R\nfim\nenumeracao E = A\nacao pular\nfuncao f(): inteiro\nretorne 1\nfim\nconstante c = 1", ""},
    };
    for (const auto& row : rows) {
        std::string import = std::string("\nmodulo A\n") + row.declaration + "\n";
        std::string reports = CompileScript("modulo M\nimportar \"a\"\nconstante k = 1\n", {{"a", import}}).reports;
        EXPECT_EQ(reports, row.expected) << row.declaration;
    }
}

// A state field called "dono" is the owner, wherever it stands in its block; a visual one is none.
TEST(Behaviours, FieldsAndInitialValues) {
    Compiled compiled = CompileScript(R"(modulo M
registro R
fim
comportamento Vazio
fim
comportamento Bau
    casa: objeto
    visual
        dono: inteiro
    fim
    estado
        privado chave: inteiro = forca + 1
        Dono: inteiro = 2
        dono: inteiro = 3
        publico aberto: logico = verdadeiro
    fim
    parametro nome: texto
    parametro forca: inteiro = 4
    constante nunca_lida = naoexiste
fim
)",
                                      {}, nullptr);
    EXPECT_EQ(compiled.reports, "");
    const Program& program = compiled.program;
    ASSERT_EQ(program.behaviours.size(), 2u);
    EXPECT_EQ(FieldsOf(program, program.behaviours[0]),
              "eu: objeto derivado do mapa\nmeu_corpo: corpo derivado do mapa\n");
    EXPECT_EQ(compiled.Code("valores iniciais de Vazio"), "0 Return\n");
    const BehaviourInfo& info = program.behaviours[1];
    EXPECT_EQ(FieldsOf(program, info), R"(eu: objeto derivado do mapa
meu_corpo: corpo derivado do mapa
nome: texto constante
forca: inteiro constante
chave: inteiro estado + privado
Dono: inteiro estado
dono: inteiro estado
aberto: logico estado +
dono: inteiro visual
casa: objeto derivado do mapa
)");
    EXPECT_EQ((std::vector{info.parameterCount, info.stateFirst, info.stateCount, info.ownerField, info.record}),
              (std::vector{2, 4, 4, 6, 2}));
    EXPECT_EQ(program.records[2].name, "comportamento Bau");
    EXPECT_EQ(program.records[2].fieldNames, info.fieldNames);
    EXPECT_EQ(program.records[2].fieldTypes, info.fieldTypes);
    std::string code = compiled.Code("valores iniciais de Bau");
    EXPECT_EQ(code.substr(0, code.find("12 ")), R"(0 LoadLocal 0
1 PushText ""
2 FieldSet 2
3 LoadLocal 0
4 PushInt 4
5 FieldSet 3
6 LoadLocal 0
7 LoadLocal 0
8 FieldGet 3
9 PushInt 1
10 AddInt
11 FieldSet 4
)");
    EXPECT_EQ(code.substr(code.find("24 ")), "24 LoadLocal 0\n25 PushHandle 0 0\n26 FieldSet 9\n27 Return\n");
}

TEST(Behaviours, FaultsComeInTheOrderOfTheFields) {
    Compiled compiled = CompileScript(R"(modulo M
comportamento C
    progresso "p"
        x: naoexiste
    fim
    d: nada1
    estado
        privado a: nada2
    fim
    parametro dono: nada3
fim
)",
                                      {}, nullptr);
    auto unknown = [](const std::string& name) {
        return "o tipo \"" + name +
               "\" nao foi declarado\n  declare um \"registro\" ou uma \"enumeracao\" com esse nome";
    };
    EXPECT_EQ(compiled.reports,
              At("m.tvl:10:21", unknown("nada3")) + At("m.tvl:8:20", unknown("nada2")) +
                  At("m.tvl:2:1",
                     "o comportamento \"C\" tem campo privado e nao tem dono\n"
                     "  declare \"parametro dono: inteiro\" (ou \"dono: inteiro\" no estado): o numero do "
                     "jogador que recebe os campos privados") +
                  At("m.tvl:6:8", unknown("nada1")) +
                  At("m.tvl:2:1", "um comportamento nao tem \"progresso\"\n  o progresso do jogador e do modulo"));
}

}  // namespace
}  // namespace tavrel::core::script
