// Records in records: how long a chain may get before it counts as one that contains itself.
#include <gtest/gtest.h>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

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

// A long chain counts as a cycle. Each record is gone down once, so the order of fields decides how long one gets.
TEST(Types, LongChainsOfRecords) {
    EXPECT_EQ(CompileScript(Chain(65)).reports, "");
    EXPECT_EQ(CompileScript(Chain(67)).reports, ContainsItself("A1") + ContainsItself("A2"));
    EXPECT_EQ(CompileScript(Chain(65) + Record("T", {"A2", "A1"})).reports, "");
    EXPECT_EQ(CompileScript(Chain(65) + Record("T", {"A1", "A2"})).reports, ContainsItself("T"));
}

}  // namespace
}  // namespace tavrel::core::script
