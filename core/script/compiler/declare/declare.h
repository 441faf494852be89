// Every name of a script and its world, in one call.
#pragma once

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"

namespace tavrel::core::script {

// Declares the world's table and everything that the units declare, and adds it to the program without any code.
// Faults are reported, and what could be declared is there all the same: names and types can be asked for in a script
// with faults, but code is translated only against declarations without any.
[[nodiscard]] Declarations Declare(Compiler& compiler);

}  // namespace tavrel::core::script
