// A script that compiles runs for a few ticks. The fast form of its code and the exact one must leave the same things.
#include <cstddef>
#include <cstdint>

#include "tests/fuzz/require.h"
#include "tests/observed_run.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrel::fuzz;
    using tavrel::tests::ObservedRun;
    const Sources sources(TextOf(data, size));
    tavrel::core::script::Diagnostics diagnostics;
    tavrel::core::script::Program program;
    if (sources.Build(diagnostics, program)) Require(ObservedRun(program, false) == ObservedRun(program, true));
    return 0;
}
