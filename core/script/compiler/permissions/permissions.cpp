// A fixpoint over the call graph by a list of work. The permits of a caller are merged into those of what it calls; a
// function goes on the list when its permits changed, and comes off it when they have been handed on. Merging only ever
// takes rights away and adds hooks, and both are finite, so the list runs empty, and the outcome does not depend on the
// order in which it is worked off. A function changes at most once for each right and hook, so the time is in
// proportion to the number of calls.
#include "core/script/compiler/permissions/permissions.h"

#include <utility>

namespace tavrel::core::script {

namespace {

// True when the callee's permits changed.
bool Merge(Permits& callee, const Permits& caller) {
    Permits before = callee;
    if (!callee.reached) {
        callee = caller;
    } else {
        callee.writes &= caller.writes;
        callee.random = callee.random && caller.random;
        callee.rule = callee.rule || caller.rule;
        callee.hooks |= caller.hooks;
    }
    return callee != before;
}

void Propagate(const CallGraph& graph, std::vector<Permits>& permits) {
    std::vector<bool> waits(permits.size(), false);
    std::vector<std::size_t> work;
    auto enqueue = [&](std::size_t function) {
        if (!waits[function]) work.push_back(function);
        waits[function] = true;
    };
    for (std::size_t i = 0; i < permits.size(); ++i) {
        if (permits[i].reached) enqueue(i);
    }
    while (!work.empty()) {
        std::size_t caller = work.back();
        work.pop_back();
        waits[caller] = false;
        for (FunctionEntryId callee : graph.functions[caller]) {
            if (Merge(permits[callee.Number()], permits[caller])) enqueue(callee.Number());
        }
    }
}

}  // namespace

std::vector<Permits> AnalyzePermissions(const CallGraph& graph, std::vector<Permits> own) {
    std::vector<Permits> permits = std::move(own);
    for (const HookCalls& hook : graph.hooks) {
        for (FunctionEntryId callee : hook.calls) Merge(permits[callee.Number()], HookPermits(hook.hook));
    }
    Propagate(graph, permits);
    for (Permits& each : permits) {
        if (each.reached) continue;
        each.writes |= AllVariables;
        each.random = true;
    }
    return permits;
}

}  // namespace tavrel::core::script
