// Variables of the module, their storage categories, and events.
#pragma once

#include <string>

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"

namespace tavrel::core::script {

// Declares the variables of the main script, the constants of every unit and the events. Globals are numbered by
// category and not by the order of the blocks in the source: constants, state, visual, progress and map-derived
// variables of the main script, constants of the imports, then three hidden globals for each event.
void CollectGlobals(Compiler& compiler, Declarations& declarations);

// The rules of what goes over the network, on its name as written and its type. Reports up to two faults.
void CheckPublished(Compiler& compiler, const Unit& where, const std::string& name, Span span, TypeId type);

}  // namespace tavrel::core::script
