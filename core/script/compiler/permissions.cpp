// The law over state: what each hook may write and reach, how functions inherit it through the call graph, and the
// checks at each write and each use of the world.
#include <algorithm>
#include <utility>

#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

struct HookLaw {
    CategoryMask writes;
    bool random;
};

// What each hook may write, and whether it may draw random numbers.
constexpr HookLaw LawOf(HookKind kind) {
    constexpr CategoryMask State = CategoryMask::State;
    constexpr CategoryMask Visual = CategoryMask::Visual;
    constexpr CategoryMask Progress = CategoryMask::Progress;
    constexpr CategoryMask Derived = CategoryMask::Derived;
    switch (kind) {
        case HookKind::Start: return {Visual | Progress | Derived, false};
        case HookKind::LoadMap: return {Visual | Progress | Derived, false};
        case HookKind::ResetMap: return {State | Visual | Progress | Derived, false};
        case HookKind::Interrupt: return {Visual | Progress, false};
        case HookKind::Tick: return {State | Progress, true};
        case HookKind::Frame: return {Visual | Progress, false};
        case HookKind::Draw: return {Visual | Progress, false};
        case HookKind::Camera: return {Progress, false};
        case HookKind::Shutdown: return {Progress, false};
        case HookKind::Spawn: return {State | Visual | Progress | Derived, false};
        case HookKind::Touch: return {State | Progress, true};
        case HookKind::Release: return {State | Progress, true};
    }
    return {CategoryMask::None, false};
}

// A function may do what all its callers may do, and is valid only where all of them are. True when it changed.
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
    return !(callee == before);
}

const char* WriteHint(GlobalCategory category) {
    switch (category) {
        case GlobalCategory::State:
            return "o bloco \"estado\" decide os ticks seguintes, entao so \"a cada tick\" e \"ao reiniciar mapa\" "
                   "escrevem nele";
        case GlobalCategory::Visual:
            return "o bloco \"visual\" e apresentacao: escreva nele em \"a cada quadro\", \"ao desenhar\" ou "
                   "\"ao carregar mapa\"";
        case GlobalCategory::Derived: return "o que deriva do mapa e refeito em \"ao carregar mapa\"";
        default: return "";
    }
}

}  // namespace

Permits HookPermits(HookKind kind) {
    const HookLaw law = LawOf(kind);
    return {law.writes, law.random, false, true, MaskOf(kind)};
}

std::string HookNames(HookMask mask) {
    std::string list;
    for (int number = 0; number < HookCount; ++number) {
        const auto kind = static_cast<HookKind>(number);
        if (Contains(mask, MaskOf(kind))) list += (list.empty() ? "" : ", ") + std::string(HookName(kind));
    }
    if (Contains(mask, HookMask::UpdateMap)) list += list.empty() ? "atualizar_mapa" : ", atualizar_mapa";
    return list.empty() ? "nenhum gancho" : list;
}

// Starts from the hooks and the reserved functions alone: calls in initial values take no part.
void Compiler::AnalyzePermissions() {
    MergeHookCalls(units[0].module, -1);
    for (std::size_t owner = 0; owner < units[0].behaviours.size(); ++owner) {
        MergeHookCalls(units[0].behaviours[owner], static_cast<std::int32_t>(owner));
    }
    PropagatePermits();
    for (FunctionEntry& entry : functions) {
        if (entry.permits.reached) continue;
        // No hook comes here, so no law holds but the world's absence.
        entry.permits.writes |= AllVariables;
        entry.permits.random = true;
    }
}

void Compiler::MergeHookCalls(const Section& section, std::int32_t owner) {
    for (const HookDecl& hook : section.hooks) {
        Permits hookPermits = HookPermits(hook.kind);
        for (std::int32_t callee : CollectCalls(units[0], hook.bodyExprs, owner)) {
            Merge(functions[static_cast<std::size_t>(callee)].permits, hookPermits);
        }
    }
}

// Merging only ever takes rights away and adds hooks, so the outcome does not depend on the order of the walk; each
// body is read once, and a function comes back to the list only when its permits changed.
void Compiler::PropagatePermits() {
    std::vector<std::vector<std::int32_t>> calls(functions.size());
    std::vector<bool> known(functions.size(), false);
    std::vector<bool> pending(functions.size(), false);
    std::vector<std::int32_t> queue;
    auto enqueue = [&](std::size_t entry) {
        if (!pending[entry]) queue.push_back(static_cast<std::int32_t>(entry));
        pending[entry] = true;
    };
    for (std::size_t i = 0; i < functions.size(); ++i) {
        if (functions[i].permits.reached) enqueue(i);
    }
    while (!queue.empty()) {
        auto at = static_cast<std::size_t>(queue.back());
        queue.pop_back();
        pending[at] = false;
        const FunctionEntry& caller = functions[at];
        if (!known[at]) calls[at] = CollectCalls(*caller.unit, caller.declaration->bodyExprs, caller.behaviour);
        known[at] = true;
        for (std::int32_t callee : calls[at]) {
            auto calleeAt = static_cast<std::size_t>(callee);
            if (Merge(functions[calleeAt].permits, caller.permits)) enqueue(calleeAt);
        }
    }
}

// The entries that the expressions of a body call by name, ascending. Methods and calls of the world add nothing.
std::vector<std::int32_t> Compiler::CollectCalls(const Unit& where, Slice<Expr> exprs, std::int32_t owner) {
    std::vector<std::int32_t> calls;
    for (const Expr& expr : where.Exprs(exprs)) {
        if (expr.kind != ExprKind::Call) continue;
        const Expr& callee = where.exprs[static_cast<std::size_t>(expr.left)];
        if (callee.kind != ExprKind::Name) continue;
        std::int32_t entry = FindFunction(names.Intern(callee.text), owner);
        if (entry >= 0) calls.push_back(entry);
    }
    std::sort(calls.begin(), calls.end());
    calls.erase(std::unique(calls.begin(), calls.end()), calls.end());
    return calls;
}

bool Compiler::CheckHooks(HookMask allowed, Span span, const std::string& name, bool effect) {
    if (effect && permits.rule) {
        Error(span, Quoted(name) + " muda o mundo, e esta funcao e uma regra de relevo ou de chao",
              "ela roda sobre uma copia do terreno, fora do quadro, e so le o que recebe");
        return false;
    }
    if (permits.hooks == HookMask::None) {
        Error(span, Quoted(name) + " precisa do mundo, e aqui nao ha gancho que o alcance",
              permits.rule ? "esta funcao e uma regra de relevo: ela roda sobre uma copia do terreno, fora do quadro"
                           : "o valor inicial de uma variavel e calculado antes de haver mapa (use \"ao carregar "
                             "mapa\"), e foco_do_jogador so le o estado, entre ticks");
        return false;
    }
    if (Contains(allowed, permits.hooks)) return true;
    if (Overlap(permits.hooks, allowed)) {
        Error(span, Quoted(name) + " nao vale em todos os ganchos que chamam esta funcao",
              "ela vale em: " + HookNames(allowed) + "; esta funcao e chamada de: " + HookNames(permits.hooks));
    } else {
        Error(span, Quoted(name) + " nao pode ser chamada aqui", "ela vale em: " + HookNames(allowed));
    }
    return false;
}

bool Compiler::CheckWrite(const Place& place, Span span, const std::string& name) {
    bool categoryAllowed = Contains(permits.writes, MaskOf(place.category));
    bool allowed = place.writable && (place.kind == PlaceKind::Local || (!permits.rule && categoryAllowed));
    if (!allowed) RefuseWrite(place, span, name);
    return allowed;
}

void Compiler::RefuseWrite(const Place& place, Span span, const std::string& name) {
    if (place.kind == PlaceKind::Local) {
        Error(span, Quoted(name) + " e a variavel do laco e nao pode ser mudada aqui");
    } else if (place.writable && permits.rule) {
        Error(span, Quoted(name) + " nao pode ser mudada aqui: esta funcao e uma regra de relevo ou de chao");
    } else if (place.writable) {
        Error(span,
              Quoted(name) + " e do bloco " + Quoted(CategoryName(place.category)) + " e nao pode ser mudada aqui",
              WriteHint(place.category));
    } else if (place.kind == PlaceKind::Field) {
        Error(span, Quoted(name) + " e um parametro do comportamento e vale a partida inteira",
              "quem o define e o manifesto do asset; para um valor que muda, declare no bloco \"estado\"");
    } else {
        Error(span, Quoted(name) + " e uma constante e nao pode ser mudada");
    }
}

// Writing into a container counts as a write of the variable that holds it; any other root is free.
bool Compiler::CheckContainerWrite(std::int32_t expr) {
    while (ExprAt(expr).kind == ExprKind::Index || ExprAt(expr).kind == ExprKind::Field) expr = ExprAt(expr).left;
    const Expr& root = ExprAt(expr);
    if (root.kind != ExprKind::Name) return true;
    Place place = Resolve(names.Intern(root.text));
    if (place.kind != PlaceKind::Field && place.kind != PlaceKind::Global) return true;
    return CheckWrite(place, root.span, std::string(root.text));
}

void Compiler::CheckAssign(TypeId expected, TypeId actual, std::int32_t expr, const std::string& name) {
    if (expected == FailedType || actual == FailedType || expected == actual) return;
    Error(SpanOf(expr), Quoted(name) + " e " + TypeName(expected) + " e o valor e " + TypeName(actual),
          ConversionHint(expected, actual, "nao ha conversao automatica; escreva real(...) ou inteiro(...)"));
}

}  // namespace tavrel::core::script
