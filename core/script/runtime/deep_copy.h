// A copy of a value that shares nothing with it.
#pragma once

#include "core/script/runtime/value.h"

namespace tavrel::core::script {

class Vm;

// Copies `value` into `out`, whose reference goes to the caller; what it holds is copied at `depth` + 1. False with a
// fault recorded at depth 65, which a structure that contains itself always reaches, and at the memory limit; nothing
// is left behind then.
[[nodiscard]] bool DeepCopy(Vm& vm, const Value& value, int depth, Value& out);

}  // namespace tavrel::core::script
