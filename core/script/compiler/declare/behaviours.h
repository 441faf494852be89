// Behaviours: for each one the description of its fields and the record that an instance is at run time.
#pragma once

#include <cstddef>

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"

namespace tavrel::core::script {

// The first field that a behaviour declares itself, behind "eu" and "meu_corpo".
inline constexpr std::size_t FirstDeclaredField = 2;

// Declares the behaviours of the main script, the only one that may have any.
void CollectBehaviours(Compiler& compiler, Declarations& declarations);

}  // namespace tavrel::core::script
