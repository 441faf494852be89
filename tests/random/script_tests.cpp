// What must hold for every script, tried on random ones. TAVREL_RANDOM_SCRIPTS sets how many seeds are tried, and
// TAVREL_RANDOM_FIRST the first of them.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>

#include "core/script/compiler/build.h"
#include "core/script/syntax/formatter.h"
#include "core/script/syntax/lexer.h"
#include "core/script/world/world_api.h"
#include "tests/observed_run.h"
#include "tests/random/script.h"

namespace tavrel::tests {

namespace {

using namespace core::script;

std::uint64_t NumberFrom(const char* variable, std::uint64_t otherwise) {
    const char* const text = std::getenv(variable);
    return text != nullptr ? std::strtoull(text, nullptr, 10) : otherwise;
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

// All tokens and comments, in order, and where lines end for the parser.
std::string TokensOf(const std::string& text) {
    const SourceFile source("m.tvl", text);
    Diagnostics diagnostics;
    std::string all;
    for (const Token& token : Tokenize(source, diagnostics, true).tokens) {
        all += Describe(token.kind);
        if (token.kind != Tok::Newline) all.append(" ").append(source.View(token.span));
        all += "\n";
    }
    return all;
}

void Check(const std::string& text, Program& program) {
    Compile(text, program);
    Program again;
    Compile(text, again);
    EXPECT_EQ(again.digest, program.digest);
    const std::string tidy = Formatted(text);
    EXPECT_EQ(Formatted(tidy), tidy);
    EXPECT_EQ(TokensOf(tidy), TokensOf(text));
    Program tidyProgram;
    Compile(tidy, tidyProgram);
    EXPECT_EQ(tidyProgram.digest, program.digest);
    const std::string run = ObservedRun(program, false);
    EXPECT_EQ(ObservedRun(again, false), run);
    EXPECT_EQ(ObservedRun(program, true), run);
}

// What the code of some programs uses, by the names of operations and natives and the ids of the world's functions.
struct Used {
    std::set<std::string> operations;
    std::set<std::string> natives;
    std::set<std::uint32_t> world;

    void Add(const Program& program) {
        for (const Function& function : program.functions) {
            for (const Instruction& instruction : function.code) {
                const Op op = static_cast<Op>(instruction.op);
                operations.insert(OpName(op));
                if (op == Op::CallNative) natives.insert(std::to_string(instruction.c));
                if (op == Op::CallHost) world.insert(instruction.c);
            }
        }
    }
};

TEST(RandomScripts, CompileFormatAndRunTheSame) {
    const std::uint64_t first = NumberFrom("TAVREL_RANDOM_FIRST", 0);
    const std::uint64_t count = NumberFrom("TAVREL_RANDOM_SCRIPTS", 50);
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        for (const bool world : {false, true}) {
            const std::string text = RandomScript(seed, world);
            Program program;
            Check(text, program);
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", " << (world ? "with" : "without") << " a world:\n"
                                       << text;
        }
    }
}

// Else the test above would say little.
TEST(RandomScripts, UseAllOfTheLanguage) {
    Used used;
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
        Program program;
        Compile(RandomScript(seed, true), program);
        used.Add(program);
    }
    for (int op = 0; op < OpCount; ++op) {
        // The compiler writes neither into a program without errors.
        if (static_cast<Op>(op) == Op::PushNothing || static_cast<Op>(op) == Op::MakeRecord) continue;
        const std::string name = OpName(static_cast<Op>(op));
        EXPECT_EQ(used.operations.count(name), 1U) << name;
    }
    for (int native = 0; native < static_cast<int>(Native::Count); ++native) {
        EXPECT_EQ(used.natives.count(std::to_string(native)), 1U) << NativeName(static_cast<Native>(native));
    }
    for (const ApiFunction& function : WorldApi().functions)
        EXPECT_EQ(used.world.count(function.id), 1U) << function.name;
    for (const ApiNamespaceField& field : WorldApi().namespaceFields)
        EXPECT_EQ(used.world.count(field.id), 1U) << field.name;
    for (const ApiValueField& field : WorldApi().valueFields) EXPECT_EQ(used.world.count(field.id), 1U) << field.name;
}

}  // namespace

}  // namespace tavrel::tests
