// Declared functions.
#pragma once

#include <cstddef>

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"

namespace tavrel::core::script {

// What the 8-bit operands of calls and literals can count.
inline constexpr std::size_t MaxArguments = 255;

// Declares the functions of every unit, and of every behaviour of the main script right behind those of its module.
void AddFunctions(Compiler& compiler, Declarations& declarations);

}  // namespace tavrel::core::script
