// Indices and fields. The container or base is compiled when they are called, and `left` is its type.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

TypeId CompileIndex(Body& body, const Expr& expr, TypeId left);
TypeId CompileField(Body& body, const Expr& expr, TypeId left);

// Reports an index whose type does not suit the container's; silent for failed types.
void CheckIndex(Body& body, ExprId index, TypeId container, TypeId type);

// Reports that a record has no field of the name that `expr` reads; gives ErrorType.
TypeId MissingField(Body& body, const Expr& expr, TypeId record);

// The component a folded name means on a vector or colour, -1 for none.
[[nodiscard]] std::int32_t VectorComponent(Kind kind, std::string_view folded);

}  // namespace tavrel::core::script
