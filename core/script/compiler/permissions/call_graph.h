// Which declared functions the hooks and functions of a script call by name.
#pragma once

#include <vector>

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"

namespace tavrel::core::script {

// The functions that one body calls, ascending, each once. Methods and calls of the world add nothing.
using Calls = std::vector<FunctionEntryId>;

struct HookCalls {
    HookKind hook = HookKind::Start;
    Calls calls;
};

struct CallGraph {
    std::vector<HookCalls> hooks;  // of the module, then of each behaviour, in source order
    std::vector<Calls> functions;  // of each FunctionEntry
};

// Reads every body once. Initial values are no bodies.
[[nodiscard]] CallGraph CollectCalls(Compiler& compiler, const Declarations& declarations);

}  // namespace tavrel::core::script
