// Functions of the module that the world calls by name: their one signature, and what they may do.
#pragma once

#include <optional>

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"
#include "core/script/compiler/permissions/permits.h"

namespace tavrel::core::script {

// Enters the functions of reserved names into the program, and reports those with another signature.
void CheckReservedFunctions(Compiler& compiler, const Declarations& declarations);

// What a function may do because of its name; nothing for a name that is not reserved and in a behaviour.
[[nodiscard]] std::optional<Permits> ReservedPermits(const FunctionEntry& entry);

}  // namespace tavrel::core::script
