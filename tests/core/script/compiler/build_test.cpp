// How files are gathered, where the program itself does not show it.
#include <gtest/gtest.h>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

std::string Importing(const std::string& module, const std::vector<std::string>& imports) {
    std::string text = "modulo " + module + "\n";
    for (const std::string& name : imports) text += "importar \"" + name + "\"\n";
    return text;
}

TEST(Build, StopsLoadingWhenNothingMoreCanBeReported) {
    std::string broken = "modulo B\n";
    for (int i = 0; i < 30; ++i) broken += "fim\n";
    int loads = 0;
    auto loader = [&](const std::string& name, SourceFile& out) {
        ++loads;
        out = SourceFile(name + ".tvl", broken);
        return true;
    };
    Diagnostics diagnostics;
    Program program;
    EXPECT_FALSE(
        BuildWithImports(SourceFile("m.tvl", Importing("A", {"b", "c"})), loader, diagnostics, program, nullptr));
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(diagnostics.items.size(), Diagnostics::Limit);
}

TEST(Build, OfAFixedListFollowsNoImports) {
    Diagnostics diagnostics;
    Program program;
    EXPECT_FALSE(Build({}, diagnostics, program, nullptr));
    EXPECT_EQ(diagnostics.Describe(), ":1:1: erro: nao ha nenhum arquivo de script para compilar\n");

    Diagnostics none;
    EXPECT_TRUE(Build({SourceFile("a.tvl", Importing("A", {"sumiu"}) + "constante X = 2\n"),
                       SourceFile("b.tvl", "modulo B\nconstante Y = 1\n")},
                      none, program, nullptr))
        << none.Describe();
    EXPECT_EQ(program.globals.size(), 2U);
}

}  // namespace
}  // namespace tavrel::core::script
