#include <gtest/gtest.h>

#include "tests/core/script/syntax/tree_text.h"

namespace tavrel::core::script {
namespace {

std::string VariablesText(const Unit& unit, const std::vector<VarDecl>& variables) {
    std::string text;
    for (const VarDecl& variable : variables) {
        if (variable.published) text += variable.isPrivate ? "privado " : "publico ";
        text += variable.name + ":" + TreeText(unit).Type(variable.type) + "=";
        text += TreeText(unit).Expression(variable.init) + " ";
    }
    return text;
}

std::string ParamsText(const Unit& unit, const std::vector<Param>& params) {
    std::string text;
    for (const Param& param : params) text += param.name + ":" + TreeText(unit).Type(param.type) + " ";
    return text;
}

TEST(ParseDeclarations, Module) {
    const Parsed parsed = ParseFile("\n// nota\nmodulo Jogo");
    EXPECT_TRUE(parsed.isGood);
    EXPECT_EQ(parsed.unit.module.name, "Jogo");
}

TEST(ParseDeclarations, EverySortIsStored) {
    const Parsed parsed = ParseFile(
        "modulo M\n"
        "importar \"util\"\n"
        "constante A: real = 1.5\nconstante B = A\n"
        "registro R\n x: inteiro = 1\n\n y: texto\nfim\n"
        "enumeracao Cor = verde, azul\n"
        "acao pular\nacao andar = Tecla espaco, eixo_controle x Negativo\n"
        "evento fim_de_jogo: inteiro\nevento inicio\n"
        "estado\n publico v: inteiro\n privado w: real = 2.5\n publico: inteiro\nfim\n"
        "visual\n z: cor\nfim\n"
        "progresso \"farol\"\n q: dicionario de texto para lista de R\nfim\n"
        "evento: inteiro\nparametro: real\nao: inteiro\ncamera: Ponto = 3\n"
        "funcao f(a: inteiro, b: real): texto\n retorne g()\nfim\n"
        "procedimento g\nfim\n"
        "comportamento Bola\n parametro raio: real = 2.5\n funcao h(): real\n fim\n ao nascer\n fim\nfim\n");
    ASSERT_EQ(parsed.reports, "");
    const Unit& unit = parsed.unit;
    const Section& module = unit.module;
    EXPECT_EQ(unit.imports.at(0), "util");
    EXPECT_EQ(unit.source.Slice(unit.importSpans.at(0)), "\"util\"");
    EXPECT_EQ(VariablesText(unit, module.constants), "A:real=1.5 B:-=A ");
    EXPECT_EQ(VariablesText(unit, unit.records.at(0).fields), "x:inteiro=1 y:texto=- ");
    EXPECT_EQ(unit.enums.at(0).members, (std::vector<std::string>{"verde", "azul"}));
    EXPECT_TRUE(unit.actions.at(0).bindings.empty());
    const Binding& binding = unit.actions.at(1).bindings.at(1);
    EXPECT_EQ(unit.actions.at(1).bindings.at(0).source, "tecla");
    EXPECT_EQ(binding.source + " " + binding.code, "eixo_controle x");
    EXPECT_TRUE(binding.negative);
    EXPECT_EQ(TreeText(unit).Type(unit.events.at(0).type) + TreeText(unit).Type(unit.events.at(1).type), "inteiro-");
    EXPECT_EQ(VariablesText(unit, module.state), "publico v:inteiro=- privado w:real=2.5 publico:inteiro=- ");
    EXPECT_EQ(VariablesText(unit, module.visual), "z:cor=- ");
    EXPECT_EQ(VariablesText(unit, module.progress), "q:dicionario<texto,lista<R>>=- ");
    EXPECT_EQ(module.progressExtension, "farol");
    EXPECT_EQ(VariablesText(unit, module.derived), "evento:inteiro=- parametro:real=- ao:inteiro=- camera:Ponto=3 ");
    EXPECT_EQ(ParamsText(unit, unit.functions.at(0).params), "a:inteiro b:real ");
    EXPECT_EQ(TreeText(unit).Type(unit.functions.at(0).returnType), "texto");
    EXPECT_TRUE(unit.functions.at(1).isProcedure);
    EXPECT_EQ(module.functions, (std::vector<FunctionDeclId>{FunctionDeclId(0), FunctionDeclId(1)}));
    const Section& behaviour = unit.behaviours.at(0);
    EXPECT_EQ(behaviour.functions, (std::vector<FunctionDeclId>{FunctionDeclId(2)}));
    EXPECT_EQ(VariablesText(unit, behaviour.parameters), "raio:real=2.5 ");
    EXPECT_EQ(behaviour.hooks.at(0).kind, HookKind::Spawn);
}

TEST(ParseDeclarations, Hooks) {
    const Parsed parsed = ParseFile(
        "modulo M\n"
        "ao iniciar\nfim\nao carregar mapa\nfim\nAo  reiniciar   Mapa\nfim\nao interromper\nfim\n"
        "a cada tick (dt: real)\nfim\na cada QUADRO\nfim\nao desenhar\nfim\ncâmera\nfim\nao encerrar\nfim\n");
    EXPECT_EQ(parsed.reports, "");
    ASSERT_EQ(parsed.unit.module.hooks.size(), 9U);
    for (int kind = 0; kind < 9; ++kind) {
        EXPECT_EQ(parsed.unit.module.hooks[static_cast<std::size_t>(kind)].kind, static_cast<HookKind>(kind));
    }
    EXPECT_EQ(ParamsText(parsed.unit, parsed.unit.module.hooks[4].params), "dt:real ");
}

TEST(ParseDeclarations, Faults) {
    const Parsed parsed = ParseFile(
        "modulo M\nao tocar\nfim\nfuncao f(a: inteiro,): real\nfim\nvisual\nprivado x: inteiro\nfim\n"
        "ao iniciar\nfim\nao iniciar\nfim\nregistro R\ncampo outro\nfim\nvisual\n");
    EXPECT_EQ(
        parsed.reports,
        "t:2:1: erro: \"ao tocar\" so existe dentro de um comportamento\n"
        "t:4:21: erro: esperava o nome do argumento, e veio \")\"\n  esta e uma palavra reservada da linguagem\n"
        "t:4:21: erro: esperava \":\" e o tipo do argumento, e veio \")\"\n"
        "t:7:1: erro: so um campo do bloco \"estado\" pode ser privado\n"
        "  o visual e o progresso sao de quem joga; o que vai para a rede e o estado que o servidor decide\n"
        "t:11:1: erro: este modulo ja tem um \"ao iniciar\"\n"
        "t:14:1: erro: um registro so tem campos, na forma \"nome: tipo\"\n"
        "t:16:1: erro: este modulo ja tem um bloco \"visual\"\n"
        "t:17:1: erro: faltou \"fim\" para fechar visual\n  o bloco de \"visual\" precisa terminar com \"fim\"\n");
    EXPECT_EQ(parsed.unit.module.hooks.size(), 3U);
}

TEST(ParseDeclarations, WhatHoldsForTheWholeFileIsStoredFromABehaviourToo) {
    const Parsed parsed = ParseFile(
        "modulo M\ncomportamento B\nregistro R\nfim\nenumeracao Cor = verde\nimportar \"a\"\nacao x\nevento y\n"
        "comportamento C\nfim\n");
    EXPECT_FALSE(parsed.isGood);
    const Unit& unit = parsed.unit;
    EXPECT_EQ(unit.records.size() + unit.enums.size() + unit.imports.size(), 3U);
    EXPECT_EQ(unit.actions.size() + unit.events.size() + unit.behaviours.size(), 3U);
}

TEST(ParseDeclarations, OnlyAHeaderThatCannotBeReadDropsItsDeclaration) {
    const Parsed parsed = ParseFile(
        "modulo M\nfuncao f() real\nconstante a\nenumeracao cor = x\nacao b tecla c\nparametro d real\nao 1\n"
        "acao = teclado x, mouse y\nparametro h: real\nenumeracao F = g,\nprocedimento p: real\nfim\n");
    const Unit& unit = parsed.unit;
    EXPECT_EQ(unit.functions.size() + unit.module.constants.size() + unit.module.hooks.size(), 1U);
    EXPECT_EQ(unit.functions.at(0).returnType, -1);
    ASSERT_EQ(unit.actions.size(), 1U);
    EXPECT_EQ(unit.actions[0].bindings.size(), 2U);
    EXPECT_EQ(VariablesText(unit, unit.module.parameters), "h:real=- ");
    ASSERT_EQ(unit.enums.size(), 1U);
    EXPECT_EQ(unit.enums[0].members, (std::vector<std::string>{"g", ""}));
}

// Whole words, statements and line ends, as an editor underlines them.
TEST(ParseDeclarations, ReportSpans) {
    Diagnostics diagnostics;
    Unit unit;
    EXPECT_FALSE(
        Parse(SourceFile("t",
                         "modulo M\nao carregar\na cada hora\nacao a = teclado x\ncomportamento B\nestado\nfim\n"
                         "estado\nfim\ncamera\nparte.x + 1\npare\nfim\nregistro R\nfim\nconstante c\nfim\n"
                         "parametro p: real\nao nascer\nfim\nao nascer\nescolha x\nfim\n"),
              diagnostics, unit));
    std::string spans;
    for (const Diagnostic& report : diagnostics.items) spans += unit.source.Slice(report.span) + "|";
    EXPECT_EQ(spans, "ao|a|teclado|estado|camera|parte.x + 1|pare|registro|\n|parametro|ao|ao|escolha||ao|");
    EXPECT_EQ(diagnostics.items.at(3).message, "este modulo ja tem um bloco \"estado\"");
}

TEST(ParseDeclarations, Spans) {
    const Parsed parsed = ParseFile(
        "modulo Mó\n"
        "constante A: inteiro = 1\n"
        "estado\n  publico v: dicionario de texto para lista de R\nfim\n"
        "acao andar = Tecla d, eixo_controle x negativo\n"
        "enumeracao E = um, dois\n"
        "procedimento p(a: lista de cor, b: real)\nfim\n"
        "a cada tick\nfim\n"
        "comportamento B\n  parametro r: real\nfim\n"
        "registro R\nfim\nevento v\n");
    ASSERT_EQ(parsed.reports, "");
    const Unit& unit = parsed.unit;
    const auto& bindings = unit.actions.at(0).bindings;
    const auto& params = unit.functions.at(0).params;
    const Section& behaviour = unit.behaviours.at(0);
    const auto typeSpan = [&](std::int32_t type) { return unit.types.at(static_cast<std::size_t>(type)).span; };
    const std::pair<Span, const char*> rows[] = {
        {unit.module.span, "modulo"},
        {unit.module.nameSpan, "Mó"},
        {unit.module.constants.at(0).span, "constante"},
        {unit.module.state.at(0).span, "v"},
        {typeSpan(unit.module.state.at(0).type), "dicionario de texto para lista de R"},
        {bindings.at(0).span, "Tecla d,"},
        {bindings.at(1).span, "eixo_controle x negativo\n"},
        {unit.actions.at(0).span, "acao"},
        {unit.records.at(0).span, "registro"},
        {unit.events.at(0).span, "evento"},
        {unit.enums.at(0).span, "enumeracao"},
        {unit.enums.at(0).memberSpans.at(1), "dois"},
        {unit.functions.at(0).span, "procedimento"},
        {params.at(0).span, "a: lista de cor,"},
        {params.at(1).span, "b: real)"},
        {unit.module.hooks.at(0).span, "a"},
        {behaviour.span, "comportamento"},
        {behaviour.nameSpan, "B"},
        {behaviour.parameters.at(0).span, "parametro"},
    };
    for (const auto& [span, text] : rows) EXPECT_EQ(unit.source.Slice(span), text);
}

}  // namespace
}  // namespace tavrel::core::script
