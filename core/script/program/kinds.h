// The small fixed numberings that the front end, the compiler, the runtime and the world's table share, the sets of
// hooks and categories that the law over state is written in, and the few plain records that both a syntax tree and a
// program carry. A leaf: it knows nothing of trees or programs. The members of the numberings stand in kinds.def.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <type_traits>

#include "core/script/source/source_file.h"

namespace tavrel::core::script {

// The kind of a value and of a type.
enum class Kind : std::uint8_t {
#define TAVREL_KIND(name, number, ...) name = number,
#include "core/script/program/kinds.def"
};

// The hooks of a module or behaviour, in the order of a program's tables of hooks.
enum class HookKind : std::uint8_t {
#define TAVREL_HOOK(name, number, text) name = number,
#include "core/script/program/kinds.def"
};

// The storage category of a variable.
enum class GlobalCategory : std::uint8_t {
#define TAVREL_CATEGORY(name, number, text) name = number,
#include "core/script/program/kinds.def"
};

// Functions that the world calls by name.
enum class ReservedFunction : std::int32_t {
#define TAVREL_RESERVED(name, number, text) name = number,
#include "core/script/program/kinds.def"
};

// How many components the values of a kind have: those of vectors and colours; 0 for every other kind.
[[nodiscard]] constexpr int ComponentCount(Kind kind) {
    if (kind == Kind::Vec2) return 2;
    if (kind == Kind::Vec3) return 3;
    return kind == Kind::Color ? 4 : 0;
}

// Every component of the default value of such a kind: a colour begins as opaque white.
[[nodiscard]] constexpr float DefaultComponent(Kind kind) {
    return kind == Kind::Color ? 255.0F : 0.0F;
}

// A set of hooks. Beside them it can hold the reserved function "atualizar_mapa", from which the world is reached as
// from a hook. The empty set stands for code that no hook reaches.
enum class HookMask : std::uint32_t {
    None = 0,
#define TAVREL_HOOK(name, number, text) name = std::uint32_t{1} << number,
#include "core/script/program/kinds.def"
    UpdateMap = std::uint32_t{1} << 31,
};

// Every hook and "atualizar_mapa"; a hook yet to come is in it too.
inline constexpr HookMask AllHooks{0xFFFFFFFF};

// A set of storage categories.
enum class CategoryMask : std::uint8_t {
    None = 0,
#define TAVREL_CATEGORY(name, number, text) name = std::uint8_t{1} << number,
#include "core/script/program/kinds.def"
};

// How many members each numbering has.
inline constexpr int KindCount = 0
#define TAVREL_KIND(name, number, ...) +1
#include "core/script/program/kinds.def"
    ;
inline constexpr int HookCount = 0
#define TAVREL_HOOK(name, number, text) +1
#include "core/script/program/kinds.def"
    ;
inline constexpr int CategoryCount = 0
#define TAVREL_CATEGORY(name, number, text) +1
#include "core/script/program/kinds.def"
    ;
inline constexpr int ReservedFunctionCount = 0
#define TAVREL_RESERVED(name, number, text) +1
#include "core/script/program/kinds.def"
    ;

// The set of one hook, and that of one category.
[[nodiscard]] constexpr HookMask MaskOf(HookKind kind) {
    return HookMask{std::uint32_t{1} << static_cast<unsigned>(kind)};
}
[[nodiscard]] constexpr CategoryMask MaskOf(GlobalCategory category) {
    return static_cast<CategoryMask>(1U << static_cast<unsigned>(category));
}

template <class Type>
concept Mask = std::same_as<Type, HookMask> || std::same_as<Type, CategoryMask>;

// Union and intersection of two sets.
template <Mask Set>
[[nodiscard]] constexpr Set operator|(Set left, Set right) {
    using Bits = std::underlying_type_t<Set>;
    return static_cast<Set>(static_cast<Bits>(left) | static_cast<Bits>(right));
}
template <Mask Set>
[[nodiscard]] constexpr Set operator&(Set left, Set right) {
    using Bits = std::underlying_type_t<Set>;
    return static_cast<Set>(static_cast<Bits>(left) & static_cast<Bits>(right));
}
template <Mask Set>
constexpr Set& operator|=(Set& left, Set right) {
    return left = left | right;
}
template <Mask Set>
constexpr Set& operator&=(Set& left, Set right) {
    return left = left & right;
}

// Whether `set` holds all of `part`, and whether the two have a member in common.
template <Mask Set>
[[nodiscard]] constexpr bool Contains(Set set, Set part) {
    return (set & part) == part;
}
template <Mask Set>
[[nodiscard]] constexpr bool Overlap(Set left, Set right) {
    return (left & right) != Set::None;
}

// Every category that a script can write at all.
inline constexpr CategoryMask AllVariables =
    CategoryMask::State | CategoryMask::Visual | CategoryMask::Progress | CategoryMask::Derived;

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
