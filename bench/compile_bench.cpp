// Compiling generated scripts of three sizes against the world's table: the whole way from text to digest, then the
// compiler's share without reading and parsing, then the digest alone. Bytes per second of source.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "bench/generate_script.h"
#include "core/script/compiler/build.h"
#include "core/script/compiler/compile.h"
#include "core/script/program/program_digest.h"
#include "core/script/syntax/parse.h"
#include "core/script/world/world_api.h"

namespace tavrel::bench {

namespace {

using core::script::Diagnostics;
using core::script::Program;
using core::script::SourceFile;
using core::script::Unit;
using core::script::WorldApi;

std::string ScriptOf(const benchmark::State& state) {
    return GenerateScript(static_cast<int>(state.range(0)), Language::Script);
}

void CountBytes(benchmark::State& state, std::size_t size) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

bool NoImports(const std::string&, SourceFile&) {
    return false;
}

bool BuildText(const std::string& text, Diagnostics& diagnostics, Program& program) {
    return core::script::BuildWithImports(SourceFile("jogo.tvl", text), NoImports, diagnostics, program, &WorldApi());
}

void BM_Build(benchmark::State& state) {
    const std::string text = ScriptOf(state);
    for (auto _ : state) {
        Diagnostics diagnostics;
        Program program;
        if (!BuildText(text, diagnostics, program)) state.SkipWithError(diagnostics.Describe().c_str());
        benchmark::DoNotOptimize(program.digest);
    }
    CountBytes(state, text.size());
}

// Compile takes its units, so each turn parses anew, off the clock.
void BM_Compile(benchmark::State& state) {
    const std::string text = ScriptOf(state);
    for (auto _ : state) {
        state.PauseTiming();
        Diagnostics diagnostics;
        std::vector<Unit> units(1);
        bool good = core::script::Parse(SourceFile("jogo.tvl", text), diagnostics, units[0]);
        Program program;
        state.ResumeTiming();
        good = core::script::Compile(std::move(units), diagnostics, program, &WorldApi()) && good;
        if (!good) state.SkipWithError(diagnostics.Describe().c_str());
    }
    CountBytes(state, text.size());
}

void BM_Digest(benchmark::State& state) {
    const std::string text = ScriptOf(state);
    Diagnostics diagnostics;
    Program program;
    if (!BuildText(text, diagnostics, program)) state.SkipWithError(diagnostics.Describe().c_str());
    for (auto _ : state) benchmark::DoNotOptimize(core::script::DigestOf(program));
    CountBytes(state, text.size());
}

// What every run pays whatever the size of its script: the world's table and the prelude that declares it.
void BM_BuildEmpty(benchmark::State& state) {
    for (auto _ : state) {
        Diagnostics diagnostics;
        Program program;
        if (!BuildText("modulo Vazio\n", diagnostics, program)) state.SkipWithError("the empty script failed");
        benchmark::DoNotOptimize(program.digest);
    }
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_Build)->Apply(Sizes);
BENCHMARK(BM_Compile)->Apply(Sizes);
BENCHMARK(BM_Digest)->Apply(Sizes);
BENCHMARK(BM_BuildEmpty)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace tavrel::bench
