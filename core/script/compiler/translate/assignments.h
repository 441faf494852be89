// Assignments.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

void CompileAssign(Body& body, const Stmt& stmt);

}  // namespace tavrel::core::script
