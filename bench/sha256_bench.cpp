// Bytes hashed per second, on the processor's SHA instructions and without them.
#include <benchmark/benchmark.h>

#include <vector>

#include "core/sha256.h"

namespace {

using tavrel::core::Sha256;

void Hash(benchmark::State& state, bool forcePortable) {
    if (!forcePortable && !tavrel::core::Sha256Accelerated()) {
        state.SkipWithError("this processor has no SHA instructions");
        return;
    }
    const auto size = static_cast<std::size_t>(state.range(0));
    const std::vector<unsigned char> message(size, 'a');
    for (auto _ : state) {
        Sha256 hash(forcePortable);
        hash.Update(message.data(), size);
        benchmark::DoNotOptimize(hash.Finish());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

BENCHMARK_CAPTURE(Hash, accelerated, false)->Arg(64)->Arg(4 << 10)->Arg(16 << 20);
BENCHMARK_CAPTURE(Hash, portable, true)->Arg(64)->Arg(4 << 10)->Arg(16 << 20);

}  // namespace
