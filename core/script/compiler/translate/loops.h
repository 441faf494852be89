// "enquanto", "para" and "para cada".
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

void CompileWhile(Body& body, const Stmt& stmt);
void CompileFor(Body& body, const Stmt& stmt);
void CompileForEach(Body& body, const Stmt& stmt);

}  // namespace tavrel::core::script
