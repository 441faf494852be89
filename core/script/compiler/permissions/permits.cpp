// The law as a table. Reading has no law but that of terrain rules; the world's functions carry theirs in their rows.
#include "core/script/compiler/permissions/permits.h"

#include <array>

namespace tavrel::core::script {

namespace {

constexpr CategoryMask State = CategoryMask::State;
constexpr CategoryMask Visual = CategoryMask::Visual;
constexpr CategoryMask Progress = CategoryMask::Progress;
constexpr CategoryMask Derived = CategoryMask::Derived;

struct HookLaw {
    HookKind hook;
    CategoryMask writes;
    bool random = false;
};

// What decides the next tick is written by the tick and what belongs to it; what shows a moment never writes it.
constexpr std::array<HookLaw, HookCount> HookLaws = {{
    {HookKind::Start, Visual | Progress | Derived},
    {HookKind::LoadMap, Visual | Progress | Derived},
    {HookKind::ResetMap, State | Visual | Progress | Derived},
    {HookKind::Interrupt, Visual | Progress},
    {HookKind::Tick, State | Progress, true},
    {HookKind::Frame, Visual | Progress},
    {HookKind::Draw, Visual | Progress},
    {HookKind::Camera, Progress},
    {HookKind::Shutdown, Progress},
    {HookKind::Spawn, State | Visual | Progress | Derived},
    {HookKind::Touch, State | Progress, true},
    {HookKind::Release, State | Progress, true},
}};

constexpr bool StandInOrder() {
    for (std::size_t i = 0; i < HookLaws.size(); ++i) {
        if (HookLaws[i].hook != static_cast<HookKind>(i)) return false;
    }
    return true;
}
static_assert(StandInOrder(), "one row for each hook, in the order of HookKind");

}  // namespace

Permits HookPermits(HookKind kind) {
    const HookLaw& law = HookLaws[static_cast<std::size_t>(kind)];
    return {.writes = law.writes, .random = law.random, .rule = false, .reached = true, .hooks = MaskOf(kind)};
}

std::string HookNames(HookMask mask) {
    std::string list;
    for (const HookLaw& law : HookLaws) {
        if (!Contains(mask, MaskOf(law.hook))) continue;
        list += (list.empty() ? "" : ", ") + std::string(HookName(law.hook));
    }
    if (Contains(mask, HookMask::UpdateMap)) {
        list += (list.empty() ? "" : ", ") + std::string(ReservedName(ReservedFunction::UpdateMap));
    }
    return list.empty() ? "nenhum gancho" : list;
}

}  // namespace tavrel::core::script
