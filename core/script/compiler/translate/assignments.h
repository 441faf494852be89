// Assignments to variables, elements, fields and components of vectors.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// Reports a target that cannot be written, or not by this code, and a value of another type than the target's.
void CompileAssign(Body& body, const Stmt& stmt);

}  // namespace tavrel::core::script
