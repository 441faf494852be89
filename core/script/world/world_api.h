// Everything that a script can ask of the world the game runs in, as data: names, numeric ids, types and defaults as
// text, and the hooks in which each entry is valid. The compiler binds it to the language; this tool implements none
// of it. The ids are wire numbers between a compiled program and a world, and they enter digests.
#pragma once

#include <cstdint>
#include <vector>

#include "core/script/program/kinds.h"

namespace tavrel::core::script {

// A parameter of a host function or a field of a host record. All texts are constants, empty for none.
struct ApiParam {
    const char* name = "";
    const char* type = "";      // in the language's own words
    const char* fallback = "";  // the default, in the form that the compiler reads
};

struct ApiRecord {
    const char* name = "";
    std::vector<ApiParam> fields;
};

struct ApiEnum {
    const char* name = "";
    std::vector<const char*> members;
};

struct ApiFunction {
    std::uint32_t id = 0;
    const char* name = "";    // namespace, point, leaf
    const char* result = "";  // empty for none
    std::vector<ApiParam> params;
    HookMask hooks = HookMask::None;  // where a script may use it
    bool effect = false;              // changes the world, so a terrain rule cannot call it
};

// A value read from the world through a dotted name.
struct ApiNamespaceField {
    std::uint32_t id = 0;
    const char* space = "";
    const char* name = "";
    const char* type = "";
    HookMask hooks = HookMask::None;  // where a script may use it
};

// A field of a handle value.
struct ApiValueField {
    std::uint32_t id = 0;
    Kind kind = Kind::Unknown;
    const char* name = "";
    const char* type = "";
    HookMask hooks = HookMask::None;  // where a script may use it
};

// The whole table. With all four input ids 0 there is no "entrada".
struct Api {
    std::vector<ApiRecord> records;
    std::vector<ApiEnum> enums;
    std::uint32_t inputPressed = 0;
    std::uint32_t inputHeld = 0;
    std::uint32_t inputReleased = 0;
    std::uint32_t inputValue = 0;
    HookMask inputHooks = HookMask::None;
    std::uint32_t commandSend = 0;
    HookMask commandHooks = HookMask::None;
    std::vector<ApiFunction> functions;
    std::vector<ApiNamespaceField> namespaceFields;
    std::vector<ApiValueField> valueFields;
};

// The one table of the process, built at the first call, safe against concurrent first calls, constant from then on.
[[nodiscard]] const Api& WorldApi();

}  // namespace tavrel::core::script
