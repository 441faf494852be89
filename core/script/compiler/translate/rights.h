// The checks at each write and each use of the world: may this code, with the permits of its function, do that?
#pragma once

#include <string>

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// Whether the code runs only in hooks of `allowed`, so that it may use what the world calls `name`. `effect` says that
// it changes the world. Reports a refusal.
bool CheckHooks(Body& body, HookMask allowed, Span span, const std::string& name, bool effect);

// Whether the code may write a variable. Reports a refusal.
bool CheckWrite(Body& body, const Place& place, Span span, const std::string& name);

// Reports a write into the container that an expression names when the code may not write the variable that holds it. A
// container that no global and no field of the behaviour holds is free. The caller goes on, so that the value shows its
// faults too.
void CheckContainerWrite(Body& body, ExprId expr);

// Reports a value that does not have the type of what it is assigned to; silent for failed types.
void CheckAssign(Body& body, TypeId expected, TypeId actual, ExprId expr, const std::string& name);

}  // namespace tavrel::core::script
