// The small fixed numberings that the front end, the compiler, the runtime and the world's table share, and the few
// plain records that both a syntax tree and a program carry. A leaf: it knows nothing of trees or programs.
#pragma once

#include <cstdint>
#include <string>

#include "core/script/source/source_file.h"

namespace tavrel::core::script {

// The kind of a value and of a type. The numbers enter digests and are the ids of the built-in types.
enum class Kind : std::uint8_t {
    Unknown = 0,
    Nothing = 1,
    Int = 2,
    Real = 3,
    Bool = 4,
    Text = 5,
    Vec2 = 6,
    Vec3 = 7,
    Color = 8,
    Object = 9,
    Body = 10,
    Sound = 11,
    List = 12,
    Dict = 13,
    Record = 14,
    Enum = 15,
    Space = 16,
};

// The hooks of a module or behaviour. The numbers enter digests, as the order of the hook tables of a program.
enum class HookKind : std::uint8_t {
    Start = 0,
    LoadMap = 1,
    ResetMap = 2,
    Interrupt = 3,
    Tick = 4,
    Frame = 5,
    Draw = 6,
    Camera = 7,
    Shutdown = 8,
    Spawn = 9,
    Touch = 10,
    Release = 11,
};
inline constexpr int HookCount = 12;

// The storage category of a variable. The numbers enter digests.
enum class GlobalCategory : std::uint8_t { Constant = 0, State = 1, Visual = 2, Progress = 3, Derived = 4 };

// Functions that the world calls by name.
enum class ReservedFunction : std::int32_t {
    BaseRelief = 0,
    AdjustMaterial = 1,
    CanStand = 2,
    BodyHeight = 3,
    UpdateMap = 4,
    PlayerFocus = 5,
};
inline constexpr int ReservedFunctionCount = 6;

// One default input of an action.
struct Binding {
    std::string source;  // "tecla", "mouse", "controle" or "eixo_controle", folded
    std::string code;    // the key, button or axis, as written
    bool negative = false;
    Span span;
};

// The text of a hook as a script writes it; "um gancho" for any other value.
[[nodiscard]] const char* HookName(HookKind kind);

// The word of a category; "?" for any other value.
[[nodiscard]] const char* CategoryName(GlobalCategory category);

// The script name of a reserved function; "?" for any other value.
[[nodiscard]] const char* ReservedName(ReservedFunction function);

}  // namespace tavrel::core::script
