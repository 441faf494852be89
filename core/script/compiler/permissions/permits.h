// The law over state: what a piece of code may do, and what each hook may.
#pragma once

#include <string>

#include "core/script/program/kinds.h"

namespace tavrel::core::script {

// What a piece of code may do.
struct Permits {
    CategoryMask writes = CategoryMask::None;  // variables of these categories
    bool random = false;                       // may draw random numbers
    bool rule = false;                         // a terrain or ground rule: reads only locals and constants
    bool reached = false;                      // the analysis has come here
    HookMask hooks = HookMask::None;           // the hooks it runs in; none for code that runs outside of any world

    bool operator==(const Permits&) const = default;
};

// What every hook may do.
[[nodiscard]] Permits HookPermits(HookKind kind);

// What the code of initial values may do: it fills every variable before there is a world. Constants are filled in the
// module alone.
inline constexpr Permits ModuleInitializerPermits = {.writes = AllVariables | CategoryMask::Constant, .reached = true};
inline constexpr Permits BehaviourInitializerPermits = {.writes = AllVariables, .reached = true};

// The hooks of a mask in words.
[[nodiscard]] std::string HookNames(HookMask mask);

}  // namespace tavrel::core::script
