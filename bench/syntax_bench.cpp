// The front end on generated scripts of three sizes: tokens alone, then tokens and tree. Bytes per second of source.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <utility>

#include "bench/generate_script.h"
#include "core/script/source/diagnostics.h"
#include "core/script/source/source_file.h"
#include "core/script/syntax/lexer.h"
#include "core/script/syntax/parse.h"

namespace tavrel::bench {

namespace {

using core::script::Diagnostics;
using core::script::SourceFile;
using core::script::Unit;

std::string ScriptOf(const benchmark::State& state) {
    return GenerateScript(static_cast<int>(state.range(0)), Language::Script);
}

void CountBytes(benchmark::State& state, std::size_t size) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_Lines(benchmark::State& state) {
    const std::string text = ScriptOf(state);
    for (auto _ : state) {
        SourceFile source("jogo.tvl", text);
        benchmark::DoNotOptimize(source.lineStarts.data());
    }
    CountBytes(state, text.size());
}

void BM_Tokenize(benchmark::State& state) {
    const std::string text = ScriptOf(state);
    const SourceFile source("jogo.tvl", text);
    for (auto _ : state) {
        Diagnostics diagnostics;
        benchmark::DoNotOptimize(core::script::Tokenize(source, diagnostics, false));
    }
    CountBytes(state, text.size());
}

// Tokens included, and the release of the tree.
void BM_Parse(benchmark::State& state) {
    const std::string text = ScriptOf(state);
    for (auto _ : state) {
        Diagnostics diagnostics;
        Unit unit;
        if (!core::script::Parse(SourceFile("jogo.tvl", text), diagnostics, unit)) {
            state.SkipWithError(diagnostics.Describe().c_str());
        }
        benchmark::DoNotOptimize(unit.exprs.data());
    }
    CountBytes(state, text.size());
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_Lines)->Apply(Sizes);
BENCHMARK(BM_Tokenize)->Apply(Sizes);
BENCHMARK(BM_Parse)->Apply(Sizes);

}  // namespace

}  // namespace tavrel::bench
