// Unary, binary and logical operators. The left operand is compiled when they are called, and `left` is its type.
#pragma once

#include <cstddef>

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

TypeId CompileUnary(Body& body, const Expr& expr, TypeId operand);

// The left operand's code begins at instruction `first`, so that it can still be promoted.
TypeId CompileBinary(Body& body, const Expr& expr, TypeId left, std::size_t first);

TypeId CompileLogical(Body& body, const Expr& expr, TypeId left);

// Whether values of the kind have components.
[[nodiscard]] bool IsVector(Kind kind);

}  // namespace tavrel::core::script
