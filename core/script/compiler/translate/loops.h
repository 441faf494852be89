// "enquanto", "para" and "para cada". What a loop opens, its scope and its entry in Body::loops, is closed behind it.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

void CompileWhile(Body& body, const Stmt& stmt);
void CompileFor(Body& body, const Stmt& stmt);
void CompileForEach(Body& body, const Stmt& stmt);

}  // namespace tavrel::core::script
