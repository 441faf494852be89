// Whatever stands in a file, the tool answers with ordinary reports: no crash on the smallest main stack that we run
// on, no hang, no wrong position, and no cascade of reports from one fault.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/process.h"
#include "tests/temporary_folder.h"

namespace tavrel::tests {

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

constexpr bool Sanitized = TAVREL_SANITIZED != 0;

// Sanitizers make the tool many times slower and its frames larger, so they get a smaller load and the usual stack.
constexpr int Load(int size) {
    return Sanitized ? size / 20 : size;
}
constexpr ProcessLimits Limits = Sanitized ? ProcessLimits{300, 0} : ProcessLimits{20, 1UL << 20};

std::string Repeat(const std::string& text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) result += text;
    return result;
}

// The text with each part in braces `count` times: "#" in it is its number from 0 on, "@" the number behind that.
std::string Expand(const std::string& pattern, int count) {
    std::string text;
    for (std::size_t at = 0; at < pattern.size();) {
        const std::size_t open = std::min(pattern.find('{', at), pattern.size());
        const std::size_t close = std::min(pattern.find('}', open), pattern.size());
        text.append(pattern, at, open - at);
        for (int number = 0; number < count && open < pattern.size(); ++number) {
            for (std::size_t i = open + 1; i < close; ++i) {
                if (pattern[i] == '#' || pattern[i] == '@') {
                    text += std::to_string(pattern[i] == '#' ? number : number + 1);
                } else {
                    text += pattern[i];
                }
            }
        }
        at = close + 1;
    }
    return text;
}

int CountReports(const std::string& text) {
    int count = 0;
    for (std::size_t at = text.find(": erro: "); at != std::string::npos; at = text.find(": erro: ", at + 1)) ++count;
    return count;
}

Finished CheckIn(const fs::path& folder, const std::vector<std::string>& args) {
    std::vector<std::string> line{"verificar"};
    line.insert(line.end(), args.begin(), args.end());
    return RunTool(line, folder, Limits);
}

Finished CheckText(const std::string& text) {
    const TemporaryFolder folder;
    WriteFile(folder.path / "m.tvl", text);
    return CheckIn(folder.path, {"m.tvl"});
}

// Each row is a struct with a name, which says enough where a test fails.
template <typename Row>
std::string NameOf(const testing::TestParamInfo<Row>& info) {
    return info.param.name;
}

// Without it GoogleTest prints the bytes of a row, its padding among them.
template <typename Row>
requires requires(const Row& row) {
    row.name;
}
void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

// ---- any bytes at all ----

TEST(BadInput, ReportsStopAtTheirLimit) {
    const Finished finished = CheckText("modulo M\n" + Repeat("@", Load(1'000'000)));
    EXPECT_EQ(finished.code, 1);
    EXPECT_EQ(CountReports(finished.err), 25);
}

TEST(BadInput, EveryByteIsRead) {
    std::string text = "modulo M\n";
    for (int byte = 0; byte < 256; ++byte) text += {static_cast<char>(byte), static_cast<char>(255 - byte)};
    const Finished finished = CheckText(text);
    EXPECT_EQ(finished.code, 1);
    EXPECT_EQ(finished.signal, 0);
}

// ---- deep ----

struct NestingRow {
    const char* name;
    const char* pattern;  // behind the line of the module
};

class Nesting : public testing::TestWithParam<NestingRow> {};

TEST_P(Nesting, IsReportedOnce) {
    const Finished finished = CheckText(Expand("modulo M\n"s + GetParam().pattern, Load(1'000'000)));
    EXPECT_EQ(finished.signal, 0);
    EXPECT_EQ(finished.code, 1);
    EXPECT_EQ(CountReports(finished.err), 1) << finished.err.substr(0, 2000);
    EXPECT_NE(finished.err.find(": erro: o codigo esta aninhado demais: o limite e de 500 niveis\n"), std::string::npos)
        << finished.err.substr(0, 2000);
}

TEST_P(Nesting, CompilesAtTwoHundredLevels) {
    const Finished finished = CheckText(Expand("modulo M\n"s + GetParam().pattern, 200));
    EXPECT_EQ(finished.err, "");
    EXPECT_EQ(finished.code, 0);
}

#define IN_PROCEDURE(text) "procedimento p(a: logico, n: inteiro)\n" text "\nfim\n"
const NestingRow NestingRows[] = {
    {"Parentheses", "constante A: inteiro = {(}1{)}\n"},
    {"Minus", "constante A: inteiro = {-}1\n"},
    {"Not", "constante A: logico = {nao }falso\n"},
    {"Calls", "constante A: inteiro = {abs(}1{)}\n"},
    {"Conversions", "constante A: inteiro = {inteiro(}1{)}\n"},
    {"RightOperands", "constante A: inteiro = {1 + (}1{)}\n"},
    {"Lists", "constante A: {lista de }inteiro = {[}1{]}\n"},
    {"Dictionaries", "constante A: {dicionario de inteiro para }inteiro = {[1: }1{]}\n"},
    {"ListTypes", "x: {lista de }inteiro\n"},
    {"DictionaryTypes", "x: {dicionario de inteiro para }inteiro\n"},
    {"If", IN_PROCEDURE("{se a\n}n = 1\n{fim\n}")},
    {"IfOnOneLine", IN_PROCEDURE("{se a }n = 1\n{fim }")},
    {"IfInElse", IN_PROCEDURE("{se a\nsenao\n}n = 1\n{fim\n}")},
    {"For", IN_PROCEDURE("{para i de 1 ate 2\n}n = 1\n{fim\n}")},
    {"Switch", IN_PROCEDURE("{escolha n\ncaso 1\n}n = 1\n{fim\n}")},
};

INSTANTIATE_TEST_SUITE_P(Rows, Nesting, testing::ValuesIn(NestingRows), NameOf<NestingRow>);

TEST(BadInput, NestingThatNeverClosesIsReportedOnce) {
    for (const char* open : {"(", "[", "[1: ", "f(", "a[", "nao ", "se a\n", "se a ", "para cada x em y\n"}) {
        const std::string text = "modulo M\nprocedimento p(a: logico)\n" + Repeat(open, Load(1'000'000));
        const Finished finished = CheckText(text);
        EXPECT_EQ(finished.code, 1) << open;
        EXPECT_EQ(CountReports(finished.err), 1) << open << "\n" << finished.err.substr(0, 2000);
    }
}

// ---- long, wide ----

struct SizeRow {
    const char* name;
    std::string pattern;  // behind the line of the module
    int count;
    int reports;  // how many come out; -1 for at least one
    std::string saying;
};

class Size : public testing::TestWithParam<SizeRow> {};

TEST_P(Size, IsHandled) {
    const Finished finished = CheckText(Expand("modulo M\n" + GetParam().pattern, GetParam().count));
    const std::string start = finished.err.substr(0, 2000);
    EXPECT_EQ(finished.signal, 0);
    EXPECT_EQ(finished.code, GetParam().reports == 0 ? 0 : 1) << start;
    if (GetParam().reports >= 0) {
        EXPECT_EQ(CountReports(finished.err), GetParam().reports) << start;
    }
    EXPECT_NE(finished.err.find(GetParam().saying), std::string::npos) << start;
}

// Records of which each holds all those before it.
std::string RecordsInRecords(int count) {
    std::string text;
    std::string fields;
    for (int index = 0; index < count; ++index) {
        const std::string name = std::to_string(index);
        text.append("registro R").append(name).append("\n").append(fields).append("fim\n");
        fields.append("c").append(name).append(": R").append(name).append("\n");
    }
    return text;
}

#define CHAIN(text)                                                                                          \
    "registro No\nmais: lista de No\nn: inteiro\nfim\nfuncao no(): No\nx: No\nretorne x\nfim\nprocedimento " \
    "p(a: No)\n" text ".n = 1\nfim\n"
// With one parameter more than the count.
#define WIDE "procedimento muitos(a: inteiro{, a#: inteiro})\nfim\nao encerrar\nmuitos(0{, #})\nfim\n"
constexpr const char* Locals = "procedimento p()\n{v#: R\n}fim\n";
const std::string ThousandFields = "registro R\n" + Expand("{c#: inteiro = 1\n}", 1'000) + "fim\n";
const std::string Ladder =
    "estado\ntotal: inteiro\nfim\nprocedimento f0()\ntotal = 1\nfim\n"
    "{procedimento f@()\nf#()\nfim\n}a cada tick (passo: real)\nf" +
    std::to_string(Load(50'000)) + "()\nfim\n";

const SizeRow SizeRows[] = {
    {"Sum", "constante A: inteiro = 1{ + 1}\n", Load(100'000), 0, ""},
    {"Logic", "constante A: logico = falso{ ou falso}\n", Load(100'000), 0, ""},
    {"FieldsAndIndices", CHAIN("a{.mais[0]}"), Load(100'000), 0, ""},
    {"CallsOfCalls", CHAIN("no(){()}"), Load(100'000), -1, "isto nao e uma funcao"},
    {"Branches",
     "funcao f(n: inteiro): inteiro\nse n < 0\nretorne -1\n{senao se n == #\nretorne 1\n}fim\nretorne 0\nfim\n",
     Load(20'000), 0, ""},
    {"Ladder", Ladder, Load(50'000), 0, ""},
    {"Constants", "{constante A# = #\n}", Load(100'000), 0, ""},
    {"Records", "{registro R#\na: lista de R#\nfim\n}", Load(100'000), 0, ""},
    {"Actions", "{acao a#\n}", Load(100'000), 0, ""},
    {"Behaviours", "{comportamento C#\nestado\nx: inteiro\nfim\nfim\n}", Load(50'000), 0, ""},
    {"Undeclared", "{constante A#: inteiro = b#\n}", Load(100'000), 25, "nao foi declarada"},
    {"MissingImports", "{importar \"x#\"\n}", Load(100'000), 25, "nao achei o arquivo"},
    {"LongName", "constante {a} = 1\n", Load(5'000'000), 0, ""},
    {"LongText", "constante A = \"{é}\"\n", Load(5'000'000), 0, ""},
    {"LongLine", "constante A = 1{ }@\n", Load(5'000'000), 1, "nao e usado"},
    {"TallList", "constante A: lista de inteiro = [\n{#," + Repeat("\n", Load(100'000) / 250) + "\n}]\n", 250, 0, ""},
    {"LongList", "constante A: lista de inteiro = [{#,}]\n", Load(100'000), 1,
     "uma lista escrita no codigo cabe ate 255 elementos"},
    {"ManyParametersThatFit", WIDE, 254, 0, ""},
    {"TooManyParameters", WIDE, 299, 1, "tem argumentos demais\n  cabem ate 255\n"},
    {"ParametersThatFitBesideTheInstance", "comportamento C\n" WIDE "fim\n", 253, 0, ""},
    {"TooManyParametersBesideTheInstance", "comportamento C\n" WIDE "fim\n", 254, 1,
     "num comportamento cabem ate 254\n"},
    {"LastEnumOutOfReach", "{enumeracao E# = M#\n}constante A: E69999 = M69999\n", 70'000, 1, "ha enumeracoes demais"},
    {"LastEnumInReach", "{enumeracao E# = M#\n}constante A: E64999 = M64999\n", 65'000, 0, ""},
    {"DefaultsThatFit", ThousandFields + Locals, 1'000, 0, ""},
    {"TooManyDefaults", ThousandFields + Locals, 1'500, 1, "geram codigo demais neste programa"},
    {"RecordsInManyRecords", RecordsInRecords(300), 0, 0, ""},
    {"RecordsInTooManyRecords", RecordsInRecords(600), 0, 1, "ha registros demais uns dentro dos outros"},
    {"LoopOutOfReach", "procedimento p(l: lista de inteiro)\n{x#: inteiro\n}para cada item em l\nfim\nfim\n", 66'000, 1,
     "esta funcao tem variaveis demais"},
};

INSTANTIATE_TEST_SUITE_P(Rows, Size, testing::ValuesIn(SizeRows), NameOf<SizeRow>);

// ---- what is laid out anew ----

struct LayoutRow {
    const char* name;
    std::string text;
    bool fits;
};

class Layout : public testing::TestWithParam<LayoutRow> {};

TEST_P(Layout, IsRefusedOrStays) {
    const TemporaryFolder folder;
    WriteFile(folder.path / "m.tvl", GetParam().text);
    const Finished finished = RunTool({"formatar", "m.tvl"}, folder.path, Limits);
    if (!GetParam().fits) {
        const std::string& err = finished.err;
        EXPECT_NE(err.find(": erro: o texto arrumado ficaria grande demais\n"), std::string::npos);
        EXPECT_TRUE(err.ends_with("\nm.tvl: nao formatei, porque o texto arrumado nao caberia no limite\n")) << err;
        EXPECT_EQ(finished.code, 1);
        EXPECT_EQ(ReadFile(folder.path / "m.tvl"), GetParam().text);
        return;
    }
    EXPECT_EQ(finished.code, 0) << finished.err;
    EXPECT_EQ(RunTool({"formatar", "--conferir", "m.tvl"}, folder.path, Limits).code, 0);
}

const LayoutRow LayoutRows[] = {
    {"Blocks", Repeat("se a\n", 200'000), false},
    {"CommentsUnderBlocks", Repeat("se a\n", 3'000) + "f(" + Repeat("//\n", 200'000), false},
    {"BlocksThatFit", Repeat("se a\n", 500) + Repeat("fim\n", 500), true},
    {"Brackets", Repeat("(\n", Load(1'000'000)), true},
    {"Comments", "(" + Repeat("//\n", Load(1'000'000)), true},
    {"Signs", Repeat("- ", Load(1'000'000)), true},
    {"EmptyLines", "a\n" + Repeat("\n", Load(5'000'000)) + "b", true},
    {"Points", Repeat("1 . ", Load(500'000)), true},
};

INSTANTIATE_TEST_SUITE_P(Rows, Layout, testing::ValuesIn(LayoutRows), NameOf<LayoutRow>);

// ---- files that are not what their names say ----

constexpr const char* NoSuchImport = "  ele fica em scripts/, com a extensao .tvl\n";

std::string MissingImport(const std::string& name) {
    return "m.tvl:2:10: erro: nao achei o arquivo \"" + name + "\"\n" + NoSuchImport + "1 de 1 arquivo(s) com erro\n";
}

TEST(BadInput, AnImportMustBeARegularFile) {
    const TemporaryFolder folder;
    fs::create_directory(folder.path / "pasta.tvl");
    fs::create_symlink("em_lugar_nenhum", folder.path / "solto.tvl");
    fs::create_symlink("laco.tvl", folder.path / "laco.tvl");
    fs::create_symlink("/dev/zero", folder.path / "zero.tvl");
    ASSERT_EQ(mkfifo((folder.path / "cano.tvl").c_str(), 0600), 0);
    WriteFile(folder.path / "b.tvl", "modulo B\n");
    for (const std::string& name : {"pasta"s, "solto"s, "laco"s, "zero"s, "cano"s, "falta"s, "b.tvl"s, "b\0"s, ""s}) {
        WriteFile(folder.path / "m.tvl", "modulo M\nimportar \"" + name + "\"\n");
        const Finished finished = CheckIn(folder.path, {"m.tvl"});
        EXPECT_EQ(finished.err, MissingImport(name));
        EXPECT_EQ(finished.code, 1);
    }
    EXPECT_EQ(CheckIn(folder.path, {"."}).err.find("pasta"), std::string::npos);
}

TEST(BadInput, AnArgumentMustBeAScriptOrAFolder) {
    const TemporaryFolder folder;
    fs::create_directory(folder.path / "pasta.tvl");
    fs::create_symlink("em_lugar_nenhum", folder.path / "solto.tvl");
    for (const char* name : {"solto.tvl", "falta.tvl", "", "/dev/null"}) {
        const Finished finished = CheckIn(folder.path, {name});
        EXPECT_EQ(finished.err, "erro: nao achei "s + name + "\n");
        EXPECT_EQ(finished.code, 2);
    }
    EXPECT_EQ(CheckIn(folder.path, {"pasta.tvl"}).err, "erro: diga qual arquivo ou pasta\n");
}

TEST(BadInput, AFormattedLinkStaysALink) {
    const TemporaryFolder folder;
    fs::create_directory(folder.path / "pasta");
    WriteFile(folder.path / "pasta" / "m.tvl", "modulo  M\n");
    fs::create_symlink("pasta/m.tvl", folder.path / "um.tvl");
    fs::create_symlink("../um.tvl", folder.path / "pasta" / "dois.tvl");
    fs::create_symlink("laco.tvl", folder.path / "laco.tvl");
    EXPECT_EQ(RunTool({"formatar", "pasta/dois.tvl"}, folder.path).out,
              "pasta/dois.tvl: arrumado\n1 arquivo(s) no formato, 1 arrumado(s)\n");
    EXPECT_EQ(fs::read_symlink(folder.path / "pasta" / "dois.tvl"), "../um.tvl");
    EXPECT_EQ(fs::read_symlink(folder.path / "um.tvl"), "pasta/m.tvl");
    EXPECT_EQ(ReadFile(folder.path / "pasta" / "m.tvl"), "modulo M\n");
    const Finished finished = RunTool({"formatar", "laco.tvl"}, folder.path);
    EXPECT_EQ(finished.err, "erro: nao achei laco.tvl\n");
    EXPECT_EQ(finished.code, 2);
}

TEST(BadInput, AFileThatCannotBeReadFailsAlone) {
    const std::string unreadable = "/proc/self/mem";  // regular and open to its owner, but not from its start
    if (!fs::is_regular_file(unreadable)) GTEST_SKIP() << "no such file here";
    const TemporaryFolder folder;
    WriteFile(folder.path / "m.tvl", "modulo M\n");
    const Finished finished = CheckIn(folder.path, {unreadable, "m.tvl"});
    EXPECT_EQ(finished.err, "erro: nao consegui ler " + unreadable + "\n1 de 2 arquivo(s) com erro\n");
    EXPECT_EQ(finished.out.find("m.tvl: modulo M, "), 0u);
    EXPECT_EQ(finished.code, 1);
}

TEST(BadInput, NamesNeedNotBeAscii) {
    const TemporaryFolder folder;
    fs::create_directory(folder.path / "açúcar");
    WriteFile(folder.path / "açúcar" / "pão.tvl", "modulo Pão\nimportar \"maçã\"\n");
    WriteFile(folder.path / "açúcar" / "maçã.tvl", "modulo Maca\nconstante X = @\n");
    const Finished finished = CheckIn(folder.path, {"açúcar/pão.tvl"});
    EXPECT_EQ(finished.err,
              "açúcar/maçã.tvl:2:15: erro: \"@\" nao e usado nesta linguagem\n"
              "açúcar/maçã.tvl:2:15: erro: esperava um valor, e veio o fim da linha\n1 de 1 arquivo(s) com erro\n");
}

// A chain of files of which each imports the next; the last one imports `last`.
void WriteImports(const fs::path& folder, int count, const std::string& last) {
    for (int index = 0; index < count; ++index) {
        const std::string next = index + 1 < count ? std::string("f").append(std::to_string(index + 1)) : last;
        std::string text = "modulo F\n";
        if (!next.empty()) text.append("importar \"").append(next).append("\"\n");
        WriteFile(folder / ("f" + std::to_string(index) + ".tvl"), text);
    }
}

TEST(BadInput, ImportsMayFollowInALongChainButNotClose) {
    const TemporaryFolder folder;
    WriteImports(folder.path, Load(5'000), "");
    EXPECT_EQ(CheckIn(folder.path, {"f0.tvl"}).code, 0);
    WriteImports(folder.path, Load(5'000), "f0");
    const Finished finished = CheckIn(folder.path, {"f0.tvl"});
    EXPECT_EQ(finished.code, 1);
    EXPECT_EQ(CountReports(finished.err), 1);
    EXPECT_NE(finished.err.find("as importacoes fazem um ciclo: f0 -> f1 -> f2 -> "), std::string::npos);
}

TEST(BadInput, OneFileKeepsTheOrderOfBothStreams) {
    const TemporaryFolder folder;
    WriteFile(folder.path / "m.tvl", "modulo M\nao iniciar\n    escreva(\"um\")\n    escreva(texto([1][2]))\nfim\n");
    EXPECT_EQ(RunTool({"executar", "m.tvl"}, folder.path, {}, folder.path / "both").code, 1);
    EXPECT_EQ(ReadFile(folder.path / "both"), "um\nm.tvl:4: erro: a lista tem 1 item e o indice pedido foi 2\n");
}

// The run is ended from outside, in the midst of its ticks.
TEST(BadInput, WhatAHookPrintedHasLeftWhenItEnds) {
    const TemporaryFolder folder;
    WriteFile(folder.path / "m.tvl",
              "modulo M\nestado\n    n: inteiro\nfim\nao iniciar\n    escreva(\"um\")\nfim\n"
              "a cada tick (passo: real)\n    n = n + 1\n    se n == 2 entao escreva(\"dois\") fim\nfim\n");
    const Finished finished =
        RunTool({"executar", "m.tvl", "--ticks", "1000000000000"}, folder.path, {Sanitized ? 10U : 2U, 0});
    EXPECT_EQ(finished.signal, SIGALRM);
    EXPECT_EQ(finished.out, "um\ndois\n");
}

TEST(BadInput, OutputThatNobodyTookFailsTheRun) {
    const fs::path full = "/dev/full";
    if (!fs::exists(full)) GTEST_SKIP() << "no such file here";
    const TemporaryFolder folder;
    WriteFile(folder.path / "m.tvl", "modulo M\n");
    EXPECT_EQ(RunTool({"executar", "m.tvl"}, folder.path, {}, full).code, 1);
    EXPECT_EQ(RunTool({"verificar", "m.tvl"}, folder.path, {}, full).code, 1);
}

}  // namespace

}  // namespace tavrel::tests
