// From the call graph to what each function may do.
#pragma once

#include <vector>

#include "core/script/compiler/permissions/call_graph.h"
#include "core/script/compiler/permissions/permits.h"

namespace tavrel::core::script {

// What each function of the graph may do. `own` is what each may do by its name, not reached for all others. A
// function may do what all that reach it may do, and runs in every hook that reaches it; one that nothing reaches may
// write all variables and reach no world.
[[nodiscard]] std::vector<Permits> AnalyzePermissions(const CallGraph& graph, std::vector<Permits> own);

}  // namespace tavrel::core::script
