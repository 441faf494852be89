// Statements: blocks, declarations, conditions, "escolha" and "retorne".
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// The statements of a body in a scope of their own.
void CompileBlock(Body& body, Block block);

// A condition of "se" or "enquanto"; reports one that is not logical.
void CompileCondition(Body& body, ExprId expr);

// Whether every path through the block ends in a "retorne". A loop never does, since it may run no pass.
[[nodiscard]] bool AlwaysReturns(const Unit& unit, Block block);

}  // namespace tavrel::core::script
