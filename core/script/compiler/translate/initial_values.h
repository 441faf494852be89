// The functions that compute initial values.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// The function "valores iniciais": every global of a declaration, in the order of their numbers.
void CompileInitializer(Body& body);

// The function that fills a new instance of a behaviour.
void CompileBehaviourInitializer(Body& body, BehaviourId behaviour);

}  // namespace tavrel::core::script
