// The code of declared functions and of hooks.
#pragma once

#include <vector>

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// Every declared function; `permits` are those of each FunctionEntry.
void CompileFunctions(Body& body, const std::vector<Permits>& permits);

// One hook of the module, or of a behaviour. Enters the function into the hooks of the program or behaviour.
void CompileHook(Body& body, const HookDecl& hook, BehaviourId behaviour);

}  // namespace tavrel::core::script
