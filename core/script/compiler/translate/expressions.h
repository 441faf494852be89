// Expressions of every kind, typed and emitted in one walk. This is the one entry for a whole expression: whatever
// wants to know the type of every node sees them pass here.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// Emits the code of an expression and gives the type of the value that it leaves on the stack. A namespace of the world
// and the call of a procedure leave none, and are told by their types.
TypeId CompileExpr(Body& body, ExprId expr);

// The same for a place that wants a type: a number literal becomes a real where one is wanted, and a namespace is
// reported. The caller compares the type that comes with the wanted one.
TypeId CompileValue(Body& body, ExprId expr, TypeId wanted);

// The type of an expression, with no code and no report left. It is compiled again in its place.
[[nodiscard]] TypeId ProbeType(Body& body, ExprId expr);

// True, and reported, when the expression of that type is a namespace of the world, and so no value.
bool RejectNamespace(Body& body, ExprId expr, TypeId type);

// True, and reported, when it is the call of a procedure, and so no value either.
bool RejectProcedure(Body& body, ExprId expr, TypeId type);

// Either of the two.
bool RejectNonValue(Body& body, ExprId expr, TypeId type);

}  // namespace tavrel::core::script
