// A few ticks of any program, in a world that answers everything, under a small budget and little memory, and all that
// such a run leaves to be seen: printed texts, faults with their places, instructions counted, heap and state. Two runs
// that agree in it agree in all that a game could notice.
#pragma once

#include <cstdint>
#include <string>

#include "core/script/program/program.h"

namespace tavrel::tests {

// With `exactly` every function runs in the exact form of its code, otherwise in the fast one. `budget` is how many
// instructions a hook may take.
[[nodiscard]] std::string ObservedRun(const core::script::Program& program, bool exactly,
                                      std::uint64_t budget = 20'000);

}  // namespace tavrel::tests
