// The formatter on generated scripts of three sizes: as they are, which is nearly in format, and with the layout taken
// away. Bytes per second of source; tokens and the copy of the result included.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "bench/generate_script.h"
#include "core/script/source/diagnostics.h"
#include "core/script/source/source_file.h"
#include "core/script/syntax/formatter.h"

namespace tavrel::bench {

namespace {

using core::script::Diagnostics;
using core::script::SourceFile;

void Measure(benchmark::State& state, const std::string& text) {
    const SourceFile source("jogo.tvl", text);
    for (auto _ : state) {
        Diagnostics diagnostics;
        std::string out;
        if (!core::script::Format(source, diagnostics, out)) state.SkipWithError(diagnostics.Describe().c_str());
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_Format(benchmark::State& state) {
    Measure(state, GenerateScript(static_cast<int>(state.range(0)), Language::Script));
}

// Without indentation a byte of source holds more tokens.
void BM_FormatFlat(benchmark::State& state) {
    std::string flat;
    for (const char byte : GenerateScript(static_cast<int>(state.range(0)), Language::Script)) {
        const bool atStart = flat.empty() || flat.back() == '\n';
        if (byte != ' ' || !atStart) flat += byte;
    }
    Measure(state, flat);
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_Format)->Apply(Sizes);
BENCHMARK(BM_FormatFlat)->Apply(Sizes);

}  // namespace

}  // namespace tavrel::bench
