// What a name means as a value.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// A variable, a member of an enumeration, a predefined name or a namespace of the world.
TypeId CompileName(Body& body, const Expr& expr);

}  // namespace tavrel::core::script
