// One value of a running script: a kind and a payload, plain data that is copied freely. Text, lists, dictionaries and
// records live in a Heap, and their value is only the index of an object there; who keeps such a value must retain and
// drop it by hand (heap.h has the rule).
#pragma once

#include <bit>
#include <cstdint>

#include "core/script/program/kinds.h"

namespace tavrel::core::script {

struct Value {
    Kind kind = Kind::Nothing;
    union {
        float components[4] = {0.0F, 0.0F, 0.0F, 0.0F};  // of Vec2 (x, z), Vec3 (x, y, z), Color (r, g, b, a)
        std::int64_t word;                               // of every other kind; a shorter payload leaves the rest zero
    };

    // Each trusts the kind.
    [[nodiscard]] std::int64_t Int() const { return word; }
    [[nodiscard]] float Real() const { return std::bit_cast<float>(static_cast<std::uint32_t>(word)); }
    [[nodiscard]] bool Bool() const { return word != 0; }
    // The handle of an Object, Body or Sound.
    [[nodiscard]] std::uint32_t Handle() const { return static_cast<std::uint32_t>(word); }
    // The index of a Text, List, Dict or Record in its heap.
    [[nodiscard]] std::uint32_t ObjectIndex() const { return static_cast<std::uint32_t>(word); }
    // The member number and the index into Program::enums of an Enum.
    [[nodiscard]] std::uint32_t Member() const { return static_cast<std::uint32_t>(word); }
    [[nodiscard]] std::uint32_t EnumIndex() const {
        return static_cast<std::uint32_t>(static_cast<std::uint64_t>(word) >> 32U);
    }
};

// A value of a kind whose payload is one word.
[[nodiscard]] inline Value MakeWord(Kind kind, std::int64_t word) {
    Value value;
    value.kind = kind;
    value.word = word;
    return value;
}

[[nodiscard]] inline Value MakeInt(std::int64_t integer) {
    return MakeWord(Kind::Int, integer);
}

[[nodiscard]] inline Value MakeReal(float real) {
    return MakeWord(Kind::Real, static_cast<std::int64_t>(std::bit_cast<std::uint32_t>(real)));
}

[[nodiscard]] inline Value MakeBool(bool truth) {
    return MakeWord(Kind::Bool, truth ? 1 : 0);
}

// Kind is Object, Body or Sound.
[[nodiscard]] inline Value MakeHandle(Kind kind, std::uint32_t handle) {
    return MakeWord(kind, handle);
}

// Kind is Text, List, Dict or Record; takes over the reference.
[[nodiscard]] inline Value MakeObject(Kind kind, std::uint32_t index) {
    return MakeWord(kind, index);
}

[[nodiscard]] inline Value MakeEnum(std::uint32_t index, std::uint32_t member) {
    return MakeWord(Kind::Enum, static_cast<std::int64_t>(static_cast<std::uint64_t>(index) << 32U | member));
}

[[nodiscard]] inline Value MakeVector(Kind kind, float first, float second, float third = 0.0F, float fourth = 0.0F) {
    Value value;
    value.kind = kind;
    value.components[0] = first;
    value.components[1] = second;
    value.components[2] = third;
    value.components[3] = fourth;
    return value;
}

// Whether values of a kind refer to an object of the heap.
[[nodiscard]] constexpr bool OnHeap(Kind kind) {
    return kind == Kind::Text || (kind >= Kind::List && kind <= Kind::Record);
}

// Whether two values of a kind are the same exactly when their words are, and order as these do.
[[nodiscard]] constexpr bool ComparesByWord(Kind kind) {
    return kind == Kind::Int || kind == Kind::Enum || kind == Kind::Bool ||
           (kind >= Kind::Object && kind <= Kind::Sound);
}

}  // namespace tavrel::core::script
