// Calls of methods of lists and dictionaries.
#pragma once

#include <string_view>

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// The receiver stands on the stack, under the arguments to come.
TypeId CompileMethodCall(Body& body, const Expr& call, TypeId receiver, std::string_view name);

}  // namespace tavrel::core::script
