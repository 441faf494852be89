// What must hold for every script, tried on random ones. TAVREL_RANDOM_SCRIPTS sets how many.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/script/compiler/build.h"
#include "core/script/syntax/formatter.h"
#include "core/script/world/world_api.h"
#include "tests/observed_run.h"
#include "tests/random_script.h"

namespace tavrel::tests {

namespace {

using namespace core::script;

std::uint64_t ScriptsWanted() {
    const char* text = std::getenv("TAVREL_RANDOM_SCRIPTS");
    return text != nullptr ? std::strtoull(text, nullptr, 10) : 200;
}

void Compile(const std::string& text, Program& program) {
    Diagnostics diagnostics;
    const auto noImports = [](const std::string&, SourceFile&) { return false; };
    EXPECT_TRUE(BuildWithImports(SourceFile("m.tvl", text), noImports, diagnostics, program, &WorldApi()));
    EXPECT_EQ(diagnostics.Describe(), "");
}

std::string Formatted(const std::string& text) {
    Diagnostics diagnostics;
    std::string out;
    EXPECT_TRUE(Format(SourceFile("m.tvl", text), diagnostics, out));
    return out;
}

void Check(const std::string& text) {
    Program program;
    Compile(text, program);
    const std::string tidy = Formatted(text);
    EXPECT_EQ(Formatted(tidy), tidy);
    Program tidyProgram;
    Compile(tidy, tidyProgram);
    EXPECT_EQ(tidyProgram.digest, program.digest);
    const std::string run = ObservedRun(program, false);
    EXPECT_EQ(ObservedRun(program, false), run);
    EXPECT_EQ(ObservedRun(program, true), run);
}

TEST(RandomScripts, CompileFormatAndRunTheSame) {
    const std::uint64_t count = ScriptsWanted();
    for (std::uint64_t seed = 0; seed < count; ++seed) {
        for (const bool world : {false, true}) {
            const std::string text = RandomScript(seed, world);
            Check(text);
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", " << (world ? "with" : "without") << " a world:\n"
                                       << text;
        }
    }
}

}  // namespace

}  // namespace tavrel::tests
