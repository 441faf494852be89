// The one implicit conversion: an integer literal stands for a real where one is wanted, by rewriting its code.
#pragma once

#include <cstddef>

#include "core/script/compiler/translate/body.h"
#include "core/script/compiler/translate/calls.h"

namespace tavrel::core::script {

// Turns the code of an integer literal, instructions `first` up to `last`, into that of a real where one is wanted, and
// gives the type that results. An expression that is no literal keeps its type; a literal that no float holds exactly
// is reported and fails.
TypeId PromoteLiteral(Body& body, std::size_t first, std::size_t last, TypeId type, TypeId wanted, ExprId expr);

// Whether an argument has the wanted type, or is a number literal that can take it. A literal that is not exact is
// reported and fails the argument.
bool Fits(Body& body, const Expr& call, Arguments& arguments, std::size_t index, TypeId wanted);

// One real among the arguments makes reals of the number literals beside it.
void UnifyToReal(Body& body, const Expr& call, Arguments& arguments);

}  // namespace tavrel::core::script
