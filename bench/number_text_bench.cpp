// Numbers to text and back, over values as scripts hold them and over the whole range of exponents.
#include <benchmark/benchmark.h>

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "core/script/numeric/number_text.h"

namespace tavrel::bench {

namespace {

constexpr int Count = 4096;

// Finite floats spread over all exponents, the same in every run.
std::vector<float> WideFloats() {
    std::vector<float> values;
    std::uint32_t bits = 1;
    while (values.size() < Count) {
        bits = bits * 1664525u + 1013904223u;
        if ((bits & 0x7F800000u) != 0x7F800000u) values.push_back(std::bit_cast<float>(bits));
    }
    return values;
}

// Numbers with three digits behind the point, as people write them.
std::vector<float> PlainFloats() {
    std::vector<float> values;
    for (int number = 0; number < Count; ++number)
        values.push_back(static_cast<float>(number * 37 % 100'000) / 1000.0f);
    return values;
}

std::vector<float> Floats(const benchmark::State& state) {
    return state.range(0) == 0 ? PlainFloats() : WideFloats();
}

void BM_RealToText(benchmark::State& state) {
    const std::vector<float> values = Floats(state);
    for (auto _ : state) {
        for (const float value : values) benchmark::DoNotOptimize(core::script::RealToText(value));
    }
    state.SetItemsProcessed(state.iterations() * Count);
}

void BM_ParseRealDigits(benchmark::State& state) {
    std::vector<std::string> texts;
    std::int64_t bytes = 0;
    for (const float value : Floats(state)) {
        texts.push_back(core::script::RealToText(value));
        bytes += static_cast<std::int64_t>(texts.back().size());
    }
    for (auto _ : state) {
        for (const std::string& text : texts) {
            float out = 0;
            benchmark::DoNotOptimize(core::script::ParseRealDigits(text, out));
            benchmark::DoNotOptimize(out);
        }
    }
    state.SetItemsProcessed(state.iterations() * Count);
    state.SetBytesProcessed(state.iterations() * bytes);
}

BENCHMARK(BM_RealToText)->ArgName("wide")->Arg(0)->Arg(1);
BENCHMARK(BM_ParseRealDigits)->ArgName("wide")->Arg(0)->Arg(1);

}  // namespace

}  // namespace tavrel::bench
