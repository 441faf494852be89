// The default values of the world's table, read from their texts.
#pragma once

#include <string>

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"

namespace tavrel::core::script {

// Reads the default of a parameter or field of that type; of kind None for an empty text, and for one that is
// reported. `context` names the place in reports. The members of all enumerations are declared by then.
[[nodiscard]] HostDefault ApiDefault(Compiler& compiler, const Declarations& declarations, const std::string& text,
                                     TypeId type, const std::string& context);

// Reports that the world's table declares `subject` in a way that `what` describes.
void ApiError(Compiler& compiler, const std::string& subject, const std::string& what);

}  // namespace tavrel::core::script
