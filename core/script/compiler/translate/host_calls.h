// Calls of the world's functions, whose arguments may be named and left out.
#pragma once

#include <string>

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// A call of the folded name in a namespace.
TypeId CompileHostCall(Body& body, const Expr& call, const std::string& space, const std::string& folded);

}  // namespace tavrel::core::script
