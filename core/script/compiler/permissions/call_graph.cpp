// The parser leaves the expressions of a body in one run of the unit, so a body is read by going through that run; no
// statement is looked at. A construct that calls a function by another way than a Call of a Name has to be added here,
// or what it calls escapes the law over state.
#include "core/script/compiler/permissions/call_graph.h"

#include <algorithm>

namespace tavrel::core::script {

namespace {

Calls CallsOf(Compiler& compiler, const Declarations& declarations, const Unit& unit, Slice<Expr> body,
              BehaviourId owner) {
    Calls calls;
    for (const Expr& expr : unit.Exprs(body)) {
        if (expr.kind != ExprKind::Call) continue;
        const Expr& callee = unit.At(expr.left);
        if (callee.kind != ExprKind::Name) continue;
        FunctionEntryId entry = declarations.FindFunction(compiler.names.Intern(callee.text), owner);
        if (entry) calls.push_back(entry);
    }
    std::sort(calls.begin(), calls.end());
    calls.erase(std::unique(calls.begin(), calls.end()), calls.end());
    return calls;
}

}  // namespace

CallGraph CollectCalls(Compiler& compiler, const Declarations& declarations) {
    CallGraph graph;
    const Unit& main = compiler.Main();
    auto addHooks = [&](const Section& section, BehaviourId owner) {
        for (const HookDecl& hook : section.hooks) {
            graph.hooks.push_back({hook.kind, CallsOf(compiler, declarations, main, hook.bodyExprs, owner)});
        }
    };
    addHooks(main.module, BehaviourId());
    for (std::size_t i = 0; i < main.behaviours.size(); ++i) addHooks(main.behaviours[i], BehaviourId(i));
    for (const FunctionEntry& entry : declarations.functions) {
        graph.functions.push_back(
            CallsOf(compiler, declarations, *entry.unit, entry.declaration->bodyExprs, entry.behaviour));
    }
    return graph;
}

}  // namespace tavrel::core::script
